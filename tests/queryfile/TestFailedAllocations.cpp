#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <optional>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/MemoryRecords.h"
#include "support/TestMain.h"

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
        QTest::addColumn<bool>("andAllBehind");
        QTest::newRow("one") << false;
        QTest::newRow("all behind") << true;
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

    void Writing_data() {
        Reading_data();
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
        Reading_data();
    }
    void Saving() {
        QFETCH(bool, andAllBehind);
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
            const auto number =
                Tried(left, andAllBehind, [&] { saved = record.WriteToXmlFile(name); });
            if (!thePlan.HasFailed) break;
            const QByteArray where =
                QStringLiteral("%1: %2").arg(left).arg(record.LastError).toUtf8();
            QCOMPARE(number.value_or(OutOfMemory), qint32(OutOfMemory));
            QVERIFY2(BytesOf(name) == (saved ? expected : QByteArray("old")), where.constData());
            QVERIFY2(saved || number || !record.LastError.isEmpty(), where.constData());
            QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
            failed += saved ? 0 : 1;
        }
        QVERIFY(!thePlan.HasFailed);
        QVERIFY2(failed > 50, QByteArray::number(failed).constData());
    }

private:
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
