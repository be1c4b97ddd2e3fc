#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPointingDevice>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QWheelEvent>

#include "controls/CheckBox.h"
#include "controls/ComboBox.h"
#include "controls/DateBox.h"
#include "controls/FocusInView.h"
#include "controls/NumberBox.h"
#include "controls/ScrollBox.h"
#include "controls/Sheet.h"
#include "controls/TabControl.h"
#include "lists/ListView.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

QPointingDevice &Finger() {
    static QPointingDevice *finger = QTest::createTouchDevice();
    return *finger;
}

/// A finger that goes down on the element, is drawn along, and goes up.
void Draw(QWidget &aElement, QPoint aFrom, QPoint aTo) {
    constexpr int theSteps = 10;
    QTest::touchEvent(&aElement, &Finger()).press(0, aFrom, &aElement);
    for (int i = 1; i <= theSteps; ++i)
        QTest::touchEvent(&aElement, &Finger())
            .move(0, aFrom + (aTo - aFrom) * i / theSteps, &aElement);
    QTest::touchEvent(&aElement, &Finger()).release(0, aTo, &aElement);
}

void Tap(QWidget &aElement, QPoint aPoint) {
    QTest::touchEvent(&aElement, &Finger()).press(0, aPoint, &aElement);
    QTest::touchEvent(&aElement, &Finger()).release(0, aPoint, &aElement);
}
void Tap(QWidget &aElement) {
    Tap(aElement, aElement.rect().center());
}

/// The wheel is turned over the element, at a time in ms.
void Turn(QWidget &aElement, int aTurn, quint64 aTime) {
    const QPoint place = aElement.rect().center();
    QWheelEvent wheel(place, aElement.mapToGlobal(place), QPoint(), QPoint(0, aTurn), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    wheel.setTimestamp(aTime);
    QSpontaneKeyEvent::setSpontaneous(&wheel);  // else it would stay with the element
    QApplication::instance()->notify(&aElement, &wheel);
}

/// A list on the screen.
struct ShownList {
    explicit ShownList(int aRows) {
        List.AddColumn(QStringLiteral("*"), 600);
        List.AddColumn(QStringLiteral("Название"), 3000);
        List.SetCheckBoxes(true);
        List.SetMultiSelect(true);
        for (int i = 0; i < aRows; ++i)
            List.AddRow(QStringLiteral("_%1").arg(i))->SetCellText(1, QString::number(i));
        List.resize(400, 250);
        List.show();
        if (!QTest::qWaitForWindowActive(&List)) qFatal("no window");
        List.viewport()->repaint();
    }
    QPoint On(int aRow) const { return {150, List.RowRect(List.Row(aRow)).center().y()}; }
    ListView List;
};

/// A page that is larger than its window, with an element of each kind.
struct Page {
    Page() {
        QWidget *content = Window.Content();
        Window.SetLeast({300, 900});
        Box = new CheckBox(QStringLiteral("Отметка"), content);
        Box->setGeometry(10, 10, 150, 20);
        Button = new QPushButton(QStringLiteral("Кнопка"), content);
        Button->setGeometry(10, 40, 150, 30);
        List = new ListView(content);
        List->AddColumn(QStringLiteral("*"), 1500);
        List->AddRow(QStringLiteral("_1"));
        List->setGeometry(170, 10, 120, 120);
        Fixed = new ComboBox(ComboBox::Fixed, content);
        Years = new ComboBox(ComboBox::Editable, content);
        for (ComboBox *combo : {Fixed, Years}) {
            for (int i = 0; i < 5; ++i) combo->AddItem(QString::number(2020 + i), i);
            combo->setCurrentIndex(2);
        }
        Number = new NumberBox(content);
        Number->SetValue(17.0);
        Date = new DateBox(content);
        Date->SetValue(QDate(2025, 8, 15));
        int top = 140;
        for (QWidget *element : std::initializer_list<QWidget *>{Fixed, Years, Number, Date}) {
            element->setGeometry(10, top, 120, 21);
            top += 30;
        }
        Window.resize(320, 300);
        Window.show();
        if (!QTest::qWaitForWindowActive(&Window)) qFatal("no window");
    }
    int Scrolled() const { return Window.verticalScrollBar()->value(); }
    QString Values() const {
        return QStringList{Fixed->Text(), Years->Text(), Number->text(), Date->Edit()->text()}.join(
            u' ');
    }

    Sheet Window;
    CheckBox *Box;
    QPushButton *Button;
    ListView *List;
    ComboBox *Fixed;
    ComboBox *Years;
    NumberBox *Number;
    DateBox *Date;
};

}  // namespace

