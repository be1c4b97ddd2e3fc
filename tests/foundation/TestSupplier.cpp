#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_DocQuery/Supplier.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A supplier that tells what it was given, and counts how often it is asked.
class Given : public Supplier {
public:
    std::vector<PersonFacts> Persons() override {
        ++Asked;
        return People;
    }
    std::vector<StreamFacts> Streams() override { return Sets; }
    std::vector<FormFacts> Forms() override { return Blanks; }
    std::vector<VersionFacts> Versions() override { return Editions; }

    int Asked = 0;
    std::vector<PersonFacts> People;
    std::vector<StreamFacts> Sets;
    std::vector<FormFacts> Blanks;
    std::vector<VersionFacts> Editions;
};

PersonFacts Person(double aID, PersonFacts::Kinds aKind, const char16_t *aName,
                   double aParent = 0) {
    PersonFacts facts;
    facts.ID = aID;
    facts.Kind = aKind;
    facts.Name = QString::fromUtf16(aName);
    facts.ParentID = aParent;
    return facts;
}

std::shared_ptr<Given> SmallSupply() {
    auto given = std::make_shared<Given>();
    given->People = {Person(2, PersonFacts::Branch, u"Филиал", 1),
                     Person(1, PersonFacts::Organization, u"Ромашка"),
                     Person(3, PersonFacts::PrivatePerson, u"Иванов")};
    given->People[1].OwnerName = QStringLiteral("Ромашка, ООО");
    given->People[1].IsMain = true;
    given->People[2].HandsInReports = false;
    StreamFacts stream;
    stream.ID = 11;
    stream.PersonID = 2;
    stream.Name = QStringLiteral("ИФНС");
    given->Sets = {stream};
    FormFacts form;
    form.ID = 21;
    form.ShortName = QStringLiteral("НДС");
    form.FullNames = {QStringLiteral("Первое"), QStringLiteral("Второе")};
    form.Periods = {{2020, 13}};
    form.Categories = {{2, 4, true, false}};
    given->Blanks = {form};
    VersionFacts old;
    old.ID = 31;
    old.FormID = 21;
    old.LastDay = QDate(2018, 12, 31);
    VersionFacts today = old;
    today.ID = 32;
    today.FirstDay = QDate(2019, 1, 1);
    today.LastDay = QDate();
    given->Editions = {old, today};
    return given;
}

template <class Class>
std::shared_ptr<Class> Made(const char *aName) {
    return std::dynamic_pointer_cast<Class>(ClassRegistry::Create(QString::fromLatin1(aName)));
}

QString Keys(const RecordCollection &aRecords) {
    QStringList keys;
    for (const auto &record : aRecords) keys << ObjectKey(record->ID());
    return keys.join(u' ');
}

std::shared_ptr<BlankQueries> Blanks() {
    return Made<BlankQueries>("Vk_DBProvider.BlankQueries");
}

}  // namespace

/// What the library makes of the facts that a supplier tells.
class TestSupplier : public QObject {
    Q_OBJECT

private slots:
    void init() {
        theGiven = SmallSupply();
        EnterSupplier(theGiven);
    }

