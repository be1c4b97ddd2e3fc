#pragma once

#include <array>
#include <string_view>
#include <variant>

#include <Vk_DocQuery/VkDocQueryData.h>

namespace Vk_DocQuery {

enum class FieldKind { Text, Boolean, Long, Enumeration, Flags, Date, Collection };

/// A field of whole numbers, whatever its enumeration is called.
struct LongMember {
    qint32 (*Get)(const VkDocQueryData &);
    void (*Set)(VkDocQueryData &, qint32);
};

using FieldMember =
    std::variant<QString VkDocQueryData::*, bool VkDocQueryData::*, LongMember,
                 LooseValue VkDocQueryData::*, std::shared_ptr<RecordCollection> VkDocQueryData::*>;

/// One public field of the record.
struct Field {
    const char *Name;
    qint32 Dispatch;  ///< number of the member in the public interface, in the order of adding
    FieldKind Kind;
    FieldMember Member;

    QString &Text(VkDocQueryData &aRecord) const {
        return aRecord.*std::get<QString VkDocQueryData::*>(Member);
    }
    bool &Boolean(VkDocQueryData &aRecord) const {
        return aRecord.*std::get<bool VkDocQueryData::*>(Member);
    }
    LooseValue &Date(VkDocQueryData &aRecord) const {
        return aRecord.*std::get<LooseValue VkDocQueryData::*>(Member);
    }
    std::shared_ptr<RecordCollection> &Collection(VkDocQueryData &aRecord) const {
        return aRecord.*std::get<std::shared_ptr<RecordCollection> VkDocQueryData::*>(Member);
    }
    qint32 Long(const VkDocQueryData &aRecord) const {
        return std::get<LongMember>(Member).Get(aRecord);
    }
    void SetLong(VkDocQueryData &aRecord, qint32 aValue) const {
        std::get<LongMember>(Member).Set(aRecord, aValue);
    }
};

template <auto Member>
constexpr FieldMember MemberOf() {
    using Pointer = decltype(Member);
    if constexpr (std::is_constructible_v<FieldMember, Pointer>) {
        return Member;
    } else {
        using Number = std::remove_reference_t<decltype(std::declval<VkDocQueryData &>().*Member)>;
        return LongMember{
            [](const VkDocQueryData &aRecord) { return static_cast<qint32>(aRecord.*Member); },
            [](VkDocQueryData &aRecord, qint32 aValue) {
                aRecord.*Member = static_cast<Number>(aValue);
            }};
    }
}

#define VK_FIELD(Name, Dispatch, Kind)                                        \
    Field {                                                                   \
#Name, Dispatch, FieldKind::Kind, MemberOf < &VkDocQueryData::Name>() \
    }

// clang-format off
/// All public fields, in the order of their declaration.
inline constexpr std::array theFields{
    VK_FIELD(FileName,           0x00, Text),
    VK_FIELD(IsTaxpayers,        0x29, Boolean),
    VK_FIELD(TaxpayersType,      0x2A, Enumeration),
    VK_FIELD(TaxpayersList,      0x2B, Collection),
    VK_FIELD(IncludeMainOrgDocs, 0x2C, Boolean),
    VK_FIELD(IsAccStreamType,    0x1F, Boolean),
    VK_FIELD(AccStreamTypes,     0x20, Flags),
    VK_FIELD(IsAccStreamOpeness, 0x21, Boolean),
    VK_FIELD(AccStreamOpen,      0x22, Enumeration),
    VK_FIELD(IsContoraPrefix1,   0x23, Boolean),
    VK_FIELD(ContoraPrefix1,     0x24, Text),
    VK_FIELD(IsContoraPrefix2,   0x25, Boolean),
    VK_FIELD(ContoraPrefix2,     0x26, Text),
    VK_FIELD(ContoraJoining,     0x2F, Enumeration),
    VK_FIELD(IsAccStreamsList,   0x27, Boolean),
    VK_FIELD(AccStreamsList,     0x28, Collection),
    VK_FIELD(IsPeriods,          0x15, Boolean),
    VK_FIELD(PeriodCriterion,    0x16, Enumeration),
    VK_FIELD(OnePeriodYear,      0x17, Long),
    VK_FIELD(OnePeriodMonthID,   0x18, Long),
    VK_FIELD(RangePeriodYear1,   0x19, Long),
    VK_FIELD(RangePeriodMonth1,  0x1A, Long),
    VK_FIELD(RangePeriodYear2,   0x1B, Long),
    VK_FIELD(RangePeriodMonth2,  0x1C, Long),
    VK_FIELD(IsPeriodTypes,      0x1D, Boolean),
    VK_FIELD(PeriodTypes,        0x1E, Flags),
    VK_FIELD(IsTemplate,         0x12, Boolean),
    VK_FIELD(TemplatesMode,      0x13, Enumeration),
    VK_FIELD(Templates,          0x14, Collection),
    VK_FIELD(IsDocStatus,        0x01, Boolean),
    VK_FIELD(DocStatuses,        0x02, Flags),
    VK_FIELD(IsSignDate,         0x03, Boolean),
    VK_FIELD(SignDate1,          0x04, Date),
    VK_FIELD(SignDate2,          0x05, Date),
    VK_FIELD(IsSignerFio,        0x06, Boolean),
    VK_FIELD(SignerSurname,      0x07, Text),
    VK_FIELD(IsNotes,            0x36, Boolean),
    VK_FIELD(NotesMode,          0x37, Enumeration),
    VK_FIELD(Notes,              0x38, Text),
    VK_FIELD(IsDocNum,           0x31, Boolean),
    VK_FIELD(DocNumMode,         0x32, Enumeration),
    VK_FIELD(DocNum1,            0x33, Long),
    VK_FIELD(DocNum2,            0x34, Long),
    VK_FIELD(LastDocNumsCount,   0x35, Long),
    VK_FIELD(WholePfrCluster,    0x30, Boolean),
    VK_FIELD(IsOrvex,            0x08, Boolean),
    VK_FIELD(IsOrvexStages,      0x09, Boolean),
    VK_FIELD(OrvexStages,        0x0A, Flags),
    VK_FIELD(IsOrvexTerms,       0x0B, Boolean),
    VK_FIELD(OrvexTerms,         0x0C, Flags),
    VK_FIELD(IsFss,              0x0D, Boolean),
    VK_FIELD(IsFssStages,        0x0E, Boolean),
    VK_FIELD(FssStages,          0x0F, Flags),
    VK_FIELD(IsFssTerms,         0x10, Boolean),
    VK_FIELD(FssTerms,           0x11, Flags),
    VK_FIELD(LastTab,            0x2E, Text),
    VK_FIELD(LastError,          0x2D, Text),
};
// clang-format on

#undef VK_FIELD

/// The field of that name; a name that is not there does not compile.
consteval const Field *FieldNamed(std::string_view aName) {
    for (const Field &field : theFields) {
        if (field.Name == aName) return &field;
    }
    throw "no such field";
}

}  // namespace Vk_DocQuery
