#include "database/recordset.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

#include "database/cell.h"
#include "database/connection.h"
#include "database/connectionprivate.h"
#include "database/engineerror.h"
#include "database/selectreader.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

// The first chunk holds what a look-up gives. Later ones grow, because each costs a look for its beginning; a
// select without a condition finds that at once, and keeps its chunks small enough for the memory.
constexpr qint64 firstChunk = 32;
constexpr qint64 chunkGrowth = 4;
constexpr qint64 largestPlainChunk = 8192;

/// Fields that have been set and not yet stored.
struct Change {
    std::optional<qint64> row;  ///< the identity of the row that is changed; nothing for a new one
    QStringList columns;        ///< as the table has them
    QVariantList values;
};

QStringList quoted(const QStringList& columns) {
    QStringList names;
    for (const QString& column : columns)
        names.append(quotedSqlName(column));
    return names;
}

/// @param table  between quotes, as the columns' names are where they came from the table
QString insertSql(const QString& table, const Change& change) {
    const QString into = u"INSERT INTO "_s + table;
    if (change.columns.isEmpty())
        return into + u" DEFAULT VALUES"_s;
    const QStringList places(change.columns.size(), u"?"_s);
    return into + u" ("_s + quoted(change.columns).join(u", ") + u") VALUES ("_s + places.join(u", ") + u')';
}

QString updateSql(const QString& table, const Change& change, const QString& identity) {
    return u"UPDATE "_s + table + u" SET "_s + quoted(change.columns).join(u" = ?, ") + u" = ? WHERE "_s +
           identity + u" = ?"_s;
}

}  // namespace

struct Recordset::Private final : ConnectionUser {
    void rowsChanging() override;
    void connectionClosing() override;

    [[noreturn]] void fail(Kind kind, const QString& description) const {
        throw DatabaseError(kind, describeFailure(kind, description), core ? core->engineName : QString());
    }
    void requireOpen() const;
    void requireRow();
    void requireTable() const;
    void requireIdentities() const;

    void readChunk();
    void ensureRead();
    bool hasRow();
    bool atEnd();
    void goOn();
    void goToEnd();
    void forgetRows();
    void storePending();
    QString table() const { return dialect::quotedName(reader->select()->table, core->engine->target()); }
    bool findByStatement(const dialect::Condition& condition);
    bool findInMemory(const RowFilter& criterion);
    void insert();
    void change();

    ConnectionCore* core = nullptr;
    std::optional<SelectReader> reader;
    std::optional<Change> pending;
    bool refused = false;  ///< the last filter was

    bool read = false;  ///< whether anything was asked since the open, the filter or moveFirst
    std::vector<SelectReader::Row> rows;
    size_t current = 0;             ///< in the rows; behind them at the end
    std::optional<qint64> after;    ///< the identity of the row behind which the rows not read follow
    std::optional<qint64> deleted;  ///< of the row that was deleted here; the current one then is the next
    bool complete = false;          ///< whether no row follows those read
    bool whole = false;             ///< whether none is ahead of them either
    qint64 chunk = firstChunk;
};

void Recordset::Private::rowsChanging() {
    if (!reader || !read || !reader->readsRanges() || (current >= rows.size() && complete && !deleted))
        return;
    const size_t kept = std::min(deleted ? current : current + 1, rows.size());
    rows.resize(kept);
    after = deleted ? deleted : kept > 0 ? std::optional(rows.back().identity) : after;
    complete = false;
    chunk = firstChunk;
}

void Recordset::Private::connectionClosing() {
    forgetRows();
    pending.reset();
    reader.reset();
    core = nullptr;
    refused = false;
}

void Recordset::Private::requireOpen() const {
    if (!reader)
        fail(Kind::closed, u"Operation is not allowed when the object is closed."_s);
}

void Recordset::Private::requireRow() {
    if (!hasRow())
        fail(Kind::noRow, u"Either BOF or EOF is True, or the current record has been deleted."_s);
}

