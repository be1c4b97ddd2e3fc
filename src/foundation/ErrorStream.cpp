#include "foundation/ErrorStream.h"

#include <csignal>
#include <cstdio>

#include "foundation/mErrorHandling.h"

namespace Vk_DocQuery {

namespace {

/// Keeps the signal of a broken pipe, which would end the host, from this thread while it lives.
class NoBrokenPipe {
public:
#ifdef SIGPIPE
    NoBrokenPipe() : theWasPending(IsPending()) {
        sigemptyset(&thePipe);
        sigaddset(&thePipe, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &thePipe, &theMask);
    }
    ~NoBrokenPipe() {
        int taken = 0;
        if (!theWasPending && IsPending()) sigwait(&thePipe, &taken);
        pthread_sigmask(SIG_SETMASK, &theMask, nullptr);
    }
    Q_DISABLE_COPY_MOVE(NoBrokenPipe)

private:
    static bool IsPending() {
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        return sigismember(&pending, SIGPIPE) == 1;
    }

    sigset_t thePipe{};
    sigset_t theMask{};
    bool theWasPending;
#endif
};

}  // namespace

void WriteToErrorStream(const QString &aText) noexcept {
    IgnoringFailures([&] {
        // Journals take a carriage return for binary data and hide the line.
        QString lines = aText + u'\n';
        lines.remove(u'\r');
        const QByteArray bytes = lines.toUtf8();
        const NoBrokenPipe shield;
        std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stderr);
        std::fflush(stderr);
    });
}

}  // namespace Vk_DocQuery
