#pragma once

#include <QByteArray>
#include <QList>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "database/connection.h"
#include "database/databaseerror.h"
#include "database/dialect.h"
#include "database/schemacache.h"
#include "database/statementcache.h"

namespace kovanix {

struct ConnectionCore;

/// Whether the toolkit has a driver, which may lie beside the program as built or as installed.
bool findDriver(const QString& driver);

/// A connection's way to its database: one handle of the toolkit, what is kept prepared on it, what is known
/// of its tables. Several connections of this process may have one in common. No step leaves a statement half
/// read behind.
class DatabaseEngine {
public:
    /// The engine that serves a data source, not yet open.
    static std::shared_ptr<DatabaseEngine> of(const ConnectionString& parts,
                                              std::chrono::milliseconds busyTimeout);

    virtual ~DatabaseEngine() = default;
    DatabaseEngine(const DatabaseEngine&) = delete;
    DatabaseEngine& operator=(const DatabaseEngine&) = delete;

    // --- the handle
    /// @throws DatabaseError; close() then clears up
    virtual void open() = 0;
    /// Likewise, to read only: the database may be one that can't be written.
    virtual void openToRead(const CopyProgress& /*progress*/) { open(); }
    void close();
    bool isOpen() const { return m_database.isOpen(); }
    const QSqlDatabase& database() const { return m_database; }
    /// Whether what is open is still what an open would find.
    virtual bool isCurrent() const { return isOpen(); }
    /// The name that errors carry as their source.
    const QString& name() const { return m_name; }
    std::chrono::milliseconds busyTimeout() const { return m_busyTimeout; }

    // --- statements, in the engine's SQL with positional values
    /// Runs one that changes nothing.
    virtual QSqlQuery run(const QString& sql, const QVariantList& values = {});
    /// The same for a statement that gives many rows: what makes their cells cheap pays off.
    virtual QSqlQuery runForMany(const QString& sql) { return run(sql); }
    /// The whole number that such a statement gives.
    qint64 number(const QString& sql);
    /// Whether a statement is to be executed once or kept for more.
    enum class Use { once, kept };
    /// Prepares one. @return false where the engine doesn't take it; the query then tells why. One for a
    /// single use may be refused as late as at its execution
    virtual bool prepare(QSqlQuery& query, const QString& sql, Use use);
    /// Executes one that may change the database. @param sql  empty for a query that is prepared
    virtual void executeWrite(QSqlQuery& query, const QString& sql = {});
    /// Runs one that may change the database. @return how many rows it has changed
    int write(const QString& sql, const QVariantList& values = {});
    /// Whether a read that failed is worth another attempt, which then may succeed.
    /// @param attempts  how many there were
    virtual bool readsAgain(const DatabaseError& /*failure*/, int /*attempts*/) { return false; }
    /// Ahead of what begins after a while without any.
    virtual void wake() {}

    // --- presses
    /// Ahead of a connection's press: what can make it close or open anew.
    virtual void prepareForPress(ConnectionCore& /*connection*/) {}
    /// Leaves the disk barriers of the statements from now on to endPress.
    virtual void beginPress() = 0;
    /// Makes what has been written since durable.
    virtual void endPress() = 0;
    virtual void idle() {}
    virtual void leaveLogIfAsked() {}

    // --- tables
    virtual dialect::Target target() const { return dialect::Target::file; }
    /// What a translation has to know beside a statement about a table.
    dialect::Engine dialectFor(const TableShape& shape) const { return {target(), shape.columns}; }
    /// A count of the changes to the tables, the same one as long as nobody changes them.
    virtual qint64 tablesVersion() = 0;
    /// Whether that counts what others change, too.
    virtual bool tellsOfTables() const { return true; }
    virtual TableShape readShape(const QString& table) = 0;
    virtual QList<TableInfo> readTables() = 0;
    /// Runs a statement in the modules' SQL that makes, changes or drops tables.
    virtual void changeTables(const QString& sql) = 0;
    virtual void keepIndex(const QString& table, const QString& column) = 0;
    /// A value as a column of that kind takes it.
    virtual QVariant fitting(const QVariant& value, const TableColumn& /*column*/) const { return value; }

    // --- many statements together
    /// What tells the database's content apart, as far as others have changed it.
    virtual QByteArray contentMark() = 0;
    ChangeMark changeMark();
    virtual void beginTransaction() = 0;
    /// @param keep  whether what was written since stays, durably, or is taken back
    virtual void endTransaction(bool keep) = 0;

    // --- failures
    virtual DatabaseError failure(const QSqlError& error) const = 0;
    /// A failure in the shop's words, with the engine's own behind them.
    virtual DatabaseError describedFailure(DatabaseError::Kind kind, const QString& words) const = 0;
    DatabaseError plainFailure(DatabaseError::Kind kind, const QString& description) const {
        return {kind, description, m_name};
    }

    SchemaCache schema;
    StatementCache statements;
    std::vector<ConnectionCore*> connections;  ///< that have it in common
    /// Counts the statements that may have written, over all connections of this process to the database.
    std::shared_ptr<quint64> writes = std::make_shared<quint64>(0);
    bool wroteInPress = false;  ///< by a statement that went through: one that fails leaves nothing to sync

protected:
    DatabaseEngine(QString name, std::chrono::milliseconds busyTimeout)
        : m_name(std::move(name)), m_busyTimeout(busyTimeout) {}

    /// @throws DatabaseError where a driver isn't installed
    void requireDriver(const QString& driver) const;
    /// Adds the toolkit's connection through a driver.
    void addToolkitConnection(const QString& driver);
    /// Opens the toolkit's connection, once more or for the first time.
    void openHandle();
    /// It is open.
    void handleOpened();
    /// While the toolkit's connection is still there.
    virtual void aboutToClose() {}

    QSqlDatabase m_database;
    quint64 m_opening = 0;  ///< which opening of a handle in this process

private:
    QString m_name;
    std::chrono::milliseconds m_busyTimeout;
    QString m_toolkitName;  ///< empty while closed
};

}  // namespace kovanix
