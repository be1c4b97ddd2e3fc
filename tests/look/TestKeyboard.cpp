#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTabBar>
#include <QTest>

#include "browser/TemplateQuerierForm.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "lists/ListView.h"
#include "look/Operable.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// The dialog on the screen with every criterion on, without a loop of its own.
struct OpenDialog {
    OpenDialog() {
        Window.SetRecord(nullptr);
        Window.show();
        Bar = Window.findChild<QTabBar *>(QStringLiteral("theTabBar"));
        for (auto *box : Window.findChildren<QCheckBox *>()) box->setChecked(true);
    }
    template <class Kind = QWidget>
    Kind &Get(const char *aName) const {
        auto *element = Window.findChild<Kind *>(QString::fromLatin1(aName));
        if (!element) qFatal("no element %s", aName);
        return *element;
    }

    DocQueryOptionsFrm Window;
    QTabBar *Bar;
};

/// The elements that Tab visits, from the one that has the focus until it comes round.
QList<QWidget *> VisitedByTab(QWidget &aWindow) {
    QList<QWidget *> visited;
    for (QWidget *element = aWindow.focusWidget(); element && !visited.contains(element);
         element = aWindow.focusWidget()) {
        visited << element;
        QTest::keyClick(element, Qt::Key_Tab);
    }
    return visited;
}

QImage Surroundings(QWidget &aWindow, const QWidget &aElement) {
    const QRect place(aElement.mapTo(&aWindow, QPoint(0, 0)), aElement.size());
    return aWindow.grab(place.adjusted(-2, -2, 2, 2)).toImage();
}

}  // namespace

