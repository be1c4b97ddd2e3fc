#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <linux/magic.h>
#include <memory>
#include <sys/vfs.h>
#include <unistd.h>

#include <libxml/parser.h>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <Vk_DocQuery/VkDocQueryData.h>

#include "Figure.h"
#include "queryfile/StoredIdentities.h"

using namespace Vk_DocQuery;

namespace {

constexpr int theIDs = 100000;

class BareRecord : public Record {
public:
    explicit BareRecord(double aID) : theID(aID) {}
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }

private:
    double theID;
};

QByteArray BytesOf(const QString &aFileName) {
    QFile file(aFileName);
    if (!file.open(QIODevice::ReadOnly)) qFatal("cannot read what was written");
    return file.readAll();
}

void Check(bool aGood, const char *aWhat) {
    if (!aGood) qFatal("%s", aWhat);
}

/// A copy of the bytes, then fwrite to a file of the folder. aToDisk puts it in the place of the
/// old file and waits, as a save does, until file and name would survive a power cut.
void CopyAndWrite(const QByteArray &aBytes, const QByteArray &aFolder, bool aToDisk) {
    const QByteArray name = aFolder + "/peer.qvk";
    const QByteArray written = aToDisk ? aFolder + "/peer.new" : name;
    const auto size = static_cast<std::size_t>(aBytes.size());
    const std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), aBytes.constData(), size);
    std::FILE *file = std::fopen(written.constData(), "wb");
    Check(file && std::fwrite(copy.get(), 1, size, file) == size, "fwrite");
    if (aToDisk) Check(std::fflush(file) == 0 && fsync(fileno(file)) == 0, "fsync");
    std::fclose(file);
    if (!aToDisk) return;
    Check(std::rename(written.constData(), name.constData()) == 0, "rename");
    const int folder = open(aFolder.constData(), O_RDONLY | O_DIRECTORY);
    Check(folder >= 0 && fsync(folder) == 0, "fsync of the folder");
    close(folder);
}

/// A folder whose files lie in memory; empty if the system has none.
QString FolderInMemory() {
    for (const QString &folder :
         {QStringLiteral("/dev/shm"), qEnvironmentVariable("XDG_RUNTIME_DIR"), QDir::tempPath()}) {
        struct statfs volume {};
        if (statfs(QFile::encodeName(folder).constData(), &volume) == 0 &&
            volume.f_type == TMPFS_MAGIC && QFileInfo(folder).isWritable())
            return folder;
    }
    return QString();
}

/// What the putting together and encoding of a large file cost shows in memory; what the way to the
/// disk costs shows on the disk. Of a small file nearly all is the latter: the calls of the system
/// that replace the old file as a whole.
void MeasureWriting(const QString &aWhat, VkDocQueryData &aRecord, const QByteArray &aBytes,
                    const QString &aFolder, bool aToDisk) {
    const QTemporaryDir folder(aFolder + QStringLiteral("/bench-"));
    Check(folder.isValid(), "folder");
    const QString ours = folder.filePath(QStringLiteral("ours.qvk"));
    const QByteArray peer = QFile::encodeName(folder.path());
    VkBench::Measure(
        {QStringLiteral("write %1 to a file %2")
             .arg(aWhat, aToDisk ? QStringLiteral("on disk") : QStringLiteral("in memory")),
         aToDisk ? QStringLiteral("memcpy, fwrite, fsync, rename and fsync of the folder")
                 : QStringLiteral("memcpy and fwrite of the same bytes"),
         2.0, 41, [&] { Check(aRecord.WriteToXmlFile(ours), "write"); },
         [&] { CopyAndWrite(aBytes, peer, aToDisk); }, nullptr, nullptr});
}

void ParseAlone(const QByteArray &aBytes) {
    xmlDoc *tree = xmlReadMemory(aBytes.constData(), static_cast<int>(aBytes.size()), nullptr,
                                 nullptr, XML_PARSE_NONET);
    Check(tree != nullptr, "parse");
    xmlFreeDoc(tree);
}

/// A figure over a short piece of work, done many times.
std::function<void()> Times(int aCount, std::function<void()> aWork) {
    return [aCount, work = std::move(aWork)] {
        for (int i = 0; i < aCount; ++i) work();
    };
}

}  // namespace

int main(int aCount, char **aArguments) {
    const QCoreApplication application(aCount, aArguments);
    if (application.arguments().size() > 1) VkBench::SetFilter(application.arguments().at(1));

    const QTemporaryDir folder;
    const QString large = folder.filePath(QStringLiteral("large.qvk"));
    const QString small = folder.filePath(QStringLiteral("small.qvk"));

    VkDocQueryData record;
    record.IsTaxpayers = true;
    record.TaxpayersList = std::make_shared<RecordCollection>();
    for (int i = 0; i < theIDs; ++i)
        record.TaxpayersList->Add(std::make_shared<BareRecord>(1000000 + i));
    Check(record.WriteToXmlFile(large), "write");
    const QByteArray largeBytes = BytesOf(large);
    VkDocQueryData fresh;
    Check(fresh.WriteToXmlFile(small), "write");
    const QByteArray smallBytes = BytesOf(small);

    const QString manyIDs = QStringLiteral("a record with 100,000 ids");
    const QString newRecord = QStringLiteral("a new record");
    const QString memory = FolderInMemory();
    if (memory.isEmpty())
        std::fprintf(stderr, "no folder in memory, its figure is left out\n");
    else
        MeasureWriting(manyIDs, record, largeBytes, memory, false);
    const QString disk = QCoreApplication::applicationDirPath();
    MeasureWriting(manyIDs, record, largeBytes, disk, true);
    MeasureWriting(newRecord, fresh, smallBytes, disk, true);

    VkBench::Measure({QStringLiteral("read the 100,000 ids of a file"),
                      QStringLiteral("libxml2 DOM parse of the same bytes"), 1.3, 21,
                      [&] {
                          XmlDocument document;
                          Check(document.Load(large), "load");
                          const XmlNode root = document.Node().SelectSingleNode("VkDocQuery");
                          const auto ids = StoredIdentities(
                              root.SelectSingleNode("TaxpayersCriteria"), "TaxpayersList");
                          Check(ids.size() == theIDs && ids.back() == 1000000 + theIDs - 1, "ids");
                      },
                      [&] { ParseAlone(largeBytes); }, nullptr, nullptr});

    VkBench::Measure({QStringLiteral("read the file of a new record, 1000 times"),
                      QStringLiteral("libxml2 DOM parse of the same bytes"), 1.3, 21,
                      Times(1000, [&] { Check(fresh.ReadFromXmlFile(small), "read"); }),
                      Times(1000, [&] { ParseAlone(smallBytes); }), nullptr, nullptr});
    return 0;
}
