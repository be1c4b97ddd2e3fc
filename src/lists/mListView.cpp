#include "lists/mListView.h"

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "mListView";

struct Sorting {
    bool Sorted = false;
    qint16 SortKey = 0;
    qint32 SortOrder = 0;
};

}  // namespace

void OnListViewColumnClick(ListView &aList, const ListColumn &aColumn) try {
    const auto key = static_cast<qint16>(aColumn.Index - 1);
    if (aList.IsSorted() && aList.SortKey() == key) {
        aList.SetSortOrder(aList.SortOrder() == 0 ? 1 : 0);
        return;
    }
    if (aList.IsSorted()) aList.SetSorted(false);
    aList.SetSortKey(key);
    aList.SetSortOrder(0);
    aList.SetSorted(true);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void UnselectAllListItems(ListView &aList) try {
    aList.SetSelectedItem(nullptr);
    aList.UnselectAll();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

StoredSorting StoreListViewSorting(const ListView &aList) try {
    return Sorting{aList.IsSorted(), aList.SortKey(), aList.SortOrder()};
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void RestoreListViewSorting(ListView &aList, const StoredSorting &aSorting) try {
    const auto *sorting = std::any_cast<Sorting>(&aSorting);
    if (!sorting || !sorting->Sorted) return;
    aList.SetSortKey(sorting->SortKey);
    aList.SetSortOrder(sorting->SortOrder);
    aList.SetSorted(true);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