class TestKeyboard : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { MemoryOffice::Install(); }

    void TabsAreSwitchedFromEverywhere_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("step");
        using Modifiers = Qt::KeyboardModifiers;
        QTest::newRow("Ctrl+Tab") << Qt::Key_Tab << Modifiers(Qt::ControlModifier) << 1;
        QTest::newRow("Ctrl+Shift+Tab")
            << Qt::Key_Backtab << (Qt::ControlModifier | Qt::ShiftModifier) << -1;
        QTest::newRow("Ctrl+PgDn") << Qt::Key_PageDown << Modifiers(Qt::ControlModifier) << 1;
        QTest::newRow("Ctrl+PgUp") << Qt::Key_PageUp << Modifiers(Qt::ControlModifier) << -1;
    }
    void TabsAreSwitchedFromEverywhere() {
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        QFETCH(int, step);
        const OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(const_cast<DocQueryOptionsFrm *>(&dialog.Window)));
        struct Place {
            int Tab;
            const char *Element;
        };
        const Place places[] = {
            {0, "theTabBar"},   {0, "theTaxpayersList"}, {1, "theContoraPrefix1"},
            {2, "thePerYear1"}, {2, "thePerMonth1"},     {4, "theSignDate1"},
            {4, "theDocNum1"},  {4, "theNotesEmpty"},    {3, "theLoad"},
            {3, "theSave"},     {3, "theSaveAs"},        {3, "theHelp"},
            {3, "theOK"},       {3, "theCancel"},        {1, "theIsAccStreamType"},
        };
        dialog.Get<QRadioButton>("theDocNumRange").setChecked(true);
        dialog.Get<QRadioButton>("theRangePeriods").setChecked(true);
        for (const Place &place : places) {
            dialog.Bar->setCurrentIndex(place.Tab);
            dialog.Get(place.Element).setFocus();
            QWidget *focus = dialog.Window.focusWidget();
            QCOMPARE(NameOf(focus), QString::fromLatin1(place.Element));
            QTest::keyClick(focus, key, modifiers);
            const int wanted = (place.Tab + step + 5) % 5;
            QVERIFY2(dialog.Bar->currentIndex() == wanted, place.Element);
        }
    }

    void TabVisitsEverything_data() {
        QTest::addColumn<int>("tab");
        for (int i = 0; i < 5; ++i) QTest::addRow("tab %d", i + 1) << i;
    }
    void TabVisitsEverything() {
        QFETCH(int, tab);
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        dialog.Bar->setCurrentIndex(tab);
        dialog.Bar->setFocus();
        QStringList visited;
        for (const QWidget *element : VisitedByTab(dialog.Window)) visited << NameOf(element);
        visited.removeDuplicates();
        visited.sort();
        QCOMPARE(visited, Operable(dialog.Window));
        QVERIFY(visited.size() >= 10);
    }

    /// From within another page the focus goes along to the first element of the page, and Tab goes
    /// on from there: to the next element, or below if the page has no other.
    void AltDigitLeadsToThePage_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<bool>("on");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        const auto row = [](int aTab, bool aOn, const char *aFirst, const char *aSecond) {
            QTest::addRow("%d, %s", aTab, aOn ? "on" : "off")
                << aTab << aOn << QString::fromLatin1(aFirst) << QString::fromLatin1(aSecond);
        };
        row(1, false, "theIsTaxpayers", "theLoad");
        row(1, true, "theIsTaxpayers", "theOptTaxpayers");
        row(2, false, "theIsAccStreamType", "theIsAccStreamOpeness");
        row(2, true, "theIsAccStreamType", "theAccStreamTypes(0)");
        row(3, false, "theIsPeriods", "theLoad");
        row(3, true, "theIsPeriods", "theOnePeriod");
        row(4, false, "theIsTemplate", "theLoad");
        row(4, true, "theIsTemplate", "theOptTemplateClass");
        row(5, false, "theIsDocStatus", "theIsSignDate");
        row(5, true, "theIsDocStatus", "theDocStatuses(0)");
    }
    void AltDigitLeadsToThePage() {
        QFETCH(int, tab);
        QFETCH(bool, on);
        QFETCH(QString, first);
        QFETCH(QString, second);
        const OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(const_cast<DocQueryOptionsFrm *>(&dialog.Window)));
        for (auto *box : dialog.Window.findChildren<QCheckBox *>()) box->setChecked(on);
        dialog.Bar->setCurrentIndex(tab == 5 ? 0 : 4);
        dialog.Get(tab == 5 ? "theIsTaxpayers" : "theIsSignDate").setFocus();
        QTest::keyClick(dialog.Window.focusWidget(), Qt::Key(Qt::Key_0 + tab), Qt::AltModifier);
        QCOMPARE(dialog.Bar->currentIndex(), tab - 1);
        QCOMPARE(NameOf(dialog.Window.focusWidget()), first);
        QTest::keyClick(dialog.Window.focusWidget(), Qt::Key_Tab);
        QCOMPARE(NameOf(dialog.Window.focusWidget()), second);
    }
    /// From below and from the tabs it stays where it is.
    void AltDigitLeavesTheFocusOutsideOfThePages() {
        const OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(const_cast<DocQueryOptionsFrm *>(&dialog.Window)));
        for (const char *name : {"theTabBar", "theSave"}) {
            dialog.Bar->setCurrentIndex(0);
            dialog.Get(name).setFocus();
            QTest::keyClick(dialog.Window.focusWidget(), Qt::Key_3, Qt::AltModifier);
            QCOMPARE(dialog.Bar->currentIndex(), 2);
            QCOMPARE(NameOf(dialog.Window.focusWidget()), QString::fromLatin1(name));
        }
    }

    void FocusIsSeen_data() { TabVisitsEverything_data(); }
    void FocusIsSeen() {
        QFETCH(int, tab);
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        dialog.Bar->setCurrentIndex(tab);
        dialog.Bar->setFocus();
        const QList<QWidget *> stops = VisitedByTab(dialog.Window);
        for (QWidget *stop : stops) {
            QWidget *elsewhere = stop == stops.first() ? stops.last() : stops.first();
            elsewhere->setFocus(Qt::TabFocusReason);
            const QImage without = Surroundings(dialog.Window, *stop);
            stop->setFocus(Qt::TabFocusReason);
            const QImage with = Surroundings(dialog.Window, *stop);
            QVERIFY2(with != without, qPrintable(NameOf(stop)));
        }
    }

    void ArrowsChooseWithinAGroup() {
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        dialog.Bar->setCurrentIndex(4);
        auto &empty = dialog.Get<QRadioButton>("theNotesEmpty");
        auto &notEmpty = dialog.Get<QRadioButton>("theNotesNotEmpty");
        empty.setChecked(true);
        empty.setFocus();
        QTest::keyClick(&empty, Qt::Key_Down);
        QVERIFY(notEmpty.isChecked());
        QVERIFY(notEmpty.hasFocus());
        QTest::keyClick(&notEmpty, Qt::Key_Up);
        QVERIFY(empty.isChecked());
    }

    void BlankTicks() {
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        auto &box = dialog.Get<QCheckBox>("theIsTaxpayers");
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Space);
        QVERIFY(!box.isChecked());
        QVERIFY(!dialog.Get("theTaxpayersList").isVisible());
    }

    void EnterPressesTheButtonWithTheFocus() {
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        const ModalDriver driver;  // would answer the box that OK brings
        dialog.Get("theCancel").setFocus();
        QTest::keyClick(dialog.Window.focusWidget(), Qt::Key_Return);
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!dialog.Window.isVisible());
    }

    void ListsDropDown_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("name");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        struct Element {
            int Tab;
            const char *Name;
        };
        for (const Element element :
             {Element{2, "thePerYear1"}, Element{2, "thePerMonth1"}, Element{4, "theSignDate1"}}) {
            QTest::addRow("F4 in %s", element.Name)
                << element.Tab << QString::fromLatin1(element.Name) << Qt::Key_F4
                << Qt::KeyboardModifiers();
            QTest::addRow("Alt+Down in %s", element.Name)
                << element.Tab << QString::fromLatin1(element.Name) << Qt::Key_Down
                << Qt::KeyboardModifiers(Qt::AltModifier);
        }
    }
    void ListsDropDown() {
        QFETCH(int, tab);
        QFETCH(QString, name);
        QFETCH(Qt::Key, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        OpenDialog dialog;
        QVERIFY(QTest::qWaitForWindowActive(&dialog.Window));
        dialog.Bar->setCurrentIndex(tab);
        dialog.Get<QRadioButton>("theRangePeriods").setChecked(true);
        dialog.Get(qPrintable(name)).setFocus();
        QTest::keyClick(dialog.Window.focusWidget(), key, modifiers);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QApplication::activePopupWidget()->close();
    }

    /// What a screen reader says for a row of the periods: a picture means nothing to it.
    void PictureIsSaidByTheNameOfItsColumn() {
        ListView list;
        list.AddColumn(QStringLiteral("*"), 300);
        list.AddColumn(QStringLiteral("Год"), 900);
        list.AddColumn(QStringLiteral("Янв"), 540);
        list.AddColumn(QStringLiteral("Фев"), 540);
        list.AddColumn(QStringLiteral("1 кв"), 540);
        ListRow *row = list.AddRow(QStringLiteral("_1"));
        row->SetIcon(QStringLiteral("period"));
        row->SetCell(1, QStringLiteral("2026"));
        row->SetCellIcon(2, QStringLiteral("period"));
        row->SetCell(4, QStringLiteral("да"), QStringLiteral("quartal"));
        QAccessibleTableInterface *table =
            QAccessible::queryAccessibleInterface(&list)->tableInterface();
        const auto said = [&](int aColumn) {
            return table->cellAt(0, aColumn)->text(QAccessible::Name);
        };
        QCOMPARE(said(0), QStringLiteral("2026; Янв; да"));
        QCOMPARE(said(2), QStringLiteral("Янв"));
        QCOMPARE(said(3), QString());
        QCOMPARE(said(4), QStringLiteral("да"));
    }

    void TabVisitsTheBrowser() {
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        QVERIFY(QTest::qWaitForWindowActive(&browser));
        QStringList visited;
        for (const QWidget *element : VisitedByTab(browser)) visited << NameOf(element);
        QCOMPARE(visited, QStringList({QStringLiteral("theFilterA"), QStringLiteral("theFormList"),
                                       QStringLiteral("theCatInfo"), QStringLiteral("theTimeList"),
                                       QStringLiteral("theClose")}));
    }
};

VK_TEST_CLASS(TestKeyboard);
#include "TestKeyboard.moc"
