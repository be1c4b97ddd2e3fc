// Another program beside ours on the same SQLite file. It reads statements from its input, one a
// line, and answers each with "done" or with the code of the refusal.
#include <cstdio>
#include <iostream>
#include <string>

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

int main(int aCount, char **aArguments) {
    const QCoreApplication application(aCount, aArguments);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"));
    database.setDatabaseName(QString::fromLocal8Bit(aArguments[1]));
    database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
    if (!database.open()) return 1;
    QSqlQuery query(database);
    for (std::string line; std::getline(std::cin, line);) {
        const bool isDone = query.exec(QString::fromStdString(line));
        std::puts(isDone ? "done" : qPrintable(query.lastError().nativeErrorCode()));
        std::fflush(stdout);
    }
    return 0;
}
