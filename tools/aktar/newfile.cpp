#include "aktar/newfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFileInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "runtime/runtimeerror.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

constexpr int fileExists = 58;
constexpr int pathAccessError = 75;
constexpr mode_t forEverybody = 0666;

QString wordsOf(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return u"yazma izni yok"_s;
        case EROFS:
            return u"burası yalnız okunabiliyor"_s;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return u"diskte yer kalmadı"_s;
        case ENOENT:
        case ENOTDIR:
            return u"klasör yok"_s;
        case EISDIR:
            return u"bu bir klasör"_s;
        case EIO:
        case ENODEV:
        case ENXIO:
            return u"disk ya da bellek çubuğu çıkarılmış olabilir"_s;
        default:
            return QString::fromLocal8Bit(std::strerror(error));
    }
}

void failAlreadyThere(const QString& path) {
    throw RuntimeError(fileExists, u"Bu adla bir dosya zaten var: %1"_s.arg(path));
}

/// Moves a file to a name that must not be taken; true where the system can do that.
bool moveToFreeName(const QByteArray& from, const QByteArray& to) {
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // A file system that can't look and move in one step.
    if (::access(to.constData(), F_OK) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.constData(), to.constData()) == 0;
}

}  // namespace

NewFile::NewFile(const QString& path, bool overwrite)
    : m_target(QFileInfo(path).absoluteFilePath()), m_overwrite(overwrite) {
    const QFileInfo target(m_target);
    if (target.isDir())
        fail(EISDIR);
    if (target.exists() && !overwrite)
        failAlreadyThere(m_target);
    m_file.setFileTemplate(target.absolutePath() + u"/.kovanix-aktar-XXXXXX"_s);
    errno = 0;
    if (!target.absoluteDir().exists())
        fail(ENOENT);
    if (!m_file.open())
        fail(errno == 0 ? EACCES : errno);
    m_file.close();
}

QString NewFile::folder() const {
    return QFileInfo(m_target).absolutePath();
}

void NewFile::commit() {
    const QByteArray from = QFile::encodeName(path());
    const QByteArray to = QFile::encodeName(m_target);
    const int file = ::open(from.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        fail(errno);
    // As any new file of its owner: a temporary one is closed to others.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const bool synced = ::fchmod(file, forEverybody & ~mask) == 0 || errno == EPERM;
    const int failed = synced && ::fsync(file) == 0 ? 0 : errno;
    ::close(file);
    if (failed != 0)
        fail(failed);
    const bool moved =
        m_overwrite ? ::rename(from.constData(), to.constData()) == 0 : moveToFreeName(from, to);
    if (!moved && errno == EEXIST)
        failAlreadyThere(m_target);
    if (!moved)
        fail(errno);
    m_file.setAutoRemove(false);
}

void NewFile::fail(int error) const {
    throw RuntimeError(pathAccessError, u"%1 yazılamadı: %2"_s.arg(m_target, wordsOf(error)));
}

}  // namespace kovanix::aktar
