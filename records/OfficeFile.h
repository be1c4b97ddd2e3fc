#pragma once

#include "Address.h"

namespace Vk_Records {

/// What it means that the file of a database is not there.
enum class MissingFile {
    IsMade,      ///< it is new, and connecting makes it
    IsNoOffice,  ///< there is nothing to open
    IsGone,      ///< it was there before
};

/// Raises what can be told of the file of a database from outside it. It is not opened for that:
/// closing it again would drop the locks of all connections of this program.
void CheckFile(const Address &aAddress, MissingFile aMissing);

}  // namespace Vk_Records
