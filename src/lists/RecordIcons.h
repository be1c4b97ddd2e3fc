#pragma once

#include <Vk_DocQuery/Records.h>

#include "lists/ListView.h"

namespace Vk_DocQuery {

/// Gives a row the picture that a record has named for itself; an empty key is no picture. Raises
/// InvalidArgument for a key that is not among the pictures of the list, and names the record.
void SetRecordIcon(ListRow &aRow, const Record &aRecord, const QString &aKey);

/// The same for a cell, which may show another record than the row.
void SetRecordCellIcon(ListRow &aRow, int aCell, const Record &aRecord, const QString &aKey);

}  // namespace Vk_DocQuery
