#include "serverresult.h"

#include <QDateTime>
#include <QSqlField>
#include <QtEndian>
#include <array>
#include <bit>
#include <charconv>
#include <string_view>
#include <utility>

#include "serverdriver.h"
#include "serverplaces.h"

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;

// The server's numbers of its own types, which never change.
constexpr Oid boolean = 16;
constexpr Oid bytea = 17;
constexpr Oid name = 19;
constexpr Oid int8 = 20;
constexpr Oid int2 = 21;
constexpr Oid int4 = 23;
constexpr Oid text = 25;
constexpr Oid oid = 26;
constexpr Oid float4 = 700;
constexpr Oid float8 = 701;
constexpr Oid bpchar = 1042;
constexpr Oid varchar = 1043;
constexpr Oid numeric = 1700;

Cell::Type cellType(Oid type) {
    switch (type) {
        case boolean:
        case int2:
        case int4:
        case int8:
        case oid:
            return Cell::Type::whole;
        case float4:
        case float8:
        case numeric:
            return Cell::Type::real;
        default:
            return Cell::Type::text;
    }
}

QMetaType metaType(Cell::Type type) {
    switch (type) {
        case Cell::Type::whole:
            return QMetaType(QMetaType::LongLong);
        case Cell::Type::real:
            return QMetaType(QMetaType::Double);
        default:
            return QMetaType(QMetaType::QString);
    }
}

template <class Number>
Number numberIn(std::string_view digits) {
    Number number{};
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

/// A whole number in the server's own form, as long as its type.
qint64 wholeIn(std::string_view bytes) {
    switch (bytes.size()) {
        case sizeof(qint8):
            return bytes.front();
        case sizeof(qint16):
            return qFromBigEndian<qint16>(bytes.data());
        case sizeof(qint32):
            return qFromBigEndian<qint32>(bytes.data());
        default:
            return qFromBigEndian<qint64>(bytes.data());
    }
}

template <class Number>
QByteArray digitsOf(Number number) {
    std::array<char, 32> digits{};  // the longest double has 24 signs
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    return {digits.data(), end - digits.data()};
}

/// A value as it is sent. A number goes without a type, so that it is one for a number's column and a text
/// for a text's; only where the server takes the place for a smaller kind of number, it is told which it is.
ServerValue serverValue(const QVariant& value) {
    using Kind = ServerValue::Kind;
    const auto inWords = [](const QString& words) { return ServerValue{Kind::text, words.toUtf8()}; };
    if (value.isNull() || (value.typeId() == QMetaType::QString && value.toString().isNull()))
        return {};
    switch (value.typeId()) {
        case QMetaType::QByteArray:
            return {Kind::bytes, value.toByteArray(), bytea};
        case QMetaType::Bool:
        case QMetaType::Int:
        case QMetaType::UInt:
        case QMetaType::LongLong:
            return {Kind::whole, digitsOf(value.toLongLong())};
        case QMetaType::Double:
        case QMetaType::Float:
            return {Kind::real, digitsOf(value.toDouble())};
        case QMetaType::QDateTime:
            return inWords(value.toDateTime().toString(Qt::ISODateWithMs));
        case QMetaType::QTime:
            return inWords(value.toTime().toString(u"hh:mm:ss.zzz"));
        default:
            return inWords(value.toString());
    }
}

/// The type that a number has to be sent with because the server would take its place for one that it doesn't
/// fit; 0 where there is none. @param place  the place's type; 0 where it isn't known
Oid typeBeyond(const ServerValue& value, Oid place) {
    if (value.kind == ServerValue::Kind::real) {
        const bool whole = place == int2 || place == int4 || place == int8;
        const bool digits = value.bytes.indexOf('.') < 0 && value.bytes.indexOf('e') < 0;
        return digits || (place != 0 && !whole) ? 0 : float8;
    }
    if (value.kind == ServerValue::Kind::whole && (place == 0 || place == int2 || place == int4)) {
        bool fits = false;
        value.bytes.toInt(&fits);
        return fits ? 0 : int8;
    }
    return value.type;
}

QSqlError statementError(const QString& words, const QString& code) {
    return {u"Unable to execute statement"_s, words, QSqlError::StatementError, code};
}

/// Whether a statement is one of those that change rows.
bool changesRows(const QByteArray& sql) {
    const QByteArray word = sql.trimmed().left(6).toUpper();
    return word == "INSERT" || word == "UPDATE" || word == "DELETE";
}

/// The library would send what stands ahead of it.
QSqlError nulError() {
    return statementError(u"A text can't hold a NUL."_s, u"22021"_s);
}

/// Whether the server won't run a prepared statement any more since a table has other columns by now.
bool isOutdated(const ServerConnection::Answer& answer) {
    return answer.error.nativeErrorCode() == "0A000"_L1 &&
           QByteArrayView(PQresultErrorField(answer.rows.get(), PG_DIAG_SOURCE_FUNCTION)) ==
               "RevalidateCachedQuery";
}

}  // namespace

