#include "Connection.h"

#include <atomic>
#include <mutex>
#include <optional>
#include <sqlite3.h>

#include <QFileInfo>
#include <QScopeGuard>
#include <QSqlDriver>
#include <QSqlError>
#include <QUrl>

#include <Vk_DocQuery/LooseValue.h>
#include <Vk_Records/Database.h>

#include "OfficeFile.h"
#include "Refusals.h"

namespace Vk_Records {

namespace {

constexpr int theLockWaitMs = 2500;
// The client library tries every address of the server in turn and never waits less than 2 seconds
// for one. A request that nobody confirms is given up after tcp_user_timeout, in milliseconds; a
// server that has confirmed it and then falls silent is asked whether it lives, and two questions
// without an answer are enough.
const QString theServerWaits = QStringLiteral(
    "connect_timeout=2;tcp_user_timeout=3500;keepalives_idle=2;keepalives_interval=1;"
    "keepalives_count=2;");
// The tables of an office are those that stand together in the first schema of the path that has
// any, whatever else a schema before it holds.
const QString theSchemaFirstSql = QStringLiteral(
    "SELECT set_config('search_path', quote_ident(n.nspname) || ', ' || "
    "current_setting('search_path'), false) FROM pg_class c JOIN pg_namespace n "
    "ON n.oid = c.relnamespace WHERE c.relname = 'vk_schema' AND pg_table_is_visible(c.oid)");

/// The office that is open, and how many were opened before it: connections of an earlier one are
/// stale.
struct Office {
    std::mutex Lock;
    std::optional<Address> Where;
    int Generation = 0;
};

Office &TheOffice() {
    static Office office;
    return office;
}

struct ThreadsConnection {
    std::unique_ptr<Connection> Held;
    int Generation = 0;
};

ThreadsConnection &OfThisThread() {
    thread_local ThreadsConnection connection;
    return connection;
}

std::atomic<bool> theFilesAreReadPastQt = true;

thread_local sqlite3 *theOpened = nullptr;

int NoteOpened(sqlite3 *aFile, char **, const sqlite3_api_routines *) {
    theOpened = aFile;
    return SQLITE_OK;
}

/// Opens the file. Gives the connection of SQLite behind it if Qt's driver works with the same copy
/// of that library as we do, which then calls us; a driver that was built with a copy of its own
/// does not, and its connections are no business of ours.
sqlite3 *OpenedFile(QSqlDatabase &rDatabase) {
    static std::mutex lock;
    const std::lock_guard guard(lock);
    const auto note = reinterpret_cast<void (*)()>(NoteOpened);
    theOpened = nullptr;
    sqlite3_auto_extension(note);
    rDatabase.open();
    sqlite3_cancel_auto_extension(note);
    sqlite3 *const opened = std::exchange(theOpened, nullptr);
    return theFilesAreReadPastQt ? opened : nullptr;
}

QString NewName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("Vk_Records_%1").arg(++count);
}

}  // namespace

void ReadFilesPastQt(bool aIsOn) {
    theFilesAreReadPastQt = aIsOn;
}

void RaiseDatabaseFailure(qint32 aNumber, const QString &aText) {
    throw Vk_DocQuery::Failure(aNumber, QStringLiteral("Vk_Records"), aText);
}

void RaiseRecordMissing(const QString &aClass, double aID, const Connection &aConnection) {
    RaiseDatabaseFailure(
        RecordMissing,
        QStringLiteral("Объекта %1 с идентификатором %2 нет в базе данных \"%3\": он удален или "
                       "взят из другой базы.")
            .arg(aClass, Vk_DocQuery::GeneralNumberText(aID), aConnection.Where().Shown));
}

Connection::Connection(const Address &aAddress, MissingFile aMissing)
    : theAddress(aAddress), theName(NewName()) {
    theDatabase = QSqlDatabase::addDatabase(
        theAddress.IsServer ? QStringLiteral("QPSQL") : QStringLiteral("QSQLITE"), theName);
    try {
        if (!theDatabase.isValid()) {
            RaiseDatabaseFailure(
                DatabaseUnreachable,
                QStringLiteral("База данных \"%1\" не открыта: в системе нет драйвера %2 для Qt. "
                               "Установите его и повторите.")
                    .arg(theAddress.Shown, theAddress.IsServer ? QStringLiteral("PostgreSQL")
                                                               : QStringLiteral("SQLite")));
        }
        theAddress.IsServer ? OpenServer() : OpenFile(aMissing);
        theIsConnected = true;
    } catch (...) {
        theDatabase = QSqlDatabase();
        QSqlDatabase::removeDatabase(theName);
        throw;
    }
}

Connection::~Connection() {
    thePrepared.clear();
    thePreparedForFile.clear();
    theDatabase.close();
    theDatabase = QSqlDatabase();
    QSqlDatabase::removeDatabase(theName);
}

