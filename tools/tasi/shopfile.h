#pragma once

#include <QList>
#include <QSqlQuery>
#include <QString>
#include <functional>

#include "columnform.h"
#include "database/driver/rowcursor.h"
#include "filehandle.h"
#include "tables.h"

namespace kovanix::tasi {

/// A shop's database file, held so that no till reads or writes it as long as this lives. Nothing is written
/// into it but what an unfinished log of a till that died still holds.
/// Every operation throws a Failure.
class ShopFile {
public:
    /// Opens and locks. A file that a till has open, one that can only be read, a wrong password fail here.
    /// @param password  empty for a plain file
    ShopFile(const QString& path, const QString& password);
    ShopFile(const ShopFile&) = delete;
    ShopFile& operator=(const ShopFile&) = delete;

    /// The tables with their columns, the forms that these take on a server, and how many rows they hold.
    const QList<Table>& tables() const { return m_tables; }
    /// What isn't moved with them, and what isn't as a till makes it.
    const QList<Notice>& notices() const { return m_notices; }

    /// Goes through the rows of a table in order of entry. Behind the cells of its columns each row has the
    /// identity that the file knows it by (null where it has none).
    void forEachRow(const Table& table, const std::function<void(const engine::RowCursor& row)>& each);

    /// Has the file bear another name, with the lock still on it: no till gets in between.
    /// @param path  in the same folder; nothing is there
    void rename(const QString& path);

    /// The path that the file has now, links followed.
    const QString& path() const { return m_path; }

private:
    void open(const QString& password);
    void readCatalogue();
    Table readTable(const QString& name, const QString& createSql);
    void chooseForms(Table& table, const QStringList& declared);
    /// What those columns hold, one by one.
    QList<ColumnContents> contentsOf(const Table& table, const QList<int>& columns);
    void noteOddities(const Table& table);
    QSqlQuery run(const QString& sql);
    qint64 number(const QString& sql);
    [[noreturn]] void fail(const QSqlError& error) const;

    QString m_path;
    bool m_hasPassword = false;
    FileHandle m_handle;
    QList<Table> m_tables;
    QList<Notice> m_notices;
};

/// Whether some program has a database file open or at work; false for a file that isn't there. Only of a
/// file that this process itself has not open, for whose locks the question is the end.
bool isDatabaseInUse(const QString& path);

/// Renames a file, and never over another one; durable when it returns. @throws Failure
void renameFile(const QString& from, const QString& to);

/// Has the folder of a path keep the names that it holds now, through a power cut too.
void syncFolder(const QString& path);

}  // namespace kovanix::tasi
