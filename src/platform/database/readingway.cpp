#include "database/readingway.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSqlError>
#include <QSqlQuery>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QUrl>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <optional>

#include "database/connection.h"
#include "database/engineerror.h"
#include "database/filestamp.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

namespace {

const QString logEnd = u"-wal"_s;
const QString memoryEnd = u"-shm"_s;
const QString journalEnd = u"-journal"_s;

bool mayWrite(const QString& path) {
    return ::access(QFile::encodeName(path).constData(), W_OK) == 0;
}

bool holdsSomething(const QString& path) {
    return QFileInfo(path).size() > 0;
}

/// Whether whoever reads the file with its users would leave a log beside it: its owner couldn't write that
/// afterwards.
bool leavesLog(const QString& path) {
    return !mayWrite(path) && mayWrite(QFileInfo(path).absolutePath()) &&
           !(QFileInfo::exists(path + logEnd) && QFileInfo::exists(path + memoryEnd));
}

/// The copy of a file with its log or journal, until it is released.
class PrivateCopy {
public:
    PrivateCopy(const QString& path, QString engine, const CopyProgress& progress)
        : m_engine(std::move(engine)) {
        qint64 total = 0;
        for (const QString& end : {QString(), logEnd, journalEnd}) {
            m_parts.append({path + end, FileStamp::of(path + end)});
            total += QFileInfo(path + end).size();
        }
        makeFolder(total + QFileInfo(path + logEnd).size());
        requireRest();
        qint64 done = 0;
        for (const Part& part : std::as_const(m_parts)) {
            if (part.stamp)
                copy(part, target() + part.path.sliced(path.size()), [&](qint64 bytes) {
                    done += bytes;
                    if (progress)
                        progress(done, std::max(done, total));
                });
        }
        requireRest();
    }

    QString target() const { return m_folder->filePath(u"kovanix.data"_s); }
    /// Takes the names away; what has the files open keeps them.
    void release() { m_folder.reset(); }

private:
    struct Part {
        QString path;
        std::optional<FileStamp> stamp;
    };

    [[noreturn]] void fail(Kind kind, const QString& words) const {
        throw DatabaseError(kind, describeFailure(kind, words), m_engine);
    }
    [[noreturn]] void failWithError(const QString& path, int error) const {
        const QString words = path + u": " + QString::fromLocal8Bit(std::strerror(error));
        fail(error == ENOSPC || error == EDQUOT ? Kind::full : Kind::lost, words);
    }

    /// Where there is room: the usual place lies on the disk that can only be read when that is the only one.
    void makeFolder(qint64 bytes) {
        constexpr qint64 spare = qint64{4} << 20;
        const QStringList places{QDir::tempPath(), u"/dev/shm"_s};
        for (const QString& place : places) {
            if (QStorageInfo(place).bytesAvailable() < bytes + spare)
                continue;
            m_folder.emplace(QDir(place).filePath(u"kovanix-XXXXXX"_s));
            if (m_folder->isValid())
                return;
        }
        fail(Kind::full,
             u"dükkâna yazılamadığından geçici bir kopyası okunur, bunun için %1 boş yer gerekir: %2"_s.arg(
                 QLocale(QLocale::Turkish)
                     .formattedDataSize(bytes + spare, 0, QLocale::DataSizeTraditionalFormat),
                 places.join(u", "_s)));
    }

    /// Nobody has the file, and it is what it was.
    void requireRest() const {
        for (const Part& part : m_parts) {
            const std::optional<FileStamp> now = FileStamp::of(part.path);
            if (now.has_value() != part.stamp.has_value() || (now && !now->isUntouched(*part.stamp)))
                fail(Kind::busy, u"the file changes while it is read"_s);
        }
        // What uses a log keeps the file locked. This process has no handle on it that its end would unlock:
        // the one that couldn't read it is closed.
        QFile file(m_parts.first().path);
        if (!file.open(QIODevice::ReadOnly))
            fail(Kind::missing, file.errorString());
        struct flock locks {};
        constexpr off_t lockBytes = 0x40000000;
        constexpr off_t lockLength = 512;
        locks.l_type = F_WRLCK;
        locks.l_whence = SEEK_SET;
        locks.l_start = lockBytes;
        locks.l_len = lockLength;
        if (::fcntl(file.handle(), F_GETLK, &locks) == 0 && locks.l_type != F_UNLCK)
            fail(Kind::busy, u"database is locked"_s);
    }

