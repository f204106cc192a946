#pragma once

#include <QString>
#include <QTemporaryFile>

namespace kovanix::aktar {

/// A file in the making: it is written under another name beside its place and moved there when it stands
/// whole. What isn't finished leaves nothing behind.
class NewFile {
public:
    /// @param overwrite  whether a file of that name may be replaced
    /// @throws RuntimeError in Turkish words where the file is there already, or nothing can be written there
    NewFile(const QString& path, bool overwrite);
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    /// Where it is written.
    QString path() const { return m_file.fileName(); }
    /// The folder in which it is made.
    QString folder() const;
    /// Makes it durable and moves it to its place. @throws RuntimeError
    void commit();

    /// Says that it can't be written. @param error  the system's number
    [[noreturn]] void fail(int error) const;

private:
    QString m_target;
    bool m_overwrite;
    QTemporaryFile m_file;
};

}  // namespace kovanix::aktar
