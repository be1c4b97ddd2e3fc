#include <algorithm>
#include <optional>
#include <string_view>
#include <vector>

#include <QPushButton>

#include "controls/CheckBox.h"
#include "controls/OptionButton.h"
#include "panel/VkDocQueryCriteries.h"
#include "windows/ErrorReport.h"
#include "windows/mVkGraphLight.h"

namespace Vk_DocQuery {

namespace {

constexpr char theModule[] = "VkDocQueryCriteries";

enum class Test { Chosen, AnyTicked, AllTicked };
enum class Action { Show, Enable, Mark };

struct Condition {
    Test What;
    std::vector<ElementOf<CheckBox>> Boxes = {};
    std::optional<ElementOf<OptionButton>> Option = {};
};

struct Rule {
    Action Do;
    const char *Target;  ///< name of an element, or key of a tab
    Condition When;
    const char *Label = nullptr;  ///< name of the element that goes along
};

Condition Chosen(ElementOf<OptionButton> aOption) {
    return {Test::Chosen, {}, aOption};
}
Condition Ticked(ElementOf<CheckBox> aBox) {
    return {Test::AllTicked, {aBox}};
}
Condition BothTicked(ElementOf<CheckBox> aFirst, ElementOf<CheckBox> aSecond) {
    return {Test::AllTicked, {aFirst, aSecond}};
}
Condition AnyTicked(std::vector<ElementOf<CheckBox>> aBoxes) {
    return {Test::AnyTicked, std::move(aBoxes)};
}

Rule Show(ElementName aElement, Condition aWhen) {
    return {Action::Show, aElement.Text(), std::move(aWhen)};
}
Rule Enable(ElementName aElement, Condition aWhen) {
    return {Action::Enable, aElement.Text(), std::move(aWhen)};
}
Rule Enable(ElementName aElement, Condition aWhen, ElementName aLabel) {
    return {Action::Enable, aElement.Text(), std::move(aWhen), aLabel.Text()};
}
Rule Mark(TabName aTab, Condition aWhen) {
    return {Action::Mark, aTab.Text(), std::move(aWhen)};
}

/// Each rule looks at its own condition only, so the inner rules of a criterion that is switched
/// off are applied too, inside its hidden frame.
const std::vector<Rule> &AllRules() {
    static const std::vector<Rule> rules = {
        Show("theDocStatusFrame2", Ticked("theIsDocStatus")),
        Show("theNotesFrame2", Ticked("theIsNotes")),
        Show("theNotes", Chosen("theNotesLike")),
        Show("theSignDateFrame2", Ticked("theIsSignDate")),
        Show("theSignerFioFrame2", Ticked("theIsSignerFio")),
        Show("theDocNumFrame2", Ticked("theIsDocNum")),
        Show("theDocNumRangeFrame", Chosen("theDocNumRange")),
        Show("theDocLastNumFrame", Chosen("theDocLastNumMode")),
        Show("theOrvexFrame2", Ticked("theIsOrvex")),
        Show("theOrvexStagesBox", Ticked("theIsOrvexStages")),
        Show("theOrvexTermsBox", Ticked("theIsOrvexTerms")),
        Show("theFssFrame2", Ticked("theIsFss")),
        Show("theFssStagesBox", Ticked("theIsFssStages")),
        Show("theFssTermsBox", Ticked("theIsFssTerms")),
        // The last two stand in frames that nobody sees; a record that sets them marks the tab all
        // the same.
        Mark("doc", AnyTicked({"theIsDocStatus", "theIsNotes", "theIsSignDate", "theIsSignerFio",
                               "theIsDocNum", "theIsOrvex", "theIsFss"})),

        Show("theTemplateTypeFrame", Ticked("theIsTemplate")),
        Show("theTemplatesListFrame", Ticked("theIsTemplate")),
        Mark("template", Ticked("theIsTemplate")),

        Show("thePeriodsFrame2", Ticked("theIsPeriods")),
        Enable("theOnePerYear", Chosen("theOnePeriod"), "theOnePerYearLabel"),
        Enable("thePeriodTime", Chosen("theOnePeriod"), "thePeriodTimeLabel"),
        Enable("thePerYear1", Chosen("theRangePeriods"), "thePerLabel1"),
        Enable("thePerMonth1", Chosen("theRangePeriods")),
        Enable("thePerYear2", Chosen("theRangePeriods"), "thePerLabel2"),
        Enable("thePerMonth2", Chosen("theRangePeriods")),
        Show("thePeriodsFrame3", Chosen("theRangePeriods")),
        Show("thePeriodTypesBox", Ticked("theIsPeriodTypes")),
        Mark("time", Ticked("theIsPeriods")),  // the types of periods are no criterion of their own

        Show("theAccStreamTypeBox", Ticked("theIsAccStreamType")),
        Show("theAccStreamOpenessFrame2", Ticked("theIsAccStreamOpeness")),
        Show("theContoraPrefix1", Ticked("theIsContoraPrefix1")),
        Show("theContoraPrefix2", Ticked("theIsContoraPrefix2")),
        Show("theContoraJoinFrame", BothTicked("theIsContoraPrefix1", "theIsContoraPrefix2")),
        Show("theAccStreamsListFrame2", Ticked("theIsAccStreamsList")),
        Mark("accstream",
             AnyTicked({"theIsAccStreamType", "theIsAccStreamOpeness", "theIsContoraPrefix1",
                        "theIsContoraPrefix2", "theIsAccStreamsList"})),

        Show("theTaxpayersFrame2", Ticked("theIsTaxpayers")),
        Show("theTaxpayersFrame3", Ticked("theIsTaxpayers")),
        Show("theIncludeMainOrgDocs", Chosen("theOptMainOrgs")),
        Mark("taxpayer", Ticked("theIsTaxpayers")),
    };
    return rules;
}

/// An option stands for its whole group, the options in one frame: choosing one ends the choice of
/// another.
bool IsInGroupOf(ElementOf<OptionButton> aOption, const ElementRow &aRow) {
    return aRow.Kind == ElementKind::Option &&
           std::string_view(aRow.Inside) == aOption.Row().Inside;
}

bool IsIn(const Condition &aCondition, const ElementRow &aRow) {
    const auto isIt = [&](ElementName name) { return &name.Row() == &aRow; };
    return std::ranges::any_of(aCondition.Boxes, isIt) ||
           (aCondition.Option && IsInGroupOf(*aCondition.Option, aRow));
}

/// Whether a click on the element may change what a rule says.
bool IsLookedAt(const ElementRow &aRow) {
    return std::ranges::any_of(AllRules(), [&](const Rule &rule) { return IsIn(rule.When, aRow); });
}

}  // namespace

struct VkDocQueryCriteries::Rules {
    static bool Holds(const VkDocQueryCriteries &aPanel, const Condition &aWhen) {
        const auto ticked = [&](ElementOf<CheckBox> box) { return aPanel.IsTicked(box); };
        switch (aWhen.What) {
            case Test::Chosen:
                return aPanel.IsChosen(*aWhen.Option);
            case Test::AnyTicked:
                return std::ranges::any_of(aWhen.Boxes, ticked);
            case Test::AllTicked:
                return std::ranges::all_of(aWhen.Boxes, ticked);
        }
        Q_UNREACHABLE();
    }

