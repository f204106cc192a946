#pragma once

#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "database/connection.h"
#include "database/databaseengine.h"
#include "database/databaseerror.h"
#include "database/statementshape.h"

namespace kovanix {

/// What a connection does with the recordsets that are open on it.
class ConnectionUser {
public:
    /// A statement of this connection is about to change rows: what was read ahead of the current row is out
    /// of date.
    virtual void rowsChanging() = 0;
    virtual void connectionClosing() = 0;

protected:
    ~ConnectionUser() = default;
};

/// A connection's state and the steps that its parts share. No step leaves a statement half read behind.
struct ConnectionCore {
    ConnectionCore(Connection& connection, std::chrono::milliseconds timeout)
        : owner(connection), busyTimeout(timeout) {}

    /// The open ones of the calling thread, in the order in which they were opened.
    static std::vector<ConnectionCore*>& openOnes();

    /// @param step  opens the engine where it isn't open yet
    void open(
        const QString& text, Connection::Handle wanted,
        const std::function<void(DatabaseEngine&)>& step = [](DatabaseEngine& opened) { opened.open(); });
    /// The same as the last time.
    void openAgain() { open(QString(connectionString), handle); }
    void close();
    bool isOpen() const { return engine && engine->isOpen(); }
    void requireOpen() const;

    /// Runs a step that only reads, and once more from its beginning where the engine says that this helps.
    template <class Step>
    auto reading(Step&& step) {
        for (int attempts = 1;; ++attempts) {
            try {
                engine->wake();
                return step();
            } catch (const DatabaseError& error) {
                if (!engine->readsAgain(error, attempts))
                    throw;
            }
        }
    }

    /// Runs one statement that changes nothing, in the engine's SQL with positional values.
    QSqlQuery run(const QString& engineSql, const QVariantList& values = {}) {
        return reading([&] { return engine->run(engineSql, values); });
    }
    QSqlQuery runForMany(const QString& engineSql) {
        return reading([&] { return engine->runForMany(engineSql); });
    }
    /// The whole number that such a statement gives.
    qint64 number(const QString& engineSql) {
        return reading([&] { return engine->number(engineSql); });
    }

    /// Runs one statement that may change the database. @return how many rows it has changed
    int write(const QString& engineSql, const QVariantList& values = {});
    /// Runs a statement in the modules' SQL that may change the database, through a prepared one of its
    /// shape.
    /// @return false where it isn't of that kind, or the engine doesn't take the shape
    bool writePrepared(const QString& sql);
    /// What has to be known of such a statement before it runs, whoever runs it.
    void aboutToWrite();

    void beginPress();
    void finishPress();

    TableShape shape(const QString& table) { return engine->schema.shape(*engine, table); }
    /// What a translation has to know of the table that a statement writes into.
    dialect::Engine dialectFor(const QString& sql);

    DatabaseError failure(DatabaseError::Kind kind, const QString& description) const {
        return {kind, description, engineName};
    }
    DatabaseError failure(const QSqlError& error) const { return engine->failure(error); }

    /// Runs a step that reads a text of the modules: its failures carry the engine's name.
    template <class Step>
    auto inEnginesName(Step&& step) const {
        try {
            return step();
        } catch (const DatabaseError& error) {
            throw failure(error.kind(), error.description());
        } catch (const RuntimeError& error) {
            throw failure(DatabaseError::Kind::statement, error.description());
        }
    }

    Connection& owner;
    std::chrono::milliseconds busyTimeout;
    QString connectionString;  ///< with which it was opened last
    Connection::Handle handle = Connection::Handle::own;
    QString engineName;                      ///< which errors carry as their source
    std::shared_ptr<DatabaseEngine> engine;  ///< nothing while closed
    std::vector<ConnectionUser*> users;
    int presses = 0;                   ///< presses that have begun and aren't finished
    bool pressing = false;             ///< whether the engine knows of them
    std::shared_ptr<Connection> self;  ///< what others hold weakly; only while open
};

struct Connection::Private : ConnectionCore {
    using ConnectionCore::ConnectionCore;
};

}  // namespace kovanix
