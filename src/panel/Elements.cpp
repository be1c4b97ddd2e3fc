#include "panel/Elements.h"

#include <algorithm>
#include <string_view>

namespace Vk_DocQuery {

namespace {

constexpr bool IsPage(std::string_view aName) {
    return std::ranges::any_of(theTabRows, [=](const TabRow &row) { return row.Page == aName; });
}

constexpr bool StandsThereBefore(const ElementRow &aRow, std::string_view aName) {
    return std::any_of(std::begin(theElementRows), &aRow,
                       [=](const ElementRow &row) { return row.Name == aName; });
}

constexpr bool IsThere(std::string_view aName) {
    return std::ranges::any_of(theElementRows,
                               [=](const ElementRow &row) { return row.Name == aName; });
}

constexpr bool EveryParentStandsBefore() {
    return std::ranges::all_of(theElementRows, [](const ElementRow &row) {
        return IsPage(row.Inside) || StandsThereBefore(row, row.Inside);
    });
}

constexpr bool EveryExplanationIsThere() {
    return std::ranges::all_of(theElementRows, [](const ElementRow &row) {
        return *row.ExplainedBy == 0 || IsThere(row.ExplainedBy);
    });
}

constexpr bool EveryNameStandsOnce() {
    return std::ranges::none_of(theElementRows, [](const ElementRow &row) {
        return std::any_of(std::begin(theElementRows), &row, [&](const ElementRow &before) {
            return before.Index == row.Index && std::string_view(before.Name) == row.Name;
        });
    });
}

static_assert(EveryParentStandsBefore());
static_assert(EveryExplanationIsThere());
static_assert(EveryNameStandsOnce());

}  // namespace

QString ObjectName(const char *aName, int aIndex) {
    const QString name = QString::fromLatin1(aName);
    return aIndex == theNoIndex ? name : QStringLiteral("%1(%2)").arg(name).arg(aIndex);
}

}  // namespace Vk_DocQuery
