#include <QLineEdit>
#include <QTabBar>
#include <QTest>

#include <Vk_DocQuery/Failure.h>

#include "panel/OpenPanel.h"
#include "panel/ShownFailures.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace VkTests;

namespace {

/// Clears every check box and every option of the panel.
void ClearAll(OpenPanel &aPanel) {
    for (auto *box : aPanel.findChildren<CheckBox *>()) box->SetValue(0);
    for (auto *option : aPanel.findChildren<OptionButton *>()) option->SetValue(false);
}

void TurnOn(OpenPanel &aPanel, const QString &aSwitch) {
    const QByteArray name = aSwitch.toLatin1();
    if (auto *box = aPanel.findChild<CheckBox *>(aSwitch))
        box->SetValue(1);
    else
        aPanel.Option(name.constData()).SetValue(true);
}

bool IsOn(const OpenPanel &aPanel, const QString &aElement, const QString &aAction) {
    const QByteArray name = aElement.toLatin1();
    if (aAction == u"mark") return aPanel.Tabs().TabPicture(aElement) == u"active";
    if (aAction == u"enable") return aPanel.Get(name.constData()).isEnabled();
    return !aPanel.Get(name.constData()).isHidden();
}

QStringList Words(const QString &aText) {
    return aText.split(u' ', Qt::SkipEmptyParts);
}

/// The failing of every refresh: the pictures of the tabs are taken away.
void SpoilRefresh(OpenPanel &aPanel) {
    aPanel.Tabs().SetImages(std::make_shared<ImageList>());
}

const char theAllSwitches[] =
    "theIsAccStreamOpeness theIsAccStreamsList theIsAccStreamType theIsContoraPrefix1 "
    "theIsContoraPrefix2 theIsDocNum theIsDocStatus theIsFss theIsFssStages theIsFssTerms "
    "theIsOrvex theIsOrvexStages theIsOrvexTerms theIsPeriods theIsPeriodTypes theIsSignDate "
    "theIsSignerFio theIsTaxpayers theIsTemplate theIsNotes";
const char theAllRefreshingOptions[] =
    "theDocLastNumMode theDocNumRange theNotesEmpty theNotesNotEmpty theNotesLike theOnePeriod "
    "theOtherPeriod theRangePeriods";

}  // namespace

