#include <array>
#include <span>
#include <tuple>
#include <type_traits>

#include <QLineEdit>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DateBox.h"
#include "controls/NumberBox.h"
#include "controls/OptionButton.h"
#include "foundation/mErrorHandling.h"
#include "foundation/mVkCommonCalc.h"
#include "foundation/RussDate.h"
#include "panel/Tags.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

template <class Code>
struct OptionMeaning {
    ElementOf<OptionButton> Option;
    Code Meaning;
};

/// Options of a group, in the order in which they are shown and asked.
template <class Code>
using Options = std::span<const OptionMeaning<Code>>;

constexpr OptionMeaning<DocQueryNotesMode> theNotesModes[] = {
    {"theNotesEmpty", NotesEmpty},
    {"theNotesNotEmpty", NotesNotEmpty},
    {"theNotesLike", NotesLike},
};
constexpr OptionMeaning<DocQueryDocNumMode> theDocNumModes[] = {
    {"theDocNumRange", DocNumRange},
    {"theDocLastNumMode", DocLastNums},
};
constexpr OptionMeaning<DocQueryTemplatesMode> theTemplatesModes[] = {
    {"theOptTemplateClass", TemplateClass},
    {"theOptTemplate", TemplateVersion},
};
constexpr OptionMeaning<DocQueryPeriodCriterion> thePeriodCriteria[] = {
    {"theOnePeriod", OnePeriod},
    {"theRangePeriods", RangePeriods},
    {"theOtherPeriod", OtherPeriod},
};
constexpr OptionMeaning<DocQueryAccStreamOpen> theOpennesses[] = {
    {"theAccStreamOpen", StreamOpen},
    {"theAccStreamClosed", StreamClosed},
};
constexpr OptionMeaning<DocQueryContoraJoining> theJoinings[] = {
    {"theContoraJoinAnd", JoinAnd},
    {"theContoraJoinOr", JoinOr},
};
constexpr OptionMeaning<DocQueryTaxpayersType> theTaxpayersTypes[] = {
    {"theOptTaxpayers", Taxpayers},
    {"theOptMainOrgs", MainOrgs},
};

}  // namespace

/// The criteria: which field of the record stands in which element. A row knows both ways, Show
/// into the element and Take back. Neither asks a switch: what is hidden goes the same way as what
/// is seen.
struct VkDocQueryCriteries::Criteria {
    using Panel = VkDocQueryCriteries;
    using Data = VkDocQueryData;

    struct Tick {
        bool Data::*Field;
        ElementOf<CheckBox> Box;