class TestTouchAndWheel : public QObject {
    Q_OBJECT

private slots:
    void FingerScrollsAList() {
        ShownList shown(200);
        QSignalSpy clicks(&shown.List, &ListView::ItemClick);
        Draw(*shown.List.viewport(), {150, 200}, {150, 50});
        QTRY_VERIFY(shown.List.FirstVisible() != shown.List.Row(0));
        const int row = shown.List.RowRect(shown.List.Row(0)).height();
        QVERIFY(shown.List.verticalScrollBar()->value() * row <= 1000);  // pixels, not rows
        QVERIFY(shown.List.SelectedRows().empty());
        QCOMPARE(clicks.size(), 0);
    }

    void ScrollerIsToldTheRoomAndTheRange() {
        ShownList shown(200);
        shown.List.verticalScrollBar()->setValue(3);
        QScrollPrepareEvent event(QPointF(10, 10));
        QCoreApplication::sendEvent(shown.List.viewport(), &event);
        QVERIFY(event.isAccepted());
        const double row = shown.List.RowRect(shown.List.Row(3)).height();
        QCOMPARE(event.viewportSize(), QSizeF(shown.List.viewport()->size()));
        QCOMPARE(event.contentPos(), QPointF(0, 3 * row));
        QCOMPARE(event.contentPosRange(), QRectF(0, 0, shown.List.horizontalScrollBar()->maximum(),
                                                 row * shown.List.verticalScrollBar()->maximum()));
    }

    void KeysForAnElementBringItIntoView_data() {
        QTest::addColumn<bool>("list");
        QTest::addColumn<int>("key");
        QTest::addColumn<bool>("brought");
        QTest::newRow("letter in a line") << false << int(Qt::Key_A) << true;
        QTest::newRow("arrow in a line") << false << int(Qt::Key_Left) << false;
        QTest::newRow("arrow in a list") << true << int(Qt::Key_Down) << true;
    }
    void KeysForAnElementBringItIntoView() {
        QFETCH(bool, list);
        QFETCH(int, key);
        QFETCH(bool, brought);
        QDialog window;
        window.resize(200, 200);
        auto *sheet = new Sheet(&window);
        sheet->SetLeast(QSize(100, 1000));
        sheet->Place(window.rect());
        QWidget *element = list ? static_cast<QWidget *>(new ListView(sheet->Content()))
                                : new QLineEdit(sheet->Content());
        element->setGeometry(0, 0, 90, 90);
        new FocusInView(window);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        element->setFocus();
        QScrollBar &bar = *sheet->verticalScrollBar();
        bar.setValue(bar.maximum());
        QTest::keyClick(element, Qt::Key(key));
        QCoreApplication::processEvents();
        QCOMPARE(bar.value() < bar.maximum(), brought);
    }

    void FingerScrollsSideways() {
        ShownList shown(3);
        shown.List.SetColumnWidth(1, 15000);
        Draw(*shown.List.viewport(), {300, 100}, {100, 100});
        QTRY_VERIFY(shown.List.horizontalScrollBar()->value() > 50);
        QVERIFY(shown.List.SelectedRows().empty());
    }

    void TapIsAClick() {
        ShownList shown(200);
        QSignalSpy clicks(&shown.List, &ListView::Click);
        Tap(*shown.List.viewport(), shown.On(3));
        QTRY_COMPARE(shown.List.SelectedItem(), shown.List.Row(3));
        QCOMPARE(shown.List.SelectedRows().size(), 1);
        QCOMPARE(clicks.size(), 1);
        QVERIFY(shown.List.hasFocus());
    }

