#include "driver.h"

#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <optional>

#include "result.h"

namespace kovanix::engine {

namespace {

using namespace Qt::StringLiterals;

/// The options of a connection; nothing when one is unknown.
std::optional<OpenOptions> readOptions(const QString& text) {
    OpenOptions options;
    for (const QStringView part : QStringView(text).split(u';', Qt::SkipEmptyParts)) {
        const QStringView option = part.trimmed();
        const qsizetype sign = option.indexOf(u'=');
        const QStringView key = sign < 0 ? option : option.left(sign).trimmed();
        bool valid = true;
        if (key == u"QSQLITE_OPEN_URI"_s) {
            options.uri = true;
        } else if (key == u"QSQLITE_OPEN_READONLY"_s) {
            options.readOnly = true;
        } else if (key == u"KOVANIX_EXCLUSIVE"_s) {
            options.exclusive = true;
        } else if (key == u"QSQLITE_BUSY_TIMEOUT"_s && sign >= 0) {
            options.busyTimeout = std::chrono::milliseconds(option.mid(sign + 1).trimmed().toInt(&valid));
        } else {
            valid = false;
        }
        if (!valid) {
            return std::nullopt;
        }
    }
    return options;
}

/// The type that the engine gives to a column of a declared type: its rules of affinity, in their order.
QMetaType typeOf(const QString& declared) {
    const auto names = [&declared](QLatin1StringView part) {
        return declared.contains(part, Qt::CaseInsensitive);
    };
    if (names("INT"_L1)) {
        return QMetaType(QMetaType::LongLong);
    }
    if (names("CHAR"_L1) || names("CLOB"_L1) || names("TEXT"_L1)) {
        return QMetaType(QMetaType::QString);
    }
    if (names("BLOB"_L1)) {
        return QMetaType(QMetaType::QByteArray);
    }
    if (names("REAL"_L1) || names("FLOA"_L1) || names("DOUB"_L1)) {
        return QMetaType(QMetaType::Double);
    }
    return QMetaType(QMetaType::QString);
}

QString plainName(const QSqlDriver& driver, const QString& table) {
    return driver.isIdentifierEscaped(table, QSqlDriver::TableName)
               ? driver.stripDelimiters(table, QSqlDriver::TableName)
               : table;
}

}  // namespace

Driver::Driver(QObject* parent) : QSqlDriver(parent), m_database(std::make_shared<Database>()) {
    m_database->setWaitBegins([this] { Q_EMIT notification(u"wait"_s, SelfSource, {}); });
}

Driver::~Driver() {
    m_database->setWaitBegins({});  // a statement of the shared handle may outlive this
    m_database->close();
}

bool Driver::hasFeature(DriverFeature feature) const {
    switch (feature) {
        case Transactions:
        case BLOB:
        case Unicode:
        case PreparedQueries:
        case NamedPlaceholders:
        case PositionalPlaceholders:
        case LastInsertId:
        case SimpleLocking:
        case FinishQuery:
        case LowPrecisionNumbers:
            return true;
        case QuerySize:
        case BatchOperations:
        case EventNotifications:
        case MultipleResultSets:
        case CancelQuery:
            return false;
    }
    return false;
}

bool Driver::open(const QString& db, const QString& /*user*/, const QString& password,
                  const QString& /*host*/, int /*port*/, const QString& options) {
    close();
    const auto refuse = [this](const QSqlError& error) {
        setLastError(error);
        setOpenError(true);
        return false;
    };
    const std::optional<OpenOptions> read = readOptions(options);
    if (!read) {
        return refuse({u"Unknown connection option"_s, options, QSqlError::ConnectionError});
    }
    if (password.isEmpty() == encrypts) {
        const QString words = encrypts ? u"A password is required"_s : u"A password can't be used"_s;
        return refuse({u"Error opening database"_s, words, QSqlError::ConnectionError});
    }
    if (const QSqlError error = m_database->open(db, password, *read); error.isValid()) {
        return refuse(error);
    }
    setOpen(true);
    setOpenError(false);
    return true;
}

void Driver::close() {
    m_database->close();
    setOpen(false);
    setOpenError(false);
}

QSqlResult* Driver::createResult() const {
    return new Result(this, m_database);
}

QVariant Driver::handle() const {
    // The toolkit asks a driver for its handle through a const one.
    FileCopier* const copier = const_cast<Driver*>(this);
    return QVariant::fromValue(copier);
}

QSqlError Driver::copyTo(const QString& target, const std::function<int(const CopyState&)>& next) {
    if (!isOpen())
        return {u"Error copying database"_s, u"not open"_s, QSqlError::ConnectionError};
    return m_database->copyTo(target, next);
}

bool Driver::execute(const char* sql) {
    if (!isOpen() || isOpenError()) {
        return false;
    }
    if (sqlite3_exec(m_database->handle(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) {
        setLastError(m_database->error(QString::fromLatin1(sql), QSqlError::TransactionError));
        return false;
    }
    return true;
}

bool Driver::beginTransaction() {
    return execute("BEGIN");
}

bool Driver::commitTransaction() {
    return execute("COMMIT");
}

bool Driver::rollbackTransaction() {
    return execute("ROLLBACK");
}

QStringList Driver::tables(QSql::TableType type) const {
    QStringList names;
    QSqlQuery query(createResult());
    query.setForwardOnly(true);
    const QString from = u"SELECT name FROM sqlite_master WHERE type = '%1' ORDER BY rowid"_s;
    const auto append = [&](const QString& kind) {
        query.exec(from.arg(kind));
        while (query.next()) {
            names.append(query.value(0).toString());
        }
    };
    if (isOpen() && (type & QSql::Tables) != 0) {
        append(u"table"_s);
        names.removeIf([](const QString& name) { return name.startsWith("sqlite_"_L1); });
    }
    if (isOpen() && (type & QSql::Views) != 0) {
        append(u"view"_s);
    }
    if (isOpen() && (type & QSql::SystemTables) != 0) {
        names.append(u"sqlite_master"_s);
    }
    return names;
}

QSqlRecord Driver::record(const QString& table) const {
    QSqlRecord columns;
    if (!isOpen()) {
        return columns;
    }
    const QString name = plainName(*this, table);
    QSqlQuery query(createResult());
    query.setForwardOnly(true);
    query.exec(u"PRAGMA table_info(%1)"_s.arg(escapeIdentifier(name, TableName)));
    while (query.next()) {
        const QString type = query.value(2).toString();
        QSqlField field(query.value(1).toString(), typeOf(type), name);
        field.setRequired(query.value(3).toBool());
        field.setDefaultValue(query.value(4));
        field.setAutoValue(query.value(5).toInt() > 0 &&
                           type.compare("INTEGER"_L1, Qt::CaseInsensitive) == 0);
        columns.append(field);
    }
    return columns;
}

QSqlIndex Driver::primaryIndex(const QString& table) const {
    QSqlIndex index(table);
    if (!isOpen()) {
        return index;
    }
    const QString name = plainName(*this, table);
    QSqlQuery query(createResult());
    query.setForwardOnly(true);
    query.exec(u"PRAGMA table_info(%1)"_s.arg(escapeIdentifier(name, TableName)));
    while (query.next()) {
        if (query.value(5).toInt() > 0) {
            index.append(QSqlField(query.value(1).toString(), typeOf(query.value(2).toString()), name));
        }
    }
    return index;
}

QString Driver::escapeIdentifier(const QString& identifier, IdentifierType /*type*/) const {
    QString name = identifier;
    name.replace(u'"', u"\"\""_s);
    return u'"' + name + u'"';
}

}  // namespace kovanix::engine
