#pragma once

#include <memory>

#include <Vk_DocQuery/KeyedCollection.h>
#include <Vk_DocQuery/Records.h>

#include "foundation/Present.h"
#include "lists/ListView.h"

namespace Vk_DocQuery {

/// The record that a row shows, as the class that it must be.
template <class Kind>
std::shared_ptr<Kind> TagAs(const ListRow &aRow, const char *aWhat) {
    return PresentAs<Kind>(aRow.Tag(), aWhat);
}

/// The records of all rows, in their order; null for a row without one.
inline std::shared_ptr<RecordCollection> TagsOf(const ListView &aList) {
    auto records = std::make_shared<RecordCollection>();
    records->Reserve(aList.RowCount());
    for (int i = 0; i < aList.RowCount(); ++i)
        records->Add(std::dynamic_pointer_cast<Record>(aList.Row(i)->Tag()));
    return records;
}

}  // namespace Vk_DocQuery
