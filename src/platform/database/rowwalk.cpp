#include "database/rowwalk.h"

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

/// The rows that a select with a condition finds.
struct Extent {
    qint64 first = 0;
    qint64 last = 0;
    qint64 count = 0;
};

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

std::string_view RowWalk::Row::text(int field) const {
    const Cell cell = m_rows.cell(field);
    return cell.type == Cell::Type::text ? cell.bytes : std::string_view();
}

RowWalk::RowWalk(Connection& connection, const QString& sql) : m_core(*connection.d), m_sql(sql) {}

void RowWalk::forEach(const std::function<void(const Row& row)>& each, const ReadProgress& progress) {
    m_core.requireOpen();
    m_core.inEnginesName([&] {
        const std::optional<dialect::TableSelect> select = dialect::tableSelect(m_sql);
        const QString identity = select ? m_core.schema.shape(m_core, select->table).identity : QString();

        // @return the identity of the last row and how many there were
        const auto walk = [&](const QString& engineSql) {
            QueryRows rows(m_core.run(engineSql));
            const int last = rows.record().count() - 1;
            std::pair<qint64, qint64> walked;
            for (const Row row(rows); rows.next(m_core); ++walked.second) {
                each(row);
                walked.first = rows.cell(last).whole;
            }
            return walked;
        };
        const bool ranges =
            !identity.isEmpty() && dialect::translateAfterRow(m_sql, identity, {{}, {}, chunkRows});
        Extent all;
        if (ranges && select->conditional) {
            QueryRows extent(m_core.run(*dialect::translateExtent(m_sql, identity)));
            if (extent.next(m_core))
                all = {extent.cell(0).whole, extent.cell(1).whole, extent.cell(2).whole};
            if (all.count == 0)
                return;
        }
        // A few rows out of many are found by an index and sorted; many are next to one another as a rule.
        if (!ranges || (select->conditional && all.count <= chunkRows)) {
            walk(dialect::translate(m_sql, identity));
            return;
        }
        dialect::RowRange range{{}, {}, chunkRows, true};
        if (select->conditional)
            range.condition = u"%1 BETWEEN %2 AND %3"_s.arg(identity).arg(all.first).arg(all.last);
        qint64 done = 0;
        for (bool more = true; more;) {
            const auto [last, count] = walk(*dialect::translateAfterRow(m_sql, identity, range));
            range.afterRow = last;
            done += count;
            more = count == chunkRows;
            if (more && progress && select->conditional)
                progress(done, std::max(done, all.count));
        }
    });
}

}  // namespace kovanix
