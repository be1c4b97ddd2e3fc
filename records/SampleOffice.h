#pragma once

#include <QDate>

#include "Connection.h"

namespace Vk_Records {

/// Fills empty tables with the invented office of the folder sample/. Dates that are told there as
/// so many months before today count from aToday.
void FillSampleOffice(Connection &aConnection, QDate aToday);

}  // namespace Vk_Records
