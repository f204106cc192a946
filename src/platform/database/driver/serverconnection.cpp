#include "serverconnection.h"

#include <poll.h>

#include <QRegularExpression>
#include <QtEndian>
#include <algorithm>
#include <array>
#include <cerrno>

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;
using std::chrono::microseconds;
using std::chrono::milliseconds;

constexpr Oid momentType = 1184;  // the server's number of its moments, which never changes

// The statement that stands ahead of one that has to come in time, in one transaction with it.
const char limitName[] = "vakit";
const char limitSql[] =
    "SELECT CASE WHEN clock_timestamp() < $1 THEN '1' ELSE 'The statement came too late.' END::int";
// How often what came too late is sent again, at most: a clock that is set all the time proves nothing.
constexpr int mostTries = 3;

// From here on somebody who watches asks himself what the till does.
constexpr milliseconds longWait{100};

/// Waits for a socket. @param events  POLLIN, POLLOUT
bool isReadyBy(std::chrono::steady_clock::time_point end, int socket, short events) {
    for (;;) {
        const auto left = std::chrono::ceil<milliseconds>(end - std::chrono::steady_clock::now()).count();
        pollfd entry{.fd = socket, .events = events, .revents = 0};
        const int count = ::poll(&entry, 1, left > 0 ? static_cast<int>(left) : 0);
        // An error of the socket's shows when it is read.
        if (count > 0 || (count < 0 && errno != EINTR))
            return true;
        if (left <= 0)
            return false;
    }
}

QString firstLine(const QString& text) {
    return text.section(u'\n', 0, 0).trimmed();
}

/// The error in what the library says of an attempt to connect. Its words come in the user's language; only
/// the code behind the severity tells a server's refusal.
/// @param step  at which it failed
QSqlError connectError(const PGconn* handle, ConnStatusType step) {
    static const QRegularExpression refusal(u":  ([0-9A-Z]{5}): (.*)"_s);
    const QString words = QString::fromUtf8(PQerrorMessage(handle));
    const QRegularExpressionMatch found = refusal.match(words);
    const QString ownState = step == CONNECTION_SSL_STARTUP ? u"08T01"_s : u"08001"_s;
    return {u"Unable to connect"_s, found.hasMatch() ? found.captured(2) : firstLine(words),
            QSqlError::ConnectionError, found.hasMatch() ? found.captured(1) : ownState};
}

QSqlError lossError(const QString& words, const QString& state = u"08006"_s) {
    return {u"Unable to execute statement"_s, words, QSqlError::ConnectionError, state};
}

QSqlError statementError(const PGresult* rows) {
    const auto field = [rows](int code) { return QString::fromUtf8(PQresultErrorField(rows, code)); };
    return {u"Unable to execute statement"_s, firstLine(field(PG_DIAG_MESSAGE_PRIMARY)),
            QSqlError::StatementError, field(PG_DIAG_SQLSTATE)};
}

/// Whether the server has refused a statement because it came too late.
bool isLate(const PGresult* rows) {
    return QByteArrayView(PQresultErrorField(rows, PG_DIAG_SQLSTATE)) == "22P02" &&
           QByteArrayView(PQresultErrorField(rows, PG_DIAG_MESSAGE_PRIMARY))
               .contains("\"The statement came too late.\"");
}

bool isFailure(const PGresult* rows) {
    return rows && PQresultStatus(rows) == PGRES_FATAL_ERROR;
}

/// Values as the library takes them.
struct Places {
    explicit Places(const std::vector<ServerValue>& values) {
        for (const ServerValue& value : values) {
            const bool null = value.kind == ServerValue::Kind::null;
            types.push_back(value.type);
            starts.push_back(null ? nullptr : value.bytes.constData());
            sizes.push_back(static_cast<int>(value.bytes.size()));
            formats.push_back(value.kind == ServerValue::Kind::bytes ? 1 : 0);
        }
    }
    int count() const { return static_cast<int>(types.size()); }

    std::vector<Oid> types;
    std::vector<const char*> starts;
    std::vector<int> sizes;
    std::vector<int> formats;
};

}  // namespace

