#include "Connection.h"

#include <atomic>
#include <mutex>
#include <optional>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSqlError>

#include <Vk_DocQuery/LooseValue.h>
#include <Vk_Records/Database.h>

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

constexpr int theSqliteCodeMask = 0xff;

/// What a refusal of the database means. The code of SQLite, or the beginning of PostgreSQL's.
struct Refusal {
    const char *Code;
    qint32 Number;
    const char *Text;
};

constexpr char theBusyText[] =
    "База данных \"%1\" занята другой программой. Дождитесь, пока та закончит работу, и повторите.";
constexpr char theDamagedText[] =
    "База данных \"%1\" повреждена: %2. Восстановите ее из резервной копии.";
constexpr char theFullText[] =
    "На диске с базой данных \"%1\" не осталось места. Освободите место и повторите.";
constexpr char theForbiddenText[] =
    "Нет прав на работу с базой данных \"%1\". Попросите администратора дать права или укажите "
    "другую базу.";
constexpr char theForeignText[] =
    "Файл \"%1\" не является базой данных. Укажите другой файл или восстановите базу из резервной "
    "копии.";
constexpr char theLostText[] =
    "Связь с базой данных \"%1\" прервалась. Проверьте сеть и сервер и повторите.";
constexpr char theOtherText[] =
    "База данных \"%1\" не выполнила запрос: %2. Обратитесь к администратору.";

constexpr Refusal theFileRefusals[] = {
    {"1", DatabaseDamaged, theDamagedText},
    {"3", DatabaseUnreachable, theForbiddenText},
    {"5", DatabaseBusy, theBusyText},
    {"6", DatabaseBusy, theBusyText},
    {"8", DatabaseUnreachable, theForbiddenText},
    {"11", DatabaseDamaged, theDamagedText},
    {"13", DatabaseFull, theFullText},
    {"14", DatabaseUnreachable, theForbiddenText},
    {"26", DatabaseForeign, theForeignText},
};

constexpr Refusal theServerRefusals[] = {
    {"42P01", DatabaseDamaged, theDamagedText},
    {"42703", DatabaseDamaged, theDamagedText},
    {"42501", DatabaseUnreachable, theForbiddenText},
    {"55P03", DatabaseBusy, theBusyText},
    {"40P01", DatabaseBusy, theBusyText},
    {"53100", DatabaseFull, theFullText},
    {"57P", DatabaseConnectionLost, theLostText},
    {"08", DatabaseConnectionLost, theLostText},
    {"XX", DatabaseDamaged, theDamagedText},
};

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

QString Text(const char *aText) {
    return QString::fromUtf8(aText);
}

QString FirstLine(const QSqlError &aError) {
    const QString text =
        aError.databaseText().isEmpty() ? aError.driverText() : aError.databaseText();
    static const QRegularExpression severity(QStringLiteral("^(ERROR|FATAL|ОШИБКА|ВАЖНО):\\s+"));
    QString line = text.section(u'\n', 0, 0).remove(severity).simplified();
    while (line.endsWith(u'.')) line.chop(1);
    return line;
}

const Refusal *RefusalOf(const Address &aAddress, const QSqlError &aError) {
    const QString code = aError.nativeErrorCode();
    if (!aAddress.IsServer) {
        const QString primary = QString::number(code.toInt() & theSqliteCodeMask);
        for (const Refusal &refusal : theFileRefusals) {
            if (primary == QLatin1String(refusal.Code)) return &refusal;
        }
        return nullptr;
    }
    for (const Refusal &refusal : theServerRefusals) {
        if (code.startsWith(QLatin1String(refusal.Code))) return &refusal;
    }
    return nullptr;
}

bool ServerSays(const QSqlError &aError, std::initializer_list<const char *> aWords) {
    const QString text = aError.databaseText() + aError.driverText();
    for (const char *word : aWords) {
        if (text.contains(Text(word), Qt::CaseInsensitive)) return true;
    }
    return false;
}

/// SQLite itself takes a file of one byte for an empty database and writes over it.
bool IsOtherFile(const QString &aPath) {
    static const QByteArray head("SQLite format 3\0", 16);
    QFile file(aPath);
    return file.open(QIODevice::ReadOnly) && file.size() > 0 && file.read(head.size()) != head;
}

QString NewName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("Vk_Records_%1").arg(++count);
}

}  // namespace

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

