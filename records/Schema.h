#pragma once

#include <functional>

#include "Connection.h"

namespace Vk_Records {

/// False if the database holds nothing. Raises DatabaseForeign, and DatabaseUnreachable where the
/// tables may not be seen.
bool HasOffice(Connection &aConnection);

/// Gives a database that holds nothing its tables, and aFill fills it, in one transaction: all or
/// none. False if there is an office already. Raises like HasOffice.
bool MakeOffice(Connection &aConnection, const std::function<void(Connection &)> &aFill);

/// The same in a database that there is nothing in yet. Raises DatabaseForeign if there is.
void MakeNewOffice(const Address &aAddress, const std::function<void(Connection &)> &aFill);

/// Raises DatabaseEmpty if the database holds nothing, else like HasOffice.
void RequireOffice(Connection &aConnection);

/// Sees to it that an office can be used. Raises DatabaseTooNew, DatabaseDamaged.
void CheckOffice(Connection &aConnection);

}  // namespace Vk_Records
