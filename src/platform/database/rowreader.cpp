#include "database/rowreader.h"

#include <QSqlError>
#include <QSqlRecord>
#include <algorithm>
#include <cmath>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

// Some milliseconds each: a writer on a shared drive waits no longer.
constexpr qsizetype chunkRows = 20000;

/// Whether a select asks for all columns by its star and nothing else.
bool asksForAll(const SqlTokens& tokens) {
    return tokens.isWord(0, "SELECT"_L1) && tokens.isSign(1, u'*') && tokens.isWord(2, "FROM"_L1);
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
            }
            if (!m_shape.identity.isEmpty() && chunkSql(std::nullopt)) {
                nameColumns();
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
    std::optional<QString> chunkSql(std::optional<qint64> afterRow) const {
        return dialect::translateAfterRow(m_sql, m_shape.identity, {afterRow, {}, chunkRows});
    }

    /// Names the columns behind a star, and has texts come as the bytes that they are: the engine and the
    /// driver would make UTF-16 of each for nothing. A counter that is the rows' identity need not come
    /// twice.
    void nameColumns() {
        SqlTokens tokens(m_sql);
        if (!asksForAll(tokens))
            return;
        QStringList list;
        for (const TableColumn& column : std::as_const(m_shape.columns)) {
            const QString name = quotedSqlName(column.name);
            if (column.type == ColumnType::counter) {
                m_table.columns.emplace_back(column.name, m_table.identities);
                continue;
            }
            m_table.columns.emplace_back(column.name, column.type);
            list.append(column.type == ColumnType::text ? u"CAST(%1 AS BLOB)"_s.arg(name) : name);
        }
        tokens[1].text = list.isEmpty() ? u"NULL"_s : list.join(u", "_s);
        m_sql = tokens.text();
    }

    void takeColumns(const QSqlRecord& record, int count) {
        if (!m_table.columns.empty())
            return;
        for (int i = 0; i < count; ++i) {
            const qsizetype place = m_shape.indexOf(record.fieldName(i));
            m_table.columns.emplace_back(
                record.fieldName(i), place < 0 ? std::nullopt : std::optional(m_shape.columns[place].type));
        }
    }

    void readChunks() {
        std::optional<qint64> afterRow;
        for (bool more = true; more;) {
            QSqlQuery query = m_core.run(*chunkSql(afterRow));
            const QSqlRecord record = query.record();
            const int identity = record.count() - 1;
            takeColumns(record, identity);
            qsizetype rows = 0;
            for (; next(query); ++rows) {
                appendCells(query);
                m_table.identities->append(query.value(identity).toLongLong());
            }
            more = rows == chunkRows;
            if (more) {
                afterRow = m_table.identities->back();
                query.finish();
                tellProgress();
            }
        }
    }

    /// What is to come is estimated from the identities. Their largest is found at once, whereas counting
    /// would read the whole table one more time.
    void tellProgress() {
        if (!m_progress)
            return;
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
        QSqlQuery query = m_core.run(dialect::translate(m_sql, m_shape.identity));
        const QSqlRecord record = query.record();
        takeColumns(record, record.count());
        while (next(query)) {
            appendCells(query);
            m_table.identities->append(static_cast<qint64>(m_table.identities->size()) + 1);
        }
    }

    bool next(QSqlQuery& query) const {
        const bool row = query.next();
        if (!row && query.lastError().isValid())
            throw m_core.failure(query.lastError());
        return row;
    }

    void appendCells(QSqlQuery& query) {
        int cell = 0;
        for (RowColumn& column : m_table.columns) {
            if (!column.isIdentity())
                column.append(query.value(cell++));
        }
    }

    ConnectionCore& m_core;
    QString m_sql;
    const ReadProgress& m_progress;
    std::optional<qint64> m_lastIdentity;  ///< of the table
    TableShape m_shape;
    RowTable m_table;
};

}  // namespace

RowTable readRows(ConnectionCore& core, const QString& sql, const ReadProgress& progress) {
    return Reader(core, sql, progress).run();
}

}  // namespace kovanix
