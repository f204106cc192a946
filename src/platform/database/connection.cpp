#include "database/connection.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSqlDatabase>
#include <QSqlDriver>
#include <QStorageInfo>
#include <QUrl>
#include <algorithm>
#include <atomic>
#include <utility>

#include "database/connectionprivate.h"
#include "database/dialect.h"
#include "database/engineerror.h"
#include "database/sqltokens.h"
#include "database/tablerebuild.h"
#include "database/waiting.h"
#include "runtime/attempt.h"
#include "runtime/process.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

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

std::function<void()>& waitSign() {
    static std::function<void()> sign;
    return sign;
}

void giveWaitSign() {
    if (waitSign())
        waitSign()();
}

/// The count of statements that may have written into a file, shared by all connections of this process to
/// it.
std::shared_ptr<quint64> writesTo(const QString& file) {
    static QHash<QString, std::weak_ptr<quint64>> counts;
    std::shared_ptr<quint64> count = counts.value(file).lock();
    if (!count) {
        count = std::make_shared<quint64>(0);
        counts.insert(file, count);
    }
    return count;
}

void closeConnections() {
    while (!ConnectionCore::openOnes().empty())
        attempt([] { ConnectionCore::openOnes().back()->close(); });
}

/// The toolkit's own statics, its drivers and their libraries go with the process, in an order that isn't
/// ours: connections close ahead of them all. Asked for anew with each driver's first connection, for what is
/// loaded last goes first.
void closeAtProcessEnd(const QString& driver) {
    static QStringList known;
    if (known.contains(driver))
        return;
    known.append(driver);
    atProcessEnd(closeConnections);
}

quint64 openings = 0;

/// Whether the toolkit has a driver, which may lie beside the program as built or as installed.
bool findDriver(const QString& driver) {
    if (QSqlDatabase::isDriverAvailable(driver))
        return true;
    for (const QString& place : {u"plugins"_s, u"../" KOVANIX_LIBDIR "/kovanix/plugins"_s}) {
        const QDir plugins(QDir(QCoreApplication::applicationDirPath()).filePath(place));
        if (plugins.exists())
            QCoreApplication::addLibraryPath(plugins.absolutePath());
    }
    return QSqlDatabase::isDriverAvailable(driver);
}

}  // namespace

void setNetworkFileTest(std::function<bool(const QString& path)> test) {
    networkFileTest() = std::move(test);
}

bool liesOnNetwork(const QString& path) {
    return isOnNetwork(path);
}

void setWaitSign(std::function<void()> sign) {
    waitSign() = std::move(sign);
}

DatabaseError ConnectionCore::failure(const QSqlError& error) const {
    return engineError(error, engine, hasPassword);
}

void ConnectionCore::requireOpen() const {
    if (!database.isOpen())
        throw failure(
            Kind::closed,
            describeFailure(Kind::closed, u"Operation is not allowed when the object is closed."_s));
}

QSqlQuery ConnectionCore::run(const QString& engineSql, const QVariantList& values) {
    QSqlQuery query(database);
    query.setForwardOnly(true);
    // Without values the statement goes to the engine as it is; the toolkit's search for places in it is
    // saved.
    if (!values.isEmpty() && !query.prepare(engineSql))
        throw failure(query.lastError());
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!(values.isEmpty() ? query.exec(engineSql) : query.exec()))
        throw failure(query.lastError());
    return query;
}

qint64 ConnectionCore::number(const QString& engineSql) {
    QSqlQuery query = run(engineSql);
    if (!query.next())
        throw failure(query.lastError());
    return query.value(0).toLongLong();
}

void ConnectionCore::aboutToWrite() {
    // Counted ahead, so that a statement that fails half-way has been counted.
    ++*writes;
    for (ConnectionUser* user : users)
        user->rowsChanging();
}

int ConnectionCore::write(const QString& engineSql, const QVariantList& values) {
    aboutToWrite();
    const int rows = run(engineSql, values).numRowsAffected();
    wroteInPress = true;
    return rows;
}

bool ConnectionCore::writePrepared(const QString& sql) {
    const std::optional<StatementShape> shape = StatementShape::of(sql);
    if (!shape)
        return false;
    std::optional<StatementCache::Kept> kept = statements.take(shape->text);
    if (!kept) {
        kept.emplace(StatementCache::Kept{QSqlQuery(database)});
        kept->query.setForwardOnly(true);
        if (!kept->query.prepare(dialect::translate(shape->text)))
            return false;
    }
    for (qsizetype i = 0; i < shape->values.size(); ++i)
        kept->query.bindValue(static_cast<int>(i), shape->values[i]);
    aboutToWrite();
    if (!kept->query.exec())
        throw failure(kept->query.lastError());
    wroteInPress = true;
    statements.keep(shape->text, std::move(*kept));
    return true;
}

