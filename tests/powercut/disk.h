#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <random>
#include <utility>
#include <vector>

#include "filelayer.h"

namespace kovanix {

/// A folder's files by their names.
using FolderFiles = QMap<QString, QByteArray>;

/// The disk under a record: what it is sure to hold, and what has been written but not synced yet.
///
/// A sync makes one file's bytes durable, a folder's sync the names in it. What isn't durable is in nobody's
/// hand: a sector of 512 bytes may hold any of the contents that it had since the last sync, whatever the
/// other sectors hold, and the same goes for a file's size and for a name.
class Disk {
public:
    using Random = std::mt19937_64;

    /// What is left of what wasn't synced.
    enum class Cut {
        lost,       ///< nothing
        kept,       ///< everything
        inOrder,    ///< everything up to some moment
        scattered,  ///< each sector, size and name for itself
    };

    /// @param trace  must outlive the disk
    explicit Disk(const FileTrace& trace);

    /// The step happens.
    void take(const FileStep& step);

    /// The files that a cut of the power would leave now.
    FolderFiles cut(Cut how, Random& random) const;
    /// The files that a program would leave that is killed in the step behind the taken ones: the system
    /// loses nothing, and breaks a write off between two of its pages only.
    FolderFiles killed(const FileStep& next) const;

private:
    using Step = std::pair<quint64, const FileStep*>;  ///< with its number in the trace
    struct File {
        QByteArray durable;
        QByteArray now;
        std::vector<Step> unsynced;
    };
    /// What a name led to: a file's number, or nothing.
    struct Name {
        int durable = -1;
        int now = -1;
        std::vector<std::pair<quint64, int>> unsynced;
    };

    static void write(QByteArray& file, const FileStep& step);
    void forget(int file, int besides);
    QByteArray scattered(const File& file, Random& random) const;

    std::vector<File> m_files;
    QMap<QString, Name> m_names;
    const FileTrace& m_trace;
    quint64 m_taken = 0;
};

}  // namespace kovanix