void Recordset::Private::requireTable() const {
    if (!reader->select())
        fail(Kind::statement, u"Current Recordset does not support updating."_s);
}

void Recordset::Private::requireIdentities() const {
    if (!reader->hasIdentities())
        fail(Kind::statement, u"Current Recordset does not support updating."_s);
}

void Recordset::Private::forgetRows() {
    rows.clear();
    current = 0;
    after.reset();
    deleted.reset();
    read = complete = whole = false;
    chunk = firstChunk;
}

/// Puts the rows that follow those read in their place.
void Recordset::Private::readChunk() {
    const bool ranges = reader->readsRanges();
    const bool first = !after;
    rows = reader->read({after, ranges ? chunk : 0});
    current = 0;
    read = true;
    complete = !ranges || static_cast<qint64>(rows.size()) < chunk;
    whole = first;
    if (!rows.empty())
        after = rows.back().identity;
    chunk *= chunkGrowth;
    if (!reader->isConditional())
        chunk = std::min(chunk, largestPlainChunk);
}

void Recordset::Private::ensureRead() {
    if (!read && !refused)
        readChunk();
}

bool Recordset::Private::hasRow() {
    ensureRead();
    return !deleted && current < rows.size();
}

bool Recordset::Private::atEnd() {
    ensureRead();
    return !deleted && current >= rows.size();
}

/// From a row or from where one was deleted to the next.
void Recordset::Private::goOn() {
    if (!std::exchange(deleted, std::nullopt))
        ++current;
    if (current >= rows.size() && !complete)
        readChunk();
}

void Recordset::Private::goToEnd() {
    if (read && !reader->readsRanges()) {
        current = rows.size();
        deleted.reset();
    } else {
        forgetRows();
        read = complete = true;
    }
}

void Recordset::Private::storePending() {
    if (pending && pending->row)
        change();
    else if (pending)
        insert();
}

void Recordset::Private::insert() {
    core->write(insertSql(table(), *pending), pending->values);
    pending.reset();
}

void Recordset::Private::change() {
    const Change& set = *pending;
    const QString sql = updateSql(table(), set, reader->shape().identity);
    if (core->write(sql, set.values + QVariantList{*set.row}) == 0) {
        pending.reset();
        fail(
            Kind::noRow,
            u"Row cannot be located for updating. Some values may have been changed since it was last read."_s);
    }
    for (qsizetype i = 0; current < rows.size() && i < set.columns.size(); ++i) {
        if (const qsizetype place = reader->indexOf(set.columns[i]); place >= 0)
            rows[current].fields[place] = set.values[i];
    }
    pending.reset();
}

bool Recordset::Private::findByStatement(const dialect::Condition& condition) {
    if (refused || (read && atEnd()))
        return false;
    std::optional<qint64> behind = deleted;
    if (read && !deleted) {
        const qint64 identity = rows[current].identity;
        if (identity != std::numeric_limits<qint64>::min())
            behind = identity - 1;
    }
    std::vector<SelectReader::Row> found = reader->read({behind, 1}, condition);
    if (found.empty())
        return false;
    forgetRows();
    rows = std::move(found);
    after = rows.front().identity;
    read = true;
    return true;
}

bool Recordset::Private::findInMemory(const RowFilter& criterion) {
    for (; !atEnd(); goOn()) {
        if (hasRow() && reader->matches(criterion, rows[current]))
            return true;
    }
    return false;
}

Recordset::Recordset() : d(std::make_unique<Private>()) {}

Recordset::~Recordset() {
    close();
}

void Recordset::open(const QString& sql, Connection& connection) {
    if (isOpen())
        d->fail(Kind::statement, u"Operation is not allowed when the object is open."_s);
    ConnectionCore& core = *connection.d;
    core.requireOpen();
    d->reader.emplace(core, sql, firstChunk);
    d->core = &core;
    core.users.push_back(d.get());
}

void Recordset::close() {
    if (d->core)
        std::erase(d->core->users, d.get());
    d->connectionClosing();
}

bool Recordset::isOpen() const {
    return d->reader.has_value();
}

