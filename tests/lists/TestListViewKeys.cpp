#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QTest>

#include "lists/ListView.h"
#include "ShownList.h"
#include "support/Keys.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

class TestListViewKeys : public QObject {
    Q_OBJECT

private slots:
    void ArrowsMoveTheCurrentRow() {
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown;
        shown.List.ShowOnly({0, 1, 2, 3, 4});
        shown.Key(key, Qt::ShiftModifier);
        QCOMPARE(shown.Selected(), selected);
    }

    void CtrlASelectsAll() {
        ShownList shown;
        shown.Key(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(shown.List.SelectedRows().size(), std::size_t(20));
        QCOMPARE(shown.Current(), QString());
    }

    void BlankTurnsTheMarkOfTheCurrentRow() {
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown;
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
        ShownList shown(true, false);
        shown.ClickRow(2);
        shown.Key(Qt::Key_Space);
        QCOMPARE(shown.Checked(), QString());
        QCOMPARE(shown.Selected(), QStringLiteral("_3"));
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
                                         << "_3";
        QTest::newRow("again goes on") << -1 << "пп"
                                       << "_3";
        QTest::newRow("round the end") << -1 << "ппп"
                                       << "_2";
        QTest::newRow("letters of a word") << -1 << "оо"
                                           << "_4";
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
        const char *const names[] = {"Ёлка", "Победа", "Перевал", "ООО Восток", "ООО Ромашка"};
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
        ShownList shown;
        shown.List.Row(6)->SetCell(1, QStringLiteral("Тень"));
        shown.List.Row(8)->SetCell(1, QStringLiteral("Стена"));
        TypeText(&shown.List, QStringLiteral("ст"));
        QCOMPARE(shown.Current(), QStringLiteral("_7"));
        shown.Key(Qt::Key_Space);  // no part of a word
        QCOMPARE(shown.Checked(), QStringLiteral("_7"));
    }

    void KeysWithCtrlOrAltAreNoLetters() {
        ShownList shown;
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

    void CtrlAInAListWithoutRowsSelectsNothing() {
        ShownList shown;
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

    void CtrlWithADigitClicksTheHeader() {
        ShownList shown;
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
        while (shown.List.ColumnCount() < 12) shown.List.AddColumn(QString(), 150);
        shown.Key(Qt::Key_Colon, Qt::ControlModifier);  // stands behind the 9
        QCOMPARE(indexes.size(), 3);
    }

    void CtrlWithThePlusSignFitsTheColumns() {
        ShownList shown;
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
};

VK_TEST_CLASS(TestListViewKeys);

#include "TestListViewKeys.moc"
