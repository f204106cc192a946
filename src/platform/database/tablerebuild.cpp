#include "database/tablerebuild.h"

#include <QStringList>

#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

class Rebuild {
public:
    Rebuild(DatabaseEngine& engine, const dialect::AddColumn& counter)
        : m_engine(engine), m_counter(counter) {}

    void run() {
        readTable();
        readColumns();
        readDependents();
        const QString definition = quotedSqlName(m_counter.column) + u" INTEGER PRIMARY KEY AUTOINCREMENT"_s;
        const std::optional<QString> create = dialect::withColumn(m_createSql, definition);
        if (!create) {
            fail(Kind::statement, u"cannot add a column to table %1"_s.arg(m_table));
        }
        // The table is emptied into a temporary one and filled again under its own name: renaming would have
        // the engine rewrite the views and triggers that speak of it.
        const QString table = quotedSqlName(m_table);
        const QString columns = m_columns.join(u", ");
        m_engine.run(u"CREATE TEMP TABLE kovanix_rebuild AS SELECT %1 FROM main.%2 ORDER BY rowid"_s.arg(
            columns, table));
        m_engine.run(u"DROP TABLE main."_s + table);
        m_engine.run(*create);
        m_engine.run(u"INSERT INTO main.%2 (%1) SELECT %1 FROM temp.kovanix_rebuild ORDER BY rowid"_s.arg(
            columns, table));
        m_engine.run(u"DROP TABLE temp.kovanix_rebuild"_s);
        for (const QString& dependent : m_dependents) {
            m_engine.run(dependent);
        }
    }

private:
    [[noreturn]] void fail(Kind kind, const QString& description) const {
        throw m_engine.describedFailure(kind, description);
    }

    void readTable() {
        QSqlQuery query = m_engine.run(
            u"SELECT name, type, sql FROM main.sqlite_master WHERE name = ? COLLATE NOCASE AND type IN ('table', 'view')"_s,
            {m_counter.table});
        if (!query.next()) {
            fail(Kind::noSuchTable, u"no such table: "_s + m_counter.table);
        }
        if (query.value(1) == u"view"_s) {
            fail(Kind::statement, u"Cannot add a column to a view"_s);
        }
        m_table = query.value(0).toString();
        m_createSql = query.value(2).toString();
    }

    void readColumns() {
        QSqlQuery query = m_engine.run(u"PRAGMA main.table_info(%1)"_s.arg(quotedSqlName(m_table)));
        while (query.next()) {
            const QString name = query.value(1).toString();
            if (name.compare(m_counter.column, Qt::CaseInsensitive) == 0) {
                fail(Kind::statement, u"duplicate column name: "_s + m_counter.column);
            }
            // A counter is the table's key, and a table has one key.
            if (query.value(5).toInt() > 0) {
                fail(Kind::statement, u"table \"%1\" has more than one primary key"_s.arg(m_table));
            }
            m_columns.append(quotedSqlName(name));
        }
    }

    void readDependents() {
        QSqlQuery query = m_engine.run(
            u"SELECT sql FROM main.sqlite_master WHERE tbl_name = ? AND type IN ('index', 'trigger') AND sql IS NOT NULL"_s,
            {m_table});
        while (query.next()) {
            m_dependents.append(query.value(0).toString());
        }
    }

    DatabaseEngine& m_engine;
    const dialect::AddColumn& m_counter;
    QString m_table;
    QString m_createSql;
    QStringList m_columns;
    QStringList m_dependents;
};

}  // namespace

void rebuildWithCounter(DatabaseEngine& engine, const dialect::AddColumn& counter) {
    engine.run(u"BEGIN IMMEDIATE"_s);
    try {
        Rebuild(engine, counter).run();
        engine.run(u"COMMIT"_s);
        engine.wroteInPress = true;
    } catch (const RuntimeError&) {
        // The engine may have rolled back by itself (a full disk); the first failure is the one to report.
        QSqlQuery(engine.database()).exec(u"ROLLBACK"_s);
        throw;
    }
}

}  // namespace kovanix
