#include "yedek/places.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <optional>

#include "app/ayarmodul.h"
#include "yedek/failure.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString section = u"yedek"_s;
const QString folderKey = u"klasor"_s;

QString profile(const Shop& shop) {
    return QDir(shop.folder).filePath(u"kovanix-yedek.config"_s);
}

QString userName() {
    const passwd* const user = ::getpwuid(::getuid());
    return user ? QString::fromLocal8Bit(user->pw_name) : qEnvironmentVariable("USER");
}

/// Whether copies may lie there or come there. A marked stick that can't be written any more is told of.
bool isStick(const QString& path) {
    const QStorageInfo disk(path);
    const bool takesCopies = !disk.isReadOnly() && QFileInfo(path).isWritable();
    return disk.isReady() && disk.rootPath() == path &&
           (takesCopies || QFileInfo(QDir(path).filePath(folderName)).isDir());
}

std::optional<dev_t> deviceOf(QString path) {
    struct stat found {};
    while (::stat(QFile::encodeName(path).constData(), &found) != 0) {
        const QString above = QFileInfo(path).absolutePath();
        if (above == path)
            return std::nullopt;
        path = above;
    }
    return found.st_dev;
}

}  // namespace

QString copyFolder(const Shop& shop) {
    const QString chosen = ayaroku(section, folderKey, profile(shop));
    if (!chosen.isEmpty())
        return chosen;
    return QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)).filePath(folderName);
}

void chooseCopyFolder(const Shop& shop, const QString& folder) {
    ayaryaz(section, folderKey, folder, profile(shop));
    if (ayaroku(section, folderKey, profile(shop)) != folder)
        throw Failure(u"Seçilen klasör kaydedilemedi: "_s + folder);
}

QList<Stick> sticksBelow(const QStringList& places, const std::function<bool(const QString&)>& isMount) {
    QList<Stick> found;
    for (const QString& place : places) {
        const QFileInfoList entries =
            QDir(place).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo& entry : entries) {
            const QString root = entry.absoluteFilePath();
            if (!isMount(root))
                continue;
            const QString folder = QDir(root).filePath(folderName);
            found.append({entry.fileName(), root, folder, QFileInfo(folder).isDir()});
        }
    }
    return found;
}

QList<Stick> sticks() {
    return sticksBelow({u"/media/"_s + userName(), u"/run/media/"_s + userName()}, isStick);
}

bool onOneDisk(const QString& one, const QString& other) {
    const auto first = deviceOf(one);
    return first && first == deviceOf(other);
}

}  // namespace kovanix::yedek
