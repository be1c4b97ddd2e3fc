#pragma once

#include <functional>
#include <memory>

#include <QRect>
#include <QWidget>

class QAbstractNativeEventFilter;
class QWindow;

namespace Vk_DocQuery {

/// A window that is none of Qt's, for as long as one of ours stands on it. On X11 it is told when
/// that window goes; elsewhere nobody tells.
class ForeignWindow {
public:
    ForeignWindow(WId aHandle, std::function<void()> aOnGone);
    ~ForeignWindow();
    ForeignWindow(const ForeignWindow &) = delete;
    ForeignWindow &operator=(const ForeignWindow &) = delete;

    /// Null if there is no such window, or the platform knows none but its own.
    QWindow *Window() const { return theWindow.get(); }
    /// Where it lies on the screen, in pixels of the device; empty where nobody tells.
    QRect Geometry() const;

private:
    std::unique_ptr<QWindow> theWindow;
    std::unique_ptr<QAbstractNativeEventFilter> theWatch;
};

}  // namespace Vk_DocQuery
