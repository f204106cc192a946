// Which journal a file has: a write-ahead log on its own machine, a rollback journal once it is shared over a
// network, and how the one is left for the other.

#include <QDeadlineTimer>
#include <QThread>
#include <vector>

#include "database/connectionprivate.h"
#include "database/fileengine.h"
#include "database/logrequest.h"
#include "runtime/attempt.h"

namespace kovanix {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = DatabaseError::Kind;

const QString catalogueProbe = u"SELECT count(*) FROM sqlite_master"_s;

// In the file's header, where the engine leaves a number to the program: "KVX".
constexpr int networkMark = 0x4B5658;

// The log is emptied whenever the till is idle. Should it never be, or should somebody read for hours, the
// engine empties it by itself from this length in bytes on, between two statements of a sale too.
constexpr qint64 longestLog = qint64{16} << 20;

// How long one attempt to get the file alone lasts, and how long a till waits before the next.
constexpr std::chrono::milliseconds attemptTime = 50ms;
constexpr std::chrono::milliseconds pause = 50ms;

// How long a till keeps its cashier waiting while another till of its machine leaves the log as well.
constexpr std::chrono::milliseconds patience = 1s;

}  // namespace

void FileEngine::chooseJournal() {
    run(catalogueProbe);
    // A file in a folder that can't be written can't change its journal, yet can be read.
    QSqlQuery journal(m_database);
    const bool shared = m_onNetwork || bearsNetworkMark();
    m_logsAhead = journal.exec(shared ? u"PRAGMA journal_mode=DELETE"_s : u"PRAGMA journal_mode=WAL"_s) &&
                  journal.next() && journal.value(0).toString() == u"wal"_s;
    journal.finish();
    // Beyond FULL: the removal of a rollback journal is durable, too, for one that came back would take the
    // last statement back.
    run(u"PRAGMA synchronous=EXTRA"_s);
    if (!m_logsAhead)
        return;
    run(u"PRAGMA wal_autocheckpoint=%1"_s.arg(longestLog / number(u"PRAGMA page_size"_s)));
}

void FileEngine::leaveLogOverNetwork() {
    LogRequest request(m_target);
    const QDeadlineTimer deadline(busyTimeout());
    while (!leaveLog(deadline.hasExpired())) {
        request.renew();
        QThread::msleep(pause.count());
    }
}

/// Exclusive locking from the first read on keeps the engine from making the memory that users of a log
/// share; it fails where another connection has the log in use.
bool FileEngine::leaveLog(bool lastAttempt) {
    try {
        openHandle(attemptTime, Locking::exclusive);
        run(catalogueProbe);
        QSqlQuery journal = run(u"PRAGMA journal_mode=DELETE"_s);
        if (!journal.next() || journal.value(0).toString() != u"delete"_s) {
            throw describedFailure(
                Kind::busy,
                u"The file is in use with a write-ahead log, which can't be shared over a network."_s);
        }
        journal.finish();
        if (!bearsNetworkMark()) {
            // A file that can only be read goes without.
            QSqlQuery(m_database).exec(u"PRAGMA user_version=%1"_s.arg(networkMark));
        }
        m_database.close();
        return true;
    } catch (const DatabaseError& error) {
        m_database.close();
        if (lastAttempt || error.kind() != Kind::busy)
            throw;
        return false;
    }
}

bool FileEngine::bearsNetworkMark() {
    return number(u"PRAGMA user_version"_s) == networkMark;
}

void FileEngine::leaveLogIfAsked() {
    if (!m_logsAhead || !m_database.isOpen() || !LogRequest::isPending(m_target))
        return;
    // The log would be read as that of whatever file is there now. The next press sees to that first.
    if (hasLeftPath())
        return;
    std::vector<std::shared_ptr<FileEngine>> sharing = all();
    std::erase_if(sharing, [this](const auto& engine) { return !engine->m_stamp.isSameFile(m_stamp); });
    for (const auto& engine : sharing)
        engine->m_database.close();
    const QDeadlineTimer deadline(patience);
    attempt([&] {
        while (!leaveLog(deadline.hasExpired()))
            QThread::msleep(pause.count());
    });
    for (const auto& engine : sharing)
        engine->openHandleAgain();
}

/// What is open on the connections stays so; a statement is prepared anew when it runs.
void FileEngine::openHandleAgain() {
    m_settled.reset();
    try {
        openHandle(busyTimeout());
        chooseJournal();
    } catch (const RuntimeError&) {
        for (ConnectionCore* connection : std::vector(connections))
            connection->close();
    }
}

}  // namespace kovanix
