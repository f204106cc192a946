#include <QSqlError>

#include "database/declaredtype.h"
#include "database/fileengine.h"
#include "database/sqltokens.h"
#include "database/tablerebuild.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

bool FileEngine::isView(const QString& table) {
    QSqlQuery query =
        run(u"SELECT 1 FROM sqlite_master WHERE name = ? COLLATE NOCASE AND type = 'view'"_s, {table});
    return query.next();
}

/// The engine's name for the rows' identity; a column may have taken one of the three.
QString FileEngine::identityOf(const TableShape& shape) {
    // A view has none, but an older engine takes one for null instead of refusing it.
    if (isView(shape.table))
        return {};
    for (const QString& name : {u"rowid"_s, u"_rowid_"_s, u"oid"_s}) {
        if (shape.indexOf(name) >= 0)
            continue;
        // A table may be made without.
        QSqlQuery probe(m_database);
        return probe.prepare(u"SELECT %1 FROM %2"_s.arg(name, quotedSqlName(shape.table))) ? name : QString();
    }
    return {};
}

TableShape FileEngine::readShape(const QString& table) {
    // The engine for files with a password may be years behind (Debian's is). It answers the pragma from the
    // catalogue as it last saw it; a select notices that another connection has changed it.
    if (!m_password.isEmpty())
        run(u"SELECT 1 FROM sqlite_master LIMIT 1"_s);
    TableShape shape{table, {}, {}};
    int keys = 0;
    qsizetype counter = -1;
    QSqlQuery query = run(u"PRAGMA table_info(%1)"_s.arg(quotedSqlName(table)));
    while (query.next()) {
        const QString declared = query.value(2).toString();
        if (query.value(5).toInt() > 0) {
            ++keys;
            if (declared.compare("INTEGER"_L1, Qt::CaseInsensitive) == 0)
                counter = shape.columns.size();
        }
        shape.columns.append(declaredColumn(query.value(1).toString(), declared));
    }
    query.finish();
    if (shape.columns.isEmpty())
        return shape;
    shape.identity = identityOf(shape);
    // A whole number that is the only key is the identity itself: the engine gives it out.
    if (keys == 1 && counter >= 0 && !shape.identity.isEmpty())
        shape.columns[counter].type = ColumnType::counter;
    return shape;
}

QList<TableInfo> FileEngine::readTables() {
    QList<TableInfo> tables{{u"sqlite_master"_s, u"SYSTEM TABLE"_s}};
    QSqlQuery query =
        run(u"SELECT name, type FROM sqlite_master WHERE type IN ('table', 'view') ORDER BY rowid"_s);
    while (query.next()) {
        const QString name = query.value(0).toString();
        const bool system = name.startsWith("sqlite_"_L1, Qt::CaseInsensitive);
        const bool view = query.value(1).toString() == "view"_L1;
        tables.append({name, system ? u"SYSTEM TABLE"_s : view ? u"VIEW"_s : u"TABLE"_s});
    }
    return tables;
}

/// The engine's count of the changes to its tables.
qint64 FileEngine::tablesVersion() {
    if (!m_versionQuestion) {
        QSqlQuery question;
        if (!prepare(question, u"PRAGMA schema_version"_s, Use::kept))
            throw failure(question.lastError());
        m_versionQuestion = std::move(question);
    }
    if (!m_versionQuestion->exec() || !m_versionQuestion->next())
        throw failure(m_versionQuestion->lastError());
    const qint64 version = m_versionQuestion->value(0).toLongLong();
    m_versionQuestion->finish();
    return version;
}

void FileEngine::changeTables(const QString& sql) {
    if (const auto counter = dialect::addCounterColumn(sql))
        rebuildWithCounter(*this, *counter);
    else
        write(dialect::translate(sql));
    // What is temporary isn't in the engine's count.
    schema.forget();
}

void FileEngine::keepIndex(const QString& table, const QString& column) {
    const QString index = quotedSqlName(u"kovanix_%1_%2"_s.arg(table, column));
    // The engine would take the name of a column that isn't there for a text.
    if (schema.shape(*this, table).indexOf(column) < 0)
        return;
    write(u"CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)"_s.arg(index, quotedSqlName(table),
                                                            quotedSqlName(column)));
}

}  // namespace kovanix
