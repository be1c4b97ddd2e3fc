#include <QCheckBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include "browser/TemplateQuerierForm.h"
#include "controls/CheckBox.h"
#include "dialog/DocQueryOptionsFrm.h"
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
