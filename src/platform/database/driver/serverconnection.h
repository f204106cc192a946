#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSqlError>
#include <QString>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "serverlink.h"

namespace kovanix::engine {

/// A value for a place of a statement.
struct ServerValue {
    enum class Kind { null, text, whole, real, bytes };

    Kind kind = Kind::null;
    QByteArray bytes;  ///< of numbers, too, the text
    Oid type = 0;      ///< that the server has to take it for; 0 leaves that to the server
};

/// A connection to a server, on which one statement runs at a time. Every wait has an end (see ServerLink). A
/// connection that is lost or given up stays closed until it is opened anew; nothing is sent twice.
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
    void setWaitBegins(std::function<void()> begins) { m_link.setWaitBegins(std::move(begins)); }
    void close();
    bool isOpen() const { return m_link.isOpen(); }
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
    bool isInTransaction() const { return PQtransactionStatus(m_link.handle()) != PQTRANS_IDLE; }

    /// The failure of a statement on a connection that isn't open.
    static QSqlError lost() { return ServerLink::lost(); }

private:
    using Clock = std::chrono::steady_clock;
    using Send = std::function<bool(PGconn*)>;

    Answer roundTrip(const Send& send);
    Answer roundTripInTime(const Send& send);
    QSqlError readClock();
    std::chrono::microseconds latestBeginning() const;
    QSqlError sendAll(int& sections, const Send& send);

    ServerLink m_link;
    int m_generation = 0;
    qint64 m_names = 0;
    QList<QByteArray> m_released;
    QHash<Oid, bool> m_caseless;
    /// How far the server's clock is ahead of ours, if anything less; nothing until it is asked.
    std::optional<std::chrono::microseconds> m_clockDifference;
    bool m_isLimitPrepared = false;
};

}  // namespace kovanix::engine
