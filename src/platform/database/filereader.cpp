#include "database/filereader.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlResult>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <utility>

#include "database/connection.h"
#include "database/databaseengine.h"
#include "database/driver/filecopier.h"
#include "database/engineerror.h"
#include "database/failuretext.h"
#include "database/logrequest.h"
#include "database/sqltokens.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = DatabaseError::Kind;

constexpr std::chrono::milliseconds busyTimeout = 1s;
// Some milliseconds' worth on any disk; between two of them the copy can be cancelled.
constexpr int pagesAtOnce = 1000;
constexpr int fewestPages = 16;
constexpr int mostPages = 1 << 14;

QString nextName() {
    static std::atomic<int> count = 0;
    return u"kovanix-reader-"_s + QString::number(++count);
}

QString engineName(const QString& password) {
    return password.isEmpty() ? u"SQLite"_s : u"SQLCipher"_s;
}

DatabaseError plainFailure(Kind kind, const QString& words, const QString& engine) {
    return {kind, describeFailure(kind, words), engine};
}

/// Adds the toolkit's connection to a file, not yet open.
QSqlDatabase addFile(const QString& name, const QString& path, const QString& password) {
    const QString driver = password.isEmpty() ? u"KOVANIXSQLITE"_s : u"QSQLCIPHER"_s;
    if (!findDriver(driver))
        throw plainFailure(Kind::other, missingDriverText(driver), engineName(password));
    if (!QFileInfo(path).isFile())
        throw plainFailure(Kind::missing, u"unable to open database file"_s, engineName(password));
    QSqlDatabase database = QSqlDatabase::addDatabase(driver, name);
    database.setPassword(password);
    return database;
}

/// Names the file that it is to open. @param options  beside the usual
void setFile(QSqlDatabase& database, const QString& path, const QString& mode, const QString& options) {
    database.setDatabaseName(fileUri(path, mode));
    database.setConnectOptions(
        u"QSQLITE_OPEN_URI;KOVANIX_EXCLUSIVE;QSQLITE_BUSY_TIMEOUT=%1%2"_s.arg(busyTimeout.count())
            .arg(options));
}

}  // namespace

FileReader::FileReader(const QString& path, const QString& password, const CopyProgress& progress)
    : m_path(QFileInfo(path).canonicalFilePath()), m_password(password) {
    if (m_path.isEmpty())
        m_path = path;
    auto closed = qScopeGuard([this] { close(); });
    if (liesOnNetwork(m_path))
        requireNoLog();
    open(progress);
    closed.dismiss();
}

FileReader::~FileReader() {
    close();
}

void FileReader::open(const CopyProgress& progress) {
    m_name = nextName();
    m_database = addFile(m_name, m_path, m_password);
    m_way =
        openToRead(m_database, m_path, !m_password.isEmpty(), engineName(m_password), busyTimeout, progress);
    QSqlQuery journal = run(u"PRAGMA journal_mode"_s);
    m_logsAhead = journal.next() && journal.value(0).toString() == u"wal"_s;
}

/// Alone from the first read on, the engine does without the memory that users of a log share.
void FileReader::requireNoLog() {
    m_name = nextName();
    m_database = addFile(m_name, m_path, m_password);
    setFile(m_database, m_path, u"ro"_s, u";QSQLITE_OPEN_READONLY"_s);
    if (!m_database.open())
        throw failure(m_database.lastError());
    run(u"SELECT count(*) FROM sqlite_master"_s);
    close();
}

void FileReader::close() {
    if (m_name.isEmpty())
        return;
    m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(std::exchange(m_name, {}));
}

DatabaseError FileReader::failure(const QSqlError& error) const {
    return engineError(error, engineName(m_password), !m_password.isEmpty());
}

QSqlQuery FileReader::run(const QString& sql) {
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(sql))
        throw failure(query.lastError());
    return query;
}

void FileReader::copyTo(const QString& target, const CopyProgress& progress, const CopyPace& pace) {
    while (!copyOnce(target, progress, pace)) {
        // A till of another machine wants the log to be left; it asks anew as long as it waits.
        close();
        QFile::remove(target);
        while (LogRequest::isPending(m_path))
            QThread::sleep(1);
        open();
    }
}