class TestRules : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { MemoryOffice::Install(); }

    // The switches of "any" turn the rule on one by one, those of "all" only together.
    void EveryRule_data() {
        QTest::addColumn<QString>("element");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("joining");
        QTest::addColumn<QString>("switches");
        QTest::addColumn<QString>("label");
        const auto row = [](int step, const char *element, const char *action, const char *switches,
                            const char *label = "", const char *joining = "any") {
            QTest::newRow(qPrintable(QString::number(step)))
                << QString::fromLatin1(element) << QString::fromLatin1(action)
                << QString::fromLatin1(joining) << QString::fromLatin1(switches)
                << QString::fromLatin1(label);
        };
        row(1, "theDocStatusFrame2", "show", "theIsDocStatus");
        row(2, "theNotesFrame2", "show", "theIsNotes");
        row(3, "theNotes", "show", "theNotesLike");
        row(4, "theSignDateFrame2", "show", "theIsSignDate");
        row(5, "theSignerFioFrame2", "show", "theIsSignerFio");
        row(6, "theDocNumFrame2", "show", "theIsDocNum");
        row(7, "theDocNumRangeFrame", "show", "theDocNumRange");
        row(8, "theDocLastNumFrame", "show", "theDocLastNumMode");
        row(9, "theOrvexFrame2", "show", "theIsOrvex");
        row(10, "theOrvexStagesBox", "show", "theIsOrvexStages");
        row(11, "theOrvexTermsBox", "show", "theIsOrvexTerms");
        row(12, "theFssFrame2", "show", "theIsFss");
        row(13, "theFssStagesBox", "show", "theIsFssStages");
        row(14, "theFssTermsBox", "show", "theIsFssTerms");
        row(15, "doc", "mark",
            "theIsDocStatus theIsNotes theIsSignDate theIsSignerFio theIsDocNum theIsOrvex "
            "theIsFss");
        row(16, "theTemplateTypeFrame", "show", "theIsTemplate");
        row(17, "theTemplatesListFrame", "show", "theIsTemplate");
        row(18, "template", "mark", "theIsTemplate");
        row(19, "thePeriodsFrame2", "show", "theIsPeriods");
        row(20, "theOnePerYear", "enable", "theOnePeriod", "theOnePerYearLabel");
        row(21, "thePeriodTime", "enable", "theOnePeriod", "thePeriodTimeLabel");
        row(22, "thePerYear1", "enable", "theRangePeriods", "thePerLabel1");
        row(23, "thePerMonth1", "enable", "theRangePeriods");
        row(24, "thePerYear2", "enable", "theRangePeriods", "thePerLabel2");
        row(25, "thePerMonth2", "enable", "theRangePeriods");
        row(26, "thePeriodsFrame3", "show", "theRangePeriods");
        row(27, "thePeriodTypesBox", "show", "theIsPeriodTypes");
        row(28, "time", "mark", "theIsPeriods");
        row(29, "theAccStreamTypeBox", "show", "theIsAccStreamType");
        row(30, "theAccStreamOpenessFrame2", "show", "theIsAccStreamOpeness");
        row(31, "theContoraPrefix1", "show", "theIsContoraPrefix1");
        row(32, "theContoraPrefix2", "show", "theIsContoraPrefix2");
        row(33, "theContoraJoinFrame", "show", "theIsContoraPrefix1 theIsContoraPrefix2", "",
            "all");
        row(34, "theAccStreamsListFrame2", "show", "theIsAccStreamsList");
        row(35, "accstream", "mark",
            "theIsAccStreamType theIsAccStreamOpeness theIsContoraPrefix1 theIsContoraPrefix2 "
            "theIsAccStreamsList");
        row(36, "theTaxpayersFrame2", "show", "theIsTaxpayers");
        row(37, "theTaxpayersFrame3", "show", "theIsTaxpayers");
        row(38, "theIncludeMainOrgDocs", "show", "theOptMainOrgs");
        row(39, "taxpayer", "mark", "theIsTaxpayers");
    }

    void EveryRule() {
        QFETCH(QString, element);
        QFETCH(QString, action);
        QFETCH(QString, joining);
        QFETCH(QString, switches);
        QFETCH(QString, label);
        OpenPanel panel;
        ClearAll(panel);
        panel.RefreshControls(false);
        QVERIFY(!IsOn(panel, element, action));
        if (!label.isEmpty()) QVERIFY(!IsOn(panel, label, action));

        for (const QString &name : Words(switches)) {
            ClearAll(panel);
            TurnOn(panel, name);
            QCOMPARE(IsOn(panel, element, action), joining == u"any");
            if (!label.isEmpty()) QVERIFY(IsOn(panel, label, action));
        }
        for (const QString &name : Words(switches)) TurnOn(panel, name);
        QVERIFY(IsOn(panel, element, action));
    }

    // With everything on but the switches of one rule, that rule must be off: it looks at nothing
    // else.
    void EveryRuleLooksAtItsOwnConditionOnly_data() { EveryRule_data(); }
    void EveryRuleLooksAtItsOwnConditionOnly() {
        QFETCH(QString, element);
        QFETCH(QString, action);
        QFETCH(QString, switches);
        OpenPanel panel;
        ClearAll(panel);
        const QStringList own = Words(switches);
        for (auto *box : panel.findChildren<CheckBox *>()) {
            if (!own.contains(box->objectName())) box->SetValue(1);
        }
        for (auto *option : panel.findChildren<OptionButton *>()) {
            if (!own.contains(option->objectName())) option->SetValue(true);
        }
        QVERIFY(!IsOn(panel, element, action));
    }

    void DisabledCombosHaveTheButtonFace() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Option("theOnePeriod").SetValue(true);
        const QPalette colours = QApplication::palette();
        QCOMPARE(panel.Combo("theOnePerYear").palette().color(QPalette::Base),
                 colours.color(QPalette::Active, QPalette::Base));
        QCOMPARE(panel.Combo("thePerMonth2").palette().color(QPalette::Base),
                 colours.color(QPalette::Disabled, QPalette::Button));
        panel.Option("theRangePeriods").SetValue(true);
        QCOMPARE(panel.Combo("thePerMonth2").palette().color(QPalette::Base),
                 colours.color(QPalette::Active, QPalette::Base));
    }

    void PackOfDocumentsTakesNoPart() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Check("theWholePfrCluster").SetValue(1);
        panel.RefreshControls(false);
        QCOMPARE(panel.Tabs().TabPicture(QStringLiteral("doc")), QStringLiteral("passive"));
        QVERIFY(!panel.Check("theWholePfrCluster").isHidden());
    }

    void StagesAndTypesOfPeriodsMarkNothing_data() {
        QTest::addColumn<QString>("tab");
        for (const char *name :
             {"theIsOrvexStages", "theIsOrvexTerms", "theIsFssStages", "theIsFssTerms"})
            QTest::newRow(name) << QStringLiteral("doc");
        QTest::newRow("theIsPeriodTypes") << QStringLiteral("time");
    }
    void StagesAndTypesOfPeriodsMarkNothing() {
        QFETCH(QString, tab);
        OpenPanel panel;
        ClearAll(panel);
        panel.Check(QTest::currentDataTag()).SetValue(1);
        QCOMPARE(panel.Tabs().TabPicture(tab), QStringLiteral("passive"));
    }

    void HiddenFramesStayHidden() {
        OpenPanel panel;
        panel.show();
        for (auto *box : panel.findChildren<CheckBox *>()) box->SetValue(1);
        panel.Tabs().SetSelectedTab(QStringLiteral("doc"));
        QVERIFY(panel.Get("theOrvexFrame").isHidden());
        QVERIFY(panel.Get("theFssFrame").isHidden());
        QCOMPARE(panel.Tabs().TabPicture(QStringLiteral("doc")), QStringLiteral("active"));
    }

    void GreyIsNotTicked() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Check("theIsTemplate").SetValue(2);
        QVERIFY(panel.Get("theTemplatesListFrame").isHidden());
    }

    void PrefixesAndTheirJoining() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Option("theContoraJoinOr").SetValue(true);
        panel.Check("theIsContoraPrefix1").SetValue(1);
        QVERIFY(!panel.Get("theContoraPrefix1").isHidden());
        QVERIFY(panel.Get("theContoraJoinFrame").isHidden());
        panel.Check("theIsContoraPrefix2").SetValue(1);
        QVERIFY(!panel.Get("theContoraJoinFrame").isHidden());
        panel.Check("theIsContoraPrefix1").SetValue(0);
        QVERIFY(panel.Get("theContoraJoinFrame").isHidden());
        QVERIFY(panel.Option("theContoraJoinOr").Value());
    }

    void HiddenNoteKeepsItsText() {
        OpenPanel panel;
        panel.Option("theNotesLike").SetValue(true);
        panel.Get<QLineEdit>("theNotes").setText(QStringLiteral("акт"));
        panel.Option("theNotesEmpty").SetValue(true);
        QVERIFY(panel.Get("theNotes").isHidden());
        VkDocQueryData record;
        panel.AssembleValuesTo(record);
        QCOMPARE(record.Notes, QStringLiteral("акт"));
    }

    void TaxpayersHideTheTickAndKeepIt() {
        OpenPanel panel;
        panel.Option("theOptMainOrgs").SetValue(true);
        panel.Check("theIncludeMainOrgDocs").SetValue(1);
        panel.Option("theOptTaxpayers").SetValue(true);
        QVERIFY(panel.Get("theIncludeMainOrgDocs").isHidden());
        QCOMPARE(panel.Check("theIncludeMainOrgDocs").Value(), 1);
    }

    void TaxpayersSwitchedOffHideTheTickWithTheirFrame() {
        OpenPanel panel;
        panel.show();
        panel.Check("theIsTaxpayers").SetValue(1);
        panel.Option("theOptMainOrgs").SetValue(true);
        QVERIFY(panel.Get("theIncludeMainOrgDocs").isVisible());
        panel.Check("theIsTaxpayers").SetValue(0);
        QVERIFY(!panel.Get("theIncludeMainOrgDocs").isVisible());
        QVERIFY(!panel.Get("theIncludeMainOrgDocs").isHidden());
    }

    // Handlers.

    void EverySwitchRefreshesOnce_data() {
        QTest::addColumn<bool>("isOption");
        for (const QString &name : Words(QString::fromLatin1(theAllSwitches)))
            QTest::newRow(qPrintable(name)) << false;
        for (const QString &name : Words(QString::fromLatin1(theAllRefreshingOptions)))
            QTest::newRow(qPrintable(name)) << true;
    }
    void EverySwitchRefreshesOnce() {
        QFETCH(bool, isOption);
        OpenPanel panel;
        ClearAll(panel);
        panel.Refreshes = 0;
        const QString name = QString::fromLatin1(QTest::currentDataTag());
        TurnOn(panel, name);
        QCOMPARE(panel.Refreshes, 1);
        TurnOn(panel, name);
        QCOMPARE(panel.Refreshes, 1);
        if (isOption) {
            // The handler of an option that is not chosen does nothing.
            panel.Option(QTest::currentDataTag()).SetValue(false);
            QCOMPARE(panel.Refreshes, 1);
        } else {
            panel.Check(QTest::currentDataTag()).SetValue(0);
            QCOMPARE(panel.Refreshes, 2);
        }
    }

    void EverySwitchReportsUnderItsOwnName_data() { EverySwitchRefreshesOnce_data(); }
    void EverySwitchReportsUnderItsOwnName() {
        OpenPanel panel;
        ClearAll(panel);
        SpoilRefresh(panel);
        const ShownFailures shown;
        TurnOn(panel, QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(ShownFailures::Chains(),
                 QStringList(QString::fromLatin1(QTest::currentDataTag()) +
                             QStringLiteral("_Click RefreshControls SetTabUsing")));
    }

    void TheOthersRefreshNothing_data() {
        QTest::addColumn<bool>("unused");
        for (const char *name :
             {"theContoraJoinAnd", "theContoraJoinOr", "theAccStreamOpen", "theAccStreamClosed",
              "theWholePfrCluster", "theIncludeMainOrgDocs", "theDocStatuses(0)",
              "theAccStreamTypes(5)", "thePeriodTypes(6)", "theFssStages(1)", "theOrvexTerms(2)",
              "theOptTemplateClass", "theOptTemplate"})
            QTest::newRow(name) << true;
    }
    void TheOthersRefreshNothing() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Refreshes = 0;
        TurnOn(panel, QString::fromLatin1(QTest::currentDataTag()));
        QCOMPARE(panel.Refreshes, 0);
    }

    void UserClicksWithTheMouse() {
        OpenPanel panel;
        VkDocQueryData record;
        panel.DistributeValues(record);
        panel.show();
        panel.Refreshes = 0;
        QTest::mouseClick(&panel.Get("theIsTaxpayers"), Qt::LeftButton);
        QCOMPARE(panel.Refreshes, 1);
        QVERIFY(panel.Get("theTaxpayersFrame2").isVisible());
        QTest::mouseClick(&panel.Get("theOptMainOrgs"), Qt::LeftButton);
        QVERIFY(panel.Get("theIncludeMainOrgDocs").isVisible());
        QCOMPARE(panel.Tabs().TabPicture(QStringLiteral("taxpayer")), QStringLiteral("active"));
    }

    void UserTicksWithTheKeyboard() {
        OpenPanel panel;
        panel.show();
        QTest::keyClick(&panel.Get("theIsTaxpayers"), Qt::Key_Space);
        QCOMPARE(panel.Check("theIsTaxpayers").Value(), 1);
        QVERIFY(panel.Get("theTaxpayersFrame2").isVisible());
    }

    // The lock.

    void LockHoldsTheRefreshBack() {
        OpenPanel panel;
        ClearAll(panel);
        panel.RefreshControls(false);
        panel.Refreshes = 0;
        panel.LockUpdate();
        panel.LockUpdate();
        panel.Check("theIsTemplate").SetValue(1);
        panel.Check("theIsNotes").SetValue(1);
        QVERIFY(panel.theRefreshPending);
        QCOMPARE(panel.Refreshes, 0);
        panel.UnlockUpdate();
        QCOMPARE(panel.theLockCount, 1);
        QCOMPARE(panel.Refreshes, 0);
        QVERIFY(panel.Get("theTemplatesListFrame").isHidden());
        panel.UnlockUpdate();
        QCOMPARE(panel.Refreshes, 1);
        QVERIFY(!panel.theRefreshPending);
        QVERIFY(!panel.Get("theTemplatesListFrame").isHidden());
    }

    void UnlockWithoutAPendingRefreshRefreshesNothing() {
        OpenPanel panel;
        panel.Refreshes = 0;
        panel.LockUpdate();
        panel.UnlockUpdate();
        QCOMPARE(panel.Refreshes, 0);
    }

    void SurplusUnlockIsHarmless() {
        OpenPanel panel;
        panel.theRefreshPending = true;
        panel.UnlockUpdate();
        QCOMPARE(panel.theLockCount, 0);
        QVERIFY(panel.theRefreshPending);
        QCOMPARE(panel.Refreshes, 0);
    }

    void ForceBreaksThroughTheLock() {
        OpenPanel panel;
        panel.LockUpdate();
        panel.theRefreshPending = true;
        panel.RefreshControls(true);
        QCOMPARE(panel.Refreshes, 1);
        QVERIFY(!panel.theRefreshPending);
        QCOMPARE(panel.theLockCount, 1);
    }

    void RefreshCanBeSwitchedOff() {
        OpenPanel panel;
        ClearAll(panel);
        panel.Refreshes = 0;
        panel.theRefreshDisabled = true;
        panel.Check("theIsTemplate").SetValue(1);
        panel.theRefreshPending = true;
        panel.RefreshControls(true);
        QCOMPARE(panel.Refreshes, 0);
        QVERIFY(panel.theRefreshPending);
        // What waits for the unlock waits all the same.
        panel.theRefreshPending = false;
        panel.LockUpdate();
        panel.RefreshControls(false);
        QVERIFY(panel.theRefreshPending);
    }

    void RulesAreAppliedFromTheFirstToTheLast() {
        OpenPanel panel;
        ClearAll(panel);
        panel.RefreshControls(false);
        panel.Refreshes = 0;
        panel.LockUpdate();
        for (const char *name : {"theIsFssTerms", "theIsTemplate"}) panel.Check(name).SetValue(1);
        SpoilRefresh(panel);  // at the mark of the tab that stands between the two
        QVERIFY(RaisedBy([&] { panel.UnlockUpdate(); }).Number() != 0);
        QVERIFY(!panel.Get("theFssTermsBox").isHidden());
        QVERIFY(panel.Get("theTemplateTypeFrame").isHidden());
        QVERIFY(!panel.theRefreshPending);  // taken as done before the first rule
        QCOMPARE(panel.Refreshes, 0);
    }

    void FailingUnlockNamesItself() {
        OpenPanel panel;
        SpoilRefresh(panel);
        panel.LockUpdate();
        panel.RefreshControls(false);
        try {
            panel.UnlockUpdate();
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QVERIFY(failure.Description().startsWith(
                QStringLiteral("[Vk_DocQuery::VkDocQueryCriteries.UnlockUpdate]\r\n"
                               "[Vk_DocQuery::VkDocQueryCriteries.RefreshControls]\r\n"
                               "[Vk_DocQuery::VkDocQueryCriteries.SetTabUsing]\r\n")));
        }
        QCOMPARE(panel.theLockCount, 0);
    }
};

VK_TEST_CLASS(TestRules);

#include "TestRules.moc"
