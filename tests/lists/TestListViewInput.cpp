#include <numeric>

#include <QAccessible>
#include <QApplication>
#include <QHeaderView>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>

#include <Vk_DocQuery/Failure.h>

#include "lists/ListView.h"
#include "ShownList.h"
#include "support/CellImage.h"
#include "support/Keys.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

using Move = std::function<void(QPoint)>;
using Act = std::function<void(ShownList &)>;

/// Drags with the left button from a place; the function says where to.
void Drag(ShownList &aShown, QPoint aFrom, Qt::KeyboardModifiers aModifiers,
          const std::function<void(const Move &)> &aWay) {
    QWidget *rows = aShown.List.viewport();
    QPoint last = aFrom;
    QTest::mousePress(rows, Qt::LeftButton, aModifiers, aFrom);
    aWay([&](QPoint aPlace) {
        last = aPlace;
        QMouseEvent move(QEvent::MouseMove, aPlace, rows->mapToGlobal(aPlace), Qt::NoButton,
                         Qt::LeftButton, aModifiers);
        QApplication::sendEvent(rows, &move);
    });
    QTest::mouseRelease(rows, Qt::LeftButton, aModifiers, last);
}

}  // namespace

Q_DECLARE_METATYPE(Act)

class TestListViewInput : public QObject {
    Q_OBJECT

private slots:
    void ClickSelectsOneRow() {
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown(false);
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
        ShownList shown;
        shown.ClickRow(1);
        shown.TakeEvents();
        const QPoint beside(shown.List.header()->length() + 10, shown.PlaceOf(1).y());
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, beside);
        QCOMPARE(shown.Selected(), QString());
        QCOMPARE(shown.Current(), QStringLiteral("_2"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("click"));
    }

    void ClickBesideTheRowsTakesTheOnlyChoiceAway_data() {
        QTest::addColumn<bool>("below");
        QTest::newRow("below the rows") << true;
        QTest::newRow("beside the columns") << false;
    }

    void ClickBesideTheRowsTakesTheOnlyChoiceAway() {
        QFETCH(bool, below);
        ShownList shown(false);
        shown.List.ShowOnly({0, 1, 2});
        const auto click = [&](Qt::MouseButton aButton, Qt::KeyboardModifiers aModifiers) {
            const QPoint place(below ? 10 : shown.List.header()->length() + 10,
                               shown.PlaceOf(below ? 2 : 1).y() + (below ? 40 : 0));
            QTest::mouseClick(shown.List.viewport(), aButton, aModifiers, place);
        };
        shown.ClickRow(1);
        shown.TakeEvents();
        click(Qt::RightButton, Qt::NoModifier);
        QCOMPARE(shown.Selected() + shown.Current(), QStringLiteral("_2_2"));
        click(Qt::LeftButton, Qt::ControlModifier);
        QCOMPARE(shown.Selected() + shown.Current(), QStringLiteral("_2_2"));
        shown.TakeEvents();
        click(Qt::LeftButton, Qt::NoModifier);
        QCOMPARE(shown.Selected() + shown.Current(), QString());
        QCOMPARE(shown.TakeEvents(), QStringLiteral("click"));
    }

    /// A press that is taken back outside tells nobody, so that it must change nothing.
    void PressBesideThatEndsOutsideLeavesTheChoice() {
        ShownList shown(false);
        shown.List.ShowOnly({0, 1, 2});
        shown.ClickRow(1);
        shown.TakeEvents();
        const QPoint below(10, shown.PlaceOf(2).y() + 40);
        QTest::mousePress(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, below);
        QTest::mouseRelease(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier,
                            QPoint(-50, below.y()));
        QCOMPARE(shown.Selected() + shown.Current(), QStringLiteral("_2_2"));
        QCOMPARE(shown.TakeEvents(), QString());
    }

