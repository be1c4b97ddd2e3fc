#include "SlowTurns.h"

#include <array>
#include <chrono>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QFile>

namespace VkBench {

namespace {

constexpr int theLookMs = 20;
const QString theSocket = QStringLiteral("/.s.PGSQL.5432");

/// A socket that is bound or connected to the path by aTie.
template <class Tie>
int SocketAt(const QString &aPath, Tie aTie) {
    const QByteArray path = QFile::encodeName(aPath);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int made = socket(AF_UNIX, SOCK_STREAM, 0);
    if (aTie(made, reinterpret_cast<sockaddr *>(&address), socklen_t{sizeof address}) != 0)
        qFatal("no socket %s", path.constData());
    return made;
}

bool Forward(int aFrom, int aTo) {
    static std::array<char, 1U << 20U> bytes{};
    const ssize_t count = read(aFrom, bytes.data(), bytes.size());
    if (count <= 0) return false;
    for (ssize_t done = 0; done < count;) {
        const ssize_t written =
            write(aTo, bytes.data() + done, static_cast<std::size_t>(count - done));
        if (written <= 0) return false;
        done += written;
    }
    return true;
}

}  // namespace

SlowTurns::SlowTurns(const QString &aServersFolder)
    : theServersSocket(aServersFolder + theSocket),
      theListener(SocketAt(theFolder.path() + theSocket, bind)) {
    if (listen(theListener, 5) != 0) qFatal("nobody can be listened to");
    theThread = std::thread([this] { Run(); });
}

SlowTurns::~SlowTurns() {
    theIsOver = true;
    theThread.join();
    close(theListener);
}

/// One client at a time.
void SlowTurns::Run() {
    while (!theIsOver) {
        pollfd ready{theListener, POLLIN, 0};
        if (poll(&ready, 1, theLookMs) <= 0) continue;
        const int client = accept(theListener, nullptr, nullptr);
        const int server = SocketAt(theServersSocket, connect);
        Serve(client, server);
        close(client);
        close(server);
    }
}

void SlowTurns::Serve(int aClient, int aServer) {
    bool hasListened = true;
    for (bool lives = true; lives && !theIsOver;) {
        std::array<pollfd, 2> ready{{{aClient, POLLIN, 0}, {aServer, POLLIN, 0}}};
        if (poll(ready.data(), ready.size(), theLookMs) <= 0) continue;
        if (ready[0].revents != 0) {
            if (std::exchange(hasListened, false)) {
                ++theTurns;
                std::this_thread::sleep_for(std::chrono::milliseconds(theDelay));
            }
            lives = Forward(aClient, aServer);
        }
        if (lives && ready[1].revents != 0) {
            hasListened = true;
            lives = Forward(aServer, aClient);
        }
    }
}

}  // namespace VkBench
