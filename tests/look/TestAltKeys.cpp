#include <algorithm>
#include <memory>
#include <vector>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include "browser/TemplateQuerierForm.h"
#include "controls/CheckBox.h"
#include "controls/DateBox.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

const QString theRussianLetters = QStringLiteral("ЙЦУКЕНГШЩЗФЫВАПРОЛДЖЭЯЧСМИТЬБЮ");
const QString theLatinLetters = QStringLiteral("QWERTYUIOPASDFGHJKL;'ZXCVBNM,.");

/// The buttons that a user sees on a window, without what belongs to an input element.
QList<QPushButton *> ButtonsOn(const QWidget &aWindow) {
    QList<QPushButton *> buttons;
    for (QPushButton *button : aWindow.findChildren<QPushButton *>())
        if (button->isVisible()) buttons << button;
    return buttons;
}

/// The letter or digit behind "Alt+" in a tip; none if the tip tells no such key.
QChar AltKeyIn(const QString &aTip) {
    const qsizetype place = aTip.indexOf(QStringLiteral("Alt+"));
    return place < 0 || place + 4 >= aTip.size() ? QChar() : aTip.at(place + 4);
}

/// "theName=Х" for each button, in the order of the names; each key stands there once.
QString KeysOf(const QWidget &aWindow) {
    QStringList keys;
    for (const QPushButton *button : ButtonsOn(aWindow))
        keys << button->objectName() + u'=' + AltKeyIn(button->toolTip());
    keys.sort();
    return keys.join(u' ');
}

/// Keys that two elements share, and elements without one.
QString CollisionsOn(const QWidget &aWindow) {
    QStringList seen;
    QStringList wrong;
    const auto take = [&](const QString &aName, QChar aKey) {
        if (aKey.isNull() || seen.contains(QString(aKey))) wrong << aName;
        seen << QString(aKey);
    };
    for (const QPushButton *button : ButtonsOn(aWindow))
        take(button->objectName(), AltKeyIn(button->toolTip()));
    for (const QTabBar *bar : aWindow.findChildren<QTabBar *>())
        for (int i = 0; i < bar->count(); ++i) take(bar->tabText(i), AltKeyIn(bar->tabToolTip(i)));
    return wrong.join(u' ');
}

/// Presses each button by Alt with its letter, with the Latin letter of the same key, and gives the
/// names of those that did not answer each time with one click.
QString DeafOn(QWidget &aWindow) {
    QStringList deaf;
    for (QPushButton *button : ButtonsOn(aWindow)) {
        button->disconnect(SIGNAL(clicked(bool)));  // nothing happens but the click
        const QChar letter = AltKeyIn(button->toolTip());
        const QChar latin = theLatinLetters.at(theRussianLetters.indexOf(letter));
        for (const QChar key : {letter, latin}) {
            QSignalSpy clicks(button, &QPushButton::clicked);
            QWidget *focus = aWindow.focusWidget() ? aWindow.focusWidget() : &aWindow;
            QTest::sendKeyEvent(QTest::Click, focus, Qt::Key(key.unicode()), QString(key.toLower()),
                                Qt::AltModifier);
            if (!QTest::qWaitFor([&] { return clicks.size() == 1 && !button->isDown(); }))
                deaf << button->objectName() + u' ' + key;
        }
    }
    return deaf.join(u' ');
}

/// What a window keeps to itself, whatever it is called.
QString CaptionsWithAnAmpersand(const QWidget &aWindow) {
    QStringList captions;
    for (const auto *button : aWindow.findChildren<QAbstractButton *>())
        if (button->text().contains(u'&')) captions << button->text();
    return captions.join(u' ');
}

}  // namespace

