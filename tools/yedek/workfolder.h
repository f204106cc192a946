#pragma once

#include <QDir>
#include <QLockFile>
#include <QString>

namespace kovanix::yedek {

/// A folder for what isn't whole yet, inside the one where it is to lie: entered by its owner only, gone with
/// this. What a run that died has left there is cleared away. One run at a time has it.
class WorkFolder {
public:
    /// @param place  the outer folder; made where it is missing. @throws Failure
    explicit WorkFolder(const QString& place);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    QString path() const { return m_folder.path(); }
    QString file(const QString& name) const { return m_folder.filePath(name); }
    /// Makes a folder in it. @throws Failure
    QString makeFolder(const QString& name) const;

private:
    QDir m_folder;
    QLockFile m_lock;
};

/// Makes a folder that only its owner enters, and those above it. @throws Failure
void makeOwnFolder(const QString& folder);

}  // namespace kovanix::yedek
