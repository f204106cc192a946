#pragma once

#include <QString>

namespace kovanix {

/// Chooses the application folder for this process and sets it. A folder that doesn't exist yet is delivered:
/// made with an empty database file and a configuration file that holds the first quick-sale page, all of
/// them readable by their owner only. An existing folder and its files keep their permissions. The export
/// folder (C:\kovanix, see drivePath) is made wherever it is missing. A folder that can't be made is left
/// absent: the first database action then tells.
///
/// @param commandLine  the folder given on the command line; empty when none was
void prepareShopFolder(const QString& commandLine);

/// The same choice for a program that only looks at a shop: nothing is made.
void findShopFolder(const QString& commandLine);

}  // namespace kovanix
