#include "foundation/Clock.h"
#include "foundation/mErrorHandling.h"
#include "query/Fields.h"

namespace Vk_DocQuery {

VkDocQueryData::VkDocQueryData() try {
    const qint32 year = Today().year();
    for (const Field &field : theFields) {
        if (field.Creation != 0) field.Reset(*this, year);
    }
} catch (...) {
    RaiseErrorUp("VkDocQueryData", "Class_Initialize");
}

VkDocQueryData::VkDocQueryData(const VkDocQueryData &) = default;
VkDocQueryData &VkDocQueryData::operator=(const VkDocQueryData &) = default;
VkDocQueryData::~VkDocQueryData() = default;

}  // namespace Vk_DocQuery
