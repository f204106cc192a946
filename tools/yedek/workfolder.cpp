#include "yedek/workfolder.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "yedek/failure.h"
#include "yedek/storage.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr QFile::Permissions ownOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

QString lockOf(const QString& place) {
    makeOwnFolder(place);
    return QDir(place).filePath(u".kovanix-yedek.kilit"_s);
}

}  // namespace

void makeOwnFolder(const QString& folder) {
    if (QFileInfo(folder).isDir())
        return;
    const bool made = QDir().mkpath(QFileInfo(folder).absolutePath()) && QDir().mkdir(folder, ownOnly);
    if (!made && !QFileInfo(folder).isDir())
        throw Failure(u"Klasör açılamıyor: "_s + folder);
}

WorkFolder::WorkFolder(const QString& place)
    : m_folder(QDir(place).absoluteFilePath(u".kovanix-yedek-gecici"_s)), m_lock(lockOf(place)) {
    m_lock.setStaleLockTime(0);  // held for as long as its process lives
    if (!m_lock.tryLock()) {
        if (m_lock.error() == QLockFile::LockFailedError)
            throw Refusal(u"Bu klasörde şu anda başka bir yedekleme çalışıyor: "_s + place);
        throw Failure(systemWords(place, EACCES));
    }
    m_folder.removeRecursively();
    makeOwnFolder(m_folder.path());
}

WorkFolder::~WorkFolder() {
    m_folder.removeRecursively();
}

QString WorkFolder::makeFolder(const QString& name) const {
    const QString folder = file(name);
    makeOwnFolder(folder);
    return folder;
}

}  // namespace kovanix::yedek
