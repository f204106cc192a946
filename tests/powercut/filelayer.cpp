#include "filelayer.h"

#include <dlfcn.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtGlobal>
#include <utility>

namespace kovanix {

using namespace Qt::StringLiterals;
using Kind = FileStep::Kind;

/// An open file: the engine's own part stands first, the file of the layer below behind.
struct FileLayer::Handle {
    sqlite3_file engines;
    FileLayer* layer;
    std::optional<int> file;
    bool makesEntry;  ///< the first sync will make the file's name durable too

    sqlite3_file* below() { return reinterpret_cast<sqlite3_file*>(this + 1); }
};

/// What the engine calls.
struct FileLayer::Calls {
    static Handle& of(sqlite3_file* file) { return *reinterpret_cast<Handle*>(file); }
    static FileLayer& of(sqlite3_vfs* vfs) { return *static_cast<FileLayer*>(vfs->pAppData); }

    /// Passes a call to the layer below.
    template <auto member, class... Arguments>
    static int pass(sqlite3_file* file, Arguments... arguments) {
        sqlite3_file* const below = of(file).below();
        return (below->pMethods->*member)(below, arguments...);
    }

    static int close(sqlite3_file* file) {
        const int code = pass<&sqlite3_io_methods::xClose>(file);
        of(file).engines.pMethods = nullptr;
        return code;
    }

    static int read(sqlite3_file* file, void* bytes, int size, sqlite3_int64 place) {
        if (const int code = of(file).layer->failure(FileCall::read))
            return code;
        return pass<&sqlite3_io_methods::xRead>(file, bytes, size, place);
    }

    static int write(sqlite3_file* file, const void* bytes, int size, sqlite3_int64 place) {
        Handle& handle = of(file);
        const auto* text = static_cast<const char*>(bytes);
        const int fault = handle.layer->failure(FileCall::write);
        // A disk that is full, or breaks, may have taken a part.
        const int taken = fault ? size / 2 : size;
        const int code = pass<&sqlite3_io_methods::xWrite>(file, bytes, taken, place);
        if (code == SQLITE_OK)
            handle.layer->note(Kind::write, handle.file, place, QByteArray(text, taken));
        return fault ? fault : code;
    }

    static int truncate(sqlite3_file* file, sqlite3_int64 size) {
        Handle& handle = of(file);
        if (const int code = handle.layer->failure(FileCall::truncate))
            return code;
        const int code = pass<&sqlite3_io_methods::xTruncate>(file, size);
        if (code == SQLITE_OK)
            handle.layer->note(Kind::truncate, handle.file, size);
        return code;
    }

    /// Not passed on: nobody cuts the power of the machine that the test runs on.
    static int sync(sqlite3_file* file, int /*flags*/) {
        Handle& handle = of(file);
        if (const int code = handle.layer->failure(FileCall::sync))
            return code;
        handle.layer->note(Kind::sync, handle.file);
        if (std::exchange(handle.makesEntry, false))
            handle.layer->note(Kind::syncFolder, handle.file);
        return SQLITE_OK;
    }

    static int shmUnmap(sqlite3_file* file, int remove) {
        return pass<&sqlite3_io_methods::xShmUnmap>(file, remove);
    }
    static void shmBarrier(sqlite3_file* file) {
        sqlite3_file* const below = of(file).below();
        below->pMethods->xShmBarrier(below);
    }

    static int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* file, int flags, int* flagsOut) {
        FileLayer& layer = of(vfs);
        auto& handle = *new (file) Handle{{nullptr}, &layer, std::nullopt, false};
        const bool isNew = name && !QFileInfo::exists(QFile::decodeName(name));
        const int code = layer.m_below->xOpen(layer.m_below, name, handle.below(), flags, flagsOut);
        if (code != SQLITE_OK)
            return code;
        handle.engines.pMethods = &methods;
        if (isNew && layer.recorded(name)) {
            handle.file = layer.addFile(QFile::decodeName(name), false);
            layer.note(Kind::create, handle.file);
        } else {
            handle.file = layer.recorded(name);
        }
        // As the layer below does it: for a log by whichever handle may make one, whoever has. The name of a
        // new database is left to its first journal.
        handle.makesEntry = (flags & (SQLITE_OPEN_WAL | SQLITE_OPEN_MAIN_JOURNAL)) != 0;
        return code;
    }

    static int remove(sqlite3_vfs* vfs, const char* name, int syncFolder) {
        FileLayer& layer = of(vfs);
        if (const int code = layer.failure(FileCall::remove))
            return code;
        const std::optional<int> file = layer.recorded(name);
        const int code = layer.m_below->xDelete(layer.m_below, name, 0);
        if (code != SQLITE_OK || !file)
            return code;
        layer.m_files.remove(QFile::decodeName(name));
        layer.note(Kind::remove, file);
        if (syncFolder)
            layer.note(Kind::syncFolder, file);
        return code;
    }

    static const sqlite3_io_methods methods;
};

