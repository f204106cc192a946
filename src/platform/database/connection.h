#pragma once

#include <QList>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>

#include "database/changemark.h"
#include "database/databaseerror.h"
#include "database/tableshape.h"

namespace kovanix {

/// The parts of a connection string that reach the engine.
struct ConnectionString {
    QString dataSource;  ///< path of the database file
    QString password;    ///< the file's password; empty for a plain file

    /// Reads "Provider=…;Data Source=…;Persist Security Info=False;Jet OLEDB:Database Password=…". Keys are
    /// found in any case. Nothing in the string is quoted, so a value runs to the next ";" that a known key
    /// follows: paths and passwords may hold semicolons and equals signs.
    static ConnectionString parse(const QString& text);
};

/// An entry of the table catalogue.
struct TableInfo {
    QString name;
    QString type;  ///< "TABLE", "VIEW" or "SYSTEM TABLE"
};

/// One connection to a database file: plain files through the driver KOVANIXSQLITE, files with a password
/// through QSQLCIPHER.
///
/// Every operation but close and isOpen throws a DatabaseError (databaseFailure, a description as of
/// describeFailure, the engine's name as source) when it fails. Statements are in the modules' SQL (see
/// dialect.h). No operation leaves a lock or a half-read statement behind.
///
/// A connection is opened, used and closed in one thread. Connections of two threads know of each other no
/// more than those of two processes do.
class Connection {
public:
    /// How long a statement waits for a file that another connection has locked, before it fails.
    static constexpr std::chrono::milliseconds defaultBusyTimeout{5000};

    /// Whose the engine's handle on the database is.
    enum class Handle { own, shared };

    explicit Connection(std::chrono::milliseconds busyTimeout = defaultBusyTimeout);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Opens the file of a connection string; an open connection is an error. A missing file is an error and
    /// is not made. The catalogue is read at once, so that a wrong password, a damaged file, a folder and a
    /// file locked for longer than the busy time-out fail here and leave the connection closed.
    ///
    /// A file on a local file system is put into write-ahead logging, one on a network file system into a
    /// rollback journal; both with synchronous=EXTRA (but see Press). A file that was opened over a network
    /// once bears a mark, and keeps its rollback journal on its own machine too: a write-ahead log can't be
    /// shared between machines. Over the network a file that is in use with a write-ahead log is asked for
    /// (leaveLogIfAsked) and fails to open when nobody lets go of it within the busy time-out. A file that
    /// can only be read keeps the journal that it has.
    ///
    /// @param handle  shared: connections of one thread that were opened so with the same string have one
    ///   handle in common, and what is kept prepared on it, so that neither drops its page cache over the
    ///   other's writes. Each is opened and closed by itself, with the recordsets and presses of its own.
    void open(const QString& connectionString, Handle handle = Handle::own);

    /// Closes; recordsets that are open on it are closed with it. A closed connection stays closed.
    void close();

    bool isOpen() const;
    /// Whether what it was opened to has failed since: to go on, it has to be opened anew.
    bool isLost() const;

    /// The connection of the calling thread that was opened with that very string and is open still, the
    /// longest open one where there are several: opening a file with a password takes long. Expired where
    /// there is none, and from the moment on when it closes. Hold what lock() gives for the length of one
    /// operation only.
    static std::weak_ptr<Connection> findOpen(const QString& connectionString);

    /// Executes one statement that gives no rows. Recordsets of this connection keep their place.
    ///
    /// "ALTER TABLE … ADD COLUMN … COUNTER" numbers the rows in order of entry by rebuilding the table in one
    /// transaction, and fails where the table has a counter already.
    void execute(const QString& sql);

    /// The table catalogue: all tables, views and system tables.
    QList<TableInfo> tables();

    /// A table's or view's columns and the identity of its rows, found without regard to case; no columns
    /// where there is no such table. Kept in memory as long as nobody changes a table.
    TableShape shape(const QString& table);

    /// Keeps an index over a column, under a name of the room's own. An index is no part of a table and only
    /// makes look-ups fast: a failure to make it is passed over.
    void keepIndex(const QString& table, const QString& column);

    /// A mark of what the database holds now; take it before the read that it is to prove. It never throws:
    /// where nothing can be proved, the mark is equal to none.
    ChangeMark changeMark();

    /// What a till does for its file while nobody waits for it: moves what the write-ahead log holds into the
    /// database file as far as no reader stands in the way, without waiting, so that a plain copy of the file
    /// is whole. Nothing to do with a rollback journal.
    void idle();

    /// What a till does from time to time, and before it sells, for tills that want to open the same file
    /// over a network: a write-ahead log can't be shared between machines, so that this file's is left for a
    /// rollback journal, with all connections of this process to it. Where nobody asks, this is one look at
    /// the folder. A failure leaves the log as it was; a connection whose file can't be opened any more is
    /// closed. Nothing happens while the file isn't the one at its path: that is the next Press's business.
    void leaveLogIfAsked();

private:
    friend class BulkWriter;
    friend class Press;
    friend class Recordset;
    friend class RowSet;
    friend class RowWalk;
    friend class StagedRows;
    struct Private;
    std::unique_ptr<Private> d;
};

/// Replaces the question whether a database file lies on another machine; an empty function brings back the
/// real one, which asks the mount table.
void setNetworkFileTest(std::function<bool(const QString& path)> test);

/// Whether a file lies on another machine.
bool liesOnNetwork(const QString& path);

/// Whether a file system of that type (as the mount table names it: "nfs4", "cifs", "ext4") lies on another
/// machine.
bool isNetworkFileSystem(const QByteArray& type);

}  // namespace kovanix
