#include "serverconnection.h"

#include <QByteArrayView>
#include <QtEndian>
#include <array>

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;
using std::chrono::microseconds;

constexpr Oid momentType = 1184;  // the server's number of its moments, which never changes

// The statement that stands ahead of one that has to come in time, in one transaction with it.
const char limitName[] = "vakit";
const char limitSql[] =
    "SELECT CASE WHEN clock_timestamp() < $1 THEN '1' ELSE 'The statement came too late.' END::int";
// How often what came too late is sent again, at most: a clock that is set all the time proves nothing.
constexpr int mostTries = 3;

QSqlError statementError(const PGresult* rows) {
    return {u"Unable to execute statement"_s, firstLineOf(PQresultErrorField(rows, PG_DIAG_MESSAGE_PRIMARY)),
            QSqlError::StatementError, QString::fromUtf8(PQresultErrorField(rows, PG_DIAG_SQLSTATE))};
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

QSqlError ServerConnection::open(const ServerSettings& settings) {
    close();
    const QSqlError error = m_link.open(settings);
    if (m_link.isOpen()) {
        ++m_generation;
        PQenterPipelineMode(m_link.handle());
    }
    return error;
}

void ServerConnection::close() {
    m_link.close();
    m_released.clear();
    m_caseless.clear();
    m_clockDifference.reset();
    m_isLimitPrepared = false;
}

/// Sends the commands of one statement, behind those that free the released ones.
/// @param sections  how many parts the answer is to have, each of which stands or fails by itself
QSqlError ServerConnection::sendAll(int& sections, const Send& send) {
    PGconn* const handle = m_link.handle();
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
        return m_link.flush();
    // What the library itself refuses, such as too many places, has left the connection half-way.
    const QString words = firstLineOf(PQerrorMessage(handle));
    return PQstatus(handle) == CONNECTION_BAD ? m_link.lose() : m_link.lose(ServerLink::lossError(words));
}

ServerConnection::Answer ServerConnection::roundTrip(const Send& send) {
    if (!isOpen())
        return {{}, lost()};
    int sections = 0;
    if (const QSqlError error = sendAll(sections, send); error.isValid())
        return {{}, error};
    Answer answer;
    while (sections > 0) {
        if (const QSqlError error = m_link.waitForResult(); error.isValid())
            return {{}, error};
        ServerRows rows(PQgetResult(m_link.handle()));
        if (PQstatus(m_link.handle()) == CONNECTION_BAD)
            return {{}, m_link.lose()};
        switch (PQresultStatus(rows.get())) {
            case PGRES_PIPELINE_SYNC:
                --sections;
                break;
            case PGRES_COPY_IN:
            case PGRES_COPY_OUT:
            case PGRES_COPY_BOTH:
                return {{},
                        m_link.lose(ServerLink::lossError(u"Rows can't be copied through this driver."_s))};
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
    const auto end = Clock::now() + m_link.silence();
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
