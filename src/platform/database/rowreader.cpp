#include "database/rowreader.h"

#include <QRegularExpression>
#include <QSqlRecord>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

// Some milliseconds each: a writer on a shared drive waits no longer.
constexpr qsizetype chunkRows = 20000;

TableColumn columnOf(const QString& name, const QString& declared, int keyPlace) {
    static const QRegularExpression width(u"\\(\\s*(\\d+)"_s);
    const auto declaredAs = [&declared](QLatin1StringView word) {
        return declared.contains(word, Qt::CaseInsensitive);
    };
    if (keyPlace == 1 && declared.compare("INTEGER"_L1, Qt::CaseInsensitive) == 0)
        return {name, ColumnType::counter, 0};
    if (declared.isEmpty() || declaredAs("TEXT"_L1) || declaredAs("CHAR"_L1) || declaredAs("CLOB"_L1))
        return {name, ColumnType::text, width.match(declared).captured(1).toInt()};
    return {name, declaredAs("DATE"_L1) || declaredAs("TIME"_L1) ? ColumnType::moment : ColumnType::number,
            0};
}

/// The shape of a table; without columns where there is no such.
TableShape shapeOf(ConnectionCore& core, const QString& table) {
    // The older engine's pragma answers from the catalogue as it last saw it; the select notices a change.
    QSqlQuery entry = core.run(
        u"SELECT type FROM sqlite_master WHERE name = ? COLLATE NOCASE AND type IN ('table', 'view')"_s,
        {table});
    const bool isTable = entry.next() && entry.value(0).toString() == u"table"_s;
    entry.finish();
    TableShape shape{table, {}, {}};
    QSqlQuery columns = core.run(u"PRAGMA table_info(%1)"_s.arg(quotedSqlName(table)));
    while (columns.next()) {
        shape.columns.append(
            columnOf(columns.value(1).toString(), columns.value(2).toString(), columns.value(5).toInt()));
    }
    columns.finish();
    // A table may be made without row ids, or have a column that bears their name.
    QSqlQuery identity(core.database);
    if (isTable && shape.indexOf(u"rowid") < 0 &&
        identity.prepare(u"SELECT rowid FROM "_s + quotedSqlName(table)))
        shape.identity = u"rowid"_s;
    return shape;
}

/// Whether a select asks for all columns by its star and nothing else.
bool asksForAll(const SqlTokens& tokens) {
    return tokens.isWord(0, "SELECT"_L1) && tokens.isSign(1, u'*') && tokens.isWord(2, "FROM"_L1);
}

class Reader {
public:
    Reader(ConnectionCore& core, const QString& sql) : m_core(core), m_sql(sql) {}

    RowTable run() {
        trimEnd();
        try {
            m_table.name = dialect::singleTable(m_sql).value_or(QString());
            if (!m_table.name.isEmpty())
                m_shape = shapeOf(m_core, m_table.name);
            if (!m_shape.identity.isEmpty() && dialect::translatePlaced(m_sql)) {
                nameColumns();
                readChunks();
            } else {
                readAtOnce();
            }
        } catch (const RuntimeError& error) {
            throw RuntimeError(error.number(), error.description(), m_core.engine);
        }
        for (RowColumn& column : m_table.columns)
            column.finish();
        m_table.identities->squeeze();
        return std::move(m_table);
    }

private:
    /// Takes away what may stand behind a statement, where a limit has its place.
    void trimEnd() {
        while (m_sql.endsWith(u';') || (!m_sql.isEmpty() && m_sql.back().isSpace()))
            m_sql.chop(1);
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
        std::optional<qint64> behind;
        for (bool more = true; more;) {
            QSqlQuery query = m_core.run(*dialect::translatePlaced(m_sql, behind) + u"\nLIMIT "_s +
                                         QString::number(chunkRows));
            const QSqlRecord record = query.record();
            const int identity = record.count() - 1;
            takeColumns(record, identity);
            qsizetype rows = 0;
            for (; next(query); ++rows) {
                appendCells(query);
                m_table.identities->append(query.value(identity).toLongLong());
            }
            more = rows == chunkRows;
            if (more)
                behind = m_table.identities->back();
        }
    }

    void readAtOnce() {
        QSqlQuery query = m_core.run(m_shape.identity.isEmpty() ? dialect::translateUnordered(m_sql)
                                                                : dialect::translate(m_sql));
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
            throw engineError(query.lastError(), m_core.engine);
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
    TableShape m_shape;
    RowTable m_table;
};

}  // namespace

RowTable readRows(ConnectionCore& core, const QString& sql) {
    return Reader(core, sql).run();
}

QString contentMark(ConnectionCore& core) {
    const auto number = [&core](const QString& question) {
        QSqlQuery query = core.run(question);
        return query.next() ? query.value(0).toString() : QString();
    };
    // What others committed, what changed the tables themselves, what this connection wrote.
    return QStringList{core.name, number(u"PRAGMA data_version"_s), number(u"PRAGMA schema_version"_s),
                       number(u"SELECT total_changes()"_s)}
        .join(u'/');
}

}  // namespace kovanix
