#include <QClipboard>
#include <QTest>

#include "OpenBrowser.h"
#include "support/Keys.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QStringList theFocusable = {QStringLiteral("theFilterA"), QStringLiteral("theFormList"),
                                  QStringLiteral("theCatInfo"), QStringLiteral("theTimeList"),
                                  QStringLiteral("theClose")};

}  // namespace

class TestBrowserKeys : public QObject {
    Q_OBJECT

private slots:
    void init() {
        EmptyOffice();
        AddForm(1, QStringLiteral("1151001"), QStringLiteral("абвг"));
        AddForm(2, QStringLiteral("1151002"), QStringLiteral("абг"));
    }

    /// What is shown and what is chosen agree.
    void ClickBelowTheRowsEmptiesThePanes() {
        OpenBrowser browser;
        browser.ClickForm(1);
        QVERIFY(browser.Times.RowCount() > 0);
        const ListRow *last = browser.List.Row(browser.List.RowCount() - 1);
        const QPoint below = browser.List.RowRect(last).bottomLeft() + QPoint(60, 20);
        QVERIFY(browser.List.viewport()->rect().contains(below));
        QTest::mouseClick(browser.List.viewport(), Qt::RightButton, {}, below);
        QCOMPARE(browser.List.SelectedRows().size(), std::size_t(1));
        QVERIFY(browser.Times.RowCount() > 0);
        QTest::mouseClick(browser.List.viewport(), Qt::LeftButton, {}, below);
        QVERIFY(browser.List.SelectedRows().empty());
        QVERIFY(!browser.List.SelectedItem());
        QCOMPARE(browser.Times.RowCount(), 0);
    }

    void PeriodsAreCopiedByTheirNames() {
        const int year = QDate::currentDate().year();
        MemoryOffice::The().Times[1] = {TimeRow(year, 1), TimeRow(year, 13)};
        OpenBrowser browser;
        browser.ClickForm(1);
        browser.Times.SetSelectedItem(browser.Times.Row(0));
        browser.Times.setFocus();
        QTest::keyClick(&browser.Times, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 QString::number(year) + QStringLiteral("\tЯнв\t\t\t1 кв") + QString(17, u'\t'));
    }

