#include "windows/ModalRun.h"

#include <algorithm>

#include <QApplication>
#include <QDialog>
#include <QList>
#include <QScopeGuard>
#include <QScreen>
#include <QWindow>

#include "foundation/Application.h"
#include "windows/ForeignWindow.h"
#include "windows/HostWindow.h"
#include "windows/RussianTexts.h"

namespace Vk_DocQuery {

namespace {

/// The innermost run stands last. Never released: a host may end the process from inside of one.
QList<ModalRun *> &Runs() {
    static auto *runs = new QList<ModalRun *>;
    return *runs;
}

/// A widget's window handle may be made anew, the widget stays.
QObject *WidgetOrWindow(QWindow *aWindow) {
    if (!aWindow || !aWindow->handle()) return aWindow;
    QWidget *widget = QWidget::find(aWindow->winId());
    return widget ? static_cast<QObject *>(widget->window()) : aWindow;
}

bool CanBeOwner(const QWindow &aWindow) {
    return aWindow.isVisible() && (aWindow.type() == Qt::Window || aWindow.type() == Qt::Dialog);
}

/// One that is not minimised is better than one that is, and then a large one than a small one.
bool IsWorseOwner(const QWindow *aOne, const QWindow *aOther) {
    const auto rank = [](const QWindow *aWindow) {
        const bool open = (aWindow->windowStates() & Qt::WindowMinimized) == 0;
        return std::pair(open, aWindow->width() * aWindow->height());
    };
    return rank(aOne) < rank(aOther);
}

QWindow *BestVisibleWindow() {
    QList<QWindow *> windows = QGuiApplication::topLevelWindows();
    windows.removeIf([](const QWindow *window) { return !CanBeOwner(*window); });
    const auto best = std::max_element(windows.cbegin(), windows.cend(), IsWorseOwner);
    return best == windows.cend() ? nullptr : *best;
}

/// Null if the window is none of Qt's.
QObject *WindowByHandle(WId aHandle) {
    if (QWidget *widget = QWidget::find(aHandle)) return widget->window();
    for (QWindow *window : QGuiApplication::topLevelWindows())
        if (window->handle() && window->winId() == aHandle) return window;
    return nullptr;
}

QObject *ModalOwner() {
    if (QWidget *widget = QApplication::activeModalWidget()) return widget;
    return WidgetOrWindow(QGuiApplication::modalWindow());
}

QObject *ActiveOwner() {
    if (QWidget *widget = QApplication::activeWindow()) return widget;
    QWindow *window = QGuiApplication::focusWindow();
    if (window && CanBeOwner(*window)) return WidgetOrWindow(window);
    return WidgetOrWindow(BestVisibleWindow());
}

}  // namespace

ModalRun::ModalRun(QDialog &aWindow, WId aOwner) : theWindow(aWindow) {
    EnsureApplication();
    theWindow.setAttribute(Qt::WA_QuitOnClose, false);  // the host says when it ends
    FindOwner(aOwner);
    if (theOwner == &theWindow) theOwner = nullptr;
    if (theOwner)
        theWatch = QObject::connect(theOwner, &QObject::destroyed, &theWindow, [this] { End(); });
    Runs() << this;
}

ModalRun::~ModalRun() {
    QObject::disconnect(theWatch);
    Runs().removeOne(this);
}

void ModalRun::FindOwner(WId aOwner) {
    if (aOwner != 0) return TakeHandle(aOwner);
    theOwner = ModalOwner();
    if (!theOwner && HostWindow() != 0) TakeHandle(HostWindow());
    if (!theOwner) theOwner = ActiveOwner();
}

void ModalRun::TakeHandle(WId aHandle) {
    theOwner = WindowByHandle(aHandle);
    if (theOwner) return;
    theForeign = std::make_unique<ForeignWindow>(aHandle, [this] { End(); });
    theOwner = theForeign->Window();
}

QWidget *ModalRun::OwnerWidget() const {
    return qobject_cast<QWidget *>(theOwner);
}

QWindow *ModalRun::OwnerHandle() const {
    QWidget *widget = OwnerWidget();
    if (!widget) return qobject_cast<QWindow *>(theOwner);
    widget->winId();  // makes the window handle
    return widget->windowHandle();
}

int ModalRun::Exec() {
    if (theIsEnded) return QDialog::Rejected;
    SpeakRussian(theWindow);
    theWindow.winId();
    theWindow.windowHandle()->setTransientParent(OwnerHandle());
    if (theForeign) CentreOnForeign();
    theWindow.setModal(true);  // for good: hidden after exec took it back, it would go on blocking
    const auto hide = qScopeGuard([this] { theWindow.hide(); });
    const int result = theWindow.exec();
    return theIsEnded ? static_cast<int>(QDialog::Rejected) : result;
}

/// Qt, which centres windows on its own, does not know where this one lies.
void ModalRun::CentreOnForeign() {
    const QRect owner = theForeign->Geometry();
    if (owner.isEmpty() || theWindow.testAttribute(Qt::WA_Moved)) return;
    const bool hasSize = theWindow.testAttribute(Qt::WA_Resized);
    QRect place(QPoint(), hasSize ? theWindow.size() : theWindow.sizeHint());
    place.moveCenter(owner.center() / theWindow.devicePixelRatioF());
    const QRect room = theWindow.screen()->availableGeometry();
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
    place.moveLeft(std::max(place.left(), room.left()));
    place.moveTop(std::max(place.top(), room.top()));
    theWindow.move(place.topLeft());
}

void ModalRun::EndAllOf(const QObject &aWindow) {
    for (ModalRun *run : QList<ModalRun *>(Runs())) {
        if (&run->theWindow == &aWindow || run->theOwner == &aWindow) run->End();
    }
}

/// What stands on the window goes before it; some of that Qt itself has made: menus, questions of
/// the file dialog.
void ModalRun::End() {
    if (theIsEnded) return;
    theIsEnded = true;
    EndAllOf(theWindow);
    for (const QPointer<QWidget> child : theWindow.findChildren<QWidget *>())
        if (child && child->isWindow()) child->hide();
    theWindow.hide();
}

}  // namespace Vk_DocQuery