    void DraggingSelectsRows_data() {
        QTest::addColumn<bool>("multi");
        QTest::addColumn<int>("from");
        QTest::addColumn<QList<int>>("over");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("selected");
        QTest::addColumn<QString>("current");
        const int ctrl = int(Qt::ControlModifier);
        const int shift = int(Qt::ShiftModifier);
        QTest::newRow("down") << true << 1 << QList<int>{2, 4} << 0 << "_2 _3 _4 _5"
                              << "_5";
        QTest::newRow("up") << true << 4 << QList<int>{2} << 0 << "_3 _4 _5"
                            << "_3";
        QTest::newRow("back") << true << 1 << QList<int>{5, 2} << 0 << "_2 _3"
                              << "_3";
        QTest::newRow("to where it began") << true << 1 << QList<int>{5, 1} << 0 << "_2"
                                           << "_2";
        QTest::newRow("Ctrl keeps the others")
            << true << 3 << QList<int>{5, 4} << ctrl << "_1 _4 _5"
            << "_5";
        QTest::newRow("Shift goes on") << true << 3 << QList<int>{5} << shift << "_1 _2 _3 _4 _5 _6"
                                       << "_6";
        QTest::newRow("one row only") << false << 1 << QList<int>{2, 4} << 0 << "_2"
                                      << "_2";
    }

    void DraggingSelectsRows() {
        QFETCH(bool, multi);
        QFETCH(int, from);
        QFETCH(QList<int>, over);
        QFETCH(int, modifiers);
        QFETCH(QString, selected);
        QFETCH(QString, current);
        ShownList shown(multi);
        shown.ClickRow(0);
        Drag(shown, shown.PlaceOf(from), Qt::KeyboardModifiers(modifiers), [&](const Move &aMove) {
            for (const int row : over) aMove(shown.PlaceOf(row));
        });
        QCOMPARE(shown.Selected(), selected);
        QCOMPARE(shown.Current(), current);
        QTest::mouseMove(shown.List.viewport(), shown.PlaceOf(7));
        QCOMPARE(shown.Selected(), selected);  // the button is up
    }

    void DraggingFromBelowTheRows() {
        ShownList shown;
        shown.List.ShowOnly({0, 1, 2, 3});
        const QPoint below(shown.PlaceOf(3) + QPoint(0, 40));
        Drag(shown, below, Qt::NoModifier, [&](const Move &aMove) {
            aMove(below - QPoint(0, 5));
            QCOMPARE(shown.Selected(), QString());
            aMove(shown.PlaceOf(2));
        });
        QCOMPARE(shown.Selected(), QStringLiteral("_3 _4"));
        shown.ClickRow(0, Qt::ShiftModifier);  // goes on from where the drag began
        QCOMPARE(shown.Selected(), QStringLiteral("_1 _2 _3 _4"));
    }

    void DraggingBelowTheEdgeScrolls() {
        ShownList shown;
        const QPoint below(20, shown.List.viewport()->height() + 30);
        Drag(shown, shown.PlaceOf(0), Qt::NoModifier, [&](const Move &aMove) {
            aMove(below);
            QTRY_COMPARE(shown.List.SelectedRows().size(), std::size_t(20));
            aMove(QPoint(20, -30));
            QTRY_COMPARE(shown.List.verticalScrollBar()->value(), 0);
        });
        QCOMPARE(shown.Selected(), QStringLiteral("_1"));
    }

    /// A filter that leaves the first row of the drag, and one that leaves no row.
    void FilterUnderADragKeepsWhatIsLeft() {
        ShownList shown;
        Drag(shown, shown.PlaceOf(1), Qt::NoModifier, [&](const Move &aMove) {
            aMove(shown.PlaceOf(5));
            shown.List.ShowOnly({1, 6, 9});
            aMove(shown.PlaceOf(1));
            QCOMPARE(shown.Selected(), QStringLiteral("_2 _7"));
            const QPoint place = shown.PlaceOf(2);
            shown.List.ShowOnly({});
            aMove(place);
        });
        QCOMPARE(shown.Selected() + shown.Current(), QString());
    }

