#include <QTest>

#include "foundation/Clock.h"
#include "query/Fields.h"
#include "support/MemoryRecords.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// What is known of a field from outside.
struct Fact {
    const char *Name;
    qint32 Dispatch;
    FieldKind Kind;
    qint32 Creation = 0;
};

constexpr qint32 theThisYear = -7;

constexpr Fact theFacts[] = {
    {"FileName", 0x00, FieldKind::Text},
    {"IsTaxpayers", 0x29, FieldKind::Boolean},
    {"TaxpayersType", 0x2A, FieldKind::Enumeration, 1},
    {"TaxpayersList", 0x2B, FieldKind::Collection},
    {"IncludeMainOrgDocs", 0x2C, FieldKind::Boolean},
    {"IsAccStreamType", 0x1F, FieldKind::Boolean},
    {"AccStreamTypes", 0x20, FieldKind::Flags, 0},
    {"IsAccStreamOpeness", 0x21, FieldKind::Boolean},
    {"AccStreamOpen", 0x22, FieldKind::Enumeration, 1},
    {"IsContoraPrefix1", 0x23, FieldKind::Boolean},
    {"ContoraPrefix1", 0x24, FieldKind::Text},
    {"IsContoraPrefix2", 0x25, FieldKind::Boolean},
    {"ContoraPrefix2", 0x26, FieldKind::Text},
    {"ContoraJoining", 0x2F, FieldKind::Enumeration, 0},
    {"IsAccStreamsList", 0x27, FieldKind::Boolean},
    {"AccStreamsList", 0x28, FieldKind::Collection},
    {"IsPeriods", 0x15, FieldKind::Boolean},
    {"PeriodCriterion", 0x16, FieldKind::Enumeration, 1},
    {"OnePeriodYear", 0x17, FieldKind::Long, theThisYear},
    {"OnePeriodMonthID", 0x18, FieldKind::Long, 16},
    {"RangePeriodYear1", 0x19, FieldKind::Long, theThisYear},
    {"RangePeriodMonth1", 0x1A, FieldKind::Long, 1},
    {"RangePeriodYear2", 0x1B, FieldKind::Long, theThisYear},
    {"RangePeriodMonth2", 0x1C, FieldKind::Long, 12},
    {"IsPeriodTypes", 0x1D, FieldKind::Boolean},
    {"PeriodTypes", 0x1E, FieldKind::Flags, 0},
    {"IsTemplate", 0x12, FieldKind::Boolean},
    {"TemplatesMode", 0x13, FieldKind::Enumeration, 1},
    {"Templates", 0x14, FieldKind::Collection},
    {"IsDocStatus", 0x01, FieldKind::Boolean},
    {"DocStatuses", 0x02, FieldKind::Flags, 0},
    {"IsSignDate", 0x03, FieldKind::Boolean},
    {"SignDate1", 0x04, FieldKind::Date},
    {"SignDate2", 0x05, FieldKind::Date},
    {"IsSignerFio", 0x06, FieldKind::Boolean},
    {"SignerSurname", 0x07, FieldKind::Text},
    {"IsNotes", 0x36, FieldKind::Boolean},
    {"NotesMode", 0x37, FieldKind::Enumeration, 0},
    {"Notes", 0x38, FieldKind::Text},
    {"IsDocNum", 0x31, FieldKind::Boolean},
    {"DocNumMode", 0x32, FieldKind::Enumeration, 1},
    {"DocNum1", 0x33, FieldKind::Long, 0},
    {"DocNum2", 0x34, FieldKind::Long, 0},
    {"LastDocNumsCount", 0x35, FieldKind::Long, 10},
    {"WholePfrCluster", 0x30, FieldKind::Boolean},
    {"IsOrvex", 0x08, FieldKind::Boolean},
    {"IsOrvexStages", 0x09, FieldKind::Boolean},
    {"OrvexStages", 0x0A, FieldKind::Flags, 0},
    {"IsOrvexTerms", 0x0B, FieldKind::Boolean},
    {"OrvexTerms", 0x0C, FieldKind::Flags, 0},
    {"IsFss", 0x0D, FieldKind::Boolean},
    {"IsFssStages", 0x0E, FieldKind::Boolean},
    {"FssStages", 0x0F, FieldKind::Flags, 0},
    {"IsFssTerms", 0x10, FieldKind::Boolean},
    {"FssTerms", 0x11, FieldKind::Flags, 0},
    {"LastTab", 0x2E, FieldKind::Text},
    {"LastError", 0x2D, FieldKind::Text},
};

}  // namespace

class TestQueryRecord : public QObject {
    Q_OBJECT

private slots:
    void FieldsStandInOneTable_data() {
        QTest::addColumn<int>("index");
        QCOMPARE(theFields.size(), std::size(theFacts));
        for (int i = 0; i < int(std::size(theFacts)); ++i) QTest::newRow(theFacts[i].Name) << i;
    }
    void FieldsStandInOneTable() {
        QFETCH(int, index);
        const Fact &fact = theFacts[index];
        const Field &field = theFields[std::size_t(index)];
        QCOMPARE(field.Name, fact.Name);
        QCOMPARE(field.Dispatch, fact.Dispatch);
        QVERIFY(field.Kind == fact.Kind);

        VkDocQueryData record;
        const int year = QDate::currentDate().year();
        const qint32 expected = fact.Creation == theThisYear ? year : fact.Creation;
        switch (fact.Kind) {
            case FieldKind::Text:
                QCOMPARE(field.Text(record), QString());
                break;
            case FieldKind::Boolean:
                QCOMPARE(field.Boolean(record), false);
                break;
            case FieldKind::Date:
                QVERIFY(IsEmpty(field.Date(record)));
                break;
            case FieldKind::Collection:
                QVERIFY(!field.Collection(record));
                break;
            case FieldKind::Long:
            case FieldKind::Enumeration:
            case FieldKind::Flags:
                QCOMPARE(field.Long(record), expected);
                break;
        }
    }

