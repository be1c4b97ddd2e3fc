#include "Schema.h"

#include <QStringList>

#include <Vk_Records/Database.h>

#include "Migration.h"
#include "Refusals.h"
#include "Transaction.h"

namespace Vk_Records {

namespace {

enum class Holds { Nothing, Office, OtherTables, WhatIsForbidden };

/// The tables of a server count where a request sees them; new ones would come into the first
/// schema of the path. One that may not be used hides what it holds.
constexpr char theServerHoldsSql[] =
    "SELECT CASE WHEN to_regclass('vk_schema') IS NOT NULL THEN 1 "
    "WHEN current_schema() IS NULL OR EXISTS (SELECT 1 FROM pg_class c "
    "JOIN pg_namespace n ON n.oid = c.relnamespace WHERE c.relname = 'vk_schema' "
    "AND NOT has_schema_privilege(n.oid, 'USAGE') AND n.nspname::text IN "
    "(SELECT CASE name WHEN '$user' THEN current_user::text ELSE name END FROM "
    "(SELECT btrim(part, ' \"') AS name FROM "
    "unnest(string_to_array(current_setting('search_path'), ',')) part) names)) THEN 3 "
    "WHEN EXISTS (SELECT 1 FROM pg_tables WHERE schemaname = current_schema()) THEN 2 "
    "ELSE 0 END";
constexpr char theFileHoldsSql[] =
    "SELECT CASE WHEN count(*) = 0 THEN 0 WHEN sum(lower(name) = 'vk_schema') > 0 THEN 1 "
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
    {u"person", u"id, kind, inn, kpp, display_name, owner_name, is_main, parent_id, parent_kind"},
    {u"acc_stream_type", u"id, name, icon_key"},
    {u"acc_stream", u"id, person_id, type_id, display_name, kpp, office_codes, is_closed"},
    {u"templ_type", u"id, knd, short_name, is_excluded, icon_key"},
    {u"templ_type_name", u"templ_type_id, name_order, full_name"},
    {u"templ_type_time", u"templ_type_id, the_year, month_id"},
    {u"templ_type_category",
     u"templ_type_id, category_id, stream_type, allowed_for_main, allowed_for_branch"},
    {u"template", u"id, templ_type_id, beg_date, end_date, display_name, icon_key"},
};

QStringList TableNames(Connection &aConnection) {
    QStringList names;
    QSqlQuery query = aConnection.Run(
        aConnection.Where().IsServer
            ? QStringLiteral("SELECT relname FROM pg_class WHERE pg_table_is_visible(oid) AND "
                             "relkind IN ('r', 'p', 'v', 'm', 'f')")
            : QStringLiteral(
                  "SELECT lower(name) FROM sqlite_master WHERE type IN ('table', 'view')"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { names << row.value(0).toString(); });
    return names;
}

[[noreturn]] void RaiseDamaged(Connection &aConnection, const QString &aReason) {
    RaiseDatabaseFailure(
        DatabaseDamaged,
        QStringLiteral("База данных \"%1\" повреждена: %2. Восстановите ее из резервной копии.")
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

void CheckVersion(Connection &aConnection) {
    const int version = VersionOf(aConnection);
    const QString &shown = aConnection.Where().Shown;
    if (version > OwnVersion()) {
        RaiseDatabaseFailure(
            DatabaseTooNew,
            QStringLiteral("База данных \"%1\" создана более новой версией программы (версия базы "
                           "%2, программа понимает версию %3). Обновите программу.")
                .arg(shown, QString::number(version), QString::number(OwnVersion())));
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
    MakeTables(aConnection);
    aFill(aConnection);
    transaction.Confirm();
    return true;
}

void MakeNewOffice(const Address &aAddress, const std::function<void(Connection &)> &aFill) {
    Connection connection(aAddress, MissingFile::IsMade);
    if (MakeOffice(connection, aFill)) return;
    RaiseDatabaseFailure(
        DatabaseForeign,
        QStringLiteral("База данных \"%1\" уже есть. Укажите имя новой базы.").arg(aAddress.Shown));
}

void RequireOffice(Connection &aConnection) {
    if (HasOffice(aConnection)) return;
    RaiseDatabaseFailure(
        DatabaseEmpty,
        QStringLiteral("База данных \"%1\" пуста. Заполните ее программой vk_make_office или "
                       "укажите другую базу.")
            .arg(aConnection.Where().Shown));
}

void CheckOffice(Connection &aConnection) {
    CheckVersion(aConnection);
    CheckTables(aConnection);
    BringUp(aConnection);
    CheckColumns(aConnection);
}

}  // namespace Vk_Records