    void RangeBeginsAnewWhereItsFirstRowIsGone() {
        ShownList shown;
        shown.ClickRow(1);
        shown.List.ShowOnly({4, 5, 6, 7});
        shown.Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_5"));
        shown.Key(Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_5 _6 _7 _8"));
    }

    void RefillUnderADragEndsIt() {
        ShownList shown;
        Drag(shown, shown.PlaceOf(0), Qt::NoModifier, [&](const Move &aMove) {
            shown.List.ShowOnly({4, 5, 6});
            aMove(shown.PlaceOf(2));
        });
        QCOMPARE(shown.Selected() + shown.Current(), QString());
    }

    void ShiftClickWithoutACurrentRowSelectsFromTheFirst() {
        ShownList shown;
        shown.ClickRow(2, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_1 _2 _3"));
    }

    void ClickOnABoxTurnsThatOneOnly() {
        ShownList shown;
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
        ShownList shown(true, false);
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QCOMPARE(shown.Checked(), QString());
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
    }

    void QuickClicksOnABoxTurnItEachTime() {
        ShownList shown;
        QTest::mouseClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QTest::mouseDClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.BoxOf(2));
        QVERIFY(!shown.Events.contains(QStringLiteral("dbl")));
        QCOMPARE(shown.Events.count(QStringLiteral("check _3")) % 2,
                 shown.Checked().isEmpty() ? 0 : 1);
        QVERIFY(shown.Events.count(QStringLiteral("check _3")) > 1);
    }

    void DoubleClickComesAfterAClick() {
        ShownList shown;
        shown.ClickRow(2);
        QTest::mouseDClick(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier, shown.PlaceOf(2));
        QTest::mouseRelease(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier,
                            shown.PlaceOf(2));  // or the button stays down for the next test
        QVERIFY(shown.TakeEvents().startsWith(QStringLiteral("item _3, click, dbl")));
        QCOMPARE(shown.Current(), QStringLiteral("_3"));
    }

    void PointerIsToldInPixelsOfTheViewport() {
        ShownList shown;
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
        ShownList shown;
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

    void RightClickTellsOfTheRowItMakesCurrent() {
        ShownList shown;
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

    void CutHeaderIsShownWhole() {
        ListView list;
        list.AddColumn(QStringLiteral("*"), 300);
        list.AddColumn(QStringLiteral("Полное (официальное) наименование"), 900);
        const auto tip = [&](int aColumn) {
            return list.header()
                ->model()
                ->headerData(aColumn, Qt::Horizontal, Qt::ToolTipRole)
                .toString();
        };
        QCOMPARE(tip(0), QString());
        QCOMPARE(tip(1), QStringLiteral("Полное (официальное) наименование"));
        connect(&list, &ListView::ColumnClick, &list, [] {});
        QCOMPARE(tip(1), QStringLiteral("Полное (официальное) наименование\n"
                                        "Сортировка: щелчок или Ctrl+2"));
        const int whole = list.header()->sectionSizeHint(1);
        list.header()->resizeSection(1, whole);
        QCOMPARE(tip(1), QStringLiteral("Сортировка: щелчок или Ctrl+2"));
        list.SetSortKey(1);
        list.SetSorted(true);  // the arrow takes a part of the room
        list.show();
        QVERIFY(QTest::qWaitForWindowExposed(&list));
        QVERIFY(list.header()->isSortIndicatorShown());
        list.header()->resizeSection(1, list.header()->fontMetrics().horizontalAdvance(
                                            QStringLiteral("Полное (официальное) наименование")) +
                                            8);
        QVERIFY(tip(1).startsWith(QStringLiteral("Полное")));
    }

    void HeaderSaysItsSorting() {
        ShownList shown;
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
            auto shown = std::make_unique<ShownList>();
            connect(&shown->List, &ListView::ItemClick, qApp, [&] { shown.reset(); });
            connect(&shown->List, &ListView::ItemCheck, qApp, [&] { shown.reset(); });
            QAccessible::queryAccessibleInterface(&shown->List)
                ->tableInterface()
                ->cellAt(1, 0)
                ->actionInterface()
                ->doAction(action);
            QVERIFY(!shown);
        }
        auto shown = std::make_unique<ShownList>();
        connect(&shown->List, &ListView::ColumnClick, qApp, [&] { shown.reset(); });
        shown->List.ClickHeader(1);
        QVERIFY(!shown);
    }

    void WhoHearsOfAMarkMayRefillTheList() {
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown(false, false);
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
        ShownList shown;
        const QPoint place = shown.PlaceOf(2);
        QWheelEvent wheel(place, shown.List.viewport()->mapToGlobal(place), QPoint(),
                          QPoint(0, -120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(shown.List.viewport(), &wheel);
        QCOMPARE(shown.List.FirstVisible(), shown.List.Row(QApplication::wheelScrollLines()));
    }

    void FailingHandlerIsShownAndGoesNoFurther_data() {
        QTest::addColumn<Act>("act");
        const auto row = [](const char *aProcedure, const Act &aAct) {
            QTest::newRow(aProcedure) << aAct;
        };
        const auto mouse = [](QEvent::Type aType) {
            return [aType](ShownList &aShown) {
                QWidget *rows = aShown.List.viewport();
                const bool moves = aType == QEvent::MouseMove;
                QMouseEvent event(aType, aShown.PlaceOf(1), rows->mapToGlobal(aShown.PlaceOf(1)),
                                  moves ? Qt::NoButton : Qt::LeftButton,
                                  moves ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
                QApplication::sendEvent(rows, &event);
            };
        };
        const auto cell = [](int aColumn, const QString &aAction) {
            return [=](ShownList &aShown) {
                QAccessible::queryAccessibleInterface(&aShown.List)
                    ->tableInterface()
                    ->cellAt(1, aColumn)
                    ->actionInterface()
                    ->doAction(aAction);
            };
        };
        row("ClickHeader", [](ShownList &aShown) {
            const QHeaderView *header = aShown.List.header();
            QTest::mouseClick(header->viewport(), Qt::LeftButton, Qt::NoModifier,
                              QPoint(header->sectionViewportPosition(1) + 15, 5));
        });
        row("keyPressEvent", [](ShownList &aShown) { aShown.Key(Qt::Key_Down); });
        row("mousePressEvent", mouse(QEvent::MouseButtonPress));
        row("mouseMoveEvent", mouse(QEvent::MouseMove));
        row("mouseDoubleClickEvent", mouse(QEvent::MouseButtonDblClick));
        row("mouseReleaseEvent", [](ShownList &aShown) {
            aShown.List.ClearRows();  // a press beside the rows tells nobody
            QTest::mouseClick(aShown.List.viewport(), Qt::LeftButton, {}, QPoint(50, 50));
        });
        row("ClickRow", cell(1, QAccessibleActionInterface::pressAction()));
        row("ToggleRow", cell(0, QAccessibleActionInterface::toggleAction()));
        row("FocusRow", cell(1, QAccessibleActionInterface::setFocusAction()));
        row("AddToSelection", [](ShownList &aShown) {
            QAccessible::queryAccessibleInterface(&aShown.List)->tableInterface()->selectRow(1);
        });
    }
    void FailingHandlerIsShownAndGoesNoFurther() {
        QFETCH(Act, act);
        ShownList shown;
        const auto fail = [] { throw Failure(5, QStringLiteral("S"), QStringLiteral("D")); };
        connect(&shown.List, &ListView::ColumnClick, &shown.List, fail);
        connect(&shown.List, &ListView::ItemClick, &shown.List, fail);
        connect(&shown.List, &ListView::ItemCheck, &shown.List, fail);
        connect(&shown.List, &ListView::Click, &shown.List, fail);
        connect(&shown.List, &ListView::DblClick, &shown.List, fail);
        connect(&shown.List, &ListView::MouseMove, &shown.List, fail);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Critical, QStringLiteral("Сбой программы"),
                         QStringLiteral("[Vk_DocQuery::ListView.%1]\r\n[S]\r\nD")
                             .arg(QLatin1String(QTest::currentDataTag())),
                         QStringLiteral("OK"));
        act(shown);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void RowsShowTheirTextsAndWhichIsTheCurrentOne() {
        ShownList shown(true, false);
        shown.List.Row(3)->SetCell(1, shown.List.Row(1)->CellText(1));
        shown.List.Row(2)->SetText(QStringLiteral("х"));
        shown.List.FirstVisible();
        const auto image = [&](int aRow, int aColumn) {
            return CellImage(shown.List, aRow, aColumn);
        };
        for (const int column : {0, 1}) {
            QCOMPARE(image(1, column), image(3, column));
            QVERIFY(image(1, column) != image(2, column));
        }
        shown.ClickRow(1);
        shown.ClickRow(3, Qt::ControlModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_2 _4"));
        QVERIFY(image(1, 1) != image(3, 1));  // the frame of the focus
    }

    void ChangedListSettlesByItself() {
        ShownList shown;
        std::vector<int> all(20);
        std::iota(all.begin(), all.end(), 0);
        QScrollBar &bar = *shown.List.verticalScrollBar();
        QTRY_VERIFY(bar.maximum() > 0);
        bar.setValue(5);
        shown.List.ShowOnly(all);
        QTRY_COMPARE(bar.value(), 0);  // a filter begins at the top
        shown.List.ClearRows();
        QTRY_COMPARE(bar.maximum(), 0);
    }

    void CutTextIsShownWhole() {
        ShownList shown;
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
