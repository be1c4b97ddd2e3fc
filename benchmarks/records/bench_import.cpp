// What it costs to bring an office's own taxpayers in from a file: beside a bare loop over a
// prepared statement that enters the same rows, which it has in memory, into the same tables.
#include <cstdio>
#include <vector>

#include <QCoreApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

#include "ExportOffice.h"
#include "Figure.h"
#include "ImportOffice.h"
#include "Insert.h"
#include "LargeOffice.h"

namespace {

constexpr int thePersons = 250000;
constexpr int theRounds = 3;  // each side takes seconds

const QTemporaryDir &TheFolder() {
    static const QTemporaryDir folder;
    return folder;
}

/// The address of a database that is not there.
QString NewAddress() {
    const QString path = TheFolder().filePath(QStringLiteral("new.db"));
    QFile::remove(path);
    return QStringLiteral("sqlite:") + path;
}

template <class Body>
void WithDatabase(const QString &aAddress, Body aBody) {
    {
        QSqlDatabase database =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("peer"));
        database.setDatabaseName(aAddress.section(u':', 1));
        if (!database.open()) qFatal("no database");
        QSqlQuery query(database);
        query.exec(QStringLiteral("PRAGMA foreign_keys = ON"));
        query.exec(QStringLiteral("PRAGMA cache_size = -65536"));
        aBody(query);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("peer"));
}

std::vector<QVariantList> RowsOf(const QString &aAddress) {
    std::vector<QVariantList> rows;
    WithDatabase(aAddress, [&](QSqlQuery &query) {
        query.setForwardOnly(true);
        query.exec(
            QStringLiteral("SELECT id, kind, inn, kpp, display_name, owner_name, is_main, "
                           "parent_id, parent_kind FROM person ORDER BY id"));
        while (query.next()) {
            QVariantList &row = rows.emplace_back();
            for (int i = 0; i < 9; ++i) row << query.value(i);
        }
    });
    return rows;
}

void EnterBare(const std::vector<QVariantList> &aRows, const QString &aAddress) {
    WithDatabase(aAddress, [&](QSqlQuery &query) {
        query.exec(QStringLiteral("BEGIN"));
        query.prepare(Vk_Records::theInsertPersonSql);
        for (const QVariantList &row : aRows) {
            for (int i = 0; i < row.size(); ++i) query.bindValue(i, row[i]);
            if (!query.exec()) qFatal("a row was not entered");
        }
        if (!query.exec(QStringLiteral("COMMIT"))) qFatal("nothing was entered");
    });
}

}  // namespace

int main(int aCount, char **aArguments) try {
    QCoreApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    VkBench::Figure figure;
    figure.Name = QStringLiteral("records: --import of %1 persons").arg(thePersons);
    if (!VkBench::IsWanted(figure.Name)) return 0;
    const QString files = TheFolder().filePath(QStringLiteral("files"));
    const QString source =
        QStringLiteral("sqlite:") + TheFolder().filePath(QStringLiteral("source.db"));
    Vk_Records::MakeLargeOffice(source, {thePersons, 0, 0});
    Vk_Records::ExportOffice(source, files);
    const std::vector<QVariantList> rows = RowsOf(source);
    QString address;
    figure.PeerName = QStringLiteral("bare loop of a prepared insert");
    figure.Bar = 1.5;
    figure.Rounds = theRounds;
    figure.BeforeOurs = [&] { address = NewAddress(); };
    figure.Ours = [&] { Vk_Records::ImportOffice(address, files); };
    figure.BeforePeer = [&] {
        address = NewAddress();
        Vk_Records::MakeLargeOffice(address, {0, 0, 0});
    };
    figure.Peer = [&] { EnterBare(rows, address); };
    VkBench::Measure(figure);
    return 0;
} catch (const Vk_DocQuery::Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
