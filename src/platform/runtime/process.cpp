#include "runtime/process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QHashSeed>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kovanix {

namespace {
std::function<void(int)>& replacedEnd() {
    static std::function<void(int)> end;
    return end;
}

/// A pipe from the signal handler, which may do next to nothing, to the event loop.
std::array<int, 2> requests{};

extern "C" void noteRequest(int /*signal*/) {
    const int before = errno;
    static_cast<void>(!::write(requests[1], "", 1));
    errno = before;
}
}  // namespace

void endProcess(int status) {
    if (replacedEnd()) {
        replacedEnd()(status);
        return;
    }
    QCoreApplication::exit(status);
    // Before the event loop runs, an exit goes unheard: ask again from inside it.
    QTimer::singleShot(0, QCoreApplication::instance(), [status] { QCoreApplication::exit(status); });
}

void abandonProcess(int status) {
    std::fflush(nullptr);
    std::quick_exit(status);
}

void atProcessEnd(void (*step)()) {
    std::atexit(step);
    std::at_quick_exit(step);
}

void endOnRequest() {
    if (::pipe2(requests.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* listener = new QSocketNotifier(requests[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(listener, &QSocketNotifier::activated, listener, [listener] {
        listener->setEnabled(false);
        endProcess(0);
    });
    struct sigaction action {};
    action.sa_handler = noteRequest;
    action.sa_flags = SA_RESTART | SA_RESETHAND;
    for (const int signal : {SIGTERM, SIGHUP, SIGINT}) {
        struct sigaction inherited {};
        // Whoever started the till with a signal ignored (nohup) means it so.
        if (::sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
}

void forbidCoreDumps() {
    constexpr rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // A crash reporter that the system pipes images into isn't held back by the limit.
    ::prctl(PR_SET_DUMPABLE, 0);
}

void hashInNarrowRegisters() {
    // Without a seed the toolkit takes its plain hash.
    QHashSeed::setDeterministicGlobalSeed();
}

void setProcessEnd(std::function<void(int)> end) {
    replacedEnd() = std::move(end);
}

}  // namespace kovanix
