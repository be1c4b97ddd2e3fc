#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <optional>

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/MemoryRecords.h"
#include "support/TestMain.h"
#include "windows/FilePlatform.h"

// This program's own malloc, which all libraries in it use: the allocation of a chosen number
// fails, and on demand all that follow.

extern "C" {
void *__libc_malloc(std::size_t aSize);                      // NOLINT(bugprone-reserved-identifier)
void *__libc_calloc(std::size_t aCount, std::size_t aSize);  // NOLINT(bugprone-reserved-identifier)
void *__libc_realloc(void *aMemory, std::size_t aSize);      // NOLINT(bugprone-reserved-identifier)
}

namespace {

struct Plan {
    long Left = -1;  ///< how many go well yet; negative: all
    bool AndAllBehind = false;
    bool HasFailed = false;
};

thread_local constinit Plan thePlan;

}  // namespace

#ifndef __SANITIZE_ADDRESS__  // which has an allocator of its own
namespace {

bool Fails() {
    if (thePlan.Left < 0) return false;
    if (thePlan.Left > 0) {
        --thePlan.Left;
        return false;
    }
    thePlan.HasFailed = true;
    if (!thePlan.AndAllBehind) thePlan.Left = -1;
    errno = ENOMEM;
    return true;
}

}  // namespace

extern "C" {
void *malloc(std::size_t aSize) {
    return Fails() ? nullptr : __libc_malloc(aSize);
}
void *calloc(std::size_t aCount, std::size_t aSize) {
    return Fails() ? nullptr : __libc_calloc(aCount, aSize);
}
void *realloc(void *aMemory, std::size_t aSize) {
    return Fails() ? nullptr : __libc_realloc(aMemory, aSize);
}
}
#endif

using namespace Vk_DocQuery;

namespace {

/// Texts that the parser copies and such that it takes as they are, dates, numbers that are and are
/// not written as usual, a list.
constexpr char theFile[] =
    "<?xml version='1.0' encoding='windows-1251'?>\r\n"
    "<!-- head --><VkDocQuery ver='1' xmlns:x='urn:x'>\r\n"
    "<DocCriteria IsNotes='1' NotesMode=' 2 ' Notes='\xC0\xEA\xF2 &amp; &quot;\xEF\xF0\xEE\xF7"
    "\xE5\xE5&quot; &lt;5>&#1046;' x:Notes='other' IsSignDate='1' SignDate1='05.03.2024'\r\n"
    "  SignDate2=' 31.2.2021 ' IsSignerFio='1' SignerSurname='\xC6\xF3\xEA' IsDocNum='1'"
    " DocNum1='1e2' DocNum2='12345'/>\r\n"
    "<TaxpayersCriteria IsTaxpayers='1' TaxpayersType='1'><TaxpayersList>\r\n"
    "<i id='1'/><i id=' 2 '/><i id='1'/></TaxpayersList></TaxpayersCriteria>\r\n"
    "<OtherOptions LastTab='doc'/></VkDocQuery>\r\n";

QString InWords(const VkDocQueryData &aRecord) {
    QStringList words{aRecord.Notes,
                      QString::number(aRecord.NotesMode),
                      ToText(aRecord.SignDate1),
                      ToText(aRecord.SignDate2),
                      aRecord.SignerSurname,
                      QString::number(aRecord.DocNum1),
                      QString::number(aRecord.DocNum2),
                      aRecord.LastTab};
    for (const auto &item : *aRecord.TaxpayersList) words << QString::number(item->ID());
    return words.join(u'|');
}

/// The user chooses that file at once; from then on the allocations are counted.
class ChosenFile : public FilePlatform {
public:
    bool GetOpenFileName(OpenFileName &aRecord) override {
        qstrncpy(aRecord.lpstrFile, Name.constData(), static_cast<std::size_t>(aRecord.nMaxFile));
        thePlan = {Left, false, false};
        return true;
    }
    bool GetSaveFileName(OpenFileName & /*aRecord*/) override { return false; }
    qint32 CommDlgExtendedError() override { return 0; }

    QByteArray Name;
    long Left = 0;
};

/// What came of it: the number of the failure, if one was raised.
template <class Body>
std::optional<qint32> Tried(long aLeft, bool aAndAllBehind, Body aBody) {
    std::optional<qint32> number;
    bool isBare = false;
    thePlan = {aLeft, aAndAllBehind, false};
    try {
        aBody();
    } catch (const Failure &failure) {
        thePlan.Left = -1;
        number = failure.Number();
    } catch (...) {
        thePlan.Left = -1;
        isBare = true;
    }
    thePlan.Left = -1;
    if (isBare) qFatal("something that is no failure was raised");
    return number;
}

}  // namespace

