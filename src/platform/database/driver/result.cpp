#include "result.h"

#include <QDateTime>
#include <QSqlField>
#include <QStringList>
#include <utility>

#include "../vectorstate.h"
#include "driver.h"

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;

// The library's own constant for this is a C cast.
const auto copied = reinterpret_cast<sqlite3_destructor_type>(SQLITE_TRANSIENT);

}  // namespace

Result::Result(const Driver* driver, std::shared_ptr<Database> database)
    : QSqlResult(driver), m_database(std::move(database)) {
    m_database->add(this);
}

Result::~Result() {
    m_database->remove(this);
    finalize();
}

void Result::finalize() {
    sqlite3_finalize(std::exchange(m_statement, nullptr));
    m_stepped = false;
    m_atRow = false;
    m_finished = true;
}

void Result::detachFromResultSet() {
    if (m_statement) {
        sqlite3_reset(m_statement);
    }
    m_stepped = false;
    m_atRow = false;
    m_finished = true;
}

bool Result::fail(const QString& what, QSqlError::ErrorType type) {
    setLastError(m_database->error(what, type));
    return false;
}

bool Result::prepare(const QString& query) {
    finalize();
    m_rows.clear();
    setSelect(false);
    if (!m_database->isOpen()) {
        return false;
    }
    const QByteArray sql = query.toUtf8();
    const char* rest = nullptr;
    if (sqlite3_prepare_v2(m_database->handle(), sql.constData(), static_cast<int>(sql.size() + 1),
                           &m_statement, &rest) != SQLITE_OK) {
        return fail(u"Unable to execute statement"_s, QSqlError::StatementError);
    }
    if (rest && !QByteArrayView(rest).trimmed().isEmpty()) {
        finalize();
        setLastError({u"Unable to execute multiple statements at a time"_s, {}, QSqlError::StatementError});
        return false;
    }
    return true;
}

bool Result::reset(const QString& query) {
    return prepare(query) && exec();
}

int Result::bind(int place, const QVariant& value) {
    const auto bindText = [&](const QString& text) {
        return sqlite3_bind_text16(m_statement, place, text.utf16(),
                                   static_cast<int>(text.size() * qsizetype(sizeof(char16_t))), copied);
    };
    if (value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isNull())) {
        return sqlite3_bind_null(m_statement, place);
    }
    switch (value.typeId()) {
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            return sqlite3_bind_blob(m_statement, place, bytes.constData(), static_cast<int>(bytes.size()),
                                     copied);
        }
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
            return sqlite3_bind_int64(m_statement, place, value.toLongLong());
        case QMetaType::Double:
        case QMetaType::Float:
            return sqlite3_bind_double(m_statement, place, value.toDouble());
        case QMetaType::QDateTime:
            return bindText(value.toDateTime().toString(Qt::ISODateWithMs));
        case QMetaType::QTime:
            return bindText(value.toTime().toString(u"hh:mm:ss.zzz"));
        default:
            return bindText(value.toString());
    }
}

int Result::bind(int place, const Cell& value) {
    // Nothing is copied: the statement has run when its caller goes on.
    constexpr sqlite3_destructor_type borrowed = nullptr;
    const char* const bytes = value.bytes.empty() ? "" : value.bytes.data();
    const int size = static_cast<int>(value.bytes.size());
    switch (value.type) {
        case Cell::Type::whole:
            return sqlite3_bind_int64(m_statement, place, value.whole);
        case Cell::Type::real:
            return sqlite3_bind_double(m_statement, place, value.real);
        case Cell::Type::text:
            return sqlite3_bind_text(m_statement, place, bytes, size, borrowed);
        case Cell::Type::bytes:
            return sqlite3_bind_blob(m_statement, place, bytes, size, borrowed);
        case Cell::Type::null:
            break;
    }
    return sqlite3_bind_null(m_statement, place);
}

