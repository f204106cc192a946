#pragma once

#include <QDir>
#include <QString>
#include <functional>

namespace kovanix::yedek {

/// Has one run at a time work in a folder. The system itself holds the lock and lets go of it when the run's
/// process ends in whatever way: nothing that a file says could keep later runs out.
class FolderLock {
public:
    /// @param place  of the folder; made where it is missing
    /// @param waiting  called again and again as long as another run has it, for some minutes at most; may
    /// throw. Without one, that run is waited for no time
    /// @throws Refusal where another run has it; Failure
    explicit FolderLock(const QString& place, const std::function<void()>& waiting = {});
    ~FolderLock();
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

private:
    bool acquire(const QString& place);

    QByteArray m_path;
    int m_handle = -1;
};

/// A folder for what isn't whole yet, inside the one where it is to lie: entered by its owner only, gone with
/// this. What a run that died has left there is cleared away; a link in its place is, and never what it leads
/// to. One run at a time has it.
///
/// What is only in between can lie in memory instead: a disk that has to write it and to give its room back
/// keeps a till's sales waiting meanwhile.
class WorkFolder {
public:
    /// @param place  the outer folder; made where it is missing
    /// @param waiting  as of FolderLock. @throws as FolderLock
    explicit WorkFolder(const QString& place, const std::function<void()>& waiting = {});
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    QString path() const { return m_folder.path(); }
    QString file(const QString& name) const { return m_folder.filePath(name); }
    /// Makes a folder in it. @throws Failure
    QString makeFolder(const QString& name) const;
    /// Makes a folder for files that nobody needs after this: in memory where there is plenty of it, else as
    /// makeFolder does. @param bytes  how much it is to take; 0 where that isn't known. @throws Failure
    QString makeFleetingFolder(const QString& name, qint64 bytes) const;

private:
    void clear();

    QDir m_folder;
    QDir m_memory;  ///< the same in memory; made when it is wanted
    FolderLock m_lock;
};

/// Makes a folder that only its owner enters, and those above it. @throws Failure
void makeOwnFolder(const QString& folder);

}  // namespace kovanix::yedek
