#include "Schema.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <Vk_Records/Database.h>

namespace Vk_Records {

namespace {

constexpr int theVersion = 1;
const QString theVersionTable = QStringLiteral("vk_schema");

/// A transaction that is undone unless it was confirmed. It keeps other programs from filling the
/// same database meanwhile.
class ExclusiveTransaction {
public:
    explicit ExclusiveTransaction(Connection &aConnection) : theConnection(aConnection) {
        if (theConnection.Where().IsServer) {
            theConnection.Run(QStringLiteral("BEGIN"));
            theConnection.Run(QStringLiteral("SELECT pg_advisory_xact_lock(286331153)"));
        } else {
            theConnection.Run(QStringLiteral("BEGIN IMMEDIATE"));
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

/// Raises what is wrong with a file that is no database; the names of tables are not told
/// otherwise.
QStringList TableNames(Connection &aConnection) {
    const bool isServer = aConnection.Where().IsServer;
    QStringList names;
    QSqlQuery query = aConnection.Run(
        isServer
            ? QStringLiteral("SELECT tablename FROM pg_tables WHERE schemaname = current_schema()")
            : QStringLiteral("SELECT name FROM sqlite_master WHERE type = 'table'"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { names << row.value(0).toString(); });
    return names;
}

int VersionOf(Connection &aConnection) {
    int version = 0;
    QSqlQuery query = aConnection.Run(QStringLiteral("SELECT version FROM vk_schema"));
    aConnection.ForEachRow(query, [&](const QSqlQuery &row) { version = row.value(0).toInt(); });
    return version;
}

void RunFile(Connection &aConnection, const QString &aName) {
    static const QRegularExpression comment(QStringLiteral("^\\s*--.*$"),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression end(QStringLiteral(";\\s*\\n"));
    const QString text = CompiledText(aName).remove(comment);
    for (const QString &statement : text.split(end)) {
        if (!statement.trimmed().isEmpty()) aConnection.Run(statement);
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
    if (version < theVersion) {
        RaiseDatabaseFailure(
            DatabaseDamaged,
            QStringLiteral("База данных \"%1\" повреждена: в ней нет номера версии. "
                           "Восстановите ее из резервной копии.")
                .arg(shown));
    }
}

/// True if the tables are there.
bool HasSchema(Connection &aConnection) {
    const QStringList names = TableNames(aConnection);
    if (names.contains(theVersionTable)) return true;
    if (names.isEmpty()) return false;
    RaiseDatabaseFailure(
        DatabaseForeign,
        QStringLiteral("База данных \"%1\" создана другой программой. Укажите другую "
                       "базу.")
            .arg(aConnection.Where().Shown));
}

}  // namespace

void EnsureSchema(Connection &aConnection, const std::function<void(Connection &)> &aFill) {
    if (!HasSchema(aConnection)) {
        ExclusiveTransaction transaction(aConnection);
        if (!HasSchema(aConnection)) {  // another program may have been quicker
            RunFile(aConnection, QStringLiteral("sql/schema.sql"));
            RunFile(aConnection, QStringLiteral("sql/stream_types.sql"));
            aConnection.Run(QStringLiteral("INSERT INTO vk_schema (version) VALUES (?)"),
                            {theVersion});
            aFill(aConnection);
        }
        transaction.Confirm();
    }
    CheckVersion(aConnection);
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