Connection::Connection(const Address &aAddress) : theAddress(aAddress), theName(NewName()) {
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
        theAddress.IsServer ? OpenServer() : OpenFile();
    } catch (...) {
        theDatabase = QSqlDatabase();
        QSqlDatabase::removeDatabase(theName);
        throw;
    }
}

Connection::~Connection() {
    thePrepared.clear();
    theDatabase.close();
    theDatabase = QSqlDatabase();
    QSqlDatabase::removeDatabase(theName);
}

void Connection::OpenFile() {
    const QFileInfo file(theAddress.File);
    if (!file.dir().exists()) {
        RaiseDatabaseFailure(
            DatabaseUnreachable,
            QStringLiteral("База данных \"%1\" не открыта: нет папки \"%2\". Создайте "
                           "папку или укажите другое место базы.")
                .arg(theAddress.Shown, file.path()));
    }
    if (file.isDir()) {
        RaiseDatabaseFailure(
            DatabaseForeign,
            QStringLiteral(
                "База данных \"%1\" не открыта: это папка, а не файл. Укажите файл базы.")
                .arg(theAddress.Shown));
    }
    if (file.exists() && !file.isFile()) {
        // Opening a pipe may wait for ever.
        RaiseDatabaseFailure(
            DatabaseForeign,
            QStringLiteral("База данных \"%1\" не открыта: это не обычный файл, а канал или "
                           "устройство. Укажите файл базы.")
                .arg(theAddress.Shown));
    }
    if (IsOtherFile(theAddress.File))
        RaiseDatabaseFailure(DatabaseForeign, Text(theForeignText).arg(theAddress.Shown));
    theDatabase.setDatabaseName(theAddress.File);
    theDatabase.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(theLockWaitMs));
    if (!theDatabase.open()) RaiseRefusal(theDatabase.lastError());
    Run(QStringLiteral("PRAGMA foreign_keys = ON"));
    // In KiB. Reading a large list in the order of its names asks for the same pages again and
    // again.
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
        // A refused connection has no code, only the server's words.
        const QSqlError error = theDatabase.lastError();
        if (ServerSays(error, {"password", "authentication", "пароль", "подлинност", "role"})) {
            RaiseDatabaseFailure(
                DatabaseUnreachable,
                QStringLiteral("Сервер базы данных \"%1\" не принял имя пользователя или пароль. "
                               "Исправьте их в адресе базы.")
                    .arg(theAddress.Shown));
        }
        if (ServerSays(error, {"database \""}) && ServerSays(error, {"does not exist"})) {
            RaiseDatabaseFailure(DatabaseUnreachable,
                                 QStringLiteral("На сервере нет базы данных \"%1\". Попросите "
                                                "администратора создать ее или исправьте адрес.")
                                     .arg(theAddress.Shown));
        }
        RaiseDatabaseFailure(
            DatabaseUnreachable,
            QStringLiteral("Сервер базы данных \"%1\" не отвечает. Проверьте адрес, "
                           "сеть и работу сервера.")
                .arg(theAddress.Shown));
    }
    Run(QStringLiteral("SET lock_timeout = %1").arg(theLockWaitMs));
    Run(QStringLiteral("SET client_min_messages = error"));
}

QSqlQuery &Connection::Prepared(const char *aSql) {
    const auto found = thePrepared.find(aSql);
    if (found != thePrepared.end()) return found->second;
    QSqlQuery query(theDatabase);
    query.setForwardOnly(true);
    if (!query.prepare(Text(aSql))) RaiseRefusal(query.lastError());
    return thePrepared.emplace(aSql, std::move(query)).first->second;
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
    // A server that goes away leaves no code behind.
    const bool isLost = theAddress.IsServer && aError.nativeErrorCode().isEmpty();
    const Refusal *refusal = RefusalOf(theAddress, aError);
    const qint32 number =
        isLost ? DatabaseConnectionLost : (refusal ? refusal->Number : DatabaseQueryFailed);
    const char *text = isLost ? theLostText : (refusal ? refusal->Text : theOtherText);
    if (number == DatabaseConnectionLost)
        OfThisThread().Generation = -1;  // the next request connects
    const QString sentence = Text(text);
    const bool namesReason = sentence.contains(QStringLiteral("%2"));
    RaiseDatabaseFailure(number, namesReason ? sentence.arg(theAddress.Shown, FirstLine(aError))
                                             : sentence.arg(theAddress.Shown));
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
    own.Held = std::make_unique<Connection>(*where);
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