/// One allocation after the other fails, and each time the truth is told.
class TestFailedAllocations : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
#ifdef __SANITIZE_ADDRESS__
        QSKIP("the sanitizer has an allocator of its own");
#endif
        VkTests::MemoryOffice::Install();
        theName = theFolder.filePath(QStringLiteral("a.qvk"));
        QFile file(theName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(theFile, sizeof theFile - 1), qint64(sizeof theFile - 1));
    }

    void Reading_data() {
        OneAndAllBehind();
    }
    void Reading() {
        QFETCH(bool, andAllBehind);
        VkDocQueryData whole;
        QVERIFY(whole.ReadFromXmlFile(theName));
        const QString expected = InWords(whole);
        QCOMPARE(expected,
                 QStringLiteral("Акт & \"прочее\" <5>Ж|2|05.03.2024|03.03.2021|Жук|100|12345|doc|"
                                "1|2|1"));
        int raised = 0;
        for (long left = 0; left < 100000; ++left) {
            VkDocQueryData record;
            bool read = false;
            const auto number =
                Tried(left, andAllBehind, [&] { read = record.ReadFromXmlFile(theName); });
            if (!thePlan.HasFailed) break;
            if (number) {
                QCOMPARE(*number, qint32(OutOfMemory));
                ++raised;
            } else if (read) {
                QCOMPARE(InWords(record), expected);
            } else {
                QVERIFY2(record.LastError.contains(QStringLiteral("Cannot allocate memory")),
                         qPrintable(QStringLiteral("%1: %2").arg(left).arg(record.LastError)));
            }
        }
        QVERIFY(!thePlan.HasFailed);
        QVERIFY2(raised > 50, QByteArray::number(raised).constData());
    }

    /// Also what is told of a file that cannot be read.
    void ReadingInVain_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("andAllBehind");
        const std::pair<const char *, QByteArray> files[] = {
            {"cut", QByteArray(theFile, 400)},
            {"not closed", QByteArray(theFile).replace("</VkDocQuery>", "</Other>")},
            {"another root", "<Other/>"},
            {"document type", "<!DOCTYPE a><VkDocQuery/>"},
            {"two values of a name", "<VkDocQuery><DocCriteria Notes='1' Notes='2'/></VkDocQuery>"},
            {"too deep", QByteArray("<a>").repeated(300)},
            {"unknown encoding", "<?xml version='1.0' encoding='UTF-7'?><VkDocQuery/>"},
            {"missing", QByteArray()}};
        for (const auto &[name, bytes] : files) {
            for (const bool andAllBehind : {false, true})
                QTest::addRow("%s, %s", name, andAllBehind ? "all behind" : "one")
                    << bytes << andAllBehind;
        }
    }
    void ReadingInVain() {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, andAllBehind);
        const QString name = theFolder.filePath(QStringLiteral("bad.qvk"));
        QFile file(name);
        QFile::remove(name);
        if (!bytes.isEmpty())
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
        file.close();
        VkDocQueryData whole;
        QVERIFY(!whole.ReadFromXmlFile(name));
        const QString expected = whole.LastError;
        QVERIFY(!expected.isEmpty());
        long left = 0;
        for (; left < 100000; ++left) {
            VkDocQueryData record;
            record.FileName = QStringLiteral("old");
            bool read = false;
            const auto number =
                Tried(left, andAllBehind, [&] { read = record.ReadFromXmlFile(name); });
            if (!thePlan.HasFailed) break;
            QVERIFY(!read);
            if (number) {
                QCOMPARE(*number, qint32(OutOfMemory));
            } else if (!record.LastError.contains(QStringLiteral("Cannot allocate memory"))) {
                QCOMPARE(record.LastError, expected);
            }
        }
        QVERIFY(!thePlan.HasFailed);
        QVERIFY(left > 5);
    }

    /// The way of a host, from the name that its user has chosen on: a whole record, or a box or a
    /// failure that says why there is none.
    void AskingAndLoading() {
        VkDocQueryData whole;
        QVERIFY(whole.ReadFromXmlFile(theName));
        const QString expected = InWords(whole);
        ChosenFile platform;
        platform.Name = QFile::encodeName(theName);
        SetFileDialogsForTests(&platform);
        const auto takeBack = qScopeGuard([] { SetFileDialogsForTests(nullptr); });
        QString told;
        QTimer reader;
        connect(&reader, &QTimer::timeout, this, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box) told = box->text();
            if (box) box->close();
        });
        reader.start(0);
        DocQueryEditor editor;
        int failures = 0;
        for (platform.Left = 0; platform.Left < 100000; ++platform.Left) {
            told.clear();
            std::shared_ptr<VkDocQueryData> record;
            const auto number = Tried(-1, false, [&] { record = editor.AskAndLoadQuery(0); });
            if (!thePlan.HasFailed) break;
            const QByteArray where = QByteArray::number(qint64(platform.Left)) + told.toUtf8();
            QVERIFY2(number.value_or(OutOfMemory) == OutOfMemory, where.constData());
            QVERIFY2(int(number.has_value()) + int(record != nullptr) + int(!told.isEmpty()) == 1,
                     where.constData());
            if (record) QCOMPARE(InWords(*record), expected);
            QVERIFY2(told.isEmpty() || told.contains(QStringLiteral("Cannot allocate memory")),
                     where.constData());
            failures += number ? 1 : 0;
        }
        QVERIFY(!thePlan.HasFailed);
        QVERIFY2(failures > 50, QByteArray::number(failures).constData());
    }

    void Writing_data() {
        OneAndAllBehind();
    }
    void Writing() {
        QFETCH(bool, andAllBehind);
        VkDocQueryData record;
        QVERIFY(record.ReadFromXmlFile(theName));
        const QString expected = record.WriteToXmlString(true, 0);
        for (long left = 0; left < 100000; ++left) {
            QString text;
            const auto number =
                Tried(left, andAllBehind, [&] { text = record.WriteToXmlString(true, 0); });
            if (!thePlan.HasFailed) break;
            QCOMPARE(number.value_or(OutOfMemory), qint32(OutOfMemory));
            if (!number) QCOMPARE(text, expected);
        }
        QVERIFY(!thePlan.HasFailed);
    }

    /// The file is the old or the new one, as was told, and nothing stays beside it.
    void Saving_data() {
        QTest::addColumn<QString>("by");
        QTest::addColumn<bool>("andAllBehind");
        for (const char *by : {"WriteToXmlFile", "WriteToFile", "WriteToFileSafe"}) {
            for (const bool andAllBehind : {false, true})
                QTest::addRow("%s, %s", by, andAllBehind ? "all behind" : "one")
                    << QString::fromLatin1(by) << andAllBehind;
        }
    }
    void Saving() {
        QFETCH(QString, by);
        QFETCH(bool, andAllBehind);
        const auto save = [&](VkDocQueryData &rRecord, const QString &aName, QString &rMessage) {
            if (by == u"WriteToXmlFile") return rRecord.WriteToXmlFile(aName);
            if (by == u"WriteToFileSafe") return rRecord.WriteToFileSafe(aName, rMessage);
            rRecord.WriteToFile(aName);
            return true;
        };
        VkDocQueryData record;
        QVERIFY(record.ReadFromXmlFile(theName));
        const QTemporaryDir folder(FolderInMemory() + QStringLiteral("/memory-"));
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        QVERIFY(record.WriteToXmlFile(name));
        const QByteArray expected = BytesOf(name);
        int failed = 0;
        for (long left = 0; left < 100000; ++left) {
            QFile old(name);
            QVERIFY(old.open(QIODevice::WriteOnly) && old.write("old") == 3);
            old.close();
            bool saved = false;
            QString message;
            const auto number =
                Tried(left, andAllBehind, [&] { saved = save(record, name, message); });
            if (!thePlan.HasFailed) break;
            const QByteArray where =
                QStringLiteral("%1: %2").arg(left).arg(record.LastError).toUtf8();
            const bool isTold = by == u"WriteToFile" && number == qint32(SaveFailed);
            QVERIFY2(!number || *number == OutOfMemory || isTold, where.constData());
            QVERIFY2(by != u"WriteToFileSafe" || saved || number || message == record.LastError,
                     where.constData());
            QVERIFY2(BytesOf(name) == (saved ? expected : QByteArray("old")), where.constData());
            QVERIFY2(saved || number || !record.LastError.isEmpty(), where.constData());
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
            failed += saved ? 0 : 1;
        }
        QVERIFY(!thePlan.HasFailed);
        QVERIFY2(failed > 50, QByteArray::number(failed).constData());
    }

private:
    static void OneAndAllBehind() {
        QTest::addColumn<bool>("andAllBehind");
        QTest::newRow("one") << false;
        QTest::newRow("all behind") << true;
    }
    static QString FolderInMemory() {
        const QString memory = QStringLiteral("/dev/shm");
        return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    }
    static QByteArray BytesOf(const QString &aName) {
        QFile file(aName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir theFolder;
    QString theName;
};

VK_TEST_CLASS(TestFailedAllocations);

#include "TestFailedAllocations.moc"
