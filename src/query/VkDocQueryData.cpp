#include "foundation/Clock.h"
#include "foundation/mErrorHandling.h"
#include "query/Fields.h"

namespace Vk_DocQuery {

namespace {

// The numbers are part of the public face; none may be lost or doubled.
consteval bool EveryNumberStandsOnce() {
    std::array<bool, theFields.size()> seen{};
    for (const Field &field : theFields) {
        const auto number = static_cast<std::size_t>(field.Dispatch);
        if (number >= seen.size() || seen[number]) return false;
        seen[number] = true;
    }
    return true;
}

static_assert(EveryNumberStandsOnce());

}  // namespace

VkDocQueryData::VkDocQueryData() try
    : OnePeriodYear(Today().year()),
      RangePeriodYear1(OnePeriodYear),
      RangePeriodYear2(OnePeriodYear) {
} catch (...) {
    RaiseErrorUp("VkDocQueryData", "Class_Initialize");
}

VkDocQueryData::VkDocQueryData(const VkDocQueryData &) = default;
VkDocQueryData &VkDocQueryData::operator=(const VkDocQueryData &) = default;
VkDocQueryData::~VkDocQueryData() = default;

}  // namespace Vk_DocQuery
