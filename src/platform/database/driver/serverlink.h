#pragma once

#include <libpq-fe.h>

#include <QByteArray>
#include <QList>
#include <QSqlError>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace kovanix::engine {

struct ServerFinisher {
    void operator()(PGconn* connection) const { PQfinish(connection); }
    void operator()(PGresult* rows) const { PQclear(rows); }
};
using ServerHandle = std::unique_ptr<PGconn, ServerFinisher>;
using ServerRows = std::unique_ptr<PGresult, ServerFinisher>;

/// The first line of what the library says.
QString firstLineOf(const char* words);

/// How a server is reached.
struct ServerSettings {
    QList<QByteArray> hosts;                               ///< in the order in which they are tried
    std::vector<std::pair<QByteArray, QByteArray>> words;  ///< keywords of the library; a later one holds
    std::chrono::milliseconds connectTimeout{5000};        ///< for each host, within the deadline for all
    std::chrono::milliseconds deadline{8000};              ///< in which a server gives a sign of life

    /// How much of the deadline may pass before a server that says nothing is asked whether it lives.
    std::chrono::milliseconds silence() const { return deadline * 3 / 8; }

    /// Adds the options of a connection (see ServerDriver). @return false where one can't be read
    bool addOptions(const QString& text);
};

/// A way to a server on which every wait has an end: a server that has been silent for a while is asked
/// through a second connection whether it lives, and one that doesn't answer that either is given up. What is
/// lost or given up stays closed until it is opened anew. Its errors are of the type NoError where there is
/// none, and carry the server's code (SQLSTATE): 08006 where the connection was lost, 08007 where the server
/// was given up.
class ServerLink {
public:
    /// Connects to the first host that takes it. From then on nothing of the library waits by itself.
    QSqlError open(const ServerSettings& settings);
    void close() { m_handle.reset(); }
    bool isOpen() const { return m_handle != nullptr; }
    PGconn* handle() const { return m_handle.get(); }
    /// ServerSettings::silence() of what it was opened with.
    std::chrono::milliseconds silence() const { return m_settings.silence(); }
    /// Calls it as soon as a wait for the server gets long, and again when a signal has interrupted that or
    /// the wait goes on after the server was asked; an empty function ends that. What it throws ends the
    /// wait.
    void setWaitBegins(std::function<void()> begins) { m_waitBegins = std::move(begins); }

    /// Waits until the socket is ready. @param events  POLLIN, POLLOUT
    QSqlError waitFor(short events);
    /// Takes in what the server has sent.
    QSqlError receive();
    /// Sends what the library holds ready.
    QSqlError flush();
    /// Waits until the library has a result, or the next rows of a copy.
    QSqlError waitForResult();

    /// Closes. @return the error
    QSqlError lose(const QSqlError& error);
    /// Closes a connection that has failed. @return that it was lost, or that the server was given up: behind
    /// a network that is cut the connection ends while another one is tried in vain, and who hears that it
    /// was lost would try that once more
    QSqlError lose();
    /// The failure of a statement on a connection that isn't open.
    static QSqlError lost();
    /// A failure after which a connection can't go on.
    static QSqlError lossError(const QString& words, const QString& state = QStringLiteral("08006"));

private:
    using Clock = std::chrono::steady_clock;
    /// What came of an attempt to connect.
    struct Attempt {
        ServerHandle handle;  ///< nothing when it failed
        QSqlError error;
        bool answered = false;  ///< whether the server has said anything
    };
    enum class Waited { ready, timeout };

    /// A host and where it is.
    struct Host {
        QByteArray name;
        QList<QByteArray> addresses;  ///< empty where the name needs no look-up
    };

    /// @return nothing where its address isn't known by the end
    std::optional<Host> find(const QByteArray& name, Clock::time_point end) const;
    Attempt connect(const Host& host, Clock::time_point end) const;
    Waited wait(int socket, short events, Clock::time_point end) const;
    bool isAlive() const;

    ServerHandle m_handle;
    ServerSettings m_settings;
    Host m_host;  ///< that it is connected to
    std::function<void()> m_waitBegins;
    bool m_isSilent = false;  ///< whether it gave no sign of life when it was asked since the last flush
};

}  // namespace kovanix::engine
