#include "database/connection.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QStorageInfo>
#include <QUrl>
#include <algorithm>
#include <atomic>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/sqltokens.h"
#include "database/tablerebuild.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;

QString nextConnectionName() {
    static std::atomic<int> count = 0;
    return u"kovanix-"_s + QString::number(++count);
}

/// The file's URI, by which the engine opens it without ever making it.
QString fileUri(const QFileInfo& file) {
    const QByteArray path = QUrl::toPercentEncoding(file.absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(path) + u"?mode=rw"_s;
}

std::function<bool(const QString&)>& networkFileTest() {
    static std::function<bool(const QString&)> test;
    return test;
}

bool isOnNetwork(const QString& path) {
    return networkFileTest() ? networkFileTest()(path)
                             : isNetworkFileSystem(QStorageInfo(path).fileSystemType());
}

const QString catalogueProbe = u"SELECT count(*) FROM sqlite_master"_s;

// In the file's header, where the engine leaves a number to the program: "KVX".
constexpr int networkMark = 0x4B5658;

}  // namespace

void setNetworkFileTest(std::function<bool(const QString& path)> test) {
    networkFileTest() = std::move(test);
}

RuntimeError engineError(const QSqlError& error, const QString& engine) {
    const bool silent = error.databaseText().isEmpty() || error.databaseText() == u"not an error"_s;
    return {RuntimeError::databaseFailure, silent ? error.driverText() : error.databaseText(), engine};
}

void ConnectionCore::requireOpen() const {
    if (!database.isOpen()) {
        throw RuntimeError(RuntimeError::databaseFailure,
                           u"Operation is not allowed when the object is closed."_s, engine);
    }
}

QSqlQuery ConnectionCore::run(const QString& engineSql, const QVariantList& values) {
    QSqlQuery query(database);
    query.setForwardOnly(true);
    // Without values the statement goes to the engine as it is; the toolkit's search for places in it is
    // saved.
    if (!values.isEmpty() && !query.prepare(engineSql)) {
        throw engineError(query.lastError(), engine);
    }
    for (const QVariant& value : values) {
        query.addBindValue(value);
    }
    if (!(values.isEmpty() ? query.exec(engineSql) : query.exec())) {
        throw engineError(query.lastError(), engine);
    }
    return query;
}

QString ConnectionCore::translated(const QString& sql) const {
    try {
        return dialect::translate(sql);
    } catch (const RuntimeError& error) {
        throw RuntimeError(error.number(), error.description(), engine);
    }
}

void ConnectionCore::suspendReading() {
    for (ConnectionUser* user : users) {
        user->suspendReading();
    }
}

void ConnectionCore::openDatabase(const ConnectionString& parts) {
    const bool plain = parts.password.isEmpty();
    const QString driver = plain ? u"QSQLITE"_s : u"QSQLCIPHER"_s;
    engine = plain ? u"SQLite"_s : u"SQLCipher"_s;
    if (!QSqlDatabase::isDriverAvailable(driver)) {
        throw RuntimeError(RuntimeError::databaseFailure,
                           u"The database driver %1 is not installed."_s.arg(driver), engine);
    }
    // An empty path would have the engine make a temporary database, and a folder or a missing file is
    // answered here in the words that the engine has for both.
    const QFileInfo file(parts.dataSource);
    if (parts.dataSource.isEmpty() || !file.isFile()) {
        throw RuntimeError(RuntimeError::databaseFailure, u"unable to open database file"_s, engine);
    }
    name = nextConnectionName();
    database = QSqlDatabase::addDatabase(driver, name);
    database.setDatabaseName(fileUri(file));
    database.setPassword(parts.password);
    database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeout.count()));
    if (!database.open()) {
        throw engineError(database.lastError(), engine);
    }
    if (isOnNetwork(file.canonicalFilePath()))
        prepareNetworkFile();
    else
        prepareLocalFile();
    run(u"PRAGMA synchronous=FULL"_s);
}

void ConnectionCore::prepareLocalFile() {
    run(catalogueProbe);
    // A file in a folder that can't be written can't change its journal, yet can be read.
    QSqlQuery(database).exec(bearsNetworkMark() ? u"PRAGMA journal_mode=DELETE"_s
                                                : u"PRAGMA journal_mode=WAL"_s);
}

