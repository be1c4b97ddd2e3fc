#pragma once

#include <vector>

#include "ImportComplaints.h"
#include "ImportFiles.h"

namespace Vk_Records {

/// Complains of every row that the tables of an office would refuse: cells, identities that come
/// twice, and those that are referred to and not there.
void CheckImport(const std::vector<ImportFile> &aFiles, ImportComplaints &rComplaints);

}  // namespace Vk_Records
