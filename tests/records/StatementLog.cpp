#include "StatementLog.h"

#include <mutex>
#include <sqlite3.h>

#include <QRegularExpression>

namespace VkTests {

namespace {

std::mutex theLock;
QStringList theFilesStatements;
QString theAwaited;
std::function<void()> theBefore;

int Take(unsigned, void *, void *, void *aSql) {
    const QString sql = QString::fromUtf8(static_cast<const char *>(aSql));
    std::function<void()> before;
    {
        const std::lock_guard lock(theLock);
        theFilesStatements << sql;
        if (theBefore && sql.contains(theAwaited)) before = std::exchange(theBefore, nullptr);
    }
    if (before) before();
    return 0;
}

int Trace(sqlite3 *aFile, char **, const sqlite3_api_routines *) {
    return sqlite3_trace_v2(aFile, SQLITE_TRACE_STMT, Take, nullptr);
}

const auto theTrace = reinterpret_cast<void (*)()>(Trace);

QStringList Asking(const QStringList &aStatements) {
    static const QRegularExpression others(
        QStringLiteral("^(BEGIN|COMMIT|SET|PREPARE|DEALLOCATE)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    QStringList asking;
    for (const QString &statement : aStatements) {
        if (!others.match(statement).hasMatch()) asking << statement;
    }
    return asking;
}

/// "LOG:  statement: SELECT ..." or "LOG:  execute name: SELECT ...".
QStringList InLog(const QString &aLog) {
    static const QRegularExpression line(
        QStringLiteral("^.*LOG:  (?:statement|execute [^:]*): (.*)$"),
        QRegularExpression::MultilineOption);
    QStringList statements;
    for (auto matches = line.globalMatch(aLog); matches.hasNext();)
        statements << matches.next().captured(1);
    return statements;
}

}  // namespace

StatementLog::StatementLog() {
    sqlite3_auto_extension(theTrace);
}

StatementLog::~StatementLog() {
    sqlite3_cancel_auto_extension(theTrace);
}

void StatementLog::Begin(const OfficeFolder &aFolder) {
    const std::lock_guard lock(theLock);
    theFilesStatements.clear();
    theServersBegin = aFolder.Log().size();
}

QStringList StatementLog::Since(const OfficeFolder &aFolder) const {
    const std::lock_guard lock(theLock);
    return Asking(theFilesStatements + InLog(aFolder.Log().mid(theServersBegin)));
}

void StatementLog::Before(const QString &aText, std::function<void()> aWhat) {
    const std::lock_guard lock(theLock);
    theAwaited = aText;
    theBefore = std::move(aWhat);
}

}  // namespace VkTests