bool ServerSettings::addOptions(const QString& text) {
    QString rest = text;
    rest.replace(u"\\;"_s, QChar(u'\0'));
    for (const QString& part : rest.split(u';', Qt::SkipEmptyParts)) {
        if (part.trimmed().isEmpty())
            continue;
        const qsizetype sign = part.indexOf(u'=');
        if (sign < 0)
            return false;
        const QString key = part.left(sign).trimmed();
        const QString value = part.mid(sign + 1).replace(QChar(u'\0'), u';');
        bool valid = true;
        // The library heeds its own only where the caller stands still.
        if (key == "connect_timeout"_L1)
            connectTimeout = milliseconds(qRound(value.toDouble(&valid) * 1000));
        else if (key == "KOVANIX_DEADLINE"_L1)
            deadline = milliseconds(value.toInt(&valid));
        else
            words.emplace_back(key.toUtf8(), value.toUtf8());
        if (!valid || deadline <= milliseconds::zero() || connectTimeout <= milliseconds::zero())
            return false;
    }
    return true;
}

QSqlError ServerConnection::lost() {
    return lossError(u"The connection to the database server is lost."_s);
}

/// Waits for a socket, and has the sign given when that takes long.
ServerConnection::Waited ServerConnection::wait(int socket, short events, Clock::time_point end) const {
    const Clock::time_point shortEnd = Clock::now() + longWait;
    bool ready = isReadyBy(std::min(end, shortEnd), socket, events);
    if (!ready && shortEnd < end) {
        if (m_waitBegins)
            m_waitBegins();
        ready = isReadyBy(end, socket, events);
    }
    return ready ? Waited::ready : Waited::timeout;
}

ServerConnection::Attempt ServerConnection::connect(const QByteArray& host, milliseconds timeout) const {
    std::vector<const char*> keys{"host"};
    std::vector<const char*> values{host.constData()};
    for (const auto& [key, value] : m_settings.words) {
        keys.push_back(key.constData());
        values.push_back(value.constData());
    }
    keys.push_back(nullptr);
    values.push_back(nullptr);
    const Clock::time_point end = Clock::now() + timeout;
    Attempt attempt;
    ServerHandle handle(PQconnectStartParams(keys.data(), values.data(), 0));
    PQsetErrorVerbosity(handle.get(), PQERRORS_VERBOSE);
    PQsetNoticeProcessor(
        handle.get(), [](void*, const char*) {}, nullptr);
    PostgresPollingStatusType status =
        PQstatus(handle.get()) == CONNECTION_BAD ? PGRES_POLLING_FAILED : PGRES_POLLING_WRITING;
    ConnStatusType step = CONNECTION_STARTED;
    while (status != PGRES_POLLING_OK && status != PGRES_POLLING_FAILED) {
        const short events = status == PGRES_POLLING_READING ? POLLIN : POLLOUT;
        if (wait(PQsocket(handle.get()), events, end) == Waited::timeout) {
            attempt.error = {u"Unable to connect"_s, u"The database server doesn't answer."_s,
                             QSqlError::ConnectionError, u"08001"_s};
            return attempt;
        }
        step = PQstatus(handle.get());
        status = PQconnectPoll(handle.get());
    }
    if (status == PGRES_POLLING_FAILED)
        attempt.error = connectError(handle.get(), step);
    else
        attempt.handle = std::move(handle);
    attempt.answered = attempt.handle || attempt.error.nativeErrorCode() != "08001"_L1;
    return attempt;
}

QSqlError ServerConnection::open(const ServerSettings& settings) {
    close();
    m_settings = settings;
    QSqlError refusal;
    for (const QByteArray& host : settings.hosts) {
        Attempt attempt = connect(host, settings.connectTimeout);
        if (attempt.handle) {
            m_handle = std::move(attempt.handle);
            m_host = host;
            ++m_generation;
            PQsetnonblocking(m_handle.get(), 1);
            PQenterPipelineMode(m_handle.get());
            return {};
        }
        // What a server says is more than that another one is away.
        if (!refusal.isValid() || (attempt.answered && refusal.nativeErrorCode() == "08001"_L1))
            refusal = attempt.error;
    }
    return refusal;
}

void ServerConnection::close() {
    m_handle.reset();
    m_released.clear();
    m_caseless.clear();
    m_clockDifference.reset();
    m_isLimitPrepared = false;
}

QSqlError ServerConnection::lose(const QSqlError& error) {
    close();
    return error;
}

