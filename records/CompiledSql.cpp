#include "CompiledSql.h"

#include <QFile>
#include <QRegularExpression>

#include <Vk_Records/Database.h>

namespace Vk_Records {

QString CompiledText(const QString &aName) {
    QFile file(QStringLiteral(":/vk_records/") + aName);
    if (!file.open(QIODevice::ReadOnly)) {
        RaiseDatabaseFailure(
            DatabaseQueryFailed,
            QStringLiteral("В программе нет файла \"%1\". Установите ее заново.").arg(aName));
    }
    return QString::fromUtf8(file.readAll());
}

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

}  // namespace Vk_Records
