#include <QAccessible>
#include <QApplication>
#include <QCalendarWidget>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QScopeGuard>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QTest>
#include <QToolButton>

#include <Vk_DocQuery/Failure.h>

#include "controls/DateBox.h"
#include "controls/PictureButton.h"
#include "foundation/Clock.h"
#include "support/Contrast.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theBlank = QStringLiteral("__.__.____");
const QString theTitle = QStringLiteral("Дата");

/// A window with a date box, another element and the two buttons of a dialog.
class Window : public QWidget {
public:
    Window() {
        Box->setGeometry(10, 10, 93, 21);
        Other->setGeometry(10, 40, 90, 21);
        Cancel->setGeometry(10, 70, 90, 25);
        resize(300, 300);
        show();
        if (!QTest::qWaitForWindowActive(this)) qFatal("the window does not come up");
        Box->setFocus();
    }

    QLineEdit *Edit() const { return Box->Edit(); }
    QCalendarWidget *Calendar() const { return Box->findChild<QCalendarWidget *>(); }
    bool IsCalendarUp() const { return Calendar() && Calendar()->isVisible(); }

    DateBox *Box = new DateBox(this);
    QLineEdit *Other = new QLineEdit(this);
    DButton *Cancel = new DButton(QStringLiteral("Отмена"), 2, this);
};

QPushButton *ButtonOf(const Window &aWindow, const QString &aCaption) {
    for (auto *button : aWindow.Box->findChildren<QPushButton *>())
        if (button->text() == aCaption) return button;
    return nullptr;
}

QString Shown(const LooseValue &aValue) {
    return IsEmpty(aValue) ? QStringLiteral("empty") : ToText(aValue);
}

}  // namespace

class TestDateBox : public QObject {
    Q_OBJECT

private slots:
    void EmptyShowsTheMask() {
        DateBox box;
        QCOMPARE(box.Edit()->displayText(), theBlank);
        QVERIFY(IsEmpty(box.Value()));
        QVERIFY(box.IsAcceptable());
        box.SetValue(QDate(2024, 2, 29));
        QCOMPARE(box.Edit()->displayText(), QStringLiteral("29.02.2024"));
        QCOMPARE(std::get<QDate>(box.Value()), QDate(2024, 2, 29));
        box.SetValue(Null());
        QCOMPARE(box.Edit()->displayText(), theBlank);
        box.SetValue(QDate(2024, 2, 29));
        box.SetValue(Empty());
        QVERIFY(IsEmpty(box.Value()));
    }

