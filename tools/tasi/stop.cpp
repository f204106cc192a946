#include "stop.h"

#include <csignal>

#include "failure.h"

namespace kovanix::tasi {

namespace {

volatile std::sig_atomic_t isAsked = 0;

}  // namespace

void heedRequestsToStop() {
    struct sigaction action {};
    action.sa_handler = [](int) { isAsked = 1; };
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction inherited {};
        if (::sigaction(signal, nullptr, &inherited) == 0 && inherited.sa_handler != SIG_IGN)
            ::sigaction(signal, &action, nullptr);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

void stopIfAsked() {
    if (isAsked != 0)
        throw Failure(ExitCode::stopped, QStringLiteral("Durduruldu; hiçbir şey değişmedi."));
}

}  // namespace kovanix::tasi
