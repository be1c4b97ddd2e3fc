#pragma once

#include <Vk_DocQuery/Providers.h>

namespace Vk_DocQuery {

/// The one instance of this thread, made on first use and kept.
VkRecFactory &GetRecFactory();

}  // namespace Vk_DocQuery
