#include "database/rowwalk.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/queryrows.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using engine::Cell;

// Some milliseconds each: a writer on a shared drive waits no longer.
constexpr qint64 chunkRows = 20000;

}  // namespace

QVariant RowWalk::Row::value(int field) const {
    const Cell cell = m_rows.cell(field);
    const auto size = static_cast<qsizetype>(cell.bytes.size());
    switch (cell.type) {
        case Cell::Type::whole:
            return cell.whole;
        case Cell::Type::real:
            return cell.real;
        case Cell::Type::text:
            return QString::fromUtf8(cell.bytes.data(), size);
        case Cell::Type::bytes:
            return QByteArray(cell.bytes.data(), size);
        default:
            return {};
    }
}

std::optional<double> RowWalk::Row::number(int field) const {
    const Cell cell = m_rows.cell(field);
    if (cell.type == Cell::Type::real)
        return cell.real;
    return cell.type == Cell::Type::whole ? std::optional(static_cast<double>(cell.whole)) : std::nullopt;
}

std::string_view RowWalk::Row::text(int field) const {
    const Cell cell = m_rows.cell(field);
    return cell.type == Cell::Type::text ? cell.bytes : std::string_view();
}

RowWalk::RowWalk(Connection& connection, const QString& sql) : m_core(*connection.d), m_sql(sql) {}

void RowWalk::forEach(const std::function<void(const Row& row)>& each, const ReadProgress& progress) {
    m_core.requireOpen();
    m_core.inEnginesName([&] {
        const std::optional<dialect::TableSelect> select = dialect::tableSelect(m_sql);
        const TableShape shape = select ? m_core.shape(select->table) : TableShape();
        const dialect::Engine engine = m_core.engine->dialectFor(shape);
        const QString& identity = shape.identity;
        if (identity.isEmpty() || !dialect::translateAfterRow(m_sql, identity, {{}, {}, chunkRows}, engine)) {
            readAtOnce(shape, each);
            return;
        }
        if (!select->conditional) {
            readChunks(shape, {}, each, {});
            return;
        }
        const qint64 count = m_core.number(*dialect::translateCount(m_sql, {}, engine));
        // A few rows out of many are found by an index and sorted. Sorting fails before it gives any where
        // one of them can't be read; one by one, those ahead of it are given.
        bool any = false;
        const auto noted = [&](const Row& row) {
            any = true;
            each(row);
        };
        if (count <= chunkRows) {
            try {
                readAtOnce(shape, noted);
                return;
            } catch (const RuntimeError&) {
                if (any)
                    throw;
            }
        }
        const auto spanOf = [&](const QString& sql) {
            QueryRows ends(m_core.run(sql));
            ends.next(m_core);
            return Span{ends.cell(0).whole, ends.cell(1).whole, count};
        };
        const auto extent = [&] { return spanOf(*dialect::translateExtent(m_sql, identity, engine)); };
        if (count <= chunkRows) {
            readChunks(shape, extent(), each, progress);
            return;
        }
        // Many are next to one another as a rule. Where in the table they stand is worth a look at each only
        // where they aren't a good part of it.
        constexpr qint64 goodPart = 4;
        Span span = spanOf(u"SELECT (SELECT min(%1) FROM %2), (SELECT max(%1) FROM %2)"_s.arg(
            identity, dialect::quotedName(select->table, engine.target)));
        if (span.last / goodPart - span.first / goodPart > count)
            span = extent();
        readChunks(shape, span, each, progress);
    });
}

void RowWalk::readAtOnce(const TableShape& shape, const std::function<void(const Row& row)>& each) {
    QueryRows rows(m_core.run(dialect::translate(m_sql, shape.identity, m_core.dialectFor(m_sql))));
    for (const Row row(rows); rows.next(m_core);)
        each(row);
}

void RowWalk::readChunks(const TableShape& shape, const std::optional<Span>& span,
                         const std::function<void(const Row& row)>& each, const ReadProgress& progress) {
    dialect::RowRange range{{}, {}, chunkRows, true};
    if (span) {
        // One lower bound only: of two, the engine would start at either.
        if (span->first > std::numeric_limits<qint64>::min())
            range.afterRow = span->first - 1;
        range.condition = shape.identity + u" <= " + QString::number(span->last);
    }
    for (qint64 done = 0; !span || done < span->count;) {
        const QString sql =
            *dialect::translateAfterRow(m_sql, shape.identity, range, m_core.engine->dialectFor(shape));
        QueryRows rows(m_core.runForMany(sql));
        const int last = rows.record().count() - 1;
        qint64 count = 0;
        for (const Row row(rows); rows.next(m_core);) {
            each(row);
            if (++count == chunkRows)
                range.afterRow = rows.cell(last).whole;
        }
        if (count < chunkRows)
            return;
        done += count;
        if (progress && span)
            progress(done, std::max(done, span->count));
    }
}

}  // namespace kovanix
