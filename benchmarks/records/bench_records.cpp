// What the record classes cost over the database itself: beside plain queries that take the same
// columns into plain structs.
#include <cstdio>
#include <vector>

#include <QCoreApplication>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/Providers.h>
#include <Vk_Records/Database.h>

#include "Figure.h"
#include "LargeOffice.h"

namespace {

using namespace Vk_DocQuery;

constexpr int thePersons = 100000;
constexpr int theLoads = 10000;

struct PlainPerson {
    qint64 ID = 0;
    int Kind = 0;
    QString Inn;
    QString Kpp;
    QString Name;
    QString OwnerName;
    bool IsMain = false;
    qint64 ParentID = 0;
};

PlainPerson PlainPersonOf(const QSqlQuery &aRow, int aFirst) {
    return {aRow.value(aFirst).toLongLong(),     aRow.value(aFirst + 1).toInt(),
            aRow.value(aFirst + 2).toString(),   aRow.value(aFirst + 3).toString(),
            aRow.value(aFirst + 4).toString(),   aRow.value(aFirst + 5).toString(),
            aRow.value(aFirst + 6).toInt() != 0, aRow.value(aFirst + 7).toLongLong()};
}

const QString theColumns = QStringLiteral(
    "%1.id, %1.kind, %1.inn, %1.kpp, %1.display_name, %1.owner_name, %1.is_main, %1.parent_id");

std::vector<PlainPerson> PlainPersons(const QSqlDatabase &aDatabase) {
    QSqlQuery query(aDatabase);
    query.setForwardOnly(true);
    query.exec(QStringLiteral("SELECT %1 FROM person p ORDER BY p.display_name, p.id")
                   .arg(theColumns.arg(QChar(u'p'))));
    std::vector<PlainPerson> persons;
    while (query.next()) persons.push_back(PlainPersonOf(query, 0));
    return persons;
}

/// The identity that is loaded in round i: all over the table.
qint64 IdentityAt(int i) {
    return static_cast<qint64>(i) * 7919 % thePersons + 1;
}

std::vector<PlainPerson> PlainLoads(const QSqlDatabase &aDatabase) {
    QSqlQuery query(aDatabase);
    query.setForwardOnly(true);
    query.prepare(
        QStringLiteral(
            "SELECT %1, %2 FROM person p LEFT JOIN person q ON q.id = p.parent_id WHERE p.id = ?")
            .arg(theColumns.arg(QChar(u'p')), theColumns.arg(QChar(u'q'))));
    std::vector<PlainPerson> persons;
    for (int i = 0; i < theLoads; ++i) {
        query.bindValue(0, IdentityAt(i));
        query.exec();
        if (!query.next()) continue;
        persons.push_back(PlainPersonOf(query, 0));
        if (persons.back().ParentID != 0) persons.push_back(PlainPersonOf(query, 8));
    }
    return persons;
}

void Check(qsizetype aCount) {
    if (aCount < theLoads) qFatal("the records were not read");
}

void MeasureAll(const QSqlDatabase &aDatabase) {
    const auto queries = std::dynamic_pointer_cast<PersonQueries>(
        ClassRegistry::Create(QStringLiteral("Vk_DBProvider.PersonQueries")));
    VkBench::Figure persons;
    persons.Name = QStringLiteral("records: GetPersons, 100000 persons");
    persons.PeerName = QStringLiteral("forward-only QSqlQuery into structs");
    persons.Bar = 1.3;
    persons.Ours = [&] { Check(queries->GetPersons(QString(), 0)->Count()); };
    persons.Peer = [&] { Check(static_cast<qsizetype>(PlainPersons(aDatabase).size())); };
    VkBench::Measure(persons);

    VkBench::Figure loads;
    loads.Name = QStringLiteral("records: 10000 SetID of persons");
    loads.PeerName = QStringLiteral("prepared QSqlQuery into structs");
    loads.Bar = 1.3;
    loads.Ours = [] {
        std::vector<std::shared_ptr<Object>> records;
        for (int i = 0; i < theLoads; ++i) {
            records.push_back(ClassRegistry::Create(QStringLiteral("Vk_Records.VkPerson")));
            static_cast<Record &>(*records.back()).SetID(static_cast<double>(IdentityAt(i)));
        }
        Check(static_cast<qsizetype>(records.size()));
    };
    loads.Peer = [&] { Check(static_cast<qsizetype>(PlainLoads(aDatabase).size())); };
    VkBench::Measure(loads);
}

}  // namespace

int main(int aCount, char **aArguments) try {
    QCoreApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("office.db"));
    Vk_Records::MakeLargeOffice(QStringLiteral("sqlite:") + path, {thePersons, 0, 0});
    Vk_Records::OpenDatabase(QStringLiteral("sqlite:") + path);
    {
        QSqlDatabase peer =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("peer"));
        peer.setDatabaseName(path);
        if (!peer.open()) return 1;
        // As much memory for pages of the file as the records take.
        if (!QSqlQuery(peer).exec(QStringLiteral("PRAGMA cache_size = -65536"))) return 1;
        MeasureAll(peer);
    }
    QSqlDatabase::removeDatabase(QStringLiteral("peer"));
    Vk_Records::CloseDatabase();
    return 0;
} catch (const Vk_DocQuery::Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
