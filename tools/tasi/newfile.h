#pragma once

#include <QSqlQuery>
#include <QString>
#include <vector>

#include "database/driver/rowcursor.h"
#include "filehandle.h"
#include "tables.h"

namespace kovanix::tasi {

/// A file that goes again unless it is kept: it bears another name until then. Every operation throws a
/// Failure.
class NewFile {
public:
    /// @param path  there is none yet
    explicit NewFile(const QString& path);
    ~NewFile() { remove(); }
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Where it is as long as it isn't kept.
    const QString& path() const { return m_made; }

    /// Puts it on the disk and gives it its name.
    void keep();

private:
    void remove() const;

    QString m_path;
    QString m_made;
};

/// Writes the rows of a new file's tables. It keeps no journal, for a file that isn't whole is thrown away,
/// and takes the cells as they come from the server. Every operation throws a Failure.
class FileFiller {
public:
    /// @param path  of a file in which the tables are; nobody else has it open
    /// @param password  empty for a plain file
    FileFiller(const QString& path, const QString& password);

    /// Says where the next rows go.
    void into(const Table& table);
    void add(const std::vector<engine::Cell>& cells);
    /// Has the counter go on behind the last number that it has given: the engine counts on from the last
    /// row, and numbers whose rows were deleted aren't given again either.
    void setCounter(const Table& table);
    /// Writes what is left and lets go of the file.
    void finish();

private:
    void run(const QString& sql);
    [[noreturn]] static void fail(const QSqlError& error);

    FileHandle m_handle;
    QSqlQuery m_insert;
    engine::RowCursor* m_rows = nullptr;  ///< of m_insert
};

}  // namespace kovanix::tasi
