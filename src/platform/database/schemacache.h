#pragma once

#include <QHash>
#include <QList>
#include <QSqlQuery>
#include <QString>
#include <optional>

#include "database/connection.h"
#include "database/tableshape.h"

namespace kovanix {

struct ConnectionCore;

/// What a connection knows of its file's tables: read once, and again when the engine's own count says that
/// somebody has changed them.
class SchemaCache {
public:
    /// The shape of a table or view as a statement would find it by that name; without columns where there is
    /// none.
    const TableShape& shape(ConnectionCore& core, const QString& table);

    /// All tables, views and system tables.
    const QList<TableInfo>& tables(ConnectionCore& core);

    /// Reads anew at the next question, and holds no statement until then.
    void forget();

    /// Counts how often it has forgotten.
    quint64 generation() const { return m_generation; }

private:
    void check(ConnectionCore& core);
    qint64 version(ConnectionCore& core);

    std::optional<QSqlQuery> m_question;  // after the version, kept prepared: it goes ahead of every select
    std::optional<qint64> m_version;
    quint64 m_generation = 0;
    QHash<QString, TableShape> m_shapes;
    std::optional<QList<TableInfo>> m_tables;
};

}  // namespace kovanix
