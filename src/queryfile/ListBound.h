#pragma once

#include <QString>

namespace Vk_DocQuery {

/// Most entries of one list of a file. More is refused, on reading as on saving: every entry
/// becomes an object, and nobody picks that many.
constexpr qint32 theMostListEntries = 1'000'000;

/// What the user is told of the list of that name.
inline QString ListTooLong(const QString &aName) {
    return QStringLiteral("Список \"%1\" слишком длинный: допускается не более %2 записей.")
        .arg(aName)
        .arg(theMostListEntries);
}

}  // namespace Vk_DocQuery
