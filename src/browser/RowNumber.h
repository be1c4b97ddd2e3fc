#pragma once

#include <Vk_DocQuery/Providers.h>

#include "foundation/mVkCommonCalc.h"

namespace Vk_DocQuery {

/// The whole number in a field of the present row, 0 for what is none.
inline qint32 RowNumber(const Recordset &aRows, const QString &aField) {
    return VarToLongDef(aRows.Value(aField), 0);
}

}  // namespace Vk_DocQuery
