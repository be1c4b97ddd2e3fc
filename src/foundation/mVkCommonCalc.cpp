#include "foundation/mVkCommonCalc.h"

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

QString VarToStrDef(const LooseValue &aValue, const QString &aDefault) {
    QString result = aDefault;
    IgnoringFailures([&] { result = ToText(aValue); });
    return result;
}

qint32 VarToLongDef(const LooseValue &aValue, qint32 aDefault) {
    qint32 result = aDefault;
    IgnoringFailures([&] { result = ToLong(aValue); });
    return result;
}

QDate VarToDateDef(const LooseValue &aValue, QDate /*aDefault*/) {
    QDate result = ZeroDate();
    if (!IsEmpty(aValue)) IgnoringFailures([&] { result = ToDate(aValue); });
    return result;
}

}  // namespace Vk_DocQuery
