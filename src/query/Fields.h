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

/// Stands in the creation column for the year of today.
constexpr qint32 theYearOfToday = -1;

/// One public field of the record.
struct Field {
    const char *Name;
    qint32 Dispatch;  ///< number of the member in the public interface, in the order of adding
    FieldKind Kind;
    FieldMember Member;
    qint32 Creation =
        0;  ///< number on creation; fields of other kinds begin false, empty or absent

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
    /// Puts the value on creation into the field; aYear is the year of today, looked at by the
    /// fields whose value it is.
    void Reset(VkDocQueryData &aRecord, qint32 aYear) const;
};

template <auto Member>
constexpr LongMember LongOf() {
    return {[](const VkDocQueryData &aRecord) { return static_cast<qint32>(aRecord.*Member); },
            [](VkDocQueryData &aRecord, qint32 aValue) {
                aRecord.*Member = static_cast<std::decay_t<decltype(aRecord.*Member)>>(aValue);
            }};
}

#define VK_FIELD(Name, Dispatch, Kind)                          \
    Field {                                                     \
#Name, Dispatch, FieldKind::Kind, &VkDocQueryData::Name \
    }
#define VK_NUMBER(Name, Dispatch, Kind, Creation)                                     \
    Field {                                                                           \
#Name, Dispatch, FieldKind::Kind, LongOf < &VkDocQueryData::Name>(), Creation \
    }

// clang-format off
/// All public fields, in the order of their declaration.
inline constexpr std::array theFields{
    VK_FIELD (FileName,           0x00, Text),
    VK_FIELD (IsTaxpayers,        0x29, Boolean),
    VK_NUMBER(TaxpayersType,      0x2A, Enumeration, 1),
    VK_FIELD (TaxpayersList,      0x2B, Collection),
    VK_FIELD (IncludeMainOrgDocs, 0x2C, Boolean),
    VK_FIELD (IsAccStreamType,    0x1F, Boolean),
    VK_NUMBER(AccStreamTypes,     0x20, Flags, 0),
    VK_FIELD (IsAccStreamOpeness, 0x21, Boolean),
    VK_NUMBER(AccStreamOpen,      0x22, Enumeration, 1),
    VK_FIELD (IsContoraPrefix1,   0x23, Boolean),
    VK_FIELD (ContoraPrefix1,     0x24, Text),
    VK_FIELD (IsContoraPrefix2,   0x25, Boolean),
    VK_FIELD (ContoraPrefix2,     0x26, Text),
    VK_NUMBER(ContoraJoining,     0x2F, Enumeration, 0),
    VK_FIELD (IsAccStreamsList,   0x27, Boolean),
    VK_FIELD (AccStreamsList,     0x28, Collection),
    VK_FIELD (IsPeriods,          0x15, Boolean),
    VK_NUMBER(PeriodCriterion,    0x16, Enumeration, 1),
    VK_NUMBER(OnePeriodYear,      0x17, Long, theYearOfToday),
    VK_NUMBER(OnePeriodMonthID,   0x18, Long, 16),
    VK_NUMBER(RangePeriodYear1,   0x19, Long, theYearOfToday),
    VK_NUMBER(RangePeriodMonth1,  0x1A, Long, 1),
    VK_NUMBER(RangePeriodYear2,   0x1B, Long, theYearOfToday),
    VK_NUMBER(RangePeriodMonth2,  0x1C, Long, 12),
    VK_FIELD (IsPeriodTypes,      0x1D, Boolean),
    VK_NUMBER(PeriodTypes,        0x1E, Flags, 0),
    VK_FIELD (IsTemplate,         0x12, Boolean),
    VK_NUMBER(TemplatesMode,      0x13, Enumeration, 1),
    VK_FIELD (Templates,          0x14, Collection),
    VK_FIELD (IsDocStatus,        0x01, Boolean),
    VK_NUMBER(DocStatuses,        0x02, Flags, 0),
    VK_FIELD (IsSignDate,         0x03, Boolean),
    VK_FIELD (SignDate1,          0x04, Date),
    VK_FIELD (SignDate2,          0x05, Date),
    VK_FIELD (IsSignerFio,        0x06, Boolean),
    VK_FIELD (SignerSurname,      0x07, Text),
    VK_FIELD (IsNotes,            0x36, Boolean),
    VK_NUMBER(NotesMode,          0x37, Enumeration, 0),
    VK_FIELD (Notes,              0x38, Text),
    VK_FIELD (IsDocNum,           0x31, Boolean),
    VK_NUMBER(DocNumMode,         0x32, Enumeration, 1),
    VK_NUMBER(DocNum1,            0x33, Long, 0),
    VK_NUMBER(DocNum2,            0x34, Long, 0),
    VK_NUMBER(LastDocNumsCount,   0x35, Long, 10),
    VK_FIELD (WholePfrCluster,    0x30, Boolean),
    VK_FIELD (IsOrvex,            0x08, Boolean),
    VK_FIELD (IsOrvexStages,      0x09, Boolean),
    VK_NUMBER(OrvexStages,        0x0A, Flags, 0),
    VK_FIELD (IsOrvexTerms,       0x0B, Boolean),
    VK_NUMBER(OrvexTerms,         0x0C, Flags, 0),
    VK_FIELD (IsFss,              0x0D, Boolean),
    VK_FIELD (IsFssStages,        0x0E, Boolean),
    VK_NUMBER(FssStages,          0x0F, Flags, 0),
    VK_FIELD (IsFssTerms,         0x10, Boolean),
    VK_NUMBER(FssTerms,           0x11, Flags, 0),
    VK_FIELD (LastTab,            0x2E, Text),
    VK_FIELD (LastError,          0x2D, Text),
};
// clang-format on

#undef VK_FIELD
#undef VK_NUMBER

/// The field of that name; a name that is not there does not compile.
consteval const Field *FieldNamed(std::string_view aName) {
    for (const Field &field : theFields) {
        if (field.Name == aName) return &field;
    }
    throw "no such field";
}

}  // namespace Vk_DocQuery