        void Show(Panel &aPanel, Data &aRecord) const { aPanel.The(Box).SetValue(aRecord.*Field); }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = aPanel.IsTicked(Box);
        }
    };

    /// A flag for each box of an array. Flags that have no box are lost on the way back.
    template <class Flags, std::size_t Count>
    struct Bits {
        Flags Data::*Field;
        ArrayOf<CheckBox> Boxes;
        std::array<Flags, Count> FlagOfBox;

        consteval Bits(Flags Data::*aField, ArrayOf<CheckBox> aBoxes, const Flags (&aFlags)[Count])
            : Field(aField), Boxes(aBoxes), FlagOfBox(std::to_array(aFlags)) {
            if (aBoxes.Count() != Count) throw "the array needs a flag for each of its boxes";
        }

        void Show(Panel &aPanel, Data &aRecord) const {
            for (int box = 0; const Flags flag : FlagOfBox)
                aPanel.The(Boxes, box++).SetValue((aRecord.*Field & flag) != 0);
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = GatherBitfield<Flags>(aPanel, Boxes, FlagOfBox);
        }
    };

    struct Text {
        QString Data::*Field;
        ElementOf<QLineEdit> Line;

        void Show(Panel &aPanel, Data &aRecord) const { aPanel.The(Line).setText(aRecord.*Field); }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = aPanel.The(Line).text();
        }
    };

    /// A text that tells a date is shown as the date, and comes back as one.
    struct Date {
        LooseValue Data::*Field;
        ElementOf<DateBox> Box;

        void Show(Panel &aPanel, Data &aRecord) const {
            aPanel.The(Box).SetValue(DateOfField(aRecord.*Field));
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = aPanel.The(Box).Value();
        }
    };

    /// A blank box, and a number beyond those of the field, come back as 0.
    struct Number {
        qint32 Data::*Field;
        ElementOf<NumberBox> Box;

        void Show(Panel &aPanel, Data &aRecord) const { aPanel.The(Box).SetValue(aRecord.*Field); }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = VarToLongDef(aPanel.The(Box).Value(), 0);
        }
    };

    /// Any number is shown, listed or not; a text that is none comes back as 0.
    struct Year {
        qint32 Data::*Field;
        ElementOf<ComboBox> Combo;

        void Show(Panel &aPanel, Data &aRecord) const {
            aPanel.The(Combo).SetText(QString::number(aRecord.*Field));
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = VarToLongDef(aPanel.The(Combo).Text(), 0);
        }
    };

    /// A code that is not listed is shown, and comes back, as the first entry.
    struct Code {
        qint32 Data::*Field;
        ElementOf<ComboBox> Combo;

        void Show(Panel &aPanel, Data &aRecord) const {
            SelectComboByData(aPanel.The(Combo), aRecord.*Field, 0);
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = GetComboData(aPanel.The(Combo), 0);
        }
    };

    /// Options of a group whose way back is another row.
    template <class Mode>
    struct ShownOptions {
        Mode Data::*Field;
        Options<Mode> Shown;

        void Show(Panel &aPanel, Data &aRecord) const { ShowChoice(aPanel, Shown, aRecord.*Field); }
        void Take(const Panel & /*aPanel*/, Data & /*rRecord*/) const {}
    };

    /// The way back of such a group.
    template <class Mode>
    struct TakenOptions {
        Mode Data::*Field;
        Options<Mode> Asked;
        Mode WithoutChoice;

        void Show(Panel & /*aPanel*/, Data & /*aRecord*/) const {}
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = FirstChosen(aPanel, Asked, WithoutChoice);
        }
    };

    /// A group with procedures of its own. What no option stands for clears the group, which comes
    /// back as what Get gives without a choice. A list that stands in the mode is told of it, and
    /// keeps its rows: those of the record come with the next row of the table.
    template <class Mode>
    struct Choice {
        Mode Data::*Field;
        void (Panel::*Set)(Mode);
        Mode (Panel::*Get)() const;
        void (Panel::*SetInList)(Mode, bool aForce, bool aConvert) = nullptr;

        void Show(Panel &aPanel, Data &aRecord) const {
            (aPanel.*Set)(aRecord.*Field);
            if (SetInList) (aPanel.*SetInList)(aRecord.*Field, true, false);
        }
        void Take(const Panel &aPanel, Data &rRecord) const { rRecord.*Field = (aPanel.*Get)(); }
    };
    template <class Mode, class... Procedures>
    Choice(Mode Data::*, Procedures...) -> Choice<Mode>;

    /// An absent collection becomes an empty one in the record itself. The way back puts another
    /// collection into the record and leaves the old one as it is: others may hold it.
    struct Rows {
        std::shared_ptr<RecordCollection> Data::*Field;
        ElementOf<ListView> List;
        void (*Fill)(Panel &aPanel, const RecordCollection &aRecords);

        void Show(Panel &aPanel, Data &rRecord) const {
            if (!(rRecord.*Field)) rRecord.*Field = std::make_shared<RecordCollection>();
            Fill(aPanel, *(rRecord.*Field));
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = GatherTags(aPanel.The(List));
        }
    };

    /// A record without a tab leaves the selected one; the way back always tells it.
    struct SelectedTab {
        QString Data::*Field;

        void Show(Panel &aPanel, Data &aRecord) const {
            if (!(aRecord.*Field).isEmpty()) aPanel.SetCurrentTab(aRecord.*Field);
        }
        void Take(const Panel &aPanel, Data &rRecord) const {
            rRecord.*Field = aPanel.GetCurrentTab();
        }
    };

    template <class Visitor>
    static void ForEach(Visitor aVisit);

    /// A box that is grey counts as set, unlike a Tick.
    template <class Flags>
    static Flags GatherBitfield(const Panel &aPanel, ArrayOf<CheckBox> aBoxes,
                                std::span<const Flags> aFlagOfBox) try {
        Flags bitfield{};
        for (int box = 0; const Flags flag : aFlagOfBox)
            if (aPanel.The(aBoxes, box++).Value() != 0) bitfield |= flag;
        return bitfield;
    } catch (...) {
        RaiseErrorUp(theModule, __func__);
    }

    static std::shared_ptr<RecordCollection> GatherTags(const ListView &aList) try {
        return TagsOf(aList);
    } catch (...) {
        RaiseErrorUp(theModule, __func__);
    }

    template <class Code>
    static Code FirstChosen(const Panel &aPanel, Options<std::type_identity_t<Code>> aOptions,
                            Code aWithoutChoice) {
        for (const OptionMeaning<Code> &option : aOptions)
            if (aPanel.IsChosen(option.Option)) return option.Meaning;
        return aWithoutChoice;
    }

    template <class Code>
    static void ShowChoice(Panel &aPanel, Options<std::type_identity_t<Code>> aOptions,
                           Code aCode) {
        for (const OptionMeaning<Code> &option : aOptions)
            aPanel.The(option.Option).SetValue(option.Meaning == aCode);
    }

    template <class Code>
    static void LockedChoice(Panel &aPanel, Options<std::type_identity_t<Code>> aOptions,
                             Code aCode) {
        UpdateLock lock(aPanel);
        ShowChoice(aPanel, aOptions, aCode);
        lock.Unlock();
    }
};

