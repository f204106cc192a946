#include "database/cursor.h"

#include <QSqlRecord>
#include <algorithm>
#include <iterator>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"

namespace kovanix {

using namespace Qt::StringLiterals;

Cursor::Cursor(const QSqlDatabase& database, QString engine, const QString& sql)
    : m_database(database), m_engine(std::move(engine)), m_sql(sql) {
    const std::optional<QString> placed = dialect::translatePlaced(sql);
    if (!placed) {
        prepare(dialect::translate(sql));
        return;
    }
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    // A table may be made without row ids; any other mistake shows again below, without our own column.
    m_placed = query.prepare(*placed);
    m_query = std::move(query);
    if (!m_placed) {
        prepare(dialect::translateUnordered(sql));
    }
}

void Cursor::prepare(const QString& engineSql) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.prepare(engineSql)) {
        throw engineError(query.lastError(), m_engine);
    }
    m_query = std::move(query);
}

void Cursor::run() {
    if (!m_query.exec()) {
        throw engineError(m_query.lastError(), m_engine);
    }
    m_columns = m_query.record().count();
}

std::optional<QVariantList> Cursor::fetch() {
    if (!m_query.next()) {
        if (m_query.lastError().isValid()) {
            throw engineError(m_query.lastError(), m_engine);
        }
        m_query.finish();
        return std::nullopt;
    }
    QVariantList row;
    row.reserve(m_columns);
    for (int i = 0; i < m_columns; ++i) {
        row.append(m_query.isNull(i) ? QVariant() : m_query.value(i));
    }
    return row;
}

void Cursor::start() {
    run();
    const QSqlRecord record = m_query.record();
    for (int i = 0; i < record.count() - (m_placed ? 1 : 0); ++i) {
        m_names.append(record.fieldName(i));
    }
    m_state = State::reading;
    m_ahead = fetch();
    // A view has no row ids, but the engine takes one for null instead of refusing it, and forgets the view's
    // own order over it.
    if (m_placed && m_ahead && m_ahead->last().isNull()) {
        m_placed = false;
        prepare(dialect::translateUnordered(m_sql));
        run();
        m_ahead = fetch();
    }
    advance();
}

/// Makes the row read ahead the current one.
void Cursor::advance() {
    m_row = std::exchange(m_ahead, std::nullopt);
    if (!m_row) {
        m_state = State::ended;
        return;
    }
    ++m_rowsRead;
    if (m_query.isActive()) {
        m_ahead = fetch();
    }
}

void Cursor::resume() {
    if (m_placed) {
        prepare(*dialect::translatePlaced(m_sql, m_row->last().toLongLong()));
    }
    run();
    m_state = State::reading;
    m_ahead = fetch();
    for (qint64 skipped = 0; !m_placed && m_ahead && skipped < m_rowsRead; ++skipped) {
        m_ahead = fetch();
    }
}

void Cursor::suspend() {
    // A row read ahead is forgotten even when it is the last: what follows may change it.
    if (m_state == State::reading && (m_ahead || m_query.isActive())) {
        m_query.finish();
        m_ahead.reset();
        m_state = State::suspended;
    }
}

void Cursor::requireRow() {
    if (atEnd()) {
        throw RuntimeError(RuntimeError::databaseFailure,
                           u"Either BOF or EOF is True, or the current record has been deleted."_s, m_engine);
    }
}

bool Cursor::atEnd() {
    if (m_state == State::unread) {
        start();
    }
    return !m_row;
}

QStringList Cursor::fieldNames() {
    if (m_state == State::unread) {
        start();
    }
    return m_names;
}

void Cursor::moveNext() {
    requireRow();
    if (m_state == State::suspended) {
        resume();
    }
    advance();
}

QVariant Cursor::field(const QString& name) {
    requireRow();
    const auto found = std::ranges::find_if(std::as_const(m_names), [&name](const QString& each) {
        return each.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (found == m_names.cend()) {
        throw RuntimeError(RuntimeError::databaseFailure,
                           u"Item cannot be found in the collection: %1"_s.arg(name), m_engine);
    }
    return m_row->at(std::distance(m_names.cbegin(), found));
}

}  // namespace kovanix
