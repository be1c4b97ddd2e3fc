#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QVBoxLayout>

#include <Vk_DocQuery/Failure.h>

#include "controls/ListView.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A shown list of twenty rows "_1" to "_20" with check boxes and selection of several rows.
class Shown {
public:
    explicit Shown(bool aMulti = true, bool aCheckBoxes = true) {
        List.AddColumn(QStringLiteral("*"), 600);
        List.AddColumn(QStringLiteral("Название"), 3000);
        for (int i = 1; i <= 20; ++i)
            List.AddRow(QStringLiteral("_%1").arg(i))
                ->SetCell(1, QStringLiteral("Строка %1").arg(i));
        List.SetMultiSelect(aMulti);
        List.SetCheckBoxes(aCheckBoxes);
        List.resize(400, 250);
        List.show();
        List.setFocus();
        if (!QTest::qWaitForWindowActive(&List)) qFatal("the list does not come up");
        QObject::connect(&List, &ListView::ItemClick, &List, [this](ListRow *aRow) {
            Events << QStringLiteral("item ") + aRow->Key();
        });
        QObject::connect(&List, &ListView::Click, &List,
                         [this] { Events << QStringLiteral("click"); });
        QObject::connect(&List, &ListView::DblClick, &List,
                         [this] { Events << QStringLiteral("dbl"); });
        QObject::connect(&List, &ListView::ItemCheck, &List, [this](ListRow *aRow) {
            Events << QStringLiteral("check ") + aRow->Key();
        });
    }

    QPoint PlaceOf(int aRow) const {
        return QPoint(List.header()->sectionViewportPosition(1) + 20,
                      List.RowRect(List.Row(aRow)).center().y());
    }
    QPoint BoxOf(int aRow) const { return QPoint(8, List.RowRect(List.Row(aRow)).center().y()); }
    void ClickRow(int aRow, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) {
        QTest::mouseClick(List.viewport(), Qt::LeftButton, aModifiers, PlaceOf(aRow));
    }
    void Key(Qt::Key aKey, Qt::KeyboardModifiers aModifiers = Qt::NoModifier) {
        QTest::keyClick(&List, aKey, aModifiers);
    }
    QString Selected() const {
        QStringList keys;
        for (const ListRow *row : List.SelectedRows()) keys << row->Key();
        return keys.join(u' ');
    }
    QString Checked() const {
        QStringList keys;
        for (int i = 0; i < List.RowCount(); ++i)
            if (List.Row(i)->IsChecked()) keys << List.Row(i)->Key();
        return keys.join(u' ');
    }
    QString Current() const { return List.SelectedItem() ? List.SelectedItem()->Key() : QString(); }
    QString TakeEvents() {
        QString events = Events.join(QStringLiteral(", "));
        Events.clear();
        return events;
    }

    ListView List;
    QStringList Events;
};

}  // namespace