/// The order is that of the way back and, but for the marked rows, of the way into the elements.
/// Where something fails, the rows before are done.
template <class Visitor>
void VkDocQueryCriteries::Criteria::ForEach(Visitor aVisit) {
    static constexpr std::span docNumModes(theDocNumModes);
    // clang-format off: one row is one line, as far as it goes.
    static constexpr std::tuple criteria{
        Tick{&Data::IsDocStatus, "theIsDocStatus"},
        Bits{&Data::DocStatuses,
             "theDocStatuses",
             {DocInWork, DocReady, DocDelivered, DocCorrected}},
        Tick{&Data::IsNotes, "theIsNotes"},
        // Shown before the text and taken behind it. This group alone comes back as its last option
        // if none is chosen.
        ShownOptions<DocQueryNotesMode>{&Data::NotesMode, theNotesModes},
        Text{&Data::Notes, "theNotes"},
        TakenOptions<DocQueryNotesMode>{&Data::NotesMode, theNotesModes, NotesLike},
        Tick{&Data::IsSignDate, "theIsSignDate"},
        Date{&Data::SignDate1, "theSignDate1"},
        Date{&Data::SignDate2, "theSignDate2"},
        Tick{&Data::IsSignerFio, "theIsSignerFio"},
        Text{&Data::SignerSurname, "theSignerSurname"},
        Tick{&Data::IsDocNum, "theIsDocNum"},
        // Taken at once, but shown option by option, each before its own numbers.
        TakenOptions<DocQueryDocNumMode>{&Data::DocNumMode, docNumModes, DocNumRange},
        ShownOptions<DocQueryDocNumMode>{&Data::DocNumMode, docNumModes.first(1)},
        Number{&Data::DocNum1, "theDocNum1"},
        Number{&Data::DocNum2, "theDocNum2"},
        ShownOptions<DocQueryDocNumMode>{&Data::DocNumMode, docNumModes.last(1)},
        Number{&Data::LastDocNumsCount, "theDocLastNumCount"},
        Tick{&Data::IsOrvex, "theIsOrvex"},
        Tick{&Data::IsOrvexStages, "theIsOrvexStages"},
        Bits{&Data::OrvexStages,
             "theOrvexStages",
             {OrvexNotSent, OrvexChecked, OrvexSent, OrvexDeliveryReport, OrvexCheckResult,
              OrvexNotice}},
        Tick{&Data::IsOrvexTerms, "theIsOrvexTerms"},
        Bits{&Data::OrvexTerms, "theOrvexTerms", {OrvexInProgress, OrvexSucceeded, OrvexFailed}},
        Tick{&Data::IsFss, "theIsFss"},
        Tick{&Data::IsFssStages, "theIsFssStages"},
        Bits{&Data::FssStages,
             "theFssStages",
             {FssNotSent, FssReceived, FssDecrypted, FssFormatChecked, FssLogicChecked,
              FssAccepted}},
        Tick{&Data::IsFssTerms, "theIsFssTerms"},
        Bits{&Data::FssTerms, "theFssTerms", {FssInProgress, FssSucceeded, FssFailed}},
        Tick{&Data::WholePfrCluster, "theWholePfrCluster"},

        Tick{&Data::IsTemplate, "theIsTemplate"},
        Choice{&Data::TemplatesMode, &Panel::SetTemplatesMode, &Panel::GetTemplatesMode,
               &Panel::SetTemplatesModeInList},
        Rows{&Data::Templates, "theTemplatesList",
             [](Panel &panel, const RecordCollection &records) {
                 panel.FillTemplatesList(records, true);
             }},

        Tick{&Data::IsPeriods, "theIsPeriods"},
        Choice{&Data::PeriodCriterion, &Panel::SetPeriodCriterion, &Panel::GetPeriodCriterion},
        Year{&Data::OnePeriodYear, "theOnePerYear"},
        Code{&Data::OnePeriodMonthID, "thePeriodTime"},
        Year{&Data::RangePeriodYear1, "thePerYear1"},
        Code{&Data::RangePeriodMonth1, "thePerMonth1"},
        Year{&Data::RangePeriodYear2, "thePerYear2"},
        Code{&Data::RangePeriodMonth2, "thePerMonth2"},
        Tick{&Data::IsPeriodTypes, "theIsPeriodTypes"},
        Bits{&Data::PeriodTypes,
             "thePeriodTypes",
             {PeriodMonths, PeriodQuarters1To3, PeriodQuarter4, PeriodHalfYearAndYear, PeriodOther,
              PeriodLetters, PeriodDocuments}},

        Tick{&Data::IsAccStreamType, "theIsAccStreamType"},
        Bits{&Data::AccStreamTypes,
             "theAccStreamTypes",
             {AccStreamFns, AccStreamPfr, AccStreamRosstat, AccStreamFss, AccStreamAlcohol,
              AccStreamOfr}},
        Tick{&Data::IsAccStreamOpeness, "theIsAccStreamOpeness"},
        Choice{&Data::AccStreamOpen, &Panel::SetAccStreamOpeness, &Panel::GetAccStreamOpeness},
        Tick{&Data::IsContoraPrefix1, "theIsContoraPrefix1"},
        Text{&Data::ContoraPrefix1, "theContoraPrefix1"},
        Tick{&Data::IsContoraPrefix2, "theIsContoraPrefix2"},
        Text{&Data::ContoraPrefix2, "theContoraPrefix2"},
        Choice{&Data::ContoraJoining, &Panel::SetContoraJoining, &Panel::GetContoraJoining},
        Tick{&Data::IsAccStreamsList, "theIsAccStreamsList"},
        Rows{&Data::AccStreamsList, "theAccStreamsList",
             [](Panel &panel, const RecordCollection &records) {
                 panel.FillAccStreamsList(records);
             }},

        Tick{&Data::IsTaxpayers, "theIsTaxpayers"},
        Choice{&Data::TaxpayersType, &Panel::SetTaxpayersType, &Panel::GetTaxpayersType,
               &Panel::SetTaxpayersTypeInList},
        Rows{&Data::TaxpayersList, "theTaxpayersList",
             [](Panel &panel, const RecordCollection &records) {
                 panel.FillTaxpayersList(records, true);
             }},
        Tick{&Data::IncludeMainOrgDocs, "theIncludeMainOrgDocs"},

        SelectedTab{&Data::LastTab},
    };
    // clang-format on
    std::apply([&](const auto &...row) { (aVisit(row), ...); }, criteria);
}

