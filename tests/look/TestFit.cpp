#include <cmath>

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTabBar>
#include <QTest>
#include <QWindow>

#include "browser/TemplateQuerierForm.h"
#include "controls/Sheet.h"
#include "dialog/DocQueryOptionsFrm.h"
#include "lists/ListView.h"
#include "look/Operable.h"
#include "look/Overlaps.h"
#include "picker/SelectObjectsForm.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/ScreenSize.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"
#include "windows/mVkGraphLight.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

enum class Which { Dialog, Picker, Browser };

/// One of the windows on the screen, without a loop of its own; of the dialog with every criterion.
struct OpenWindow {
    explicit OpenWindow(Which aWhich, bool aMaximized = false) {
        if (aWhich == Which::Dialog) {
            auto dialog = std::make_unique<DocQueryOptionsFrm>();
            dialog->SetRecord(nullptr);
            TurnEverythingOn(*dialog);
            for (const char *option : {"theRangePeriods", "theDocNumRange", "theNotesLike"})
                dialog->findChild<QRadioButton *>(QString::fromLatin1(option))->setChecked(true);
            Window = std::move(dialog);
        } else if (aWhich == Which::Picker) {
            Window = std::make_unique<SelectObjectsForm>();
        } else {
            auto browser = std::make_unique<TemplateQuerierForm>();
            browser->Prepare();
            Window = std::move(browser);
        }
        if (aMaximized)
            Window->showMaximized();
        else
            Window->show();
        // Without a window manager nobody gives a second window the focus.
        const bool up = QGuiApplication::platformName() == u"offscreen"
                            ? QTest::qWaitForWindowActive(Window.get())
                            : QTest::qWaitForWindowExposed(Window.get());
        if (!up) qFatal("the window does not come up");
    }
    template <class Kind = QWidget>
    Kind &Get(const char *aName) const {
        auto *element = Window->findChild<Kind *>(QString::fromLatin1(aName));
        if (!element) qFatal("no element %s", aName);
        return *element;
    }
    /// The pages of the dialog; a window without tabs counts as one.
    int Pages() const {
        const auto *bar = Window->findChild<QTabBar *>();
        return bar ? bar->count() : 1;
    }
    void Open(int aPage) const {
        if (auto *bar = Window->findChild<QTabBar *>()) bar->setCurrentIndex(aPage);
        QApplication::processEvents();
    }
    const QWidget &operator*() const { return *Window; }

    std::unique_ptr<QWidget> Window;
};

QRect Available() {
    return QGuiApplication::primaryScreen()->availableGeometry();
}

QString Told(const QRect &aRect) {
    return QStringLiteral("%1, %2, %3 x %4")
        .arg(aRect.x())
        .arg(aRect.y())
        .arg(aRect.width())
        .arg(aRect.height());
}

/// Every place to which the area that is open in the window can be scrolled, in pages.
template <class Look>
void AtEveryScroll(const QWidget &aWindow, Look aLook) {
    const auto areas = aWindow.findChildren<Sheet *>();
    for (Sheet *sheet : areas) {
        if (!sheet->isVisible()) continue;
        for (QScrollBar *bar : {sheet->verticalScrollBar(), sheet->horizontalScrollBar()}) {
            const int before = bar->value();
            for (int value = 0; value < bar->maximum() + bar->pageStep();
                 value += bar->pageStep()) {
                bar->setValue(value);
                aLook();
            }
            bar->setValue(before);
        }
    }
}

/// What a caption in a list, a date or a combo is shown by cannot have the focus itself.
QList<QWidget *> FocusStops(const QWidget &aWindow) {
    QList<QWidget *> stops;
    for (QWidget *element : aWindow.findChildren<QWidget *>())
        if (element->isVisible() && element->isEnabled() && !element->focusProxy() &&
            (element->focusPolicy() & Qt::TabFocus) != 0)
            stops << element;
    return stops;
}

/// The desktop gives a maximised window its size, in whole pixels of the screen. Its edges and
/// those of its frame are rounded one by one where the program's pixels are larger than those.
bool IsOnScreen(const QWidget &aWindow) {
    const double scale = aWindow.devicePixelRatioF();
    const int rounding = aWindow.isMaximized() && scale != std::floor(scale) ? 1 : 0;
    return Available().adjusted(0, 0, rounding, rounding).contains(aWindow.frameGeometry());
}

}  // namespace