void Connection::OpenFile(MissingFile aMissing) {
    CheckFile(theAddress, aMissing);
    // Only as an URI can a file be opened without being made.
    const QByteArray path = QUrl::toPercentEncoding(theAddress.File, "/");
    const bool isMade = aMissing == MissingFile::IsMade;
    theDatabase.setDatabaseName(
        QStringLiteral("file://") + QString::fromLatin1(path) +
        (isMade ? QStringLiteral("?mode=rwc") : QStringLiteral("?mode=rw")));
    theDatabase.setConnectOptions(
        QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1").arg(theLockWaitMs));
    theFile = OpenedFile(theDatabase);
    if (!theDatabase.isOpen()) RaiseRefusal(theDatabase.lastError());
    Run(QStringLiteral("PRAGMA foreign_keys = ON"));
    // In KiB. Who looks many identities up comes back to the same pages again and again.
    Run(QStringLiteral("PRAGMA cache_size = -65536"));
}

void Connection::OpenServer() {
    theDatabase.setHostName(theAddress.Host);
    if (theAddress.Port > 0) theDatabase.setPort(theAddress.Port);
    theDatabase.setUserName(theAddress.User);
    theDatabase.setPassword(theAddress.Password);
    theDatabase.setDatabaseName(theAddress.Database);
    theDatabase.setConnectOptions(theServerWaits + theAddress.Options);
    if (!theDatabase.open()) {
        const Refusal refusal = ConnectionRefusal(theAddress, theDatabase.lastError());
        RaiseDatabaseFailure(refusal.Number, refusal.Text);
    }
    Run(QStringLiteral("SET lock_timeout = %1").arg(theLockWaitMs));
    Run(QStringLiteral("SET client_min_messages = error"));
    Run(theSchemaFirstSql);
}

QSqlQuery &Connection::Prepared(const char *aSql) {
    const auto found = thePrepared.find(aSql);
    if (found != thePrepared.end()) return found->second;
    QSqlQuery query(theDatabase);
    query.setForwardOnly(true);
    if (!query.prepare(QString::fromUtf8(aSql))) RaiseRefusal(query.lastError());
    return thePrepared.emplace(aSql, std::move(query)).first->second;
}

FileStatement &Connection::PreparedForFile(const char *aSql) {
    const auto found = thePreparedForFile.find(aSql);
    if (found != thePreparedForFile.end()) return found->second;
    FileStatement statement(theFile, aSql);
    if (statement.Error().type() != QSqlError::NoError) RaiseRefusal(statement.Error());
    return thePreparedForFile.emplace(aSql, std::move(statement)).first->second;
}

void Connection::Read(const char *aSql, const QVariantList &aValues,
                      const std::function<void(const Row &)> &aTake) {
    if (theFile) return ReadFile(aSql, aValues, aTake);
    QSqlQuery &query = Prepared(aSql);
    for (int i = 0; i < aValues.size(); ++i) query.bindValue(i, aValues[i]);
    Execute(query);
    ForEachRow(query, [&](const QSqlQuery &row) { aTake(Row(row)); });
}

void Connection::ReadFile(const char *aSql, const QVariantList &aValues,
                          const std::function<void(const Row &)> &aTake) {
    FileStatement &statement = PreparedForFile(aSql);
    const auto reset = qScopeGuard([&] { statement.Reset(); });
    statement.Bind(aValues);
    const Row row(statement.Handle());
    while (statement.Next()) aTake(row);
    if (statement.Error().type() != QSqlError::NoError) RaiseRefusal(statement.Error());
}

QSqlQuery Connection::Run(const QString &aSql, const QVariantList &aValues) {
    QSqlQuery query(theDatabase);
    query.setForwardOnly(true);
    if (aValues.isEmpty()) {  // PostgreSQL prepares no statement that sets or makes something
        if (!query.exec(aSql)) RaiseRefusal(query.lastError());
        return query;
    }
    if (!query.prepare(aSql)) RaiseRefusal(query.lastError());
    for (const QVariant &value : aValues) query.addBindValue(value);
    Execute(query);
    return query;
}

void Connection::Execute(QSqlQuery &aQuery) {
    if (!aQuery.exec()) RaiseRefusal(aQuery.lastError());
}

void Connection::EndReading(QSqlQuery &aQuery) {
    const QSqlError error = aQuery.lastError();
    aQuery.finish();
    if (error.type() != QSqlError::NoError) RaiseRefusal(error);
}

void Connection::RaiseRefusal(const QSqlError &aError) {
    const bool isGone =
        theIsConnected && !theAddress.IsServer && !QFileInfo::exists(theAddress.File);
    const Refusal refusal = isGone ? Refusal{DatabaseUnreachable, GoneText(theAddress)}
                                   : RequestRefusal(theAddress, aError);
    if (refusal.Number == DatabaseConnectionLost)
        OfThisThread().Generation = -1;  // the next request connects
    RaiseDatabaseFailure(refusal.Number, refusal.Text);
}

Connection &ThisThreadsConnection() {
    ThreadsConnection &own = OfThisThread();
    Office &office = TheOffice();
    std::optional<Address> where;
    int generation = 0;
    {
        const std::lock_guard lock(office.Lock);
        if (own.Held && own.Generation == office.Generation) return *own.Held;
        where = office.Where;
        generation = office.Generation;
    }
    own.Held.reset();
    if (!where) {
        RaiseDatabaseFailure(DatabaseNotOpen,
                             QStringLiteral("База данных не открыта. Откройте базу и повторите."));
    }
    own.Held = std::make_unique<Connection>(*where, MissingFile::IsGone);
    own.Generation = generation;
    return *own.Held;
}

void SetOpenOffice(std::unique_ptr<Connection> aFirst) {
    ThreadsConnection &own = OfThisThread();
    Office &office = TheOffice();
    {
        const std::lock_guard lock(office.Lock);
        office.Where.reset();
        if (aFirst) office.Where = aFirst->Where();
        own.Generation = ++office.Generation;
    }
    own.Held = std::move(aFirst);
}

}  // namespace Vk_Records