ServerResult::ServerResult(const ServerDriver* driver, std::shared_ptr<ServerConnection> connection)
    : QSqlResult(driver), m_connection(std::move(connection)) {}

ServerResult::~ServerResult() {
    release();
}

bool ServerResult::isPrepared() const {
    return !m_name.isEmpty() && m_generation == m_connection->generation();
}

void ServerResult::release() {
    if (isPrepared())
        m_connection->release(m_name);
    m_name.clear();
}

void ServerResult::detachFromResultSet() {
    m_rows.reset();
}

bool ServerResult::fail(const QSqlError& error) {
    setLastError(error);
    return false;
}

/// The toolkit would look for places with names, and find some in what is quoted with dollar signs.
bool ServerResult::savePrepare(const QString& query) {
    clear();
    setQuery(query);
    return prepare(query);
}

bool ServerResult::prepare(const QString& query) {
    release();
    m_rows.reset();
    setSelect(false);
    m_sql.clear();
    if (query.contains(QChar(u'\0')))
        return fail(nulError());
    const NumberedPlaces numbered = NumberedPlaces::of(query.toUtf8());
    m_sql = numbered.sql;
    m_writes = changesRows(m_sql);
    m_places = numbered.count;
    if (m_places > PQ_QUERY_PARAM_MAX_LIMIT)
        return fail(statementError(u"A statement can't have that many values."_s, u"54023"_s));
    m_single = std::exchange(m_late, false);
    return m_single || prepareOnServer({});
}

/// @param types  of the places; those behind them are left to the server
bool ServerResult::prepareOnServer(const std::vector<Oid>& types) {
    release();
    const QByteArray statement = m_connection->nextName();
    const ServerConnection::Answer answer = m_connection->prepare(statement, m_sql, types);
    if (answer.error.isValid())
        return fail(answer.error);
    m_name = statement;
    m_generation = m_connection->generation();
    m_types.clear();
    for (int place = 0; place < PQnparams(answer.rows.get()); ++place)
        m_types.push_back(PQparamtype(answer.rows.get(), place));
    m_binary = areReadable(answer.rows.get());
    return true;
}

/// Whether all columns' cells can be: the library takes one form for all of them.
bool ServerResult::areReadable(const PGresult* rows) const {
    for (int field = 0; field < PQnfields(rows); ++field) {
        if (!isReadable(PQftype(rows, field)))
            return false;
    }
    return true;
}

/// Whether a column's cells can be read in the server's own form, which saves both sides the digits.
bool ServerResult::isReadable(Oid type) const {
    switch (type) {
        case boolean:
        case name:
        case int8:
        case int2:
        case int4:
        case text:
        case float8:
        case bpchar:
        case varchar:
            return true;
        case float4:  // its digits say 0.1 where its bits are a little more
        case numeric:
        case oid:  // the only one without a sign
            return false;
        default:
            return m_connection->isCaselessText(type);
    }
}

bool ServerResult::reset(const QString& query) {
    release();
    m_rows.reset();
    m_sql.clear();
    if (query.contains(QChar(u'\0')))
        return fail(nulError());
    m_sql = query.toUtf8();
    m_writes = changesRows(m_sql);
    m_places = 0;
    m_single = true;
    return exec();
}

std::optional<std::vector<ServerValue>> ServerResult::values() {
    std::vector<ServerValue> values;
    if (boundValueCount() < m_places) {
        fail({u"Parameter count mismatch"_s, {}, QSqlError::StatementError});
        return std::nullopt;
    }
    for (int place = 0; place < m_places; ++place) {
        values.push_back(serverValue(boundValue(place)));
        if (values.back().kind == ServerValue::Kind::text && values.back().bytes.contains('\0')) {
            fail(nulError());
            return std::nullopt;
        }
    }
    return values;
}

bool ServerResult::exec() {
    setAt(QSql::BeforeFirstRow);
    setActive(false);
    setLastError({});
    m_rows.reset();
    m_changes = -1;
    if (m_sql.isEmpty())
        return fail(statementError(u"no statement"_s, {}));
    std::optional<std::vector<ServerValue>> values = this->values();
    if (!values)
        return false;
    if (m_single) {
        for (ServerValue& value : *values)
            value.type = typeBeyond(value, 0);
        return take(runOnce(*values));
    }
    // The connection may have been closed and opened again since.
    if ((!isPrepared() && !prepareOnServer({})) || !fitTypes(*values))
        return false;
    ServerConnection::Answer answer = m_connection->runPrepared(m_name, *values, {m_binary, m_writes});
    if (isOutdated(answer) && !m_connection->isInTransaction()) {
        // It hasn't run.
        if (!prepareOnServer({}) || !fitTypes(*values))
            return false;
        answer = m_connection->runPrepared(m_name, *values, {m_binary, m_writes});
    }
    return take(std::move(answer));
}