bool Recordset::atEnd() {
    d->requireOpen();
    return d->atEnd();
}

qint64 Recordset::recordCount() {
    d->requireOpen();
    d->ensureRead();
    if (!d->refused && !(d->whole && d->complete)) {
        const std::optional<qint64> count = d->reader->count();
        return count ? *count : static_cast<qint64>(d->reader->read({}).size());
    }
    return static_cast<qint64>(d->rows.size());
}

QVariant Recordset::field(const QString& name) {
    d->requireOpen();
    d->requireRow();
    const qsizetype place = d->reader->indexOf(name);
    if (place < 0)
        d->fail(Kind::value, u"Item cannot be found in the collection: %1"_s.arg(name));
    return d->rows[d->current].fields[place];
}

QStringList Recordset::fieldNames() {
    d->requireOpen();
    d->ensureRead();
    return d->reader->names();
}

void Recordset::moveFirst() {
    d->requireOpen();
    d->storePending();
    d->forgetRows();
}

void Recordset::moveNext() {
    d->requireOpen();
    d->storePending();
    if (d->atEnd())
        d->requireRow();
    d->goOn();
}

void Recordset::setFilter(const QString& filter) {
    d->requireOpen();
    d->refused = true;  // until it is in force
    try {
        d->storePending();
        d->reader->setFilter(d->core->inEnginesName([&] { return RowFilter::parse(filter); }));
        d->refused = false;
    } catch (const RuntimeError&) {
        d->forgetRows();
        throw;
    }
    d->forgetRows();
}

bool Recordset::find(const QString& criterion) {
    d->requireOpen();
    bool found = false;
    try {
        d->storePending();
        const RowFilter parsed = d->core->inEnginesName([&] { return RowFilter::parse(criterion); });
        const auto condition = d->reader->readsRanges() ? d->reader->condition(parsed) : std::nullopt;
        found = condition ? d->findByStatement(*condition) : d->findInMemory(parsed);
    } catch (const RuntimeError&) {
        d->goToEnd();
        throw;
    }
    if (!found)
        d->goToEnd();
    return found;
}

void Recordset::addNew() {
    d->requireOpen();
    d->requireTable();
    d->storePending();
    d->pending.emplace();
}

void Recordset::setField(const QString& name, const QVariant& value) {
    d->requireOpen();
    if (!d->pending) {
        d->requireIdentities();
        d->requireRow();
    }
    const TableShape& shape = d->reader->shape();
    const qsizetype column = shape.indexOf(name);
    if (column < 0)
        d->fail(Kind::value, u"Item cannot be found in the collection: %1"_s.arg(name));
    if (!d->pending)
        d->pending = Change{d->rows[d->current].identity, {}, {}};
    const QString& known = shape.columns[column].name;
    const QVariant fitting = d->core->engine->fitting(stored(value), shape.columns[column]);
    const qsizetype place = d->pending->columns.indexOf(known);
    if (place < 0) {
        d->pending->columns.append(known);
        d->pending->values.append(fitting);
    } else {
        d->pending->values[place] = fitting;
    }
}

void Recordset::update() {
    d->requireOpen();
    if (!d->pending && !d->deleted)
        d->fail(Kind::statement, u"Operation is not allowed in this context."_s);
    d->storePending();
}

void Recordset::deleteCurrent() {
    d->requireOpen();
    const bool adding = d->pending && !d->pending->row;
    d->pending.reset();
    if (adding)
        return;
    d->requireIdentities();
    d->requireRow();
    const qint64 row = d->rows[d->current].identity;
    const QString sql = u"DELETE FROM %1 WHERE %2 = ?"_s.arg(d->table(), d->reader->shape().identity);
    if (d->core->write(sql, {row}) == 0)
        d->fail(
            Kind::noRow,
            u"Row cannot be located for updating. Some values may have been changed since it was last read."_s);
    d->rows.erase(d->rows.begin() + static_cast<std::ptrdiff_t>(d->current));
    d->deleted = row;
}

}  // namespace kovanix