class TestListViewInput : public QObject {
    Q_OBJECT

private slots:
    void ClickSelectsOneRow() {
        Shown shown;
        shown.ClickRow(2);
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
        QCOMPARE(shown.Current(), QStringLiteral("_3"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _3, click"));
        shown.ClickRow(4);
        QCOMPARE(shown.Selected(), QStringLiteral("_5"));
        shown.ClickRow(4);
        QCOMPARE(shown.Selected(), QStringLiteral("_5"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _5, click, item _5, click"));
    }

    void CtrlAndShiftSelectSeveral() {
        Shown shown;
        shown.ClickRow(1);
        shown.ClickRow(3, Qt::ControlModifier);
        shown.ClickRow(5, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_2 _4 _6"));
        shown.ClickRow(3, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_2 _6"));
        QCOMPARE(shown.Current(), QStringLiteral("_4"));
        shown.ClickRow(5, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4 _5 _6"));
        shown.ClickRow(2, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_3 _4"));
        shown.ClickRow(7, Qt::ControlModifier);
        shown.ClickRow(8, Qt::ControlModifier | Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_3 _4 _8 _9"));
    }

    void SingleSelectionKnowsNoRanges() {
        Shown shown(false);
        shown.ClickRow(1);
        shown.ClickRow(3, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4"));
        shown.ClickRow(6, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_7"));
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_7"));
        shown.Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_8"));
    }

    void ClickBesideTheRowsUnselects() {
        Shown shown;
        shown.ClickRow(1);
        shown.TakeEvents();
        const QPoint beside(shown.List.header()->length() + 10, shown.PlaceOf(1).y());
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, beside);
        QCOMPARE(shown.Selected(), QString());
        QCOMPARE(shown.Current(), QStringLiteral("_2"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("click"));
    }

    void ArrowsMoveTheCurrentRow() {
        Shown shown;
        shown.Key(Qt::Key_Down);
        QCOMPARE(shown.Current(), QStringLiteral("_1"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _1"));
        shown.Key(Qt::Key_Down);
        QCOMPARE(shown.Selected(), QStringLiteral("_2"));
        shown.Key(Qt::Key_Up);
        shown.Key(Qt::Key_Up);
        QCOMPARE(shown.Selected(), QStringLiteral("_1"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _2, item _1"));
        shown.Key(Qt::Key_End);
        QCOMPARE(shown.Current(), QStringLiteral("_20"));
        QVERIFY(shown.List.viewport()->rect().contains(
            shown.List.RowRect(shown.List.Row(19)).center()));
        shown.Key(Qt::Key_Down);
        QCOMPARE(shown.Current(), QStringLiteral("_20"));
        shown.Key(Qt::Key_Home);
        QCOMPARE(shown.Current(), QStringLiteral("_1"));
        QCOMPARE(shown.List.FirstVisible(), shown.List.Row(0));
    }

    void PagesMoveByWhatIsSeen() {
        Shown shown;
        shown.Key(Qt::Key_Home);
        shown.Key(Qt::Key_PageDown);
        const int page = shown.List.PositionOf(shown.List.SelectedItem());
        QVERIFY(page > 3);
        QVERIFY(page * shown.List.RowRect(shown.List.Row(0)).height() <=
                shown.List.viewport()->height());
        shown.Key(Qt::Key_PageDown);
        QCOMPARE(shown.List.PositionOf(shown.List.SelectedItem()), std::min(19, 2 * page));
        shown.Key(Qt::Key_PageUp);
        shown.Key(Qt::Key_PageUp);
        shown.Key(Qt::Key_PageUp);
        QCOMPARE(shown.Current(), QStringLiteral("_1"));
    }

    void ShiftWithArrowsSelectsARange() {
        Shown shown;
        shown.ClickRow(3);
        shown.Key(Qt::Key_Down, Qt::ShiftModifier);
        shown.Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4 _5 _6"));
        shown.Key(Qt::Key_Up, Qt::ShiftModifier);
        shown.Key(Qt::Key_Up, Qt::ShiftModifier);
        shown.Key(Qt::Key_Up, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_3 _4"));
        shown.Key(Qt::Key_Down);
        QCOMPARE(shown.Selected(), QStringLiteral("_4"));
    }

    void CtrlWithArrowsMovesTheFrameAlone() {
        Shown shown;
        shown.ClickRow(3);
        shown.Key(Qt::Key_Down, Qt::ControlModifier);
        shown.Key(Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4"));
        QCOMPARE(shown.Current(), QStringLiteral("_6"));
        shown.Key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4 _6"));
        shown.Key(Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_4"));
        QCOMPARE(shown.Checked(), QString());
    }

    void CtrlASelectsAll() {
        Shown shown;
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(shown.List.SelectedRows().size(), std::size_t(20));
        QCOMPARE(shown.Current(), QString());
    }

    void BlankTurnsTheMarkOfTheCurrentRow() {
        Shown shown;
        shown.Key(Qt::Key_Space);  // there is no current row yet
        QCOMPARE(shown.Checked(), QString());
        shown.ClickRow(2);
        shown.TakeEvents();
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QStringLiteral("_3"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _3"));
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QString());
    }

    void BlankTurnsAllSelectedRowsIfTheCurrentOneIsAmongThem() {
        Shown shown;
        shown.ClickRow(1);
        shown.ClickRow(3, Qt::ShiftModifier);
        shown.List.Row(2)->SetChecked(true);
        shown.TakeEvents();
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QStringLiteral("_2 _3 _4"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _2, check _4"));
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QString());
        shown.Key(Qt::Key_Down, Qt::ControlModifier);  // the frame leaves the selected rows
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QStringLiteral("_5"));
    }

    void BlankDoesNothingWithoutCheckBoxes() {
        Shown shown(true, false);
        shown.ClickRow(2);
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QString());
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
    }

    void ClickOnABoxTurnsThatOneOnly() {
        Shown shown;
        shown.ClickRow(1);
        shown.ClickRow(3, Qt::ShiftModifier);
        shown.TakeEvents();
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QCOMPARE(shown.Checked(), QStringLiteral("_3"));
        QCOMPARE(shown.Selected(), QStringLiteral("_2 _3 _4"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _3"));
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QCOMPARE(shown.Checked(), QString());
    }

    void BoxesAreNotThereWithoutCheckBoxes() {
        Shown shown(true, false);
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QCOMPARE(shown.Checked(), QString());
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
    }

    void QuickClicksOnABoxTurnItEachTime() {
        Shown shown;
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QTest::mouseDClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QVERIFY(!shown.Events.contains(QStringLiteral("dbl")));
        QCOMPARE(shown.Events.count(QStringLiteral("check _3")) % 2,
                 shown.Checked().isEmpty() ? 0 : 1);
        QVERIFY(shown.Events.count(QStringLiteral("check _3")) > 1);
    }

    void DoubleClickComesAfterAClick() {
        Shown shown;
        shown.ClickRow(2);
        QTest::mouseDClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.PlaceOf(2));
        QVERIFY(shown.TakeEvents().startsWith(QStringLiteral("item _3, click, dbl")));
        QCOMPARE(shown.Current(), QStringLiteral("_3"));
    }

    void LettersDoNotMoveTheCurrentRow() {
        Shown shown;
        shown.ClickRow(2);
        QTest::sendKeyEvent(QTest::Click, &shown.List, Qt::Key_unknown, QStringLiteral("С"),
                            Qt::NoModifier);
        QTest::keyClicks(&shown.List, QStringLiteral("S1"));
        QCOMPARE(shown.Current(), QStringLiteral("_3"));
    }

    void KeysTheListDoesNotKnowGoToTheWindow() {
        class Window : public QWidget {
        public:
            QList<int> Keys;

        protected:
            void keyPressEvent(QKeyEvent *aEvent) override { Keys << aEvent->key(); }
        };
        Window window;
        auto *list = new ListView(&window);
        window.show();
        QTest::keyClick(list, Qt::Key_Return);
        QTest::keyClick(list, Qt::Key_Escape);
        QTest::keyClick(list, Qt::Key_Down);
        QTest::keyClick(list, Qt::Key_A);
        QCOMPARE(window.Keys, (QList<int>{Qt::Key_Return, Qt::Key_Escape, Qt::Key_A}));
    }

    void PointerIsToldInPixelsOfTheViewport() {
        Shown shown;
        QPoint last;
        connect(&shown.List, &ListView::MouseMove, &shown.List,
                [&](QPoint aPoint) { last = aPoint; });
        const QPoint place = shown.PlaceOf(3);
        QTest::mouseMove(shown.List.viewport(), place + QPoint(1, 1));
        QTest::mouseMove(shown.List.viewport(), place);
        QTRY_COMPARE(last, place);
        QCOMPARE(shown.List.HitTest(last), shown.List.Row(3));
    }

    void HeaderClickTellsTheColumnCountedFromOne() {
        Shown shown;
        QList<int> indexes;
        connect(&shown.List, &ListView::ColumnClick, &shown.List,
                [&](const ListColumn &aColumn) { indexes << aColumn.Index; });
        const QHeaderView *header = shown.List.header();
        for (int column : {0, 1}) {
            QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                              QPoint(header->sectionViewportPosition(column) + 15, 5));
        }
        QCOMPARE(indexes, (QList<int>{1, 2}));
        QVERIFY(!shown.List.IsSorted());
        QVERIFY(!header->isSortIndicatorShown());
    }

    void CtrlAInAListWithoutRowsSelectsNothing() {
        Shown shown;
        shown.List.ShowOnly({});
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QString());
        shown.List.ClearRows();
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_End, Qt::Key_PageUp, Qt::Key_Space})
            shown.Key(key, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QString());
        QCOMPARE(shown.TakeEvents(), QString());
    }

    void RightClickTellsOfTheRowItMakesCurrent() {
        Shown shown;
        shown.ClickRow(1);
        shown.TakeEvents();
        const auto rightClick = [&](int aRow) {
            QTest::mouseClick(shown.List.viewport(), Qt::RightButton, {}, shown.PlaceOf(aRow));
        };
        rightClick(3);
        QCOMPARE(shown.Current(), QStringLiteral("_4"));
        QCOMPARE(shown.Selected(), QStringLiteral("_4"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _4"));
        rightClick(3);
        QCOMPARE(shown.TakeEvents(), QString());
    }

    void CtrlWithADigitClicksTheHeader() {
        Shown shown;
        shown.List.AddColumn(QStringLiteral("Код"), 1500);
        QList<int> indexes;
        connect(&shown.List, &ListView::ColumnClick, &shown.List,
                [&](const ListColumn &aColumn) { indexes << aColumn.Index; });
        shown.Key(Qt::Key_2, Qt::ControlModifier);
        shown.Key(Qt::Key_3, Qt::ControlModifier | Qt::KeypadModifier);
        shown.Key(Qt::Key_4, Qt::ControlModifier);
        shown.Key(Qt::Key_1);
        QCOMPARE(indexes, (QList<int>{2, 3}));
        shown.List.SetColumnWidth(0, 0);  // columns count as they are seen
        shown.Key(Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(indexes, (QList<int>{2, 3, 2}));
        QCOMPARE(shown.TakeEvents(), QString());
    }

    void CtrlWithThePlusSignFitsTheColumns() {
        Shown shown;
        const QString text = QString(u'Ж').repeated(50);
        shown.List.Row(1)->SetCell(1, text);
        const int checkColumn = shown.List.header()->sectionSize(0);
        shown.Key(Qt::Key_Plus, Qt::ControlModifier | Qt::KeypadModifier);
        QVERIFY(shown.List.header()->sectionSize(1) >
                shown.List.fontMetrics().horizontalAdvance(text));
        QVERIFY(shown.List.header()->sectionSize(0) <= checkColumn);
    }

    void HeaderTellsTheKeyThatSorts() {
        ListView list;
        list.AddColumn(QStringLiteral("*"), 0);
        for (int i = 0; i < 10; ++i) list.AddColumn(QStringLiteral("Столбец"), 1500);
        const auto tip = [&](int aColumn) {
            return list.header()->model()->headerData(aColumn, Qt::Horizontal, Qt::ToolTipRole);
        };
        QCOMPARE(tip(1).toString(), QString());
        connect(&list, &ListView::ColumnClick, &list, [] {});
        QCOMPARE(tip(1).toString(), QStringLiteral("Сортировка: щелчок или Ctrl+1"));
        QCOMPARE(tip(9).toString(), QStringLiteral("Сортировка: щелчок или Ctrl+9"));
        QCOMPARE(tip(10).toString(), QStringLiteral("Сортировка: щелчок"));
    }

    void HeaderSaysItsSorting() {
        Shown shown;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&shown.List);
        const auto said = [&] { return face->child(1)->text(QAccessible::Description); };
        QCOMPARE(said(), QString());
        shown.List.SetSortKey(1);
        shown.List.SetSorted(true);
        QCOMPARE(said(), QStringLiteral("по возрастанию"));
        QCOMPARE(face->child(0)->text(QAccessible::Description), QString());
        shown.List.SetSortOrder(1);
        QCOMPARE(said(), QStringLiteral("по убыванию"));
    }

    void WhoHearsOfAClickMayTakeTheListAway() {
        for (const QString &action :
             {QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::toggleAction(),
              QAccessibleActionInterface::setFocusAction()}) {
            auto shown = std::make_unique<Shown>();
            connect(&shown->List, &ListView::ItemClick, qApp, [&] { shown.reset(); });
            connect(&shown->List, &ListView::ItemCheck, qApp, [&] { shown.reset(); });
            QAccessible::queryAccessibleInterface(&shown->List)
                ->tableInterface()
                ->cellAt(1, 0)
                ->actionInterface()
                ->doAction(action);
            QVERIFY(!shown);
        }
        auto shown = std::make_unique<Shown>();
        connect(&shown->List, &ListView::ColumnClick, qApp, [&] { shown.reset(); });
        shown->List.ClickHeader(1);
        QVERIFY(!shown);
    }

    void WhoHearsOfAMarkMayRefillTheList() {
        Shown shown;
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, {}, shown.PlaceOf(0));
        shown.ClickRow(5, Qt::ShiftModifier);
        shown.TakeEvents();
        connect(&shown.List, &ListView::ItemCheck, &shown.List, [&] {
            shown.List.ShowOnly({0, 3});
        });
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _1, check _4"));
        QCOMPARE(shown.Checked(), QStringLiteral("_1 _4"));
    }

    void AssistiveProgramsDoWhatTheMouseDoes() {
        Shown shown;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&shown.List);
        QAccessibleTableInterface *table = face->tableInterface();
        const auto act = [&](QAccessibleInterface *aPart, const QString &aAction) {
            QVERIFY(aPart->actionInterface()->actionNames().contains(aAction));
            aPart->actionInterface()->doAction(aAction);
        };
        act(table->cellAt(2, 1), QAccessibleActionInterface::pressAction());
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _3, click"));
        act(table->cellAt(4, 0), QAccessibleActionInterface::toggleAction());
        QCOMPARE(shown.Checked(), QStringLiteral("_5"));
        QCOMPARE(shown.Current(), QStringLiteral("_5"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _5"));
        QVERIFY(table->cellAt(4, 0)->state().checked);
        QVERIFY(!table->cellAt(3, 0)->state().checked);
        QVERIFY(!table->cellAt(4, 1)->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::toggleAction()));
        act(table->cellAt(19, 0), QAccessibleActionInterface::setFocusAction());
        QCOMPARE(shown.Current(), QStringLiteral("_20"));
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
        QVERIFY(shown.List.viewport()->rect().contains(
            shown.List.RowRect(shown.List.Row(19)).center()));
        QVERIFY(table->cellAt(19, 0)->state().focused);
        QCOMPARE(face->focusChild(), table->cellAt(19, 0));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _20"));

        QVERIFY(table->selectRow(0));
        QCOMPARE(shown.Selected(), QStringLiteral("_1 _3"));
        QVERIFY(table->selectRow(0));  // stays
        QCOMPARE(shown.Selected(), QStringLiteral("_1 _3"));
        QVERIFY(table->unselectRow(2));
        QVERIFY(!table->unselectRow(2));
        QVERIFY(!table->selectRow(20));
        QCOMPARE(shown.Selected(), QStringLiteral("_1"));

        QSignalSpy columns(&shown.List, &ListView::ColumnClick);
        act(face->child(1), QAccessibleActionInterface::pressAction());
        QCOMPARE(columns.size(), 1);
        QCOMPARE(columns.at(0).at(0).value<ListColumn>().Index, 2);

        shown.List.setEnabled(false);
        shown.TakeEvents();
        table->cellAt(5, 0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        face->child(1)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!table->selectRow(5));
        QCOMPARE(shown.Selected(), QStringLiteral("_1"));
        QCOMPARE(shown.TakeEvents(), QString());
        QCOMPARE(columns.size(), 1);
    }

    void AssistiveSelectionOfOneRowTakesTheOtherAway() {
        Shown shown(false, false);
        QAccessibleTableInterface *table =
            QAccessible::queryAccessibleInterface(&shown.List)->tableInterface();
        QVERIFY(table->selectRow(1));
        QVERIFY(table->selectRow(4));
        QCOMPARE(shown.Selected(), QStringLiteral("_5"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("item _2, click, item _5, click"));
        QVERIFY(!table->cellAt(4, 0)->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::toggleAction()));
    }

    void WheelScrollsRows() {
        Shown shown;
        const QPoint place = shown.PlaceOf(2);
        QWheelEvent wheel(place, shown.List.viewport()->mapToGlobal(place), QPoint(),
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(shown.List.viewport(), &wheel);
        QCOMPARE(shown.List.FirstVisible(), shown.List.Row(QApplication::wheelScrollLines()));
    }

    void FailingHandlerIsShownAndGoesNoFurther() {
        Shown shown;
        connect(&shown.List, &ListView::ColumnClick, &shown.List, [](const ListColumn &) {
            throw Failure(5, QStringLiteral("S"), QStringLiteral("D"));
        });
        ModalDriver driver;
        driver.ExpectBox(QStringLiteral("Сбой программы"),
                         QStringLiteral("[Vk_DocQuery::ListView.ClickHeader]\r\n[S]\r\nD"),
                         QStringLiteral("OK"));
        const QHeaderView *header = shown.List.header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                          QPoint(header->sectionViewportPosition(1) + 15, 5));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void CutTextIsShownWhole() {
        Shown shown;
        const QString text =
            QStringLiteral("ООО \"Ромашка\" & <b>Ко</b> ") + QString(u'Ж').repeated(80);
        shown.List.Row(1)->SetCell(1, text);
        shown.List.FirstVisible();
        const auto ask = [&](int aRow) {
            QHelpEvent event(QEvent::ToolTip, shown.PlaceOf(aRow),
                             shown.List.viewport()->mapToGlobal(shown.PlaceOf(aRow)));
            QCoreApplication::sendEvent(shown.List.viewport(), &event);
        };
        ask(1);
        QTRY_VERIFY(QToolTip::isVisible());
        // What is shown is the text itself, in lines, and none of it is taken for a tag.
        QVERIFY(Qt::mightBeRichText(QToolTip::text()));
        QCOMPARE(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText(), text);
        QVERIFY(QToolTip::text().contains(u' '));  // may be broken into lines
        const QString little = QStringLiteral("АО \"Два слова\" ") + QString(u'Ж').repeated(25);
        shown.List.SetColumnWidth(1, 1500);
        shown.List.Row(3)->SetCell(1, little);
        shown.List.FirstVisible();
        ask(3);
        QTRY_VERIFY(QToolTip::text().contains(u"слова"));
        QVERIFY(!QToolTip::text().contains(u' '));  // stands in one line
        QCOMPARE(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText(), little);
        shown.List.SetColumnWidth(1, 3000);
        ask(2);
        QTRY_VERIFY(!QToolTip::isVisible() || QToolTip::text().isEmpty());
    }
};

VK_TEST_CLASS(TestListViewInput);

#include "TestListViewInput.moc"
