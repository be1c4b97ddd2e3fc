#pragma once

#include <utility>
#include <vector>

#include <QHash>

#include <Vk_DocQuery/SupplierNotes.h>

#include "Connection.h"
#include "KeptRows.h"
#include "Row.h"

namespace Vk_Records {

/// What ends a request for one identity, and for those of a list.
#define VK_IS_ONE "= ?"
#define VK_IS_ONE_OF_A_FILE "IN (SELECT value FROM json_each(?))"
#define VK_IS_ONE_OF_A_SERVER "= ANY (CAST(? AS INTEGER[]))"

/// What is known of a class while a query file is read. Reader has the Columns of a record and
/// fills them from a row; what records share, their owners for one, it makes once. It is told how
/// many records to expect.
template <class Reader>
class Notes {
public:
    using Columns = typename Reader::Columns;

    Notes() = default;
    explicit Notes(KeptByID aAnnounced)
        : theAnnounced(std::move(aAnnounced)), theReader(theAnnounced.Count()) {}

    /// Fills the columns if the identity is known.
    bool Fetch(qint64 aID, Columns &rColumns) {
        const auto made = theMade.constFind(aID);
        if (made != theMade.cend()) {
            rColumns = *made;
            return true;
        }
        const KeptByID::Answer announced = theAnnounced.Find(aID);
        if (announced.Rows.empty()) return false;
        theReader(Row(announced.Rows.front()), rColumns);
        if (announced.IsRepeated) Note(aID, rColumns);
        return true;
    }
    void Note(qint64 aID, const Columns &aColumns) { theMade.insert(aID, aColumns); }

private:
    KeptByID theAnnounced;
    Reader theReader;
    QHash<qint64, Columns> theMade;  // of what may be asked for again: its texts are there once
};

/// The notes of a class; null while no query file is read.
template <class Reader>
Notes<Reader> *NotesOf(const char16_t *aClass) {
    std::shared_ptr<void> *notes = Vk_DocQuery::SupplierNotes(QStringView(aClass));
    if (!notes) return nullptr;
    if (!*notes) *notes = std::make_shared<Notes<Reader>>();
    return static_cast<Notes<Reader> *>(notes->get());
}

/// Fills the columns of one identity. Raises RecordMissing, which names aClass, if there is none.
template <class Reader>
void ReadOne(const char *aSql, const char16_t *aClass, double aID,
             typename Reader::Columns &rColumns) {
    const auto stored = StoredID(aID);
    Notes<Reader> *const notes = NotesOf<Reader>(aClass);
    if (notes && stored && notes->Fetch(*stored, rColumns)) return;
    Connection &connection = ThisThreadsConnection();
    bool isFound = false;
    if (stored) {
        connection.Read(aSql, {*stored}, [&](const Row &row) {
            isFound = true;
            Reader()(row, rColumns);
        });
    }
    if (!isFound) RaiseRecordMissing(QString::fromUtf16(aClass), aID, connection);
    if (notes) notes->Note(*stored, rColumns);
}

/// Notes the rows of the identities, for ReadOne to find them while the same query file is read.
/// What was noted of the class before is forgotten, also if the reading fails.
template <class Reader>
void Announce(const ManySql &aSql, const char16_t *aClass, const std::vector<double> &aIDs) {
    Notes<Reader> *const notes = NotesOf<Reader>(aClass);
    if (!notes) return;
    *notes = Notes<Reader>();
    *notes = Notes<Reader>(KeptByID(ThisThreadsConnection(), aSql, aIDs));
}

}  // namespace Vk_Records
