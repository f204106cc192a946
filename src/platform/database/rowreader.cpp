#include "database/rowreader.h"

#include <QSqlError>
#include <QSqlRecord>
#include <QSqlResult>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/driver/rowcursor.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

// Some milliseconds each: a writer on a shared drive waits no longer.
constexpr qsizetype chunkRows = 20000;

/// The rows of a query, without a QVariant for each cell.
class Rows {
public:
    explicit Rows(QSqlQuery query)
        : m_query(std::move(query)), m_cursor(*m_query.result()->handle().value<engine::RowCursor*>()) {}

    bool next() { return m_cursor.nextRow(); }
    QSqlError error() const { return m_query.lastError(); }
    QSqlRecord record() const { return m_query.record(); }
    /// A cell of the current row; its bytes are gone with the next row.
    engine::Cell cell(int field) const { return m_cursor.cell(field); }

private:
    QSqlQuery m_query;
    engine::RowCursor& m_cursor;
};

/// @throws RuntimeError the engine's failure
bool next(const ConnectionCore& core, Rows& rows) {
    const bool row = rows.next();
    if (!row && rows.error().isValid())
        throw core.failure(rows.error());
    return row;
}

class Reader {
public:
    Reader(ConnectionCore& core, const QString& sql, const ReadProgress& progress)
        : m_core(core), m_sql(sql), m_progress(progress) {}

    RowTable run() {
        m_core.inEnginesName([this] {
            if (const auto select = dialect::tableSelect(m_sql)) {
                m_table.name = select->table;
                m_shape = m_core.schema.shape(m_core, select->table);
                m_allColumns = select->allColumns;
                m_conditional = select->conditional;
            }
            if (!m_shape.identity.isEmpty() && chunkSql()) {
                readChunks();
            } else {
                readAtOnce();
            }
        });
        for (RowColumn& column : m_table.columns)
            column.finish();
        m_table.identities->squeeze();
        return std::move(m_table);
    }

private:
    /// Of the rows behind those that were read.
    std::optional<QString> chunkSql() const {
        return dialect::translateAfterRow(m_sql, m_shape.identity, {m_afterRow, {}, chunkRows, m_lastRow});
    }

    /// Rows that are looked for by a condition lie together as a rule: sales of a range of time. In the order
    /// of entry the engine goes from the first of them to the last; left to itself it would sort all of them
    /// for the first chunk, and look for one more behind the last to the end of the table.
    void findBounds() {
        QSqlQuery bounds = m_core.run(*dialect::translateBounds(m_sql, m_shape.identity));
        if (!bounds.next())
            throw m_core.failure(bounds.lastError());
        m_rowsToCome = bounds.value(0).toLongLong();
        if (*m_rowsToCome <= chunkRows)
            return;  // those few are quickly sorted
        const qint64 first = bounds.value(1).toLongLong();
        if (first > std::numeric_limits<qint64>::min())
            m_afterRow = first - 1;
        m_lastRow = bounds.value(2).toLongLong();
    }

    /// @param identified  whether the rows come with their identities
    void takeColumns(const QSqlRecord& record, int count, bool identified) {
        if (!m_table.columns.empty())
            return;
        for (int i = 0; i < count; ++i) {
            const QString name = record.fieldName(i);
            const qsizetype place = m_shape.indexOf(name);
            const auto type = place < 0 ? std::nullopt : std::optional(m_shape.columns[place].type);
            // The counter is the rows' identity and needs no memory of its own. In a list of columns its name
            // may stand for something else.
            if (type == ColumnType::counter && identified && m_allColumns)
                m_table.columns.emplace_back(name, m_table.identities);
            else
                m_table.columns.emplace_back(name, type);
        }
    }

    void readChunks() {
        if (m_conditional)
            findBounds();
        for (bool more = true; more;) {
            more = readChunk() == chunkRows;
            if (more) {
                m_afterRow = m_table.identities->back();
                tellProgress();
            }
        }
    }

