#include "yedek/workfolder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <thread>

#include "yedek/failure.h"
#include "yedek/storage.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t ownOnly = 0700;

int makeDirectory(const QString& path) {
    return ::mkdir(QFile::encodeName(path).constData(), ownOnly);
}

[[noreturn]] void refuseFolder(const QString& folder, int error) {
    throw Failure(u"Klasör açılamıyor. "_s + systemWords(folder, error));
}

/// Removes a folder and what is in it, a link itself and nothing behind one. What can't be removed stays.
void removeAll(const QString& path) {
    std::error_code error;
    std::filesystem::remove_all(QFile::encodeName(path).toStdString(), error);
}

/// Each user's and each place's own, so that the next run finds what one that died has left. A place that
/// isn't there yet is made: without it there would be nothing to tell it from another by.
QString memoryFolder(const QString& place) {
    constexpr int digits = 16;
    makeOwnFolder(place);
    const QByteArray sum =
        QCryptographicHash::hash(QFileInfo(place).canonicalFilePath().toUtf8(), QCryptographicHash::Sha256);
    return u"/dev/shm/kovanix-yedek-%1-%2"_s.arg(::getuid())
        .arg(QString::fromLatin1(sum.toHex().first(digits)));
}

/// Everybody may make folders beside it: one of another user's is left alone.
bool isOwnFolder(const QString& folder) {
    struct stat found {};
    constexpr mode_t others = 077;
    return ::lstat(QFile::encodeName(folder).constData(), &found) == 0 && S_ISDIR(found.st_mode) &&
           found.st_uid == ::getuid() && (found.st_mode & others) == 0;
}

/// How much memory programs could still have, in bytes.
qint64 freeMemory() {
    QFile file(u"/proc/meminfo"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    constexpr qint64 kilobyte = 1024;
    const QByteArray name = "MemAvailable:";
    for (QByteArray line = file.readLine(); !line.isEmpty(); line = file.readLine()) {
        if (line.startsWith(name))
            return line.sliced(name.size()).trimmed().split(' ').first().toLongLong() * kilobyte;
    }
    return 0;
}

}  // namespace

void makeOwnFolder(const QString& folder) {
    if (QFileInfo(folder).isDir())
        return;
    const QString above = QFileInfo(folder).absolutePath();
    errno = 0;
    if (!QDir().mkpath(above)) {
        const int error = errno;
        refuseFolder(above, error == 0 ? EACCES : error);
    }
    if (makeDirectory(folder) == 0)
        return;
    const int error = errno;
    if (!QFileInfo(folder).isDir())
        refuseFolder(folder, error);
}

FolderLock::FolderLock(const QString& place, const std::function<void()>& waiting) {
    using namespace std::chrono_literals;
    constexpr std::chrono::milliseconds look = 200ms;
    makeOwnFolder(place);
    const QDeadlineTimer patience(waiting ? std::chrono::milliseconds(10min) : 0ms);
    while (!acquire(place)) {
        if (patience.hasExpired())
            throw Refusal(u"Bu klasörde şu anda başka bir yedekleme çalışıyor: "_s + place);
        waiting();
        std::this_thread::sleep_for(look);
    }
}

/// @return false where another run has it
bool FolderLock::acquire(const QString& place) {
    const QString path = QDir(place).filePath(u".kovanix-yedek.kilit"_s);
    m_path = QFile::encodeName(path);
    while (true) {
        constexpr mode_t own = 0600;
        m_handle = ::open(m_path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, own);
        if (m_handle < 0)
            throw Failure(systemWords(path, errno));
        if (::flock(m_handle, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            ::close(m_handle);
            if (error == EWOULDBLOCK)
                return false;
            throw Failure(systemWords(path, error));
        }
        // Whoever had it may have removed the file in between: another run could make it anew.
        struct stat held {};
        struct stat named {};
        if (::fstat(m_handle, &held) == 0 && ::stat(m_path.constData(), &named) == 0 &&
            held.st_ino == named.st_ino && held.st_dev == named.st_dev)
            return true;
        ::close(m_handle);
    }
}

FolderLock::~FolderLock() {
    ::unlink(m_path.constData());
    ::close(m_handle);
}

WorkFolder::WorkFolder(const QString& place, const std::function<void()>& waiting)
    : m_folder(QDir(place).absoluteFilePath(u".kovanix-yedek-gecici"_s)),
      m_memory(memoryFolder(place)),
      m_lock(place, waiting) {
    clear();
    // Made anew each time: what somebody else has put there isn't worked in.
    if (makeDirectory(m_folder.path()) != 0)
        refuseFolder(m_folder.path(), errno);
}

WorkFolder::~WorkFolder() {
    clear();
}

void WorkFolder::clear() {
    removeAll(m_folder.path());
    if (isOwnFolder(m_memory.path()))
        removeAll(m_memory.path());
}

QString WorkFolder::makeFolder(const QString& name) const {
    const QString folder = file(name);
    makeOwnFolder(folder);
    return folder;
}

QString WorkFolder::makeFleetingFolder(const QString& name, qint64 bytes) const {
    constexpr qint64 plenty = 4;  // times what it takes
    const QString path = m_memory.path();
    const bool fits = bytes > 0 && freeMemory() / plenty >= bytes &&
                      QStorageInfo(QFileInfo(path).path()).bytesAvailable() / 2 >= bytes;
    if (!fits)
        return makeFolder(name);
    makeDirectory(path);
    if (!isOwnFolder(path))
        return makeFolder(name);
    const QString folder = m_memory.filePath(name);
    makeOwnFolder(folder);
    return folder;
}

}  // namespace kovanix::yedek
