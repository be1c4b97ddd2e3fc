#pragma once

#include <Vk_DocQuery/VkDocQueryData.h>

namespace Vk_DocQuery {

/// What the user is told of the first fault of the search, with which nothing could be found; empty
/// if it has none. A list that is absent becomes an empty one.
QString FaultOf(VkDocQueryData &aRecord);

}  // namespace Vk_DocQuery