void ConnectionCore::openDatabase(const ConnectionString& parts) {
    hasPassword = !parts.password.isEmpty();
    const QString driver = hasPassword ? u"QSQLCIPHER"_s : u"KOVANIXSQLITE"_s;
    engine = hasPassword ? u"SQLCipher"_s : u"SQLite"_s;
    if (!findDriver(driver))
        throw failure(Kind::other, u"The database driver %1 is not installed."_s.arg(driver));
    // An empty path would have the engine make a temporary database, and a folder or a missing file is
    // answered here in the words that the engine has for both.
    const QFileInfo file(parts.dataSource);
    if (parts.dataSource.isEmpty() || !file.isFile())
        throw failure(Kind::missing, describeFailure(Kind::missing, u"unable to open database file"_s));
    path = file.absoluteFilePath();
    leaveReplacedFile();
    // Ahead of the open: a file that takes its place in between shows as another one.
    stamp = FileStamp::of(path).value_or(FileStamp());
    name = nextConnectionName();
    database = QSqlDatabase::addDatabase(driver, name);
    database.setDatabaseName(fileUri(file));
    database.setPassword(parts.password);
    // The one notice that our drivers send.
    QObject::connect(database.driver(), &QSqlDriver::notification, database.driver(), giveWaitSign);
    target = file.canonicalFilePath();
    writes = writesTo(target);
    onNetwork = isOnNetwork(target);
    if (onNetwork)
        leaveLogOverNetwork();
    openHandle(busyTimeout);
    chooseJournal();
}

void ConnectionCore::openHandle(std::chrono::milliseconds timeout, Locking locking) {
    QString options = u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(timeout.count());
    if (locking == Locking::exclusive)
        options += u";KOVANIX_EXCLUSIVE";
    database.setConnectOptions(options);
    if (!database.open())
        throw failure(database.lastError());
    closeAtProcessEnd(database.driverName());
    opening = ++openings;
}

void ConnectionCore::open(const QString& text) {
    try {
        openDatabase(ConnectionString::parse(text));
    } catch (const RuntimeError&) {
        closeDatabase();
        throw;
    }
    connectionString = text;
    self = std::shared_ptr<Connection>(&owner, [](Connection*) {});
    openOnes().push_back(this);
}

void ConnectionCore::close() {
    std::erase(openOnes(), this);
    closeDatabase();
}

void ConnectionCore::closeDatabase() {
    self.reset();
    for (ConnectionUser* user : std::exchange(users, {})) {
        user->connectionClosing();
    }
    if (name.isEmpty())
        return;
    attempt([this] { makeDurable(); });
    schema.forget();
    statements.clear();
    attempt([this] {
        if (database.isOpen() && hasLeftPath())
            emptyLog();
    });
    opening = 0;
    settled.reset();
    database.close();
    // The toolkit warns of a connection that is removed while a handle of it lives.
    database = QSqlDatabase();
    QSqlDatabase::removeDatabase(std::exchange(name, {}));
}

std::vector<ConnectionCore*>& ConnectionCore::openOnes() {
    static std::vector<ConnectionCore*> connections;
    return connections;
}

Connection::Connection(std::chrono::milliseconds busyTimeout)
    : d(std::make_unique<Private>(*this, busyTimeout)) {
    ConnectionCore::openOnes();  // must outlive a connection that lives until the process ends
}

Connection::~Connection() {
    close();
}

void Connection::open(const QString& connectionString) {
    if (isOpen())
        throw d->failure(Kind::statement, u"Operation is not allowed when the object is open."_s);
    d->open(connectionString);
}

void Connection::close() {
    d->close();
}

bool Connection::isOpen() const {
    return d->database.isOpen();
}

std::weak_ptr<Connection> Connection::findOpen(const QString& connectionString) {
    for (const ConnectionCore* connection : ConnectionCore::openOnes()) {
        if (connection->connectionString == connectionString)
            return connection->self;
    }
    return {};
}

void Connection::execute(const QString& sql) {
    d->requireOpen();
    d->inEnginesName([&] {
        if (d->writePrepared(sql))
            return;
        const auto counter = dialect::addCounterColumn(sql);
        const bool changesTables = dialect::changesTables(sql);
        if (counter)
            rebuildWithCounter(*d, *counter);
        else
            d->write(dialect::translate(sql));
        // What is temporary isn't in the engine's count.
        if (changesTables)
            d->schema.forget();
    });
}

QList<TableInfo> Connection::tables() {
    d->requireOpen();
    return d->schema.tables(*d);
}

TableShape Connection::shape(const QString& table) {
    d->requireOpen();
    return d->schema.shape(*d, table);
}

void Connection::keepIndex(const QString& table, const QString& column) {
    d->requireOpen();
    const QString index = quotedSqlName(u"kovanix_%1_%2"_s.arg(table, column));
    attempt([&] {
        // The engine would take the name of a column that isn't there for a text.
        if (d->schema.shape(*d, table).indexOf(column) < 0)
            return;
        d->write(u"CREATE INDEX IF NOT EXISTS %1 ON %2 (%3)"_s.arg(index, quotedSqlName(table),
                                                                   quotedSqlName(column)));
    });
}

ChangeMark Connection::changeMark() {
    ChangeMark mark;
    attempt([&] {
        d->requireOpen();
        mark = ChangeMark(d->opening, d->number(u"PRAGMA data_version"_s), *d->writes);
    });
    return mark;
}

void Connection::idle() {
    d->requireOpen();
    std::vector<std::pair<ConnectionCore*, qint64>> versions;
    for (ConnectionCore* connection : ConnectionCore::openOnes()) {
        if (!connection->stamp.isSameFile(d->stamp))
            continue;
        connection->settled.reset();
        attempt([&] { versions.emplace_back(connection, connection->number(u"PRAGMA data_version"_s)); });
    }
    if (!d->moveLog())
        return;
    for (const auto& [connection, version] : versions)
        connection->settle(version);
}

}  // namespace kovanix