void VkDocQueryCriteries::DistributeValues(VkDocQueryData &aRecord) try {
    UpdateLock lock(*this);
    Criteria::ForEach([&](const auto &row) { row.Show(*this, aRecord); });
    RefreshControls(false);
    lock.Unlock();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::AssembleValuesTo(VkDocQueryData &aRecord) try {
    Criteria::ForEach([&](const auto &row) { row.Take(*this, aRecord); });
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetTemplatesMode(DocQueryTemplatesMode aMode) try {
    Criteria::LockedChoice(*this, theTemplatesModes, aMode);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DocQueryTemplatesMode VkDocQueryCriteries::GetTemplatesMode() const try {
    return Criteria::FirstChosen(*this, theTemplatesModes, TemplateClass);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetPeriodCriterion(DocQueryPeriodCriterion aCriterion) try {
    Criteria::LockedChoice(*this, thePeriodCriteria, aCriterion);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DocQueryPeriodCriterion VkDocQueryCriteries::GetPeriodCriterion() const try {
    return Criteria::FirstChosen(*this, thePeriodCriteria, OnePeriod);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetAccStreamOpeness(DocQueryAccStreamOpen aOpen) try {
    Criteria::LockedChoice(*this, theOpennesses, aOpen);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DocQueryAccStreamOpen VkDocQueryCriteries::GetAccStreamOpeness() const try {
    return Criteria::FirstChosen(*this, theOpennesses, StreamOpen);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetContoraJoining(DocQueryContoraJoining aJoining) try {
    Criteria::LockedChoice(*this, theJoinings, aJoining);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DocQueryContoraJoining VkDocQueryCriteries::GetContoraJoining() const try {
    return Criteria::FirstChosen(*this, theJoinings, JoinAnd);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::SetTaxpayersType(DocQueryTaxpayersType aType) try {
    Criteria::LockedChoice(*this, theTaxpayersTypes, aType);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

DocQueryTaxpayersType VkDocQueryCriteries::GetTaxpayersType() const try {
    return Criteria::FirstChosen(*this, theTaxpayersTypes, Taxpayers);
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

}  // namespace Vk_DocQuery
