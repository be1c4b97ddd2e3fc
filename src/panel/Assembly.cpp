#include <span>
#include <vector>

#include <QLineEdit>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DateBox.h"
#include "controls/NumberBox.h"
#include "controls/OptionButton.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"
#include "panel/OptionGroups.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

}  // namespace

/// The way of each field back from its element. It asks no switch: what is hidden is stored as what
/// is shown.
struct VkDocQueryCriteries::Assembly {
    using Panel = VkDocQueryCriteries;
    using Data = VkDocQueryData;

    struct Row {
        void (*Copy)(const Panel &aPanel, Data &aRecord, const Row &aRow);
        const char *Element = nullptr;
        std::vector<qint32> Bits = {};         ///< of the elements 0, 1, 2 ... of an array
        std::vector<OptionCode> Options = {};  ///< of a group
        qint32 Fallback = {};                  ///< for a group without a choice
    };

    template <class Value>
    static void Put(Value &rField, qint32 aValue) {
        rField = static_cast<Value>(aValue);
    }

    template <bool Data::*Field>
    static Row Tick(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = aPanel.IsTicked(aRow.Element);
                },
                aElement};
    }

    template <auto Field>
    static Row Bits(const char *aElement, std::vector<qint32> aBits) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    Put(aRecord.*Field, GatherBitfield(aPanel, aRow.Element, aRow.Bits));
                },
                aElement, std::move(aBits)};
    }

    template <auto Field>
    static Row First(std::vector<OptionCode> aOptions, qint32 aFallback) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    Put(aRecord.*Field, FirstChosen(aPanel, aRow.Options, aRow.Fallback));
                },
                nullptr,
                {},
                std::move(aOptions),
                aFallback};
    }

    template <QString Data::*Field>
    static Row Text(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = aPanel.The<QLineEdit>(aRow.Element).text();
                },
                aElement};
    }

    template <LooseValue Data::*Field>
    static Row Date(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = aPanel.The<DateBox>(aRow.Element).Value();
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Number(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = VarToLongDef(aPanel.The<NumberBox>(aRow.Element).Value(), 0);
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Year(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = VarToLongDef(aPanel.The<ComboBox>(aRow.Element).Text(), 0);
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Code(const char *aElement) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = GetComboData(aPanel.The<ComboBox>(aRow.Element), 0);
                },
                aElement};
    }

    template <auto Field, auto GetMode>
    static Row Mode() {
        return {[](const Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            aRecord.*Field = (aPanel.*GetMode)();
        }};
    }

    /// The record's collection is replaced, not changed: others may hold it.
    template <auto Field>
    static Row Rows(const char *aList) {
        return {[](const Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aRecord.*Field = GatherTags(aPanel.The<ListView>(aRow.Element));
                },
                aList};
    }

    static qint32 GatherBitfield(const Panel &aPanel, const char *aArray,
                                 std::span<const qint32> aBits) try {
        qint32 bitfield = 0;
        for (std::size_t i = 0; i < aBits.size(); ++i) {
            if (aPanel.The<CheckBox>(aArray, int(i)).Value() != 0) bitfield |= aBits[i];
        }
        return bitfield;
    } catch (...) {
        RaiseErrorUp(theModule, "GatherBitfield");
    }

    static std::shared_ptr<RecordCollection> GatherTags(const ListView &aList) try {
        auto tags = std::make_shared<RecordCollection>();
        tags->Reserve(aList.RowCount());
        for (int i = 0; i < aList.RowCount(); ++i)
            tags->Add(std::dynamic_pointer_cast<Record>(aList.Row(i)->Tag()));
        return tags;
    } catch (...) {
        RaiseErrorUp(theModule, "GatherTags");
    }

    static qint32 FirstChosen(const Panel &aPanel, std::span<const OptionCode> aOptions,
                              qint32 aFallback) {
        for (const OptionCode &option : aOptions) {
            if (aPanel.IsChosen(option.Option)) return option.Code;
        }
        return aFallback;
    }

    static const std::vector<Row> &AllRows();
};

