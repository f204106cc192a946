#include "database/serverengine.h"

#include <QSqlResult>
#include <utility>

#include "database/connectionprivate.h"
#include "database/driver/rowcursor.h"
#include "database/driver/serverwords.h"
#include "database/failedopens.h"
#include "database/failuretext.h"
#include "database/serveraddress.h"
#include "database/serverfailure.h"
#include "database/serversession.h"
#include "runtime/attempt.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

constexpr int mostRetries = 3;

bool isNumber(const QVariant& value) {
    return value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Double;
}

}  // namespace

ServerEngine::ServerEngine(const ConnectionString& parts, std::chrono::milliseconds busyTimeout)
    : DatabaseEngine(u"PostgreSQL"_s, busyTimeout), m_pointer(parts.dataSource), m_password(parts.password) {}

DatabaseError ServerEngine::failure(const QSqlError& error) const {
    m_state = error.nativeErrorCode();
    // The server's own words may be none.
    const QString words =
        m_state.isEmpty() && error.databaseText().isEmpty() ? error.driverText() : error.databaseText();
    DatabaseError failure = describedFailure(kindOfServerFailure(m_state), words);
    // A server that has just let a statement's deadline pass would let that of an open pass, too.
    if (m_state == u"08007"_s)
        FailedOpens::remember(openKey(), failure, deadline);
    return failure;
}

DatabaseError ServerEngine::describedFailure(Kind kind, const QString& words) const {
    return plainFailure(kind, describeServerFailure(kind, words));
}

void ServerEngine::open() {
    setUp();
    connectToServer();
}

/// Tells the toolkit's connection where the server is and how to reach it.
void ServerEngine::setUp() {
    const QString driver = u"KOVANIXPSQL"_s;
    requireDriver(driver);
    const ServerAddress address = [this] {
        try {
            return ServerAddress::read(m_pointer);
        } catch (const DatabaseError& error) {
            throw plainFailure(error.kind(), error.description());
        }
    }();
    addToolkitConnection(driver);
    m_database.setHostName(address.hosts.join(u','));
    m_database.setPort(address.port);
    m_database.setDatabaseName(address.database);
    m_database.setUserName(address.user);
    m_database.setPassword(m_password);
    const std::chrono::milliseconds forConnecting = deadline * 5 / 8;
    // A press ends with a barrier of its own: see writeBarrier. A statement that still waits for another till
    // when its own has given it up ends with that, within the second.
    m_database.setConnectOptions(
        u"connect_timeout=%1;tcp_user_timeout=%2;keepalives_idle=5;keepalives_interval=2;keepalives_count=2;KOVANIX_DEADLINE=%3;target_session_attrs=read-write;options=%4 -c synchronous_commit=off -c client_connection_check_interval=1000 -c lock_timeout=%5;%6"_s
            .arg(QString::number(static_cast<double>(forConnecting.count()) / 1000),
                 QString::number(forConnecting.count()), QString::number(deadline.count()),
                 serverSessionSettings(), QString::number(busyTimeout().count()), serverTlsOptions(address)));
}

void ServerEngine::connectToServer() {
    const QString key = openKey();
    if (const std::optional<DatabaseError> failed = FailedOpens::recent(key))
        throw DatabaseError(*failed);
    QElapsedTimer opening;
    opening.start();
    try {
        openHandle();
        requireSuitableDatabase();
        FailedOpens::forget(key);
        m_lastUse.start();
    } catch (const DatabaseError& error) {
        m_database.close();
        FailedOpens::remember(key, error, std::chrono::milliseconds(opening.elapsed()));
        throw;
    }
}

void ServerEngine::requireSuitableDatabase() {
    // A server older than 15 has no column for the provider of the locale.
    QSqlQuery query = run(
        u"SELECT pg_encoding_to_char(d.encoding), to_jsonb(d) ->> 'datlocprovider', d.datcollate, "
        u"d.datctype, "
        u"EXISTS (SELECT 1 FROM pg_extension WHERE extname = 'citext') FROM pg_database d WHERE d.datname = "
        u"current_database()"_s);
    if (!query.next())
        throw failure(query.lastError());
    const auto text = [&query](int field) { return query.value(field).toString(); };
    const ServerLocale locale{text(0), text(1), text(2), text(3)};
    if (!isSuitable(locale)) {
        throw plainFailure(
            Kind::notADatabase,
            u"Sunucudaki veritabanı kasaya uygun değil: UTF8 ve C diliyle (LOCALE 'C') oluşturulmalı, şimdi "_s +
                localeText(locale));
    }
    if (!query.value(4).toBool()) {
        query.finish();
        run(u"CREATE EXTENSION IF NOT EXISTS citext"_s);
    }
}

/// After the connection was lost.
void ServerEngine::openAgain() {
    m_database.close();
    schema.forget();
    statements.clear();
    connectToServer();
}

QSqlQuery ServerEngine::run(const QString& sql, const QVariantList& values) {
    QSqlQuery query;
    if (!prepare(query, sql, Use::once))
        throw failure(query.lastError());
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!query.exec())
        throw failure(query.lastError());
    return query;
}

