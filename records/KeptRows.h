#pragma once

#include <cmath>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Connection.h"
#include "KeptRow.h"
#include "Row.h"

namespace Vk_Records {

/// The identity as the database keeps it; nothing for a number that can be none.
inline std::optional<qint64> StoredID(double aID) {
    constexpr double bound = 2147483647.0;  // what a query file brings back, and the tables hold
    if (!(aID >= 1 && aID <= bound) || aID != std::trunc(aID)) return std::nullopt;
    return static_cast<qint64>(aID);
}

/// Copies of rows in few pieces of memory. Who makes records of them later, in the order in which
/// they are looked at and given up, has them side by side in memory then: records that lie about in
/// the order of the database take twice the time.
class KeptRows {
public:
    /// The copy is good as long as this object, or the one that it was moved to.
    KeptRow Take(const Row &aRow);

private:
    char *Room(std::size_t aSize);

    std::vector<std::unique_ptr<char[]>> theBlocks;
    std::size_t theBlockSize = 0;
    std::size_t theUsed = 0;  // of the last block
    KeptRowMaker theRow;
};

/// A request for the identities of a list, which files and servers take differently.
struct ManySql {
    const char *File;
    const char *Server;
};

/// The rows that a request gives for a list of identities; they need the connection no more.
class KeptByID {
public:
    KeptByID() = default;
    /// Asks, unless none of the identities can be one. Rows of one identity, which stands in
    /// aIDColumn, come one behind the other.
    KeptByID(Connection &aConnection, const ManySql &aSql, const std::vector<double> &aIDs,
             int aIDColumn = 0);

    struct Answer {
        std::span<const KeptRow> Rows;  ///< good as long as the KeptByID
        bool IsAsked = false;           ///< the identity is in the list
        bool IsRepeated = false;        ///< more than once
    };
    std::size_t Count() const { return theRows.size(); }
    /// Quickest in the order of the list.
    Answer Find(qint64 aID);

private:
    struct Entry {
        qint64 ID = 0;
        quint32 Listed = 0;  // where it stands in the list
        quint32 Begin = 0;   // of its rows
        quint32 Count = 0;
        bool IsRepeated = false;
    };
    using Place = std::vector<Entry>::iterator;
    void Ask(const std::vector<double> &aIDs);
    QString List(bool aIsForServer) const;
    Place Take(const Row &aRow, int aIDColumn, Place aLikely);

    std::vector<Entry> theEntries;  // in the order of the identities
    std::vector<quint32> theOrder;  // the entries of the identities as they were listed
    std::size_t theNext = 0;        // in that order
    std::vector<KeptRow> theRows;
    KeptRows theMemory;
};

}  // namespace Vk_Records
