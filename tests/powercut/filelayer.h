#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <array>
#include <optional>
#include <vector>

struct sqlite3_vfs;

namespace kovanix {

/// A step that an engine took on the files of a folder, or a mark that a test set between two steps.
struct FileStep {
    enum class Kind {
        create,
        write,
        truncate,
        sync,
        remove,
        syncFolder,
        begun,  ///< mark: that many statements may have begun by now
        told,   ///< mark: that many statements were told as stored
    };
    Kind kind;
    int file = -1;     ///< index in FileTrace::files; a name that is made anew is another file
    qint64 place = 0;  ///< of a write in the file; a truncated file's new size; a mark's number
    QByteArray bytes;  ///< what was written
};

/// What happened to the files of a folder.
struct FileTrace {
    struct File {
        QString name;
        QByteArray before;  ///< what it held when the record began
        bool wasThereBefore = false;
    };
    std::vector<File> files;
    std::vector<FileStep> steps;
};

/// The calls of an engine that can be made to fail.
enum class FileCall { read, write, sync, truncate, remove };

/// Which call fails, and how.
struct FileFault {
    FileCall call;
    int number;    ///< counted from when the fault was set, from 1 on
    int code;      ///< what the engine is answered
    bool lasting;  ///< whether all calls of that kind behind it fail too
};

/// A layer between an engine and the system's files. It passes every call on but the syncs; on request it
/// writes down what changes the files of one folder, or has a call fail. What lies in shared memory isn't
/// seen by it.
class FileLayer {
public:
    /// The layer under the engine that opens files with a password, or under the other: every file that this
    /// process opens by that engine from now on goes through it. It lives as long as the process.
    static FileLayer& under(bool encryptingEngine);

    FileLayer(const FileLayer&) = delete;
    FileLayer& operator=(const FileLayer&) = delete;

    /// From now on writes down what is done to the files of a folder. Nobody may have one open.
    void record(const QString& folder);
    /// Puts a mark into the record, if one is made.
    void mark(FileStep::Kind kind, qint64 number);
    /// How many steps the record has by now.
    std::size_t steps() const { return m_trace.steps.size(); }
    /// Ends the record. @return what was written down
    FileTrace takeTrace();

    /// Has a call on any file fail. @param fault  nothing: none from now on
    void setFault(const std::optional<FileFault>& fault);
    /// Whether the fault that was set last has struck.
    bool hasStruck() const { return m_struck; }

private:
    struct Handle;
    struct Calls;
    friend struct Calls;

    explicit FileLayer(bool encryptingEngine);

    int failure(FileCall call);
    /// The number of a path's file in the record; nothing for one that is none of its.
    std::optional<int> recorded(const char* path);
    int addFile(const QString& path, bool wasThereBefore);
    void note(FileStep::Kind kind, const std::optional<int>& file, qint64 place = 0, QByteArray bytes = {});

    sqlite3_vfs* m_below = nullptr;
    QString m_folder;  ///< of the record; empty while none is made
    FileTrace m_trace;
    QHash<QString, int> m_files;  ///< those that are there now, by path
    std::optional<FileFault> m_fault;
    int m_calls = 0;  ///< of the fault's kind
    bool m_struck = false;
};

}  // namespace kovanix
