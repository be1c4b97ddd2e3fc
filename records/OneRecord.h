#pragma once

#include <cmath>
#include <optional>

#include <QHash>

#include <Vk_DocQuery/SupplierNotes.h>

#include "Connection.h"

namespace Vk_Records {

/// The identity as the database keeps it; nothing for a number that can be none.
inline std::optional<qint64> StoredID(double aID) {
    constexpr double bound = 2147483647.0;  // what a query file brings back, and the tables hold
    if (!(aID >= 1 && aID <= bound) || aID != std::trunc(aID)) return std::nullopt;
    return static_cast<qint64>(aID);
}

/// What was read of the identities of a class while the same query file is read; null at other
/// times.
template <class Columns>
QHash<qint64, Columns> *ReadBefore(const char16_t *aClass) {
    std::shared_ptr<void> *notes = Vk_DocQuery::SupplierNotes(QStringView(aClass));
    if (!notes) return nullptr;
    if (!*notes) *notes = std::make_shared<QHash<qint64, Columns>>();
    return static_cast<QHash<qint64, Columns> *>(notes->get());
}

/// Fills the columns of one identity; aRead takes them from the row of the statement. Raises
/// RecordMissing, which names aClass, if there is none.
template <class Columns, class Read>
void ReadOne(const char *aSql, const char16_t *aClass, double aID, Columns &rColumns, Read aRead) {
    const auto stored = StoredID(aID);
    QHash<qint64, Columns> *const before = ReadBefore<Columns>(aClass);
    if (before && stored) {
        const auto known = before->constFind(*stored);
        if (known != before->cend()) {
            rColumns = *known;
            return;
        }
    }
    Connection &connection = ThisThreadsConnection();
    bool isFound = false;
    if (stored) {
        QSqlQuery &query = connection.Prepared(aSql);
        query.bindValue(0, *stored);
        connection.Execute(query);
        connection.ForEachRow(query, [&](const QSqlQuery &aRow) {
            isFound = true;
            aRead(aRow);
        });
    }
    if (!isFound) RaiseRecordMissing(QString::fromUtf16(aClass), aID, connection);
    if (before) before->insert(*stored, rColumns);
}

}  // namespace Vk_Records