    void Typing_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("value");
        QTest::addColumn<bool>("acceptable");
        QTest::newRow("digits") << "01022024"
                                << "01.02.2024"
                                << "01.02.2024" << true;
        QTest::newRow("with dots") << "01.02.2024"
                                   << "01.02.2024"
                                   << "01.02.2024" << true;
        QTest::newRow("short day and month") << "1.2.2024"
                                             << "1_.2_.2024"
                                             << "01.02.2024" << true;
        QTest::newRow("letters") << "x01y022024"
                                 << "01.02.2024"
                                 << "01.02.2024" << true;
        QTest::newRow("no such day") << "31022024"
                                     << "31.02.2024"
                                     << "empty" << false;
        QTest::newRow("no leap year") << "29022023"
                                      << "29.02.2023"
                                      << "empty" << false;
        QTest::newRow("half typed") << "3112"
                                    << "31.12.____"
                                    << "empty" << false;
        QTest::newRow("short year") << "31.12.24"
                                    << "31.12.24__"
                                    << "empty" << false;
        QTest::newRow("earliest") << "01010100"
                                  << "01.01.0100"
                                  << "01.01.0100" << true;
        QTest::newRow("too early") << "31120099"
                                   << "31.12.0099"
                                   << "empty" << false;
        QTest::newRow("latest") << "31129999"
                                << "31.12.9999"
                                << "31.12.9999" << true;
        QTest::newRow("nothing") << ""
                                 << "__.__.____"
                                 << "empty" << true;
    }

    void Typing() {
        QFETCH(QString, keys);
        QFETCH(QString, display);
        QFETCH(QString, value);
        QFETCH(bool, acceptable);
        Window window;
        QTest::keyClicks(window.Edit(), keys);
        QCOMPARE(window.Edit()->displayText(), display);
        QCOMPARE(Shown(window.Box->Value()), value);
        QCOMPARE(window.Box->IsAcceptable(), acceptable);
    }

    void DatesCanBePasted() {
        Window window;
        QApplication::clipboard()->setText(QStringLiteral("15.08.2025"));
        QTest::keyClick(window.Edit(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("15.08.2025"));
    }

    void PastedForms_data() {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("display");
        const auto row = [](const char *aPasted, const char *aDisplay) {
            QTest::newRow(aPasted) << QString::fromUtf8(aPasted) << QString::fromUtf8(aDisplay);
        };
        row("2025-08-15", "15.08.2025");
        row("15.08.25", "15.08.2025");
        row("15/08/2025", "15.08.2025");
        row("15.8.2025 г.", "15.08.2025");
        row("15.8.2025г", "15.08.2025");
        row("15.08.2025 года", "15.08.2025");
        row("5-8-2025", "05.08.2025");
        row("2025/8/5", "05.08.2025");
        row("2025-08-15 00:00:00", "15.08.2025");
        row("2025-08-15T13:45:00.000Z", "15.08.2025");
        row("15.08.2025 13:45", "15.08.2025");
        row("1.2.29", "01.02.2029");
        row("1.2.30", "01.02.1930");
        row("1.2.99", "01.02.1999");
        row("1.2.5", "01.02.2005");
        row("1.2.0100", "01.02.0100");
        row(" \t15.08.25 \r\n", "15.08.2025");
        row("15082025", "15.08.2025");
        row("31.02.25", "31.02.2025");  // no date, of which the user is told
        row("abc", "__.__.____");
    }
    void PastedForms() {
        QFETCH(QString, pasted);
        QFETCH(QString, display);
        Window window;
        QApplication::clipboard()->setText(pasted);
        QTest::keyClick(window.Edit(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(window.Edit()->displayText(), display);
    }

    /// Wherever the caret is, a whole date takes the place of the one that is there.
    void PastedDateReplacesTheWholeText() {
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QApplication::clipboard()->setText(QStringLiteral("2025-08-15"));
        window.Edit()->setCursorPosition(4);
        QTest::keyClick(window.Edit(), Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("15.08.2025"));
        QTest::keyClick(window.Edit(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("08.03.2019"));
        // A part of a date goes where the caret is.
        QApplication::clipboard()->setText(QStringLiteral("12"));
        window.Edit()->setSelection(3, 2);
        QTest::keyClick(window.Edit(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("08.12.2019"));
    }

    void DateIsDroppedAndPutInByAnInputMethod() {
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QMimeData data;
        data.setText(QStringLiteral("15.08.25"));
        QDragEnterEvent enter(QPoint(40, 10), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QApplication::sendEvent(window.Edit(), &enter);
        QDropEvent drop(QPointF(40, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(window.Edit(), &drop);
        QVERIFY(drop.isAccepted());
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("15.08.2025"));
        QInputMethodEvent committed;
        committed.setCommitString(QStringLiteral("2024-02-29"));
        QApplication::sendEvent(window.Edit(), &committed);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("29.02.2024"));
    }

    void UpAndDownStepThePartUnderTheCaret_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("caret");
        QTest::addColumn<int>("step");
        QTest::addColumn<QString>("display");
        const auto row = [](const char *aName, const char *aText, int aCaret, int aStep,
                            const char *aDisplay) {
            QTest::newRow(aName) << QString::fromLatin1(aText) << aCaret << aStep
                                 << QString::fromLatin1(aDisplay);
        };
        row("day", "15.08.2025", 0, 1, "16.08.2025");
        row("day, in it", "15.08.2025", 1, -1, "14.08.2025");
        row("month", "15.08.2025", 3, 1, "15.09.2025");
        row("month, in it", "15.08.2025", 4, -1, "15.07.2025");
        row("year", "15.08.2025", 6, 1, "15.08.2026");
        row("year, at the end", "15.08.2025", 10, -1, "15.08.2024");
        row("end of a month", "31.01.2025", 0, 1, "01.02.2025");
        row("end of a year", "31.12.2025", 0, 1, "01.01.2026");
        row("shorter month", "31.01.2025", 3, 1, "28.02.2025");
        row("shorter month of a leap year", "31.01.2024", 3, 1, "29.02.2024");
        row("leap day", "29.02.2024", 6, 1, "28.02.2025");
        row("December", "15.12.2025", 3, 1, "15.01.2026");
        row("latest", "31.12.9999", 0, 1, "31.12.9999");
        row("latest year", "01.01.9999", 6, 1, "01.01.9999");
        row("earliest", "01.01.0100", 3, -1, "01.01.0100");
        row("before the earliest", "05.05.0099", 0, -1, "01.01.0100");
        row("blank", "", 0, 1, "29.02.2028");
        row("blank, month", "", 3, -1, "29.02.2028");
        row("no such day", "31.02.2025", 0, -1, "30.02.2025");
        row("day alone", "15", 0, 1, "16.__.____");
        row("highest day", "31", 0, 1, "31.__.____");
        row("blank month", "15", 3, 1, "15.02.____");
        row("blank year", "15.08", 6, -1, "15.08.2028");
        row("short year", "15.08.24", 6, 1, "15.08.2025");
    }
    void UpAndDownStepThePartUnderTheCaret() {
        QFETCH(QString, text);
        QFETCH(int, caret);
        QFETCH(int, step);
        QFETCH(QString, display);
        SetTodayForTests(QDate(2028, 2, 29));
        const auto today = qScopeGuard([] { SetTodayForTests(QDate()); });
        Window window;
        window.Edit()->setText(text);
        window.Edit()->setCursorPosition(0);
        window.Edit()->setCursorPosition(caret);
        QTest::keyClick(window.Edit(), step > 0 ? Qt::Key_Up : Qt::Key_Down);
        QCOMPARE(window.Edit()->displayText(), display);
    }

    void StepsGoOnInTheirPart() {
        Window window;
        window.Box->SetValue(QDate(2024, 1, 31));
        window.Edit()->setCursorPosition(3);
        for (int i = 0; i < 3; ++i) QTest::keyClick(window.Edit(), Qt::Key_Up);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("29.04.2024"));
        QTest::keyClick(window.Edit(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("29.03.2024"));
        QTest::keyClick(window.Edit(), Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("29.03.2024"));
    }

    void ClickIntoABlankBoxBeginsAtItsStart() {
        Window window;
        window.Other->setFocus();
        QTest::mouseClick(window.Edit(), Qt::LeftButton, {}, window.Edit()->rect().center());
        QTRY_COMPARE(window.Edit()->cursorPosition(), 0);
    }

    void CalendarStaysOnTheScreen() {
        Window window;
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QWidget &calendar = *window.Calendar()->window();
        calendar.close();
        const auto placeFor = [&](QPoint aBox) {
            window.move(window.pos() + aBox - window.Box->mapToGlobal(QPoint(0, 0)));
            QTest::keyClick(window.Edit(), Qt::Key_F4);
            calendar.close();
            return calendar.pos();
        };
        placeFor({100, 100});
        const int high = window.Box->height();
        const QPoint frame = placeFor({100, 100}) - QPoint(100, 100 + high);  // the platform's
        QVERIFY(frame.manhattanLength() < 10);
        const QRect room = window.screen()->availableGeometry();
        const int lowest = room.bottom() - calendar.height() - high;
        QCOMPARE(placeFor({100, lowest}), frame + QPoint(100, lowest + high));
        QCOMPARE(placeFor({100, lowest + 1}), frame + QPoint(100, lowest + 1 - calendar.height()));
        QCOMPARE(placeFor({-20, 100}), frame + QPoint(room.left(), 100 + high));
        QCOMPARE(placeFor({room.right() - 20, 100}),
                 frame + QPoint(room.right() - calendar.width(), 100 + high));
    }

    void OpenCalendarIsAChildForAssistivePrograms() {
        Window window;
        QAccessibleInterface *face = QAccessible::queryAccessibleInterface(window.Box);
        const int before = face->childCount();
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QCOMPARE(face->childCount(), before + 1);
        QCOMPARE(face->child(before)->object(), window.Calendar()->window());
        QCOMPARE(face->indexOfChild(face->child(before)), before);
        window.Calendar()->window()->close();
        QCOMPARE(face->childCount(), before);
    }

    void CalendarGivesToday_data() {
        QTest::addColumn<QString>("way");
        for (const char *way : {"click", "Enter", "Alt+С", "Alt+C"})
            QTest::newRow(way) << QString::fromUtf8(way);
    }
    void CalendarGivesToday() {
        QFETCH(QString, way);
        SetTodayForTests(QDate(2028, 2, 29));
        const auto today = qScopeGuard([] { SetTodayForTests(QDate()); });
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        auto *button = ButtonOf(window, QStringLiteral("Сегодня"));
        QVERIFY(button && button->isVisible());
        if (way == u"click") {
            QTest::mouseClick(button, Qt::LeftButton);
        } else if (way == u"Enter") {
            button->setFocus();
            QTest::keyClick(button, Qt::Key_Return);
        } else {
            QTest::sendKeyEvent(QTest::Click, window.Calendar()->findChild<QTableView *>(),
                                Qt::Key(way.back().unicode()), QString(way.back().toLower()),
                                Qt::AltModifier);
        }
        QTRY_VERIFY(!window.IsCalendarUp());
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("29.02.2028"));
        QTRY_VERIFY(window.Edit()->hasFocus());
    }

    void TodayStaysWithinTheBounds() {
        SetTodayForTests(QDate(2028, 2, 29));
        const auto today = qScopeGuard([] { SetTodayForTests(QDate()); });
        Window window;
        window.Box->SetBounds(QDate(2000, 1, 1), QDate(2001, 1, 1));
        QTest::keyClick(window.Edit(), Qt::Key_Up);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("01.01.2001"));
        window.Box->SetValue(Empty());
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QTest::mouseClick(ButtonOf(window, QStringLiteral("Сегодня")), Qt::LeftButton);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("01.01.2001"));
    }

    void DeleteEmptiesTheSelectedDate_data() {
        QTest::addColumn<int>("key");
        QTest::newRow("Delete") << int(Qt::Key_Delete);
        QTest::newRow("Backspace") << int(Qt::Key_Backspace);
    }

    void DeleteEmptiesTheSelectedDate() {
        QFETCH(int, key);
        Window window;
        window.Box->SetValue(QDate(2024, 5, 6));
        QTest::keyClick(window.Edit(), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(window.Edit(), static_cast<Qt::Key>(key));
        QCOMPARE(window.Edit()->displayText(), theBlank);
        QVERIFY(window.Box->IsAcceptable());
    }

    void LeavingAWrongTextWarnsAndComesBack() {
        Window window;
        QTest::keyClicks(window.Edit(), QStringLiteral("31022024"));
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle,
                         QStringLiteral("\"31.02.2024\" не является датой."), QStringLiteral("OK"));
        QTest::keyClick(window.Edit(), Qt::Key_Tab);
        QTRY_VERIFY2(driver.Done(), driver.Complaint());
        QTRY_VERIFY(window.Edit()->hasFocus());
        QCOMPARE(window.Edit()->displayText(), QStringLiteral("31.02.2024"));
        QCOMPARE(window.Edit()->selectionStart(), 0);
        QCOMPARE(window.Edit()->selectedText(), QStringLiteral("31"));
        QTest::keyClicks(window.Edit(), QStringLiteral("28"));
        QTest::keyClick(window.Edit(), Qt::Key_Tab);
        QTRY_VERIFY(!window.Edit()->hasFocus());
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("28.02.2024"));
    }

    void WrongPartIsSelected_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("start");
        QTest::newRow("day") << "32012024"
                             << "\"32.01.2024\" не является датой." << 0;
        QTest::newRow("month") << "01132024"
                               << "\"01.13.2024\" не является датой." << 3;
        QTest::newRow("year") << "0112"
                              << "\"01.12.____\" не является датой." << 6;
        QTest::newRow("bounds")
            << "01010099"
            << "Дата \"01.01.0099\" должна быть в пределах от 01.01.0100 до 31.12.9999." << 6;
    }

    void WrongPartIsSelected() {
        QFETCH(QString, keys);
        QFETCH(QString, message);
        QFETCH(int, start);
        Window window;
        QTest::keyClicks(window.Edit(), keys);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle, message, QStringLiteral("OK"));
        QVERIFY(!window.Box->CheckText());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(window.Edit()->selectionStart(), start);
    }

    void EnterWarnsToo() {
        Window window;
        QTest::keyClicks(window.Edit(), QStringLiteral("3102"));
        int told = 0;
        connect(window.Box, &DateBox::WrongText, &window, [&] { ++told; });
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle,
                         QStringLiteral("\"31.02.____\" не является датой."), QStringLiteral("OK"));
        QTest::keyClick(window.Edit(), Qt::Key_Return);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(told, 1);
    }

    void LeavingARightTextTidiesIt() {
        Window window;
        QTest::keyClicks(window.Edit(), QStringLiteral("1.2.2024"));
        QTest::keyClick(window.Edit(), Qt::Key_Tab);
        QTRY_COMPARE(window.Edit()->displayText(), QStringLiteral("01.02.2024"));
    }

    void LeavingCompletesAYearOfTwoDigits_data() {
        QTest::addColumn<QString>("keys");
        QTest::addColumn<QString>("display");
        QTest::newRow("this century") << "31.12.24"
                                      << "31.12.2024";
        QTest::newRow("last of this century") << "31.12.29"
                                              << "31.12.2029";
        QTest::newRow("first of the last century") << "010130"
                                                   << "01.01.1930";
        QTest::newRow("short day and month") << "1.2.05"
                                             << "01.02.2005";
        QTest::newRow("leap day") << "29.02.24"
                                  << "29.02.2024";
    }
    void LeavingCompletesAYearOfTwoDigits() {
        QFETCH(QString, keys);
        QFETCH(QString, display);
        for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Return}) {
            Window window;
            QTest::keyClicks(window.Edit(), keys);
            const QString typed = window.Edit()->displayText();
            QTest::keyClick(window.Edit(), key);
            QTRY_COMPARE(window.Edit()->displayText(), display);
            QCOMPARE(Shown(window.Box->Value()), display);
            window.Edit()->undo();
            QCOMPARE(window.Edit()->displayText(), typed);
        }
    }

    /// One digit is rather the beginning of a year, and of four some may have been deleted.
    void OtherYearsAreNotCompleted_data() {
        QTest::addColumn<QString>("whole");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *aName, const char *aWhole, int aFrom, int aCount,
                            const char *aText) {
            QTest::newRow(aName) << QString::fromLatin1(aWhole) << aFrom << aCount
                                 << QString::fromLatin1(aText);
        };
        row("no digit", "31.12.2024", 6, 4, "31.12.____");
        row("one digit", "31.12.2024", 7, 3, "31.12.2___");
        row("three digits", "31.12.2024", 9, 1, "31.12.202_");
        row("last two digits", "31.12.2024", 6, 2, "31.12.__24");
        row("first and last digit", "31.12.2024", 7, 2, "31.12.2__4");
        row("no such day", "31.02.2024", 8, 2, "31.02.20__");
        row("no leap year", "29.02.2324", 8, 2, "29.02.23__");
    }
    void OtherYearsAreNotCompleted() {
        QFETCH(QString, whole);
        QFETCH(int, from);
        QFETCH(int, count);
        QFETCH(QString, text);
        Window window;
        window.Edit()->setText(whole);
        window.Edit()->setSelection(from, count);
        QTest::keyClick(window.Edit(), Qt::Key_Delete);
        QCOMPARE(window.Edit()->displayText(), text);
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Warning, theTitle,
                         QStringLiteral("\"%1\" не является датой.").arg(text),
                         QStringLiteral("OK"));
        QTest::keyClick(window.Edit(), Qt::Key_Return);
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(window.Edit()->displayText(), text);
    }

    void CompletedYearIsHeldToTheBounds() {
        Window window;
        window.Box->SetBounds(QDate(2000, 1, 1), QDate(2030, 12, 31));
        QTest::keyClicks(window.Edit(), QStringLiteral("31.12.99"));
        ModalDriver driver;
        driver.ExpectBox(
            QMessageBox::Warning, theTitle,
            QStringLiteral(
                "Дата \"31.12.1999\" должна быть в пределах от 01.01.2000 до 31.12.2030."),
            QStringLiteral("OK"));
        QTest::keyClick(window.Edit(), Qt::Key_Return);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ChoiceOfTheCalendarIsUndone_data() {
        QTest::addColumn<QString>("button");
        QTest::newRow("today") << "Сегодня";
        QTest::newRow("none") << "Очистить";
    }
    void ChoiceOfTheCalendarIsUndone() {
        QFETCH(QString, button);
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QTest::mouseClick(ButtonOf(window, button), Qt::LeftButton);
        QVERIFY(Shown(window.Box->Value()) != QStringLiteral("08.03.2019"));
        QTest::keyClick(window.Edit(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("08.03.2019"));
    }

    void LeavingARightTextKeepsWhatCanBeUndone() {
        Window window;
        QTest::keyClicks(window.Edit(), QStringLiteral("01022024"));
        QTest::keyClick(window.Edit(), Qt::Key_Tab);
        QTRY_VERIFY(!window.Edit()->hasFocus());
        QVERIFY(window.Box->CheckText());
        QVERIFY(window.Edit()->isUndoAvailable());
    }

    void CancelButtonTakesTheFocusWithoutAWarning() {
        Window window;
        QTest::keyClicks(window.Edit(), QStringLiteral("3102"));
        ModalDriver driver;
        QTest::mouseClick(window.Cancel, Qt::LeftButton);
        QTRY_VERIFY(window.Cancel->hasFocus());
        QCoreApplication::processEvents();
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void WeekendsCanBeReadOnEveryGround() {
        const QPalette light = QApplication::palette();
        QPalette night = light;
        night.setColor(QPalette::Base, QColor(30, 30, 33));
        night.setColor(QPalette::Text, QColor(230, 230, 230));
        Window window;
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        for (const bool dark : {false, true, false}) {
            QApplication::setPalette(dark ? night : light);
            QApplication::processEvents();
            const QColor ground = window.Calendar()->palette().color(QPalette::Base);
            QCOMPARE(ground.lightness() < 128, dark);
            for (const auto day : {Qt::Saturday, Qt::Sunday}) {
                const QColor text = window.Calendar()->weekdayTextFormat(day).foreground().color();
                QVERIFY(Contrast(text, ground) >= 4.5);
                QVERIFY(text.red() > text.blue());
            }
        }
    }

    void CalendarOpensByKeyAndButton() {
        Window window;
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QVERIFY(window.IsCalendarUp());
        QTest::keyClick(window.Calendar()->findChild<QTableView *>(), Qt::Key_Escape);
        QVERIFY(!window.IsCalendarUp());
        QVERIFY(window.isVisible());
        QTest::keyClick(window.Edit(), Qt::Key_Down, Qt::AltModifier);
        QVERIFY(window.IsCalendarUp());
        QTest::keyClick(window.Calendar()->findChild<QTableView *>(), Qt::Key_F4);
        QVERIFY(!window.IsCalendarUp());
        QTest::mouseClick(window.Box->findChild<QToolButton *>(), Qt::LeftButton);
        QVERIFY(window.IsCalendarUp());
    }

    void CalendarOpensOnThePresentMonthOrOnTheDate() {
        Window window;
        const QDate before = QDate::currentDate();
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        const QDate after = QDate::currentDate();
        const QDate page(window.Calendar()->yearShown(), window.Calendar()->monthShown(), 1);
        QVERIFY(page == QDate(before.year(), before.month(), 1) ||
                page == QDate(after.year(), after.month(), 1));
        QTest::keyClick(window.Calendar()->findChild<QTableView *>(), Qt::Key_Escape);
        QVERIFY(IsEmpty(window.Box->Value()));

        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QCOMPARE(window.Calendar()->yearShown(), 2019);
        QCOMPARE(window.Calendar()->monthShown(), 3);
        QCOMPARE(window.Calendar()->selectedDate(), QDate(2019, 3, 8));
    }

    void CalendarHeadings() {
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        auto *days = window.Calendar()->findChild<QTableView *>();
        QStringList names;
        for (int column = 0; column < days->model()->columnCount(); ++column) {
            const QModelIndex index = days->model()->index(0, column);
            if (days->isColumnHidden(column)) continue;
            auto *delegate = qobject_cast<QStyledItemDelegate *>(days->itemDelegateForIndex(index));
            QVERIFY(delegate);
            names << delegate->displayText(index.data(), QLocale());
        }
        QCOMPARE(names.join(u','), QStringLiteral("Вс,Пн,Вт,Ср,Чт,Пт,Сб"));
        QStringList heading;
        for (const QToolButton *button : window.Calendar()->findChildren<QToolButton *>())
            if (!button->text().isEmpty()) heading << button->text().trimmed();
        QVERIFY2(heading.contains(QStringLiteral("Март")), qUtf8Printable(heading.join(u'|')));
        QVERIFY(heading.contains(QStringLiteral("2019")));
    }

    void CalendarGivesTheDate() {
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        auto *days = window.Calendar()->findChild<QTableView *>();
        QTest::keyClick(days, Qt::Key_Right);
        QTest::keyClick(days, Qt::Key_Return);
        QVERIFY(!window.IsCalendarUp());
        QCOMPARE(Shown(window.Box->Value()), QStringLiteral("09.03.2019"));
    }

    void CalendarEmptiesTheBox() {
        Window window;
        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QPushButton *clear = ButtonOf(window, QStringLiteral("Очистить"));
        QVERIFY(clear);
        QTest::mouseClick(clear, Qt::LeftButton);
        QVERIFY(!window.IsCalendarUp());
        QCOMPARE(window.Edit()->displayText(), theBlank);

        window.Box->SetValue(QDate(2019, 3, 8));
        QTest::keyClick(window.Edit(), Qt::Key_F4);
        QTest::keyClick(window.Calendar()->findChild<QTableView *>(), Qt::Key_Delete);
        QVERIFY(!window.IsCalendarUp());
        QVERIFY(IsEmpty(window.Box->Value()));
    }

    void DatesOutOfBoundsAreRefused() {
        DateBox box;
        try {
            box.SetValue(QDate(99, 12, 31));
            QFAIL("nothing was raised");
        } catch (const Failure &failure) {
            QCOMPARE(failure.Number(), qint32(InvalidArgument));
            QCOMPARE(failure.Description(),
                     QStringLiteral("Недопустимое значение поля даты: \"31.12.0099\"."));
        }
        box.SetBounds(QDate(2000, 1, 1), QDate(2001, 1, 1));
        box.SetValue(QDate(2000, 1, 1));
        QVERIFY_THROWS_EXCEPTION(Failure, box.SetValue(QDate(2001, 1, 2)));
    }
};

VK_TEST_CLASS(TestDateBox);

#include "TestDateBox.moc"
