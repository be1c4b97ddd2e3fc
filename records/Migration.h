#pragma once

#include "Connection.h"

namespace Vk_Records {

/// The version of the tables of an office, 0 if it holds none.
int VersionOf(Connection &aConnection);
/// The version that this library makes and reads.
int OwnVersion();

/// Makes the tables of this version in a database without any, in the transaction of the caller.
void MakeTables(Connection &aConnection);

/// Brings an office of an earlier version up to this one, step by step, each in one transaction.
/// Raises what hinders it; the office is whole then, of the version of the last step that was done.
void BringUp(Connection &aConnection);

}  // namespace Vk_Records
