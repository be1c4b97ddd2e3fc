#include "foundation/Display.h"

#if defined(Q_OS_UNIX) && !defined(Q_OS_DARWIN)

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <limits>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QRegularExpression>
#include <QStringList>

namespace Vk_DocQuery {

namespace {

constexpr char theXVariable[] = "DISPLAY";
constexpr char theWaylandVariable[] = "WAYLAND_DISPLAY";
constexpr int theFirstXPort = 6000;

/// Why a connection that is being made fails; 0 if it does not, or not soon.
int LateError(int aClient) {
    constexpr int longestWaitMs = 500;  // this machine answers at once
    pollfd waiting{aClient, POLLOUT, 0};
    if (poll(&waiting, 1, longestWaitMs) <= 0) return 0;
    int error = 0;
    socklen_t size = sizeof error;
    return getsockopt(aClient, SOL_SOCKET, SO_ERROR, &error, &size) == 0 ? error : 0;
}

/// True if somebody takes connections there; one who is only busy counts.
bool IsAnswered(int aFamily, const void *aAddress, std::size_t aSize) {
    const int client = socket(aFamily, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (client < 0) return true;  // cannot be told
    int error =
        connect(client, static_cast<const sockaddr *>(aAddress), static_cast<socklen_t>(aSize)) == 0
            ? 0
            : errno;
    if (error == EINPROGRESS) error = LateError(client);
    close(client);
    return error == 0 || error == EAGAIN;
}

/// A name that begins with a zero byte belongs to no file.
bool IsSocketAnswered(const QByteArray &aName) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (aName.size() >= static_cast<qsizetype>(sizeof address.sun_path)) return false;
    const auto size = static_cast<std::size_t>(aName.size());
    std::memcpy(address.sun_path, aName.constData(), size);
    const std::size_t end = aName.startsWith('\0') ? 0 : 1;
    return IsAnswered(AF_UNIX, &address, offsetof(sockaddr_un, sun_path) + size + end);
}

bool IsPortAnswered(int aPort) {
    if (aPort > std::numeric_limits<in_port_t>::max()) return false;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<in_port_t>(aPort));
    return IsAnswered(AF_INET, &address, sizeof address);
}

bool IsXDead(const QString &aDisplay) {
    static const QRegularExpression local(QStringLiteral("^(unix)?:([0-9]{1,5})(\\.[0-9]+)?$"));
    const QRegularExpressionMatch match = local.match(aDisplay);
    if (!match.hasMatch()) return false;
    const int number = match.capturedView(2).toInt();
    const QByteArray name = "/tmp/.X11-unix/X" + QByteArray::number(number);
    // Without "unix" the client library tries the network of this machine, too.
    return !IsSocketAnswered(name) && !IsSocketAnswered('\0' + name) &&
           !(match.capturedView(1).isEmpty() && IsPortAnswered(theFirstXPort + number));
}

bool IsWaylandDead(const QString &aDisplay) {
    if (!qEnvironmentVariableIsEmpty("WAYLAND_SOCKET")) return false;  // connected already
    if (aDisplay.startsWith(u'/')) return !IsSocketAnswered(aDisplay.toLocal8Bit());
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    return folder.isEmpty() || !IsSocketAnswered(folder + '/' + aDisplay.toLocal8Bit());
}

/// What is wrong with the display that the variable names; empty if nothing is.
QString Fault(const char *aVariable) {
    const QString name = QString::fromLatin1(aVariable);
    const QString value = qEnvironmentVariable(aVariable);
    const bool isX = aVariable == theXVariable;
    if (value.isEmpty()) {
        const bool dead = isX || IsWaylandDead(QStringLiteral("wayland-0"));
        return dead ? QStringLiteral("%1 не задана").arg(name) : QString();
    }
    const bool dead = isX ? IsXDead(value) : IsWaylandDead(value);
    return dead ? QStringLiteral("%1=\"%2\" не отвечает").arg(name, value) : QString();
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

bool IsNothingNamed() {
    return qEnvironmentVariableIsEmpty(theXVariable) &&
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

#else

namespace Vk_DocQuery {

QString ReasonNoDisplay() {
    return QString();
}

}  // namespace Vk_DocQuery

#endif