    /// @return how many rows there were
    qsizetype readChunk() {
        Rows rows(m_core.run(*chunkSql()));
        const QSqlRecord record = rows.record();
        const int identity = record.count() - 1;
        takeColumns(record, identity, true);
        qsizetype count = 0;
        for (; next(m_core, rows); ++count) {
            appendCells(rows);
            m_table.identities->append(rows.cell(identity).whole);
        }
        return count;
    }

    /// What is to come of a whole table is estimated from the identities. Their largest is found at once,
    /// whereas counting would read the whole table one more time.
    void tellProgress() {
        if (!m_progress)
            return;
        if (m_rowsToCome) {
            const auto read = static_cast<qsizetype>(m_table.count());
            m_progress(read, std::max(read, static_cast<qsizetype>(*m_rowsToCome)));
            return;
        }
        if (!m_lastIdentity)
            m_lastIdentity =
                m_core.number(u"SELECT max(%1) FROM %2"_s.arg(m_shape.identity, quotedSqlName(m_table.name)));
        const auto first = static_cast<double>((*m_table.identities)[0]);
        const auto reached = static_cast<double>(m_table.identities->back());
        const double last = std::max(static_cast<double>(*m_lastIdentity), reached);
        const auto rows = static_cast<qsizetype>(m_table.count());
        const double total = static_cast<double>(rows) * (last - first + 1) / (reached - first + 1);
        m_progress(rows, static_cast<qsizetype>(std::llround(total)));
    }

    void readAtOnce() {
        Rows rows(m_core.run(dialect::translate(m_sql, m_shape.identity)));
        const QSqlRecord record = rows.record();
        takeColumns(record, record.count(), false);
        while (next(m_core, rows)) {
            appendCells(rows);
            m_table.identities->append(static_cast<qint64>(m_table.identities->size()) + 1);
        }
    }

    void appendCells(Rows& rows) {
        int field = 0;
        for (RowColumn& column : m_table.columns) {
            if (!column.isIdentity())
                column.append(rows.cell(field));
            ++field;
        }
    }

    ConnectionCore& m_core;
    QString m_sql;
    const ReadProgress& m_progress;
    std::optional<qint64> m_lastIdentity;  ///< of the table
    std::optional<qint64> m_afterRow;      ///< where the next chunk begins
    std::optional<qint64> m_lastRow;       ///< where the last one ends
    std::optional<qint64> m_rowsToCome;    ///< all of them, where they were counted
    bool m_conditional = false;
    TableShape m_shape;
    bool m_allColumns = false;
    RowTable m_table;
};

/// Whether the first fields of a record are the columns of a table.
bool isOf(const RowTable& table, const QSqlRecord& record, int fields) {
    if (fields != static_cast<int>(table.columns.size()))
        return false;
    for (int field = 0; field < fields; ++field) {
        if (record.fieldName(field) != table.columns[static_cast<std::size_t>(field)].name())
            return false;
    }
    return true;
}

}  // namespace

bool rereadRow(ConnectionCore& core, const QString& sql, RowTable& table, std::size_t row) {
    const qint64 identity = (*table.identities)[row];
    std::optional<qint64> before;  // nothing comes before the smallest number
    if (identity > std::numeric_limits<qint64>::min())
        before = identity - 1;
    return core.inEnginesName([&] {
        const TableShape shape = core.schema.shape(core, table.name);
        const auto select = dialect::translateAfterRow(sql, shape.identity, {before, {}, 1});
        if (shape.identity.isEmpty() || !select)
            return false;
        Rows rows(core.run(*select));
        const QSqlRecord record = rows.record();
        const int identityField = record.count() - 1;
        // Another table may stand under the name by now.
        if (!isOf(table, record, identityField) || !next(core, rows) ||
            rows.cell(identityField).whole != identity)
            return false;
        bool changed = false;
        for (int field = 0; field < identityField; ++field) {
            RowColumn& column = table.columns[static_cast<std::size_t>(field)];
            if (!column.isIdentity() && column.replace(row, rows.cell(field)))
                changed = true;
        }
        return changed;
    });
}

RowTable readRows(ConnectionCore& core, const QString& sql, const ReadProgress& progress) {
    return Reader(core, sql, progress).run();
}

}  // namespace kovanix
