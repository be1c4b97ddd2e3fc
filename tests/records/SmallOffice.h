#pragma once

#include <QString>

#include "OfficeFolder.h"

namespace VkTests {

/// Opens a new database that holds a handful of records whose facts the tests know, and gives its
/// address:
///   persons  1 organisation with streams, main; 2 branch of 1; 3 private person; 4 organisation
///            without streams; 5 branch of 4 with a stream
///   streams  11 of 1, 12 of 1 (closed), 13 of 3, 15 of 5
///   forms    21 with versions 31 (2015-01-01 to 2018-12-31), 32 (2019-01-01, open end);
///            22 with 33 (open beginning, to 2016-06-30); 23 with 34 (open on both sides);
///            24 without versions
QString OpenSmallOffice(OfficeFolder &aFolder);

}  // namespace VkTests
