#include <thread>

#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "SmallOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

QStringList KeysOf(const RecordCollection &aRecords) {
    QStringList keys;
    for (qsizetype i = 0; i < aRecords.Count(); ++i) keys << aRecords.KeyAt(i);
    keys.sort();
    return keys;
}

std::shared_ptr<BlankQueries> Blanks() {
    return Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
}
std::shared_ptr<PersonQueries> Persons() {
    return Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
}
std::shared_ptr<DBQAccStream> Streams() {
    return Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream");
}

LooseValue Day(const QString &aText) {
    return aText.isEmpty() ? LooseValue(Null()) : LooseValue(QDate::fromString(aText, Qt::ISODate));
}

}  // namespace

/// What the providers give, over the records of the small office.
class TestProviders : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFETCH(QString, kind);
        theFolder = &theFolders.Of(kind);
        if (!theFolder->Complaint().isEmpty()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        if (!theAddresses.contains(kind)) theAddresses[kind] = OpenSmallOffice(*theFolder);
        Vk_Records::OpenDatabase(theAddresses[kind]);
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void Window_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::addColumn<QString>("versions");
        QTest::addColumn<QString>("types");
        struct Row {
            const char *From, *To, *Versions, *Types;
        };
        static constexpr Row rows[] = {
            {"", "", "_31 _32 _33 _34", "_21 _22 _23"},
            {"2018-12-31", "", "_31 _32 _34", "_21 _23"},  // the last day of a version
            {"2019-01-01", "", "_32 _34", "_21 _23"},      // the day after it
            {"2016-06-30", "", "_31 _32 _33 _34", "_21 _22 _23"},
            {"2016-07-01", "", "_31 _32 _34", "_21 _23"},
            {"", "2014-12-31", "_33 _34", "_22 _23"},          // the day before a version
            {"", "2015-01-01", "_31 _33 _34", "_21 _22 _23"},  // its first day
            {"2018-12-31", "2018-12-31", "_31 _34", "_21 _23"},
            {"2019-01-01", "2019-01-01", "_32 _34", "_21 _23"},
            {"2018-01-01", "2019-06-01", "_31 _32 _34", "_21 _23"},
            {"2019-01-01", "2018-12-31", "", ""},  // a window without a day
            {"2099-01-01", "", "_32 _34", "_21 _23"},
        };
        for (const char *kind : {"sqlite", "postgresql"}) {
            for (const Row &row : rows)
                QTest::addRow("%s %s to %s", kind, row.From, row.To)
                    << QString::fromLatin1(kind) << QString::fromLatin1(row.From)
                    << QString::fromLatin1(row.To) << QString::fromLatin1(row.Versions)
                    << QString::fromLatin1(row.Types);
        }
    }
    void Window() {
        QFETCH(QString, from);
        QFETCH(QString, to);
        QFETCH(QString, versions);
        QFETCH(QString, types);
        const auto found = Blanks()->GetTemplates(Day(from), Day(to), false);
        QCOMPARE(KeysOf(*found), versions.split(u' ', Qt::SkipEmptyParts));
        const auto classes = Blanks()->GetTemplates(Day(from), Day(to), true);
        QCOMPARE(KeysOf(*classes), types.split(u' ', Qt::SkipEmptyParts));
    }

    void InvalidDateLeavesASideOpen_data() { OfficeFolders::AddRoads(); }
    void InvalidDateLeavesASideOpen() {
        QCOMPARE(KeysOf(*Blanks()->GetTemplates(QDate(), QDate(), false)),
                 KeysOf(*Blanks()->GetTemplates(Empty(), Empty(), false)));
    }

    void TemplatesAreWhole_data() { OfficeFolders::AddRoads(); }
    void TemplatesAreWhole() {
        const auto versions = Blanks()->GetTemplates(Null(), Null(), false);
        const auto &newer = *versions->Fetch(QStringLiteral("_32"));
        QVERIFY(newer.BegDate() == LooseValue(QDate(2019, 1, 1)));
        QVERIFY(IsEmpty(newer.EndDate()));
        QCOMPARE(newer.GetDisplayName(), QStringLiteral("НДС 2"));
        QCOMPARE(newer.TemplateType()->KND(), QStringLiteral("1151001"));
        QCOMPARE(newer.TemplateType(), versions->Fetch(QStringLiteral("_31"))->TemplateType());
        const auto types = Blanks()->GetTemplates(Empty(), Null(), true);
        const auto type =
            std::dynamic_pointer_cast<VkTemplType>(types->Fetch(QStringLiteral("_22")));
        QCOMPARE(type->ShortName(), QStringLiteral("Прибыль"));
        QVERIFY(type->IsExcludedFromSearch());
    }

    void PersonsLeaveNobodyOut_data() { OfficeFolders::AddRoads(); }
    void PersonsLeaveNobodyOut() {
        const auto persons = Persons()->GetPersons(QString(), 0);
        QCOMPARE(KeysOf(*persons).join(u' '), QStringLiteral("_1 _2 _3 _4 _5"));
        const auto branch = persons->Fetch(QStringLiteral("_2"));
        QCOMPARE(branch->GetParentOrganization(), persons->Fetch(QStringLiteral("_1")));
        QCOMPARE(persons->Fetch(QStringLiteral("_3"))->GetParentOrganization()->ID(), 0.0);
        QCOMPARE(branch->Kpp(), QStringLiteral("770243001"));
    }

    void TaxpayersOwnStreams_data() { OfficeFolders::AddRoads(); }
    void TaxpayersOwnStreams() {
        const auto taxpayers = Persons()->GetTaxpayers();
        QCOMPARE(KeysOf(*taxpayers).join(u' '), QStringLiteral("_1 _3 _5"));
        // The parent owns nothing and is no taxpayer, yet its branch knows it.
        const auto parent = taxpayers->Fetch(QStringLiteral("_5"))->GetParentOrganization();
        QCOMPARE(parent->ID(), 4.0);
        QCOMPARE(parent->GetDisplayName(), QStringLiteral("АО \"Василёк\""));
    }

    void AllStreams_data() { OfficeFolders::AddRoads(); }
    void AllStreams() {
        const auto streams = Streams()->GetAccStreams(QString(), 0);
        QCOMPARE(KeysOf(*streams).join(u' '), QStringLiteral("_11 _12 _13 _15"));
        const auto first = streams->Fetch(QStringLiteral("_11"));
        QCOMPARE(first->DisplayName(), QStringLiteral("ИФНС"));
        QCOMPARE(first->GetOfficeCodeForDisplay(), QStringLiteral("7701, 7702"));
        QCOMPARE(first->Person()->GetDisplayName(), QStringLiteral("ООО \"Ромашка\""));
        QCOMPARE(first->Person(), streams->Fetch(QStringLiteral("_12"))->Person());
        QCOMPARE(streams->Fetch(QStringLiteral("_12"))->GetIconKey(),
                 QStringLiteral("acc_stream_closed"));
        const auto ofBranch = streams->Fetch(QStringLiteral("_15"));
        QCOMPARE(ofBranch->Person()->GetParentOrganization()->ID(), 4.0);
    }

    void Availability_data() { OfficeFolders::AddRoads(); }
    void Availability() {
        std::shared_ptr<Recordset> categories;
        std::shared_ptr<Recordset> times;
        Blanks()->GetTemplTypeAvailability(1, 21, categories, times);
        QVERIFY(categories && times);
        const auto number = [](const std::shared_ptr<Recordset> &rows, const char *field) {
            return ToLong(rows->Value(QString::fromLatin1(field)));
        };
        times->MoveFirst();
        QCOMPARE(number(times, "the_year"), 2019);
        QCOMPARE(number(times, "month_id"), 18);
        times->MoveNext();
        QCOMPARE(number(times, "the_year"), 2020);
        QCOMPARE(number(times, "month_id"), 13);
        times->MoveNext();
        QVERIFY(times->EndOfData());
        categories->MoveFirst();
        QCOMPARE(number(categories, "TPCategory_ID"), 1);
        QCOMPARE(number(categories, "AccStreamType"), 4);
        QCOMPARE(number(categories, "AllowedForMainOrg"), 1);
        QCOMPARE(number(categories, "AllowedForBranch"), 0);
        categories->MoveNext();
        QCOMPARE(number(categories, "TPCategory_ID"), 2);
        QCOMPARE(number(categories, "AllowedForBranch"), 1);
        categories->MoveNext();
        QVERIFY(categories->EndOfData());
    }

    void FullNames_data() { OfficeFolders::AddRoads(); }
    void FullNames() {
        const auto names = Blanks()->GetTemplTypeNames(21);
        const QString field = QStringLiteral("full_name");
        QVERIFY(names->Value(field) == LooseValue(QStringLiteral("Первое имя")));
        names->MoveNext();
        QVERIFY(names->Value(QStringLiteral("FULL_NAME")) ==
                LooseValue(QStringLiteral("Второе имя")));
        names->MoveNext();
        QVERIFY(names->Value(field) == LooseValue(QString()));
        names->MoveNext();
        QVERIFY(names->EndOfData());
        names->MoveNext();
        QVERIFY(names->EndOfData());
        names->MoveFirst();
        QVERIFY(names->Value(field) == LooseValue(QStringLiteral("Первое имя")));
    }

    void EmptyRecordset_data() { OfficeFolders::AddRoads(); }
    void EmptyRecordset() {
        for (const double id : {22.0, 777.0, 0.5}) {
            const auto names = Blanks()->GetTemplTypeNames(id);
            QVERIFY(names->EndOfData());
            QCOMPARE(RaisedBy([&] { names->MoveFirst(); }).Description(),
                     QStringLiteral("В наборе записей нет текущей строки."));
            QVERIFY(names->EndOfData());
            QCOMPARE(RaisedBy([&] { names->Value(QStringLiteral("full_name")); }).Number(),
                     qint32(SubscriptOutOfRange));
        }
    }

    void MissingField_data() { OfficeFolders::AddRoads(); }
    void MissingField() {
        const auto names = Blanks()->GetTemplTypeNames(21);
        QCOMPARE(RaisedBy([&] { names->Value(QStringLiteral("nick")); }).Description(),
                 QStringLiteral("В наборе записей нет поля \"nick\"."));
    }

    void UnknownConditions_data() { OfficeFolders::AddRoads(); }
    void UnknownConditions() {
        const QString refusal = QStringLiteral("Запрос с таким условием не поддерживается: ");
        QCOMPARE(RaisedBy([] { Persons()->GetPersons(QStringLiteral("a"), 0); }).Description(),
                 refusal + QStringLiteral("отбор \"a\"."));
        QCOMPARE(RaisedBy([] { Streams()->GetAccStreams(QString(), 2); }).Description(),
                 refusal + QStringLiteral("признаки 2."));
        std::shared_ptr<Recordset> rows;
        QCOMPARE(
            RaisedBy([&] { Blanks()->GetTemplTypeAvailability(2, 21, rows, rows); }).Description(),
            refusal + QStringLiteral("вид 2."));
    }

    void EveryThreadHasItsConnection_data() { OfficeFolders::AddRoads(); }
    void EveryThreadHasItsConnection() {
        const auto here = Persons();
        QCOMPARE(here->GetPersons(QString(), 0)->Count(), 5);
        qsizetype there = 0;
        Failure afterwards(0, QString(), QString());
        std::thread([&] {
            there = here->GetPersons(QString(), 0)->Count();
            Vk_Records::CloseDatabase();
            afterwards = RaisedBy([&] { here->GetPersons(QString(), 0); });
        }).join();
        QCOMPARE(there, 5);
        QCOMPARE(afterwards.Number(), qint32(Vk_Records::DatabaseNotOpen));
        QCOMPARE(RaisedBy([&] { here->GetPersons(QString(), 0); }).Number(),
                 qint32(Vk_Records::DatabaseNotOpen));
    }

    void AnotherOfficeTakesThePlace_data() { OfficeFolders::AddRoads(); }
    void AnotherOfficeTakesThePlace() {
        const auto persons = Persons();
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 5);
        Vk_Records::OpenDatabase(theFolder->NewAddress(), Vk_Records::NewDatabase::Empty);
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 0);
        QCOMPARE(persons->GetTaxpayers()->Count(), 0);
        QCOMPARE(Streams()->GetAccStreams(QString(), 0)->Count(), 0);
        QCOMPARE(Blanks()->GetTemplates(Null(), Null(), true)->Count(), 0);
    }

    void FailedOpeningLeavesTheOldOfficeOpen_data() { OfficeFolders::AddRoads(); }
    void FailedOpeningLeavesTheOldOfficeOpen() {
        QVERIFY(RaisedBy([] {
                    Vk_Records::OpenDatabase(QStringLiteral("sqlite:/no such folder/a.db"));
                }).Number() != 0);
        QCOMPARE(Persons()->GetPersons(QString(), 0)->Count(), 5);
    }

private:
    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    QHash<QString, QString> theAddresses;
};

VK_TEST_CLASS(TestProviders);

#include "TestProviders.moc"
