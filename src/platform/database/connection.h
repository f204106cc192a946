#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>
#include <memory>

namespace kovanix {

class Recordset;

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

/// One connection to a database file: plain files through the toolkit's SQLite driver, files with a password
/// through the QSQLCIPHER driver.
///
/// Every operation but close and isOpen throws a RuntimeError (databaseFailure, the engine's own words, the
/// engine's name as source) when it fails. Statements are in the modules' SQL (see dialect.h).
class Connection {
public:
    /// How long a statement waits for a file that another connection has locked, before it fails.
    static constexpr std::chrono::milliseconds defaultBusyTimeout{5000};

    explicit Connection(std::chrono::milliseconds busyTimeout = defaultBusyTimeout);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// Opens the file of a connection string; an open connection is an error. A missing file is an error and
    /// is not made. The catalogue is read at once, so that a wrong password, a damaged file, a folder and a
    /// file locked for longer than the busy time-out fail here and leave the connection closed.
    ///
    /// A file on a local file system is put into write-ahead logging, one on a network file system into a
    /// rollback journal; both with synchronous=FULL. A file that was opened over a network once bears a mark,
    /// and keeps its rollback journal on its own machine too: a write-ahead log can't be shared between
    /// machines. Over the network a file that is in use with a write-ahead log fails to open. A file that can
    /// only be read keeps the journal that it has.
    void open(const QString& connectionString);

    /// Closes; recordsets that are open on it are closed with it. A closed connection stays closed.
    void close();

    bool isOpen() const;

    /// Executes one statement that gives no rows. Recordsets of this connection that are half read keep their
    /// place.
    ///
    /// "ALTER TABLE … ADD COLUMN … COUNTER" numbers the rows in order of entry by rebuilding the table in one
    /// transaction, and fails where the table has a counter already.
    void execute(const QString& sql);

    /// The table catalogue: all tables, views and system tables.
    QList<TableInfo> tables();

    /// The column catalogue: the names of a table's columns in their order; none when there is no such table.
    /// With a column name, only that column, found without regard to case.
    QStringList columns(const QString& table, const QString& column = {});

    /// Moves what the write-ahead log holds into the database file as far as no reader stands in the way,
    /// without waiting, so that a plain copy of the file is whole. Nothing to do with a rollback journal.
    void checkpoint();

private:
    friend class Recordset;
    friend class RowSet;
    struct Private;
    std::unique_ptr<Private> d;
};

/// Replaces the question whether a database file lies on another machine; an empty function brings back the
/// real one, which asks the mount table.
void setNetworkFileTest(std::function<bool(const QString& path)> test);

/// Whether a file system of that type (as the mount table names it: "nfs4", "cifs", "ext4") lies on another
/// machine.
bool isNetworkFileSystem(const QByteArray& type);

}  // namespace kovanix
