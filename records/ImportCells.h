#pragma once

#include <optional>

#include <QDate>
#include <QString>
#include <QVariant>

#include "DelimitedText.h"
#include "TableFiles.h"

namespace Vk_Records {

/// The whole number that the cell holds, and nothing else but blanks.
std::optional<qint32> NumberIn(const RawCell &aCell);

/// The day that the cell holds, written 2024-12-31 or 31.12.2024; an invalid one for an empty cell.
std::optional<QDate> DayIn(const RawCell &aCell);

/// Why the cell cannot stand in the column; empty if it can.
QString WhatIsWrongWith(const RawCell &aCell, const FileColumn &aColumn);

/// The value of a cell with which nothing is wrong.
QVariant ValueIn(const RawCell &aCell, CellKind aKind);

}  // namespace Vk_Records
