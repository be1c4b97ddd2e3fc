#include <thread>

#include <QTest>

#include <Vk_DocQuery/RecordAnnouncements.h>
#include <Vk_DocQuery/SupplierNotes.h>
#include <Vk_DocQuery/VkDocQueryData.h>
#include <Vk_Records/Database.h>

#include "browser/TemplateQuerierForm.h"
#include "foundation/mVkDBProvider.h"
#include "foundation/OpenNotes.h"
#include "queryfile/XmlNode.h"
#include "SmallOffice.h"
#include "StatementLog.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theAnnouncements = QStringLiteral("Vk_DBProvider.RecordAnnouncements");
const QString thePerson = QStringLiteral("Vk_Records.VkPerson");
const QString theStream = QStringLiteral("Vk_Records.VkAccStream");

QString NameOf(double aID) {
    const auto person = Made<VkPerson>(u"Vk_Records.VkPerson");
    person->SetID(aID);
    return person->GetDisplayName();
}

QStringList NamesOf(double aFormID) {
    QStringList names;
    const auto rows = GetBlankQueries().GetTemplTypeNames(aFormID);
    for (; !rows->EndOfData(); rows->MoveNext())
        names << ToText(rows->Value(QStringLiteral("full_name")));
    return names;
}

/// The persons of a query file with these identities.
std::shared_ptr<RecordCollection> ReadPersons(const std::vector<int> &aIDs) {
    QByteArray text = "<q><TaxpayersCriteria IsTaxpayers='1'><TaxpayersList>";
    for (const int id : aIDs) text += "<i id='" + QByteArray::number(id) + "'/>";
    text += "</TaxpayersList></TaxpayersCriteria></q>";
    XmlDocument document;
    if (!document.LoadBytes(text)) qFatal("no document");
    VkDocQueryData query;
    query.ReadFromXml(document.Node().SelectSingleNode("q"));
    return query.TaxpayersList;
}

/// Writes down what it is told, with the statements that came before.
class Listener final : public RecordAnnouncements {
public:
    static inline QStringList Heard;
    void AnnounceRecords(const QString &aClass, const std::vector<double> &aIDs) override {
        Write(aClass, aIDs);
        if (!SupplierNotes(u"listener")) Heard << QStringLiteral("no place for notes");
    }
    void AnnounceFormNames(const std::vector<double> &aIDs) override {
        Write(QStringLiteral("names"), aIDs);
    }

private:
    static void Write(QString aWhat, const std::vector<double> &aIDs) {
        for (const double id : aIDs) aWhat += u' ' + QString::number(id);
        Heard << aWhat;
    }
};

class Thrower final : public RecordAnnouncements {
public:
    void AnnounceRecords(const QString &, const std::vector<double> &) override {
        throw Failure(7, QString(), QStringLiteral("in the middle"));
    }
    void AnnounceFormNames(const std::vector<double> &) override { throw std::bad_alloc(); }
};

class Stranger final : public Object {};

}  // namespace