const std::vector<VkDocQueryCriteries::Assembly::Row> &VkDocQueryCriteries::Assembly::AllRows() {
    static const std::vector<Row> rows = {
        Tick<&Data::IsDocStatus>("theIsDocStatus"),
        Bits<&Data::DocStatuses>("theDocStatuses", {1, 2, 4, 8}),
        Tick<&Data::IsNotes>("theIsNotes"),
        Text<&Data::Notes>("theNotes"),
        // Without a choice this group alone answers with its last code.
        First<&Data::NotesMode>({{"theNotesEmpty", 0}, {"theNotesNotEmpty", 1}}, 2),
        Tick<&Data::IsSignDate>("theIsSignDate"),
        Date<&Data::SignDate1>("theSignDate1"),
        Date<&Data::SignDate2>("theSignDate2"),
        Tick<&Data::IsSignerFio>("theIsSignerFio"),
        Text<&Data::SignerSurname>("theSignerSurname"),
        Tick<&Data::IsDocNum>("theIsDocNum"),
        First<&Data::DocNumMode>({{"theDocNumRange", 0}, {"theDocLastNumMode", 1}}, 0),
        Number<&Data::DocNum1>("theDocNum1"),
        Number<&Data::DocNum2>("theDocNum2"),
        Number<&Data::LastDocNumsCount>("theDocLastNumCount"),
        Tick<&Data::IsOrvex>("theIsOrvex"),
        Tick<&Data::IsOrvexStages>("theIsOrvexStages"),
        Bits<&Data::OrvexStages>("theOrvexStages", {1, 2, 4, 8, 16, 32}),
        Tick<&Data::IsOrvexTerms>("theIsOrvexTerms"),
        Bits<&Data::OrvexTerms>("theOrvexTerms", {1, 2, 4}),
        Tick<&Data::IsFss>("theIsFss"),
        Tick<&Data::IsFssStages>("theIsFssStages"),
        Bits<&Data::FssStages>("theFssStages", {1, 2, 4, 8, 16, 32}),
        Tick<&Data::IsFssTerms>("theIsFssTerms"),
        Bits<&Data::FssTerms>("theFssTerms", {1, 2, 4}),
        Tick<&Data::WholePfrCluster>("theWholePfrCluster"),
        Tick<&Data::IsTemplate>("theIsTemplate"),
        Mode<&Data::TemplatesMode, &Panel::GetTemplatesMode>(),
        Rows<&Data::Templates>("theTemplatesList"),
        Tick<&Data::IsPeriods>("theIsPeriods"),
        Mode<&Data::PeriodCriterion, &Panel::GetPeriodCriterion>(),
        Year<&Data::OnePeriodYear>("theOnePerYear"),
        Code<&Data::OnePeriodMonthID>("thePeriodTime"),
        Year<&Data::RangePeriodYear1>("thePerYear1"),
        Code<&Data::RangePeriodMonth1>("thePerMonth1"),
        Year<&Data::RangePeriodYear2>("thePerYear2"),
        Code<&Data::RangePeriodMonth2>("thePerMonth2"),
        Tick<&Data::IsPeriodTypes>("theIsPeriodTypes"),
        Bits<&Data::PeriodTypes>("thePeriodTypes", {1, 2, 4, 8, 16, 32, 64}),
        Tick<&Data::IsAccStreamType>("theIsAccStreamType"),
        Bits<&Data::AccStreamTypes>("theAccStreamTypes", {1, 2, 4, 8, 16, 256}),
        Tick<&Data::IsAccStreamOpeness>("theIsAccStreamOpeness"),
        Mode<&Data::AccStreamOpen, &Panel::GetAccStreamOpeness>(),
        Tick<&Data::IsContoraPrefix1>("theIsContoraPrefix1"),
        Text<&Data::ContoraPrefix1>("theContoraPrefix1"),
        Tick<&Data::IsContoraPrefix2>("theIsContoraPrefix2"),
        Text<&Data::ContoraPrefix2>("theContoraPrefix2"),
        Mode<&Data::ContoraJoining, &Panel::GetContoraJoining>(),
        Tick<&Data::IsAccStreamsList>("theIsAccStreamsList"),
        Rows<&Data::AccStreamsList>("theAccStreamsList"),
        Tick<&Data::IsTaxpayers>("theIsTaxpayers"),
        Mode<&Data::TaxpayersType, &Panel::GetTaxpayersType>(),
        Rows<&Data::TaxpayersList>("theTaxpayersList"),
        Tick<&Data::IncludeMainOrgDocs>("theIncludeMainOrgDocs"),
        Mode<&Data::LastTab, &Panel::GetCurrentTab>(),
    };
    return rows;
}

void VkDocQueryCriteries::AssembleValuesTo(VkDocQueryData &aRecord) try {
    for (const Assembly::Row &row : Assembly::AllRows()) row.Copy(*this, aRecord, row);
} catch (...) {
    RaiseErrorUp(theModule, "AssembleValuesTo");
}

DocQueryTemplatesMode VkDocQueryCriteries::GetTemplatesMode() const try {
    return DocQueryTemplatesMode(Assembly::FirstChosen(*this, theTemplatesModeOptions, 1));
} catch (...) {
    RaiseErrorUp(theModule, "GetTemplatesMode");
}

DocQueryPeriodCriterion VkDocQueryCriteries::GetPeriodCriterion() const try {
    return DocQueryPeriodCriterion(Assembly::FirstChosen(*this, thePeriodOptions, 1));
} catch (...) {
    RaiseErrorUp(theModule, "GetPeriodCriterion");
}

DocQueryAccStreamOpen VkDocQueryCriteries::GetAccStreamOpeness() const try {
    return DocQueryAccStreamOpen(Assembly::FirstChosen(*this, theOpenessOptions, 1));
} catch (...) {
    RaiseErrorUp(theModule, "GetAccStreamOpeness");
}

DocQueryContoraJoining VkDocQueryCriteries::GetContoraJoining() const try {
    return DocQueryContoraJoining(Assembly::FirstChosen(*this, theJoiningOptions, 0));
} catch (...) {
    RaiseErrorUp(theModule, "GetContoraJoining");
}

DocQueryTaxpayersType VkDocQueryCriteries::GetTaxpayersType() const try {
    return DocQueryTaxpayersType(Assembly::FirstChosen(*this, theTaxpayersOptions, 1));
} catch (...) {
    RaiseErrorUp(theModule, "GetTaxpayersType");
}

}  // namespace Vk_DocQuery
