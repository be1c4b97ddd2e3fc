#pragma once

#include <atomic>
#include <thread>

#include <QString>
#include <QTemporaryDir>

namespace VkBench {

/// A socket in a folder of its own that leads to a server's, as a network between them would: what
/// the client says after it has listened waits, what goes on in one direction does not.
class SlowTurns {
public:
    /// aServersFolder is that of the server's socket.
    explicit SlowTurns(const QString &aServersFolder);
    ~SlowTurns();
    Q_DISABLE_COPY_MOVE(SlowTurns)

    QString Folder() const { return theFolder.path(); }
    void SetDelay(int aMilliseconds) { theDelay = aMilliseconds; }
    /// How often the client has begun to speak.
    int Turns() const { return theTurns; }

private:
    void Run();
    void Serve(int aClient, int aServer);

    QTemporaryDir theFolder;
    QString theServersSocket;
    int theListener = -1;
    std::atomic<int> theDelay = 0;
    std::atomic<int> theTurns = 0;
    std::atomic<bool> theIsOver = false;
    std::thread theThread;
};

}  // namespace VkBench
