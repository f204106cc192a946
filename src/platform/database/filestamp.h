#pragma once

#include <sys/stat.h>

#include <QString>
#include <optional>

namespace kovanix {

/// What the file system tells of the file at a path, without opening it.
struct FileStamp {
    dev_t device = 0;
    ino_t number = 0;  ///< of the file on its device
    off_t size = 0;    ///< in bytes
    timespec written{};

    /// Nothing where no file is at that path, or none that can be reached.
    static std::optional<FileStamp> of(const QString& path);

    /// Whether both are of one file, whatever it holds.
    bool isSameFile(const FileStamp& other) const { return device == other.device && number == other.number; }
    /// Whether nobody has written into the file in between, either.
    bool isUntouched(const FileStamp& other) const {
        return isSameFile(other) && size == other.size && written.tv_sec == other.written.tv_sec &&
               written.tv_nsec == other.written.tv_nsec;
    }
};

}  // namespace kovanix
