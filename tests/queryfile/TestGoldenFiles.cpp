#include <thread>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/Clock.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// A record that has an identity and nothing else.
class BareRecord : public Record {
public:
    explicit BareRecord(double aID) : theID(aID) {}
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }

private:
    double theID;
};

std::shared_ptr<RecordCollection> ListOf(std::initializer_list<double> aIDs) {
    auto list = std::make_shared<RecordCollection>();
    for (const double id : aIDs) list->Add(std::make_shared<BareRecord>(id));
    return list;
}

/// A record in which no field that is saved has the value of a new one.
VkDocQueryData FullRecord() {
    VkDocQueryData record;
    record.FileName = QStringLiteral("/not/saved.qvk");
    record.LastError = QStringLiteral("not saved");

    record.IsDocStatus = true;
    record.DocStatuses = DocInWork | DocDelivered | DocCorrected;
    record.IsNotes = true;
    record.NotesMode = NotesLike;
    // In code page 1251 there is the dash, but no é, ә, ≤ or 😀.
    record.Notes = QStringLiteral("Акт \"сверки\" & <ёж> № 5 — café, ә, ≤, 😀, it's &amp;");
    record.IsSignDate = true;
    record.SignDate1 = QDate(2024, 3, 5);
    record.SignDate2 = QDate(999, 12, 31);
    record.IsSignerFio = true;
    record.SignerSurname = QStringLiteral("О'Хара-Ґ");
    record.IsOrvex = record.IsOrvexStages = record.IsOrvexTerms = true;
    record.OrvexStages = DocQueryOrvexStages(63);
    record.OrvexTerms = OrvexInProgress | OrvexFailed;
    record.IsFss = record.IsFssStages = record.IsFssTerms = true;
    record.FssStages = FssReceived | FssFormatChecked | FssAccepted;
    record.FssTerms = FssSucceeded | FssFailed;
    record.IsDocNum = true;
    record.DocNumMode = DocNumRange;
    record.DocNum1 = -2147483647 - 1;
    record.DocNum2 = 2147483647;
    record.LastDocNumsCount = 250;
    record.WholePfrCluster = true;

    record.IsTemplate = true;
    record.TemplatesMode = TemplateVersion;
    record.Templates = ListOf({31, 34});

    record.IsPeriods = true;
    record.PeriodCriterion = RangePeriods;
    record.OnePeriodYear = 2023;
    record.OnePeriodMonthID = 21;
    record.RangePeriodYear1 = 2019;
    record.RangePeriodMonth1 = 2;
    record.RangePeriodYear2 = 2022;
    record.RangePeriodMonth2 = 11;
    record.IsPeriodTypes = true;
    record.PeriodTypes = DocQueryPeriodTypes(127);

    record.IsAccStreamType = true;
    record.AccStreamTypes = AccStreamFns | AccStreamRosstat | AccStreamOfr;
    record.IsAccStreamOpeness = true;
    record.AccStreamOpen = StreamClosed;
    record.IsContoraPrefix1 = record.IsContoraPrefix2 = true;
    record.ContoraPrefix1 = QStringLiteral("77&01");
    record.ContoraPrefix2 = QStringLiteral("087-1<01");
    record.ContoraJoining = JoinOr;
    record.IsAccStreamsList = true;
    record.AccStreamsList = ListOf({12, 4294967297, 11});

    record.IsTaxpayers = true;
    record.TaxpayersType = MainOrgs;
    record.IncludeMainOrgDocs = true;
    record.TaxpayersList = ListOf({999999999999999, 1.5, -7, 1});

    record.LastTab = QStringLiteral("taxpayer");
    return record;
}

QByteArray BytesOf(const QString &aName) {
    QFile file(aName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("cannot be read");
}

}  // namespace

/// Files that the shipped library saves, byte by byte. The files they have to equal came about
/// apart from the program.
class TestGoldenFiles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        VkTests::MemoryOffice::Install();
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));  // the library's own
    }
    void cleanupTestCase() { VkTests::MemoryOffice::Install(); }
    void cleanup() { SetTodayForTests(QDate()); }

    void SavedTwice_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("new") << QStringLiteral("new.qvk");
        QTest::newRow("full") << QStringLiteral("full.qvk");
    }
    void SavedTwice() {
        QFETCH(QString, name);
        SetTodayForTests(QDate(2024, 7, 15));
        VkDocQueryData record = name == QStringLiteral("new.qvk") ? VkDocQueryData() : FullRecord();
        const QTemporaryDir folder;
        const QString first = folder.filePath(QStringLiteral("Первый.qvk"));
        const QString second = folder.filePath(QStringLiteral("Второй.qvk"));
        bool saved = false;
        QString complaint;
        // The files library is made anew in a thread of its own; another test may have left one.
        std::thread([&] {
            saved = record.WriteToXmlFile(first) && record.WriteToXmlFile(second);
            complaint = record.LastError;
        }).join();
        QVERIFY2(saved, qPrintable(complaint));

        const QByteArray golden = BytesOf(Folder() + u'/' + name);
        QVERIFY(golden.endsWith("</VkDocQuery>\r\n"));
        const QList<QByteArray> lines = BytesOf(first).split('\n');
        const QList<QByteArray> goldenLines = golden.split('\n');
        for (qsizetype i = 0; i < std::min(lines.size(), goldenLines.size()); ++i)
            QCOMPARE(lines[i], goldenLines[i]);
        QCOMPARE(BytesOf(first), golden);
        QCOMPARE(BytesOf(second), golden);
    }

    void GoldenFilesAreReadBackWhole() {
        VkDocQueryData record;
        for (const char *name : {"VkTemplate", "VkAccStream", "VkPerson"}) {
            ClassRegistry::Register(QStringLiteral("Vk_Records.") + QLatin1String(name),
                                    [] { return std::make_shared<BareRecord>(0); });
        }
        const bool read = record.ReadFromXmlFile(Folder() + QStringLiteral("/full.qvk"));
        VkTests::MemoryOffice::Install();
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));  // the library's own
        QVERIFY2(read, qPrintable(record.LastError));
        QCOMPARE(record.Notes, FullRecord().Notes);
        QCOMPARE(record.SignerSurname, FullRecord().SignerSurname);
        QCOMPARE(record.DocNum1, FullRecord().DocNum1);
    }

    void EveryGoldenFileIsTested() {
        QCOMPARE(QDir(Folder()).entryList(QDir::Files, QDir::Name),
                 QStringList({QStringLiteral("full.qvk"), QStringLiteral("new.qvk")}));
    }

private:
    static QString Folder() { return QStringLiteral(VK_TEST_DATA "/saved"); }
};

VK_TEST_CLASS(TestGoldenFiles);

#include "TestGoldenFiles.moc"
