#pragma once

#include <QImage>
#include <QPixmap>

#include "lists/ListView.h"

namespace VkTests {

/// The cell as it looks to the user.
inline QImage CellImage(const Vk_DocQuery::ListView &aList, int aRow, int aColumn = 0) {
    return aList.viewport()->grab(aList.CellRect(aList.Row(aRow), aColumn)).toImage();
}

}  // namespace VkTests
