#pragma once

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariantList>

namespace kovanix {

class Connection;
struct ConnectionCore;

/// Stores many rows at once, which the file holds all or none of. Made for tools; a till stores row by row,
/// and waits as long as a writer lives: what is to be stored is worked out before.
class BulkWriter {
public:
    /// Begins on an open connection, which must outlive the writer and do nothing else meanwhile.
    explicit BulkWriter(Connection& connection);
    /// Takes back what wasn't finished.
    ~BulkWriter();
    BulkWriter(const BulkWriter&) = delete;
    BulkWriter& operator=(const BulkWriter&) = delete;

    /// Says where the next rows go: a table and the columns that their values are for.
    void into(const QString& table, const QStringList& columns);
    /// Adds a row. @throws DatabaseError
    void add(const QVariantList& values);

    /// Says where the next changes go: a table, the text column by which a row is made sure of, and the
    /// columns that values are for.
    void changing(const QString& table, const QString& key, const QStringList& columns);
    /// Changes cells of a row; an invalid value leaves its cell as it is.
    /// @param row  the row's identity. @param key  what the key column holds, whatever the case of its
    /// letters
    /// @return false where there is no such row any more. @throws DatabaseError
    bool change(qint64 row, const QString& key, const QVariantList& values);
    /// The greatest identity of a table's rows, 0 where it has none: a row that somebody adds gets a greater
    /// one. @throws DatabaseError
    qint64 lastRow(const QString& table);

    /// Keeps the rows, durably. @throws DatabaseError
    void finish();

private:
    QString quoted(const QString& name) const;

    ConnectionCore& m_core;
    QSqlQuery m_insert;
    QSqlQuery m_update;
    bool m_finished = false;
};

}  // namespace kovanix
