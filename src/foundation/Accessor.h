#pragma once

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

/// The shared part of the accessors: fills the slot on first use. aSlot is the accessor's own slot
/// of this thread.
template <class Provider>
Provider &Accessed(std::shared_ptr<Provider> &aSlot, const QString &aClass) {
    if (!aSlot) aSlot = CreateObjectAs<Provider>(aClass);
    return *aSlot;
}

}  // namespace Vk_DocQuery
