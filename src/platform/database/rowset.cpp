#include "database/rowset.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "database/connectionprivate.h"
#include "database/rowmatcher.h"
#include "database/roworder.h"
#include "database/rowreader.h"
#include "database/rowtable.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

struct Sort {
    QString text;
    QString field;  ///< empty for the order of entry
    bool descending = false;

    /// @throws RuntimeError (databaseFailure) for a text that is no sort
    static Sort parse(const QString& text) {
        const SqlTokens tokens(text);
        Sort sort{text, {}, tokens.isWord(1, "DESC"_L1)};
        if (tokens.count() == 0)
            return sort;
        const bool direction = tokens.count() == 2 && (sort.descending || tokens.isWord(1, "ASC"_L1));
        if (!tokens.isName(0) || (tokens.count() > 1 && !direction)) {
            throw RuntimeError(RuntimeError::databaseFailure, u"Sort order cannot be applied."_s);
        }
        sort.field = tokens.name(0);
        return sort;
    }
};

}  // namespace

struct RowSet::Private {
    // What was read.
    QString sql;
    ChangeMark mark;  ///< of the database's content just ahead of the read
    std::shared_ptr<RowTable> table = std::make_shared<RowTable>();
    std::map<int, RowOrder> orders;  ///< by field, each worked out once

    // What was asked for.
    Sort sort;
    RowFilter filter;
    std::optional<qint64> currentIdentity;

    // What follows from both.
    std::vector<std::uint32_t> order;  ///< the rows in the order in force; empty for the order of entry
    RowBits hits;
    std::vector<std::uint32_t> shown;  ///< the row at each place
    qsizetype currentPlace = -1;

    const RowColumn& column(int field) const { return table->columns[static_cast<std::size_t>(field)]; }
    std::size_t row(qsizetype place) const { return shown[static_cast<std::size_t>(place)]; }

    std::vector<std::uint32_t> orderFor(const Sort& wanted) {
        if (wanted.field.isEmpty())
            return {};
        const int field = table->indexOf(wanted.field);
        if (field < 0)
            failUnknownField(wanted.field);
        auto found = orders.find(field);
        if (found == orders.end())
            found = orders.emplace(field, RowOrder(column(field))).first;
        return found->second.rows(wanted.descending);
    }

    void show() {
        std::size_t count = 0;
        if (order.empty()) {
            shown.resize(hits.count());
            hits.forEach([&](std::size_t row) { shown[count++] = static_cast<std::uint32_t>(row); });
        } else {
            // Every row is written and only a hit counts: no branch for the processor to guess.
            shown.resize(order.size());
            for (const std::uint32_t row : order) {
                shown[count] = row;
                count += hits.test(row) ? 1U : 0U;
            }
            shown.resize(count);
        }
        currentPlace = currentIdentity ? placeOf(*currentIdentity) : -1;
    }

    qsizetype placeOf(qint64 identity) const {
        const std::optional<std::size_t> row = table->rowOf(identity);
        if (!row || !hits.test(*row))
            return -1;
        const auto found =
            order.empty() ? std::ranges::lower_bound(shown, *row) : std::ranges::find(shown, *row);
        return found - shown.cbegin();
    }

    void choose(const RowFilter& wanted) {
        const RowMatcher matcher(*table, wanted);
        hits = matcher.hits(narrows(wanted, filter) ? hits : RowBits(table->count(), true));
        filter = wanted;
    }

    /// Other rows under the sort, the filter and the current row in force, as far as they still have theirs.
    Private over(RowTable&& fresh) const {
        Private next;
        *next.table = std::move(fresh);
        next.hits = RowBits(next.table->count(), true);
        if (next.table->indexOf(sort.field) >= 0)
            next.sort = sort;
        next.order = next.orderFor(next.sort);
        try {
            next.choose(filter);
        } catch (const RuntimeError&) {
            // A field has gone, or is of another type now.
        }
        const bool sameTable = next.table->name.compare(table->name, Qt::CaseInsensitive) == 0;
        if (sameTable && currentIdentity && next.table->rowOf(*currentIdentity))
            next.currentIdentity = currentIdentity;
        next.show();
        return next;
    }
};

