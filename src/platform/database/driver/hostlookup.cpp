#include "hostlookup.h"

#include <netdb.h>

#include <QHash>
#include <array>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace kovanix::engine {

namespace {

using namespace std::chrono_literals;
using Addresses = QList<QByteArray>;

std::mutex& mutex() {
    static std::mutex mutex;
    return mutex;
}

// Both by name, under the mutex.
QHash<QByteArray, Addresses>& known() {
    static QHash<QByteArray, Addresses> addresses;
    return addresses;
}
QHash<QByteArray, std::shared_future<Addresses>>& underWay() {
    static QHash<QByteArray, std::shared_future<Addresses>> lookups;
    return lookups;
}

using Found = std::unique_ptr<addrinfo, decltype(&::freeaddrinfo)>;

/// @param flags  of addrinfo
Found find(const QByteArray& host, int flags) {
    addrinfo hints{};
    hints.ai_flags = flags;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const bool done = ::getaddrinfo(host.constData(), nullptr, &hints, &found) == 0;
    return {done ? found : nullptr, ::freeaddrinfo};
}

bool isAddress(const QByteArray& host) {
    return find(host, AI_NUMERICHOST) != nullptr;
}

Addresses lookUp(const QByteArray& host) {
    Addresses addresses;
    const Found found = find(host, 0);
    for (const addrinfo* each = found.get(); each; each = each->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(each->ai_addr, each->ai_addrlen, text.data(), text.size(), nullptr, 0,
                          NI_NUMERICHOST) == 0)
            addresses.append(text.data());
    }
    return addresses;
}

bool isReady(const std::shared_future<Addresses>& answer) {
    return answer.wait_for(0s) == std::future_status::ready;
}

}  // namespace

HostLookup::HostLookup(const QByteArray& host) : m_host(host) {
    if (host.isEmpty() || host.startsWith('/') || host.startsWith('@') || isAddress(host))
        return;
    const std::scoped_lock lock(mutex());
    std::shared_future<Addresses>& pending = underWay()[host];
    // An answer that nobody has waited for may be hours old.
    if (!pending.valid() || isReady(pending)) {
        std::packaged_task<Addresses()> task([host] { return lookUp(host); });
        pending = task.get_future().share();
        std::thread(std::move(task)).detach();
    }
    m_answer = pending;
}

bool HostLookup::waitUntil(std::chrono::steady_clock::time_point end) const {
    return !isNeeded() || m_answer.wait_until(end) == std::future_status::ready;
}

bool HostLookup::isKnown() const {
    const std::scoped_lock lock(mutex());
    return known().contains(m_host);
}

Addresses HostLookup::addresses() const {
    if (!isNeeded())
        return {};
    const std::scoped_lock lock(mutex());
    if (isReady(m_answer) && !m_answer.get().isEmpty())
        known().insert(m_host, m_answer.get());
    return known().value(m_host);
}

}  // namespace kovanix::engine