bool Result::bindValues() {
    const int places = sqlite3_bind_parameter_count(m_statement);
    if (boundValueCount() < places) {
        setLastError({u"Parameter count mismatch"_s, {}, QSqlError::StatementError});
        return false;
    }
    for (int place = 1; place <= places; ++place) {
        // The toolkit numbers every occurrence of a name, the library only its first.
        const char* const name = sqlite3_bind_parameter_name(m_statement, place);
        const QVariant value =
            name && *name == ':' ? boundValue(QString::fromUtf8(name)) : boundValue(place - 1);
        if (bind(place, value) != SQLITE_OK) {
            return fail(u"Unable to bind parameters"_s, QSqlError::StatementError);
        }
    }
    return true;
}

/// Makes the statement ready to take values.
bool Result::beginExecution() {
    setAt(QSql::BeforeFirstRow);
    setActive(false);
    setLastError({});
    // The handle may have been closed and opened again since.
    if (!m_statement && !lastQuery().isEmpty() && !prepare(lastQuery())) {
        return false;
    }
    m_rows.clear();
    m_changes = -1;
    m_finished = false;
    m_stepped = false;
    m_atRow = false;
    if (!m_statement) {
        setLastError({u"Unable to execute statement"_s, u"no statement"_s, QSqlError::StatementError});
        return false;
    }
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
    return true;
}

/// Runs the statement with the values that it has.
bool Result::endExecution() {
    if (!step())
        return false;
    m_stepped = !m_finished;
    m_changes = sqlite3_changes(m_database->handle());
    setSelect(sqlite3_column_count(m_statement) > 0);
    setActive(true);
    return true;
}

bool Result::exec() {
    return beginExecution() && bindValues() && endExecution();
}

bool Result::runWith(const std::vector<Cell>& values) {
    if (!beginExecution())
        return false;
    if (static_cast<int>(values.size()) != sqlite3_bind_parameter_count(m_statement)) {
        setLastError({u"Parameter count mismatch"_s, {}, QSqlError::StatementError});
        return false;
    }
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (bind(static_cast<int>(i) + 1, values[i]) != SQLITE_OK)
            return fail(u"Unable to bind parameters"_s, QSqlError::StatementError);
    }
    const bool ran = endExecution();
    sqlite3_clear_bindings(m_statement);
    return ran;
}

/// Steps to the next row or to the end; false on an error.
bool Result::step() {
    emptyVectorRegisters();
    switch (sqlite3_step(m_statement)) {
        case SQLITE_ROW:
            return true;
        case SQLITE_DONE:
            m_finished = true;
            sqlite3_reset(m_statement);
            return true;
        default: {
            m_finished = true;
            fail(u"Unable to fetch row"_s, QSqlError::StatementError);
            sqlite3_reset(m_statement);
            return false;
        }
    }
}

Cell Result::cell(int field) const {
    using Type = Cell::Type;
    // The library locks and looks the cell up anew in every question about a column; about a value it
    // doesn't. That is allowed on a handle that one thread has for itself, as this one.
    sqlite3_value* const value = sqlite3_column_value(m_statement, field);
    const auto bytes = [value](const void* first) {
        return std::string_view(static_cast<const char*>(first),
                                static_cast<std::size_t>(sqlite3_value_bytes(value)));
    };
    switch (sqlite3_value_type(value)) {
        case SQLITE_INTEGER:
            return {.type = Type::whole, .whole = sqlite3_value_int64(value), .bytes = {}};
        case SQLITE_FLOAT:
            return {.type = Type::real, .real = sqlite3_value_double(value), .bytes = {}};
        case SQLITE_TEXT:
            return {.type = Type::text, .bytes = bytes(sqlite3_value_text(value))};
        case SQLITE_BLOB:
            return {.type = Type::bytes, .bytes = bytes(sqlite3_value_blob(value))};
        default:
            return {};
    }
}

