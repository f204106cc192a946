#include "database/connection.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/engineerror.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

std::vector<ConnectionCore*>& ConnectionCore::openOnes() {
    // Not by thread_local: connections that live until the process ends close behind the end of its thread's
    // own.
    static std::mutex mutex;
    static std::unordered_map<std::thread::id, std::vector<ConnectionCore*>> connections;
    const std::lock_guard lock(mutex);
    return connections[std::this_thread::get_id()];
}

void ConnectionCore::requireOpen() const {
    if (isOpen())
        return;
    const QString words = u"Operation is not allowed when the object is closed."_s;
    if (engine)
        throw engine->describedFailure(Kind::closed, words);
    throw failure(Kind::closed, describeFailure(Kind::closed, words));
}

void ConnectionCore::open(const QString& text, Connection::Handle wanted) {
    close();  // what the engine has lost
    const auto shares = [&](const ConnectionCore* other) {
        return wanted == Connection::Handle::shared && other->handle == wanted &&
               other->engine->isCurrent() && other->connectionString == text &&
               other->busyTimeout == busyTimeout;
    };
    const auto other = std::ranges::find_if(openOnes(), shares);
    std::shared_ptr<DatabaseEngine> opened =
        other != openOnes().end() ? (*other)->engine
                                  : DatabaseEngine::of(ConnectionString::parse(text), busyTimeout);
    engineName = opened->name();
    if (!opened->isOpen()) {
        try {
            opened->open();
        } catch (const RuntimeError&) {
            opened->close();
            throw;
        }
    }
    engine = std::move(opened);
    engine->connections.push_back(this);
    connectionString = text;
    handle = wanted;
    self = std::shared_ptr<Connection>(&owner, [](Connection*) {});
    openOnes().push_back(this);
}

void ConnectionCore::close() {
    std::erase(openOnes(), this);
    self.reset();
    for (ConnectionUser* user : std::exchange(users, {}))
        user->connectionClosing();
    if (!engine)
        return;
    attempt([this] { finishPress(); });
    const std::shared_ptr<DatabaseEngine> left = std::exchange(engine, nullptr);
    std::erase(left->connections, this);
    if (left->connections.empty())
        left->close();
}

void ConnectionCore::aboutToWrite() {
    // Counted ahead, so that a statement that fails half-way has been counted.
    ++*engine->writes;
    for (ConnectionUser* user : users)
        user->rowsChanging();
}

int ConnectionCore::write(const QString& engineSql, const QVariantList& values) {
    engine->wake();
    aboutToWrite();
    return engine->write(engineSql, values);
}

dialect::Engine ConnectionCore::dialectFor(const QString& sql) {
    if (engine->target() == dialect::Target::file)
        return {};
    const QString table = dialect::tableOf(sql);
    return table.isEmpty() ? dialect::Engine(engine->target()) : engine->dialectFor(shape(table));
}

bool ConnectionCore::writePrepared(const QString& sql) {
    const std::optional<StatementShape> shape = StatementShape::of(sql);
    if (!shape)
        return false;
    engine->wake();
    std::optional<StatementCache::Kept> kept = engine->statements.take(shape->text);
    if (!kept) {
        kept.emplace();
        const dialect::Engine taker = dialectFor(shape->text);
        kept->numberPlaces = dialect::numberPlaces(shape->text, taker.columns);
        if (!engine->prepare(kept->query, dialect::translate(shape->text, {}, taker),
                             DatabaseEngine::Use::kept))
            return false;
    }
    if (!kept->takes(shape->values))
        return false;
    for (qsizetype i = 0; i < shape->values.size(); ++i)
        kept->query.bindValue(static_cast<int>(i), shape->values[i]);
    aboutToWrite();
    engine->executeWrite(kept->query);
    engine->statements.keep(shape->text, std::move(*kept));
    return true;
}

void ConnectionCore::beginPress() {
    if (engine) {
        // It may be another one behind this.
        const std::shared_ptr<DatabaseEngine> former = engine;
        former->prepareForPress(*this);
    }
    if (!isOpen())
        return;  // a statement will say so
    pressing = true;
    engine->beginPress();
}

void ConnectionCore::finishPress() {
    if (std::exchange(pressing, false))
        engine->endPress();
}

Connection::Connection(std::chrono::milliseconds busyTimeout)
    : d(std::make_unique<Private>(*this, busyTimeout)) {
    ConnectionCore::openOnes();  // must outlive a connection that lives until the process ends
}

Connection::~Connection() {
    close();
}

void Connection::open(const QString& connectionString, Handle handle) {
    if (isOpen())
        throw d->failure(Kind::statement, u"Operation is not allowed when the object is open."_s);
    d->open(connectionString, handle);
}

void Connection::close() {
    d->close();
}

bool Connection::isOpen() const {
    return d->isOpen();
}

bool Connection::isLost() const {
    return d->engine && !d->engine->isOpen();
}

std::weak_ptr<Connection> Connection::findOpen(const QString& connectionString) {
    for (const ConnectionCore* connection : ConnectionCore::openOnes()) {
        if (connection->connectionString == connectionString && connection->isOpen())
            return connection->self;
    }
    return {};
}

void Connection::execute(const QString& sql) {
    d->requireOpen();
    d->inEnginesName([&] {
        if (d->writePrepared(sql))
            return;
        if (!dialect::changesTables(sql)) {
            d->write(dialect::translate(sql, {}, d->dialectFor(sql)));
            return;
        }
        d->engine->wake();
        d->aboutToWrite();
        d->engine->changeTables(sql);
    });
}

QList<TableInfo> Connection::tables() {
    d->requireOpen();
    return d->reading([this] { return d->engine->schema.tables(*d->engine); });
}

TableShape Connection::shape(const QString& table) {
    d->requireOpen();
    return d->reading([&] { return d->shape(table); });
}

void Connection::keepIndex(const QString& table, const QString& column) {
    d->requireOpen();
    attempt([&] {
        d->engine->wake();
        d->aboutToWrite();
        d->engine->keepIndex(table, column);
    });
}

ChangeMark Connection::changeMark() {
    ChangeMark mark;
    attempt([&] {
        d->requireOpen();
        mark = d->reading([this] { return d->engine->changeMark(); });
    });
    return mark;
}

void Connection::idle() {
    d->requireOpen();
    d->engine->idle();
}

void Connection::leaveLogIfAsked() {
    if (const std::shared_ptr<DatabaseEngine> engine = d->engine)
        engine->leaveLogIfAsked();
}

}  // namespace kovanix
