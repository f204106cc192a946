#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QVariantList>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "database/connection.h"
#include "database/databaseerror.h"
#include "database/filestamp.h"
#include "database/schemacache.h"
#include "database/statementcache.h"
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

    /// The open ones of this process, in the order in which they were opened.
    static std::vector<ConnectionCore*>& openOnes();
    void open(const QString& text);
    void close();

    void requireOpen() const;
    /// Whether the engine's library may be years behind the plain one (Debian's SQLCipher is), and its
    /// answers with it.
    bool isOlderEngine() const { return hasPassword; }
    void openDatabase(const ConnectionString& parts);
    enum class Locking { shared, exclusive };
    /// Opens the engine's handle once more, with another patience for what others hold.
    /// @param locking  exclusive from the first read on, which the open of a file with a password makes
    void openHandle(std::chrono::milliseconds timeout, Locking locking = Locking::shared);
    /// Puts the open file under the journal that it is to have.
    void chooseJournal();
    /// Puts a file that lies on another machine under a rollback journal; asks the tills there to let go of
    /// its log. Leaves no handle open.
    void leaveLogOverNetwork();
    /// The same in one attempt. @return false where another connection has the log in use
    /// @throws DatabaseError in the last attempt, that too
    bool leaveLog(bool lastAttempt);
    bool bearsNetworkMark();
    /// See Connection::leaveLogIfAsked.
    void leaveLogIfAsked();
    void openHandleAgain();
    void closeDatabase();

    /// Runs one statement that changes nothing, in the engine's SQL with positional values.
    QSqlQuery run(const QString& engineSql, const QVariantList& values = {});
    /// The whole number that such a statement gives.
    qint64 number(const QString& engineSql);

    /// Runs one statement that may change the database. @return how many rows it has changed
    int write(const QString& engineSql, const QVariantList& values = {});
    /// Runs a statement in the modules' SQL that may change the database, through a prepared one of its
    /// shape.
    /// @return false where it isn't of that kind, or the engine doesn't take the shape
    bool writePrepared(const QString& sql);
    /// What has to be known of such a statement before it runs, whoever runs it.
    void aboutToWrite();

    /// Leaves the disk barriers of the statements from now on to makeDurable, where the log allows that.
    void beginPress();
    /// Makes what has been written since durable.
    void makeDurable();
    void writeBarrier();
    /// Whether what is written goes into a write-ahead log first.
    bool hasLog();
    /// Moves what the log holds into the file, without waiting. @return whether there is one and nothing of
    /// it is left to move
    bool moveLog();

    /// Goes on with the file that is at the path now, where it isn't the one that is open. @throws
    /// DatabaseError (missing) where none is there; the one that is open then stays so
    void followFile();
    /// Has connections to a file that has left this path open what is there now, before this one does.
    void leaveReplacedFile();
    void settle(qint64 version);
    bool isWrittenOver(const FileStamp& now);
    bool hasLeftPath() const;
    void emptyLog();
    static void reopen(const std::function<bool(ConnectionCore& connection)>& concerned);

    DatabaseError failure(DatabaseError::Kind kind, const QString& description) const {
        return {kind, description, engine};
    }
    DatabaseError failure(const QSqlError& error) const;

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

    /// The state of a file whose log is empty.
    struct Settled {
        FileStamp stamp;
        quint64 writes = 0;
        qint64 version = 0;  ///< the engine's count of what other connections have changed
    };

    Connection& owner;
    std::chrono::milliseconds busyTimeout;
    QString connectionString;  ///< with which it was opened last
    QString name;              ///< the connection's name in the toolkit; empty while closed
    QString engine;            ///< the name that errors carry as their source
    QString target;            ///< path of the file, links followed
    bool hasPassword = false;
    bool onNetwork = false;  ///< the file lies on another machine
    bool logsAhead = false;  ///< the file has a write-ahead log
    QSqlDatabase database;
    SchemaCache schema;
    StatementCache statements;
    std::vector<ConnectionUser*> users;
    int presses = 0;  ///< presses that have begun and aren't finished
    bool defersBarrier = false;
    bool wroteInPress = false;  ///< by a statement that went through: one that fails leaves nothing to sync
    QString path;               ///< of the file that was opened
    FileStamp stamp;            ///< of that file, as it was found there
    std::optional<Settled> settled;
    quint64 opening = 0;
    std::shared_ptr<quint64> writes;   ///< counted over all connections of this process to the file
    std::shared_ptr<Connection> self;  ///< what others hold weakly; only while open
};

struct Connection::Private : ConnectionCore {
    using ConnectionCore::ConnectionCore;
};

}  // namespace kovanix
