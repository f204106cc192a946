#include "database/press.h"

#include <utility>

#include "database/connectionprivate.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;

Press::Press(Connection& connection) : m_core(connection.d.get()) {
    if (m_core->presses == 0) {
        m_core->leaveLogIfAsked();
        m_core->beginPress();
    }
    ++m_core->presses;
}

Press::~Press() {
    attempt([this] { finish(); });
}

void Press::finish() {
    ConnectionCore* const core = std::exchange(m_core, nullptr);
    if (core && --core->presses == 0)
        core->makeDurable();
}

void ConnectionCore::beginPress() {
    if (!database.isOpen())
        return;  // a statement will say so
    followFile();
    // In a rollback journal a statement without a barrier of its own could leave half of itself behind.
    if (!hasLog())
        return;
    run(u"PRAGMA synchronous=NORMAL"_s);
    defersBarrier = true;
    wroteInPress = false;
}

void ConnectionCore::makeDurable() {
    if (!std::exchange(defersBarrier, false))
        return;
    run(u"PRAGMA synchronous=EXTRA"_s);
    if (!wroteInPress)
        return;
    try {
        writeBarrier();
    } catch (const RuntimeError&) {
        // No room for one more page, or somebody else is writing for longer than anyone waits. Moving the log
        // into the file needs neither, and puts the log on the disk first.
        bool moved = false;
        attempt([&] { moved = moveLog(); });
        if (!moved)
            throw;
    }
}

/// A commit that surely writes: the disk barrier of the log stands behind the pages that a commit adds, and a
/// statement that finds no row adds none. It sets a number in the file's header, which nobody uses, to what
/// it is.
void ConnectionCore::writeBarrier() {
    run(u"PRAGMA application_id=%1"_s.arg(number(u"PRAGMA application_id"_s)));
}

bool ConnectionCore::hasLog() {
    QSqlQuery journal = run(u"PRAGMA journal_mode"_s);
    return journal.next() && journal.value(0).toString() == u"wal"_s;
}

bool ConnectionCore::moveLog() {
    QSqlQuery moved = run(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
    return moved.next() && moved.value(0).toInt() == 0 && moved.value(1).toInt() >= 0 &&
           moved.value(1) == moved.value(2);
}

}  // namespace kovanix
