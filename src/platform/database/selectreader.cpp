#include "database/selectreader.h"

#include <QSqlError>
#include <QSqlRecord>
#include <algorithm>
#include <cmath>
#include <utility>

#include "database/cell.h"
#include "database/connectionprivate.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

constexpr int significantDigits = 15;

bool isNumber(const QVariant& value) {
    return value.typeId() == QMetaType::Double || value.typeId() == QMetaType::LongLong;
}

QString lowerAscii(QString text) {
    for (QChar& sign : text) {
        if (sign >= u'A' && sign <= u'Z')
            sign = QChar(sign.unicode() + (u'a' - u'A'));
    }
    return text;
}

bool matchesTerm(const RowFilter::Term& term, const QVariant& value) {
    if (value.isNull())
        return false;
    if (term.hasWildcards()) {
        const QString text = value.typeId() == QMetaType::Double
                                 ? QString::number(value.toDouble(), 'g', significantDigits)
                                 : value.toString();
        return RowFilter::matches(text, term.pattern);
    }
    if (isNumber(value)) {
        bool valid = false;
        const double wanted = term.literal().toDouble(&valid);
        return valid && value.toDouble() == wanted;
    }
    return lowerAscii(value.toString()) == lowerAscii(term.literal());
}

}  // namespace

SelectReader::SelectReader(ConnectionCore& core, const QString& sql, qint64 firstLimit)
    : m_core(core), m_sql(sql), m_firstLimit(firstLimit) {
    core.inEnginesName([&] { core.reading([&] { check(); }); });
}

void SelectReader::check() {
    m_shared = StatementShape::of(m_sql);
    if (m_shared && takePrepared(m_shared->text))
        return;
    m_shared.reset();
    m_select = dialect::tableSelect(m_sql);
    m_onlyReads = m_select || dialect::onlyReads(m_sql);
    if (m_select)
        m_shape = m_core.shape(m_select->table);
    m_first.emplace(prepared(engineSql(m_sql, {std::nullopt, readsRanges() ? m_firstLimit : 0}, {}),
                             DatabaseEngine::Use::kept));
}

/// Takes the statement of the open from those that are kept, or prepares one that can be. @return false where
/// that needs the values
bool SelectReader::takePrepared(const QString& text) {
    DatabaseEngine& engine = *m_core.engine;
    std::optional<StatementCache::Kept> kept = engine.statements.take(text);
    m_select = kept ? kept->select : dialect::tableSelect(text);
    if (!m_select)
        return false;
    m_shape = m_core.shape(m_select->table);
    // Other tables may give the rows another identity.
    if (!kept || kept->generation != engine.schema.generation()) {
        kept.emplace();
        kept->select = m_select;
        kept->generation = engine.schema.generation();
        kept->numberPlaces = dialect::numberPlaces(text, engine.dialectFor(m_shape).columns);
        if (!engine.prepare(kept->query,
                            engineSql(text, {std::nullopt, readsRanges() ? m_firstLimit : 0}, {}),
                            DatabaseEngine::Use::kept))
            return false;
    }
    if (!kept->takes(m_shared->values))
        return false;
    m_first = std::move(kept);
    return true;
}

StatementCache::Kept SelectReader::prepared(const QString& engineSql, DatabaseEngine::Use use) const {
    StatementCache::Kept kept;
    if (!m_core.engine->prepare(kept.query, engineSql, use))
        throw m_core.failure(kept.query.lastError());
    return kept;
}

QString SelectReader::engineSql(const QString& sql, const Range& range, const QString& condition) const {
    const dialect::Engine engine = m_select ? m_core.engine->dialectFor(m_shape) : m_core.dialectFor(sql);
    const std::optional<QString> placed =
        dialect::translateAfterRow(sql, m_shape.identity, {range.afterRow, condition, range.limit}, engine);
    return placed ? *placed : dialect::translate(sql, {}, engine);
}

qsizetype SelectReader::indexOf(const QString& name) const {
    const auto found = std::ranges::find_if(
        m_names, [&name](const QString& each) { return each.compare(name, Qt::CaseInsensitive) == 0; });
    return found == m_names.cend() ? -1 : std::distance(m_names.cbegin(), found);
}

