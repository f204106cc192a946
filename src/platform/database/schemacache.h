#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <optional>

#include "database/connection.h"
#include "database/tableshape.h"

namespace kovanix {

class DatabaseEngine;

/// What a connection knows of its database's tables: read once, and again when the engine says that somebody
/// has changed them.
class SchemaCache {
public:
    /// The shape of a table or view as a statement would find it by that name; without columns where there is
    /// none.
    const TableShape& shape(DatabaseEngine& engine, const QString& table);

    /// All tables, views and system tables.
    const QList<TableInfo>& tables(DatabaseEngine& engine);

    /// Reads anew at the next question.
    void forget();

    /// Counts how often it has forgotten.
    quint64 generation() const { return m_generation; }

private:
    void check(DatabaseEngine& engine);

    std::optional<qint64> m_version;
    quint64 m_generation = 0;
    QHash<QString, TableShape> m_shapes;
    std::optional<QList<TableInfo>> m_tables;
};

}  // namespace kovanix
