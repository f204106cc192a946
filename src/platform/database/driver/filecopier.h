#pragma once

#include <QMetaType>
#include <QSqlError>
#include <QString>
#include <functional>

namespace kovanix::engine {

/// How far the copy of a file is.
struct CopyState {
    int pagesLeft = 0;
    int pages = 0;
    bool stood = false;  ///< the last step copied nothing: somebody had the file locked
};

/// Copies the file that a driver has open, as it stands, while others read and write it: what a driver of the
/// till for files gives as its handle(), as a pointer to this. What has a password is copied under that
/// password, in the format that the file has.
class FileCopier {
public:
    /// Copies in steps, between which nothing of the file is locked, unless the handle itself is reading. A
    /// file that others have changed since the last step is begun anew.
    /// @param target  path of a new file; it isn't synced
    /// @param next  asked ahead of each step how many pages it is to copy, at least one; may throw, which
    /// ends the copy
    /// @return an error of type NoError when the target holds the whole file
    virtual QSqlError copyTo(const QString& target, const std::function<int(const CopyState&)>& next) = 0;

protected:
    ~FileCopier() = default;
};

}  // namespace kovanix::engine

Q_DECLARE_METATYPE(kovanix::engine::FileCopier*)
