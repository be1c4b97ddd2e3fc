#include <span>
#include <vector>

#include <QLineEdit>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DateBox.h"
#include "controls/NumberBox.h"
#include "controls/OptionButton.h"
#include "foundation/mErrorHandling.h"
#include "foundation/RussDate.h"
#include "panel/Draft.h"
#include "panel/OptionGroups.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

}  // namespace

/// The way of each field into its element.
struct VkDocQueryCriteries::Distribution {
    using Panel = VkDocQueryCriteries;
    using Data = VkDocQueryData;

    struct Row {
        void (*Copy)(Panel &aPanel, Data &aRecord, const Row &aRow);
        const char *Element = nullptr;
        std::vector<qint32> Bits = {};         ///< of the elements 0, 1, 2 ... of an array
        std::vector<OptionCode> Options = {};  ///< of a group
    };

    template <bool Data::*Field>
    static Row Tick(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aPanel.The<CheckBox>(aRow.Element).SetValue(aRecord.*Field ? 1 : 0);
                },
                aElement};
    }

    template <auto Field>
    static Row Bits(const char *aElement, std::vector<qint32> aBits) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    for (std::size_t i = 0; i < aRow.Bits.size(); ++i) {
                        const bool set = (qint32(aRecord.*Field) & aRow.Bits[i]) != 0;
                        aPanel.The<CheckBox>(aRow.Element, int(i)).SetValue(set ? 1 : 0);
                    }
                },
                aElement, std::move(aBits)};
    }

    template <auto Field>
    static Row Equal(std::vector<OptionCode> aOptions) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    ShowChoice(aPanel, aRow.Options, aRecord.*Field);
                },
                nullptr,
                {},
                std::move(aOptions)};
    }

    template <QString Data::*Field>
    static Row Text(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aPanel.The<QLineEdit>(aRow.Element).setText(aRecord.*Field);
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Year(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aPanel.The<ComboBox>(aRow.Element).SetText(QString::number(aRecord.*Field));
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Number(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aPanel.The<NumberBox>(aRow.Element).SetValue(aRecord.*Field);
                },
                aElement};
    }

    template <LooseValue Data::*Field>
    static Row Date(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    aPanel.The<DateBox>(aRow.Element).SetValue(DateOfField(aRecord.*Field));
                },
                aElement};
    }

    template <qint32 Data::*Field>
    static Row Code(const char *aElement) {
        return {[](Panel &aPanel, Data &aRecord, const Row &aRow) {
                    SelectComboByData(aPanel.The<ComboBox>(aRow.Element), aRecord.*Field, 0);
                },
                aElement};
    }

    template <auto Field, auto SetMode>
    static Row Mode() {
        return {[](Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            (aPanel.*SetMode)(aRecord.*Field);
        }};
    }

    /// The option, and the list that stands in that mode; the fill that follows brings its rows.
    template <auto Field, auto SetMode, auto SetModeInList>
    static Row Mode() {
        return {[](Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            (aPanel.*SetMode)(aRecord.*Field);
            (aPanel.*SetModeInList)(aRecord.*Field, true, false);
        }};
    }

    static RecordCollection &Items(std::shared_ptr<RecordCollection> &rField) {
        if (!rField) rField = std::make_shared<RecordCollection>();
        return *rField;
    }

    static Row TemplatesRows() {
        return {[](Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            aPanel.FillTemplatesList(Items(aRecord.Templates), true);
        }};
    }

    static Row AccStreamsRows() {
        return {[](Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            aPanel.FillAccStreamsList(Items(aRecord.AccStreamsList));
        }};
    }

    static Row TaxpayersRows() {
        return {[](Panel &aPanel, Data &aRecord, const Row & /*aRow*/) {
            aPanel.FillTaxpayersList(Items(aRecord.TaxpayersList), true);
        }};
    }

    static void ShowChoice(Panel &aPanel, std::span<const OptionCode> aOptions, qint32 aCode) {
        for (const OptionCode &option : aOptions)
            aPanel.The<OptionButton>(option.Option).SetValue(option.Code == aCode);
    }

    static void LockedChoice(Panel &aPanel, std::span<const OptionCode> aOptions, qint32 aCode) {
        UpdateLock lock(aPanel);
        ShowChoice(aPanel, aOptions, aCode);
        lock.Unlock();
    }

    static const std::vector<Row> &AllRows();
};

