#include <QFile>
#include <vector>

#include "database/connectionprivate.h"
#include "database/engineerror.h"
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
void ConnectionCore::settle(qint64 version) {
    const std::optional<FileStamp> now = FileStamp::of(path);
    if (now && now->isSameFile(stamp))
        settled = Settled{*now, *writes, version};
}

/// Whether somebody has written into the file past the engine, as a copy over it does. The engine doesn't see
/// that: the log says that nothing has changed.
bool ConnectionCore::isWrittenOver(const FileStamp& now) {
    return settled && !settled->stamp.isUntouched(now) && settled->writes == *writes &&
           settled->version == number(u"PRAGMA data_version"_s);
}

bool ConnectionCore::hasLeftPath() const {
    const std::optional<FileStamp> now = FileStamp::of(path);
    return !now || !now->isSameFile(stamp);
}

/// Empties the log into the file that is open. The log lies beside the path, so whoever opens another file
/// there would read it as that file's.
void ConnectionCore::emptyLog() {
    QSqlQuery emptied = run(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    if (!emptied.next() || emptied.value(0).toInt() != 0)
        throw failure(Kind::busy, describeFailure(Kind::busy, u"database is locked"_s));
}

void ConnectionCore::followFile() {
    const std::optional<FileStamp> now = FileStamp::of(path);
    const bool stays = now && now->isSameFile(stamp);
    if (stays && !isWrittenOver(*now))
        return;
    // Where the file was written over, its log is empty already.
    if (!stays)
        emptyLog();
    if (!now)
        throw failure(Kind::missing, describeFailure(Kind::missing, u"unable to open database file"_s));
    reopen([this](const ConnectionCore& connection) { return connection.stamp.isSameFile(stamp); });
    if (!database.isOpen())
        open(connectionString);  // fails once more, and says why
}

void ConnectionCore::leaveReplacedFile() {
    reopen([this](ConnectionCore& connection) {
        const bool left = connection.path == path && connection.hasLeftPath();
        if (left)
            connection.emptyLog();
        return left;
    });
}

void ConnectionCore::reopen(const std::function<bool(ConnectionCore&)>& concerned) {
    std::vector<ConnectionCore*> left;
    for (ConnectionCore* connection : openOnes()) {
        if (concerned(*connection))
            left.push_back(connection);
    }
    // All leave the old file before one opens the new: the memory beside the log would be one for both files.
    for (ConnectionCore* connection : left)
        connection->close();
    for (ConnectionCore* connection : left)
        attempt([&] { connection->open(connection->connectionString); });
}

}  // namespace kovanix
