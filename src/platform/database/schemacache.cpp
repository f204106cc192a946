#include "database/schemacache.h"

#include <QRegularExpression>
#include <QSqlError>
#include <algorithm>
#include <utility>

#include "database/connectionprivate.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

ColumnType typeOf(const QString& declared) {
    const auto names = [&declared](QLatin1StringView part) {
        return declared.contains(part, Qt::CaseInsensitive);
    };
    if (names("DATE"_L1) || names("TIME"_L1))
        return ColumnType::moment;
    if (declared.isEmpty() || names("CHAR"_L1) || names("TEXT"_L1) || names("CLOB"_L1) || names("BLOB"_L1))
        return ColumnType::text;
    return ColumnType::number;
}

int widthOf(const QString& declared) {
    static const QRegularExpression width(u"\\(\\s*(\\d+)\\s*\\)"_s);
    return width.match(declared).captured(1).toInt();
}

bool isView(ConnectionCore& core, const QString& table) {
    QSqlQuery query =
        core.run(u"SELECT 1 FROM sqlite_master WHERE name = ? COLLATE NOCASE AND type = 'view'"_s, {table});
    return query.next();
}

/// The engine's name for the rows' identity; a column may have taken one of the three.
QString identityOf(ConnectionCore& core, const TableShape& shape) {
    // A view has none, but an older engine takes one for null instead of refusing it.
    if (isView(core, shape.table))
        return {};
    for (const QString& name : {u"rowid"_s, u"_rowid_"_s, u"oid"_s}) {
        if (shape.indexOf(name) >= 0)
            continue;
        // A table may be made without.
        QSqlQuery probe(core.database);
        return probe.prepare(u"SELECT %1 FROM %2"_s.arg(name, quotedSqlName(shape.table))) ? name : QString();
    }
    return {};
}

TableShape readShape(ConnectionCore& core, const QString& table) {
    // The older engine answers the pragma from the catalogue as it last saw it; a select notices that another
    // connection has changed it.
    if (core.isOlderEngine())
        core.run(u"SELECT 1 FROM sqlite_master LIMIT 1"_s);
    TableShape shape{table, {}, {}};
    int keys = 0;
    qsizetype counter = -1;
    QSqlQuery query = core.run(u"PRAGMA table_info(%1)"_s.arg(quotedSqlName(table)));
    while (query.next()) {
        const QString declared = query.value(2).toString();
        const ColumnType type = typeOf(declared);
        if (query.value(5).toInt() > 0) {
            ++keys;
            if (declared.compare("INTEGER"_L1, Qt::CaseInsensitive) == 0)
                counter = shape.columns.size();
        }
        shape.columns.append(
            {query.value(1).toString(), type, type == ColumnType::text ? widthOf(declared) : 0});
    }
    query.finish();
    if (shape.columns.isEmpty())
        return shape;
    shape.identity = identityOf(core, shape);
    // A whole number that is the only key is the identity itself: the engine gives it out.
    if (keys == 1 && counter >= 0 && !shape.identity.isEmpty())
        shape.columns[counter].type = ColumnType::counter;
    return shape;
}

QList<TableInfo> readTables(ConnectionCore& core) {
    QList<TableInfo> tables{{u"sqlite_master"_s, u"SYSTEM TABLE"_s}};
    QSqlQuery query =
        core.run(u"SELECT name, type FROM sqlite_master WHERE type IN ('table', 'view') ORDER BY rowid"_s);
    while (query.next()) {
        const QString name = query.value(0).toString();
        const bool system = name.startsWith("sqlite_"_L1, Qt::CaseInsensitive);
        const bool view = query.value(1).toString() == "view"_L1;
        tables.append({name, system ? u"SYSTEM TABLE"_s : view ? u"VIEW"_s : u"TABLE"_s});
    }
    return tables;
}

}  // namespace

void SchemaCache::forget() {
    ++m_generation;
    m_question.reset();
    m_version.reset();
    m_shapes.clear();
    m_tables.reset();
}

/// The engine's count of the changes to its tables.
qint64 SchemaCache::version(ConnectionCore& core) {
    if (!m_question) {
        QSqlQuery question(core.database);
        question.setForwardOnly(true);
        if (!question.prepare(u"PRAGMA schema_version"_s))
            throw core.failure(question.lastError());
        m_question = std::move(question);
    }
    if (!m_question->exec() || !m_question->next())
        throw core.failure(m_question->lastError());
    const qint64 version = m_question->value(0).toLongLong();
    m_question->finish();
    return version;
}

/// Forgets what another connection has made out of date.
void SchemaCache::check(ConnectionCore& core) {
    const qint64 now = version(core);
    if (m_version != now) {
        forget();
        m_version = now;
    }
}

const TableShape& SchemaCache::shape(ConnectionCore& core, const QString& table) {
    check(core);
    auto known = m_shapes.find(table);
    if (known == m_shapes.end())
        known = m_shapes.insert(table, readShape(core, table));
    return *known;
}

const QList<TableInfo>& SchemaCache::tables(ConnectionCore& core) {
    check(core);
    if (!m_tables)
        m_tables = readTables(core);
    return *m_tables;
}

}  // namespace kovanix
