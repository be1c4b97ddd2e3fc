#include <QApplication>
#include <QCheckBox>
#include <QProcess>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTabBar>
#include <QTest>

#include "browser/TemplateQuerierForm.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "look/Operable.h"
#include "picker/ObjectTypes.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A key of the keyboard, by its number, whatever stands on it in the layout that is on.
struct Key {
    char16_t Russian;
    int Number;
};
constexpr int theTab = 23;
constexpr int theAlt = 64;
constexpr int theFirstDigit = 10;
constexpr Key theKeys[] = {
    {u'У', 26}, {u'К', 27}, {u'З', 33}, {u'В', 40}, {u'А', 41},
    {u'П', 42}, {u'О', 44}, {u'Д', 46}, {u'С', 54}, {u'Т', 57},
};

bool Run(const char *aProgram, const QStringList &aArguments) {
    QProcess process;
    process.start(QString::fromLatin1(aProgram), aArguments);
    return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

/// The keys go down in that order and up again, as the server has them from a keyboard.
void Press(std::initializer_list<int> aKeys) {
    QStringList numbers;
    for (const int key : aKeys) numbers << QString::number(key);
    if (!Run("xdotool", {QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("0"),
                         numbers.join(u'+')}))
        qFatal("xdotool failed");
}

struct Button {
    QString Name;
    int Number;
};
/// Of "theOK=К theCancel=О", the buttons and the letters that press them.
QList<Button> ButtonsIn(const QString &aKeys) {
    QList<Button> buttons;
    for (const QString &pair : aKeys.split(u' ')) {
        const QChar letter = pair.back();
        const auto *key = std::ranges::find(theKeys, letter.unicode(), &Key::Russian);
        if (key == std::end(theKeys)) qFatal("no such key");
        buttons << Button{pair.section(u'=', 0, 0), key->Number};
    }
    return buttons;
}

/// Presses Tab until the focus comes round, and gives the names of what it was on.
QStringList WalkedByTab(const QWidget &aWindow) {
    constexpr int theMost = 60;
    const QWidget *first = aWindow.focusWidget();
    QStringList names;
    for (int i = 0; i < theMost; ++i) {
        const QWidget *focus = aWindow.focusWidget();
        names << NameOf(focus);
        Press({theTab});
        if (!QTest::qWaitFor([&] { return aWindow.focusWidget() != focus; })) return {};
        if (aWindow.focusWidget() == first) break;
    }
    names.removeDuplicates();
    names.sort();
    return names;
}

/// The buttons that do not answer their keys with one click. Nothing else happens by it.
QStringList Deaf(const QWidget &aWindow, const QString &aKeys) {
    QStringList deaf;
    for (const Button &button : ButtonsIn(aKeys)) {
        auto *element = aWindow.findChild<QPushButton *>(button.Name);
        if (!element) qFatal("no such button");
        element->disconnect(SIGNAL(clicked(bool)));
        const QSignalSpy clicks(element, &QPushButton::clicked);
        Press({theAlt, button.Number});
        if (!QTest::qWaitFor([&] { return clicks.size() == 1; })) deaf << button.Name;
    }
    return deaf;
}

}  // namespace

/// The windows walked through with the keyboard, whose keys come from the server, in the layouts
/// that the users have. Needs a display of its own: the layout is changed.
class TestRealKeys : public QObject {
    Q_OBJECT

private:
    /// Every button and tab is reached by Tab and pressed by its Alt key.
    static void Walk(QWidget &aWindow, const QString &aKeys) {
        QVERIFY(QTest::qWaitForWindowActive(&aWindow));
        if (!aWindow.focusWidget()) Press({theTab});
        QTRY_VERIFY(aWindow.focusWidget());
        const QStringList walked = WalkedByTab(aWindow);
        QCOMPARE(walked, Operable(aWindow));
        for (const Button &button : ButtonsIn(aKeys))
            QVERIFY2(walked.contains(button.Name), qPrintable(button.Name));
        QCOMPARE(Deaf(aWindow, aKeys), QStringList());
    }
    static void TakeLayout(const QString &aLayout) {
        if (!Run("setxkbmap", {aLayout})) qFatal("setxkbmap failed");
    }

private slots:
    void initTestCase() {
        for (const char *tool : {"openbox", "xdotool", "setxkbmap"})
            if (QStandardPaths::findExecutable(QString::fromLatin1(tool)).isEmpty())
                QSKIP("openbox, xdotool or setxkbmap is missing");
        theManager.start(QStringLiteral("openbox"), {});
        QVERIFY(theManager.waitForStarted());
        QTRY_VERIFY(Run("xdotool", {QStringLiteral("get_num_desktops")}));
    }
    void cleanupTestCase() {
        theManager.terminate();
        theManager.waitForFinished();
    }
    void init() { MemoryOffice::Install(); }
    void cleanup() { MemoryOffice::Clear(); }

    void Dialog_data() {
        QTest::addColumn<QString>("layout");
        QTest::addColumn<int>("tab");
        QTest::addColumn<QString>("onPage");
        for (const char *layout : {"us", "ru"}) {
            const auto row = [&](int aTab, const char *aOnPage) {
                QTest::addRow("%s, tab %d", layout, aTab)
                    << QString::fromLatin1(layout) << aTab << QString::fromUtf8(aOnPage);
            };
            row(1, " theTaxpayerAdd=Д theTaxpayerDelete=У");
            row(2, " theAccStreamAdd=Д theAccStreamDelete=У");
            row(3, "");
            row(4, " theTemplatesAdd=Д theTemplatesDelete=У");
            row(5, "");
        }
    }
    void Dialog() {
        QFETCH(QString, layout);
        QFETCH(int, tab);
        QFETCH(QString, onPage);
        TakeLayout(layout);
        DocQueryOptionsFrm dialog;
        dialog.SetRecord(nullptr);
        for (auto *box : dialog.findChildren<QCheckBox *>()) box->setChecked(true);
        for (const char *option : {"theRangePeriods", "theDocNumRange", "theNotesLike"})
            dialog.findChild<QRadioButton *>(QString::fromLatin1(option))->setChecked(true);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        auto *bar = dialog.findChild<QTabBar *>();
        bar->setCurrentIndex(tab % 5);
        Press({theAlt, theFirstDigit + tab - 1});
        QTRY_COMPARE(bar->currentIndex(), tab - 1);
        Walk(dialog, QStringLiteral("theLoad=З theSave=С theSaveAs=А theHelp=П theOK=К "
                                    "theCancel=О") +
                         onPage);
    }

    void Picker_data() {
        QTest::addColumn<QString>("layout");
        for (const char *layout : {"us", "ru"})
            QTest::newRow(layout) << QString::fromLatin1(layout);
    }
    void Picker() {
        QFETCH(QString, layout);
        TakeLayout(layout);
        ModalDriver driver;
        driver.Expect([](QWidget &aWindow) {
            const auto end = qScopeGuard([&] { aWindow.close(); });
            Walk(aWindow, QStringLiteral("theCheckAll=П theUncheckAll=С theCheckSelected=В "
                                         "theUncheckSelected=Т theOK=К theCancel=О"));
        });
        SelectObjectsForm().Execute(TaxpayerPersons, nullptr);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void Browser_data() { Picker_data(); }
    void Browser() {
        QFETCH(QString, layout);
        TakeLayout(layout);
        TemplateQuerierForm browser;
        browser.Prepare();
        browser.show();
        Walk(browser, QStringLiteral("theClose=З"));
    }

private:
    QProcess theManager;
};

VK_TEST_CLASS(TestRealKeys);
#include "TestRealKeys.moc"