/// Gives the connection up, or takes note that it is lost. Behind a network that is cut it ends while another
/// one is tried in vain: who hears that it was lost would try that once more.
QSqlError ServerConnection::lose() {
    return lose(m_isSilent ? lossError(u"The database server doesn't answer."_s, u"08007"_s) : lost());
}

/// Whether the server gives any answer to another connection in what is left of the deadline.
bool ServerConnection::isAlive() const {
    return connect(m_host, m_settings.deadline - m_settings.silence()).answered;
}

/// Waits until the socket is ready. A server that works on a long report says nothing until it is done, and
/// neither does one that stands still.
QSqlError ServerConnection::waitFor(short events) {
    const int socket = PQsocket(m_handle.get());
    while (wait(socket, events, Clock::now() + m_settings.silence()) == Waited::timeout) {
        m_isSilent = !isAlive();
        if (m_isSilent && wait(socket, events, Clock::now()) == Waited::timeout)
            return lose();
    }
    return {};
}

QSqlError ServerConnection::receive() {
    return PQconsumeInput(m_handle.get()) == 1 ? QSqlError() : lose();
}

/// Sends what the library holds ready. A server whose own answers aren't read may stop reading.
QSqlError ServerConnection::flush() {
    for (;;) {
        const int left = PQflush(m_handle.get());
        if (left < 0)
            return lose();
        if (left == 0)
            return {};
        if (const QSqlError error = waitFor(POLLIN | POLLOUT); error.isValid())
            return error;
        if (const QSqlError error = receive(); error.isValid())
            return error;
    }
}

/// Sends the commands of one statement, behind those that free the released ones.
/// @param sections  how many parts the answer is to have, each of which stands or fails by itself
QSqlError ServerConnection::sendAll(int& sections, const Send& send) {
    PGconn* const handle = m_handle.get();
    // Nothing can be freed in a transaction that has failed.
    const bool freeing = PQtransactionStatus(handle) != PQTRANS_INERROR;
    bool sent = true;
    if (freeing) {
        for (const QByteArray& name : std::exchange(m_released, {})) {
            const QByteArray sql = "DEALLOCATE " + name;
            sent = sent &&
                   PQsendQueryParams(handle, sql.constData(), 0, nullptr, nullptr, nullptr, nullptr, 0) &&
                   PQpipelineSync(handle);
            ++sections;
        }
    }
    sent = sent && send(handle) && PQpipelineSync(handle);
    ++sections;
    if (sent)
        return flush();
    // What the library itself refuses, such as too many places, has left the connection half-way.
    const QString words = firstLine(QString::fromUtf8(PQerrorMessage(handle)));
    return PQstatus(handle) == CONNECTION_BAD ? lose() : lose(lossError(words));
}

ServerConnection::Answer ServerConnection::roundTrip(const Send& send) {
    if (!isOpen())
        return {{}, lost()};
    m_isSilent = false;
    int sections = 0;
    if (const QSqlError error = sendAll(sections, send); error.isValid())
        return {{}, error};
    Answer answer;
    while (sections > 0) {
        while (PQisBusy(m_handle.get()) == 1) {
            if (const QSqlError error = waitFor(POLLIN); error.isValid())
                return {{}, error};
            if (const QSqlError error = receive(); error.isValid())
                return {{}, error};
        }
        ServerRows rows(PQgetResult(m_handle.get()));
        if (PQstatus(m_handle.get()) == CONNECTION_BAD)
            return {{}, lose()};
        switch (PQresultStatus(rows.get())) {
            case PGRES_PIPELINE_SYNC:
                --sections;
                break;
            case PGRES_COPY_IN:
            case PGRES_COPY_OUT:
            case PGRES_COPY_BOTH:
                return {{}, lose(lossError(u"Rows can't be copied through this driver."_s))};
            default:
                // Only the last part tells of the statement; there, the first failure.
                if (rows && sections == 1 && !isFailure(answer.rows.get()) &&
                    PQresultStatus(rows.get()) != PGRES_PIPELINE_ABORTED)
                    answer.rows = std::move(rows);
        }
    }
    if (isFailure(answer.rows.get()))
        answer.error = statementError(answer.rows.get());
    return answer;
}