    void KeysWorkOnTheFilterWhereverTheFocusIs_data() {
        QTest::addColumn<QString>("focus");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("caret");
        const QString back = QStringLiteral("\b");
        for (const QString &focus : theFocusable) {
            const auto row = [&](const char *aName) -> QTestData & {
                return QTest::newRow(qPrintable(focus + u' ' + QLatin1String(aName))) << focus;
            };
            row("letter") << 2 << 0 << int(Qt::Key_unknown) << QStringLiteral("Х")
                          << QStringLiteral("абХвг") << 3;
            row("first") << 0 << 0 << int(Qt::Key_Q) << QStringLiteral("q")
                         << QStringLiteral("qабвг") << 1;
            row("last") << 4 << 0 << int(Qt::Key_5) << QStringLiteral("5")
                        << QStringLiteral("абвг5") << 5;
            row("sign") << 4 << 0 << int(Qt::Key_Bar) << QStringLiteral("|")
                        << QStringLiteral("абвг|") << 5;
            row("letter over a selection") << 1 << 2 << int(Qt::Key_unknown) << QStringLiteral("я")
                                           << QStringLiteral("аяг") << 2;
            row("letter over all")
                << 0 << 4 << int(Qt::Key_7) << QStringLiteral("7") << QStringLiteral("7") << 1;
            row("backspace") << 2 << 0 << int(Qt::Key_Backspace) << back << QStringLiteral("авг")
                             << 1;
            row("backspace behind the first")
                << 1 << 0 << int(Qt::Key_Backspace) << back << QStringLiteral("бвг") << 0;
            row("backspace at the start")
                << 0 << 0 << int(Qt::Key_Backspace) << back << QStringLiteral("абвг") << 0;
            row("backspace over a selection")
                << 1 << 2 << int(Qt::Key_Backspace) << back << QStringLiteral("аг") << 1;
            row("backspace over all") << 0 << 4 << int(Qt::Key_Backspace) << back << QString() << 0;
        }
    }
    void KeysWorkOnTheFilterWhereverTheFocusIs() {
        QFETCH(QString, focus);
        QFETCH(int, start);
        QFETCH(int, length);
        QFETCH(int, key);
        QFETCH(QString, typed);
        QFETCH(QString, text);
        QFETCH(int, caret);
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("абвг"));
        auto *focused = browser.Form.findChild<QWidget *>(focus);
        focused->setFocus();
        if (length > 0)
            browser.Filter.setSelection(start, length);
        else
            browser.Filter.setCursorPosition(start);
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, typed);
        QVERIFY(QApplication::sendEvent(focused, &press));  // swallowed
        QCOMPARE(browser.Filter.text(), text);
        QCOMPARE(browser.Filter.cursorPosition(), caret);
        QVERIFY(!browser.Filter.hasSelectedText());
        QVERIFY(browser.Cats.Text().isEmpty());
        QVERIFY(focused->hasFocus());
    }

    void KeysThatLeaveTheFilterAlone_data() {
        QTest::addColumn<QString>("focus");
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        struct {
            const char *Name;
            Qt::Key Key;
            Qt::KeyboardModifier Modifier;
        } const keys[] = {
            {"enter", Qt::Key_Return, Qt::NoModifier},
            {"tab", Qt::Key_Tab, Qt::NoModifier},
            {"up", Qt::Key_Up, Qt::NoModifier},
            {"down", Qt::Key_Down, Qt::NoModifier},
            {"left", Qt::Key_Left, Qt::NoModifier},
            {"home", Qt::Key_Home, Qt::NoModifier},
            {"page down", Qt::Key_PageDown, Qt::NoModifier},
            {"f5", Qt::Key_F5, Qt::NoModifier},
            {"ctrl c", Qt::Key_C, Qt::ControlModifier},
            {"ctrl a", Qt::Key_A, Qt::ControlModifier},
            {"ctrl 1", Qt::Key_1, Qt::ControlModifier},
            {"alt f", Qt::Key_F, Qt::AltModifier},
        };
        for (const QString &focus : theFocusable) {
            for (const auto &key : keys) {
                if (focus == theFocusable.constFirst() && key.Modifier == Qt::AltModifier) continue;
                QTest::newRow(qPrintable(focus + u' ' + QLatin1String(key.Name)))
                    << focus << int(key.Key) << int(key.Modifier);
            }
        }
    }
    void KeysThatLeaveTheFilterAlone() {
        QFETCH(QString, focus);
        QFETCH(int, key);
        QFETCH(int, modifiers);
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("абвг"));
        browser.Filter.setCursorPosition(2);
        auto *focused = browser.Form.findChild<QWidget *>(focus);
        focused->setFocus();
        QTest::keyClick(focused, static_cast<Qt::Key>(key),
                        static_cast<Qt::KeyboardModifiers>(modifiers));
        QCOMPARE(browser.Filter.text(), QStringLiteral("абвг"));
    }

    void TheBlankIsTypedInTheFilterAlone_data() {
        QTest::addColumn<QString>("focus");
        QTest::addColumn<QString>("text");
        QTest::newRow("filter") << QStringLiteral("theFilterA") << QStringLiteral("аб вг");
        QTest::newRow("forms") << QStringLiteral("theFormList") << QStringLiteral("абвг");
        QTest::newRow("cats") << QStringLiteral("theCatInfo") << QStringLiteral("абвг");
        QTest::newRow("times") << QStringLiteral("theTimeList") << QStringLiteral("абвг");
    }
    void TheBlankIsTypedInTheFilterAlone() {
        QFETCH(QString, focus);
        QFETCH(QString, text);
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("абвг"));
        browser.Filter.setCursorPosition(2);
        auto *focused = browser.Form.findChild<QWidget *>(focus);
        focused->setFocus();
        QTest::keyClick(focused, Qt::Key_Space);
        QCOMPARE(browser.Filter.text(), text);
        QVERIFY(browser.Cats.Text().isEmpty());
        QCOMPARE(browser.List.SelectedItem(), nullptr);
    }

    void TheBlankPressesTheFocusedButton() {
        OpenBrowser browser;
        browser.Close.setFocus();
        QTest::keyClick(&browser.Close, Qt::Key_Space);
        QVERIFY(!browser.Form.isVisible());
    }

    void EscClosesFromEverywhere_data() {
        QTest::addColumn<QString>("focus");
        for (const QString &focus : theFocusable) QTest::newRow(qPrintable(focus)) << focus;
    }
    void EscClosesFromEverywhere() {
        QFETCH(QString, focus);
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("абвг"));
        auto *focused = browser.Form.findChild<QWidget *>(focus);
        focused->setFocus();
        QTest::keyClick(focused, Qt::Key_Escape);
        QVERIFY(!browser.Form.isVisible());
        QCOMPARE(browser.Filter.text(), QStringLiteral("абвг"));
    }

    /// These make no typed character and are the focused element's own.
    void DeleteAndPasteStayWithTheFilterBox() {
        OpenBrowser browser;
        browser.Filter.setText(QStringLiteral("абвг"));
        browser.Filter.setCursorPosition(2);
        QTest::keyClick(&browser.Filter, Qt::Key_Delete);
        QCOMPARE(browser.Filter.text(), QStringLiteral("абг"));
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_2")});
        browser.Filter.selectAll();
        QTest::keyClick(&browser.Filter, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("абг"));
        QTest::keyClick(&browser.Filter, Qt::Key_X, Qt::ControlModifier);
        QCOMPARE(browser.Listed().size(), 2);
        QTest::keyClick(&browser.Filter, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_2")});
        browser.List.setFocus();
        QTest::keyClick(&browser.List, Qt::Key_Delete);
        QCOMPARE(browser.Filter.text(), QStringLiteral("абг"));
    }

    void CopyStaysWithThePaneOfCategories() {
        MemoryOffice::The().Categories[1] = {CategoryRow(6, 1, 0, 0)};
        OpenBrowser browser;
        browser.ClickForm(1);
        QTRY_VERIFY(!browser.Cats.toPlainText().isEmpty());
        browser.Cats.setFocus();
        QTest::keyClick(&browser.Cats, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&browser.Cats, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text().remove(u'\r'),
                 QStringLiteral("Индивидуальные предприниматели\n    Отчетность в ИФНС\n\n"));
    }

    void ArrowsWorkOnTheListOnceItHasTheFocus() {
        OpenBrowser browser;
        QTest::keyClick(&browser.Filter, Qt::Key_Down);
        QCOMPARE(browser.List.SelectedItem(), nullptr);
        browser.List.setFocus();
        QTest::keyClick(&browser.List, Qt::Key_Down);
        QTest::keyClick(&browser.List, Qt::Key_Down);
        QCOMPARE(browser.List.SelectedItem()->Key(), QStringLiteral("_2"));
        QCOMPARE(browser.Times.RowCount(), 8);
    }

    void LettersTypedInTheListGoToTheFilter() {
        OpenBrowser browser;
        browser.List.setFocus();
        TypeText(&browser.List, QStringLiteral("абв"));
        QCOMPARE(browser.Filter.text(), QStringLiteral("абв"));
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_1")});
        QCOMPARE(browser.List.SelectedItem(), nullptr);
    }

    void TheCodeComesBackAsZeroIfItWasUsed_data() {
        QTest::addColumn<int>("code");
        QTest::addColumn<int>("after");
        QTest::newRow("backspace") << 8 << 0;
        QTest::newRow("blank") << 32 << 0;  // the form's key event keeps it back, not this
        QTest::newRow("letter") << 0x044F << 0;
        QTest::newRow("last code") << 0xFFFD << 0;
        QTest::newRow("ctrl c") << 3 << 3;
        QTest::newRow("tab") << 9 << 9;
        QTest::newRow("enter") << 13 << 13;
        QTest::newRow("esc") << 27 << 27;
        QTest::newRow("below the blank") << 31 << 31;
    }
    void TheCodeComesBackAsZeroIfItWasUsed() {
        QFETCH(int, code);
        QFETCH(int, after);
        OpenBrowser browser;
        auto key = static_cast<quint16>(code);
        browser.Form.OnFormKeyPress(key);
        QCOMPARE(int(key), after);
    }

    void SetFilterPutsTextAndSelection() {
        OpenBrowser browser;
        browser.Form.SetFilter(QStringLiteral("абвг"), 1, 2);
        QCOMPARE(browser.Filter.text(), QStringLiteral("абвг"));
        QCOMPARE(browser.Filter.selectedText(), QStringLiteral("бв"));
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_1")});
        browser.Form.SetFilter(QString(), 7, 7);
        QCOMPARE(browser.Filter.text(), QString());
        QCOMPARE(browser.Listed().size(), 2);
    }

    /// A key works on the text as the box shows it, whoever put it there.
    void TypingGoesOnBehindAPastedText() {
        OpenBrowser browser;
        QApplication::clipboard()->setText(QStringLiteral("аб"));
        QTest::keyClick(&browser.Filter, Qt::Key_V, Qt::ControlModifier);
        TypeText(&browser.Filter, QStringLiteral("г"));
        QCOMPARE(browser.Filter.text(), QStringLiteral("абг"));
        QCOMPARE(browser.Listed(), QStringList{QStringLiteral("_2")});
    }
};

VK_TEST_CLASS(TestBrowserKeys);
#include "TestBrowserKeys.moc"