std::optional<dialect::Condition> SelectReader::condition(const RowFilter& filter) const {
    // Another list may give a column's name to something else.
    if (!m_select || !m_select->allColumns || m_select->limited)
        return std::nullopt;
    return m_core.inEnginesName([&] { return dialect::condition(filter, m_shape, m_core.engine->target()); });
}

bool SelectReader::matches(const RowFilter& filter, const Row& row) const {
    return std::ranges::all_of(filter.terms(), [&](const RowFilter::Term& term) {
        const qsizetype place = indexOf(term.field);
        if (place < 0)
            throw m_core.failure(DatabaseError::Kind::value,
                                 u"Item cannot be found in the collection: %1"_s.arg(term.field));
        return matchesTerm(term, row.fields[place]);
    });
}

void SelectReader::setFilter(const RowFilter& filter) {
    m_filterCondition = filter.isEmpty() ? std::nullopt : condition(filter);
    m_filterInMemory = m_filterCondition ? RowFilter() : filter;
    m_first.reset();
    m_shared.reset();
}

dialect::Condition SelectReader::withFilter(const dialect::Condition& condition) const {
    if (!m_filterCondition)
        return condition;
    if (condition.sql.isEmpty())
        return *m_filterCondition;
    return {condition.sql + u" AND " + m_filterCondition->sql, condition.values + m_filterCondition->values};
}

std::vector<SelectReader::Row> SelectReader::read(const Range& range, const dialect::Condition& condition) {
    if (m_onlyReads)
        return m_core.reading([&] { return readOnce(range, condition); });
    m_core.aboutToWrite();
    return readOnce(range, condition);
}

std::vector<SelectReader::Row> SelectReader::readOnce(const Range& range,
                                                      const dialect::Condition& condition) {
    const dialect::Condition all = withFilter(condition);
    const bool first =
        m_first && !range.afterRow && all.sql.isEmpty() && (!readsRanges() || range.limit == m_firstLimit);
    // Of a failed attempt nothing is left: another one prepares its own.
    StatementCache::Kept kept =
        first ? std::move(*m_first) : prepared(engineSql(m_sql, range, all.sql), DatabaseEngine::Use::once);
    const std::optional<StatementShape> shared = first ? std::exchange(m_shared, std::nullopt) : std::nullopt;
    if (first)
        m_first.reset();
    const QVariantList& values = shared ? shared->values : all.values;
    for (qsizetype i = 0; i < values.size(); ++i)
        kept.query.bindValue(static_cast<int>(i), values[i]);
    if (!m_onlyReads)
        m_core.engine->executeWrite(kept.query);
    else if (!kept.query.exec())
        throw m_core.failure(kept.query.lastError());
    std::vector<Row> rows = fetch(kept.query);
    if (shared)
        m_core.engine->statements.keep(shared->text, std::move(kept));
    return rows;
}

std::vector<SelectReader::Row> SelectReader::fetch(QSqlQuery& query) {
    const QSqlRecord record = query.record();
    const int columns = record.count() - (hasIdentities() ? 1 : 0);
    m_names.clear();
    for (int i = 0; i < columns; ++i)
        m_names.append(record.fieldName(i));
    std::vector<Row> rows;
    while (query.next()) {
        Row row;
        row.fields.reserve(columns);
        for (int i = 0; i < columns; ++i)
            row.fields.append(given(query.value(i)));
        if (hasIdentities())
            row.identity = query.value(columns).toLongLong();
        if (matches(m_filterInMemory, row))
            rows.push_back(std::move(row));
    }
    if (query.lastError().isValid())
        throw m_core.failure(query.lastError());
    return rows;
}

std::optional<qint64> SelectReader::count() {
    if (!m_filterInMemory.isEmpty())
        return std::nullopt;
    const dialect::Condition condition = withFilter({});
    const std::optional<QString> sql =
        dialect::translateCount(m_sql, condition.sql, m_core.engine->dialectFor(m_shape));
    if (!sql)
        return std::nullopt;
    return m_core.reading([&] {
        QSqlQuery query = m_core.engine->run(*sql, condition.values);
        if (!query.next())
            throw m_core.failure(query.lastError());
        return query.value(0).toLongLong();
    });
}

}  // namespace kovanix