/// Runs a statement that isn't prepared. Of what type its columns are shows with the rows, and those that
/// came in a form that can't be read are asked for once more.
ServerConnection::Answer ServerResult::runOnce(const std::vector<ServerValue>& values) {
    const bool many = std::exchange(m_many, false) && !m_writes;
    ServerConnection::Answer answer = m_connection->run(m_sql, values, {many, m_writes});
    if (many && !answer.error.isValid() && !areReadable(answer.rows.get()))
        answer = m_connection->run(m_sql, values, {false, m_writes});
    return answer;
}

/// Prepares the statement anew where a number doesn't fit the type that its place has.
bool ServerResult::fitTypes(const std::vector<ServerValue>& values) {
    std::vector<Oid> types = m_types;
    for (std::size_t place = 0; place < values.size() && place < types.size(); ++place) {
        if (const Oid type = typeBeyond(values[place], types[place]); type != 0)
            types[place] = type;
    }
    return types == m_types || prepareOnServer(types);
}

bool ServerResult::take(ServerConnection::Answer answer) {
    if (answer.error.isValid())
        return fail(answer.error);
    m_rows = std::move(answer.rows);
    m_columns.clear();
    for (int field = 0; field < PQnfields(m_rows.get()); ++field)
        m_columns.push_back({cellType(PQftype(m_rows.get(), field)), PQfformat(m_rows.get(), field) == 0});
    m_row = -1;
    m_count = PQntuples(m_rows.get());
    m_changes = QByteArray(PQcmdTuples(m_rows.get())).toInt();
    setSelect(PQresultStatus(m_rows.get()) == PGRES_TUPLES_OK);
    setActive(true);
    return true;
}

Cell ServerResult::cell(int field) const {
    const PGresult* const rows = m_rows.get();
    // Each question of the library's costs as much as all else here: of a cell that holds something, two are
    // enough. Of a place that there isn't, it says that it is null.
    const int size = rows ? PQgetlength(rows, m_row, field) : 0;
    if (size == 0 && (!rows || PQgetisnull(rows, m_row, field) == 1))
        return {};
    const std::string_view bytes(PQgetvalue(rows, m_row, field), static_cast<std::size_t>(size));
    const auto [type, digits] = m_columns[static_cast<std::size_t>(field)];
    switch (type) {
        case Cell::Type::whole:
            if (digits)
                return {.type = type, .whole = bytes == "t" ? 1 : numberIn<qint64>(bytes), .bytes = {}};
            return {.type = type, .whole = wholeIn(bytes), .bytes = {}};
        case Cell::Type::real:
            if (digits)
                return {.type = type, .real = numberIn<double>(bytes), .bytes = {}};
            return {.type = type,
                    .real = std::bit_cast<double>(qFromBigEndian<quint64>(bytes.data())),
                    .bytes = {}};
        default:
            return {.type = type, .bytes = bytes};
    }
}

QVariant ServerResult::data(int field) {
    const Cell value = cell(field);
    switch (value.type) {
        case Cell::Type::whole:
            return value.whole;
        case Cell::Type::real:
            return value.real;
        case Cell::Type::text:
            return QString::fromUtf8(value.bytes.data(), static_cast<qsizetype>(value.bytes.size()));
        default:
            return {};
    }
}

bool ServerResult::isNull(int field) {
    return cell(field).type == Cell::Type::null;
}

QVariant ServerResult::handle() const {
    // The toolkit asks a result for its handle through a const one and leaves it to the asker to step on.
    RowCursor* const cursor = const_cast<ServerResult*>(this);
    return isForwardOnly() ? QVariant::fromValue(cursor) : QVariant();
}

int ServerResult::size() {
    return m_rows ? m_count : -1;
}

bool ServerResult::fetchNext() {
    if (at() == QSql::AfterLastRow)
        return false;
    if (fetch(m_row + 1))
        return true;
    setAt(QSql::AfterLastRow);
    m_row = m_count;
    return false;
}

bool ServerResult::fetch(int index) {
    if (index < 0 || index >= size())
        return false;
    setAt(index);
    m_row = index;
    return true;
}

QSqlRecord ServerResult::record() const {
    QSqlRecord columns;
    if (!isActive() || !isSelect() || !m_rows)
        return columns;
    for (int field = 0; field < PQnfields(m_rows.get()); ++field)
        columns.append(QSqlField(QString::fromUtf8(PQfname(m_rows.get(), field)),
                                 metaType(m_columns[static_cast<std::size_t>(field)].type)));
    return columns;
}

}  // namespace kovanix::engine
