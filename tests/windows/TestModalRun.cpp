#include <memory>
#include <thread>
#include <vector>

#include <QApplication>
#include <QDialog>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "support/ModalDriver.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"
#include "windows/Boxes.h"
#include "windows/ModalRun.h"

using namespace Vk_DocQuery;
using namespace VkTests;

namespace {

/// A window that a host has standing around.
struct Standing {
    QSize Size{400, 300};
    Qt::WindowFlags Flags = Qt::Window;
    bool IsMinimised = false;
    bool IsShown = true;
    bool IsWidget = true;
};

using Windows = std::vector<Standing>;

/// A widget's window, or one without a widget.
struct Host {
    explicit Host(const Standing &aStanding) {
        if (aStanding.IsWidget) {
            Widget = std::make_unique<QWidget>(nullptr, aStanding.Flags);
            Widget->resize(aStanding.Size);
            Widget->winId();
        } else {
            Bare = std::make_unique<QWindow>();
            Bare->resize(aStanding.Size);
            Bare->create();
        }
        if (!aStanding.IsShown) return;
        if (Widget) Widget->show();
        if (aStanding.IsMinimised) Window()->setWindowState(Qt::WindowMinimized);
        Window()->setVisible(true);
    }
    QWindow *Window() const { return Widget ? Widget->windowHandle() : Bare.get(); }

    std::unique_ptr<QWidget> Widget;
    std::unique_ptr<QWindow> Bare;
};

/// On whom a box stands.
QWindow *OwnerOfABox() {
    QWindow *owner = nullptr;
    ModalDriver driver;
    driver.Expect([&](QWidget &box) {
        owner = box.windowHandle()->transientParent();
        box.close();
    });
    ShowInfoBox(QStringLiteral("T"), QStringLiteral("T"));
    return driver.Done() ? owner : nullptr;
}

/// As when the user is in another program.
bool LeaveTheProgram() {
    {
        QWidget last;
        last.show();
        last.activateWindow();
        if (!QTest::qWaitForWindowActive(&last)) return false;
    }
    return QTest::qWaitFor(
        [] { return !QApplication::activeWindow() && !QGuiApplication::focusWindow(); });
}

}  // namespace

Q_DECLARE_METATYPE(Windows)

class TestModalRun : public QObject {
    Q_OBJECT

private slots:
    void OwnerWhereNoWindowIsActive_data() {
        QTest::addColumn<Windows>("windows");
        QTest::addColumn<int>("owner");
        const Standing plain;
        const Standing hidden{.IsShown = false};
        const Standing large{.Size = {900, 600}};
        const Standing minimised{.Size = {900, 600}, .IsMinimised = true};
        const Standing splash{.Size = {900, 600}, .Flags = Qt::SplashScreen};
        const Standing tool{.Size = {900, 600}, .Flags = Qt::Tool};
        const Standing popup{.Size = {900, 600}, .Flags = Qt::ToolTip};
        const Standing bare{.IsWidget = false};
        QTest::newRow("none") << Windows{} << -1;
        QTest::newRow("the only one") << Windows{plain} << 0;
        QTest::newRow("hidden") << Windows{hidden} << -1;
        QTest::newRow("hidden beside") << Windows{hidden, plain} << 1;
        QTest::newRow("larger") << Windows{plain, large, plain} << 1;
        QTest::newRow("minimised") << Windows{minimised} << 0;
        QTest::newRow("minimised beside") << Windows{minimised, plain} << 1;
        QTest::newRow("splash, tool, tip") << Windows{splash, tool, popup, plain} << 3;
        QTest::newRow("splash alone") << Windows{splash} << -1;
        QTest::newRow("no widget") << Windows{bare} << 0;
    }
    void OwnerWhereNoWindowIsActive() {
        QFETCH(Windows, windows);
        QFETCH(int, owner);
        std::vector<Host> hosts;
        for (const Standing &standing : windows) hosts.emplace_back(standing);
        QVERIFY(LeaveTheProgram());
        const QWindow *found = OwnerOfABox();
        const QWindow *expected =
            owner < 0 ? nullptr : hosts[static_cast<std::size_t>(owner)].Window();
        QCOMPARE(found, expected);
    }

    void ActiveOneComesFirst() {
        const Host large(Standing{.Size = {900, 600}});
        const Host active{Standing{}};
        active.Widget->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(active.Widget.get()));
        QCOMPARE(OwnerOfABox(), active.Window());
    }

    void WindowWithoutAWidgetTakesItsBoxAlong() {
        auto *host = new QWindow;
        host->resize(300, 200);
        host->show();
        QVERIFY(QTest::qWaitForWindowActive(host));
        ModalDriver driver;
        driver.Expect([&](QWidget &) { delete host; });
        QVERIFY(!AskYesNo(QStringLiteral("T"), QStringLiteral("T")));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void NothingComesUpWhenTheOwnerHasGone() {
        auto owner = std::make_unique<QWidget>();
        owner->show();
        owner->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(owner.get()));
        QDialog window;
        ModalRun run(window);
        QCOMPARE(run.OwnerWidget(), owner.get());
        owner.reset();
        const ModalDriver driver;
        QCOMPARE(run.Exec(), int(QDialog::Rejected));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void BoxOfAnotherThreadIsAFailure() {
        const ModalDriver driver;
        Failure failure(0, QString(), QString());
        std::thread([&] {
            failure = RaisedBy([] { ShowInfoBox(QStringLiteral("T"), QStringLiteral("T")); });
        }).join();
        QCOMPARE(failure.Source(), QStringLiteral("QThread"));
        QCOMPARE(failure.Description(),
                 QStringLiteral("Вызов из другого потока: с окнами можно работать только в том "
                                "потоке, где создано приложение."));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// A loop that was ended from outside leaves no window standing that answers nothing.
    void LoopThatIsEndedFromOutside() {
        QDialog window;
        ModalDriver driver;
        driver.Expect([](QWidget &) { QCoreApplication::exit(); });
        int result = -1;
        QTimer::singleShot(0, &window, [&] { result = ModalRun(window).Exec(); });
        QCoreApplication::exec();  // at its end loops can run again
        QCOMPARE(result, int(QDialog::Rejected));
        QVERIFY(!window.isVisible());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    /// The last window of a program that goes ends the program, but ours says nothing of that.
    void ClosingOursDoesNotEndTheProgram() {
        QVERIFY(LeaveTheProgram());
        QDialog window;
        ModalDriver driver;
        driver.Expect([](QWidget &shown) { shown.close(); });
        ModalRun(window).Exec();
        QVERIFY(!window.testAttribute(Qt::WA_QuitOnClose));
        QVERIFY2(driver.Done(), driver.Complaint());
    }
};

VK_TEST_CLASS(TestModalRun);

#include "TestModalRun.moc"