    /// As much as there was at first: what grows meanwhile has no end.
    void copy(const Part& part, const QString& to, const std::function<void(qint64 bytes)>& step) const {
        QFile source(part.path);
        QFile copied(to);
        if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            failWithError(part.path, errno);
        if (!copied.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                         QFile::ReadOwner | QFile::WriteOwner))
            failWithError(to, errno);
        constexpr qint64 chunk = 1 << 20;
        for (qint64 left = part.stamp->size; left > 0;) {
            const QByteArray bytes = source.read(std::min(chunk, left));
            if (bytes.isEmpty())
                break;
            left -= bytes.size();
            if (copied.write(bytes) != bytes.size())
                failWithError(to, errno);
            step(bytes.size());
        }
        // A dying disk: what couldn't be read isn't the file's end.
        if (source.error() != QFileDevice::NoError)
            failWithError(part.path, errno);
    }

    QString m_engine;
    QList<Part> m_parts;
    std::optional<QTemporaryDir> m_folder;
};

}  // namespace

QString fileUri(const QString& path, const QString& mode) {
    const QByteArray encoded = QUrl::toPercentEncoding(QFileInfo(path).absoluteFilePath(), "/");
    return u"file://"_s + QString::fromLatin1(encoded) + u"?mode="_s + mode;
}

bool isWritable(const QString& path) {
    return mayWrite(path) && mayWrite(QFileInfo(path).absolutePath());
}

bool liesOnReadOnlyDisk(const QString& path) {
    struct statx found {};
    if (::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_MNT_ID, &found) != 0 ||
        (found.stx_mask & STATX_MNT_ID) == 0)
        return false;
    QFile mounts(u"/proc/self/mountinfo"_s);
    if (!mounts.open(QIODevice::ReadOnly))
        return false;
    const QByteArray mount = QByteArray::number(static_cast<qulonglong>(found.stx_mnt_id)) + ' ';
    for (QByteArray line = mounts.readLine(); !line.isEmpty(); line = mounts.readLine()) {
        if (!line.startsWith(mount))
            continue;
        // Behind the dash: the type, what is mounted, and how the file system itself is, wherever else it can
        // be looked at. What is no disk of this machine may be written past it.
        const QList<QByteArray> fields = line.simplified().split(' ');
        const qsizetype dash = fields.indexOf("-");
        if (dash < 0 || dash + 3 >= fields.size())
            return false;
        const QByteArray& type = fields[dash + 1];
        const bool ownDisk =
            type == "tmpfs" || (fields[dash + 2].startsWith("/dev/") && !type.startsWith("fuse."));
        return ownDisk && fields[dash + 3].split(',').contains("ro");
    }
    return false;
}

ReadingWay openToRead(QSqlDatabase& database, const QString& path, bool withPassword, const QString& engine,
                      std::chrono::milliseconds busyTimeout, const CopyProgress& progress) {
    const auto open = [&](const QString& uri, const QString& options = {}) -> std::optional<DatabaseError> {
        database.setDatabaseName(uri);
        database.setConnectOptions(u"QSQLITE_OPEN_URI;QSQLITE_BUSY_TIMEOUT=%1"_s.arg(busyTimeout.count()) +
                                   options);
        QSqlError error;
        if (!database.open()) {
            error = database.lastError();
        } else {
            QSqlQuery catalogue(database);
            if (catalogue.exec(u"SELECT count(*) FROM sqlite_master"_s))
                return std::nullopt;
            error = catalogue.lastError();
        }
        database.close();
        return engineError(error, engine, withPassword);
    };
    const QString readOnly = u";QSQLITE_OPEN_READONLY"_s;
    const bool onNetwork = liesOnNetwork(path);
    if (onNetwork || !leavesLog(path)) {
        const auto failure = open(fileUri(path, u"ro"_s), readOnly);
        if (!failure)
            return ReadingWay::shared;
        const bool isUnwritable = failure->kind() == Kind::readOnly || failure->kind() == Kind::missing;
        if (onNetwork || !isUnwritable || !QFileInfo(path).isReadable())
            throw *failure;
    }
    // Sorting writes beside the usual files, where it may.
    const auto sortInMemory = [&] { QSqlQuery(database).exec(u"PRAGMA temp_store=MEMORY"_s); };
    if (liesOnReadOnlyDisk(path) && !holdsSomething(path + logEnd) && !holdsSomething(path + journalEnd)) {
        if (const auto failure = open(fileUri(path, u"ro"_s) + u"&immutable=1"_s, readOnly))
            throw *failure;
        sortInMemory();
        return ReadingWay::still;
    }
    PrivateCopy copy(path, engine, progress);
    if (const auto failure = open(fileUri(copy.target(), u"rw"_s), u";KOVANIX_EXCLUSIVE"_s))
        throw *failure;
    // What the log holds moves into the file, which then needs no name any more.
    QSqlQuery(database).exec(u"PRAGMA journal_mode=DELETE"_s);
    QSqlQuery(database).exec(u"PRAGMA query_only=1"_s);
    sortInMemory();
    copy.release();
    return ReadingWay::copied;
}

}  // namespace kovanix
