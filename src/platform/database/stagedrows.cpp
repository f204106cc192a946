#include "database/stagedrows.h"

#include <QSqlError>
#include <algorithm>
#include <utility>

#include "database/cell.h"
#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr auto stage = "kovanix_stage"_L1;
constexpr qsizetype ownColumns = 2;  // the row's place in the stage, and its identity in the table
// In one statement: a server is asked less often by many, a file's engine looks each value's name up among
// all.
constexpr qsizetype valuesForServer = 1000;
constexpr qsizetype valuesForFile = 50;
constexpr qint64 slice = 10'000;  // rows between two calls of the step

}  // namespace

StagedRows::StagedRows(Connection& connection, const QString& table, const QStringList& columns)
    : m_core(*connection.d) {
    m_core.requireOpen();
    m_table = quoted(table);
    m_identity = m_core.shape(table).identity;
    for (const QString& column : columns)
        m_columns.append(quoted(column));
    DatabaseEngine& engine = *m_core.engine;
    // Nothing of a file with a password goes to the disk without it.
    if (engine.target() == dialect::Target::file)
        engine.run(u"PRAGMA temp_store = MEMORY"_s);
    engine.write(u"DROP TABLE IF EXISTS "_s + stage);
    engine.write(
        u"CREATE TEMP TABLE %1 AS SELECT %2 AS kovanix_place, %2 AS kovanix_row, %3 FROM %4 WHERE 1 = 0"_s
            .arg(stage, m_identity, m_columns.join(u", "), m_table));
}

StagedRows::~StagedRows() {
    m_insert = QSqlQuery();
    attempt([this] { m_core.engine->write(u"DROP TABLE "_s + stage); });
}

QString StagedRows::quoted(const QString& name) const {
    return dialect::quotedName(name, m_core.engine->target());
}

void StagedRows::lay(qint64 row, const QVariantList& values) {
    m_values.append(++m_count);
    m_values.append(row);
    for (const QVariant& value : values)
        m_values.append(stored(value));
    m_new += row == 0 ? 1 : 0;
    const qsizetype width = m_columns.size() + ownColumns;
    const bool isFile = m_core.engine->target() == dialect::Target::file;
    const qsizetype rows = (isFile ? valuesForFile : valuesForServer) / width;
    if (m_values.size() >= rows * width)
        insert(rows);
}

/// Puts the rows that wait into the stage, many by one statement.
void StagedRows::insert(qsizetype rows) {
    const QStringList places(m_columns.size() + ownColumns, u"?"_s);
    const QStringList groups(rows, u'(' + places.join(u", ") + u')');
    const QString sql = u"INSERT INTO %1 VALUES %2"_s.arg(stage, groups.join(u", "));
    if (m_insert.lastQuery() != sql) {
        QSqlQuery insert;
        if (!m_core.engine->prepare(insert, sql, DatabaseEngine::Use::kept))
            throw m_core.failure(insert.lastError());
        m_insert = std::move(insert);
    }
    for (qsizetype place = 0; place < m_values.size(); ++place)
        m_insert.bindValue(static_cast<int>(place), m_values[place]);
    if (!m_insert.exec())
        throw m_core.failure(m_insert.lastError());
    m_values.clear();
}

bool StagedRows::store(qint64 lastRow, const std::function<void(qint64 done)>& step) {
    DatabaseEngine& engine = *m_core.engine;
    if (!m_values.isEmpty())
        insert(m_values.size() / (m_columns.size() + ownColumns));
    for (const QString& column : {u"kovanix_row"_s, u"kovanix_place"_s}) {
        if (!m_indexed)
            engine.write(u"CREATE INDEX %1_of_stage ON %2 (%1)"_s.arg(column, stage));
    }
    m_indexed = true;
    m_core.aboutToWrite();
    engine.beginTransaction();
    bool stored = false;
    try {
        stored = storeWithin(lastRow, step);
    } catch (...) {
        attempt([&] { engine.endTransaction(false); });
        throw;
    }
    engine.endTransaction(stored);
    return stored;
}

bool StagedRows::storeWithin(qint64 lastRow, const std::function<void(qint64 done)>& step) {
    DatabaseEngine& engine = *m_core.engine;
    if (m_new > 0 &&
        m_core.number(u"SELECT COALESCE(MAX(%1), 0) FROM %2"_s.arg(m_identity, m_table)) != lastRow)
        return false;
    if (step)
        step(0);
    // "+ 0" keeps the engine from the wrong index: half of all rows are of one kind.
    const QString columns = m_columns.join(u", ");
    const QString add =
        u"INSERT INTO %1 (%2) SELECT %2 FROM %3 WHERE kovanix_row + 0 = 0 AND kovanix_place > %4 AND kovanix_place <= %5 ORDER BY kovanix_place"_s;
    QStringList cells;
    for (const QString& column : m_columns.mid(1))
        cells.append(u"COALESCE(s.%1, %2.%1)"_s.arg(column, m_table));
    const QString change =
        u"UPDATE %1 SET (%2) = (SELECT %3 FROM %4 s WHERE s.kovanix_row = %1.%5) "
        "WHERE %5 IN (SELECT kovanix_row FROM %4 WHERE kovanix_row + 0 <> 0 AND kovanix_place > %7 AND "
        "kovanix_place <= %8) "
        "AND %6 = (SELECT s.%6 FROM %4 s WHERE s.kovanix_row = %1.%5)"_s;
    qint64 done = 0;
    for (qint64 place = 0; place < m_count; place += slice) {
        const QString from = QString::number(place);
        const QString to = QString::number(place + slice);
        if (m_new > 0)
            done += engine.write(add.arg(m_table, columns, stage, from, to));
        if (m_new < m_count)
            done += engine.write(change.arg(m_table, m_columns.mid(1).join(u", "), cells.join(u", "), stage,
                                            m_identity, m_columns.front(), from, to));
        if (done != std::min(m_count, place + slice))
            return false;
        if (step)
            step(done);
    }
    return true;
}

}  // namespace kovanix
