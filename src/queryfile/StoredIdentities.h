#pragma once

#include <vector>

#include "queryfile/XmlNode.h"

namespace Vk_DocQuery {

/// The identities that stand in the list aName of the element, in their order, without those that
/// are zero or unreadable.
std::vector<double> StoredIdentities(const XmlNode &aNode, const char *aName);

}  // namespace Vk_DocQuery
