#include "query/Fields.h"

namespace Vk_DocQuery {

namespace {

// Declaration order and numbers are both part of the public face; a field may neither be lost nor
// doubled.
consteval bool EveryNumberStandsOnce() {
    std::array<bool, theFields.size()> seen{};
    for (const Field &field : theFields) {
        const auto number = static_cast<std::size_t>(field.Dispatch);
        if (number >= seen.size() || seen[number]) return false;
        seen[number] = true;
    }
    return true;
}

static_assert(theFields.size() == 57);
static_assert(EveryNumberStandsOnce());

}  // namespace

void Field::Reset(VkDocQueryData &aRecord, qint32 aYear) const {
    switch (Kind) {
        case FieldKind::Text:
            Text(aRecord).clear();
            break;
        case FieldKind::Boolean:
            Boolean(aRecord) = false;
            break;
        case FieldKind::Date:
            Date(aRecord) = Empty();
            break;
        case FieldKind::Collection:
            Collection(aRecord).reset();
            break;
        case FieldKind::Long:
        case FieldKind::Enumeration:
        case FieldKind::Flags:
            SetLong(aRecord, Creation == theYearOfToday ? aYear : Creation);
            break;
    }
}

}  // namespace Vk_DocQuery
