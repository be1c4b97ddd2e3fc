#pragma once

#include <memory>

#include "foundation/mErrorHandling.h"
#include "foundation/Present.h"
#include "lists/ListView.h"

namespace Vk_DocQuery {

/// The record that a row shows, as the class that it must be.
template <class Kind>
std::shared_ptr<Kind> TagAs(const ListRow &aRow, const char *aWhat) {
    Present(aRow.Tag(), aWhat);
    auto record = std::dynamic_pointer_cast<Kind>(aRow.Tag());
    if (!record) RaiseTypeMismatch(QString::fromLatin1(aWhat));
    return record;
}

}  // namespace Vk_DocQuery