/// All windows on the screen that this run was started for, which the environment tells.
class TestFit : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { MemoryOffice::Install(); }

    /// Without this the other tests could pass on another screen.
    void RunIsSetUp() {
        const QString wanted = qEnvironmentVariable("VK_SCREENS");
        if (wanted.isEmpty()) return;
        const QScreen *screen = QGuiApplication::primaryScreen();
        const QSize pixels = screen->size() * screen->devicePixelRatio();
        QVERIFY2(std::abs(pixels.width() - wanted.section(u'x', 0, 0).toInt()) <= 2,
                 qPrintable(wanted));
        const int percent = qEnvironmentVariableIntValue("VK_RESOLUTION");
        QCOMPARE(std::lround(screen->devicePixelRatio() * screen->logicalDotsPerInchX() / 0.96),
                 percent);
    }

    void WindowsStayOnTheScreen_data() { Windows(); }
    void WindowsStayOnTheScreen() {
        const OpenWindow open = Fetched();
        QTRY_VERIFY2(IsOnScreen(*open), qPrintable(Told((*open).frameGeometry())));
    }

    void NothingIsCovered_data() { Windows(); }
    void NothingIsCovered() {
        const OpenWindow open = Fetched();
        for (int page = 0; page < open.Pages(); ++page) {
            open.Open(page);
            QByteArray faults;
            int looks = 0;
            AtEveryScroll(*open, [&] {
                faults += Overlaps(*open);
                ++looks;
            });
            QVERIFY2(faults.isEmpty(), faults);
            QVERIFY(looks > 0);
        }
    }

    void FocusBringsIntoView_data() { Windows(); }
    void FocusBringsIntoView() {
        const OpenWindow open = Fetched();
        int stops = 0;
        for (int page = 0; page < open.Pages(); ++page) {
            open.Open(page);
            const QList<QWidget *> elements = FocusStops(*open);
            // There and back, so that each one is come to from above and from below.
            for (qsizetype i = 0; i < 2 * elements.size(); ++i) {
                QWidget *element = elements.at(std::min(i, 2 * elements.size() - 1 - i));
                element->setFocus(Qt::TabFocusReason);
                if (!element->hasFocus()) continue;
                const QRect shown = Shown(*element, *open);
                const QRect whole(element->mapTo(open.Window.get(), QPoint(0, 0)), element->size());
                const bool list = qobject_cast<ListView *>(element) != nullptr;
                QVERIFY2(list ? shown.height() > PixelsFromTwips(1000)
                              : shown.height() == whole.height(),
                         qPrintable(NameOf(element) + QStringLiteral(": ") + Told(shown)));
                QVERIFY2(shown.width() > 0, qPrintable(NameOf(element)));
                ++stops;
            }
        }
        QVERIFY(stops > 8);
    }

    /// What ends a window is seen at once, and all tabs are.
    void ButtonsAreSeen_data() { Windows(); }
    void ButtonsAreSeen() {
        const OpenWindow open = Fetched();
        int seen = 0;
        for (const char *name :
             {"theLoad", "theSave", "theSaveAs", "theHelp", "theOK", "theCancel", "theCheckAll",
              "theUncheckAll", "theCheckSelected", "theUncheckSelected", "theClose"}) {
            const auto *button = open.Window->findChild<QAbstractButton *>(QLatin1String(name));
            if (!button) continue;
            const QRect whole(button->mapTo(open.Window.get(), QPoint(0, 0)), button->size());
            QVERIFY2((*open).rect().contains(whole), name);
            QCOMPARE(button->visibleRegion(), QRegion(button->rect()));
            ++seen;
        }
        QVERIFY(seen > 0);
        if (const auto *bar = open.Window->findChild<QTabBar *>())
            for (int i = 0; i < bar->count(); ++i) {
                QVERIFY(bar->rect().contains(bar->tabRect(i)));
                QVERIFY(bar->visibleRegion().contains(bar->tabRect(i)));
            }
    }

    /// In a window as small as the user can make it, too.
    void SmallestWindow_data() { Windows({false}); }
    void SmallestWindow() {
        const OpenWindow open = Fetched();
        open.Window->resize(1, 1);
        QCOMPARE(open.Window->size(), open.Window->minimumSize());
        QVERIFY((*open).height() > PixelsFromTwips(2000));
        for (int page = 0; page < open.Pages(); ++page) {
            open.Open(page);
            QByteArray faults;
            AtEveryScroll(*open, [&] { faults += Overlaps(*open); });
            QVERIFY2(faults.isEmpty(), faults);
        }
        for (const char *name : {"theLoad", "theHelp", "theOK", "theCancel", "theClose"})
            if (const auto *button = open.Window->findChild<QAbstractButton *>(QLatin1String(name)))
                QCOMPARE(button->visibleRegion(), QRegion(button->rect()));
    }

    void BoxesStayOnTheScreen_data() {
        QTest::addColumn<QString>("text");
        QString chain;
        for (int i = 0; i < 200; ++i)
            chain += QStringLiteral("[Vk_DocQuery::SelectObjectsForm.LoadAllObjects]\r\n");
        QTest::newRow("long chain") << chain + QStringLiteral("Ошибка");
        QTest::newRow("long path") << QStringLiteral("Ошибка сохранения файла \"/") +
                                          QString(3000, u'ш') + QStringLiteral("\":\r\nнет места");
        QTest::newRow("short") << QStringLiteral("Ошибка");
    }
    void BoxesStayOnTheScreen() {
        QFETCH(QString, text);
        ModalDriver driver;
        driver.Expect([&](QWidget &aWindow) {
            auto *box = qobject_cast<QMessageBox *>(&aWindow);
            if (!box || box->text() != text) driver.Complain(QStringLiteral("the text"));
            if (!Available().contains(aWindow.frameGeometry()))
                driver.Complain(Told(aWindow.frameGeometry()));
            auto *button = aWindow.findChild<QAbstractButton *>();
            if (button->visibleRegion() != QRegion(button->rect()))
                driver.Complain(QStringLiteral("the button is cut"));
            const auto *area = aWindow.findChild<QScrollArea *>();
            const QScrollBar *bar = area ? area->verticalScrollBar() : nullptr;
            const QScrollBar *across = area ? area->horizontalScrollBar() : nullptr;
            const bool scrolls = area && (bar->maximum() > 0 || across->maximum() > 0);
            if (scrolls != (text.size() > 100)) driver.Complain(QStringLiteral("scrolling"));
            driver.Click(button);
        });
        ShowFailureBox(text, QStringLiteral("Ошибка"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

private:
    static void Windows(std::initializer_list<bool> aMaximized = {false, true}) {
        QTest::addColumn<int>("which");
        QTest::addColumn<bool>("maximized");
        for (const bool maximized : aMaximized) {
            const char *how = maximized ? ", maximised" : "";
            QTest::addRow("dialog%s", how) << int(Which::Dialog) << maximized;
            QTest::addRow("picker%s", how) << int(Which::Picker) << maximized;
            QTest::addRow("browser%s", how) << int(Which::Browser) << maximized;
        }
    }
    static OpenWindow Fetched() {
        QFETCH(int, which);
        QFETCH(bool, maximized);
        return OpenWindow(Which(which), maximized);
    }
};

/// Screens that differ or are smaller than any window, which VK_SCREENS tells.
class TestScreens : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        MemoryOffice::Install();
        if (QGuiApplication::screens().size() != 2)
            QSKIP("the run has one screen; VK_SCREENS=\"1920x1080 640x400\" gives it two");
    }

    /// The second screen is too small for what the windows need: they are scrolled as a whole.
    void AWindowGoesToASmallScreen_data() {
        QTest::addColumn<int>("which");
        QTest::newRow("dialog") << int(Which::Dialog);
        QTest::newRow("picker") << int(Which::Picker);
        QTest::newRow("browser") << int(Which::Browser);
    }
    void AWindowGoesToASmallScreen() {
        QFETCH(int, which);
        const OpenWindow open{Which(which)};
        const QSize large = (*open).size();
        const QSize least = open.Window->minimumSize();
        QScreen *small = QGuiApplication::screens().at(1);
        QVERIFY(least.width() > small->availableSize().width());
        open.Window->windowHandle()->setScreen(small);
        QTRY_VERIFY(small->availableGeometry().contains((*open).frameGeometry()));
        QVERIFY(open.Window->minimumSize().width() < least.width());
        auto *sheet = open.Window->findChild<Sheet *>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(sheet->horizontalScrollBar()->maximum() > 0);
        // The last button is off to the right, and Tab brings it.
        if (auto *cancel = open.Window->findChild<QAbstractButton *>(QStringLiteral("theCancel"))) {
            QVERIFY(cancel->visibleRegion() != QRegion(cancel->rect()));
            cancel->setFocus(Qt::TabFocusReason);
            QTRY_COMPARE(cancel->visibleRegion(), QRegion(cancel->rect()));
        }
        const QByteArray overlaps = Overlaps(*open);
        QVERIFY2(overlaps.isEmpty(), overlaps);
        // Back on the large screen the user can give the window its size again.
        open.Window->windowHandle()->setScreen(QGuiApplication::primaryScreen());
        QTRY_COMPARE(open.Window->minimumSize(), least);
        open.Window->resize(large);
        QTRY_COMPARE(sheet->horizontalScrollBar()->maximum(), 0);
    }

    /// A window comes up on the screen of its owner and has the size for that.
    void AWindowComesUpOnTheScreenOfItsOwner() {
        QScreen *small = QGuiApplication::screens().at(1);
        QWidget owner;
        owner.setGeometry(small->geometry().adjusted(50, 50, -100, -100));
        owner.show();
        QVERIFY(QTest::qWaitForWindowActive(&owner));
        owner.windowHandle()->setScreen(small);
        TemplateQuerierForm browser(&owner);
        browser.Prepare();
        browser.show();
        QVERIFY(QTest::qWaitForWindowActive(&browser));
        QTRY_VERIFY2(small->availableGeometry().contains(browser.frameGeometry()),
                     qPrintable(Told(browser.frameGeometry())));
    }
};

