#include <QSqlError>
#include <utility>

#include "database/serverengine.h"
#include "database/serversession.h"
#include "database/sqltokens.h"
#include "runtime/attempt.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

QString folded(const QString& name) {
    return dialect::quotedName(name, dialect::Target::server);
}

/// A column's kind and width as its type says.
TableColumn columnOf(const QString& name, const QString& type, int modifier) {
    constexpr auto text = "kovanix_metin"_L1;
    constexpr int modifierOffset = 4;  // the server counts the length of its own header in
    if (type.startsWith(text))
        return {name, ColumnType::text, QStringView(type).mid(text.size()).toInt()};
    if (type == u"kovanix_an"_s || type.startsWith("timestamp"_L1) || type == u"date"_s)
        return {name, ColumnType::moment};
    static const QStringList numbers{u"int2"_s,   u"int4"_s,    u"int8"_s, u"float4"_s,
                                     u"float8"_s, u"numeric"_s, u"bool"_s};
    if (numbers.contains(type))
        return {name, ColumnType::number, 0, type == u"bool"_s};
    const bool sized = (type == u"varchar"_s || type == u"bpchar"_s) && modifier > modifierOffset;
    return {name, ColumnType::text, sized ? modifier - modifierOffset : 0};
}

}  // namespace

TableShape ServerEngine::readShape(const QString& table) {
    TableShape shape{table, {}, {}};
    QSqlQuery query =
        run(u"SELECT a.attname, t.typname, a.atttypmod, a.attidentity <> '' FROM pg_attribute a JOIN pg_type "
            u"t ON t.oid = a.atttypid "
            "WHERE a.attrelid = to_regclass(?) AND a.attnum > 0 AND NOT a.attisdropped ORDER BY a.attnum"_s,
            {folded(table)});
    while (query.next()) {
        const QString name = query.value(0).toString();
        const bool identity = query.value(3).toBool();
        if (identity && (shape.identity.isEmpty() || name != dialect::hiddenIdentity))
            shape.identity = quotedSqlName(name);
        if (name == dialect::hiddenIdentity)
            continue;
        TableColumn column = columnOf(name, query.value(1).toString(), query.value(2).toInt());
        if (identity)
            column.type = ColumnType::counter;
        shape.columns.append(std::move(column));
    }
    if (query.lastError().isValid())
        throw failure(query.lastError());
    return shape;
}

QList<TableInfo> ServerEngine::readTables() {
    QList<TableInfo> tables{{u"pg_class"_s, u"SYSTEM TABLE"_s}};
    QSqlQuery query =
        run(u"SELECT relname, relkind IN ('v', 'm') FROM pg_class WHERE relkind IN ('r', 'p', 'v', 'm') AND "
            u"pg_table_is_visible(oid) "
            "AND relnamespace <> 'pg_catalog'::regnamespace ORDER BY oid"_s);
    while (query.next())
        tables.append({query.value(0).toString(), query.value(1).toBool() ? u"VIEW"_s : u"TABLE"_s});
    if (query.lastError().isValid())
        throw failure(query.lastError());
    return tables;
}

void ServerEngine::changeAlone(const std::function<void()>& steps) {
    beginTransaction();
    try {
        run(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(serverTableLock));
        // What another till has done meanwhile counts.
        schema.forget();
        steps();
        endTransaction(true);
    } catch (const RuntimeError&) {
        m_inTransaction = false;
        attempt([this] { run(u"ROLLBACK"_s); });
        schema.forget();
        throw;
    }
    wroteInPress = true;
    schema.forget();
    statements.clear();
}

bool ServerEngine::isThere(const QString& catalogueSql, const QString& name) {
    return run(catalogueSql, {name}).next();
}

void ServerEngine::makeDomains(const QString& sql) {
    for (const auto& [name, statement] : dialect::domains(sql)) {
        if (!isThere(u"SELECT 1 FROM pg_type WHERE typname = ? AND pg_type_is_visible(oid)"_s, name))
            run(statement);
    }
}

void ServerEngine::changeTables(const QString& sql) {
    changeAlone([&] {
        const auto added = dialect::addedColumnOf(sql);
        // An ALTER waits for every open transaction before it says that.
        if (added && schema.shape(*this, added->table).indexOf(added->column) >= 0)
            throw describedFailure(Kind::statement, u"duplicate column name: "_s + added->column);
        if (const auto counter = dialect::addCounterColumn(sql)) {
            addCounter(*counter);
            return;
        }
        makeDomains(sql);
        run(dialect::translate(sql, {}, target()));
    });
}

/// Numbers the rows from 1 in the order of entry: the server itself would number them as they lie.
void ServerEngine::addCounter(const dialect::AddColumn& counter) {
    const QString table = folded(counter.table);
    const QString column = folded(counter.column);
    const TableShape& shape = schema.shape(*this, counter.table);
    const QString hidden = quotedSqlName(dialect::hiddenIdentity);
    if (!shape.identity.isEmpty() && shape.identity != hidden)
        throw describedFailure(Kind::statement,
                               u"table \"%1\" has more than one primary key"_s.arg(counter.table));
    const QString order = shape.identity.isEmpty() ? u"ctid"_s : hidden;
    run(u"ALTER TABLE %1 ADD COLUMN %2 bigint"_s.arg(table, column));
    run(u"UPDATE %1 SET %2 = numbered.place FROM (SELECT ctid AS row, row_number() OVER (ORDER BY %3) AS place FROM %1) AS numbered WHERE %1.ctid = numbered.row"_s
            .arg(table, column, order));
    run(u"ALTER TABLE %1 ALTER COLUMN %2 SET NOT NULL, ALTER COLUMN %2 ADD GENERATED BY DEFAULT AS IDENTITY, ADD PRIMARY KEY (%2)%3"_s
            .arg(table, column, shape.identity.isEmpty() ? QString() : u", DROP COLUMN "_s + hidden));
    run(u"SELECT setval(pg_get_serial_sequence(?, ?), (SELECT coalesce(max(%2), 0) + 1 FROM %1), false)"_s
            .arg(table, column),
        {table, dialect::foldedName(counter.column)});
}

void ServerEngine::keepIndex(const QString& table, const QString& column) {
    const QString index = dialect::foldedName(u"kovanix_%1_%2"_s.arg(table, column));
    if (schema.shape(*this, table).indexOf(column) < 0 ||
        isThere(u"SELECT 1 FROM pg_class WHERE relkind = 'i' AND relname = ?"_s, index))
        return;
    changeAlone([&] {
        run(u"CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)"_s.arg(quotedSqlName(index), folded(table),
                                                              folded(column)));
    });
}

}  // namespace kovanix