    void TapOnABoxTicksIt() {
        ShownList shown(200);
        QSignalSpy ticks(&shown.List, &ListView::ItemCheck);
        Tap(*shown.List.viewport(), {9, shown.On(2).y()});
        QTRY_VERIFY(shown.List.Row(2)->IsChecked());
        QCOMPARE(ticks.size(), 1);
        QVERIFY(!shown.List.SelectedItem() || !shown.List.SelectedItem()->IsSelected());
    }

    void TwoTapsAreADoubleClick() {
        ShownList shown(200);
        QSignalSpy doubles(&shown.List, &ListView::DblClick);
        Tap(*shown.List.viewport(), shown.On(3));
        QTRY_VERIFY(shown.List.SelectedItem());
        Tap(*shown.List.viewport(), shown.On(3) + QPoint(5, 2));
        QTRY_COMPARE(doubles.size(), 1);
        Tap(*shown.List.viewport(), shown.On(3));
        QApplication::processEvents();
        QCOMPARE(doubles.size(), 1);
    }

    /// The mouse marks rows and does not drag the list along.
    void MouseDoesNotScrollByDrawing() {
        ShownList shown(200);
        QWidget *rows = shown.List.viewport();
        QTest::mousePress(rows, Qt::LeftButton, {}, QPoint(150, 150));
        for (int y = 150; y >= 50; y -= 10) QTest::mouseMove(rows, QPoint(150, y));
        QTest::mouseRelease(rows, Qt::LeftButton, {}, QPoint(150, 50));
        QApplication::processEvents();
        QCOMPARE(shown.List.verticalScrollBar()->value(), 0);
    }

    void FingerScrollsAPage_data() {
        QTest::addColumn<QPoint>("from");
        QTest::newRow("bare ground") << QPoint(250, 250);
        QTest::newRow("check box") << QPoint(30, 20);
        QTest::newRow("button") << QPoint(30, 60);
        QTest::newRow("combo") << QPoint(60, 150);
        QTest::newRow("number") << QPoint(60, 210);
        QTest::newRow("date") << QPoint(60, 240);
        QTest::newRow("list that shows all") << QPoint(230, 100);
    }
    void FingerScrollsAPage() {
        QFETCH(QPoint, from);
        Page page;
        QSignalSpy presses(page.Button, &QPushButton::clicked);
        const QString values = page.Values();
        Draw(*page.Window.viewport(), from, from - QPoint(0, 200));
        QTRY_VERIFY(page.Scrolled() >= 100);
        QVERIFY(!page.Box->isChecked());
        QCOMPARE(presses.size(), 0);
        QCOMPARE(page.Values(), values);
        QVERIFY(!QApplication::activePopupWidget());
    }

    void TapsReachWhatIsOnAPage() {
        Page page;
        QSignalSpy presses(page.Button, &QPushButton::clicked);
        page.Window.verticalScrollBar()->setValue(5);
        Tap(*page.Box, QPoint(8, 10));
        QTRY_VERIFY(page.Box->isChecked());
        QVERIFY(page.Box->hasFocus());
        Tap(*page.Button);
        QTRY_COMPARE(presses.size(), 1);
        QVERIFY(page.Button->hasFocus());
        Tap(*page.Number);
        QTRY_VERIFY(page.Number->hasFocus());
        Tap(*page.List->viewport(), QPoint(40, 8));
        QTRY_VERIFY(page.List->SelectedItem());
        Tap(*page.Fixed);
        QTRY_VERIFY(QApplication::activePopupWidget());
        QApplication::activePopupWidget()->close();
        QCOMPARE(page.Scrolled(), 5);
    }

    /// A page that shows all of it has nothing to scroll.
    void TapsReachWhatIsOnAPageThatFits() {
        Page page;
        page.Window.resize(400, 1000);
        QTRY_COMPARE(page.Window.verticalScrollBar()->maximum(), 0);
        Tap(*page.Box, QPoint(8, 10));
        QTRY_VERIFY(page.Box->isChecked());
        QApplication::processEvents();
        QVERIFY(page.Box->isChecked());
    }

