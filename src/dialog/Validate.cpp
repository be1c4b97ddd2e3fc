#include <Vk_DocQuery/VkDocQueryData.h>

#include "foundation/mErrorHandling.h"
#include "query/Checks.h"
#include "windows/Boxes.h"

namespace Vk_DocQuery {

bool VkDocQueryData::Validate() try {
    const QString fault = FaultOf(*this);
    if (fault.isEmpty()) return true;
    ShowWarningBox(fault, QStringLiteral("Параметры критериев поиска"));
    return false;
} catch (...) {
    RaiseErrorUp("VkDocQueryData", __func__);
}

}  // namespace Vk_DocQuery