QVariant Result::column(int field) const {
    const Cell value = cell(field);
    const auto size = static_cast<qsizetype>(value.bytes.size());
    switch (value.type) {
        case Cell::Type::whole:
            return value.whole;
        case Cell::Type::real:
            return value.real;
        case Cell::Type::text:
            return QString::fromUtf8(value.bytes.data(), size);
        case Cell::Type::bytes:
            return QByteArray(value.bytes.data(), size);
        default:
            return {};
    }
}

QVariant Result::handle() const {
    // The toolkit asks a result for its handle through a const one and leaves it to the asker to step on.
    RowCursor* const cursor = const_cast<Result*>(this);
    return isForwardOnly() ? QVariant::fromValue(cursor) : QVariant();
}

QVariantList Result::row() const {
    QVariantList row;
    const int columns = sqlite3_column_count(m_statement);
    row.reserve(columns);
    for (int i = 0; i < columns; ++i)
        row.append(column(i));
    return row;
}

/// Goes to one more row; false at the end.
bool Result::readRow() {
    m_atRow = false;
    if (!m_statement || m_finished || (!std::exchange(m_stepped, false) && (!step() || m_finished)))
        return false;
    m_atRow = isForwardOnly();
    if (!m_atRow)
        m_rows.append(row());
    return true;
}

bool Result::fetchNext() {
    if (at() == QSql::AfterLastRow) {
        return false;
    }
    const int next = at() == QSql::BeforeFirstRow ? 0 : at() + 1;
    const bool held = !isForwardOnly() && next < m_rows.size();
    if (!held && !readRow()) {
        setAt(QSql::AfterLastRow);
        return false;
    }
    setAt(next);
    return true;
}

bool Result::fetch(int index) {
    if (index < 0 || (isForwardOnly() && index < at())) {
        return false;
    }
    if (!isForwardOnly() && index < m_rows.size()) {
        setAt(index);
        return true;
    }
    if (!isForwardOnly() && at() != QSql::AfterLastRow) {
        setAt(static_cast<int>(m_rows.size()) - 1);
    }
    while (at() != index) {
        if (!fetchNext()) {
            return false;
        }
    }
    return true;
}

bool Result::fetchFirst() {
    return fetch(0);
}

bool Result::fetchLast() {
    if (isForwardOnly()) {
        // The last row is known only once the next step finds none: by then the statement has left it.
        int last = at();
        while (fetchNext()) {
            last = at();
            m_rows = {row()};
        }
        if (last < 0 || m_rows.isEmpty())
            return false;
        setAt(last);
        return true;
    }
    while (readRow()) {
    }
    if (m_rows.isEmpty()) {
        return false;
    }
    setAt(static_cast<int>(m_rows.size()) - 1);
    return true;
}

QVariant Result::currentCell(int field) const {
    if (m_atRow)
        return m_statement && field >= 0 && field < sqlite3_column_count(m_statement) ? column(field)
                                                                                      : QVariant();
    const qsizetype index = isForwardOnly() ? 0 : at();
    return at() >= 0 && index < m_rows.size() ? m_rows[index].value(field) : QVariant();
}

QVariant Result::data(int field) {
    return currentCell(field);
}

bool Result::isNull(int field) {
    return !data(field).isValid();
}

QSqlRecord Result::record() const {
    QSqlRecord columns;
    if (!isActive() || !isSelect() || !m_statement) {
        return columns;
    }
    for (int i = 0; i < sqlite3_column_count(m_statement); ++i) {
        const QString name = QString::fromUtf8(sqlite3_column_name(m_statement, i));
        columns.append(QSqlField(name, currentCell(i).metaType()));
    }
    return columns;
}

QVariant Result::lastInsertId() const {
    return isActive() && m_database->isOpen()
               ? QVariant(qlonglong{sqlite3_last_insert_rowid(m_database->handle())})
               : QVariant();
}

}  // namespace kovanix::engine
