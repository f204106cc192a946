#pragma once

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace kovanix {

/// Stands on the loopback between clients and a server, and counts the round trips. Each connection runs in a
/// thread of its own, for the client's waits.
class CountingProxy {
public:
    explicit CountingProxy(int serverPort) : m_serverPort(serverPort) {
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
        ::listen(m_listener, 8);
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { run(); });
    }
    ~CountingProxy() {
        m_ends = true;
        ::shutdown(m_listener, SHUT_RDWR);
        cut();
        m_thread.join();
        ::close(m_listener);
        m_forwarding.clear();
    }
    CountingProxy(const CountingProxy&) = delete;
    CountingProxy& operator=(const CountingProxy&) = delete;

    int port() const { return m_port; }
    int connections() const { return m_connections; }
    /// How often the client has sent something since the server last did. Reading sets it back to 0.
    int takeTrips() { return m_trips.exchange(0); }

    /// Has each of the client's sends arrive that much later. @param delay  in microseconds
    void setDelay(int delay) { m_delay = delay; }

    /// Ends the connections on both sides.
    void cut() {
        const std::lock_guard lock(m_mutex);
        for (const int socket : m_sockets)
            ::shutdown(socket, SHUT_RDWR);
    }
    /// Ends it as soon as the server answers the next time, before the client hears of it.
    void cutNextAnswer() { m_cutsAnswer = true; }

private:
    static sockaddr_in loopback(int port) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }

    void run() {
        while (!m_ends) {
            const int client = ::accept(m_listener, nullptr, nullptr);
            if (client < 0)
                continue;
            ++m_connections;
            m_forwarding.emplace_back([this, client] { serve(client); });
        }
    }

    void serve(int client) {
        const int server = ::socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = loopback(m_serverPort);
        keep({client, server});
        if (!m_ends && ::connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            forward(client, server);
        forget({client, server});
    }

    void keep(const std::set<int>& sockets) {
        const std::lock_guard lock(m_mutex);
        m_sockets.insert(sockets.begin(), sockets.end());
    }
    void forget(const std::set<int>& sockets) {
        const std::lock_guard lock(m_mutex);
        for (const int socket : sockets) {
            m_sockets.erase(socket);
            ::close(socket);
        }
    }

    void forward(int client, int server) {
        std::array<char, 65536> bytes{};
        std::array<pollfd, 2> ends{{{client, POLLIN, 0}, {server, POLLIN, 0}}};
        bool answered = true;
        while (!m_ends && ::poll(ends.data(), ends.size(), -1) > 0) {
            for (const pollfd& end : ends) {
                if (end.revents == 0)
                    continue;
                const bool sends = end.fd == client;
                const ssize_t size = ::recv(end.fd, bytes.data(), bytes.size(), 0);
                if (size <= 0 || (!sends && m_cutsAnswer.exchange(false)))
                    return;
                if (sends && answered) {
                    ++m_trips;
                    std::this_thread::sleep_for(std::chrono::microseconds(m_delay));
                }
                answered = !sends;
                ::send(sends ? server : client, bytes.data(), static_cast<std::size_t>(size), MSG_NOSIGNAL);
            }
        }
    }

    const int m_serverPort;
    const int m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
    int m_port = 0;
    std::atomic<bool> m_ends = false;
    std::atomic<bool> m_cutsAnswer = false;
    std::atomic<int> m_trips = 0;
    std::atomic<int> m_delay = 0;
    std::atomic<int> m_connections = 0;
    std::mutex m_mutex;
    std::set<int> m_sockets;  ///< of the connections that are forwarded
    std::thread m_thread;
    std::vector<std::jthread> m_forwarding;
};

}  // namespace kovanix
