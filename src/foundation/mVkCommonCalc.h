#pragma once

#include <Vk_DocQuery/LooseValue.h>

namespace Vk_DocQuery {

/// Conversions with a fallback; they never fail.

QString VarToStrDef(const LooseValue &aValue, const QString &aDefault);
qint32 VarToLongDef(const LooseValue &aValue, qint32 aDefault);
/// Falls back to ZeroDate, also for an empty value; aDefault is not looked at.
QDate VarToDateDef(const LooseValue &aValue, QDate aDefault);

}  // namespace Vk_DocQuery
