#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <QVBoxLayout>

#include <Vk_DocQuery/Failure.h>

#include "controls/ListView.h"
#include "support/Keys.h"
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

using Move = std::function<void(QPoint)>;

/// Drags with the left button from a place; the function says where to.
void Drag(Shown &aShown, QPoint aFrom, Qt::KeyboardModifiers aModifiers,
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

    void ClickBesideTheRowsTakesTheOnlyChoiceAway_data() {
        QTest::addColumn<bool>("below");
        QTest::newRow("below the rows") << true;
        QTest::newRow("beside the columns") << false;
    }
    void ClickBesideTheRowsTakesTheOnlyChoiceAway() {
        QFETCH(bool, below);
        Shown shown(false);
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
        Shown shown(false);
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
        Shown shown(multi);
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
        Shown shown;
        shown.List.ShowOnly({0, 1, 2, 3});
        const QPoint below(shown.PlaceOf(3) + QPoint(0, 40));
        Drag(shown, below, Qt::NoModifier, [&](const Move &aMove) {
            aMove(below - QPoint(0, 5));
            QCOMPARE(shown.Selected(), QString());
            aMove(shown.PlaceOf(2));
        });
        QCOMPARE(shown.Selected(), QStringLiteral("_3 _4"));
    }

    void DraggingBelowTheEdgeScrolls() {
        Shown shown;
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
        Shown shown;
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
        Shown shown;
        shown.ClickRow(1);
        shown.List.ShowOnly({4, 5, 6, 7});
        shown.Key(Qt::Key_Down, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_5"));
        shown.Key(Qt::Key_End, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_5 _6 _7 _8"));
    }

    void RefillUnderADragEndsIt() {
        Shown shown;
        Drag(shown, shown.PlaceOf(0), Qt::NoModifier, [&](const Move &aMove) {
            shown.List.ShowOnly({4, 5, 6});
            aMove(shown.PlaceOf(2));
        });
        QCOMPARE(shown.Selected() + shown.Current(), QString());
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

    void ShiftWithoutACurrentRowSelectsFromTheFirst_data() {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("selected");
        QTest::newRow("End") << Qt::Key_End << "_1 _2 _3 _4 _5";
        QTest::newRow("Home") << Qt::Key_Home << "_1";
        QTest::newRow("Down") << Qt::Key_Down << "_1";
        QTest::newRow("PageDown") << Qt::Key_PageDown << "_1 _2 _3 _4 _5";
    }
    void ShiftWithoutACurrentRowSelectsFromTheFirst() {
        QFETCH(Qt::Key, key);
        QFETCH(QString, selected);
        Shown shown;
        shown.List.ShowOnly({0, 1, 2, 3, 4});
        shown.Key(key, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), selected);
    }

    void ShiftClickWithoutACurrentRowSelectsFromTheFirst() {
        Shown shown;
        shown.ClickRow(2, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), QStringLiteral("_1 _2 _3"));
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

    void BlankWithoutACurrentRowTurnsTheSelectedOnes() {
        Shown shown;
        shown.List.ShowOnly({0, 3, 5});
        shown.List.Row(1)->SetChecked(true);
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(shown.Current(), QString());
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QStringLiteral("_1 _4 _6"));
        QCOMPARE(shown.TakeEvents(), QStringLiteral("check _1, check _6"));
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QString());
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
        QTest::mouseRelease(shown.List.viewport(), Qt::LeftButton, Qt::NoModifier,
                            shown.PlaceOf(2));  // or the button stays down for the next test
        QVERIFY(shown.TakeEvents().startsWith(QStringLiteral("item _3, click, dbl")));
        QCOMPARE(shown.Current(), QStringLiteral("_3"));
    }

    void LettersJump_data() {
        QTest::addColumn<int>("sortKey");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("current");
        QTest::newRow("first column with text") << -1 << "п"
                                                << "_2";
        QTest::newRow("small or capital") << -1 << "П"
                                          << "_2";
        QTest::newRow("several letters") << -1 << "пе"
                                         << "_4";
        QTest::newRow("again goes on") << -1 << "пп"
                                       << "_4";
        QTest::newRow("round the end") << -1 << "ппп"
                                       << "_2";
        QTest::newRow("letters of a word") << -1 << "оо"
                                           << "_3";
        QTest::newRow("with a blank") << -1 << "ооо р"
                                      << "_5";
        QTest::newRow("yo is ye") << -1 << "ел"
                                  << "_1";
        QTest::newRow("no such row") << -1 << "ж"
                                     << "";
        QTest::newRow("sorted column") << 2 << "77"
                                       << "_3";
        QTest::newRow("letters of another column") << 2 << "п"
                                                   << "";
        QTest::newRow("sorted column without texts") << 3 << "п"
                                                     << "_2";
        QTest::newRow("sorted column that is hidden") << 4 << "п"
                                                      << "_2";
    }
    void LettersJump() {
        QFETCH(int, sortKey);
        QFETCH(QString, typed);
        QFETCH(QString, current);
        const auto interval = qScopeGuard([before = QApplication::keyboardInputInterval()] {
            QApplication::setKeyboardInputInterval(before);
        });
        QApplication::setKeyboardInputInterval(100000);
        ListView list;
        for (const int width : {300, 2000, 1500, 1500, 0})
            list.AddColumn(QStringLiteral("Столбец"), width);
        const char *const names[] = {"Ёлка", "Победа", "ООО Восток", "Перевал", "ООО Ромашка"};
        for (int i = 0; i < 5; ++i) {
            ListRow *row = list.AddRow(QStringLiteral("_%1").arg(i + 1));
            row->SetCell(1, QString::fromUtf8(names[i]));
            row->SetCell(2, QStringLiteral("77%1").arg(9 - i % 3));
            row->SetCell(4, QStringLiteral("скрыто"));
        }
        list.SetMultiSelect(true);
        list.SetSortKey(static_cast<qint16>(sortKey));
        list.SetSorted(sortKey >= 0);
        if (sortKey == 2) list.SetSortOrder(0);
        list.show();
        TypeText(&list, typed);
        QCOMPARE(list.SelectedItem() ? list.SelectedItem()->Key() : QString(), current);
        QCOMPARE(list.SelectedRows().size(), std::size_t(current.isEmpty() ? 0 : 1));
    }

    void LettersTypedLaterBeginAnew() {
        const auto interval = qScopeGuard([before = QApplication::keyboardInputInterval()] {
            QApplication::setKeyboardInputInterval(before);
        });
        QApplication::setKeyboardInputInterval(0);
        Shown shown;
        shown.List.Row(6)->SetCell(1, QStringLiteral("Тень"));
        shown.List.Row(8)->SetCell(1, QStringLiteral("Стена"));
        TypeText(&shown.List, QStringLiteral("ст"));
        QCOMPARE(shown.Current(), QStringLiteral("_7"));
        shown.Key(Qt::Key_Space);  // no part of a word
        QCOMPARE(shown.Checked(), QStringLiteral("_7"));
    }

    void KeysWithCtrlOrAltAreNoLetters() {
        Shown shown;
        for (const Qt::KeyboardModifier held : {Qt::ControlModifier, Qt::AltModifier})
            QTest::sendKeyEvent(QTest::Click, &shown.List, Qt::Key(0x421), QStringLiteral("С"),
                                held);
        QCOMPARE(shown.Current(), QString());
    }

    void CtrlCCopiesTheSelectedRows_data() {
        QTest::addColumn<QList<int>>("rows");
        QTest::addColumn<QString>("copied");
        QTest::newRow("one") << QList<int>{0} << "Ива\tмарт\t";
        QTest::newRow("in shown order") << QList<int>{2, 0} << "Ива\tмарт\t\nДуб два\t2026\tда";
        QTest::newRow("none") << QList<int>{} << "before";
    }
    void CtrlCCopiesTheSelectedRows() {
        QFETCH(QList<int>, rows);
        QFETCH(QString, copied);
        QGuiApplication::clipboard()->setText(QStringLiteral("before"));
        ListView list;
        list.AddColumn(QStringLiteral("*"), 300);
        list.AddColumn(QStringLiteral("Название"), 2000);
        list.AddColumn(QStringLiteral("март"), 500);
        list.AddColumn(QStringLiteral("скрыт"), 0);
        list.AddColumn(QStringLiteral("Да"), 500);
        list.SetMultiSelect(true);
        for (int i = 0; i < 3; ++i)
            list.AddRow(QStringLiteral("_%1").arg(i))->SetIcon(QStringLiteral("period"));
        list.Row(0)->SetCell(1, QStringLiteral("Ива"));
        list.Row(0)->SetCellIcon(2, QStringLiteral("period"));
        list.Row(1)->SetCell(1, QStringLiteral("Ель"));
        list.Row(2)->SetCell(1, QStringLiteral("Дуб\t\r\nдва"));
        list.Row(2)->SetCell(2, QStringLiteral("2026"), QStringLiteral("period"));
        list.Row(2)->SetCell(3, QStringLiteral("unseen"));
        list.Row(2)->SetCell(4, QStringLiteral("да"));
        list.SetSortKey(1);
        list.SetSortOrder(1);
        list.SetSorted(true);
        for (const int row : rows) list.RowByKey(QStringLiteral("_%1").arg(row))->SetSelected(true);
        list.show();
        QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(), copied);
    }

    /// A main text is copied, too.
    void CopiedRowsKeepTheirMainText() {
        ListView list;
        list.AddColumn(QStringLiteral("Имя"), 900);
        list.AddColumn(QStringLiteral("Код"), 900);
        for (const char *name : {"а", ""}) {
            ListRow *row = list.AddRow(QString());
            row->SetText(QString::fromUtf8(name));
            row->SetCell(1, QStringLiteral("1"));
        }
        list.SetMultiSelect(true);
        list.Row(0)->SetSelected(true);
        list.Row(1)->SetSelected(true);
        QCOMPARE(list.SelectedText(), QStringLiteral("а\t1\n\t1"));
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
        shown.List.SetColumnWidth(1, 900);
        shown.Key(Qt::Key_Plus, Qt::ControlModifier | Qt::ShiftModifier);  // main keyboard
        QVERIFY(shown.List.header()->sectionSize(1) >
                shown.List.fontMetrics().horizontalAdvance(text));
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
