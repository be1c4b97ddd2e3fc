#include <QFile>
#include <QRegularExpression>
#include <QTest>

#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "OfficeFolder.h"
#include "support/AsNobody.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;
using Vk_Records::NewDatabase;

namespace {

const QStringList theTables = {
    QStringLiteral("acc_stream"),
    QStringLiteral("acc_stream_type"),
    QStringLiteral("person"),
    QStringLiteral("templ_type"),
    QStringLiteral("templ_type_category"),
    QStringLiteral("templ_type_name"),
    QStringLiteral("templ_type_time"),
    QStringLiteral("template"),
};

QString DataPath(const QString &aName) {
    return QStringLiteral(VK_TEST_DATA "/offices/") + aName;
}

}  // namespace

/// Databases that earlier versions have left, brought up to this one, and what the tables of this
/// one refuse.
class TestMigration : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { Vk_Records::CloseDatabase(); }

    void KeepsAllRecords_data() { OfficeFolders::AddKinds(); }
    void KeepsAllRecords() {
        if (!Take()) QSKIP(qUtf8Printable(theFolder->Complaint()));
        const QString address = Stored(1);
        const QString before = Contents(address);
        Vk_Records::OpenDatabase(address);
        QCOMPARE(Contents(address), before);
        QCOMPARE(Version(address), 2);
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
        for (int version = 1; version <= 2; ++version) {
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
        QCOMPARE(Version(address), 2);
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
        if (address.isEmpty()) address = Stored(2);
        QCOMPARE(theFolder->Accepts(address, statement), isTaken);
    }

private:
    bool Take() {
        const QString kind = QString::fromLatin1(QTest::currentDataTag());
        theFolder = &theFolders.Of(kind);
        theIsServer = kind == QStringLiteral("postgresql");
        return theFolder->Complaint().isEmpty();
    }

    /// A database as the program of that version has left it.
    QString Stored(int aVersion) {
        QString address = theFolder->NewAddress();
        const QString name = DataPath(QStringLiteral("office-%1.").arg(aVersion));
        if (address.startsWith(QStringLiteral("sqlite"))) {
            const QString path = theFolder->Shown(address);
            if (!QFile::copy(name + QStringLiteral("db"), path)) qFatal("no copy");
            QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
            return address;
        }
        QFile file(name + QStringLiteral("sql"));
        if (!file.open(QIODevice::ReadOnly)) qFatal("no stored office");
        theFolder->Tamper(address, {QString::fromUtf8(file.readAll())});
        return address;
    }

    int Version(const QString &aAddress) const {
        return theFolder->Tamper(aAddress, {QStringLiteral("SELECT version FROM vk_schema")})
            .toInt();
    }

    /// All records; a name without a text counts as an empty one.
    QString Contents(const QString &aAddress) const {
        const bool isFile = aAddress.startsWith(QStringLiteral("sqlite"));
        QString all;
        for (const QString &table : theTables) {
            const QString row = table == QStringLiteral("templ_type_name")
                                    ? QStringLiteral(
                                          "templ_type_id || '|' || name_order || '|' || "
                                          "coalesce(full_name, '')")
                                    : RowText(aAddress, table);
            all +=
                table + u'\n' +
                theFolder
                    ->Tamper(aAddress,
                             {(isFile ? QStringLiteral("SELECT group_concat(r, '\n') FROM (SELECT "
                                                       "%1 AS r FROM %2 ORDER BY 1)")
                                      : QStringLiteral("SELECT string_agg(r, '\n') FROM (SELECT "
                                                       "%1 AS r FROM %2 ORDER BY 1) AS rows"))
                                  .arg(row, table)})
                    .toString() +
                u'\n';
        }
        return all;
    }

    QString RowText(const QString &aAddress, const QString &aTable) const {
        if (!aAddress.startsWith(QStringLiteral("sqlite")))
            return QStringLiteral("row_to_json(%1)::text").arg(aTable);
        return theFolder
            ->Tamper(aAddress,
                     {QStringLiteral("SELECT group_concat('quote(' || name || ')', ' || ') FROM "
                                     "pragma_table_info('%1')")
                          .arg(aTable)})
            .toString();
    }

    /// Tables, columns, checks, keys and indexes.
    QString Shape(const QString &aAddress) const {
        if (aAddress.startsWith(QStringLiteral("sqlite"))) {
            return theFolder
                ->Tamper(aAddress,
                         {QStringLiteral("SELECT group_concat(replace(sql, '\"', ''), '\n') FROM "
                                         "(SELECT sql FROM sqlite_master ORDER BY name)")})
                .toString();
        }
        return theFolder
            ->Tamper(
                aAddress,
                {QStringLiteral(
                    "SELECT string_agg(line, '\n' ORDER BY line) FROM ("
                    "SELECT table_name || ' ' || column_name || ' ' || data_type || ' ' || "
                    "is_nullable || ' ' || ordinal_position AS line FROM "
                    "information_schema.columns WHERE table_schema = 'public' "
                    "UNION ALL SELECT conrelid::regclass || ' ' || pg_get_constraintdef(oid) FROM "
                    "pg_constraint WHERE connamespace = 'public'::regnamespace "
                    "UNION ALL SELECT indexdef FROM pg_indexes WHERE schemaname = 'public') AS "
                    "lines")})
            .toString();
    }

    OfficeFolders theFolders;
    OfficeFolder *theFolder = nullptr;
    bool theIsServer = false;
    QHash<QString, QString> theBroughtUp;
};

VK_TEST_CLASS(TestMigration);

#include "TestMigration.moc"
