#include "server.h"

#include <libpq-fe.h>

#include <array>
#include <limits>
#include <vector>

namespace kovanix::tasi {

using namespace Qt::StringLiterals;

namespace {

QString tlsMode(ServerAddress::Tls tls) {
    switch (tls) {
        case ServerAddress::Tls::full:
            return u"verify-full"_s;
        case ServerAddress::Tls::on:
            return u"require"_s;
        case ServerAddress::Tls::off:
            break;
    }
    return u"disable"_s;
}

/// The first line of what the library says, without its own heading.
QString firstLine(const char* message) {
    QString words = QString::fromUtf8(message).section(u'\n', 0, 0);
    for (const QLatin1StringView heading : {"ERROR:"_L1, "FATAL:"_L1, "connection to server "_L1}) {
        if (words.startsWith(heading) && heading.endsWith(u':'))
            words = words.mid(heading.size());
    }
    return words.trimmed();
}

}  // namespace

void Server::Closer::operator()(pg_conn* connection) const {
    PQfinish(connection);
}

void Server::Clearer::operator()(pg_result* result) const {
    PQclear(result);
}

void Server::Freer::operator()(char* memory) const {
    PQfreemem(memory);
}

Server::Server(const ServerAddress& address, const QString& password) {
    // A till gives up after seconds; a move may wait while the server writes its log to a slow disk.
    std::vector<std::pair<QByteArray, QByteArray>> settings{
        {"host", address.hosts.join(u',').toUtf8()},
        {"port", QByteArray::number(address.port)},
        {"dbname", address.database.toUtf8()},
        {"user", address.user.toUtf8()},
        {"sslmode", tlsMode(address.tls).toUtf8()},
        {"target_session_attrs", "read-write"},
        {"application_name", "kovanix-tasi"},
        {"client_encoding", "UTF8"},
        {"connect_timeout", "10"},
        {"tcp_user_timeout", "60000"},
        {"keepalives_idle", "10"},
        {"keepalives_interval", "5"},
        {"keepalives_count", "3"},
        {"options",
         "-c client_min_messages=warning -c lock_timeout=5000 -c statement_timeout=0 "
         "-c idle_in_transaction_session_timeout=0 -c max_parallel_workers_per_gather=0 -c jit=off "
         "-c standard_conforming_strings=on -c search_path=public"},
    };
    if (!password.isEmpty())
        settings.emplace_back("password", password.toUtf8());
    // Where Debian keeps the certificates of the machine's own authorities; the library looks elsewhere.
    if (address.tls == ServerAddress::Tls::full)
        settings.emplace_back("sslrootcert", address.rootCertificate.isEmpty()
                                                 ? "/etc/ssl/certs/ca-certificates.crt"
                                                 : address.rootCertificate.toUtf8());
    std::vector<const char*> keys;
    std::vector<const char*> values;
    for (const auto& [key, value] : settings) {
        keys.push_back(key.constData());
        values.push_back(value.constData());
    }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    m_connection.reset(PQconnectdbParams(keys.data(), values.data(), 0));
    if (PQstatus(m_connection.get()) != CONNECTION_OK)
        throw ServerFailure(ExitCode::serverUnfit,
                            u"Sunucuya bağlanılamadı: "_s + firstLine(PQerrorMessage(m_connection.get())),
                            {});
    // Its own warnings would stand between the lines of progress.
    PQsetNoticeProcessor(
        m_connection.get(), [](void*, const char*) {}, nullptr);
}

void Server::fail(const Result& result) const {
    if (PQstatus(m_connection.get()) != CONNECTION_OK)
        throw ServerFailure(ExitCode::failed, u"Sunucuyla bağlantı koptu."_s, {});
    const char* const words =
        result ? PQresultErrorMessage(result.get()) : PQerrorMessage(m_connection.get());
    throw ServerFailure(
        ExitCode::failed, u"Sunucu: "_s + firstLine(words),
        result ? QByteArray(PQresultErrorField(result.get(), PG_DIAG_SQLSTATE)) : QByteArray());
}

Server::Result Server::run(const QString& sql, int expected) {
    Result result(PQexec(m_connection.get(), sql.toUtf8().constData()));
    if (PQresultStatus(result.get()) != static_cast<ExecStatusType>(expected))
        fail(result);
    return result;
}

void Server::execute(const QString& sql) {
    const Result result(PQexec(m_connection.get(), sql.toUtf8().constData()));
    const ExecStatusType status = PQresultStatus(result.get());
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK)
        fail(result);
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
    if (PQputCopyData(m_connection.get(), bytes.data(), static_cast<int>(bytes.size())) == 1)
        return;
    // What the server had against it stands in the result of the whole.
    finishCommand(nullptr);
    fail({});
}

qint64 Server::endCopyIn() {
    if (PQputCopyEnd(m_connection.get(), nullptr) != 1)
        fail({});
    qint64 rows = 0;
    finishCommand(&rows);
    return rows;
}

void Server::beginCopyOut(const QString& sql) {
    run(sql, PGRES_COPY_OUT);
}

std::optional<std::string_view> Server::receive() {
    char* message = nullptr;
    const int size = PQgetCopyData(m_connection.get(), &message, 0);
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
    while (Result result{PQgetResult(m_connection.get())}) {
        const ExecStatusType status = PQresultStatus(result.get());
        // Left in the middle of a COPY, the library would give its state for ever.
        if (status == PGRES_COPY_IN || status == PGRES_COPY_OUT || status == PGRES_COPY_BOTH)
            break;
        if (status != PGRES_COMMAND_OK)
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