/// Asks for the server's clock, and prepares there what stands ahead of a statement that has to come in time.
QSqlError ServerConnection::readClock() {
    const bool first = !std::exchange(m_isLimitPrepared, true);
    const Answer answer = roundTrip([first](PGconn* handle) {
        return (!first || PQsendPrepare(handle, limitName, limitSql, 1, &momentType) == 1) &&
               PQsendQueryParams(handle, "SELECT clock_timestamp()", 0, nullptr, nullptr, nullptr, nullptr,
                                 1) == 1;
    });
    // Read after the server has: the difference is too small by what the answer took, never too large.
    const auto now = std::chrono::duration_cast<microseconds>(Clock::now().time_since_epoch());
    if (!answer.error.isValid())
        m_clockDifference = microseconds(qFromBigEndian<qint64>(PQgetvalue(answer.rows.get(), 0, 0))) - now;
    return answer.error;
}

/// The server's time at which a statement that is sent now could be given up at the earliest.
microseconds ServerConnection::latestBeginning() const {
    const auto end = Clock::now() + m_settings.silence();
    return std::chrono::duration_cast<microseconds>(end.time_since_epoch()) + *m_clockDifference;
}

ServerConnection::Answer ServerConnection::roundTripInTime(const Send& send) {
    // What has run in a transaction goes with the connection.
    if (!isOpen() || isInTransaction())
        return roundTrip(send);
    for (int tries = 1;; ++tries) {
        if (!m_clockDifference) {
            if (const QSqlError error = readClock(); error.isValid())
                return {{}, error};
        }
        Answer answer = roundTrip([&](PGconn* handle) {
            std::array<char, sizeof(qint64)> moment{};
            qToBigEndian<qint64>(latestBeginning().count(), moment.data());
            const char* const value = moment.data();
            constexpr int size = moment.size();
            constexpr int binary = 1;
            return PQsendQueryPrepared(handle, limitName, 1, &value, &size, &binary, 0) == 1 && send(handle);
        });
        if (!isLate(answer.rows.get()) || tries == mostTries)
            return answer;
        m_clockDifference.reset();  // the server has stood still, or its clock was set
    }
}

ServerConnection::Answer ServerConnection::run(const QByteArray& sql, const std::vector<ServerValue>& values,
                                               Manner manner) {
    const Places places(values);
    const Send send = [&](PGconn* handle) {
        return PQsendQueryParams(handle, sql.constData(), places.count(), places.types.data(),
                                 places.starts.data(), places.sizes.data(), places.formats.data(),
                                 manner.binary ? 1 : 0) == 1;
    };
    Answer answer = manner.onlyInTime ? roundTripInTime(send) : roundTrip(send);
    // The server takes the end of a transaction that has failed without a word of complaint.
    if (answer.rows && sql.left(6).toUpper() == "COMMIT" &&
        QByteArrayView(PQcmdStatus(answer.rows.get())) == "ROLLBACK")
        answer.error = {u"Unable to execute statement"_s,
                        u"The transaction was rolled back, for a statement of it had failed."_s,
                        QSqlError::TransactionError, u"25P02"_s};
    return answer;
}

ServerConnection::Answer ServerConnection::prepare(const QByteArray& name, const QByteArray& sql,
                                                   const std::vector<Oid>& types) {
    return roundTrip([&](PGconn* handle) {
        return PQsendPrepare(handle, name.constData(), sql.constData(), static_cast<int>(types.size()),
                             types.data()) == 1 &&
               PQsendDescribePrepared(handle, name.constData()) == 1;
    });
}

ServerConnection::Answer ServerConnection::runPrepared(const QByteArray& name,
                                                       const std::vector<ServerValue>& values,
                                                       Manner manner) {
    const Places places(values);
    const Send send = [&](PGconn* handle) {
        return PQsendQueryPrepared(handle, name.constData(), places.count(), places.starts.data(),
                                   places.sizes.data(), places.formats.data(), manner.binary ? 1 : 0) == 1;
    };
    return manner.onlyInTime ? roundTripInTime(send) : roundTrip(send);
}

bool ServerConnection::isCaselessText(Oid type) {
    const auto known = m_caseless.constFind(type);
    if (known != m_caseless.cend())
        return *known;
    const Answer answer = run("SELECT 1 FROM pg_catalog.pg_type WHERE typname = 'citext' AND oid = " +
                              QByteArray::number(type));
    const bool caseless = PQntuples(answer.rows.get()) == 1;
    m_caseless.insert(type, caseless);
    return caseless;
}

}  // namespace kovanix::engine