    void WhatIsNotToldIsEmpty() {
        EnterSupplier(std::make_shared<Supplier>());
        const auto persons = Made<PersonQueries>("Vk_DBProvider.PersonQueries");
        QCOMPARE(persons->GetPersons(QString(), 0)->Count(), 0);
        QCOMPARE(persons->GetTaxpayers()->Count(), 0);
        QCOMPARE(
            Made<DBQAccStream>("Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0)->Count(),
            0);
        QCOMPARE(Blanks()->GetTemplates(Null(), Null(), true)->Count(), 0);
        QCOMPARE(Blanks()->GetTemplates(Null(), Null(), false)->Count(), 0);
    }

    void PersonsInTheirOrder() {
        const auto persons = Made<PersonQueries>("Vk_DBProvider.PersonQueries");
        const auto all = persons->GetPersons(QString(), 0);
        QCOMPARE(Keys(*all), QStringLiteral("_2 _1 _3"));
        QCOMPARE(Keys(*persons->GetTaxpayers()), QStringLiteral("_2 _1"));
        const auto branch = std::dynamic_pointer_cast<VkPerson>(all->At(0));
        const auto head = std::dynamic_pointer_cast<VkPerson>(all->At(1));
        const auto man = std::dynamic_pointer_cast<VkPerson>(all->At(2));
        QCOMPARE(branch->GetParentOrganization()->ID(), 1.0);
        QCOMPARE(head->GetParentOrganization()->ID(), 0.0);
        QVERIFY(branch->IsBranch() && branch->IsOrganization() && !branch->IsMainOrganization());
        QVERIFY(!head->IsBranch() && head->IsOrganization() && head->IsMainOrganization());
        QVERIFY(!man->IsBranch() && !man->IsOrganization());
        QCOMPARE(head->GetDisplayNameAsAccPerson(), QStringLiteral("Ромашка, ООО"));
        QCOMPARE(man->GetDisplayNameAsAccPerson(), QStringLiteral("Иванов"));
        QCOMPARE(branch->GetIconKeyAsAccPerson() + head->GetIconKeyAsAccPerson() +
                     man->GetIconKeyAsAccPerson(),
                 QStringLiteral("branchorgsman_purple"));
        theGiven->People[1].IsMain = false;
        theGiven->People[2].IconKey = QStringLiteral("worker");
        const auto later = persons->GetPersons(QString(), 0);
        QCOMPARE(later->At(1)->GetIconKeyAsAccPerson() + later->At(2)->GetIconKeyAsAccPerson(),
                 QStringLiteral("orgworker"));
    }

    void StreamsAndTheirOwners() {
        const auto streams =
            Made<DBQAccStream>("Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0);
        QCOMPARE(Keys(*streams), QStringLiteral("_11"));
        QCOMPARE(streams->At(0)->DisplayName(), QStringLiteral("ИФНС"));
        QCOMPARE(streams->At(0)->GetIconKey(), QStringLiteral("acc_stream"));
        QCOMPARE(streams->At(0)->Person()->GetParentOrganization()->ID(), 1.0);
    }

    void VersionsOfAWindow_data() {
        QTest::addColumn<QDate>("from");
        QTest::addColumn<QDate>("to");
        QTest::addColumn<QString>("versions");
        QTest::newRow("open") << QDate() << QDate() << QStringLiteral("_31 _32");
        QTest::newRow("last day") << QDate(2018, 12, 31) << QDate() << QStringLiteral("_31 _32");
        QTest::newRow("after") << QDate(2019, 1, 1) << QDate() << QStringLiteral("_32");
        QTest::newRow("before") << QDate() << QDate(2018, 12, 31) << QStringLiteral("_31");
    }
    void VersionsOfAWindow() {
        QFETCH(QDate, from);
        QFETCH(QDate, to);
        QFETCH(QString, versions);
        const auto side = [](QDate aDay) { return aDay.isValid() ? LooseValue(aDay) : Null(); };
        QCOMPARE(Keys(*Blanks()->GetTemplates(side(from), side(to), false)), versions);
        QCOMPARE(Keys(*Blanks()->GetTemplates(side(from), side(to), true)), QStringLiteral("_21"));
    }

    void FactsOfAForm() {
        const auto names = Blanks()->GetTemplTypeNames(21);
        names->MoveFirst();
        QCOMPARE(ToText(names->Value(QStringLiteral("full_name"))), QStringLiteral("Первое"));
        names->MoveNext();
        QCOMPARE(ToText(names->Value(QStringLiteral("full_name"))), QStringLiteral("Второе"));
        names->MoveNext();
        QVERIFY(names->EndOfData());
        QVERIFY(RaisedBy([&] { names->Value(QStringLiteral("full_name")); }).Number() != 0);
        std::shared_ptr<Recordset> categories;
        std::shared_ptr<Recordset> times;
        Blanks()->GetTemplTypeAvailability(1, 21, categories, times);
        QCOMPARE(ToLong(times->Value(QStringLiteral("the_year"))), 2020);
        QCOMPARE(ToLong(times->Value(QStringLiteral("month_id"))), 13);
        QCOMPARE(ToLong(categories->Value(QStringLiteral("TPCategory_ID"))), 2);
        QCOMPARE(ToLong(categories->Value(QStringLiteral("AccStreamType"))), 4);
        QVERIFY(ToLong(categories->Value(QStringLiteral("AllowedForMainOrg"))) != 0);
        QCOMPARE(ToLong(categories->Value(QStringLiteral("AllowedForBranch"))), 0);
        QCOMPARE(RaisedBy([&] { times->Value(QStringLiteral("day")); }).Description(),
                 QStringLiteral("В наборе записей нет поля \"day\"."));
    }

    void RecordsByIdentity() {
        const auto person = Made<VkPerson>("Vk_Records.VkPerson");
        person->SetID(2);
        QCOMPARE(person->GetDisplayName(), QStringLiteral("Филиал"));
        QCOMPARE(person->GetParentOrganization()->GetDisplayName(), QStringLiteral("Ромашка"));
        const auto stream = Made<VkAccStream>("Vk_Records.VkAccStream");
        stream->SetID(11);
        QCOMPARE(stream->Person()->ID(), 2.0);
        const auto version = Made<VkTemplate>("Vk_Records.VkTemplate");
        version->SetID(32);
        QCOMPARE(version->TemplateType()->ShortName(), QStringLiteral("НДС"));
        QVERIFY(IsEmpty(version->EndDate()));
        QCOMPARE(ToDate(version->BegDate()), QDate(2019, 1, 1));
    }

    void MissingRecord_data() {
        QTest::addColumn<QString>("name");
        for (const char *name : {"Vk_Records.VkPerson", "Vk_Records.VkAccStream",
                                 "Vk_Records.VkTemplType", "Vk_Records.VkTemplate"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void MissingRecord() {
        QFETCH(QString, name);
        const auto record = std::dynamic_pointer_cast<Record>(ClassRegistry::Create(name));
        QCOMPARE(RaisedBy([&] { record->SetID(99); }).Description(),
                 QStringLiteral("Объекта %1 с идентификатором 99 нет: он удален или взят из другой "
                                "базы.")
                     .arg(name));
    }

    void OwnerWhoIsNotThere() {
        theGiven->Sets[0].PersonID = 77;
        QCOMPARE(RaisedBy([] {
                     Made<DBQAccStream>("Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0);
                 }).Description(),
                 QStringLiteral("Объекта Vk_Records.VkPerson с идентификатором 77 нет: он удален "
                                "или взят из другой базы."));
    }

    /// A ring of branches is no endless road.
    void BranchOfItself() {
        theGiven->People[0].ParentID = 2;
        const auto all =
            Made<PersonQueries>("Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
        QCOMPARE(all->At(0)->GetParentOrganization()->GetParentOrganization()->ID(), 0.0);
    }

    void IsAskedOnceForAFile() {
        VkDocQueryData query;
        query.IsTaxpayers = true;
        query.TaxpayersList =
            Made<PersonQueries>("Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
        const QTemporaryDir folder;
        const QString name = folder.filePath(QStringLiteral("a.qvk"));
        QVERIFY2(query.WriteToXmlFile(name), qUtf8Printable(query.LastError));
        theGiven->Asked = 0;
        VkDocQueryData read;
        read.ReadFromXmlFile(name);
        QCOMPARE(Keys(*read.TaxpayersList), QStringLiteral("_2 _1 _3"));
        QCOMPARE(theGiven->Asked, 1);
        theGiven->People.pop_back();
        QVERIFY(RaisedBy([&] { read.ReadFromXmlFile(name); }).Number() != 0);
    }

    void OneClassIsReplaced() {
        struct Nobody : PersonQueries {
            std::shared_ptr<RecordCollection> GetPersons(const QString &, qint32) override {
                return std::make_shared<RecordCollection>();
            }
            std::shared_ptr<RecordCollection> GetTaxpayers() override { return GetPersons({}, 0); }
        };
        RegisterClass<Nobody>(QStringLiteral("Vk_DBProvider.PersonQueries"));
        QCOMPARE(Made<PersonQueries>("Vk_DBProvider.PersonQueries")->GetTaxpayers()->Count(), 0);
        QCOMPARE(Keys(*Made<DBQAccStream>("Vk_DBProvider.DBQAccStream")->GetAccStreams({}, 0)),
                 QStringLiteral("_11"));
    }

    void NoSupplierIsNone() {
        QCOMPARE(RaisedBy([] { EnterSupplier(nullptr); }).Description(),
                 QStringLiteral("Объект не задан: Supplier."));
    }

private:
    std::shared_ptr<Given> theGiven;
};

VK_TEST_CLASS(TestSupplier);

#include "TestSupplier.moc"
