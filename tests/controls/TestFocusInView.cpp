#include <QApplication>
#include <QFocusEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "controls/FocusInView.h"
#include "controls/ScrollBox.h"
#include "controls/Sheet.h"
#include "lists/ListView.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// A page of 600 x 1800 pixels in a window of about a quarter of that: a button at the top, a list
/// that is higher than the window in the middle, a pane with a box in its lower part at the bottom.
struct Page {
    Page() {
        Window.SetLeast({600, 1800});
        Button = new QPushButton(Window.Content());
        Button->setGeometry(10, 10, 100, 30);
        List = new ListView(Window.Content());
        List->AddColumn(QStringLiteral("*"), 6000);
        for (int i = 0; i < 20; ++i) List->AddRow(QStringLiteral("_%1").arg(i));
        List->setGeometry(10, 200, 560, 700);
        auto *pane = new ScrollBox(Window.Content());
        pane->setGeometry(10, 1500, 200, 80);
        Pane = pane;
        Box = new QLineEdit(pane->Content());
        Box->setGeometry(10, 200, 100, 21);
        pane->FitContent();
        new FocusInView(Window);
        Window.resize(320, 300);
        Window.show();
        if (!QTest::qWaitForWindowActive(&Window)) qFatal("no window");
        Button->setFocus();
        Window.verticalScrollBar()->setValue(0);
    }
    bool Shows(const QWidget &aElement) const {
        return aElement.visibleRegion() == QRegion(aElement.rect());
    }
    /// The place of a row in the window.
    bool ShowsRow(int aRow) const {
        const QRect row = List->RowRect(List->Row(aRow));
        const QRegion seen = List->viewport()->visibleRegion();
        return seen.contains(QPoint(seen.boundingRect().left(), row.top())) &&
               seen.contains(QPoint(seen.boundingRect().left(), row.bottom()));
    }
    void Away() const { Window.verticalScrollBar()->setValue(0); }
    int Down() const { return Window.verticalScrollBar()->value(); }

    Sheet Window;
    QPushButton *Button;
    ListView *List;
    ScrollBox *Pane;
    QLineEdit *Box;
};

}  // namespace

/// What has the focus is brought into view, and nothing runs away from the pointer.
class TestFocusInView : public QObject {
    Q_OBJECT

private slots:
    void WhyTheFocusComes_data() {
        QTest::addColumn<Qt::FocusReason>("reason");
        QTest::addColumn<bool>("brings");
        const auto row = [](const char *aName, Qt::FocusReason aReason, bool aBrings) {
            QTest::newRow(aName) << aReason << aBrings;
        };
        row("tab", Qt::TabFocusReason, true);
        row("back", Qt::BacktabFocusReason, true);
        row("shortcut", Qt::ShortcutFocusReason, true);
        row("program", Qt::OtherFocusReason, true);
        row("mouse", Qt::MouseFocusReason, false);
        row("window", Qt::ActiveWindowFocusReason, false);
        row("what dropped down", Qt::PopupFocusReason, false);
        row("menu", Qt::MenuBarFocusReason, false);
    }
    void WhyTheFocusComes() {
        QFETCH(Qt::FocusReason, reason);
        QFETCH(bool, brings);
        const Page page;
        page.Box->setFocus(reason);
        QVERIFY(page.Box->hasFocus());
        QCOMPARE(page.Down() > 0, brings);
        QCOMPARE(page.Shows(*page.Box), brings);
        QCOMPARE(page.Pane->verticalScrollBar()->value() > 0, brings);  // from the inside outwards
    }

    /// Keys that a box leaves alone may be for the area around it.
    void KeysInABox_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<bool>("brings");
        QTest::newRow("letter") << QStringLiteral("ж") << true;
        QTest::newRow("page down") << QString() << false;
    }
    void KeysInABox() {
        QFETCH(QString, typed);
        QFETCH(bool, brings);
        const Page page;
        page.Box->setFocus();
        page.Away();
        QTest::sendKeyEvent(QTest::Click, page.Box,
                            typed.isEmpty() ? Qt::Key_PageDown : Qt::Key_unknown, typed,
                            Qt::NoModifier);
        QCoreApplication::processEvents();
        QCOMPARE(page.Shows(*page.Box), brings);
        QCOMPARE(page.Down() > 0, brings);
    }

    /// What is sent to an element without the focus comes from a program.
    void KeysWithoutTheFocus() {
        const Page page;
        QTest::sendKeyEvent(QTest::Click, page.Box, Qt::Key_unknown, QStringLiteral("ж"),
                            Qt::NoModifier);
        QCoreApplication::processEvents();
        QCOMPARE(page.Box->text(), QStringLiteral("ж"));
        QCOMPARE(page.Down(), 0);
    }

    /// Of a list that is higher than the window the upper part, or the row that is current.
    void ListThatIsTooHigh_data() {
        QTest::addColumn<int>("row");
        QTest::newRow("none") << -1;
        QTest::newRow("first") << 0;
        QTest::newRow("last") << 19;
    }
    void ListThatIsTooHigh() {
        QFETCH(int, row);
        const Page page;
        if (row >= 0) page.List->SetSelectedItem(page.List->Row(row));
        page.List->setFocus(Qt::TabFocusReason);
        if (row >= 0)
            QVERIFY(page.ShowsRow(row));
        else
            QVERIFY(page.List->visibleRegion().contains(QPoint(0, 0)));
    }

    /// After a key it is the row that the key has reached, and the page stays where it is across.
    /// The row is looked for in height alone: across, the list stays where it was brought.
    void KeysInAListFurtherRight() {
        const Page page;
        page.List->setGeometry(300, 200, 250, 700);
        page.List->setFocus(Qt::TabFocusReason);
        QTest::keyClick(page.List, Qt::Key_End);
        QTRY_VERIFY(page.ShowsRow(19));
        QVERIFY(page.Window.horizontalScrollBar()->value() > 100);
    }

    void KeysInAListThatIsTooHigh() {
        const Page page;
        page.List->SetSelectedItem(page.List->Row(0));
        page.List->setFocus(Qt::TabFocusReason);
        page.Away();
        QTest::keyClick(page.List, Qt::Key_End);
        page.Window.horizontalScrollBar()->setValue(40);
        QTRY_VERIFY(page.ShowsRow(19));
        const int across = page.Window.horizontalScrollBar()->value();
        QTest::keyClick(page.List, Qt::Key_Home);
        QTRY_VERIFY(page.ShowsRow(0));
        QCOMPARE(page.Window.horizontalScrollBar()->value(), across);
    }
};

VK_TEST_CLASS(TestFocusInView);
#include "TestFocusInView.moc"
