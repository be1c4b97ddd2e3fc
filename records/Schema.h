#pragma once

#include <functional>

#include "Connection.h"

namespace Vk_Records {

/// Sees to it that the database has the tables of this version. A database that holds nothing gets
/// them, and aFill fills it, in one transaction: all or none. Raises DatabaseForeign,
/// DatabaseTooNew, DatabaseDamaged.
void EnsureSchema(Connection &aConnection, const std::function<void(Connection &)> &aFill);

/// The text of a compiled-in file, such as "sql/schema.sql".
QString CompiledText(const QString &aName);

}  // namespace Vk_Records
