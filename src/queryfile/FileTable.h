#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>

#include "query/Fields.h"

/// What stands where in the file, for the writer and the reader.
namespace Vk_DocQuery::FileTable {

/// A field that must be on, or hold a number.
struct ReadCondition {
    const Field *What = nullptr;  ///< none is always
    qint32 Wanted = 1;
};
using ReadConditions = std::array<ReadCondition, 2>;

/// An attribute has the name of its field. It is always written, and read where its conditions
/// hold; one that is missing is read as false, zero, empty or null, not as the value of a new
/// record.
struct Attribute {
    const Field *Target = nullptr;
    ReadConditions When = {};
    /// What a read puts back first in an element that does so; zero is false and empty as well.
    std::optional<qint32> Before = 0;

    consteval Attribute PutBackTo(qint32 aValue) const { return {Target, When, aValue}; }
    consteval Attribute Kept() const { return {Target, When, std::nullopt}; }
};

using Line = std::array<Attribute, 5>;

/// Stands behind the lines of its element. Of lists of one name that is read whose conditions hold.
struct IdentityList {
    const Field *Target = nullptr;
    ReadConditions When = {};
    const char16_t *ItemClass = nullptr;
};

struct FileElement {
    const char *Name;
    std::span<const Line> Lines;
    std::array<IdentityList, 2> Lists = {};
    /// Whether a read puts the fields back before it looks at the file. Those of other elements
    /// keep what they hold where the file has nothing for them.
    bool PutsBack = false;
    const char16_t *LineEnd = u" ";  ///< the blank belongs to the format
};

consteval Attribute Always(std::string_view aName) {
    return {FieldNamed(aName)};
}
consteval Attribute If(std::string_view aSwitch, std::string_view aName) {
    return {FieldNamed(aName), {{{FieldNamed(aSwitch)}}}};
}
consteval Attribute IfBoth(std::string_view aSwitch, std::string_view aOther,
                           std::string_view aName) {
    return {FieldNamed(aName), {{{FieldNamed(aSwitch)}, {FieldNamed(aOther)}}}};
}
consteval IdentityList ListIf(std::string_view aSwitch, std::string_view aName,
                              const char16_t *aClass) {
    return {FieldNamed(aName), {{{FieldNamed(aSwitch)}}}, aClass};
}
consteval IdentityList ListIn(std::string_view aSwitch, std::string_view aMode, qint32 aValue,
                              std::string_view aName, const char16_t *aClass) {
    return {FieldNamed(aName), {{{FieldNamed(aSwitch)}, {FieldNamed(aMode), aValue}}}, aClass};
}

// clang-format off: one line of the file is one row, as far as it goes.
inline constexpr Line theDocLines[] = {
    {Always("IsDocStatus"), If("IsDocStatus", "DocStatuses")},
    {Always("IsNotes"), If("IsNotes", "NotesMode").Kept(), If("IsNotes", "Notes")},
    {Always("IsSignDate"), If("IsSignDate", "SignDate1"), If("IsSignDate", "SignDate2")},
    {Always("IsSignerFio"), If("IsSignerFio", "SignerSurname")},
    {Always("IsOrvex"), If("IsOrvex", "IsOrvexStages"),
     IfBoth("IsOrvex", "IsOrvexStages", "OrvexStages"), If("IsOrvex", "IsOrvexTerms"),
     IfBoth("IsOrvex", "IsOrvexTerms", "OrvexTerms")},
    {Always("IsFss"), If("IsFss", "IsFssStages"), IfBoth("IsFss", "IsFssStages", "FssStages"),
     If("IsFss", "IsFssTerms"), IfBoth("IsFss", "IsFssTerms", "FssTerms")},
    {Always("IsDocNum"), If("IsDocNum", "DocNumMode").PutBackTo(DocLastNums),
     If("IsDocNum", "DocNum1"), If("IsDocNum", "DocNum2"),
     If("IsDocNum", "LastDocNumsCount").PutBackTo(10)},
    {Always("WholePfrCluster")},
};

inline constexpr Line theTemplateLines[] = {
    {Always("IsTemplate"), If("IsTemplate", "TemplatesMode")},
};

inline constexpr Line thePeriodLines[] = {
    {Always("IsPeriods"), If("IsPeriods", "PeriodCriterion")},
    {If("IsPeriods", "OnePeriodYear"), If("IsPeriods", "OnePeriodMonthID")},
    {If("IsPeriods", "RangePeriodYear1"), If("IsPeriods", "RangePeriodMonth1"),
     If("IsPeriods", "RangePeriodYear2"), If("IsPeriods", "RangePeriodMonth2")},
    {If("IsPeriods", "IsPeriodTypes"), IfBoth("IsPeriods", "IsPeriodTypes", "PeriodTypes")},
};

inline constexpr Line theStreamLines[] = {
    {Always("IsAccStreamType"), If("IsAccStreamType", "AccStreamTypes")},
    {Always("IsAccStreamOpeness"), If("IsAccStreamOpeness", "AccStreamOpen")},
    {Always("IsContoraPrefix1"), If("IsContoraPrefix1", "ContoraPrefix1"),
     Always("IsContoraPrefix2"), If("IsContoraPrefix2", "ContoraPrefix2"),
     Always("ContoraJoining")},  // has no switch of its own
    {Always("IsAccStreamsList")},
};

inline constexpr Line theTaxpayerLines[] = {
    {Always("IsTaxpayers"), If("IsTaxpayers", "TaxpayersType"),
     If("IsTaxpayers", "IncludeMainOrgDocs")},
};

inline constexpr Line theOtherLines[] = {
    {Always("LastTab")},
};

/// The elements under the root, in the order in which they are written and read.
inline constexpr FileElement theElements[] = {
    {"DocCriteria", theDocLines, {}, true},
    {"TemplateCriteria",
     theTemplateLines,
     {{ListIn("IsTemplate", "TemplatesMode", TemplateClass, "Templates", u"Vk_Records.VkTemplType"),
       ListIn("IsTemplate", "TemplatesMode", TemplateVersion, "Templates",
              u"Vk_Records.VkTemplate")}}},
    {"PeriodCriteria", thePeriodLines},
    {"AccStreamCriteria",
     theStreamLines,
     {{ListIf("IsAccStreamsList", "AccStreamsList", u"Vk_Records.VkAccStream")}}},
    {"TaxpayersCriteria",
     theTaxpayerLines,
     {{ListIf("IsTaxpayers", "TaxpayersList", u"Vk_Records.VkPerson")}}},
    {"OtherOptions", theOtherLines, {}, false, u""},  // the one line without the blank
};
// clang-format on

}  // namespace Vk_DocQuery::FileTable
