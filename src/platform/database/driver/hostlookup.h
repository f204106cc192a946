#pragma once

#include <QByteArray>
#include <QList>
#include <chrono>
#include <future>

namespace kovanix::engine {

/// The addresses of a host. The system's look-up waits for a name server as long as it likes and can't be
/// broken off, so it runs in a thread of its own; whoever asks waits as long as he wants to. One that nobody
/// waits for any more goes on, and the next one for that name joins it. What a name led to last is remembered
/// in the process. May be used in any thread.
class HostLookup {
public:
    /// Begins. @param host  a name; anything else (an address, a folder of sockets) needs no look-up
    explicit HostLookup(const QByteArray& host);

    /// @return whether there is an answer by then, or none is needed
    bool waitUntil(std::chrono::steady_clock::time_point end) const;
    /// Whether addresses are there, if only those of before.
    bool isKnown() const;
    /// Texts without a name in them: of the answer; where there is none or it is a failure, those of before.
    /// Empty where no look-up is needed.
    QList<QByteArray> addresses() const;
    bool isNeeded() const { return m_answer.valid(); }

private:
    QByteArray m_host;
    std::shared_future<QList<QByteArray>> m_answer;
};

}  // namespace kovanix::engine