const sqlite3_io_methods FileLayer::Calls::methods{
    .iVersion = 2,  // without memory-mapped files, which the till doesn't use
    .xClose = close,
    .xRead = read,
    .xWrite = write,
    .xTruncate = truncate,
    .xSync = sync,
    .xFileSize = pass<&sqlite3_io_methods::xFileSize, sqlite3_int64*>,
    .xLock = pass<&sqlite3_io_methods::xLock, int>,
    .xUnlock = pass<&sqlite3_io_methods::xUnlock, int>,
    .xCheckReservedLock = pass<&sqlite3_io_methods::xCheckReservedLock, int*>,
    .xFileControl = pass<&sqlite3_io_methods::xFileControl, int, void*>,
    .xSectorSize = pass<&sqlite3_io_methods::xSectorSize>,
    .xDeviceCharacteristics = pass<&sqlite3_io_methods::xDeviceCharacteristics>,
    .xShmMap = pass<&sqlite3_io_methods::xShmMap, int, int, int, void volatile**>,
    .xShmLock = pass<&sqlite3_io_methods::xShmLock, int, int, int>,
    .xShmBarrier = shmBarrier,
    .xShmUnmap = shmUnmap,
    .xFetch = nullptr,
    .xUnfetch = nullptr,
};

FileLayer& FileLayer::under(bool encryptingEngine) {
    static FileLayer plain(false);
    static FileLayer encrypting(true);
    return encryptingEngine ? encrypting : plain;
}

FileLayer::FileLayer(bool encryptingEngine) {
    // A driver's own library, whatever it is called here: a look-up by the driver's handle goes on to what it
    // was linked with. The two engines bear the same symbols and are kept apart by that.
    const char* const driver = encryptingEngine ? SQLCIPHER_DRIVER : SQLITE_DRIVER;
    void* const library = ::dlopen(driver, RTLD_NOW | RTLD_LOCAL);
    if (!library)
        qFatal("no driver: %s", ::dlerror());
    const auto find = reinterpret_cast<decltype(&sqlite3_vfs_find)>(::dlsym(library, "sqlite3_vfs_find"));
    const auto enter =
        reinterpret_cast<decltype(&sqlite3_vfs_register)>(::dlsym(library, "sqlite3_vfs_register"));
    if (!find || !enter)
        qFatal("the driver's library is no engine: %s", driver);

    m_below = find("unix");
    static std::array<sqlite3_vfs, 2> layers;
    sqlite3_vfs& own = layers[encryptingEngine ? 1 : 0];
    own = *m_below;
    own.szOsFile = static_cast<int>(sizeof(Handle)) + m_below->szOsFile;
    own.zName = "recorded";
    own.pNext = nullptr;
    own.pAppData = this;
    own.xOpen = Calls::open;
    own.xDelete = Calls::remove;
    if (enter(&own, 1) != SQLITE_OK)
        qFatal("the engine takes no file layer");
}

int FileLayer::failure(FileCall call) {
    if (!m_fault || m_fault->call != call)
        return SQLITE_OK;
    ++m_calls;
    if (m_calls != m_fault->number && !(m_fault->lasting && m_calls > m_fault->number))
        return SQLITE_OK;
    m_struck = true;
    return m_fault->code;
}

void FileLayer::setFault(const std::optional<FileFault>& fault) {
    m_fault = fault;
    m_calls = 0;
    if (fault)
        m_struck = false;
}

std::optional<int> FileLayer::recorded(const char* path) {
    if (m_folder.isEmpty() || !path)
        return std::nullopt;
    const QString name = QFile::decodeName(path);
    if (QFileInfo(name).absolutePath() != m_folder)
        return std::nullopt;
    return m_files.value(name, -1);
}

int FileLayer::addFile(const QString& path, bool wasThereBefore) {
    FileTrace::File file{QFileInfo(path).fileName(), {}, wasThereBefore};
    if (wasThereBefore) {
        QFile now(path);
        if (!now.open(QIODevice::ReadOnly))
            qFatal("can't read %s", qUtf8Printable(path));
        file.before = now.readAll();
    }
    const int number = static_cast<int>(m_trace.files.size());
    m_trace.files.push_back(std::move(file));
    m_files.insert(path, number);
    return number;
}

void FileLayer::note(Kind kind, const std::optional<int>& file, qint64 place, QByteArray bytes) {
    if (!m_folder.isEmpty() && file && *file >= 0)
        m_trace.steps.push_back({kind, *file, place, std::move(bytes)});
}

void FileLayer::mark(Kind kind, qint64 number) {
    if (!m_folder.isEmpty())
        m_trace.steps.push_back({kind, -1, number, {}});
}

void FileLayer::record(const QString& folder) {
    m_trace = {};
    m_files.clear();
    m_folder = QFileInfo(folder).absoluteFilePath();
    for (const QFileInfo& entry : QDir(folder).entryInfoList(QDir::Files))
        addFile(entry.absoluteFilePath(), true);
}

FileTrace FileLayer::takeTrace() {
    m_folder.clear();
    return std::exchange(m_trace, {});
}

}  // namespace kovanix
