#pragma once

#include <cmath>
#include <optional>

#include "Connection.h"

namespace Vk_Records {

/// The identity as the database keeps it; nothing for a number that can be none.
inline std::optional<qint64> StoredID(double aID) {
    constexpr double bound =
        9007199254740992.0;  // beyond it a double no longer tells neighbours apart
    if (!(aID >= 1 && aID <= bound) || aID != std::trunc(aID)) return std::nullopt;
    return static_cast<qint64>(aID);
}

/// Runs a statement for one identity; aRead takes the row. Raises RecordMissing, which names
/// aClass, if there is none.
template <class Read>
void ReadOne(const char *aSql, const char16_t *aClass, double aID, Read aRead) {
    Connection &connection = ThisThreadsConnection();
    const auto stored = StoredID(aID);
    bool isFound = false;
    if (stored) {
        QSqlQuery &query = connection.Prepared(aSql);
        query.bindValue(0, *stored);
        connection.Execute(query);
        isFound = query.next();
        if (isFound) aRead(query);
        connection.EndReading(query);
    }
    if (!isFound) RaiseRecordMissing(QString::fromUtf16(aClass), aID, connection);
}

}  // namespace Vk_Records
