// Which journal a file has: a write-ahead log on its own machine, a rollback journal once it is shared over a
// network, and how the one is left for the other.

#include <QDeadlineTimer>
#include <QThread>
#include <algorithm>
#include <iterator>

#include "database/connectionprivate.h"
#include "database/engineerror.h"
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

void ConnectionCore::chooseJournal() {
    run(catalogueProbe);
    // A file in a folder that can't be written can't change its journal, yet can be read.
    QSqlQuery journal(database);
    const bool shared = onNetwork || bearsNetworkMark();
    logsAhead = journal.exec(shared ? u"PRAGMA journal_mode=DELETE"_s : u"PRAGMA journal_mode=WAL"_s) &&
                journal.next() && journal.value(0).toString() == u"wal"_s;
    journal.finish();
    // Beyond FULL: the removal of a rollback journal is durable, too, for one that came back would take the
    // last statement back.
    run(u"PRAGMA synchronous=EXTRA"_s);
    if (!logsAhead)
        return;
    run(u"PRAGMA wal_autocheckpoint=%1"_s.arg(longestLog / number(u"PRAGMA page_size"_s)));
}

void ConnectionCore::leaveLogOverNetwork() {
    LogRequest request(target);
    const QDeadlineTimer deadline(busyTimeout);
    while (!leaveLog(deadline.hasExpired())) {
        request.renew();
        QThread::msleep(pause.count());
    }
}

/// Exclusive locking from the first read on keeps the engine from making the memory that users of a log
/// share; it fails where another connection has the log in use.
bool ConnectionCore::leaveLog(bool lastAttempt) {
    try {
        openHandle(attemptTime, Locking::exclusive);
        run(catalogueProbe);
        QSqlQuery journal = run(u"PRAGMA journal_mode=DELETE"_s);
        if (!journal.next() || journal.value(0).toString() != u"delete"_s) {
            throw failure(
                Kind::busy,
                describeFailure(
                    Kind::busy,
                    u"The file is in use with a write-ahead log, which can't be shared over a network."_s));
        }
        journal.finish();
        if (!bearsNetworkMark()) {
            // A file that can only be read goes without.
            QSqlQuery(database).exec(u"PRAGMA user_version=%1"_s.arg(networkMark));
        }
        database.close();
        return true;
    } catch (const DatabaseError& error) {
        database.close();
        if (lastAttempt || error.kind() != Kind::busy)
            throw;
        return false;
    }
}

bool ConnectionCore::bearsNetworkMark() {
    return number(u"PRAGMA user_version"_s) == networkMark;
}

void ConnectionCore::leaveLogIfAsked() {
    if (!logsAhead || !database.isOpen() || !LogRequest::isPending(target))
        return;
    // The log would be read as that of whatever file is there now. The next press sees to that first.
    if (hasLeftPath())
        return;
    std::vector<ConnectionCore*> sharing;
    std::ranges::copy_if(openOnes(), std::back_inserter(sharing), [this](const ConnectionCore* connection) {
        return connection->stamp.isSameFile(stamp);
    });
    for (ConnectionCore* connection : sharing)
        connection->database.close();
    const QDeadlineTimer deadline(patience);
    attempt([&] {
        while (!leaveLog(deadline.hasExpired()))
            QThread::msleep(pause.count());
    });
    for (ConnectionCore* connection : sharing)
        connection->openHandleAgain();
}

/// What is open on the connection stays so; a statement is prepared anew when it runs.
void ConnectionCore::openHandleAgain() {
    settled.reset();
    try {
        openHandle(busyTimeout);
        chooseJournal();
    } catch (const RuntimeError&) {
        close();
    }
}

void Connection::leaveLogIfAsked() {
    d->leaveLogIfAsked();
}

}  // namespace kovanix
