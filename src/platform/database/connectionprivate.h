#pragma once

#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <vector>

#include "database/connection.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

/// The engine's own words for a failure.
RuntimeError engineError(const QSqlError& error, const QString& engine);

/// What a connection does with the recordsets that are open on it.
class ConnectionUser {
public:
    virtual void suspendReading() = 0;
    virtual void connectionClosing() = 0;

protected:
    ~ConnectionUser() = default;
};

/// A connection's state and the steps that its parts share.
struct ConnectionCore {
    explicit ConnectionCore(std::chrono::milliseconds timeout) : busyTimeout(timeout) {}

    void requireOpen() const;
    /// Whether the engine's library may be years behind the plain one (Debian's SQLCipher is), and its
    /// answers with it.
    bool isOlderEngine() const { return engine == u"SQLCipher"; }
    void openDatabase(const ConnectionString& parts);
    void prepareLocalFile();
    void prepareNetworkFile();
    bool bearsNetworkMark();
    void closeDatabase();
    void suspendReading();

    /// Runs one statement in the engine's SQL with positional values.
    QSqlQuery run(const QString& engineSql, const QVariantList& values = {});

    /// The modules' SQL as the engine's; a malformed statement is the engine's error.
    QString translated(const QString& sql) const;

    std::chrono::milliseconds busyTimeout;
    QString name;    ///< the connection's name in the toolkit; empty while closed
    QString engine;  ///< the name that errors carry as their source
    QSqlDatabase database;
    std::vector<ConnectionUser*> users;
};

struct Connection::Private : ConnectionCore {
    using ConnectionCore::ConnectionCore;
};

}  // namespace kovanix
