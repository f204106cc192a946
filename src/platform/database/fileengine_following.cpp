#include <QFile>
#include <vector>

#include "database/connectionprivate.h"
#include "database/fileengine.h"
#include "database/filestamp.h"
#include "runtime/attempt.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

std::optional<FileStamp> FileStamp::of(const QString& path) {
    struct stat found {};
    if (::stat(QFile::encodeName(path).constData(), &found) != 0 || !S_ISREG(found.st_mode))
        return std::nullopt;
    return FileStamp{found.st_dev, found.st_ino, found.st_size, found.st_mtim};
}

/// Keeps in mind how the file looks while its log is empty: only what goes into the log first may change it
/// from now on.
/// @param version  from ahead of the look at the log: what another till has written since then may still be
/// in it, and gets into the file later
void FileEngine::settle(qint64 version) {
    const std::optional<FileStamp> now = FileStamp::of(m_path);
    if (now && now->isSameFile(m_stamp))
        m_settled = Settled{*now, *writes, version};
}

/// Whether somebody has written into the file past the engine, as a copy over it does. The engine doesn't see
/// that: the log says that nothing has changed.
bool FileEngine::isWrittenOver(const FileStamp& now) {
    return m_settled && !m_settled->stamp.isUntouched(now) && m_settled->writes == *writes &&
           m_settled->version == dataVersion();
}

bool FileEngine::hasLeftPath() const {
    const std::optional<FileStamp> now = FileStamp::of(m_path);
    return !now || !now->isSameFile(m_stamp);
}

/// Empties the log into the file that is open. The log lies beside the path, so whoever opens another file
/// there would read it as that file's.
void FileEngine::emptyLog() {
    QSqlQuery emptied = run(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    if (!emptied.next() || emptied.value(0).toInt() != 0)
        throw describedFailure(Kind::busy, u"database is locked"_s);
}

void FileEngine::followFile(ConnectionCore& connection) {
    const std::optional<FileStamp> now = FileStamp::of(m_path);
    const bool stays = now && now->isSameFile(m_stamp);
    if (stays && !isWrittenOver(*now))
        return;
    // Where the file was written over, its log is empty already.
    if (!stays)
        emptyLog();
    if (!now)
        throw describedFailure(Kind::missing, u"unable to open database file"_s);
    reopen([this](const FileEngine& engine) { return engine.m_stamp.isSameFile(m_stamp); });
    if (!connection.isOpen())
        connection.openAgain();  // fails once more, and says why
}

void FileEngine::leaveReplacedFile() {
    reopen([this](FileEngine& engine) {
        const bool left = engine.m_path == m_path && engine.hasLeftPath();
        if (left)
            engine.emptyLog();
        return left;
    });
}

void FileEngine::reopen(const std::function<bool(FileEngine&)>& concerned) {
    std::vector<ConnectionCore*> left;
    for (const auto& engine : all()) {
        if (concerned(*engine))
            left.insert(left.end(), engine->connections.begin(), engine->connections.end());
    }
    // All leave the old file before one opens the new: the memory beside the log would be one for both files.
    for (ConnectionCore* connection : left)
        connection->close();
    for (ConnectionCore* connection : left)
        attempt([&] { connection->openAgain(); });
}

}  // namespace kovanix