/// A write-ahead log lives in memory that its users share, so on one machine only. Exclusive locking from the
/// first read on keeps the engine from making that memory; it fails where another process has the log in use.
void ConnectionCore::prepareNetworkFile() {
    run(u"PRAGMA locking_mode=EXCLUSIVE"_s);
    run(catalogueProbe);
    QSqlQuery journal = run(u"PRAGMA journal_mode=DELETE"_s);
    if (!journal.next() || journal.value(0).toString() != u"delete"_s) {
        throw RuntimeError(
            RuntimeError::databaseFailure,
            u"The file is in use with a write-ahead log, which can't be shared over a network."_s, engine);
    }
    journal.finish();
    if (!bearsNetworkMark())
        QSqlQuery(database).exec(
            u"PRAGMA user_version=%1"_s.arg(networkMark));  // a read-only file goes without
    run(u"PRAGMA locking_mode=NORMAL"_s);
    run(catalogueProbe);  // lets the lock go
}

bool ConnectionCore::bearsNetworkMark() {
    QSqlQuery version = run(u"PRAGMA user_version"_s);
    return version.next() && version.value(0).toInt() == networkMark;
}

void ConnectionCore::closeDatabase() {
    for (ConnectionUser* user : std::exchange(users, {})) {
        user->connectionClosing();
    }
    if (name.isEmpty()) {
        return;
    }
    database.close();
    // The toolkit warns of a connection that is removed while a handle of it lives.
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(std::exchange(name, {}));
}

Connection::Connection(std::chrono::milliseconds busyTimeout) : d(std::make_unique<Private>(busyTimeout)) {}

Connection::~Connection() {
    close();
}

void Connection::open(const QString& connectionString) {
    if (isOpen()) {
        throw RuntimeError(RuntimeError::databaseFailure,
                           u"Operation is not allowed when the object is open."_s, d->engine);
    }
    try {
        d->openDatabase(ConnectionString::parse(connectionString));
    } catch (const RuntimeError&) {
        d->closeDatabase();
        throw;
    }
}

void Connection::close() {
    d->closeDatabase();
}

bool Connection::isOpen() const {
    return d->database.isOpen();
}

void Connection::execute(const QString& sql) {
    d->requireOpen();
    const QString engineSql = d->translated(sql);
    d->suspendReading();
    if (const auto counter = dialect::addCounterColumn(sql)) {
        rebuildWithCounter(*d, *counter);
    } else {
        d->run(engineSql);
    }
}

QList<TableInfo> Connection::tables() {
    d->requireOpen();
    QList<TableInfo> tables{{u"sqlite_master"_s, u"SYSTEM TABLE"_s}};
    QSqlQuery query =
        d->run(u"SELECT name, type FROM sqlite_master WHERE type IN ('table', 'view') ORDER BY rowid"_s);
    while (query.next()) {
        const QString name = query.value(0).toString();
        const bool system = name.startsWith("sqlite_"_L1, Qt::CaseInsensitive);
        const bool view = query.value(1).toString() == "view"_L1;
        tables.append({name, system ? u"SYSTEM TABLE"_s : view ? u"VIEW"_s : u"TABLE"_s});
    }
    return tables;
}

QStringList Connection::columns(const QString& table, const QString& column) {
    d->requireOpen();
    // The older engine answers the pragma from the catalogue as it last saw it; a select notices that another
    // connection has changed it.
    if (d->isOlderEngine()) {
        d->run(u"SELECT 1 FROM sqlite_master LIMIT 1"_s);
    }
    QStringList names;
    QSqlQuery query = d->run(u"PRAGMA table_info(%1)"_s.arg(quotedSqlName(table)));
    while (query.next()) {
        const QString name = query.value(1).toString();
        if (column.isEmpty() || name.compare(column, Qt::CaseInsensitive) == 0) {
            names.append(name);
        }
    }
    return names;
}

void Connection::checkpoint() {
    d->requireOpen();
    d->suspendReading();
    d->run(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
}

}  // namespace kovanix
