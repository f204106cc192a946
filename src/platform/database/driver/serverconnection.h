#pragma once

#include <libpq-fe.h>

#include <QByteArray>
#include <QHash>
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

/// How a server is reached.
struct ServerSettings {
    QList<QByteArray> hosts;                               ///< in the order in which they are tried
    std::vector<std::pair<QByteArray, QByteArray>> words;  ///< keywords of the library; a later one holds
    std::chrono::milliseconds connectTimeout{5000};        ///< for each host
    std::chrono::milliseconds deadline{8000};              ///< in which a server gives a sign of life

    /// How much of the deadline may pass before a server that says nothing is asked whether it lives.
    std::chrono::milliseconds silence() const { return deadline * 3 / 8; }

    /// Adds the options of a connection (see ServerDriver). @return false where one can't be read
    bool addOptions(const QString& text);
};

/// A value for a place of a statement.
struct ServerValue {
    enum class Kind { null, text, whole, real, bytes };

    Kind kind = Kind::null;
    QByteArray bytes;  ///< of numbers, too, the text
    Oid type = 0;      ///< that the server has to take it for; 0 leaves that to the server
};

/// A connection to a server, on which one statement runs at a time. Every wait has an end: a server that has
/// been silent for a while is asked through a second connection whether it lives, and one that doesn't answer
/// that either is given up. A connection that is lost or given up stays closed until it is opened anew;
/// nothing is sent twice.
class ServerConnection {
public:
    /// What came of a statement: rows, or an error.
    struct Answer {
        ServerRows rows;
        QSqlError error;
    };

    ServerConnection() = default;
    ServerConnection(const ServerConnection&) = delete;
    ServerConnection& operator=(const ServerConnection&) = delete;

    /// Connects to the first host that takes it.
    /// @return an error of type NoError when the connection is open
    QSqlError open(const ServerSettings& settings);
    /// Calls it as soon as a wait for the server gets long; an empty function ends that.
    void setWaitBegins(std::function<void()> begins) { m_waitBegins = std::move(begins); }
    void close();
    bool isOpen() const { return m_handle != nullptr; }
    /// Another one after each open: what was prepared in an earlier one is gone.
    int generation() const { return m_generation; }

    /// How a statement is run and its rows are given.
    struct Manner {
        bool binary = false;  ///< whether the rows come in the server's own form instead of as text
        /// Whether the server is to refuse it when it comes to it so late that it may have been given up. For
        /// what changes rows: a server that stood still would carry it out as it goes on, after it was told
        /// of as a failure. One that is refused while it is still waited for is sent again, for it hasn't
        /// run.
        bool onlyInTime = false;
    };

    /// Runs one statement in one round trip.
    Answer run(const QByteArray& sql, const std::vector<ServerValue>& values, Manner manner);
    Answer run(const QByteArray& sql) { return run(sql, {}, {}); }

    /// Prepares one statement under a name in one round trip.
    /// @param types  of its places, for ServerValue::type; places behind them are left to the server
    /// @return in its rows the statement's description: its places' types and its columns
    Answer prepare(const QByteArray& name, const QByteArray& sql, const std::vector<Oid>& types);
    /// Runs a prepared statement in one round trip.
    Answer runPrepared(const QByteArray& name, const std::vector<ServerValue>& values, Manner manner);
    /// A name that no statement of this connection has had.
    QByteArray nextName() { return "k" + QByteArray::number(++m_names); }
    /// Has a prepared statement freed along with the next one that is sent.
    void release(const QByteArray& name) { m_released.append(name); }

    /// Whether a column's type is the text that ignores case. It has no number of its own: the server is
    /// asked once.
    bool isCaselessText(Oid type);
    bool isInTransaction() const { return PQtransactionStatus(m_handle.get()) != PQTRANS_IDLE; }

    /// The failure of a statement on a connection that isn't open.
    static QSqlError lost();

private:
    using Clock = std::chrono::steady_clock;
    /// What came of an attempt to connect.
    struct Attempt {
        ServerHandle handle;  ///< nothing when it failed
        QSqlError error;
        bool answered = false;  ///< whether the server has said anything
    };

    Attempt connect(const QByteArray& host, std::chrono::milliseconds timeout) const;
    using Send = std::function<bool(PGconn*)>;
    Answer roundTrip(const Send& send);
    Answer roundTripInTime(const Send& send);
    QSqlError readClock();
    std::chrono::microseconds latestBeginning() const;
    QSqlError sendAll(int& sections, const Send& send);
    QSqlError flush();
    enum class Waited { ready, timeout };
    Waited wait(int socket, short events, Clock::time_point end) const;
    QSqlError receive();
    QSqlError waitFor(short events);
    bool isAlive() const;
    QSqlError lose(const QSqlError& error);
    QSqlError lose();

    ServerHandle m_handle;
    ServerSettings m_settings;
    QByteArray m_host;
    int m_generation = 0;
    qint64 m_names = 0;
    QList<QByteArray> m_released;
    QHash<Oid, bool> m_caseless;
    /// How far the server's clock is ahead of ours, if anything less; nothing until it is asked.
    std::optional<std::chrono::microseconds> m_clockDifference;
    bool m_isLimitPrepared = false;
    bool m_isSilent = false;  ///< whether it gave no sign of life when it was asked during this statement
    std::function<void()> m_waitBegins;
};

}  // namespace kovanix::engine