/// What the supplier is told beforehand, and what becomes of it.
class TestAnnouncements : public QObject {
    Q_OBJECT

private slots:
    void init() {
        QFETCH(QString, kind);
        theFolder = &theFolders.Of(kind);
        if (!theFolder->Complaint().isEmpty()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        theAddress = OpenSmallOffice(*theFolder);
    }
    void cleanup() { Vk_Records::CloseDatabase(); }

    void WhatIsTold_data() { OfficeFolders::AddRoads(); }
    void WhatIsTold() {
        RegisterClass<Listener>(theAnnouncements);
        Listener::Heard.clear();
        QCOMPARE(ReadPersons({3, 1, 3})->Count(), 3);
        QCOMPARE(ReadPersons({})->Count(), 0);
        TemplateQuerierForm form;
        form.Prepare();
        QCOMPARE(Listener::Heard,
                 (QStringList{QStringLiteral("Vk_Records.VkPerson 3 1 3"),
                              QStringLiteral("names 21 23")}));  // 22 is excluded from the search
        ClassRegistry::Unregister(theAnnouncements);
    }

    /// Without one, with one that fails, and with something else under its name.
    void SuppliersThatDoNotListen_data() { OfficeFolders::AddRoads(); }
    void SuppliersThatDoNotListen() {
        const ClassRegistry::Factory factories[] = {
            [] { return std::make_shared<Thrower>(); }, [] { return std::make_shared<Stranger>(); },
            [] { return std::make_shared<RecordAnnouncements>(); },
            []() -> std::shared_ptr<Object> { return nullptr; }};
        const auto check = [] {
            QCOMPARE(ReadPersons({3, 1})->At(1)->GetDisplayName(),
                     QStringLiteral("ООО \"Ромашка\""));
            TemplateQuerierForm form;
            form.Prepare();
        };
        for (const auto &factory : factories) {
            ClassRegistry::Register(theAnnouncements, factory);
            check();
        }
        ClassRegistry::Unregister(theAnnouncements);
        check();
    }

    void AnotherProcessInBetween_data() { OfficeFolders::AddRoads(); }
    void AnotherProcessInBetween() {
        const OpenNotes notes;
        AnnounceRecords(thePerson, {1, 3});
        AnnounceFormNames({21, 22});
        const QStringList names = NamesOf(21);
        QCOMPARE(names.size(), 3);
        theFolder->Tamper(theAddress,
                          {QStringLiteral("UPDATE person SET display_name = 'Другое'"),
                           QStringLiteral("DELETE FROM acc_stream"),
                           QStringLiteral("DELETE FROM person WHERE id = 3"),
                           QStringLiteral("INSERT INTO templ_type_name VALUES (22, 1, 'Новое')"),
                           QStringLiteral("DELETE FROM templ_type_name WHERE templ_type_id = 21")});
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
        QCOMPARE(NameOf(3), QStringLiteral("ИП Иванов И. И."));
        QCOMPARE(NamesOf(21), names);
        QCOMPARE(NamesOf(22), QStringList());

        AnnounceRecords(thePerson, {1, 3});  // what was noted before is older than this
        AnnounceFormNames({21, 22});
        QCOMPARE(NameOf(1), QStringLiteral("Другое"));
        CheckMissing(3, QStringLiteral("3"));
        QCOMPARE(NamesOf(21), QStringList());
        QCOMPARE(NamesOf(22), QStringList{QStringLiteral("Новое")});
    }

    void AnnouncementThatFailsForgetsToo_data() { OfficeFolders::AddRoads(); }
    void AnnouncementThatFailsForgetsToo() {
        const OpenNotes notes;
        AnnounceRecords(thePerson, {1});
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
        theFolder->Tamper(theAddress, {QStringLiteral("ALTER TABLE person RENAME TO elsewhere")});
        AnnounceRecords(thePerson, {1});
        const Failure failure = RaisedBy([] { NameOf(1); });
        QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseDamaged));
    }

    void AnnouncementWithoutAnOfficeForgetsToo_data() { OfficeFolders::AddRoads(); }
    void AnnouncementWithoutAnOfficeForgetsToo() {
        const OpenNotes notes;
        AnnounceRecords(thePerson, {1});
        AnnounceFormNames({21});
        Vk_Records::CloseDatabase();
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
        AnnounceRecords(thePerson, {1});
        AnnounceFormNames({21});
        for (const auto &failure : {RaisedBy([] { NameOf(1); }), RaisedBy([] { NamesOf(21); })})
            QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseNotOpen));
    }

    void IdentitiesThatAreNotThere_data() { OfficeFolders::AddRoads(); }
    void IdentitiesThatAreNotThere() {
        const OpenNotes notes;
        AnnounceRecords(thePerson, {777, 1, 0, -1, 1.5, 1e300, 1, 5e12});
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
        CheckMissing(777, QStringLiteral("777"));
        CheckMissing(0, QStringLiteral("0"));
        CheckMissing(-1, QStringLiteral("-1"));
        CheckMissing(1.5, QStringLiteral("1.5"));
        CheckMissing(1e300, QStringLiteral("1E+300"));
        AnnounceRecords(thePerson, {0, -5});
        AnnounceRecords(QStringLiteral("Vk_Records.Unknown"), {1});
        AnnounceFormNames({0.5, 777});
        QCOMPARE(NamesOf(777), QStringList());
        QCOMPARE(NamesOf(0.5), QStringList());
        QCOMPARE(NamesOf(21).size(), 3);
        const Failure failure = RaisedBy([] { ReadPersons({1, 777}); });
        QCOMPARE(failure.Number(), qint32(Vk_Records::RecordMissing));
    }

    void HundredThousand_data() { OfficeFolders::AddRoads(); }
    void HundredThousand() {
        theFolder->Tamper(
            theAddress,
            {QStringLiteral("WITH RECURSIVE n (i) AS (SELECT 1001 UNION ALL SELECT i + 1 FROM n "
                            "WHERE i < 101000) INSERT INTO person SELECT i, 3, '', '', "
                            "'Налогоплательщик ' || i, 'Налогоплательщик', 0, NULL, NULL FROM n")});
        std::vector<int> ids;
        for (int i = 0; i < 100000; ++i)
            ids.push_back(1001 + static_cast<int>(i * 7919LL % 100000));
        theLog.Begin(*theFolder);
        const auto persons = ReadPersons(ids);
        QCOMPARE(theLog.Since(*theFolder).size(), 1);
        QCOMPARE(persons->Count(), 100000);
        for (qsizetype i = 0; i < persons->Count(); i += 9973)
            QCOMPARE(persons->At(i)->GetDisplayName(),
                     QStringLiteral("Налогоплательщик %1").arg(ids[static_cast<std::size_t>(i)]));
    }

    void NeverFetchedIsFreed_data() { OfficeFolders::AddRoads(); }
    void NeverFetchedIsFreed() {
        std::weak_ptr<void> persons;
        {
            const OpenNotes notes;
            AnnounceRecords(thePerson, {1, 2, 3});
            persons = *SupplierNotes(thePerson);
            QVERIFY(!persons.expired());
        }
        QVERIFY(persons.expired());
        QVERIFY(!SupplierNotes(thePerson));
        theLog.Begin(*theFolder);
        AnnounceRecords(thePerson, {1, 2, 3});  // there is no place to note it
        AnnounceFormNames({21});
        QCOMPARE(theLog.Since(*theFolder), QStringList());
    }

    void AnotherThread_data() { OfficeFolders::AddRoads(); }
    void AnotherThread() {
        const OpenNotes notes;
        AnnounceRecords(thePerson, {1});
        theFolder->Tamper(theAddress,
                          {QStringLiteral("UPDATE person SET display_name = 'Другое'")});
        QString there;
        QString announcedThere;
        std::thread([&] {
            there = NameOf(1);
            const OpenNotes notesThere;
            AnnounceRecords(thePerson, {1});
            theFolder->Tamper(theAddress, {QStringLiteral("UPDATE person SET display_name = '3'")});
            announcedThere = NameOf(1);
        }).join();
        QCOMPARE(there, QStringLiteral("Другое"));
        QCOMPARE(announcedThere, QStringLiteral("Другое"));
        QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
    }

    void ServerIsLostInBetween_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("postgresql") << QStringLiteral("postgresql");
    }
    void ServerIsLostInBetween() {
        auto &server = static_cast<ServerFolder &>(*theFolder);
        {
            const OpenNotes notes;
            AnnounceRecords(thePerson, {1, 3});
            server.Stop();
            QCOMPARE(NameOf(1), QStringLiteral("ООО \"Ромашка\""));
            QCOMPARE(NameOf(3), QStringLiteral("ИП Иванов И. И."));
            QCOMPARE(RaisedBy([] { NameOf(2); }).Number(),
                     qint32(Vk_Records::DatabaseConnectionLost));
        }
        QCOMPARE(RaisedBy([] { ReadPersons({1}); }).Number(),
                 qint32(Vk_Records::DatabaseUnreachable));
        server.Start();
        QCOMPARE(ReadPersons({1})->Count(), 1);
        server.Stop();
        server.Start();
        QCOMPARE(ReadPersons({1})->Count(), 1);  // the announcement finds out and connects anew
    }

    /// A list of streams takes two statements.
    void OwnersChangeBetweenTheStatements_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("sqlite") << QStringLiteral("sqlite");
    }
    void OwnersChangeBetweenTheStatements() {
        theLog.Before(QStringLiteral("FROM person p"), [this] {
            theFolder->Tamper(theAddress,
                              {QStringLiteral("UPDATE acc_stream SET person_id = 4 WHERE id = 13"),
                               QStringLiteral("DELETE FROM acc_stream WHERE id = 15")});
        });
        theLog.Begin(*theFolder);
        const auto streams =
            Made<DBQAccStream>(u"Vk_DBProvider.DBQAccStream")->GetAccStreams(QString(), 0);
        QCOMPARE(streams->Count(), 3);
        QCOMPARE(streams->Fetch(QStringLiteral("_13"))->Person()->ID(), 4.0);
        QCOMPARE(streams->Fetch(QStringLiteral("_12"))->Person()->ID(), 1.0);
    }

private:
    void CheckMissing(double aID, const QString &aShown) const {
        const Failure failure = RaisedBy([&] { NameOf(aID); });
        QCOMPARE(
            failure.Description(),
            QStringLiteral("Объекта Vk_Records.VkPerson с идентификатором %1 нет в базе данных "
                           "\"%2\": он удален или взят из другой базы.")
                .arg(aShown, theFolder->Shown(theAddress)));
        QCOMPARE(failure.Number(), qint32(Vk_Records::RecordMissing));
    }

    StatementLog theLog;
    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    QString theAddress;
};

VK_TEST_CLASS(TestAnnouncements);

#include "TestAnnouncements.moc"
