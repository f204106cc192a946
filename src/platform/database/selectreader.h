#pragma once

#include <QSqlQuery>
#include <QString>
#include <QStringList>
#include <QVariantList>
#include <optional>
#include <vector>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/rowfilter.h"
#include "database/statementcache.h"
#include "database/statementshape.h"
#include "database/tableshape.h"

namespace kovanix {

/// Asks for the rows of one select. Every read is a statement of its own that has ended when the read returns
/// or throws; where the rows come in order of entry, it may ask for those after a row only.
class SelectReader {
public:
    struct Row {
        QVariantList fields;
        qint64 identity = 0;  ///< meaningless where the rows have none
    };

    struct Range {
        std::optional<qint64> afterRow;
        qint64 limit = 0;  ///< 0 for all
    };

    /// Checks a select in the modules' SQL without running it. The connection must outlive the reader.
    /// @param firstLimit  how many rows the first read will ask for, where it may
    /// @throws DatabaseError the engine's, for a select that it can't run
    SelectReader(ConnectionCore& core, const QString& sql, qint64 firstLimit);

    /// What a select from a single table says; nothing for any other.
    const std::optional<dialect::TableSelect>& select() const { return m_select; }
    /// The shape of that table as it was at the open.
    const TableShape& shape() const { return m_shape; }
    bool hasIdentities() const { return m_select && !m_shape.identity.isEmpty(); }
    /// Whether a read can begin after a row and end early.
    bool readsRanges() const {
        return hasIdentities() && !m_select->ordered && !m_select->limited && m_filterInMemory.isEmpty();
    }
    /// Whether a read looks for its rows by a condition.
    bool isConditional() const { return (m_select && m_select->conditional) || m_filterCondition; }

    /// The fields' names in their order, as of the last read.
    const QStringList& names() const { return m_names; }
    /// The place of a field, whatever the case of its name; -1 where there is none.
    qsizetype indexOf(const QString& name) const;

    /// A filter as a condition of the statement; nothing where it has to be matched on the rows read.
    /// @throws DatabaseError (value) for a filter that doesn't fit the table
    std::optional<dialect::Condition> condition(const RowFilter& filter) const;
    /// Whether a row that was read matches a filter. Letter case counts as in a statement where the pattern
    /// has no wildcard, in the Turkish way where it has one.
    bool matches(const RowFilter& filter, const Row& row) const;

    /// Narrows all reads from now on down to the rows that match; an empty one lets all through.
    void setFilter(const RowFilter& filter);

    /// Reads rows in their order. A range only where readsRanges() says so.
    /// @param condition  of the statement, beside the filter
    std::vector<Row> read(const Range& range, const dialect::Condition& condition = {});

    /// How many rows there are; nothing where only reading them all can tell.
    std::optional<qint64> count();

private:
    dialect::Condition withFilter(const dialect::Condition& condition) const;
    QString engineSql(const QString& sql, const Range& range, const QString& condition) const;
    void check();
    StatementCache::Kept prepared(const QString& engineSql, DatabaseEngine::Use use) const;
    std::vector<Row> readOnce(const Range& range, const dialect::Condition& condition);
    bool takePrepared(const QString& text);
    std::vector<Row> fetch(QSqlQuery& query);

    ConnectionCore& m_core;
    QString m_sql;
    std::optional<dialect::TableSelect> m_select;
    TableShape m_shape;
    bool m_onlyReads = true;
    qint64 m_firstLimit;
    std::optional<StatementCache::Kept> m_first;  // the statement of the open, kept for the first read
    std::optional<StatementShape> m_shared;       // its shape, where others of that shape may have it again
    std::optional<dialect::Condition> m_filterCondition;
    RowFilter m_filterInMemory;
    QStringList m_names;
};

}  // namespace kovanix
