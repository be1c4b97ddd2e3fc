#include "windows/WindowFit.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include <QApplication>
#include <QEvent>
#include <QRegion>
#include <QStyle>
#include <QWidget>
#include <QWindow>

namespace Vk_DocQuery {

namespace {

/// What the window manager has put around a window; nothing before it has done so.
QMargins FrameAround(const QWidget &aWindow) {
    const QWindow *handle = aWindow.windowHandle();
    return handle ? handle->frameMargins() : QMargins();
}

/// What it will put around a window most likely: what the other windows have got.
QMargins UsualFrame(const QWidget &aWindow) {
    QMargins usual;
    for (const QWidget *other : QApplication::topLevelWidgets())
        if (other->isVisible() && other->windowType() != Qt::Popup &&
            other->windowType() != Qt::ToolTip)
            usual = usual | FrameAround(*other);
    if (!usual.isNull()) return usual;
    const int edge = aWindow.style()->pixelMetric(QStyle::PM_MdiSubWindowFrameWidth);
    return {edge, aWindow.style()->pixelMetric(QStyle::PM_TitleBarHeight) + edge, edge, edge};
}

constexpr std::chrono::milliseconds theSettlingTime{1000};

QRegion AllScreens() {
    QRegion all;
    for (const QScreen *screen : QGuiApplication::screens()) all += screen->availableGeometry();
    return all;
}

int Within(int aPlace, int aLow, int aHigh) {
    return std::max(aLow, std::min(aPlace, aHigh));
}

}  // namespace

WindowFit::WindowFit(QWidget &aWindow, QSize aLeast)
    : QObject(&aWindow), theWindow(aWindow), theLeast(aLeast) {
    aWindow.installEventFilter(this);
}

bool WindowFit::eventFilter(QObject *aWatched, QEvent *aEvent) {
    switch (aEvent->type()) {
        case QEvent::Show:
            if (!aEvent->spontaneous()) ComeUp();
            break;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::WindowActivate:
            Settle();
            break;
        default:
            break;
    }
    return QObject::eventFilter(aWatched, aEvent);
}

/// The window is about to be shown, and its size still counts for the place that it is given.
void WindowFit::ComeUp() {
    FollowScreen(TargetScreen());
    if (const QWindow *handle = theWindow.windowHandle())
        connect(handle, &QWindow::screenChanged, this, &WindowFit::ScreenChanged,
                Qt::UniqueConnection);
    theFrameIsAwaited = true;
    Fit();
}

/// The frame is there, and may be wider than was thought. A window manager that is slow tells the
/// window's place a little later, and takes one that was asked for before as without a frame.
void WindowFit::Settle() {
    if (FrameAround(theWindow).isNull()) return;
    if (theFrameIsAwaited) {
        theFrameIsAwaited = false;
        theSettling.setRemainingTime(theSettlingTime);
        Fit();
    }
    if (!theSettling.hasExpired()) MoveIn();
}

void WindowFit::FollowScreen(QScreen *aScreen) {
    if (theScreen == aScreen) return;
    if (theScreen) disconnect(theScreen, nullptr, this, nullptr);
    theScreen = aScreen;
    if (theScreen)
        connect(theScreen, &QScreen::availableGeometryChanged, this, &WindowFit::ScreenChanged);
}

/// Whoever takes a window to another screen puts it where he wants it, and only its title has to be
/// reached there. A screen that gets smaller or goes takes parts of a window out of sight.
void WindowFit::ScreenChanged() {
    QScreen *screen = theWindow.screen();
    const bool taken = screen != theScreen && QGuiApplication::screens().contains(theScreen);
    FollowScreen(screen);
    if (!theWindow.isVisible()) return;
    const bool fitted = Fit();
    const QRect frame = theWindow.frameGeometry();
    const QRect title(frame.topLeft(), QSize(frame.width(), 1));
    const QRegion hidden = QRegion(taken ? title : frame) - AllScreens();
    if (fitted || (taken ? hidden == QRegion(title) : !hidden.isEmpty())) MoveIn();
}

/// True if the window was too large.
bool WindowFit::Fit() {
    if (!theScreen) return false;
    const QSize room = theScreen->availableGeometry().marginsRemoved(FrameMargins()).size();
    if (theLeast.isValid()) theWindow.setMinimumSize(theLeast.boundedTo(room));
    if (theWindow.isMaximized() || theWindow.isFullScreen()) return false;
    QSize size = theWindow.size();
    // What gets lower may need a bar to scroll it, which shall not take from the width.
    if (size.height() > room.height())
        size.rwidth() += theWindow.style()->pixelMetric(QStyle::PM_ScrollBarExtent);
    size = size.boundedTo(room);
    if (size == theWindow.size()) return false;
    theWindow.resize(size);
    return true;
}

void WindowFit::MoveIn() {
    if (!theScreen || theWindow.isMaximized() || theWindow.isFullScreen()) return;
    const QRect place = theScreen->availableGeometry();
    // Not by the widget's pos(), which may be as of an earlier frame.
    const QMargins around = FrameAround(theWindow);
    const QRect frame(theWindow.geometry().topLeft() - QPoint(around.left(), around.top()),
                      theWindow.size().grownBy(FrameMargins()));
    const QPoint in(Within(frame.x(), place.left(), place.right() + 1 - frame.width()),
                    Within(frame.y(), place.top(), place.bottom() + 1 - frame.height()));
    if (in != frame.topLeft()) theWindow.move(in);
}

/// A dialog comes up over its owner.
QScreen *WindowFit::TargetScreen() const {
    const QWindow *handle = theWindow.windowHandle();
    if (const QWidget *owner = theWindow.parentWidget()) return owner->screen();
    if (handle && handle->transientParent()) return handle->transientParent()->screen();
    return theWindow.screen();
}

QMargins WindowFit::FrameMargins() const {
    const QMargins frame = FrameAround(theWindow);
    const QMargins wanted = frame.isNull() ? UsualFrame(theWindow) : frame;
    // On a screen of one and a half pixels a part of a pixel is lost on each side.
    const double scale = theWindow.devicePixelRatioF();
    return scale == std::floor(scale) ? wanted : wanted + 1;
}

}  // namespace Vk_DocQuery
