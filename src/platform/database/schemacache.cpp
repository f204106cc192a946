#include "database/schemacache.h"

#include "database/databaseengine.h"

namespace kovanix {

void SchemaCache::forget() {
    ++m_generation;
    m_version.reset();
    m_shapes.clear();
    m_tables.reset();
}

/// Forgets what another connection has made out of date.
void SchemaCache::check(DatabaseEngine& engine) {
    const qint64 now = engine.tablesVersion();
    if (m_version != now) {
        forget();
        m_version = now;
    }
}

const TableShape& SchemaCache::shape(DatabaseEngine& engine, const QString& table) {
    check(engine);
    auto known = m_shapes.find(table);
    if (known == m_shapes.end())
        known = m_shapes.insert(table, engine.readShape(table));
    return *known;
}

const QList<TableInfo>& SchemaCache::tables(DatabaseEngine& engine) {
    check(engine);
    if (!m_tables)
        m_tables = engine.readTables();
    return *m_tables;
}

}  // namespace kovanix