    static void Apply(VkDocQueryCriteries &aPanel, const Rule &aRule) {
        const bool holds = Holds(aPanel, aRule.When);
        const QString target = QString::fromLatin1(aRule.Target);
        switch (aRule.Do) {
            case Action::Show:
                return aPanel.Named(target).setVisible(holds);
            case Action::Enable:
                return EnableControl(
                    aPanel.Named(target), holds,
                    aRule.Label ? &aPanel.Named(QString::fromLatin1(aRule.Label)) : nullptr);
            case Action::Mark:
                return aPanel.SetTabUsing(target, holds);
        }
        Q_UNREACHABLE();
    }
};

struct VkDocQueryCriteries::Clicks {
    static void CheckBoxClicked(VkDocQueryCriteries &aPanel, const char *aName) try {
        aPanel.RefreshControls(false);
    } catch (...) {
        ReportErrorToUser(theModule, (QByteArray(aName) + "_Click").constData());
    }

    static void OptionClicked(VkDocQueryCriteries &aPanel, const OptionButton &aOption,
                              const char *aName) try {
        if (aOption.Value()) aPanel.RefreshControls(false);
    } catch (...) {
        ReportErrorToUser(theModule, (QByteArray(aName) + "_Click").constData());
    }

    static void ConnectSwitch(VkDocQueryCriteries &aPanel, const char *aName) {
        QWidget *element = &aPanel.Named(ObjectName(aName));
        if (const auto *option = qobject_cast<OptionButton *>(element))
            connect(option, &OptionButton::Click, &aPanel,
                    [&aPanel, option, aName] { OptionClicked(aPanel, *option, aName); });
        else if (const auto *box = qobject_cast<CheckBox *>(element))
            connect(box, &CheckBox::Click, &aPanel,
                    [&aPanel, aName] { CheckBoxClicked(aPanel, aName); });
    }
};

void VkDocQueryCriteries::LockUpdate() {
    ++theLockCount;
}

void VkDocQueryCriteries::UnlockUpdate() try {
    if (theLockCount < 1) return;
    --theLockCount;
    if (theLockCount != 0 || !theRefreshPending) return;
    RefreshControls(false);
    theRefreshPending = false;
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::RefreshControls(bool aForce) try {
    if (!aForce && theLockCount >= 1) {
        theRefreshPending = true;
        return;
    }
    if (theRefreshDisabled) return;
    theRefreshPending = false;
    for (const Rule &rule : AllRules()) Rules::Apply(*this, rule);
    emit Refreshed();
} catch (...) {
    RaiseErrorUp(theModule, __func__);
}

void VkDocQueryCriteries::ConnectClicks() {
    using Panel = VkDocQueryCriteries;
    std::vector<const ElementRow *> handled;  // elsewhere, which refreshes where it has to
    const auto option = [&](ElementOf<OptionButton> aOption, void (Panel::*aHandler)()) {
        connect(&The(aOption), &OptionButton::Click, this, aHandler);
        handled.push_back(&aOption.Row());
    };
    option("theOptTemplateClass", &Panel::theOptTemplateClass_Click);
    option("theOptTemplate", &Panel::theOptTemplate_Click);
    option("theOptTaxpayers", &Panel::theOptTaxpayers_Click);
    option("theOptMainOrgs", &Panel::theOptMainOrgs_Click);
    for (const ElementRow &row : theElementRows)
        if (IsLookedAt(row) && std::ranges::count(handled, &row) == 0)
            Clicks::ConnectSwitch(*this, row.Name);

    const auto button = [this](ElementOf<QPushButton> aName, void (Panel::*aHandler)()) {
        connect(&The(aName), &QPushButton::clicked, this, aHandler);
    };
    button("theTemplatesAdd", &Panel::theTemplatesAdd_Click);
    button("theAccStreamAdd", &Panel::theAccStreamAdd_Click);
    button("theTaxpayerAdd", &Panel::theTaxpayerAdd_Click);
    button("theTemplatesDelete", &Panel::theTemplatesDelete_Click);
    button("theAccStreamDelete", &Panel::theAccStreamDelete_Click);
    button("theTaxpayerDelete", &Panel::theTaxpayerDelete_Click);

    const auto list = [this](ElementOf<ListView> aName,
                             void (Panel::*aHandler)(const ListColumn &)) {
        connect(&The(aName), &ListView::ColumnClick, this, aHandler);
    };
    list("theTemplatesList", &Panel::theTemplatesList_ColumnClick);
    list("theAccStreamsList", &Panel::theAccStreamsList_ColumnClick);
    list("theTaxpayersList", &Panel::theTaxpayersList_ColumnClick);
}

}  // namespace Vk_DocQuery
