#pragma once

#include <cerrno>
#include <cstddef>
#include <functional>
#include <future>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

#include <QtGlobal>

namespace VkTests {

/// The system's refusals of a broken disk: filters on the calls of one thread or process.

using Calls = std::vector<long>;

inline std::vector<sock_filter> FilterOf(const Calls &aCalls, quint32 aAction) {
    std::vector<sock_filter> program{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const long call : aCalls) {
        program.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<quint32>(call), 0, 1));
        program.push_back(BPF_STMT(BPF_RET | BPF_K, aAction));
    }
    program.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    return program;
}

/// From here on the calling thread gets that answer to the calls. Gives what the system gives.
inline int AnswerCalls(const Calls &aCalls, quint32 aAction, unsigned int aFlags = 0) {
    std::vector<sock_filter> program = FilterOf(aCalls, aAction);
    const sock_fprog filter{static_cast<unsigned short>(program.size()), program.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return -1;
    return static_cast<int>(syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, aFlags, &filter));
}

/// One call of the system, as it was made.
struct Call {
    long Number;
    const __u64 *Arguments;
};

/// Runs the body in a thread of its own. Each of the calls that it makes is put to aAnswer, which
/// gives 0 to let it through or the errno with which it fails. False where the system cannot do
/// that; the body has not been run then.
inline bool WithCalls(const Calls &aCalls, const std::function<int(const Call &)> &aAnswer,
                      const std::function<void()> &aBody) {
    std::promise<int> listening;
    const int over = eventfd(0, 0);
    std::thread watcher([&] {
        const int listener = listening.get_future().get();
        pollfd waited[] = {{listener, POLLIN, 0}, {over, POLLIN, 0}};
        while (listener >= 0 && poll(waited, 2, -1) > 0 && (waited[1].revents & POLLIN) == 0) {
            seccomp_notif call{};
            seccomp_notif_resp answer{};
            if (ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &call) != 0) continue;
            const int code = aAnswer({call.data.nr, call.data.args});
            answer.id = call.id;
            answer.error = -code;
            answer.flags = code == 0 ? SECCOMP_USER_NOTIF_FLAG_CONTINUE : 0;
            ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
        }
        if (listener >= 0) close(listener);
    });
    bool hasRun = false;
    std::thread([&] {
        const int listener =
            AnswerCalls(aCalls, SECCOMP_RET_USER_NOTIF, SECCOMP_FILTER_FLAG_NEW_LISTENER);
        listening.set_value(listener);
        hasRun = listener >= 0;
        if (hasRun) aBody();
    }).join();
    const quint64 one = 1;
    if (write(over, &one, sizeof one) != sizeof one) qFatal("no end");
    watcher.join();
    close(over);
    return hasRun;
}

}  // namespace VkTests
