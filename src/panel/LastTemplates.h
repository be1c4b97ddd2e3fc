#pragma once

#include <memory>

#include <Vk_DocQuery/Records.h>

namespace Vk_DocQuery {

/// The newest version of a form class, or null if it has none. All versions are read at the first
/// call and kept by thread; a version that is entered later is not seen.
std::shared_ptr<Record> GetLastTemplateByTemplType(double aTemplTypeID);

}  // namespace Vk_DocQuery
