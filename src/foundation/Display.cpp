#include "foundation/Display.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include <QByteArray>
#include <QList>
#include <QStringList>

#if VK_ASK_X11
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>
#endif
#if VK_ASK_WAYLAND
#include <wayland-client-core.h>
#endif

namespace Vk_DocQuery {

namespace {

constexpr char theXVariable[] = "DISPLAY";
constexpr char theWaylandVariable[] = "WAYLAND_DISPLAY";

#if VK_ASK_X11
/// The place of a server of this machine; a name that begins with a zero byte belongs to no file.
bool TakesConnections(const QByteArray &aName) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const auto size =
        std::min<std::size_t>(static_cast<std::size_t>(aName.size()), sizeof address.sun_path - 1);
    std::memcpy(address.sun_path, aName.constData(), size);
    const std::size_t end = aName.startsWith('\0') ? 0 : 1;
    const int client = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool taken =
        connect(client, reinterpret_cast<const sockaddr *>(&address),
                static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + size + end)) == 0;
    if (client >= 0) close(client);
    return taken;
}

/// The client library says the same of a server that refuses the key as of none.
bool IsRefused(const QByteArray &aDisplay) {
    char *host = nullptr;
    int number = 0;
    if (!xcb_parse_display(aDisplay.constData(), &host, &number, nullptr)) return false;
    const QByteArray place = "/tmp/.X11-unix/X" + QByteArray::number(number);
    const bool isHere = *host == '\0' || QByteArray(host) == "unix";
    std::free(host);
    return isHere && (TakesConnections(place) || TakesConnections('\0' + place));
}

/// Why nothing comes of a display by that name; empty if something does, or if nobody here can ask.
QString XFault(const QByteArray &aDisplay) {
    xcb_connection_t *connection = xcb_connect(aDisplay.constData(), nullptr);
    const int error = xcb_connection_has_error(connection);
    xcb_disconnect(connection);
    switch (error) {
        case 0:
            return QString();
        case XCB_CONN_CLOSED_PARSE_ERR:
            return QStringLiteral("не является именем экрана");
        case XCB_CONN_CLOSED_INVALID_SCREEN:
            return QStringLiteral("называет экран, которого нет");
        default:
            return IsRefused(aDisplay)
                       ? QStringLiteral("отказывает в доступе: ключ не подходит или его нет")
                       : QStringLiteral("не отвечает");
    }
}
#else
QString XFault(const QByteArray & /*aDisplay*/) {
    return QString();
}
#endif

#if VK_ASK_WAYLAND
QString WaylandFault(const QByteArray &aDisplay) {
    // The socket is connected already, and who asks for it takes it.
    if (!qEnvironmentVariableIsEmpty("WAYLAND_SOCKET")) return QString();
    wl_display *display = wl_display_connect(aDisplay.constData());
    if (!display) return QStringLiteral("не отвечает");
    wl_display_disconnect(display);
    return QString();
}
#else
QString WaylandFault(const QByteArray & /*aDisplay*/) {
    return QString();
}
#endif

/// What is wrong with the display that the variable names; empty if nothing is.
QString Fault(const char *aVariable) {
    const QString name = QString::fromLatin1(aVariable);
    const QByteArray value = qgetenv(aVariable);
    const bool isX = aVariable == theXVariable;
    if (value.isEmpty()) {
        const bool none = isX || !WaylandFault("wayland-0").isEmpty();
        return none ? QStringLiteral("%1 не задана").arg(name) : QString();
    }
    const QString fault = isX ? XFault(value) : WaylandFault(value);
    if (fault.isEmpty()) return QString();
    return QStringLiteral("%1=\"%2\" %3").arg(name, QString::fromLocal8Bit(value), fault);
}

/// The variables that name the displays which Qt will try; none if it will try something else, too.
QList<const char *> Variables() {
    const QString platforms = qEnvironmentVariable("QT_QPA_PLATFORM");
    if (platforms.isEmpty()) {
        QList<const char *> variables{theWaylandVariable, theXVariable};
        variables.removeIf([](const char *name) { return qEnvironmentVariableIsEmpty(name); });
        return variables;
    }
    QList<const char *> variables;
    for (const QString &platform : platforms.split(u';', Qt::SkipEmptyParts)) {
        const QString name = platform.section(u':', 0, 0);
        const bool isWayland = name.startsWith(QStringLiteral("wayland"));
        if (!isWayland && name != QStringLiteral("xcb")) return {};
        variables << (isWayland ? theWaylandVariable : theXVariable);
    }
    return variables;
}

/// Elsewhere windows need no variables.
bool IsNothingNamed() {
    return VK_ASK_X11 && qEnvironmentVariableIsEmpty(theXVariable) &&
           qEnvironmentVariableIsEmpty(theWaylandVariable) &&
           qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

}  // namespace

QString ReasonNoDisplay() {
    if (IsNothingNamed()) {
        return QStringLiteral(
            "Окна показать нельзя: нет доступа к экрану (переменные DISPLAY и WAYLAND_DISPLAY не "
            "заданы).");
    }
    QStringList faults;
    for (const char *variable : Variables()) {
        const QString fault = Fault(variable);
        if (fault.isEmpty()) return QString();
        if (!faults.contains(fault)) faults << fault;
    }
    if (faults.isEmpty()) return QString();
    return QStringLiteral("Окна показать нельзя: нет доступа к экрану (%1).")
        .arg(faults.join(QStringLiteral(", ")));
}

}  // namespace Vk_DocQuery