    void CreationIsSeenInTheMembers() {
        const VkDocQueryData record;
        const int year = QDate::currentDate().year();
        QCOMPARE(qint32(record.DocNumMode), 1);
        QCOMPARE(record.LastDocNumsCount, 10);
        QCOMPARE(qint32(record.TemplatesMode), 1);
        QCOMPARE(qint32(record.PeriodCriterion), 1);
        QCOMPARE(record.OnePeriodYear, year);
        QCOMPARE(record.OnePeriodMonthID, 16);
        QCOMPARE(record.RangePeriodYear1, year);
        QCOMPARE(record.RangePeriodMonth1, 1);
        QCOMPARE(record.RangePeriodYear2, year);
        QCOMPARE(record.RangePeriodMonth2, 12);
        QCOMPARE(qint32(record.AccStreamOpen), 1);
        QCOMPARE(qint32(record.TaxpayersType), 1);
        QCOMPARE(qint32(record.ContoraJoining), 0);
        QVERIFY(!record.Templates && !record.AccStreamsList && !record.TaxpayersList);
        QVERIFY(IsEmpty(record.SignDate1) && IsEmpty(record.SignDate2));
    }

    /// Every field of the table reaches the member of its own name: each gets a value of its own.
    void FieldsAreTheMembersOfTheirNames() {
        VkDocQueryData record;
        for (const Field &field : theFields) {
            switch (field.Kind) {
                case FieldKind::Text:
                    field.Text(record) = QString::fromLatin1(field.Name);
                    break;
                case FieldKind::Long:
                case FieldKind::Enumeration:
                case FieldKind::Flags:
                    field.SetLong(record, 1000 + field.Dispatch);
                    break;
                case FieldKind::Date:
                    field.Date(record) = field.Dispatch;
                    break;
                case FieldKind::Boolean:
                case FieldKind::Collection:
                    break;
            }
        }
        QCOMPARE(record.FileName, QStringLiteral("FileName"));
        QCOMPARE(record.ContoraPrefix1, QStringLiteral("ContoraPrefix1"));
        QCOMPARE(record.ContoraPrefix2, QStringLiteral("ContoraPrefix2"));
        QCOMPARE(record.SignerSurname, QStringLiteral("SignerSurname"));
        QCOMPARE(record.Notes, QStringLiteral("Notes"));
        QCOMPARE(record.LastTab, QStringLiteral("LastTab"));
        QCOMPARE(record.LastError, QStringLiteral("LastError"));
        QCOMPARE(qint32(record.TaxpayersType), 1042);
        QCOMPARE(qint32(record.AccStreamTypes), 1032);
        QCOMPARE(qint32(record.FssTerms), 1017);
        QCOMPARE(record.DocNum1, 1051);
        QCOMPARE(record.DocNum2, 1052);
        QCOMPARE(record.LastDocNumsCount, 1053);
        QVERIFY(record.SignDate1 == LooseValue(4));
        QVERIFY(record.SignDate2 == LooseValue(5));
    }

    void RecordsMadeAcrossNewYearDiffer() {
        SetTodayForTests(QDate(2024, 12, 31));
        const VkDocQueryData before;
        SetTodayForTests(QDate(2025, 1, 1));
        const VkDocQueryData after;
        SetTodayForTests(QDate());
        QCOMPARE(before.OnePeriodYear, 2024);
        QCOMPARE(before.RangePeriodYear1, 2024);
        QCOMPARE(before.RangePeriodYear2, 2024);
        QCOMPARE(after.OnePeriodYear, 2025);
        QCOMPARE(after.RangePeriodYear1, 2025);
        QCOMPARE(after.RangePeriodYear2, 2025);
    }

    void AnyValueIsTaken() {
        VkDocQueryData record;
        record.AccStreamTypes = DocQueryAccStreamTypes(32 | 256);
        record.NotesMode = DocQueryNotesMode(-2147483647 - 1);
        QCOMPARE(qint32(record.AccStreamTypes), 288);
        QCOMPARE(qint32(record.NotesMode), -2147483647 - 1);
        QVERIFY(record.WriteToXmlString(false, 0).contains(
            QStringLiteral("IsAccStreamType=\"0\" AccStreamTypes=\"288\" \r\n")));
    }

    void CollectionsAreShared() {
        VkTests::MemoryOffice::Install();
        VkDocQueryData record;
        const auto list = std::make_shared<RecordCollection>();
        record.TaxpayersList = list;
        list->Add(VkTests::MakePerson(1));
        QCOMPARE(record.TaxpayersList.get(), list.get());
        QCOMPARE(record.TaxpayersList->Count(), 1);
        const VkDocQueryData copy(record);
        QCOMPARE(copy.TaxpayersList.get(), list.get());
    }

    void EmptyAndNullDatesDiffer() {
        VkDocQueryData record;
        record.SignDate1 = Null();
        QVERIFY(IsNull(record.SignDate1) && !IsEmpty(record.SignDate1));
        QVERIFY(IsEmpty(record.SignDate2) && !IsNull(record.SignDate2));
    }
};

VK_TEST_CLASS(TestQueryRecord);

#include "TestQueryRecord.moc"
