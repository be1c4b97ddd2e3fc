#pragma once

#include <memory>

#include <Vk_DocQuery/KeyedCollection.h>

namespace Vk_DocQuery {

/// Taxpayer categories that may hand in a form in the same streams and with the same branch type.
struct IntCategoryCluster {
    qint32 CatBits = 0;
    qint32 AccBits = 0;
    /// 0 head organisations only, 1 separate subdivisions only, 2 both, 3 entrepreneurs.
    qint32 BranchType = 0;
};

/// In the order of first appearance; the key is "_", BranchType, "_", AccBits.
using CategoryClusters = KeyedCollection<std::shared_ptr<IntCategoryCluster>>;

/// The block of lines that tells of one cluster, each ended by CR LF, an empty one behind them.
QString CategoryBlock(const IntCategoryCluster &aCluster);

}  // namespace Vk_DocQuery
