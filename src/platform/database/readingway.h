#pragma once

#include <QSqlDatabase>
#include <QString>
#include <chrono>

#include "database/databaseerror.h"
#include "database/readprogress.h"

namespace kovanix {

/// How a file is open that is only to be read.
enum class ReadingWay {
    shared,  ///< as it lies there, with whoever else has it
    still,   ///< as it lies there, and nobody can write it
    copied,  ///< a copy of it and of its log, which nobody else has
};

/// The name by which the engine opens a file. @param mode  "rw", "ro"; never makes the file
QString fileUri(const QString& path, const QString& mode);

/// Whether this user may write a file and what has to lie beside it, as far as permissions and mounts tell.
bool isWritable(const QString& path);

/// Whether nobody can write a file: its file system, not only this look at it, is mounted to be read.
bool liesOnReadOnlyDisk(const QString& path);

/// Opens a file to read it, which may be one that nothing can be written into or beside.
///
/// A file with a write-ahead log is read with the memory that its users share, which lies in a file beside
/// it. Where that is missing and can't be made, the engine refuses. The file is read without then if nobody
/// can write it; else, and where its log or a rollback journal holds something, a copy of both is made, which
/// is refused while somebody has the file. The copy lies in a folder that only this user enters, and has lost
/// its name by the time this returns: it goes with the process, however that ends.
///
/// One that lies on another machine is opened with the others there, or not at all.
///
/// @param database  with its driver and password, not open. @param withPassword  for what is told
/// @param engine  which errors carry as their source
/// @throws DatabaseError
ReadingWay openToRead(QSqlDatabase& database, const QString& path, bool withPassword, const QString& engine,
                      std::chrono::milliseconds busyTimeout, const CopyProgress& progress = {});

}  // namespace kovanix
