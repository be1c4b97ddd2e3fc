#pragma once

#include <array>
#include <cstddef>

#include <QtGlobal>

namespace Vk_DocQuery {

/// Where a form exists by period: rows -1 to 7, columns 0 to 30. Row 0 is this year, row 7 the year
/// seven years back; column 0 is the year, columns 1 to 30 are period codes, 1 where the form
/// exists. Column 0 of row -1 is 1 if it exists outside of all periods.
class TimeTable {
public:
    static constexpr int theLastRow = 7;
    static constexpr int theLastColumn = 30;

    qint32 &At(int aRow, int aColumn) { return theCells[Place(aRow, aColumn)]; }
    qint32 At(int aRow, int aColumn) const { return theCells[Place(aRow, aColumn)]; }

private:
    static constexpr std::size_t Place(int aRow, int aColumn) {
        return static_cast<std::size_t>(aRow + 1) * (theLastColumn + 1) +
               static_cast<std::size_t>(aColumn);
    }
    std::array<qint32, std::size_t{theLastRow + 2} * (theLastColumn + 1)> theCells{};
};

}  // namespace Vk_DocQuery