/// A display that gets smaller while a window is up, as when a projector is plugged in. Needs a
/// server of its own: xrandr changes it.
class TestShrinkingScreen : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        MemoryOffice::Install();
        if (QStandardPaths::findExecutable(QStringLiteral("xrandr")).isEmpty())
            QSKIP("there is no xrandr");
    }
    void cleanup() { SetScreen({1366, 768}); }

    void WindowsFollow_data() {
        QTest::addColumn<int>("which");
        QTest::addColumn<QSize>("screen");
        for (const auto &[name, which] :
             {std::pair{"dialog", Which::Dialog}, std::pair{"picker", Which::Picker},
              std::pair{"browser", Which::Browser}}) {
            // On the one it has room and is only out of sight, for the other it is too large.
            QTest::addRow("%s, moved in", name) << int(which) << QSize(1300, 760);
            QTest::addRow("%s, made smaller", name) << int(which) << QSize(800, 480);
        }
    }
    void WindowsFollow() {
        QFETCH(int, which);
        QFETCH(QSize, screen);
        const OpenWindow open{Which(which)};
        QWidget &window = *open.Window;
        const QRect large = Available();
        window.move(large.right() + 1 - window.width(), large.bottom() + 1 - window.height());
        QTRY_COMPARE(window.frameGeometry().bottomRight(), large.bottomRight());
        const QSize before = window.size();
        SetScreen(screen);
        QTRY_VERIFY2(IsOnScreen(window), qPrintable(Told(window.frameGeometry())));
        QCOMPARE(window.size() == before, before.boundedTo(Available().size()) == before);
        const QByteArray overlaps = Overlaps(window);
        QVERIFY2(overlaps.isEmpty(), overlaps);
    }

    /// A window that is still seen whole stays where the user has put it.
    void WindowsStay() {
        const OpenWindow open{Which::Picker};
        open.Window->move(37, 21);
        QTRY_COMPARE(open.Window->pos(), QPoint(37, 21));
        SetScreen({1300, 760});
        QCOMPARE(open.Window->pos(), QPoint(37, 21));
    }

private:
    static void SetScreen(QSize aSize) {
        QVERIFY(SetScreenSize(aSize));
        QApplication::processEvents();
    }
};

VK_TEST_CLASS(TestFit);
VK_TEST_CLASS(TestShrinkingScreen);
VK_TEST_CLASS(TestScreens);
#include "TestFit.moc"
