#pragma once

#include "OfficeFolder.h"

namespace VkTests {

/// The address of a database as the program of that version has left it.
QString StoredOffice(OfficeFolder &aFolder, int aVersion);

int VersionIn(const OfficeFolder &aFolder, const QString &aAddress);
/// All records; a name without a text counts as an empty one.
QString ContentsOf(const OfficeFolder &aFolder, const QString &aAddress);
/// Tables, columns, checks, keys and indexes.
QString ShapeOf(const OfficeFolder &aFolder, const QString &aAddress);

}  // namespace VkTests
