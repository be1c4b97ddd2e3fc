#include "Schema.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <Vk_Records/Database.h>

#include "Refusals.h"

namespace Vk_Records {

namespace {

constexpr int theWholeVersion = 2;  // that of schema_2.sql; later steps come behind it

/// A transaction that is undone unless it was confirmed. It keeps other
/// programs from filling the same database meanwhile.
class ExclusiveTransaction {
public:
    explicit ExclusiveTransaction(Connection &aConnection) : theConnection(aConnection) {
        if (theConnection.Where().IsServer) {
            theConnection.Run(QStringLiteral("BEGIN"));
            theConnection.Run(QStringLiteral("SELECT pg_advisory_xact_lock(286331153)"));
        } else {
            // Whoever reads meanwhile waits, and sees no tables that are half filled
            // or not there yet.
            theConnection.Run(QStringLiteral("BEGIN EXCLUSIVE"));
        }
    }
    ~ExclusiveTransaction() {
        if (!theIsConfirmed) QSqlQuery(QStringLiteral("ROLLBACK"), theConnection.Database());
    }
    Q_DISABLE_COPY_MOVE(ExclusiveTransaction)

    void Confirm() {
        theConnection.Run(QStringLiteral("COMMIT"));
        theIsConfirmed = true;
    }

private:
    Connection &theConnection;
    bool theIsConfirmed = false;
};

enum class Holds { Nothing, Office, OtherTables, WhatIsForbidden };

/// The tables of a server count where a request sees them; new ones would come
/// into the first schema of the path. One that may not be used hides what it
/// holds.
constexpr char theServerHoldsSql[] =
    "SELECT CASE WHEN to_regclass('vk_schema') IS NOT NULL THEN 1 "
    "WHEN current_schema() IS NULL OR EXISTS (SELECT 1 FROM pg_class c "
    "JOIN pg_namespace n ON n.oid = c.relnamespace WHERE c.relname = "
    "'vk_schema' "
    "AND NOT has_schema_privilege(n.oid, 'USAGE') AND n.nspname::text IN "
    "(SELECT CASE name WHEN '$user' THEN current_user::text ELSE name END FROM "
    "(SELECT btrim(part, ' \"') AS name FROM "
    "unnest(string_to_array(current_setting('search_path'), ',')) part) "
    "names)) THEN 3 "
    "WHEN EXISTS (SELECT 1 FROM pg_tables WHERE schemaname = current_schema()) "
    "THEN 2 "
    "ELSE 0 END";
constexpr char theFileHoldsSql[] =
    "SELECT CASE WHEN count(*) = 0 THEN 0 WHEN sum(lower(name) = 'vk_schema') "
    "> 0 THEN 1 "
    "ELSE 2 END FROM sqlite_master WHERE type = 'table'";

/// Raises what is wrong with a file that is no database.
Holds WhatIsIn(Connection &aConnection) {
    auto holds = Holds::Nothing;
    QSqlQuery query = aConnection.Run(
        QString::fromLatin1(aConnection.Where().IsServer ? theServerHoldsSql : theFileHoldsSql));
    aConnection.ForEachRow(
        query, [&](const QSqlQuery &row) { holds = static_cast<Holds>(row.value(0).toInt()); });
    return holds;
}

struct Table {
    const char16_t *Name;
    const char16_t *Columns;
};

/// What requests read.
constexpr Table theTables[] = {
    {u"person",
     u"id, kind, inn, kpp, display_name, owner_name, is_main, "
     u"parent_id, parent_kind"},
    {u"acc_stream_type", u"id, name, icon_key"},
    {u"acc_stream", u"id, person_id, type_id, display_name, kpp, office_codes, is_closed"},
    {u"templ_type", u"id, knd, short_name, is_excluded, icon_key"},
    {u"templ_type_name", u"templ_type_id, name_order, full_name"},
    {u"templ_type_time", u"templ_type_id, the_year, month_id"},
    {u"templ_type_category",
     u"templ_type_id, category_id, stream_type, "
     u"allowed_for_main, allowed_for_branch"},
    {u"template", u"id, templ_type_id, beg_date, end_date, display_name, icon_key"},
};

QStringList TableNames(Connection &aConnection) {
    QStringList names;
    QSqlQuery query = aConnection.Run(
        aConnection.Where().IsServer
            ? QStringLiteral("SELECT relname FROM pg_class WHERE "
                             "pg_table_is_visible(oid) AND "
                             "relkind IN ('r', 'p', 'v', 'm', 'f')")
            : QStringLiteral("SELECT lower(name) FROM sqlite_master WHERE type IN ('table', "
                             "'view')"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { names << row.value(0).toString(); });
    return names;
}

[[noreturn]] void RaiseDamaged(Connection &aConnection, const QString &aReason) {
    RaiseDatabaseFailure(DatabaseDamaged, QStringLiteral("База данных \"%1\" повреждена: %2. "
                                                         "Восстановите ее из резервной копии.")
                                              .arg(aConnection.Where().Shown, aReason));
}

void CheckTables(Connection &aConnection) {
    const QStringList there = TableNames(aConnection);
    QStringList missing;
    for (const Table &table : theTables) {
        const QString name = QString::fromUtf16(table.Name);
        if (!there.contains(name)) missing << name;
    }
    if (missing.isEmpty()) return;
    RaiseDamaged(aConnection,
                 QStringLiteral("в ней нет таблиц: ") + missing.join(QStringLiteral(", ")));
}

/// Raises what the database says if a column is missing or may not be read.
void CheckColumns(Connection &aConnection) {
    QStringList reads;
    for (const Table &table : theTables) {
        reads << QStringLiteral("EXISTS (SELECT %1 FROM %2 WHERE 1 = 0)")
                     .arg(QString::fromUtf16(table.Columns), QString::fromUtf16(table.Name));
    }
    aConnection.Run(QStringLiteral("SELECT 1 WHERE ") + reads.join(QStringLiteral(" OR ")));
}

int VersionOf(Connection &aConnection) {
    int version = 0;
    QSqlQuery query = aConnection.Run(QStringLiteral("SELECT max(version) FROM vk_schema"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { version = row.value(0).toInt(); });
    return version;
}

/// The statements of a file for the kind of the database.
QStringList Statements(const Connection &aConnection, const QString &aFile) {
    static const QRegularExpression comment(QStringLiteral("--.*$"),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression end(QStringLiteral(";\\s*\\n"));
    static const QRegularExpression forFiles(QStringLiteral("^.*-- SQLite$"),
                                             QRegularExpression::MultilineOption);
    static const QRegularExpression forServers(QStringLiteral("^.*-- PostgreSQL$"),
                                               QRegularExpression::MultilineOption);
    QStringList statements;
    const QString text = CompiledText(aFile)
                             .remove(aConnection.Where().IsServer ? forFiles : forServers)
                             .remove(comment);
    for (const QString &statement : text.split(end)) {
        if (!statement.trimmed().isEmpty()) statements << statement.trimmed();
    }
    return statements;
}

void RunFile(Connection &aConnection, const QString &aFile) {
    for (const QString &statement : Statements(aConnection, aFile)) aConnection.Run(statement);
}

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

/// Puts a table as the statement makes it in the place of the one that is
/// there. Columns that somebody has added are kept.
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
    RaiseDatabaseFailure(DatabaseQueryFailed,
                         QStringLiteral("База данных \"%1\" сделана прежней версией программы, и "
                                        "в ней есть записи, "
                                        "которых новая версия не принимает. База осталась как "
                                        "была. Обратитесь к "
                                        "администратору.\r\nСообщение базы данных: %2")
                             .arg(aConnection.Where().Shown, aDetail));
}

/// SQLite gives an existing table no checks: tables are copied.
void RebuildTables(Connection &aConnection) {
    const QStringList added =
        Texts(aConnection,
              QStringLiteral("SELECT sql FROM sqlite_master WHERE type IN ('index', "
                             "'trigger') AND sql IS NOT NULL AND name NOT IN "
                             "('person_by_name', 'person_by_parent', 'acc_stream_by_person', "
                             "'acc_stream_by_name', 'templ_type_by_name', "
                             "'template_by_type')"));
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

/// What brings a database to a version from the one before, in the transaction
/// of the caller.
struct Step {
    int Version;
    void (*Take)(Connection &aConnection);
};

constexpr Step theSteps[] = {
    {2, ToVersion2},
};
const int theVersion = std::rbegin(theSteps)->Version;

/// Tables that are copied must not be followed by what refers to them. A
/// transaction cannot switch this.
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
                         QStringLiteral("База данных \"%1\" сделана прежней "
                                        "версией программы. Попросите того, кто "
                                        "вправе менять ее таблицы, один раз "
                                        "открыть ее этой версией.\r\nСообщение "
                                        "базы данных: %2")
                             .arg(aConnection.Where().Shown, detail));
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

void CheckVersion(Connection &aConnection) {
    const int version = VersionOf(aConnection);
    const QString &shown = aConnection.Where().Shown;
    if (version > theVersion) {
        RaiseDatabaseFailure(
            DatabaseTooNew,
            QStringLiteral("База данных \"%1\" создана более новой версией программы "
                           "(версия базы %2, программа понимает версию %3). Обновите "
                           "программу.")
                .arg(shown, QString::number(version), QString::number(theVersion)));
    }
    if (version < 1) RaiseDamaged(aConnection, QStringLiteral("в ней нет номера версии"));
}

}  // namespace

bool HasOffice(Connection &aConnection) {
    const QString &shown = aConnection.Where().Shown;
    switch (WhatIsIn(aConnection)) {
        case Holds::Nothing:
            return false;
        case Holds::Office:
            return true;
        case Holds::WhatIsForbidden:
            RaiseDatabaseFailure(DatabaseUnreachable, ForbiddenText(aConnection.Where()));
        case Holds::OtherTables:
            break;
    }
    RaiseDatabaseFailure(
        DatabaseForeign,
        QStringLiteral("База данных \"%1\" создана другой программой. Укажите другую базу.")
            .arg(shown));
}

bool MakeOffice(Connection &aConnection, const std::function<void(Connection &)> &aFill) {
    if (HasOffice(aConnection)) return false;
    ExclusiveTransaction transaction(aConnection);
    if (HasOffice(aConnection)) return false;  // another program was quicker
    RunFile(aConnection, QStringLiteral("sql/schema_2.sql"));
    RunFile(aConnection, QStringLiteral("sql/stream_types.sql"));
    for (const Step &step : theSteps) {
        if (step.Version > theWholeVersion) step.Take(aConnection);
    }
    aConnection.Run(QStringLiteral("INSERT INTO vk_schema (version) VALUES (?)"), {theVersion});
    aFill(aConnection);
    transaction.Confirm();
    return true;
}

void CheckOffice(Connection &aConnection) {
    CheckVersion(aConnection);
    CheckTables(aConnection);
    BringUp(aConnection);
    CheckColumns(aConnection);
}

QString CompiledText(const QString &aName) {
    QFile file(QStringLiteral(":/vk_records/") + aName);
    if (!file.open(QIODevice::ReadOnly)) {
        RaiseDatabaseFailure(
            DatabaseQueryFailed,
            QStringLiteral("В программе нет файла \"%1\". Установите ее заново.").arg(aName));
    }
    return QString::fromUtf8(file.readAll());
}

}  // namespace Vk_Records
