#include "Migration.h"

#include <QRegularExpression>
#include <QStringList>

#include <Vk_Records/Database.h>

#include "CompiledSql.h"
#include "Transaction.h"

namespace Vk_Records {

namespace {

constexpr int theWholeVersion = 2;  // that of schema_2.sql; later steps come behind it

QStringList Texts(Connection &aConnection, const QString &aSql, const QVariantList &aValues = {}) {
    QStringList texts;
    QSqlQuery query = aConnection.Run(aSql, aValues);
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { texts << row.value(0).toString(); });
    return texts;
}

QStringList ColumnsOf(Connection &aConnection, const QString &aTable) {
    return Texts(aConnection,
                 QStringLiteral("SELECT '\"' || name || '\"' FROM pragma_table_info(?)"), {aTable});
}

/// Puts a table as the statement makes it in the place of the one that is there. Columns that
/// somebody has added are kept.
void RebuildTable(Connection &aConnection, const QString &aName, QString aCreate) {
    const QString copy = QStringLiteral("vk_new_") + aName;
    aConnection.Run(aCreate.replace(QStringLiteral("CREATE TABLE ") + aName,
                                    QStringLiteral("CREATE TABLE ") + copy));
    const QStringList known = ColumnsOf(aConnection, copy);
    const QStringList columns = ColumnsOf(aConnection, aName);
    for (const QString &column : columns) {
        if (!known.contains(column, Qt::CaseInsensitive))
            aConnection.Run(QStringLiteral("ALTER TABLE %1 ADD COLUMN %2 ANY").arg(copy, column));
    }
    const QString list = columns.join(QStringLiteral(", "));
    aConnection.Run(QStringLiteral("INSERT INTO %1 (%2) SELECT %2 FROM %3").arg(copy, list, aName));
    aConnection.Run(QStringLiteral("DROP TABLE ") + aName);
    aConnection.Run(QStringLiteral("ALTER TABLE %1 RENAME TO %2").arg(copy, aName));
}

[[noreturn]] void RaiseUnfit(const Connection &aConnection, const QString &aDetail) {
    RaiseDatabaseFailure(
        DatabaseQueryFailed,
        QStringLiteral("База данных \"%1\" сделана прежней версией программы, и в ней "
                       "есть записи, которых новая версия не принимает. База "
                       "осталась как была. Обратитесь к администратору.\r\n"
                       "Сообщение базы данных: %2")
            .arg(aConnection.Where().Shown, aDetail));
}

/// SQLite gives an existing table no checks: tables are copied.
void RebuildTables(Connection &aConnection) {
    const QStringList added =
        Texts(aConnection,
              QStringLiteral("SELECT sql FROM sqlite_master WHERE type IN ('index', 'trigger') AND "
                             "sql IS NOT NULL AND name NOT IN ('person_by_name', "
                             "'person_by_parent', 'acc_stream_by_person', 'acc_stream_by_name', "
                             "'templ_type_by_name', 'template_by_type')"));
    aConnection.Run(
        QStringLiteral("UPDATE templ_type_name SET full_name = '' WHERE full_name IS NULL"));
    static const QRegularExpression create(QStringLiteral("^CREATE TABLE (\\w+)"));
    for (const QString &statement : Statements(aConnection, QStringLiteral("sql/schema_2.sql"))) {
        const auto match = create.match(statement);
        if (match.hasMatch())
            RebuildTable(aConnection, match.captured(1), statement);
        else
            aConnection.Run(statement);
    }
    for (const QString &statement : added) aConnection.Run(statement);
    const QStringList strays =
        Texts(aConnection, QStringLiteral("SELECT \"table\" FROM pragma_foreign_key_check"));
    if (!strays.isEmpty())
        RaiseUnfit(aConnection, QStringLiteral("foreign key check failed: ") + strays.constFirst());
}

void ToVersion2(Connection &aConnection) {
    aConnection.Where().IsServer ? RunFile(aConnection, QStringLiteral("sql/step_2.sql"))
                                 : RebuildTables(aConnection);
}

/// Names are put in order after they were read: their indexes only slow down whoever writes.
void ToVersion3(Connection &aConnection) {
    const QStringList indexes = Texts(
        aConnection,
        aConnection.Where().IsServer
            ? QStringLiteral(
                  "SELECT i.indexrelid::regclass::text FROM pg_index i "
                  "JOIN pg_class c ON c.oid = i.indexrelid WHERE (i.indrelid, c.relname) "
                  "IN (('person'::regclass, 'person_by_name'), "
                  "('acc_stream'::regclass, 'acc_stream_by_name'), "
                  "('templ_type'::regclass, 'templ_type_by_name'))")
            : QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'index' AND name IN "
                             "('person_by_name', 'acc_stream_by_name', 'templ_type_by_name')"));
    for (const QString &index : indexes) aConnection.Run(QStringLiteral("DROP INDEX ") + index);
}

