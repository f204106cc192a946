#pragma once

// The driver is built twice from the same source: over the plain engine and over the one that encrypts.
#ifdef SQLITE_HAS_CODEC
#include <sqlcipher/sqlite3.h>
#else
#include <sqlite3.h>
#endif

#include <QByteArray>
#include <QList>

namespace kovanix::engine {

struct Finalizer {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};

/// Whether this build's engine opens files with a password, or those without.
extern const bool encrypts;

/// Gives a fresh handle its password; before anything that reads the file.
/// @param format  statements that set an older format; empty for the engine's own
/// @return the engine's code; SQLITE_MISUSE when the library that answers to the symbols doesn't encrypt
int unlock(sqlite3* handle, const QByteArray& password, const QByteArray& format);

/// The formats to try when a file doesn't decrypt, newest first, for unlock(); only of an open handle.
QList<QByteArray> olderFormats(sqlite3* handle);

}  // namespace kovanix::engine
