#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

#include <QApplication>
#include <QDialog>
#include <QPushButton>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/HostServices.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A program that knows nothing of Qt, as the X server sees it: a connection and a window.
class ForeignProgram {
public:
    ForeignProgram() : theConnection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(theConnection) != 0) qFatal("no X server");
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(theConnection)).data;
        theWindow = xcb_generate_id(theConnection);
        xcb_create_window(theConnection, XCB_COPY_FROM_PARENT, theWindow, screen->root, 100, 80,
                          600, 500, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0,
                          nullptr);
        xcb_map_window(theConnection, theWindow);
        Sync();
    }
    ~ForeignProgram() { xcb_disconnect(theConnection); }
    Q_DISABLE_COPY_MOVE(ForeignProgram)

    WId Handle() const { return theWindow; }
    void Destroy() const {
        xcb_destroy_window(theConnection, theWindow);
        Sync();
    }
    /// What the window manager reads; 0 for a window that stands on nobody.
    WId OwnerOf(const QWidget &aWindow) const {
        const auto cookie =
            xcb_get_property(theConnection, 0, static_cast<xcb_window_t>(aWindow.window()->winId()),
                             XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW, 0, 1);
        const std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(theConnection, cookie, nullptr), &std::free);
        if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_window_t)) return 0;
        return *static_cast<const xcb_window_t *>(xcb_get_property_value(reply.get()));
    }

private:
    void Sync() const {
        std::free(
            xcb_get_input_focus_reply(theConnection, xcb_get_input_focus(theConnection), nullptr));
    }

    xcb_connection_t *theConnection;
    xcb_window_t theWindow = 0;
};

using Call = std::function<void(WId)>;

}  // namespace

Q_DECLARE_METATYPE(Call)

/// Our windows stand on one that is none of Qt's. Needs an X server.
class TestForeignHost : public QObject {
    Q_OBJECT

private slots:
    void init() {
        if (QGuiApplication::platformName() != QStringLiteral("xcb")) QSKIP("not on X11");
        MemoryOffice::Install();
        theProgram = std::make_unique<ForeignProgram>();
    }
    void cleanup() { SetHostWindow(0); }

    void StandsOnIt_data() {
        QTest::addColumn<Call>("call");
        QTest::addColumn<bool>("said");
        AddCalls();
    }
    void StandsOnIt() {
        QFETCH(Call, call);
        QFETCH(bool, said);
        if (said) SetHostWindow(theProgram->Handle());
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            if (theProgram->OwnerOf(window) != theProgram->Handle())
                driver.Complain(QStringLiteral("owner is %1").arg(theProgram->OwnerOf(window)));
            const QPoint between = window.frameGeometry().center() - QPoint(400, 330);
            const bool fits = window.width() < 600 && window.height() < 500;
            if (fits && between.manhattanLength() > 20)
                driver.Complain(
                    QStringLiteral("%1, %2 off its middle").arg(between.x()).arg(between.y()));
            window.close();
        });
        call(said ? 0 : theProgram->Handle());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void TakenBackItIsNobodysOwner() {
        SetHostWindow(theProgram->Handle());
        SetHostWindow(0);
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            if (theProgram->OwnerOf(window) == theProgram->Handle())
                driver.Complain(QStringLiteral("still the owner"));
            window.close();
        });
        ShowInfoBox(QStringLiteral("T"), QStringLiteral("T"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// What is up stands under what comes, whatever the host has said.
    void BoxStandsOnTheDialog() {
        SetHostWindow(theProgram->Handle());
        ModalDriver driver;
        driver.Expect([&](QWidget &dialog) {
            driver.Expect([&](QWidget &box) {
                if (theProgram->OwnerOf(box) != dialog.winId())
                    driver.Complain(QStringLiteral("the box is not over the dialog"));
                box.close();
            });
            driver.Click(dialog.findChild<QPushButton *>(QStringLiteral("theOK")));
            dialog.close();
        });
        QVERIFY(!DocQueryEditor().Execute());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void GoesWithIt_data() {
        QTest::addColumn<Call>("call");
        QTest::addColumn<bool>("said");
        AddCalls();
        QTest::newRow("browser") << Call([](WId) { TemplateQuerier().Execute(); }) << true;
    }
    void GoesWithIt() {
        QFETCH(Call, call);
        QFETCH(bool, said);
        if (said) SetHostWindow(theProgram->Handle());
        ModalDriver driver;
        driver.Expect([&](QWidget &) { theProgram->Destroy(); });
        call(said ? 0 : theProgram->Handle());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(!QApplication::activeModalWidget());
    }

    /// A handle that was not taken back in time does no harm.
    void WindowThatIsNoMore() {
        SetHostWindow(theProgram->Handle());
        theProgram->Destroy();
        ModalDriver driver;
        driver.ExpectBox(QMessageBox::Information, QStringLiteral("T"), QStringLiteral("T"),
                         QStringLiteral("OK"));
        ShowInfoBox(QStringLiteral("T"), QStringLiteral("T"));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

private:
    /// The browser, which can be minimised, is a window of its own for the window manager.
    static void AddCalls() {
        QTest::newRow("box") << Call([](WId) {
            ShowInfoBox(QStringLiteral("T"), QStringLiteral("T"));
        }) << true;
        QTest::newRow("dialog") << Call([](WId) { DocQueryEditor().Execute(); }) << true;
        QTest::newRow("file dialog") << Call(LoadsOver) << true;
        QTest::newRow("file dialog, handle given") << Call(LoadsOver) << false;
    }
    static void LoadsOver(WId aHwnd) { DocQueryEditor().AskAndLoadQuery(aHwnd); }

    std::unique_ptr<ForeignProgram> theProgram;
};

VK_TEST_CLASS(TestForeignHost);

#include "TestForeignHost.moc"
