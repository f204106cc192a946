#pragma once

#include <QFile>
#include <QMap>
#include <QString>

#include "settle.h"
#include "tables.h"

namespace kovanix::tasi {

/// What a move has changed or left, line by line: a text file of columns between tabs, readable by its owner
/// only. Made with its first line; thrown away again unless it is kept.
class Report {
public:
    /// @param path  where it is to be; another number is put behind the name while there is a file; empty
    /// counts only
    explicit Report(const QString& path);
    ~Report();
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    void note(const Notice& notice);
    /// @param row  the row's number
    void cell(const Table& table, qint64 row, const Column& column, const engine::Cell& before,
              const SettledCell& after);

    /// Has the disk hold what was written. @throws Failure where it can't
    void flush();
    void keep() { m_kept = true; }

    /// The cells that were settled.
    qint64 cells() const;
    const QMap<Odd, qint64>& counts() const { return m_counts; }
    qint64 notices() const { return m_notices; }
    /// Empty while there is nothing to tell.
    QString path() const { return m_file.isOpen() ? m_file.fileName() : QString(); }

private:
    void write(const QStringList& fields);

    QString m_path;
    QFile m_file;
    QMap<Odd, qint64> m_counts;
    qint64 m_notices = 0;
    bool m_kept = false;
};

}  // namespace kovanix::tasi