    /// Whether they have the focus or not.
    void WheelScrollsThePageAndChangesNothing_data() {
        QTest::addColumn<bool>("focused");
        QTest::newRow("focused") << true;
        QTest::newRow("not focused") << false;
    }
    void WheelScrollsThePageAndChangesNothing() {
        QFETCH(bool, focused);
        Page page;
        const QString values = page.Values();
        for (QWidget *element : std::initializer_list<QWidget *>{
                 page.Fixed, page.Years, page.Years->lineEdit(), page.Number, page.Date,
                 page.Date->Edit(), page.Box, page.List->viewport()}) {
            if (focused) element->setFocus();
            for (const int turn : {-120, 120}) {
                const int before = page.Scrolled();
                Turn(*element, turn, 0);
                QVERIFY2((page.Scrolled() - before) * turn < 0, element->metaObject()->className());
                QCOMPARE(page.Values(), values);
            }
        }
    }

    /// The page does not run away under a list that is scrolled to its end; after a pause the wheel
    /// is for the page.
    void WheelStaysWithTheListUntilAPause_data() {
        QTest::addColumn<int>("turn");
        QTest::newRow("down") << -120;
        QTest::newRow("up") << 120;
    }
    void WheelStaysWithTheListUntilAPause() {
        QFETCH(int, turn);
        Page page;
        for (int i = 0; i < 40; ++i) page.List->AddRow(QString());
        QScrollBar *rows = page.List->verticalScrollBar();
        QTRY_VERIFY(rows->maximum() > 10);
        rows->setValue(turn < 0 ? rows->maximum() - 1 : 1);
        page.Window.verticalScrollBar()->setValue(60);
        QTRY_COMPARE(page.Scrolled(), 60);
        const auto turned = [&](quint64 aTime) {
            Turn(*page.List->viewport(), turn, aTime);
            return page.Scrolled() - 60;
        };
        QCOMPARE(turned(10000), 0);
        QCOMPARE(rows->value(), turn < 0 ? rows->maximum() : 0);
        QCOMPARE(turned(10100), 0);
        QCOMPARE(turned(10500), 0);
        QCOMPARE(turned(10900), 0);  // still the same turn
        QVERIFY(turned(12000) * turn < 0);
        page.Window.verticalScrollBar()->setValue(60);
        QVERIFY(turned(12100) * turn < 0);  // that one is the page's
        // The other way round the list has something to show again.
        page.Window.verticalScrollBar()->setValue(60);
        turn = -turn;
        QCOMPARE(turned(12200), 0);
        QVERIFY(rows->value() != (turn > 0 ? rows->maximum() : 0));
    }

    void WheelOverTheTabsChangesNothing_data() {
        QTest::addColumn<bool>("focused");
        QTest::newRow("focused") << true;
        QTest::newRow("not focused") << false;
    }
    void WheelOverTheTabsChangesNothing() {
        QFETCH(bool, focused);
        TabControl tabs;
        for (const char *key : {"one", "two", "three"})
            tabs.AddTab(QString::fromLatin1(key), QString::fromLatin1(key), new QLineEdit);
        tabs.SetPagePlace(2, 24);
        tabs.resize(300, 200);
        tabs.show();
        QVERIFY(QTest::qWaitForWindowActive(&tabs));
        tabs.SetSelectedTab(QStringLiteral("two"));
        if (focused) tabs.Bar()->setFocus();
        for (const QPoint &turn : {QPoint(0, -120), QPoint(0, 120), QPoint(-120, 0)}) {
            const QPoint place = tabs.Bar()->tabRect(0).center();
            QWheelEvent wheel(place, tabs.Bar()->mapToGlobal(place), QPoint(), turn, Qt::NoButton,
                              Qt::NoModifier, Qt::NoScrollPhase, false);
            QApplication::sendEvent(tabs.Bar(), &wheel);
            QCOMPARE(tabs.SelectedTab(), QStringLiteral("two"));
        }
    }
};

VK_TEST_CLASS(TestTouchAndWheel);
#include "TestTouchAndWheel.moc"
