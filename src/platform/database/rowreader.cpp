#include "database/rowreader.h"

#include <QSqlRecord>
#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/queryrows.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

// Some milliseconds each: a writer on a shared drive waits no longer.
constexpr qsizetype chunkRows = 20000;

class Reader {
public:
    Reader(ConnectionCore& core, const QString& sql, const ReadProgress& progress)
        : m_core(core), m_sql(sql), m_progress(progress) {}

    RowTable run() {
        m_core.inEnginesName([this] {
            if (const auto select = dialect::tableSelect(m_sql)) {
                m_table.name = select->table;
                m_shape = m_core.shape(select->table);
                m_allColumns = select->allColumns;
                m_conditional = select->conditional;
                m_range.withIdentity = !(m_allColumns && identityColumn());
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
    /// The column that holds the rows' identities; nothing where they lie beside the columns.
    const TableColumn* identityColumn() const {
        const auto found = std::ranges::find_if(m_shape.columns, [this](const TableColumn& column) {
            return column.type == ColumnType::counter && quotedSqlName(column.name) == m_shape.identity;
        });
        return found == m_shape.columns.cend() ? nullptr : &*found;
    }

    /// Of the rows behind those that were read.
    std::optional<QString> chunkSql() const {
        return dialect::translateAfterRow(m_sql, m_shape.identity, m_range,
                                          m_core.engine->dialectFor(m_shape));
    }

    /// Rows that are looked for by a condition lie together as a rule: sales of a range of time. The engine
    /// goes through the table from the first of them to the last; left to itself it would sort all of them
    /// for the first chunk, and look for one more behind the last to the end of the table.
    void findExtent() {
        QueryRows extent(m_core.run(
            *dialect::translateExtent(m_sql, m_shape.identity, m_core.engine->dialectFor(m_shape))));
        extent.next(m_core);
        m_rowsToCome = extent.cell(2).whole;
        if (*m_rowsToCome <= chunkRows)
            return;  // those few are found by an index and quickly sorted
        m_range.byIdentity = true;
        // One lower bound only: of two, the engine would start at either.
        if (const qint64 first = extent.cell(0).whole; first > std::numeric_limits<qint64>::min())
            m_range.afterRow = first - 1;
        m_range.condition = m_shape.identity + u" <= " + QString::number(extent.cell(1).whole);
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
            findExtent();
        for (bool more = true; more;) {
            more = readChunk() == chunkRows;
            if (more) {
                m_range.afterRow = m_table.identities->back();
                tellProgress();
            }
        }
    }

    /// @return how many rows there were
    qsizetype readChunk() {
        QueryRows rows(m_core.runForMany(*chunkSql()));
        const QSqlRecord record = rows.record();
        const int identity =
            m_range.withIdentity ? record.count() - 1 : record.indexOf(identityColumn()->name);
        if (identity < 0)
            throw m_core.failure(DatabaseError::Kind::noSuchColumn, identityColumn()->name);
        takeColumns(record, record.count() - (m_range.withIdentity ? 1 : 0), true);
        qsizetype count = 0;
        for (; rows.next(m_core); ++count) {
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
            m_lastIdentity = m_core.number(u"SELECT max(%1) FROM %2"_s.arg(
                m_shape.identity, dialect::quotedName(m_table.name, m_core.engine->target())));
        const auto first = static_cast<double>((*m_table.identities)[0]);
        const auto reached = static_cast<double>(m_table.identities->back());
        const double last = std::max(static_cast<double>(*m_lastIdentity), reached);
        const auto rows = static_cast<qsizetype>(m_table.count());
        const double total = static_cast<double>(rows) * (last - first + 1) / (reached - first + 1);
        m_progress(rows, static_cast<qsizetype>(std::llround(total)));
    }

    void readAtOnce() {
        QueryRows rows(m_core.run(dialect::translate(m_sql, m_shape.identity, m_core.dialectFor(m_sql))));
        const QSqlRecord record = rows.record();
        takeColumns(record, record.count(), false);
        while (rows.next(m_core)) {
            appendCells(rows);
            m_table.identities->append(static_cast<qint64>(m_table.identities->size()) + 1);
        }
    }

    void appendCells(QueryRows& rows) {
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
    dialect::RowRange m_range{{}, {}, chunkRows};  ///< of the next chunk
    std::optional<qint64> m_lastIdentity;          ///< of the table
    std::optional<qint64> m_rowsToCome;            ///< all of them, where they were counted
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
        const TableShape shape = core.shape(table.name);
        const auto select =
            dialect::translateAfterRow(sql, shape.identity, {before, {}, 1}, core.engine->dialectFor(shape));
        if (shape.identity.isEmpty() || !select)
            return false;
        QueryRows rows(core.run(*select));
        const QSqlRecord record = rows.record();
        const int identityField = record.count() - 1;
        // Another table may stand under the name by now.
        if (!isOf(table, record, identityField) || !rows.next(core) ||
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