QSqlQuery ServerEngine::runForMany(const QString& sql) {
    QSqlQuery query;
    if (!prepare(query, sql, Use::once))
        throw failure(query.lastError());
    if (auto* const cursor = query.result()->handle().value<engine::RowCursor*>())
        cursor->expectManyRows();
    if (!query.exec())
        throw failure(query.lastError());
    return query;
}

void ServerEngine::requireHandle() const {
    if (isOpen())
        return;
    m_state = u"08006"_s;
    throw describedFailure(Kind::lost, engine::lostServer.toString());
}

bool ServerEngine::prepare(QSqlQuery& query, const QString& sql, Use use) {
    requireHandle();
    query = QSqlQuery(m_database);
    query.setForwardOnly(true);
    auto* const cursor = query.result()->handle().value<engine::RowCursor*>();
    if (use == Use::once && cursor)
        cursor->prepareLate();
    if (query.prepare(sql))
        return true;
    static_cast<void>(failure(query.lastError()));  // some ask another way then
    return false;
}

void ServerEngine::executeWrite(QSqlQuery& query, const QString& sql) {
    requireHandle();
    for (int retries = 0; !(sql.isEmpty() ? query.exec() : query.exec(sql)); ++retries) {
        DatabaseError error = failure(query.lastError());
        // Another till may have changed the tables: what comes next finds them as they are.
        if (error.kind() == Kind::noSuchTable || error.kind() == Kind::noSuchColumn)
            schema.forget();
        // The server has taken the statement back by itself. Within a transaction the others of it are gone
        // with it.
        if (!isServerConflict(m_state) || m_inTransaction || retries == mostRetries)
            throw error;
    }
    wroteInPress = true;
    if (m_presses == 0 && !m_inTransaction)
        writeBarrier();
}

bool ServerEngine::readsAgain(const DatabaseError& failure, int attempts) {
    if (m_inTransaction)
        return false;
    if (isServerConflict(m_state))
        return attempts <= mostRetries;
    if (attempts > 1)
        return false;
    if (failure.kind() == Kind::noSuchTable || failure.kind() == Kind::noSuchColumn) {
        // Another till may have changed the tables.
        schema.forget();
        statements.clear();
        return true;
    }
    // What this press has written may have gone with the server: the cashier is to hear of it.
    if (failure.kind() != Kind::lost || isUnconfirmed())
        return false;
    openAgain();
    return true;
}

void ServerEngine::wake() {
    const bool rested = m_lastUse.elapsed() > restLength.count();
    m_lastUse.start();
    if ((isOpen() && !rested) || isUnconfirmed() || m_inTransaction)
        return;
    // Another till may have changed the tables meanwhile, too.
    schema.forget();
    QSqlQuery question(m_database);
    question.setForwardOnly(true);
    if (isOpen()) {
        if (question.exec(u"SELECT 1"_s))
            return;
        static_cast<void>(failure(question.lastError()));
    }
    openAgain();
}

void ServerEngine::prepareForPress(ConnectionCore& /*connection*/) {
    attempt([this] { wake(); });  // a statement will say so
}

void ServerEngine::beginPress() {
    if (m_presses++ == 0)
        wroteInPress = false;
}

void ServerEngine::endPress() {
    --m_presses;
    if (std::exchange(wroteInPress, false))
        writeBarrier();
}

/// A commit that surely writes and waits for the disk, and with it for all commits ahead of it: the last
/// statement of a press may have found no row, and then waits for nothing.
void ServerEngine::writeBarrier() {
    run(u"SELECT set_config('synchronous_commit', 'on', true), pg_logical_emit_message(true, 'kovanix', '')"_s);
}

void ServerEngine::beginTransaction() {
    run(u"BEGIN"_s);
    m_inTransaction = true;
}

void ServerEngine::endTransaction(bool keep) {
    m_inTransaction = false;
    if (keep)
        run(u"SET LOCAL synchronous_commit = on"_s);
    run(keep ? u"COMMIT"_s : u"ROLLBACK"_s);
}

/// Every change has a number of its own there from its beginning to its end: as long as nobody begins or ends
/// one, nothing changes.
QByteArray ServerEngine::contentMark() {
    QSqlQuery mark = run(u"SELECT pg_current_snapshot()::text"_s);
    if (!mark.next())
        throw failure(mark.lastError());
    return mark.value(0).toString().toLatin1();
}

QVariant ServerEngine::fitting(const QVariant& value, const TableColumn& column) const {
    const bool numeric = column.type == ColumnType::number || column.type == ColumnType::counter;
    if (column.isTruth && isNumber(value))
        return qint64{value.toDouble() != 0};
    if (!numeric || value.typeId() != QMetaType::QString)
        return value;
    bool valid = false;
    const QString text = value.toString().trimmed();
    const double number = text.toDouble(&valid);
    if (valid)
        return column.isTruth ? QVariant(qint64{number != 0}) : QVariant(number);
    // The server refuses it. Nothing in its place would make a password of digits an empty one where the till
    // puts its hash there.
    return text.isEmpty() ? QVariant() : value;
}

}  // namespace kovanix
