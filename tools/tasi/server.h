#pragma once

#include <QByteArray>
#include <QList>
#include <QSqlError>
#include <QString>
#include <QStringList>
#include <chrono>
#include <memory>
#include <optional>
#include <string_view>

#include "database/serveraddress.h"
#include "failure.h"

struct pg_result;

namespace kovanix::engine {
class ServerLink;
}

namespace kovanix::tasi {

/// What the server, or the way to it, has refused.
class ServerFailure : public Failure {
public:
    ServerFailure(ExitCode code, const QString& words, const QByteArray& state)
        : Failure(code, words), m_state(state) {}
    /// The SQLSTATE; empty where the connection was lost, or the server given up.
    const QByteArray& state() const { return m_state; }

private:
    QByteArray m_state;
};

/// In which a server gives a sign of life. Longer than a till's: a move may wait while the server writes its
/// log to a slow disk, and one that is broken off begins anew.
constexpr std::chrono::milliseconds usualDeadline{20000};

/// A connection to the shop's server, through its own library: rows go over in the server's bulk form.
/// Every operation throws a ServerFailure, also where the server gives no sign of life any more, and a
/// Failure where somebody has asked the program to stop (see stop.h).
class Server {
public:
    /// @param password  empty where the server asks for none, or the library is to find it by itself
    /// @param deadline  half of it for the connection to each of the hosts
    Server(const ServerAddress& address, const QString& password,
           std::chrono::milliseconds deadline = usualDeadline);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// Runs statements that give no rows.
    void execute(const QString& sql);
    /// Ends the transaction. From its beginning on, a request to stop comes too late.
    void commit();
    /// The rows of a statement, as texts. A null field is a null text.
    QList<QStringList> rows(const QString& sql);
    /// The only field of the only row; null where there is no row.
    QString value(const QString& sql);

    /// Sends what a COPY … FROM STDIN takes.
    void beginCopyIn(const QString& sql);
    void send(std::string_view bytes);
    /// @return how many rows the server has taken
    qint64 endCopyIn();

    /// Begins a COPY … TO STDOUT.
    void beginCopyOut(const QString& sql);
    /// The next message of it, which holds one row; nothing at the end. Gone with the next.
    std::optional<std::string_view> receive();

private:
    struct Clearer {
        void operator()(pg_result* result) const;
    };
    struct Freer {
        void operator()(char* memory) const;
    };
    using Result = std::unique_ptr<pg_result, Clearer>;

    void ask(const QString& sql);
    Result nextResult();
    Result lastResult();
    Result run(const QString& sql, int expected);
    void finishCommand(qint64* rows);
    [[noreturn]] void fail(const Result& result);
    static void check(const QSqlError& error);

    std::unique_ptr<engine::ServerLink> m_link;
    std::unique_ptr<char, Freer> m_message;
};

/// A text between single quotes.
QString serverText(const QString& text);

}  // namespace kovanix::tasi