/// Alt with a letter or a digit presses every button and tab.
class TestAltKeys : public QObject {
    Q_OBJECT

private:
    static void Check(QWidget &aWindow, const QString &aKeys) {
        QVERIFY(QTest::qWaitForWindowActive(&aWindow));
        QCOMPARE(CollisionsOn(aWindow), QString());
        QCOMPARE(KeysOf(aWindow), aKeys);
        QCOMPARE(CaptionsWithAnAmpersand(aWindow), QString());
        QCOMPARE(DeafOn(aWindow), QString());
    }

private slots:
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void dialog_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("onPage");
        QTest::newRow("taxpayer") << 1 << " theTaxpayerAdd=Д theTaxpayerDelete=У";
        QTest::newRow("accstream") << 2 << " theAccStreamAdd=Д theAccStreamDelete=У";
        QTest::newRow("time") << 3 << "";
        QTest::newRow("template") << 4 << " theTemplatesAdd=Д theTemplatesDelete=У";
        QTest::newRow("doc") << 5 << "";
    }
    void dialog() {
        QFETCH(int, tab);
        QFETCH(QString, onPage);
        DocQueryOptionsFrm window;
        window.SetRecord(nullptr);
        for (auto *box : window.findChildren<QCheckBox *>()) box->setChecked(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *bar = window.findChild<QTabBar *>();
        bar->setCurrentIndex(tab == 1 ? 1 : 0);
        QTest::keyClick(window.focusWidget(), Qt::Key(Qt::Key_0 + tab), Qt::AltModifier);
        QCOMPARE(bar->currentIndex(), tab - 1);
        QCOMPARE(bar->tabToolTip(tab - 1), QStringLiteral("Alt+%1").arg(tab));
        QStringList keys = (QStringLiteral("theCancel=О theHelp=П theLoad=З theOK=К theSave=С "
                                           "theSaveAs=А") +
                            onPage)
                               .split(u' ');
        keys.sort();
        Check(window, keys.join(u' '));
    }

    void picker_data() {
        QTest::addColumn<int>("type");
        for (int type = 1; type <= 5; ++type) QTest::addRow("%d", type) << type;
    }
    void picker() {
        QFETCH(int, type);
        ModalDriver driver;
        driver.Expect([](QWidget &aWindow) {
            Check(aWindow, QStringLiteral("theCancel=О theCheckAll=П theCheckSelected=В theOK=К "
                                          "theUncheckAll=С theUncheckSelected=Т"));
            aWindow.close();
        });
        SelectObjectsForm().Execute(type, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void browser() {
        TemplateQuerierForm window;
        window.Prepare();
        window.show();
        Check(window, QStringLiteral("theClose=З"));
    }

    void tipsTellTheKeys() {
        DocQueryOptionsFrm window;
        window.SetRecord(nullptr);
        const auto tip = [&](const char *aName) {
            return window.findChild<QWidget *>(QString::fromLatin1(aName))->toolTip();
        };
        QCOMPARE(tip("theSave"), QStringLiteral("Alt+С"));
        QCOMPARE(tip("theHelp"), QStringLiteral("Справка (Alt+П, F1)"));
        QCOMPARE(tip("theTaxpayerDelete").left(7), QStringLiteral("Alt+У, "));
    }

    /// What has dropped down has the keyboard; nothing behind it is pressed.
    void dropDownHasTheLetters_data() {
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("element");
        QTest::newRow("years") << 2 << QStringLiteral("thePerYear1");
        QTest::newRow("months") << 2 << QStringLiteral("thePerMonth1");
        QTest::newRow("calendar") << 4 << QStringLiteral("theSignDate1");
    }
    void dropDownHasTheLetters() {
        QFETCH(int, tab);
        QFETCH(QString, element);
        DocQueryOptionsFrm window;
        window.SetRecord(nullptr);
        for (auto *box : window.findChildren<QCheckBox *>()) box->setChecked(true);
        window.findChild<QRadioButton *>(QStringLiteral("theRangePeriods"))->setChecked(true);
        window.findChild<DateBox *>(QStringLiteral("theSignDate1"))->SetValue(QDate(2025, 8, 15));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *bar = window.findChild<QTabBar *>();
        bar->setCurrentIndex(tab);
        auto *field = window.findChild<QWidget *>(element);
        field->setFocus();
        const auto text = [&] {
            auto *combo = qobject_cast<QComboBox *>(field);
            return combo ? combo->currentText() : static_cast<DateBox *>(field)->Edit()->text();
        };
        const QString before = text();
        std::vector<std::unique_ptr<QSignalSpy>> clicks;
        for (QPushButton *button : ButtonsOn(window)) {
            button->disconnect(SIGNAL(clicked(bool)));
            clicks.push_back(std::make_unique<QSignalSpy>(button, &QPushButton::clicked));
        }
        QVERIFY(clicks.size() > 5);
        const auto pressed = [&] {
            return std::ranges::any_of(clicks, [](const auto &click) { return !click->isEmpty(); });
        };
        QTest::keyClick(window.focusWidget(), Qt::Key_F4);
        QWidget *popup = QApplication::activePopupWidget();
        QVERIFY(popup);
        const auto labels = popup->findChildren<QLabel *>().size();
        const auto press = [&](QChar aKey) {
            QWidget *focus = popup->focusWidget() ? popup->focusWidget() : popup;
            QTest::sendKeyEvent(QTest::Click, focus, Qt::Key(aKey.unicode()),
                                QString(aKey.toLower()), Qt::AltModifier);
        };
        for (const QChar key : QStringLiteral("КЗПАR1PGF")) {
            press(key);
            QVERIFY(!pressed());
            QCOMPARE(QApplication::activePopupWidget(), popup);
            QCOMPARE(text(), before);
            QCOMPARE(bar->currentIndex(), tab);
            // A calendar would put a date to be typed over its days.
            QCOMPARE(popup->findChildren<QLabel *>().size(), labels);
        }
        // In the calendar this one is "Очистить"; in the dialog it would be "Отмена".
        press(u'О');
        QVERIFY(!pressed());
        QCOMPARE(text(), element == u"theSignDate1" ? QStringLiteral("..") : before);
        popup->close();
        QTest::sendKeyEvent(QTest::Click, window.focusWidget(), Qt::Key(0x041E),
                            QStringLiteral("о"), Qt::AltModifier);
        QTRY_VERIFY(pressed());
    }

    /// Only the dialog has help. Elsewhere the key is no letter of the filter, ends nothing and
    /// does not reach the dialog behind.
    void f1DoesNothingElsewhere() {
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *help = dialog.findChild<QPushButton *>(QStringLiteral("theHelp"));
        help->disconnect(SIGNAL(clicked(bool)));
        const QSignalSpy clicks(help, &QPushButton::clicked);
        const auto press = [&](QWidget &aWindow, const char *aFilter) {
            const QPointer<QWidget> window(&aWindow);
            auto *filter = aWindow.findChild<QWidget *>(QString::fromLatin1(aFilter));
            auto *line = qobject_cast<QLineEdit *>(filter);
            if (!line) line = filter->findChild<QLineEdit *>();
            line->setText(QStringLiteral("а"));
            int stops = 0;
            for (QWidget *element : aWindow.findChildren<QWidget *>()) {
                if (!element->isVisible() || (element->focusPolicy() & Qt::TabFocus) == 0) continue;
                element->setFocus();
                QTest::keyClick(aWindow.focusWidget(), Qt::Key_F1);
                QVERIFY(window && window->isVisible());
                QCOMPARE(line->text(), QStringLiteral("а"));
                ++stops;
            }
            QVERIFY(stops >= 5);
        };
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            press(aWindow, "theFilter");
            aWindow.close();
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        QVERIFY(QTest::qWaitForWindowActive(&browser));
        press(browser, "theFilterA");
        QCOMPARE(clicks.size(), 0);
    }

    void f1IsTheHelpButton_data() {
        QTest::addColumn<QString>("focus");
        for (const char *name : {"theTabBar", "theSave", "theSignerSurname", "theTaxpayersList"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void f1IsTheHelpButton() {
        QFETCH(QString, focus);
        DocQueryOptionsFrm window;
        window.SetRecord(nullptr);
        for (auto *box : window.findChildren<QCheckBox *>()) box->setChecked(true);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        auto *element = window.findChild<QWidget *>(focus);
        window.findChild<QTabBar *>()->setCurrentIndex(focus == u"theSignerSurname" ? 4 : 0);
        element->setFocus();
        auto *help = window.findChild<QPushButton *>(QStringLiteral("theHelp"));
        help->disconnect(SIGNAL(clicked(bool)));
        QSignalSpy clicks(help, &QPushButton::clicked);
        QTest::keyClick(element, Qt::Key_F1);
        QTRY_COMPARE(clicks.size(), 1);
    }
};

VK_TEST_CLASS(TestAltKeys);
#include "TestAltKeys.moc"
