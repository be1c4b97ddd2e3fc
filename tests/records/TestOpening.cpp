#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "SmallOffice.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;
using Vk_Records::NewDatabase;

/// What is looked for when an office is opened, on both databases; and where a server keeps it.
class TestOpening : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void EmptyDatabaseIsRefused_data() { OfficeFolders::AddKinds(); }
    void EmptyDatabaseIsRefused() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = theFolder->NewAddress();
        theFolder->Tamper(address, {QStringLiteral("CREATE TABLE a (b INTEGER)"),
                                    QStringLiteral("DROP TABLE a")});
        CheckOpening(address, Vk_Records::DatabaseEmpty,
                     QStringLiteral("База данных \"%1\" пуста. Заполните ее программой "
                                    "vk_make_office или укажите другую базу."));
        Vk_Records::OpenDatabase(address, NewDatabase::WithSampleOffice);
        Vk_Records::CloseDatabase();
        Vk_Records::OpenDatabase(address);
        QVERIFY(PersonsCount() >= 60);
    }

    void MissingTableIsFound_data() { OfficeFolders::AddKinds(); }
    void MissingTableIsFound() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        for (const char *table :
             {"person", "acc_stream_type", "acc_stream", "templ_type", "templ_type_name",
              "templ_type_time", "templ_type_category", "template"}) {
            const QString address = SmallOffice();
            const QString name = QString::fromLatin1(table);
            theFolder->Tamper(address,
                              {QStringLiteral("ALTER TABLE %1 RENAME TO elsewhere").arg(name)});
            CheckOpening(address, Vk_Records::DatabaseDamaged,
                         QStringLiteral("База данных \"%2\" повреждена: в ней нет таблиц: %1. "
                                        "Восстановите ее из резервной копии.")
                             .arg(name));
        }
    }

    void MissingColumnIsFound_data() { OfficeFolders::AddKinds(); }
    void MissingColumnIsFound() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = SmallOffice();
        theFolder->Tamper(address,
                          {QStringLiteral("ALTER TABLE template RENAME icon_key TO picture")});
        CheckOpening(address, Vk_Records::DatabaseDamaged,
                     QStringLiteral("База данных \"%1\" повреждена. Восстановите ее из резервной "
                                    "копии.") +
                         Said(theKind == QStringLiteral("sqlite")
                                  ? QStringLiteral("no such column: icon_key")
                                  : QStringLiteral("column \"icon_key\" does not exist")));
    }

    void SchemaOfTheUsersOwn() {
        ServerFolder *server = Server();
        if (!server) QSKIP("no server");
        const QString address = ForUser(SmallOffice(), QStringLiteral("anna"));
        theFolder->Tamper(address, {QStringLiteral("CREATE ROLE anna LOGIN"),
                                    QStringLiteral("CREATE SCHEMA anna AUTHORIZATION anna"),
                                    QStringLiteral("GRANT SELECT ON ALL TABLES IN SCHEMA public TO "
                                                   "anna")});
        for (const auto aNew : {NewDatabase::WithSampleOffice, NewDatabase::Refused}) {
            Vk_Records::OpenDatabase(address, aNew);
            QCOMPARE(PersonsCount(), 5);
        }
        // A table of hers that is called like one of ours is none of ours.
        theFolder->Tamper(address, {QStringLiteral("CREATE TABLE anna.person (id INTEGER)")});
        Vk_Records::OpenDatabase(address);
        QCOMPARE(PersonsCount(), 5);
        QCOMPARE(theFolder
                     ->Tamper(address, {QStringLiteral("SELECT count(*) FROM pg_tables WHERE "
                                                       "schemaname = 'anna'")})
                     .toInt(),
                 1);
    }

    void SchemaWithoutRights() {
        ServerFolder *server = Server();
        if (!server) QSKIP("no server");
        const QString address = ForUser(SmallOffice(), QStringLiteral("boris"));
        const QString forbidden = QStringLiteral(
            "Нет прав на работу с базой данных \"%1\". Попросите администратора дать права или "
            "укажите другую базу.");
        theFolder->Tamper(address, {QStringLiteral("CREATE ROLE boris LOGIN")});
        CheckOpening(address, Vk_Records::DatabaseUnreachable,
                     forbidden + Said(QStringLiteral("permission denied for table vk_schema")));
        theFolder->Tamper(address, {QStringLiteral("GRANT SELECT ON vk_schema TO boris")});
        CheckOpening(address, Vk_Records::DatabaseUnreachable,
                     forbidden + Said(QStringLiteral("permission denied for table person")));
        theFolder->Tamper(address, {QStringLiteral("REVOKE USAGE ON SCHEMA public FROM PUBLIC")});
        CheckOpening(address, Vk_Records::DatabaseUnreachable, forbidden);
        theFolder->Tamper(address, {QStringLiteral("CREATE SCHEMA boris AUTHORIZATION boris")});
        CheckOpening(address, Vk_Records::DatabaseUnreachable, forbidden);
        QCOMPARE(RaisedBy([&] {
                     Vk_Records::OpenDatabase(address, NewDatabase::WithSampleOffice);
                 }).Number(),
                 qint32(Vk_Records::DatabaseUnreachable));
    }

private:
    bool Take() {
        theKind = QString::fromLatin1(QTest::currentDataTag());
        theFolder = &theFolders.Of(theKind);
        return theFolder->Complaint().isEmpty();
    }
    ServerFolder *Server() {
        theFolder = &theFolders.Of(QStringLiteral("postgresql"));
        return theFolder->Complaint().isEmpty() ? dynamic_cast<ServerFolder *>(theFolder) : nullptr;
    }
    QString SmallOffice() {
        QString address = OpenSmallOffice(*theFolder);
        Vk_Records::CloseDatabase();
        return address;
    }
    static QString ForUser(QString aAddress, const QString &aUser) {
        return aAddress.replace(QStringLiteral("//postgres@"), QStringLiteral("//%1@").arg(aUser));
    }
    static qsizetype PersonsCount() {
        return Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")
            ->GetPersons(QString(), 0)
            ->Count();
    }
    void CheckOpening(const QString &aAddress, qint32 aNumber, const QString &aText) const {
        const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(aAddress); });
        QCOMPARE(failure.Description(), aText.arg(theFolder->Shown(aAddress)));
        QCOMPARE(failure.Number(), aNumber);
    }

    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    QString theKind;
};

VK_TEST_CLASS(TestOpening);

#include "TestOpening.moc"
