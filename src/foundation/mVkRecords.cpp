#include "foundation/mVkRecords.h"

#include "foundation/Accessor.h"

namespace Vk_DocQuery {

VkRecFactory &GetRecFactory() try {
    thread_local std::shared_ptr<VkRecFactory> slot;
    return Accessed(slot, QStringLiteral("Vk_Records.VkRecFactory"));
} catch (...) {
    RaiseErrorUp("mVkRecords", __func__);
}

}  // namespace Vk_DocQuery
