#include "database/recordset.h"

#include <QDateTime>
#include <QList>
#include <algorithm>
#include <optional>
#include <utility>

#include "database/connection.h"
#include "database/connectionprivate.h"
#include "database/cursor.h"
#include "database/dialect.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

struct NewRow {
    QString table;
    QStringList columns;  ///< the table's
    QStringList names;    ///< those that have been set
    QVariantList values;
};

/// A value as the engine stores it: date-times as text, an empty text as such, no value as null.
QVariant stored(const QVariant& value) {
    constexpr auto form = u"yyyy-MM-dd HH:mm:ss";
    switch (value.typeId()) {
        case QMetaType::QDateTime:
            return value.toDateTime().isValid() ? value.toDateTime().toString(form) : QVariant();
        case QMetaType::QDate:
            return value.toDate().isValid() ? value.toDate().startOfDay(Qt::UTC).toString(form) : QVariant();
        case QMetaType::QString:
            // The drivers take a null text for a null value.
            return value.toString().isNull() ? u""_s : value;
        case QMetaType::Bool:
            return value.toInt();
        default:
            return value.isNull() ? QVariant() : value;
    }
}

QString insertSql(const NewRow& row) {
    const QString into = u"INSERT INTO "_s + quotedSqlName(row.table);
    if (row.names.isEmpty()) {
        return into + u" DEFAULT VALUES"_s;
    }
    const QStringList places(row.names.size(), u"?"_s);
    return into + u" ("_s + row.names.join(u", ") + u") VALUES ("_s + places.join(u", ") + u')';
}

}  // namespace

struct Recordset::Private final : ConnectionUser {
    void suspendReading() override { cursor->suspend(); }

    void connectionClosing() override {
        row.reset();
        cursor.reset();
        connection = nullptr;
        core = nullptr;
    }

    [[noreturn]] void fail(const QString& description) const {
        throw RuntimeError(RuntimeError::databaseFailure, description, core ? core->engine : QString());
    }

    void requireOpen() const {
        if (!cursor) {
            fail(u"Operation is not allowed when the object is closed."_s);
        }
    }

    void requireNewRow() const {
        requireOpen();
        if (!row) {
            fail(u"Operation is not allowed in this context."_s);
        }
    }

    Connection* connection = nullptr;
    ConnectionCore* core = nullptr;
    QString sql;
    std::optional<Cursor> cursor;
    std::optional<NewRow> row;
};

Recordset::Recordset() : d(std::make_unique<Private>()) {}

Recordset::~Recordset() {
    close();
}

void Recordset::open(const QString& sql, Connection& connection) {
    if (isOpen()) {
        d->fail(u"Operation is not allowed when the object is open."_s);
    }
    ConnectionCore& core = *connection.d;
    core.requireOpen();
    try {
        d->cursor.emplace(core.database, core.engine, sql);
    } catch (const RuntimeError& error) {
        // A malformed literal too is reported in the engine's name.
        throw RuntimeError(error.number(), error.description(), core.engine);
    }
    d->connection = &connection;
    d->core = &core;
    d->sql = sql;
    core.users.push_back(d.get());
}

void Recordset::close() {
    if (d->core) {
        std::erase(d->core->users, d.get());
    }
    d->connectionClosing();
}

bool Recordset::isOpen() const {
    return d->cursor.has_value();
}

bool Recordset::atEnd() {
    d->requireOpen();
    return d->cursor->atEnd();
}

QVariant Recordset::field(const QString& name) {
    d->requireOpen();
    return d->cursor->field(name);
}

QStringList Recordset::fieldNames() {
    d->requireOpen();
    return d->cursor->fieldNames();
}

void Recordset::moveNext() {
    d->requireOpen();
    d->cursor->moveNext();
}

void Recordset::addNew() {
    d->requireOpen();
    const std::optional<QString> table = dialect::singleTable(d->sql);
    if (!table) {
        d->fail(u"Current Recordset does not support updating."_s);
    }
    d->row = NewRow{*table, d->connection->columns(*table), {}, {}};
}

void Recordset::setField(const QString& name, const QVariant& value) {
    d->requireNewRow();
    const auto column = std::ranges::find_if(std::as_const(d->row->columns), [&name](const QString& each) {
        return each.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (column == d->row->columns.cend()) {
        d->fail(u"Item cannot be found in the collection: %1"_s.arg(name));
    }
    const QString quoted = quotedSqlName(*column);
    const qsizetype place = d->row->names.indexOf(quoted);
    if (place < 0) {
        d->row->names.append(quoted);
        d->row->values.append(stored(value));
    } else {
        d->row->values[place] = stored(value);
    }
}

void Recordset::update() {
    d->requireNewRow();
    d->core->suspendReading();
    d->core->run(insertSql(*d->row), d->row->values);
    d->row.reset();
}

}  // namespace kovanix
