#pragma once

#include <functional>
#include <memory>
#include <unordered_map>

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariantList>

#include <Vk_DocQuery/Failure.h>

#include "Address.h"
#include "FileStatement.h"
#include "OfficeFile.h"
#include "Row.h"

namespace Vk_Records {

/// A connection of one thread to the office. Requests that are made again and again keep their
/// prepared statements here.
class Connection {
public:
    /// Connects. Raises DatabaseUnreachable and its like.
    Connection(const Address &aAddress, MissingFile aMissing);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    const Address &Where() const { return theAddress; }
    QSqlDatabase &Database() { return theDatabase; }

    /// Asks for rows and hands each to the function. The request is prepared on first use and kept;
    /// the place of its text in memory is its name. It is free again also if the function fails:
    /// one that stays open would keep the database locked.
    void Read(const char *aSql, const QVariantList &aValues,
              const std::function<void(const Row &aRow)> &aTake);
    /// Runs a statement once, forward-only.
    QSqlQuery Run(const QString &aSql, const QVariantList &aValues = {});
    /// Raises the failure of a request that could not be run.
    void Execute(QSqlQuery &aQuery);
    /// Hands each row to the function and sets the statement free again, also if the function
    /// fails: one that stays open would keep the database locked.
    template <class Row>
    void ForEachRow(QSqlQuery &aQuery, Row aRow) {
        const Reading reading(aQuery);
        while (aQuery.next()) aRow(aQuery);
        EndReading(aQuery);
    }
    /// Raises what cut the reading short, if anything did.
    void EndReading(QSqlQuery &aQuery);
    [[noreturn]] void RaiseRefusal(const QSqlError &aError);

private:
    /// Ends a statement on every way out.
    class Reading {
    public:
        explicit Reading(QSqlQuery &aQuery) : theQuery(aQuery) {}
        ~Reading() { theQuery.finish(); }
        Q_DISABLE_COPY_MOVE(Reading)

    private:
        QSqlQuery &theQuery;
    };

    void OpenFile(MissingFile aMissing);
    void OpenServer();
    void ReadFile(const char *aSql, const QVariantList &aValues,
                  const std::function<void(const Row &aRow)> &aTake);
    QSqlQuery &Prepared(const char *aSql);
    FileStatement &PreparedForFile(const char *aSql);

    Address theAddress;
    QString theName;
    bool theIsConnected = false;
    QSqlDatabase theDatabase;
    sqlite3 *theFile = nullptr;  // if requests can go to it past Qt
    std::unordered_map<const char *, QSqlQuery> thePrepared;
    std::unordered_map<const char *, FileStatement> thePreparedForFile;
};

/// Files that are opened from now on are read past Qt where its driver works with the same copy of
/// SQLite as this library; or none is, as with a driver that has a copy of its own. For tests and
/// measuring.
void ReadFilesPastQt(bool aIsOn);

/// The connection of this thread to the office that is open, made on first use. Raises
/// DatabaseNotOpen.
Connection &ThisThreadsConnection();

/// Makes the office with that first connection the one that is open; null closes.
void SetOpenOffice(std::unique_ptr<Connection> aFirst);

[[noreturn]] void RaiseDatabaseFailure(qint32 aNumber, const QString &aText);

/// Raises RecordMissing.
[[noreturn]] void RaiseRecordMissing(const QString &aClass, double aID,
                                     const Connection &aConnection);

}  // namespace Vk_Records
