#pragma once

#include <QString>
#include <QStringList>

namespace kovanix {

/// The folder in which the program keeps the shop's files; set once at start, without a trailing separator.
QString applicationFolder();
void setApplicationFolder(const QString& folder);

/// Which folder that is, the first of: a folder given on the command line; the variable KOVANIX_FOLDER; the
/// program's own folder when it holds one of the named files; "kovanix" in the user's data folder.
///
/// @param commandLine  the folder of the command line; empty when none was given
/// @param markers      file names that mark the program's own folder as the one in use
/// @return an absolute path without a trailing separator; it need not exist
QString chooseApplicationFolder(const QString& commandLine, const QStringList& markers);

/// Joins a stored name such as "\Kovanix.config" to a folder, with the machine's separator. An empty folder
/// gives the name below the root.
QString joinStored(const QString& folder, const QString& storedName);

/// Where a stored path with a drive letter ("C:\kovanix\urun raporu.xls") lies on this machine: below the
/// drive's folder, which is the user's documents folder unless KOVANIX_DRIVE_C (or the variable of another
/// letter) names one. A path without a drive letter comes back as it is.
QString drivePath(const QString& storedPath);

/// The path of a file that ships with the program, such as "kullanim/index.html": it lies in the data folder
/// beside the program's own, where the build puts it and where it is installed.
QString sharedFile(const QString& name);

}  // namespace kovanix
