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

    /// Keeps the rows, durably. @throws DatabaseError
    void finish();

private:
    QString quoted(const QString& name) const;

    ConnectionCore& m_core;
    QSqlQuery m_insert;
    bool m_finished = false;
};

}  // namespace kovanix