/// What brings a database to a version from the one before, in the transaction of the caller.
struct Step {
    int Version;
    void (*Take)(Connection &aConnection);
};

constexpr Step theSteps[] = {
    {2, ToVersion2},
    {3, ToVersion3},
};
const int theVersion = std::rbegin(theSteps)->Version;

/// Tables that are copied must not be followed by what refers to them. A transaction cannot switch
/// this.
class LooseTables {
public:
    explicit LooseTables(Connection &aConnection) : theConnection(aConnection) {
        Switch("OFF", "ON");
    }
    ~LooseTables() { Switch("ON", "OFF"); }
    Q_DISABLE_COPY_MOVE(LooseTables)

private:
    void Switch(const char *aKeys, const char *aOldWay) {
        if (theConnection.Where().IsServer) return;
        QSqlQuery query(theConnection.Database());
        query.exec(QStringLiteral("PRAGMA foreign_keys = ") + QLatin1String(aKeys));
        query.exec(QStringLiteral("PRAGMA legacy_alter_table = ") + QLatin1String(aOldWay));
    }

    Connection &theConnection;
};

void TakeStep(Connection &aConnection, const Step &aStep) {
    const LooseTables loose(aConnection);
    ExclusiveTransaction transaction(aConnection);
    if (VersionOf(aConnection) != aStep.Version - 1) return;  // another program was quicker
    aStep.Take(aConnection);
    aConnection.Run(QStringLiteral("UPDATE vk_schema SET version = %1").arg(aStep.Version));
    transaction.Confirm();
}

/// What hinders a step is told as such.
[[noreturn]] void RaiseNotBroughtUp(const Connection &aConnection,
                                    const Vk_DocQuery::Failure &aFailure) {
    const QString detail =
        aFailure.Description().section(QStringLiteral("\r\n"), 1).section(QStringLiteral(": "), 1);
    if (aFailure.Number() == DatabaseQueryFailed) RaiseUnfit(aConnection, detail);
    if (aFailure.Number() != DatabaseUnreachable) throw aFailure;
    RaiseDatabaseFailure(DatabaseUnreachable,
                         QStringLiteral("База данных \"%1\" сделана прежней версией программы. "
                                        "Попросите того, кто вправе менять ее таблицы, один раз "
                                        "открыть ее этой версией.\r\nСообщение базы данных: %2")
                             .arg(aConnection.Where().Shown, detail));
}

}  // namespace

int VersionOf(Connection &aConnection) {
    int version = 0;
    QSqlQuery query = aConnection.Run(QStringLiteral("SELECT max(version) FROM vk_schema"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { version = row.value(0).toInt(); });
    return version;
}

int OwnVersion() {
    return theVersion;
}

void MakeTables(Connection &aConnection) {
    RunFile(aConnection, QStringLiteral("sql/schema_2.sql"));
    RunFile(aConnection, QStringLiteral("sql/stream_types.sql"));
    for (const Step &step : theSteps) {
        if (step.Version > theWholeVersion) step.Take(aConnection);
    }
    aConnection.Run(QStringLiteral("INSERT INTO vk_schema (version) VALUES (?)"), {theVersion});
}

void BringUp(Connection &aConnection) {
    const int version = VersionOf(aConnection);
    try {
        for (const Step &step : theSteps) {
            if (step.Version > version) TakeStep(aConnection, step);
        }
    } catch (const Vk_DocQuery::Failure &failure) {
        RaiseNotBroughtUp(aConnection, failure);
    }
}

}  // namespace Vk_Records