/// @return false where a till waits for the log to be left
bool FileReader::copyOnce(const QString& target, const CopyProgress& progress, const CopyPace& pace) {
    struct LogAskedFor {};
    auto* const copier = m_database.driver()->handle().value<engine::FileCopier*>();
    if (!copier)
        throw plainFailure(Kind::other, u"This driver copies no files."_s, engineName(m_password));
    if (m_logsAhead) {
        // One state for all steps, beside which others write on.
        run(u"BEGIN"_s);
        run(u"SELECT count(*) FROM sqlite_master"_s);
    }
    const auto end = qScopeGuard([this] {
        if (m_logsAhead)
            QSqlQuery(m_database).exec(u"ROLLBACK"_s);
    });
    const QDeadlineTimer deadline(pace.patience);
    QElapsedTimer sinceStep;
    int pages = fewestPages;
    int all = 0;
    const auto next = [&](const engine::CopyState& state) {
        all = state.pages;
        if (progress)
            progress(state.pages - state.pagesLeft, state.pages);
        if (m_logsAhead) {
            if (LogRequest::isPending(m_path))
                throw LogAskedFor();
            pages = std::min(2 * pages, pagesAtOnce);
            return pages;
        }
        if (m_way != ReadingWay::shared)  // nobody waits
            return pagesAtOnce;
        if (deadline.hasExpired())
            throw plainFailure(Kind::busy, u"the file changes all the time"_s, engineName(m_password));
        if (sinceStep.isValid()) {
            // A writer who waits gets the file in the pause.
            const bool tooLong = sinceStep.elapsed() > pace.step.count();
            pages = std::clamp(tooLong ? pages / 2 : pages * 2, fewestPages, mostPages);
            QThread::msleep(static_cast<unsigned long>(pace.pause.count()));
        }
        sinceStep.start();
        return pages;
    };
    try {
        if (const QSqlError error = copier->copyTo(target, next); error.isValid())
            throw failure(error);
    } catch (const LogAskedFor&) {
        return false;
    }
    if (progress)
        progress(all, all);
    return true;
}

QStringList FileReader::faults() {
    QStringList found;
    QSqlQuery check = run(u"PRAGMA integrity_check(10)"_s);
    while (check.next())
        found << check.value(0).toString();
    if (check.lastError().isValid())
        throw failure(check.lastError());
    return found == QStringList(u"ok"_s) ? QStringList() : found;
}

QStringList FileReader::tables() {
    QStringList names;
    QSqlQuery catalogue = run(
        u"SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"_s);
    while (catalogue.next())
        names << catalogue.value(0).toString();
    return names;
}

QStringList FileReader::columns(const QString& table) {
    QStringList names;
    QSqlQuery info = run(u"PRAGMA table_info(%1)"_s.arg(quotedSqlName(table)));
    while (info.next())
        names << info.value(1).toString();
    return names;
}

void FileReader::forEachRow(const QString& sql,
                            const std::function<void(const engine::RowCursor& row)>& each) {
    QSqlQuery query = run(sql);
    auto& cursor = *query.result()->handle().value<engine::RowCursor*>();
    while (cursor.nextRow())
        each(cursor);
    if (query.lastError().isValid())
        throw failure(query.lastError());
}

void settleFile(const QString& path, const QString& password) {
    const QString name = nextName();
    const auto removed = qScopeGuard([&name] { QSqlDatabase::removeDatabase(name); });
    QSqlDatabase database = addFile(name, path, password);
    setFile(database, path, u"rw"_s, {});
    const auto fail = [&password](const QSqlError& error) {
        throw engineError(error, engineName(password), !password.isEmpty());
    };
    if (!database.open())
        fail(database.lastError());
    for (const QString& sql :
         {u"BEGIN EXCLUSIVE"_s, u"SELECT count(*) FROM sqlite_master"_s, u"ROLLBACK"_s}) {
        QSqlQuery query(database);
        if (!query.exec(sql))
            fail(query.lastError());
    }
    database.close();
}

}  // namespace kovanix
