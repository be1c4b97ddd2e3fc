#pragma once

#include <cmath>
#include <optional>
#include <vector>

#include <QHash>

#include <Vk_DocQuery/SupplierNotes.h>

#include "Connection.h"
#include "Row.h"

namespace Vk_Records {

/// What ends a request for one identity, and for those of a list as TextOfIDs gives it.
#define VK_IS_ONE "= ?"
#define VK_IS_ONE_OF_A_FILE "IN (SELECT value FROM json_each(?))"
#define VK_IS_ONE_OF_A_SERVER "= ANY (CAST(? AS INTEGER[]))"

struct ManySql {
    const char *File;
    const char *Server;
};

/// The identity as the database keeps it; nothing for a number that can be none.
inline std::optional<qint64> StoredID(double aID) {
    constexpr double bound = 2147483647.0;  // what a query file brings back, and the tables hold
    if (!(aID >= 1 && aID <= bound) || aID != std::trunc(aID)) return std::nullopt;
    return static_cast<qint64>(aID);
}

/// The identities in their order, each once, as the database takes a list; empty if there are none.
QString TextOfIDs(const Connection &aConnection, const std::vector<double> &aIDs);

/// What was read of an identity while a query file is read.
template <class Columns>
struct Noted {
    Columns What;
    quint32 Fetches =
        0;  ///< that were announced and are still to come; 0 of what was not announced
    bool IsGone = false;  ///< the last of these has taken it along
};
template <class Columns>
using NotedByID = QHash<qint64, Noted<Columns>>;

/// The notes of a class; null while no query file is read.
template <class Columns>
NotedByID<Columns> *NotesOf(const char16_t *aClass) {
    std::shared_ptr<void> *notes = Vk_DocQuery::SupplierNotes(QStringView(aClass));
    if (!notes) return nullptr;
    if (!*notes) *notes = std::make_shared<NotedByID<Columns>>();
    return static_cast<NotedByID<Columns> *>(notes->get());
}

/// Fills the columns from the notes, if they are there.
template <class Columns>
bool Fetch(NotedByID<Columns> &rNotes, qint64 aID, Columns &rColumns) {
    const auto found = rNotes.find(aID);
    if (found == rNotes.end() || found->IsGone) return false;
    found->IsGone = found->Fetches == 1;
    if (found->Fetches > 0) --found->Fetches;
    rColumns = found->IsGone ? std::move(found->What) : found->What;
    return true;
}

/// Fills the columns of one identity; aRead takes them from the row of the statement. Raises
/// RecordMissing, which names aClass, if there is none.
template <class Columns, class Read>
void ReadOne(const char *aSql, const char16_t *aClass, double aID, Columns &rColumns, Read aRead) {
    const auto stored = StoredID(aID);
    NotedByID<Columns> *const notes = NotesOf<Columns>(aClass);
    if (notes && stored && Fetch(*notes, *stored, rColumns)) return;
    Connection &connection = ThisThreadsConnection();
    bool isFound = false;
    if (stored) {
        connection.Read(aSql, {*stored}, [&](const Row &row) {
            isFound = true;
            aRead(row, rColumns);
        });
    }
    if (!isFound) RaiseRecordMissing(QString::fromUtf16(aClass), aID, connection);
    if (notes) notes->insert(*stored, {rColumns});
}

/// Reads the columns of those of the identities that are there, by one request.
template <class Columns, class Read>
NotedByID<Columns> ReadMany(Connection &aConnection, const ManySql &aSql,
                            const std::vector<double> &aIDs, Read aRead) {
    NotedByID<Columns> found;
    const QString ids = TextOfIDs(aConnection, aIDs);
    if (ids.isEmpty()) return found;
    found.reserve(static_cast<qsizetype>(aIDs.size()));
    aConnection.Read(aConnection.Where().IsServer ? aSql.Server : aSql.File, {ids},
                     [&](const Row &row) {
                         // The identity is the first column of every class.
                         aRead(row, found[row.Integer(0)].What);
                     });
    return found;
}

/// Notes what aRead gives of the identities, for ReadOne to find it while the same query file is
/// read. What was noted of the class before is forgotten, also if the reading fails.
template <class Columns, class Read>
void Announce(const char16_t *aClass, const std::vector<double> &aIDs, Read aRead) {
    NotedByID<Columns> *const notes = NotesOf<Columns>(aClass);
    if (!notes) return;
    notes->clear();
    *notes = aRead();
    for (const double id : aIDs) {
        const auto noted = notes->find(StoredID(id).value_or(0));
        if (noted != notes->end()) ++noted->Fetches;
    }
}

}  // namespace Vk_Records
