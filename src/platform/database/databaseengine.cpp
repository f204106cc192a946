#include "database/databaseengine.h"

#include <QCoreApplication>
#include <QDir>
#include <QSqlDriver>
#include <atomic>
#include <mutex>
#include <utility>

#include "database/connectionprivate.h"
#include "database/failuretext.h"
#include "database/fileengine.h"
#include "database/serveraddress.h"
#include "database/serverengine.h"
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

void closeConnections() {
    while (!ConnectionCore::openOnes().empty())
        attempt([] { ConnectionCore::openOnes().back()->close(); });
}

/// The toolkit's own statics, its drivers and their libraries go with the process, in an order that isn't
/// ours: connections close ahead of them all. Asked for anew with each driver's first connection, for what is
/// loaded last goes first.
void closeAtProcessEnd(const QString& driver) {
    static std::mutex mutex;
    static QStringList known;
    const std::lock_guard lock(mutex);
    if (known.contains(driver))
        return;
    known.append(driver);
    atProcessEnd(closeConnections);
}

}  // namespace

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

std::shared_ptr<DatabaseEngine> DatabaseEngine::of(const ConnectionString& parts,
                                                   std::chrono::milliseconds busyTimeout) {
    if (ServerAddress::isPointer(parts.dataSource))
        return std::make_shared<ServerEngine>(parts, busyTimeout);
    return std::make_shared<FileEngine>(parts, busyTimeout);
}

void DatabaseEngine::requireDriver(const QString& driver) const {
    if (!findDriver(driver))
        throw plainFailure(Kind::other, missingDriverText(driver));
}

void DatabaseEngine::addToolkitConnection(const QString& driver) {
    m_toolkitName = nextConnectionName();
    m_database = QSqlDatabase::addDatabase(driver, m_toolkitName);
    // The one notice that our drivers send.
    QObject::connect(m_database.driver(), &QSqlDriver::notification, m_database.driver(), giveWaitSign);
}

void DatabaseEngine::openHandle() {
    static std::atomic<quint64> openings = 0;
    if (!m_database.open())
        throw failure(m_database.lastError());
    closeAtProcessEnd(m_database.driverName());
    m_opening = ++openings;
}

void DatabaseEngine::close() {
    if (m_toolkitName.isEmpty())
        return;
    schema.forget();
    statements.clear();
    attempt([this] { aboutToClose(); });
    m_opening = 0;
    m_database.close();
    // The toolkit warns of a connection that is removed while a handle of it lives.
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(std::exchange(m_toolkitName, {}));
}

QSqlQuery DatabaseEngine::run(const QString& sql, const QVariantList& values) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    // Without values the statement goes to the engine as it is; the toolkit's search for places in it is
    // saved.
    if (!values.isEmpty() && !query.prepare(sql))
        throw failure(query.lastError());
    for (const QVariant& value : values)
        query.addBindValue(value);
    if (!(values.isEmpty() ? query.exec(sql) : query.exec()))
        throw failure(query.lastError());
    return query;
}

qint64 DatabaseEngine::number(const QString& sql) {
    QSqlQuery query = run(sql);
    if (!query.next())
        throw failure(query.lastError());
    return query.value(0).toLongLong();
}

bool DatabaseEngine::prepare(QSqlQuery& query, const QString& sql, Use /*use*/) {
    query = QSqlQuery(m_database);
    query.setForwardOnly(true);
    return query.prepare(sql);
}

void DatabaseEngine::executeWrite(QSqlQuery& query, const QString& sql) {
    if (!(sql.isEmpty() ? query.exec() : query.exec(sql)))
        throw failure(query.lastError());
    wroteInPress = true;
}

int DatabaseEngine::write(const QString& sql, const QVariantList& values) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!values.isEmpty() && !prepare(query, sql, Use::once))
        throw failure(query.lastError());
    for (const QVariant& value : values)
        query.addBindValue(value);
    executeWrite(query, values.isEmpty() ? sql : QString());
    return query.numRowsAffected();
}

ChangeMark DatabaseEngine::changeMark() {
    return {m_opening, contentMark(), *writes};
}

}  // namespace kovanix
