#include "windows/ForeignWindow.h"

#include <cstdlib>

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QWindow>

#if VK_ASK_X11
#include <xcb/xcb.h>
#endif

namespace Vk_DocQuery {

namespace {

#if VK_ASK_X11

/// Qt's own connection is asked to hear of the window; its owner's stays as it is.
class X11Watch : public QAbstractNativeEventFilter {
public:
    X11Watch(xcb_connection_t *aConnection, xcb_window_t aWindow, std::function<void()> aOnGone)
        : theConnection(aConnection), theWindow(aWindow), theOnGone(std::move(aOnGone)) {
        Select(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
    ~X11Watch() override {
        if (!theIsGone) Select(XCB_EVENT_MASK_NO_EVENT);
    }
    Q_DISABLE_COPY_MOVE(X11Watch)

    bool nativeEventFilter(const QByteArray & /*aType*/, void *aMessage,
                           qintptr * /*rResult*/) override {
        constexpr int sentMark = 0x80;
        const auto *event = static_cast<const xcb_generic_event_t *>(aMessage);
        if ((event->response_type & ~sentMark) != XCB_DESTROY_NOTIFY) return false;
        if (reinterpret_cast<const xcb_destroy_notify_event_t *>(event)->window != theWindow)
            return false;
        theIsGone = true;
        theOnGone();
        return false;
    }

private:
    void Select(uint32_t aEvents) const {
        xcb_change_window_attributes(theConnection, theWindow, XCB_CW_EVENT_MASK, &aEvents);
        xcb_flush(theConnection);
    }

    xcb_connection_t *theConnection;
    xcb_window_t theWindow;
    std::function<void()> theOnGone;
    bool theIsGone = false;
};

std::unique_ptr<QAbstractNativeEventFilter> Watch(WId aHandle, std::function<void()> aOnGone) {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) return nullptr;
    return std::make_unique<X11Watch>(x11->connection(), static_cast<xcb_window_t>(aHandle),
                                      std::move(aOnGone));
}

template <class Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

QRect PlaceOf(WId aHandle) {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11) return QRect();
    const auto window = static_cast<xcb_window_t>(aHandle);
    xcb_connection_t *connection = x11->connection();
    const Answer<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr),
        &std::free);
    if (!size) return QRect();
    const auto asked = xcb_translate_coordinates(connection, window, size->root, 0, 0);
    const Answer<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection, asked, nullptr), &std::free);
    return place ? QRect(place->dst_x, place->dst_y, size->width, size->height) : QRect();
}

#else

QRect PlaceOf(WId /*aHandle*/) {
    return QRect();
}

std::unique_ptr<QAbstractNativeEventFilter> Watch(WId /*aHandle*/,
                                                  std::function<void()> /*aOnGone*/) {
    return nullptr;
}

#endif

}  // namespace

ForeignWindow::ForeignWindow(WId aHandle, std::function<void()> aOnGone)
    : theWindow(QWindow::fromWinId(aHandle)) {
    if (theWindow) theWatch = Watch(aHandle, std::move(aOnGone));
    if (theWatch) QCoreApplication::instance()->installNativeEventFilter(theWatch.get());
}

QRect ForeignWindow::Geometry() const {
    return theWindow ? PlaceOf(theWindow->winId()) : QRect();
}

ForeignWindow::~ForeignWindow() = default;  // a filter that goes is taken out

}  // namespace Vk_DocQuery
