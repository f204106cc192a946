#include "server.h"

#include <poll.h>

#include "database/driver/serverlink.h"
#include "database/serverfailure.h"
#include "database/serversession.h"
#include "stop.h"

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

bool isCopy(const pg_result* result) {
    const ExecStatusType status = PQresultStatus(result);
    return status == PGRES_COPY_IN || status == PGRES_COPY_OUT || status == PGRES_COPY_BOTH;
}

engine::ServerSettings settingsFor(const ServerAddress& address, const QString& password,
                                   std::chrono::milliseconds deadline) {
    engine::ServerSettings settings;
    for (const QString& host : address.hosts)
        settings.hosts.append(host.toUtf8());
    settings.words = {
        {"port", QByteArray::number(address.port)},
        {"dbname", address.database.toUtf8()},
        {"user", address.user.toUtf8()},
        {"client_encoding", "UTF8"},
        {"gssencmode", "disable"},
        {"application_name", "kovanix-tasi"},
        {"target_session_attrs", "read-write"},
        {"tcp_user_timeout", "60000"},
        {"keepalives_idle", "10"},
        {"keepalives_interval", "5"},
        {"keepalives_count", "3"},
        {"options", serverSessionSettings().toUtf8() + " -c lock_timeout=5000 -c statement_timeout=0 "
                                                       "-c idle_in_transaction_session_timeout=0"}};
    if (!password.isEmpty())
        settings.words.emplace_back("password", password.toUtf8());
    settings.addOptions(serverTlsOptions(address));
    settings.connectTimeout = deadline / 2;
    settings.deadline = deadline;
    return settings;
}

}  // namespace

void Server::Clearer::operator()(pg_result* result) const {
    PQclear(result);
}

void Server::Freer::operator()(char* memory) const {
    PQfreemem(memory);
}

Server::Server(const ServerAddress& address, const QString& password, std::chrono::milliseconds deadline)
    : m_link(std::make_unique<engine::ServerLink>()) {
    m_link->setWaitBegins(stopIfAsked);
    const QSqlError error = m_link->open(settingsFor(address, password, deadline));
    if (!m_link->isOpen())
        throw ServerFailure(
            ExitCode::serverUnfit,
            describeServerFailure(kindOfServerFailure(error.nativeErrorCode()), error.databaseText()), {});
}

Server::~Server() = default;

void Server::check(const QSqlError& error) {
    if (!error.isValid())
        return;
    const bool silent = error.nativeErrorCode() == "08007"_L1;
    throw ServerFailure(ExitCode::failed,
                        silent ? u"Sunucu yanıt vermiyor: sunucuyu ve ağ bağlantısını denetleyin."_s
                               : u"Sunucuyla bağlantı koptu."_s,
                        {});
}

void Server::fail(const Result& result) {
    if (PQstatus(m_link->handle()) != CONNECTION_OK)
        check(m_link->lose(engine::ServerLink::lost()));
    const char* const words =
        result ? PQresultErrorField(result.get(), PG_DIAG_MESSAGE_PRIMARY) : PQerrorMessage(m_link->handle());
    throw ServerFailure(
        ExitCode::failed, u"Sunucu: "_s + engine::firstLineOf(words),
        result ? QByteArray(PQresultErrorField(result.get(), PG_DIAG_SQLSTATE)) : QByteArray());
}

void Server::ask(const QString& sql) {
    if (PQsendQuery(m_link->handle(), sql.toUtf8().constData()) != 1)
        fail({});
    check(m_link->flush());
}

/// Waits for what comes next of a command; nothing behind its last result.
Server::Result Server::nextResult() {
    check(m_link->waitForResult());
    Result result(PQgetResult(m_link->handle()));
    if (PQstatus(m_link->handle()) != CONNECTION_OK)
        fail(result);
    return result;
}

/// What a command has come to; at the beginning of a copy that one's.
Server::Result Server::lastResult() {
    Result last;
    while (Result result = nextResult()) {
        last = std::move(result);
        if (isCopy(last.get()))
            break;
    }
    return last;
}

Server::Result Server::run(const QString& sql, int expected) {
    ask(sql);
    Result result = lastResult();
    if (PQresultStatus(result.get()) != static_cast<ExecStatusType>(expected))
        fail(result);
    return result;
}

void Server::execute(const QString& sql) {
    ask(sql);
    const Result result = lastResult();
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        fail(result);
}

void Server::commit() {
    m_link->setWaitBegins({});
    execute(u"COMMIT"_s);
    m_link->setWaitBegins(stopIfAsked);
}

QList<QStringList> Server::rows(const QString& sql) {
    const Result result = run(sql, PGRES_TUPLES_OK);
    QList<QStringList> rows;
    for (int row = 0; row < PQntuples(result.get()); ++row) {
        QStringList fields;
        for (int field = 0; field < PQnfields(result.get()); ++field) {
            const QString text = QString::fromUtf8(PQgetvalue(result.get(), row, field));
            fields.append(PQgetisnull(result.get(), row, field) ? QString() : text);
        }
        rows.append(fields);
    }
    return rows;
}

QString Server::value(const QString& sql) {
    const QList<QStringList> found = rows(sql);
    return found.isEmpty() ? QString() : found.constFirst().constFirst();
}

void Server::beginCopyIn(const QString& sql) {
    run(sql, PGRES_COPY_IN);
}

void Server::send(std::string_view bytes) {
    const int sent = PQputCopyData(m_link->handle(), bytes.data(), static_cast<int>(bytes.size()));
    if (sent == 1) {
        check(m_link->flush());
        return;
    }
    // What the server had against it stands in the result of the whole.
    finishCommand(nullptr);
    fail({});
}

qint64 Server::endCopyIn() {
    if (PQputCopyEnd(m_link->handle(), nullptr) != 1)
        fail({});
    check(m_link->flush());
    qint64 rows = 0;
    finishCommand(&rows);
    return rows;
}

void Server::beginCopyOut(const QString& sql) {
    run(sql, PGRES_COPY_OUT);
}

std::optional<std::string_view> Server::receive() {
    char* message = nullptr;
    int size = 0;
    while ((size = PQgetCopyData(m_link->handle(), &message, 1)) == 0) {
        check(m_link->waitFor(POLLIN));
        check(m_link->receive());
    }
    m_message.reset(message);
    if (size > 0)
        return std::string_view(message, static_cast<std::size_t>(size));
    if (size == -1)
        finishCommand(nullptr);
    else
        fail({});
    return std::nullopt;
}

/// Reads what is left of a command's results.
void Server::finishCommand(qint64* rows) {
    Result last;
    while (Result result = nextResult()) {
        // Left in the middle of a COPY, the library would give its state for ever.
        if (isCopy(result.get()))
            break;
        if (PQresultStatus(result.get()) != PGRES_COMMAND_OK)
            fail(result);
        last = std::move(result);
    }
    if (rows && last)
        *rows = QByteArray(PQcmdTuples(last.get())).toLongLong();
}

QString serverText(const QString& text) {
    QString doubled = text;
    // Plain quotes mean what they say only where backslashes do.
    return u'\'' + doubled.replace(u'\'', u"''"_s) + u'\'';
}

}  // namespace kovanix::tasi