const std::vector<VkDocQueryCriteries::Distribution::Row>
    &VkDocQueryCriteries::Distribution::AllRows() {
    static const std::vector<Row> rows = {
        Tick<&Data::IsDocStatus>("theIsDocStatus"),
        Bits<&Data::DocStatuses>("theDocStatuses", {1, 2, 4, 8}),
        Tick<&Data::IsNotes>("theIsNotes"),
        Equal<&Data::NotesMode>(
            {{"theNotesEmpty", 0}, {"theNotesNotEmpty", 1}, {"theNotesLike", 2}}),
        Text<&Data::Notes>("theNotes"),
        Tick<&Data::IsSignDate>("theIsSignDate"),
        Date<&Data::SignDate1>("theSignDate1"),
        Date<&Data::SignDate2>("theSignDate2"),
        Tick<&Data::IsSignerFio>("theIsSignerFio"),
        Text<&Data::SignerSurname>("theSignerSurname"),
        Tick<&Data::IsDocNum>("theIsDocNum"),
        Equal<&Data::DocNumMode>({{"theDocNumRange", 0}}),
        Number<&Data::DocNum1>("theDocNum1"),
        Number<&Data::DocNum2>("theDocNum2"),
        Equal<&Data::DocNumMode>({{"theDocLastNumMode", 1}}),
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
        Mode<&Data::TemplatesMode, &Panel::SetTemplatesMode, &Panel::SetTemplatesModeInList>(),
        TemplatesRows(),
        Tick<&Data::IsPeriods>("theIsPeriods"),
        Mode<&Data::PeriodCriterion, &Panel::SetPeriodCriterion>(),
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
        Mode<&Data::AccStreamOpen, &Panel::SetAccStreamOpeness>(),
        Tick<&Data::IsContoraPrefix1>("theIsContoraPrefix1"),
        Text<&Data::ContoraPrefix1>("theContoraPrefix1"),
        Tick<&Data::IsContoraPrefix2>("theIsContoraPrefix2"),
        Text<&Data::ContoraPrefix2>("theContoraPrefix2"),
        Mode<&Data::ContoraJoining, &Panel::SetContoraJoining>(),
        Tick<&Data::IsAccStreamsList>("theIsAccStreamsList"),
        AccStreamsRows(),
        Tick<&Data::IsTaxpayers>("theIsTaxpayers"),
        Mode<&Data::TaxpayersType, &Panel::SetTaxpayersType, &Panel::SetTaxpayersTypeInList>(),
        TaxpayersRows(),
        Tick<&Data::IncludeMainOrgDocs>("theIncludeMainOrgDocs"),
    };
    return rows;
}

void VkDocQueryCriteries::DistributeValues(VkDocQueryData &aRecord) try {
    UpdateLock lock(*this);
    for (const Distribution::Row &row : Distribution::AllRows()) row.Copy(*this, aRecord, row);
    if (!aRecord.LastTab.isEmpty()) SetCurrentTab(aRecord.LastTab);
    RefreshControls(false);
    lock.Unlock();
} catch (...) {
    RaiseErrorUp(theModule, "DistributeValues");
}

std::shared_ptr<VkDocQueryCriteries::Draft> VkDocQueryCriteries::TakeDraft() {
    auto draft = std::make_shared<Draft>(Draft{
        {}, theCurTemplatesMode, theCurTaxpayersType, TextDrafts(*this), OptionDrafts(*this), {}});
    AssembleValuesTo(draft->Values);
    for (const char *list : {"theTemplatesList", "theAccStreamsList", "theTaxpayersList"})
        draft->Lists.emplace_back(The<ListView>(list));
    return draft;
}

bool VkDocQueryCriteries::PutBack(Draft &aDraft) noexcept {
    bool distributed = false;
    IgnoringFailures([&] {
        DistributeValues(aDraft.Values);
        distributed = true;
    });
    IgnoringFailures([&] {
        if (!distributed) DistributeWithoutLists(aDraft.Values);
        UpdateLock lock(*this);
        PutTheRestBack(aDraft);
        RefreshControls(false);
        lock.Unlock();
    });
    return distributed;
}

/// Asks no supplier either.
void VkDocQueryCriteries::DistributeWithoutLists(VkDocQueryData aRecord) {
    aRecord.Templates = aRecord.AccStreamsList = aRecord.TaxpayersList = nullptr;
    DistributeValues(aRecord);
}

/// The rows as they were shown, without asking a supplier for them, and what no record holds.
void VkDocQueryCriteries::PutTheRestBack(const Draft &aDraft) {
    for (const ListDraft &list : aDraft.Lists) list.PutBack();
    theCurTemplatesMode = aDraft.TemplatesMode;
    theCurTaxpayersType = aDraft.TaxpayersType;
    aDraft.Texts.PutBack();
    aDraft.Options.PutBack();
}

void VkDocQueryCriteries::SetTemplatesMode(DocQueryTemplatesMode aMode) try {
    Distribution::LockedChoice(*this, theTemplatesModeOptions, aMode);
} catch (...) {
    RaiseErrorUp(theModule, "SetTemplatesMode");
}

void VkDocQueryCriteries::SetPeriodCriterion(DocQueryPeriodCriterion aCriterion) try {
    Distribution::LockedChoice(*this, thePeriodOptions, aCriterion);
} catch (...) {
    RaiseErrorUp(theModule, "SetPeriodCriterion");
}

void VkDocQueryCriteries::SetAccStreamOpeness(DocQueryAccStreamOpen aOpen) try {
    Distribution::LockedChoice(*this, theOpenessOptions, aOpen);
} catch (...) {
    RaiseErrorUp(theModule, "SetAccStreamOpeness");
}

void VkDocQueryCriteries::SetContoraJoining(DocQueryContoraJoining aJoining) try {
    Distribution::LockedChoice(*this, theJoiningOptions, aJoining);
} catch (...) {
    RaiseErrorUp(theModule, "SetContoraJoining");
}

void VkDocQueryCriteries::SetTaxpayersType(DocQueryTaxpayersType aType) try {
    Distribution::LockedChoice(*this, theTaxpayersOptions, aType);
} catch (...) {
    RaiseErrorUp(theModule, "SetTaxpayersType");
}

}  // namespace Vk_DocQuery
