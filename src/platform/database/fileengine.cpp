#include "database/fileengine.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QStorageInfo>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "database/connectionprivate.h"
#include "database/engineerror.h"
#include "runtime/attempt.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

/// The file's URI, by which the engine opens it without ever making it.
QString fileUri(const QFileInfo& file) {
    const QByteArray path = QUrl::toPercentEncoding(file.absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(path) + u"?mode=rw"_s;
}

std::function<bool(const QString&)>& networkFileTest() {
    static std::function<bool(const QString&)> test;
    return test;
}

/// The count of statements that may have written into a file, shared by all connections of the calling thread
/// to it.
std::shared_ptr<quint64> writesTo(const QString& file) {
    thread_local QHash<QString, std::weak_ptr<quint64>> counts;
    std::shared_ptr<quint64> count = counts.value(file).lock();
    if (!count) {
        count = std::make_shared<quint64>(0);
        counts.insert(file, count);
    }
    return count;
}

}  // namespace

void setNetworkFileTest(std::function<bool(const QString& path)> test) {
    networkFileTest() = std::move(test);
}

bool liesOnNetwork(const QString& path) {
    return networkFileTest() ? networkFileTest()(path)
                             : isNetworkFileSystem(QStorageInfo(path).fileSystemType());
}

FileEngine::FileEngine(const ConnectionString& parts, std::chrono::milliseconds busyTimeout)
    : DatabaseEngine(parts.password.isEmpty() ? u"SQLite"_s : u"SQLCipher"_s, busyTimeout),
      m_dataSource(parts.dataSource),
      m_password(parts.password) {}

DatabaseError FileEngine::failure(const QSqlError& error) const {
    return engineError(error, name(), !m_password.isEmpty());
}

DatabaseError FileEngine::describedFailure(Kind kind, const QString& words) const {
    return plainFailure(kind, describeFailure(kind, words));
}

void FileEngine::open() {
    const QString driver = m_password.isEmpty() ? u"KOVANIXSQLITE"_s : u"QSQLCIPHER"_s;
    requireDriver(driver);
    // An empty path would have the engine make a temporary database, and a folder or a missing file is
    // answered here in the words that the engine has for both.
    const QFileInfo file(m_dataSource);
    if (m_dataSource.isEmpty() || !file.isFile())
        throw describedFailure(Kind::missing, u"unable to open database file"_s);
    m_path = file.absoluteFilePath();
    leaveReplacedFile();
    // Ahead of the open: a file that takes its place in between shows as another one.
    m_stamp = FileStamp::of(m_path).value_or(FileStamp());
    addToolkitConnection(driver);
    m_database.setDatabaseName(fileUri(file));
    m_database.setPassword(m_password);
    m_target = file.canonicalFilePath();
    writes = writesTo(m_target);
    m_onNetwork = liesOnNetwork(m_target);
    if (m_onNetwork)
        leaveLogOverNetwork();
    openHandle(busyTimeout());
    chooseJournal();
}

void FileEngine::openHandle(std::chrono::milliseconds timeout, Locking locking) {
    QString options = u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(timeout.count());
    if (locking == Locking::exclusive)
        options += u";KOVANIX_EXCLUSIVE";
    m_database.setConnectOptions(options);
    DatabaseEngine::openHandle();
}

void FileEngine::aboutToClose() {
    m_versionQuestion.reset();
    m_settled.reset();
    if (isOpen() && hasLeftPath())
        emptyLog();
}

std::vector<std::shared_ptr<FileEngine>> FileEngine::all() {
    std::vector<std::shared_ptr<FileEngine>> engines;
    for (const ConnectionCore* connection : ConnectionCore::openOnes()) {
        const auto engine = std::dynamic_pointer_cast<FileEngine>(connection->engine);
        if (engine && std::ranges::find(engines, engine) == engines.end())
            engines.push_back(engine);
    }
    return engines;
}

void FileEngine::prepareForPress(ConnectionCore& connection) {
    leaveLogIfAsked();
    if (isOpen())  // a statement will say so
        followFile(connection);
}

void FileEngine::beginPress() {
    if (m_presses++ > 0)
        return;
    // In a rollback journal a statement without a barrier of its own could leave half of itself behind.
    if (!hasLog())
        return;
    run(u"PRAGMA synchronous=NORMAL"_s);
    m_defersBarrier = true;
    wroteInPress = false;
}

void FileEngine::endPress() {
    const bool last = --m_presses == 0;
    if (!m_defersBarrier)
        return;
    m_defersBarrier = !last;
    run(u"PRAGMA synchronous=EXTRA"_s);
    if (std::exchange(wroteInPress, false)) {
        try {
            writeBarrier();
        } catch (const RuntimeError&) {
            // No room for one more page, or somebody else is writing for longer than anyone waits. Moving the
            // log into the file needs neither, and puts the log on the disk first.
            bool moved = false;
            attempt([&] { moved = moveLog(); });
            if (!moved)
                throw;
        }
    }
    if (m_defersBarrier)
        run(u"PRAGMA synchronous=NORMAL"_s);
}

/// A commit that surely writes: the disk barrier of the log stands behind the pages that a commit adds, and a
/// statement that finds no row adds none. It sets a number in the file's header, which nobody uses, to what
/// it is.
void FileEngine::writeBarrier() {
    run(u"PRAGMA application_id=%1"_s.arg(number(u"PRAGMA application_id"_s)));
}

bool FileEngine::hasLog() {
    QSqlQuery journal = run(u"PRAGMA journal_mode"_s);
    return journal.next() && journal.value(0).toString() == u"wal"_s;
}

bool FileEngine::moveLog() {
    QSqlQuery moved = run(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
    return moved.next() && moved.value(0).toInt() == 0 && moved.value(1).toInt() >= 0 &&
           moved.value(1) == moved.value(2);
}

void FileEngine::idle() {
    std::vector<std::pair<std::shared_ptr<FileEngine>, qint64>> versions;
    for (const auto& engine : all()) {
        if (!engine->m_stamp.isSameFile(m_stamp))
            continue;
        engine->m_settled.reset();
        attempt([&] { versions.emplace_back(engine, engine->dataVersion()); });
    }
    if (!moveLog())
        return;
    for (const auto& [engine, version] : versions)
        engine->settle(version);
}

QByteArray FileEngine::contentMark() {
    return QByteArray::number(dataVersion());
}

}  // namespace kovanix
