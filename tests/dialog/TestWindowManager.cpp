#include <cstdlib>
#include <functional>
#include <memory>
#include <xcb/xcb.h>

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "lists/ListView.h"
#include "support/MemoryRecords.h"
#include "support/ModalDriver.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// What a pager or a taskbar does: it asks the window manager to close a window, which asks the
/// window.
class Taskbar {
public:
    Taskbar() : theConnection(xcb_connect(nullptr, nullptr)) {
        if (xcb_connection_has_error(theConnection) != 0) qFatal("no X server");
        theRoot = xcb_setup_roots_iterator(xcb_get_setup(theConnection)).data->root;
    }
    ~Taskbar() { xcb_disconnect(theConnection); }
    Q_DISABLE_COPY_MOVE(Taskbar)

    bool IsManaged() const {
        const auto name = Atom("_NET_SUPPORTING_WM_CHECK");
        auto *reply = xcb_get_property_reply(
            theConnection, xcb_get_property(theConnection, 0, theRoot, name, XCB_ATOM_WINDOW, 0, 1),
            nullptr);
        const bool isThere = reply && xcb_get_property_value_length(reply) > 0;
        std::free(reply);
        return isThere;
    }
    void Close(const QWidget &aWindow) const {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(aWindow.winId());
        event.type = Atom("_NET_CLOSE_WINDOW");
        event.data.data32[1] = 2;  // from a taskbar
        xcb_send_event(theConnection, 0, theRoot,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(theConnection);
    }

private:
    xcb_atom_t Atom(const char *aName) const {
        auto *reply = xcb_intern_atom_reply(
            theConnection,
            xcb_intern_atom(theConnection, 0, static_cast<quint16>(qstrlen(aName)), aName),
            nullptr);
        const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
        std::free(reply);
        return atom;
    }

    xcb_connection_t *theConnection;
    xcb_window_t theRoot = 0;
};

struct Road {
    std::function<bool()> Call;  ///< true if something came of it
    QList<std::function<void(QWidget &)>> Steps;
};

std::function<void(QWidget &)> Presses(const char *aButton) {
    return [aButton](QWidget &aWindow) {
        auto *button = aWindow.findChild<QPushButton *>(QString::fromLatin1(aButton));
        if (!button) qFatal("no button %s", aButton);
        QTest::mouseClick(button, Qt::LeftButton);
    };
}

bool ExecutesOnTaxpayers() {
    auto record = std::make_shared<VkDocQueryData>();
    record->LastTab = QStringLiteral("taxpayer");
    record->IsTaxpayers = true;
    DocQueryEditor editor;
    editor.SetRecord(record);
    const bool came = editor.Execute();
    return came || !record->TaxpayersList->IsEmpty();
}

void DoubleClickForm(QWidget &aWindow) {
    auto *list = aWindow.findChild<ListView *>(QStringLiteral("theFormList"));
    const QPoint point = list->RowRect(list->Row(0)).center();
    QTest::mouseMove(list->viewport(), point);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, point);
    QTest::mouseDClick(list->viewport(), Qt::LeftButton, {}, point);
}

}  // namespace

Q_DECLARE_METATYPE(Road)

/// The window manager closes our windows, those under another one first. Needs an X server with a
/// window manager.
class TestWindowManager : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        if (QGuiApplication::platformName() != QStringLiteral("xcb")) QSKIP("not on X11");
        theTaskbar = std::make_unique<Taskbar>();
        QTRY_VERIFY2(theTaskbar->IsManaged(), "no window manager");
        // One that is just starting may pass over the first window.
        bool isShown = false;
        for (int look = 0; look < 10 && !isShown; ++look) {
            QWidget probe;
            probe.show();
            isShown = QTest::qWaitForWindowExposed(&probe, 1000);
        }
        QVERIFY(isShown);
    }
    void init() {
        MemoryOffice::Install();
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

    void ClosedOneByOne_data() {
        QTest::addColumn<Road>("road");
        const auto row = [](const char *aName, const Road &aRoad) {
            QTest::newRow(aName) << aRoad;
        };
        const auto loads = [] { return DocQueryEditor().AskAndLoadQuery(0) != nullptr; };
        const auto browses = [] {
            TemplateQuerier().Execute();
            return false;
        };
        row("dialog", {&ExecutesOnTaxpayers, {}});
        row("file dialog", {loads, {}});
        row("file dialog over the dialog", {&ExecutesOnTaxpayers, {Presses("theLoad")}});
        row("question over the dialog", {&ExecutesOnTaxpayers, {Presses("theOK")}});
        row("picker", {&ExecutesOnTaxpayers, {Presses("theTaxpayerAdd")}});
        row("box over the picker",
            {&ExecutesOnTaxpayers, {Presses("theTaxpayerAdd"), Presses("theOK")}});
        row("browser", {browses, {}});
        row("box over the browser", {browses, {DoubleClickForm}});
    }
    void ClosedOneByOne() {
        QFETCH(Road, road);
        QWidget host;
        host.setGeometry(40, 40, 500, 300);
        host.show();
        QVERIFY(QTest::qWaitForWindowExposed(&host));
        ModalDriver driver;
        QList<QWidget *> open;
        const auto closeAll = [&](QWidget &top) {
            // Under the last window none can be closed; it would leave what stands on it.
            open << &top;
            for (QWidget *under : open) {
                if (under != &top) theTaskbar->Close(*under);
            }
            theTaskbar->Close(top);
        };
        for (const auto &step : road.Steps) {
            driver.Expect([&, step](QWidget &window) {
                open << &window;
                step(window);
                // The one over it has gone like a cancel; this one is up, and can be closed now.
                if (!window.isVisible()) driver.Complain(QStringLiteral("went along"));
                theTaskbar->Close(window);
            });
        }
        driver.Expect(closeAll);
        QVERIFY(!road.Call());
        QVERIFY2(driver.Done(), driver.Complaint());
        QVERIFY(host.isVisible());
        QVERIFY(!QApplication::activeModalWidget());
        for (const QWidget *window : QApplication::topLevelWidgets())
            QVERIFY2(window == &host || !window->isVisible(), window->metaObject()->className());
    }

private:
    std::unique_ptr<Taskbar> theTaskbar;
};

VK_TEST_CLASS(TestWindowManager);

#include "TestWindowManager.moc"
