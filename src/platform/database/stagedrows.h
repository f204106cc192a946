#pragma once

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <functional>

namespace kovanix {

class Connection;
struct ConnectionCore;

/// Many rows for one table, new ones and changes, that are laid ready where only this connection sees them
/// and then stored together: others who write wait for the storing alone, which is the engine's own work by
/// then. Made for tools.
class StagedRows {
public:
    /// @param connection  open; must outlive the rows
    /// @param columns  of the table, in the order of the values; the first is a text by which a row that is
    /// changed is made sure of
    StagedRows(Connection& connection, const QString& table, const QStringList& columns);
    ~StagedRows();
    StagedRows(const StagedRows&) = delete;
    StagedRows& operator=(const StagedRows&) = delete;

    /// Lays a new row ready. @throws DatabaseError
    void add(const QVariantList& values) { lay(0, values); }
    /// Lays the change of a row ready.
    /// @param row  its identity. @param values  the first is what its key column holds, whatever the case of
    /// its letters; an invalid one leaves its cell as it is. @throws DatabaseError
    void change(qint64 row, const QVariantList& values) { lay(row, values); }

    /// Stores all of them durably, or none; after a failure it may be called again.
    /// @param lastRow  the greatest identity that the table may have where rows are new; 0 for a table
    /// without rows
    /// @param step  told how many rows are stored so far, for the first time when others begin to wait; what
    /// it throws takes all of them back
    /// @return false, and nothing is stored, where the table has other rows by now
    /// @throws DatabaseError
    bool store(qint64 lastRow, const std::function<void(qint64 done)>& step = {});

private:
    void lay(qint64 row, const QVariantList& values);
    void insert(qsizetype rows);
    bool storeWithin(qint64 lastRow, const std::function<void(qint64 done)>& step);
    QString quoted(const QString& name) const;

    ConnectionCore& m_core;
    QString m_table;
    QString m_identity;
    QStringList m_columns;  // quoted
    QVariantList m_values;  // of rows that are not in the stage yet
    QSqlQuery m_insert;     // of as many rows as go there at once
    qint64 m_count = 0;
    qint64 m_new = 0;
    bool m_indexed = false;
};

}  // namespace kovanix
