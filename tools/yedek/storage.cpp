#include "yedek/storage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QScopeGuard>
#include <QStorageInfo>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include "yedek/failure.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

QByteArray native(const QString& path) {
    return QFile::encodeName(path);
}

void require(bool done, const QString& path) {
    if (!done)
        throw Failure(systemWords(path, errno));
}

void syncPath(const QString& path, int flags) {
    const int handle = ::open(native(path).constData(), flags | O_CLOEXEC);
    require(handle >= 0, path);
    // Some file systems of sticks and shares have no such thing for a folder.
    const bool done = ::fsync(handle) == 0 || ((flags & O_DIRECTORY) != 0 && errno == EINVAL);
    const int error = errno;
    ::close(handle);
    errno = error;
    require(done, path);
}

}  // namespace

QString systemWords(const QString& path, int error) {
    switch (error) {
        case ENOSPC:
        case EDQUOT:
            return u"Diskte yer kalmadı: "_s + path;
        case EFBIG:
            return u"Dosya bu disk için çok büyük (FAT32 biçimli bir disk 4 GB'tan büyük dosya almaz): "_s +
                   path;
        case ENOTDIR:
            return u"Bir klasör değil: "_s + path;
        case EEXIST:
            return u"Bu adda başka bir şey var: "_s + path;
        case ELOOP:
            return u"Bu adda başka yere götüren bir bağlantı var, silip yeniden deneyin: "_s + path;
        case EROFS:
            return u"Disk yalnız okunabiliyor: "_s + path;
        case EACCES:
        case EPERM:
            return u"İzin yok: "_s + path;
        case ENAMETOOLONG:
            return u"Ad çok uzun: "_s + path;
        case EIO:
        case ENODEV:
        case ENXIO:
        case ENOTCONN:
            return u"Disk okunamıyor ya da yazılamıyor (çıkarılmış olabilir): "_s + path;
        case ENOENT:
            return u"Bulunamadı (disk çıkarılmış olabilir): "_s + path;
        default:
            return QString::fromLocal8Bit(std::strerror(error)) + u": " + path;
    }
}

void requireRoom(const QString& folder, qint64 bytes) {
    constexpr qint64 forTheShop = qint64{64} << 20;
    const qint64 room = QStorageInfo(folder).bytesAvailable();
    if (room >= 0 && room < bytes + forTheShop)
        throw Failure(systemWords(folder, ENOSPC));
}

void copyFile(const QString& from, const QString& to) {
    QFile source(from);
    if (!source.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        throw Failure(errno == EACCES ? u"Okuma izni yok: "_s + from : systemWords(from, errno));
    QFile target(to);
    if (!target.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered,
                     QFile::ReadOwner | QFile::WriteOwner))
        throw Failure(systemWords(to, errno));
    auto half = qScopeGuard([&target] { target.remove(); });
    constexpr qint64 chunk = 1 << 20;
    while (true) {
        const QByteArray bytes = source.read(chunk);
        if (bytes.isEmpty())
            break;
        if (target.write(bytes) != bytes.size())
            throw Failure(systemWords(to, errno));
    }
    if (source.error() != QFileDevice::NoError)
        throw Failure(systemWords(from, errno));
    half.dismiss();
    // Where a disk has none, a file stays its owner's.
    target.setPermissions(source.permissions());
}

SteadyWrites::SteadyWrites(const QString& path)
    : m_handle(::open(native(path).constData(), O_RDONLY | O_CLOEXEC)) {}

SteadyWrites::~SteadyWrites() {
    if (m_handle >= 0)
        ::close(m_handle);
}

void SteadyWrites::upTo(qint64 bytes) {
    constexpr qint64 bit = qint64{4} << 20;
    if (m_handle < 0 || bytes - m_done < bit)
        return;
    // Where a disk can't do that, it is done at the end.
    ::sync_file_range(m_handle, m_done, bytes - m_done,
                      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
    m_done = bytes;
}

void SteadyWrites::upToEnd() {
    struct stat found {};
    if (m_handle >= 0 && ::fstat(m_handle, &found) == 0)
        upTo(found.st_size);
}

void Storage::sync(const QString& file) {
    syncPath(file, O_RDONLY);
}

void Storage::syncFolder(const QString& folder) {
    syncPath(folder, O_RDONLY | O_DIRECTORY);
}

void Storage::rename(const QString& from, const QString& to) {
    require(std::rename(native(from).constData(), native(to).constData()) == 0, to);
}

void Storage::link(const QString& from, const QString& to) {
    require(::link(native(from).constData(), native(to).constData()) == 0, to);
}

void Storage::remove(const QString& file) {
    require(::unlink(native(file).constData()) == 0 || errno == ENOENT, file);
}

}  // namespace kovanix::yedek
