#pragma once

#include <any>

#include "lists/ListView.h"

namespace Vk_DocQuery {

/// A list's sort state as an opaque value that its caller keeps.
using StoredSorting = std::any;

/// The click on a header: sorts ascending by that column, or turns the direction if it is the sort
/// column already. Sorting is never turned off.
void OnListViewColumnClick(ListView &aList, const ListColumn &aColumn);
/// Takes the current row and all selected marks away.
void UnselectAllListItems(ListView &aList);
StoredSorting StoreListViewSorting(const ListView &aList);
/// Puts a stored sort state back. A state that was unsorted changes nothing, and neither does a
/// value that StoreListViewSorting did not give.
void RestoreListViewSorting(ListView &aList, const StoredSorting &aSorting);

}  // namespace Vk_DocQuery
