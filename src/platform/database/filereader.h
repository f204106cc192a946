#pragma once

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <chrono>
#include <functional>

#include "database/databaseerror.h"
#include "database/driver/rowcursor.h"
#include "database/readingway.h"

namespace kovanix {

/// How a file is copied that others write meanwhile. Each step of a file with a rollback journal keeps its
/// writers waiting; a write-ahead log's never wait.
struct CopyPace {
    std::chrono::milliseconds step{10};   ///< how long one step is to take
    std::chrono::milliseconds pause{25};  ///< between two steps
    std::chrono::minutes patience{10};    ///< a file that others keep changing is given up then
};

/// A database file that is only read, whoever else has it open: nothing is written into it, neither its
/// journal nor its marks change, and what its log holds stays there. A Connection sees to all of these. It
/// may be a file that nobody can write (see openToRead).
///
/// Every operation throws a DatabaseError when it fails.
class FileReader {
public:
    /// Opens a file. One with a write-ahead log on another machine is refused as busy: its log can't be
    /// shared.
    /// @param password  empty for a plain file
    /// @param progress  told where a copy has to be made to read; may throw
    FileReader(const QString& path, const QString& password, const CopyProgress& progress = {});
    ~FileReader();
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    /// Copies the file as it stands at one moment, under the same password.
    /// @param target  path of a new file; it isn't synced
    /// @param progress  told the pages done and all of them; may throw, which ends the copy
    void copyTo(const QString& target, const CopyProgress& progress = {}, const CopyPace& pace = {});

    /// What the engine finds wrong in the file, some lines of it at most; empty when it is sound.
    QStringList faults();
    /// The names of the tables, in the order in which they were made.
    QStringList tables();
    /// The columns of a table.
    QStringList columns(const QString& table);
    /// Goes through the rows that a select of the engine's own SQL gives.
    /// @param each  gets the row; its bytes are gone with the next one. May throw
    void forEachRow(const QString& sql, const std::function<void(const engine::RowCursor& row)>& each);

private:
    void open(const CopyProgress& progress = {});
    void requireNoLog();
    void close();
    bool copyOnce(const QString& target, const CopyProgress& progress, const CopyPace& pace);
    QSqlQuery run(const QString& sql);
    DatabaseError failure(const QSqlError& error) const;

    QString m_path;
    QString m_password;
    bool m_logsAhead = false;
    ReadingWay m_way = ReadingWay::shared;
    QString m_name;  ///< the toolkit's; empty while closed
    QSqlDatabase m_database;
};

/// Makes sure that nobody has a file open or is at work on it, and that all it holds lies in the file itself:
/// what a till that died has left in a log is moved there.
/// @throws DatabaseError (busy) where somebody has it; a till over a network that isn't at work can't be seen
void settleFile(const QString& path, const QString& password);

}  // namespace kovanix
