#include <QFile>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "LargeOffice.h"
#include "OfficeFolder.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

QStringList FactsOf(const RecordCollection &aRecords) {
    QStringList facts;
    for (const auto &record : aRecords)
        facts << ObjectKey(record->ID()) + record->Inn() + record->Kpp() + record->GetDisplayName();
    return facts;
}

}  // namespace

/// The offices that are made for measuring.
class TestLargeOffice : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void HasTheSizeAskedFor() {
        const QString address = theFolder.NewAddress();
        Vk_Records::MakeLargeOffice(address, {1000, 250, 30});
        Vk_Records::OpenDatabase(address);
        const auto persons = Made<PersonQueries>(u"Vk_DBProvider.PersonQueries");
        const auto all = persons->GetPersons(QString(), 0);
        QCOMPARE(all->Count(), 1000);
        QCOMPARE(persons->GetTaxpayers()->Count(), 250);
        QCOMPARE(
            Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0)->Count(),
            250);
        const auto blanks = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries");
        QCOMPARE(blanks->GetTemplates(Null(), Null(), true)->Count(), 30);
        QCOMPARE(blanks->GetTemplates(Null(), Null(), false)->Count(), 90);
        int branches = 0;
        for (const auto &record : *all) {
            const auto person = std::dynamic_pointer_cast<VkPerson>(record);
            QCOMPARE(person->Kpp().size(), person->IsOrganization() ? 9 : 0);
            QCOMPARE(person->Inn().size(), person->IsOrganization() ? 10 : 12);
            if (!person->IsBranch()) continue;
            ++branches;
            QCOMPARE(person->GetParentOrganization()->Inn(), person->Inn());
        }
        QCOMPARE(branches, 200);
    }

    void IsTheSameEachTime() {
        QStringList facts[2];
        for (QStringList &office : facts) {
            const QString address = theFolder.NewAddress();
            Vk_Records::MakeLargeOffice(address, {50, 0, 0});
            Vk_Records::OpenDatabase(address);
            office = FactsOf(
                *Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0));
        }
        QCOMPARE(facts[0].size(), 50);
        QCOMPARE(facts[0], facts[1]);
    }

    void LeavesAnOfficeThatIsThereAlone() {
        const QString address = theFolder.NewAddress();
        Vk_Records::MakeLargeOffice(address, {5, 0, 0});
        QCOMPARE(RaisedBy([&] {
                     Vk_Records::MakeLargeOffice(address, {7, 0, 0});
                 }).Description(),
                 QStringLiteral("База данных \"%1\" уже есть. Укажите имя новой базы.")
                     .arg(theFolder.Shown(address)));
        Vk_Records::OpenDatabase(address);
        QCOMPARE(
            Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0)->Count(),
            5);
    }

    void StreamsNeedPersons() {
        const QString address = theFolder.NewAddress();
        QCOMPARE(RaisedBy([&] {
                     Vk_Records::MakeLargeOffice(address, {0, 5, 0});
                 }).Description(),
                 QStringLiteral(
                     "Комплектам отчетности нужны налогоплательщики: их число не может быть 0."));
        QVERIFY(!QFile::exists(theFolder.Shown(address)));
    }

private:
    SqliteFolder theFolder;
};

VK_TEST_CLASS(TestLargeOffice);

#include "TestLargeOffice.moc"