RowSet::RowSet() : d(std::make_unique<Private>()) {}
RowSet::~RowSet() = default;
RowSet::RowSet(RowSet&& other) noexcept = default;
RowSet& RowSet::operator=(RowSet&& other) noexcept = default;

bool RowSet::read(Connection& connection, const QString& sql, const ReadProgress& progress) {
    ConnectionCore& core = *connection.d;
    core.requireOpen();
    // Taken ahead of the read: what is written meanwhile shows at the next one.
    const ChangeMark mark = connection.changeMark();
    if (mark == d->mark && sql == d->sql)
        return false;
    Private next = d->over(readRows(core, sql, progress));
    next.sql = sql;
    next.mark = mark;
    *d = std::move(next);
    return true;
}

bool RowSet::readRow(Connection& connection, qint64 identity) {
    const std::optional<std::size_t> row = d->table->rowOf(identity);
    if (!row)
        return false;
    ConnectionCore& core = *connection.d;
    core.requireOpen();
    // A snapshot keeps its rows as they were.
    const bool kept = d->table.use_count() > 1;
    const std::shared_ptr<RowTable> table = kept ? std::make_shared<RowTable>(*d->table) : d->table;
    if (!rereadRow(core, d->sql, *table, *row))
        return false;
    d->table = table;
    d->orders.clear();
    if (!d->hits.test(*row) && RowMatcher(*d->table, d->filter).matches(*row)) {
        d->hits.set(*row);
        d->show();
    }
    return true;
}

void RowSet::clear() {
    *d = Private();
}

int RowSet::fieldCount() const {
    return static_cast<int>(d->table->columns.size());
}

const QString& RowSet::fieldName(int field) const {
    return d->column(field).name();
}

int RowSet::fieldIndex(QStringView name) const {
    return d->table->indexOf(name);
}

ColumnType RowSet::fieldType(int field) const {
    return d->column(field).type();
}

qsizetype RowSet::recordCount() const {
    return static_cast<qsizetype>(d->shown.size());
}

qsizetype RowSet::totalCount() const {
    return static_cast<qsizetype>(d->table->count());
}

QVariant RowSet::value(qsizetype place, int field) const {
    return d->column(field).value(d->row(place));
}

QString RowSet::text(qsizetype place, int field) const {
    return d->column(field).text(d->row(place));
}

RowSnapshot RowSet::snapshot() const {
    return {d->table, d->shown};
}

qsizetype RowSet::current() const {
    return d->currentPlace;
}

void RowSet::setCurrent(qsizetype place) {
    d->currentPlace = place;
    d->currentIdentity = place < 0 ? std::nullopt : std::optional(identity(place));
}

qsizetype RowSet::placeOf(qint64 identity) const {
    return d->placeOf(identity);
}

qint64 RowSet::identity(qsizetype place) const {
    return (*d->table->identities)[d->row(place)];
}

void RowSet::setSort(const QString& sort) {
    Sort wanted = Sort::parse(sort);
    d->order = d->orderFor(wanted);
    d->sort = std::move(wanted);
    d->show();
}

const QString& RowSet::sort() const {
    return d->sort.text;
}

void RowSet::setFilter(const RowFilter& filter) {
    d->choose(filter);
    d->show();
}

bool RowSet::isFiltered() const {
    return !d->filter.isEmpty();
}

qsizetype RowSet::find(const RowFilter& criterion, qsizetype from) const {
    const RowMatcher matcher(*d->table, criterion);
    for (qsizetype place = std::max<qsizetype>(from, 0); place < recordCount(); ++place) {
        if (matcher.matches(d->row(place)))
            return place;
    }
    return -1;
}

RowSnapshot::RowSnapshot(std::shared_ptr<const RowTable> table, std::vector<std::uint32_t> shown)
    : m_table(std::move(table)), m_shown(std::move(shown)) {}

QVariant RowSnapshot::value(qsizetype place, int field) const {
    return m_table->columns[static_cast<std::size_t>(field)].value(m_shown[static_cast<std::size_t>(place)]);
}

QString RowSnapshot::text(qsizetype place, int field) const {
    return m_table->columns[static_cast<std::size_t>(field)].text(m_shown[static_cast<std::size_t>(place)]);
}

}  // namespace kovanix
