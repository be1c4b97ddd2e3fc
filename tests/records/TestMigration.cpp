#include <QFile>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "StoredOffice.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;
using Vk_Records::NewDatabase;

/// Databases that earlier versions have left, brought up to this one, and what the tables of this
/// one refuse.
class TestMigration : public QObject {
    Q_OBJECT

    static constexpr int theVersion = 3;

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void KeepsAllRecords_data() { OfficeFolders::AddKinds(); }
    void KeepsAllRecords() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = Stored(1);
        const QString before = Contents(address);
        Vk_Records::OpenDatabase(address);
        QCOMPARE(Contents(address), before);
        QCOMPARE(Version(address), theVersion);
        const auto persons =
            Made<PersonQueries>(u"Vk_DBProvider.PersonQueries")->GetPersons(QString(), 0);
        QCOMPARE(persons->Count(), 12);
        const auto branch = Made<VkPerson>(u"Vk_Records.VkPerson");
        branch->SetID(4);
        QCOMPARE(branch->GetParentOrganization()->ID(), 3.0);
        const auto names = Made<BlankQueries>(u"Vk_DBProvider.BlankQueries")->GetTemplTypeNames(1);
        names->MoveNext();
        QCOMPARE(names->Value(QStringLiteral("full_name")), LooseValue(QString()));
    }

    void GivesTheTablesOfANewOffice_data() { OfficeFolders::AddKinds(); }
    void GivesTheTablesOfANewOffice() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString fresh = theFolder->NewAddress();
        Vk_Records::OpenDatabase(fresh, NewDatabase::Empty);
        const QString expected = Shape(fresh);
        QVERIFY(expected.size() > 2000);
        for (int version = 1; version <= theVersion; ++version) {
            const QString address = Stored(version);
            Vk_Records::OpenDatabase(address);
            QCOMPARE(Shape(address), expected);
        }
    }

    void StepThatFailsLeavesAllAsItWas_data() { OfficeFolders::AddKinds(); }
    void StepThatFailsLeavesAllAsItWas() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = Stored(1);
        // The table of the versions comes last of all.
        theFolder->Tamper(address,
                          {QStringLiteral("UPDATE template SET id = 3000000000 WHERE id = 9")});
        const QString before = Contents(address) + Shape(address);
        for (int i = 0; i < 2; ++i) {
            const Failure failure = RaisedBy([&] { Vk_Records::OpenDatabase(address); });
            QCOMPARE(failure.Description(),
                     QStringLiteral("База данных \"%1\" сделана прежней версией программы, и в ней "
                                    "есть записи, которых новая версия не принимает. База осталась "
                                    "как была. Обратитесь к администратору.")
                             .arg(theFolder->Shown(address)) +
                         Said(theIsServer ? QStringLiteral("integer out of range")
                                          : QStringLiteral("CHECK constraint failed: id BETWEEN 1 "
                                                           "AND 2147483647")));
            QCOMPARE(failure.Number(), qint32(Vk_Records::DatabaseQueryFailed));
            QCOMPARE(Contents(address) + Shape(address), before);
            QCOMPARE(Version(address), 1);
        }
        theFolder->Tamper(address,
                          {QStringLiteral("UPDATE template SET id = 9 WHERE id = 3000000000")});
        Vk_Records::OpenDatabase(address);
        QCOMPARE(Version(address), theVersion);
    }

    void WhatSomebodyAddedStays() {
        theFolder = &theFolders.Of(QStringLiteral("sqlite"));
        const QString address = Stored(1);
        theFolder->Tamper(address,
                          {QStringLiteral("ALTER TABLE person ADD COLUMN \"my note\" VARCHAR"),
                           QStringLiteral("UPDATE person SET \"my note\" = 'важно' WHERE id = 3"),
                           QStringLiteral("CREATE INDEX person_by_inn ON person (inn)"),
                           QStringLiteral("CREATE VIEW inns AS SELECT inn FROM person"),
                           QStringLiteral("CREATE TABLE album (person_id REFERENCES person (id))"),
                           QStringLiteral("INSERT INTO album VALUES (3)")});
        Vk_Records::OpenDatabase(address);
        QCOMPARE(
            theFolder
                ->Tamper(address, {QStringLiteral("SELECT \"my note\" FROM person WHERE id = 3")})
                .toString(),
            QStringLiteral("важно"));
        QCOMPARE(theFolder->Tamper(address, {QStringLiteral("SELECT count(*) FROM inns")}).toInt(),
                 12);
        QCOMPARE(theFolder
                     ->Tamper(address, {QStringLiteral("SELECT count(*) FROM sqlite_master WHERE "
                                                       "name = 'person_by_inn'")})
                     .toInt(),
                 1);
        QVERIFY(!theFolder->Accepts(address, QStringLiteral("DELETE FROM person WHERE id = 3")));
    }

    /// Nobody reads in the order of a name; an index of that name on another table is none of ours.
    void NamesHaveNoIndex_data() { OfficeFolders::AddKinds(); }
    void NamesHaveNoIndex() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = Stored(2);
        const QStringList others =
            theIsServer ? QStringList{QStringLiteral("DROP INDEX person_by_name"),
                                      QStringLiteral("CREATE SCHEMA other"),
                                      QStringLiteral("CREATE TABLE other.album (name TEXT)"),
                                      QStringLiteral("CREATE INDEX person_by_name ON other.album "
                                                     "(name)"),
                                      QStringLiteral("ALTER DATABASE %1 SET search_path = public, "
                                                     "other")
                                          .arg(theFolder->Shown(address).section(u'/', -1))}
                        : QStringList{};
        theFolder->Tamper(address, others);
        Vk_Records::OpenDatabase(address);
        const QString names =
            QStringLiteral("person_by_name acc_stream_by_name templ_type_by_name");
        const QString found =
            theIsServer
                ? QStringLiteral(
                      "SELECT count(*) FROM pg_indexes WHERE schemaname = '%1' AND "
                      "indexname = ANY (string_to_array('%2', ' '))")
                : QStringLiteral(
                      "SELECT count(*) FROM sqlite_master WHERE '%1' <> '' AND type = 'index' AND "
                      "instr('%2', name) > 0");
        const auto count = [&](const char *aSchema) {
            return theFolder->Tamper(address, {found.arg(QString::fromLatin1(aSchema), names)})
                .toInt();
        };
        QCOMPARE(count("public"), 0);
        if (theIsServer) QCOMPARE(count("other"), 1);
    }

    void FileThatCanOnlyBeRead() {
        theFolder = &theFolders.Of(QStringLiteral("sqlite"));
        const QString path = theFolder->Shown(Stored(1));
        QFile::setPermissions(QFileInfo(path).path(), QFileDevice::Permissions(0x7755));
        QFile::setPermissions(path, QFileDevice::Permissions(0x4444));
        const AsNobody unprivileged;
        const Failure failure =
            RaisedBy([&] { Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + path); });
        QCOMPARE(failure.Description(),
                 QStringLiteral("База данных \"%1\" сделана прежней версией программы. Попросите "
                                "того, кто вправе менять ее таблицы, один раз открыть ее этой "
                                "версией.")
                         .arg(path) +
                     Said(QStringLiteral("attempt to write a readonly database")));
    }

    void WhatTheTablesRefuse_data() {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<QString>("statement");
        QTest::addColumn<bool>("isTaken");
        const auto add = [](const char *aName, const char *aStatement, bool aIsTaken = false) {
            for (const char *kind : {"sqlite", "postgresql"}) {
                QTest::addRow("%s, %s", aName, kind)
                    << QString::fromLatin1(kind) << QString::fromUtf8(aStatement) << aIsTaken;
            }
        };
        add("largest", "INSERT INTO person VALUES (2147483647, 3, '', '', '', '', 0, NULL, NULL)",
            true);
        add("identity 0", "INSERT INTO person VALUES (0, 3, '', '', '', '', 0, NULL, NULL)");
        add("too large",
            "INSERT INTO person VALUES (2147483648, 3, '', '', '', '', 0, NULL, NULL)");
        add("no identity", "INSERT INTO person VALUES (NULL, 3, '', '', '', '', 0, NULL, NULL)");
        add("no identity left out",
            "INSERT INTO person (kind, inn, kpp, display_name, owner_name, is_main) VALUES (3, '', "
            "'', '', '', 0)");
        add("kind of streams without one",
            "INSERT INTO acc_stream_type VALUES (NULL, 'Прочее', 'acc_stream')");
        add("stream without one", "INSERT INTO acc_stream VALUES (NULL, 1, 1, '', '', '', 0)");
        add("form without one", "INSERT INTO templ_type VALUES (NULL, '', '', 0, '')");
        add("version without one", "INSERT INTO template VALUES (NULL, 1, NULL, NULL, '', '')");
        add("stream", "INSERT INTO acc_stream VALUES (2147483648, 1, 1, '', '', '', 0)");
        add("form", "INSERT INTO templ_type VALUES (2147483648, '', '', 0, '')");
        add("version", "INSERT INTO template VALUES (2147483648, 1, NULL, NULL, '', '')");
        add("text for a number",
            "INSERT INTO person VALUES (99, 'x', '', '', '', '', 0, NULL, NULL)");
        add("long number",
            "INSERT INTO person VALUES (99, 3, '1234567890123', '', '', '', 0, NULL, NULL)");
        add("name", "INSERT INTO templ_type_name VALUES (1, 7, 'Имя')", true);
        add("no name", "INSERT INTO templ_type_name VALUES (1, 7, NULL)");
        add("dates", "INSERT INTO template VALUES (99, 1, '2020-02-29', NULL, '', '')", true);
        add("no such day", "INSERT INTO template VALUES (99, 1, '2021-02-29', NULL, '', '')");
        add("no day", "INSERT INTO template VALUES (99, 1, 'вчера', NULL, '', '')");
        add("permission", "INSERT INTO templ_type_category VALUES (1, 3, 3, 2, 0)");
    }
    void WhatTheTablesRefuse() {
        QFETCH(QString, kind);
        QFETCH(QString, statement);
        QFETCH(bool, isTaken);
        theFolder = &theFolders.Of(kind);
        if (!theFolder->Complaint().isEmpty()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        QString &address = theBroughtUp[kind];
        if (address.isEmpty()) address = Stored(theVersion);
        QCOMPARE(theFolder->Accepts(address, statement), isTaken);
    }

private:
    bool Take() {
        const QString kind = QString::fromLatin1(QTest::currentDataTag());
        theFolder = &theFolders.Of(kind);
        theIsServer = kind == QStringLiteral("postgresql");
        return theFolder->Complaint().isEmpty();
    }

    QString Stored(int aVersion) { return StoredOffice(*theFolder, aVersion); }
    int Version(const QString &aAddress) const { return VersionIn(*theFolder, aAddress); }
    QString Contents(const QString &aAddress) const { return ContentsOf(*theFolder, aAddress); }
    QString Shape(const QString &aAddress) const { return ShapeOf(*theFolder, aAddress); }

    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    bool theIsServer = false;
    QHash<QString, QString> theBroughtUp;
};

VK_TEST_CLASS(TestMigration);

#include "TestMigration.moc"
