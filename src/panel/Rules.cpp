#include <algorithm>
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

using Names = std::vector<const char *>;

enum class Test { Chosen, AnyTicked, AllTicked };
enum class Action { Show, Enable, Mark };

struct Condition {
    Test What;
    Names Switches;
};

struct Rule {
    Action Do;
    const char *Element;  ///< or the key of a tab
    Condition When;
    const char *Label = nullptr;
};

Condition Chosen(const char *aOption) {
    return {Test::Chosen, {aOption}};
}
Condition Ticked(const char *aCheckBox) {
    return {Test::AllTicked, {aCheckBox}};
}
Condition BothTicked(const char *aFirst, const char *aSecond) {
    return {Test::AllTicked, {aFirst, aSecond}};
}
Condition AnyTicked(Names aCheckBoxes) {
    return {Test::AnyTicked, std::move(aCheckBoxes)};
}

Rule Show(const char *aElement, Condition aWhen) {
    return {Action::Show, aElement, std::move(aWhen)};
}
Rule Enable(const char *aElement, Condition aWhen, const char *aLabel = nullptr) {
    return {Action::Enable, aElement, std::move(aWhen), aLabel};
}
Rule Mark(const char *aTab, Condition aWhen) {
    return {Action::Mark, aTab, std::move(aWhen)};
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

constexpr const char *theRefreshingCheckBoxes[] = {
    "theIsAccStreamOpeness", "theIsAccStreamsList", "theIsAccStreamType", "theIsContoraPrefix1",
    "theIsContoraPrefix2",   "theIsDocNum",         "theIsDocStatus",     "theIsFss",
    "theIsFssStages",        "theIsFssTerms",       "theIsOrvex",         "theIsOrvexStages",
    "theIsOrvexTerms",       "theIsPeriods",        "theIsPeriodTypes",   "theIsSignDate",
    "theIsSignerFio",        "theIsTaxpayers",      "theIsTemplate",      "theIsNotes",
};

constexpr const char *theRefreshingOptions[] = {
    "theDocLastNumMode", "theDocNumRange", "theNotesEmpty",  "theNotesNotEmpty",
    "theNotesLike",      "theOnePeriod",   "theOtherPeriod", "theRangePeriods",
};

}  // namespace

struct VkDocQueryCriteries::Rules {
    static bool Holds(const VkDocQueryCriteries &aPanel, const Condition &aCondition) {
        const auto &names = aCondition.Switches;
        const auto ticked = [&](const char *name) { return aPanel.IsTicked(name); };
        switch (aCondition.What) {
            case Test::Chosen:
                return aPanel.IsChosen(names.front());
            case Test::AnyTicked:
                return std::any_of(names.begin(), names.end(), ticked);
            case Test::AllTicked:
                return std::all_of(names.begin(), names.end(), ticked);
        }
        Q_UNREACHABLE();
    }

    static void Apply(VkDocQueryCriteries &aPanel, const Rule &aRule) {
        const bool holds = Holds(aPanel, aRule.When);
        switch (aRule.Do) {
            case Action::Show:
                return aPanel.Element(aRule.Element).setVisible(holds);
            case Action::Enable:
                return EnableControl(aPanel.Element(aRule.Element), holds,
                                     aRule.Label ? &aPanel.Element(aRule.Label) : nullptr);
            case Action::Mark:
                return aPanel.SetTabUsing(QString::fromLatin1(aRule.Element), holds);
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

    static void OptionClicked(VkDocQueryCriteries &aPanel, const char *aName) try {
        if (aPanel.IsChosen(aName)) aPanel.RefreshControls(false);
    } catch (...) {
        ReportErrorToUser(theModule, (QByteArray(aName) + "_Click").constData());
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
    RaiseErrorUp(theModule, "UnlockUpdate");
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
    RaiseErrorUp(theModule, "RefreshControls");
}

void VkDocQueryCriteries::ConnectClicks() {
    for (const char *name : theRefreshingCheckBoxes) {
        connect(&The<CheckBox>(name), &CheckBox::Click, this,
                [this, name] { Clicks::CheckBoxClicked(*this, name); });
    }
    for (const char *name : theRefreshingOptions) {
        connect(&The<OptionButton>(name), &OptionButton::Click, this,
                [this, name] { Clicks::OptionClicked(*this, name); });
    }

    using Panel = VkDocQueryCriteries;
    const auto option = [this](const char *aName, void (Panel::*aHandler)()) {
        connect(&The<OptionButton>(aName), &OptionButton::Click, this, aHandler);
    };
    option("theOptTemplateClass", &Panel::theOptTemplateClass_Click);
    option("theOptTemplate", &Panel::theOptTemplate_Click);
    option("theOptTaxpayers", &Panel::theOptTaxpayers_Click);
    option("theOptMainOrgs", &Panel::theOptMainOrgs_Click);

    const auto button = [this](const char *aName, void (Panel::*aHandler)()) {
        connect(&The<QPushButton>(aName), &QPushButton::clicked, this, aHandler);
    };
    button("theTemplatesAdd", &Panel::theTemplatesAdd_Click);
    button("theAccStreamAdd", &Panel::theAccStreamAdd_Click);
    button("theTaxpayerAdd", &Panel::theTaxpayerAdd_Click);
    button("theTemplatesDelete", &Panel::theTemplatesDelete_Click);
    button("theAccStreamDelete", &Panel::theAccStreamDelete_Click);
    button("theTaxpayerDelete", &Panel::theTaxpayerDelete_Click);

    const auto list = [this](const char *aName, void (Panel::*aHandler)(const ListColumn &)) {
        connect(&The<ListView>(aName), &ListView::ColumnClick, this, aHandler);
    };
    list("theTemplatesList", &Panel::theTemplatesList_ColumnClick);
    list("theAccStreamsList", &Panel::theAccStreamsList_ColumnClick);
    list("theTaxpayersList", &Panel::theTaxpayersList_ColumnClick);
}

}  // namespace Vk_DocQuery
