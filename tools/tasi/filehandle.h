#pragma once

#include <QSqlDatabase>
#include <QString>

namespace kovanix::tasi {

/// The toolkit's connection to a database file, for this program alone. Gone, it takes back what wasn't
/// committed.
class FileHandle {
public:
    FileHandle();
    ~FileHandle();
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    /// Opens a file that is there, exclusively from its first read on: with a write-ahead log that read is
    /// refused while any till has the file open, and with a rollback journal while one is at work.
    /// @param password  empty for a plain file
    /// @return whether it is open; else database() tells the error
    /// @throws Failure where the driver isn't installed
    bool open(const QString& path, const QString& password);
    /// Lets go of the file.
    void close();

    const QSqlDatabase& database() const { return m_database; }

private:
    QString m_name;
    QSqlDatabase m_database;
};

}  // namespace kovanix::tasi
