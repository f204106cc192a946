#pragma once

#include <QStringList>
#include <functional>

#include "aktar/celltable.h"

namespace kovanix::aktar {

/// A file that was read.
struct SheetFile {
    CellTable table;
    QString description;      ///< what kind of file it turned out to be, in words
    QString sheet = {};       ///< of a workbook: where the rows stand
    QStringList sheets = {};  ///< of a workbook: its sheets that hold something, that one among them
};

/// Which sheet of a workbook was read, and which weren't; empty where there is no other.
QString wordsOfSheets(const SheetFile& file);

/// No file above this is read.
inline constexpr qint64 largestFile = qint64(256) << 20;

/// Reads a file of rows, whatever its name: a text file, a workbook or a page that the till has exported.
/// @param sheet     of a workbook, by its name; empty for the first one that has rows
/// @param progress  told how far the reading is; a total of 0 where that isn't known
/// @throws RuntimeError in words for the one who chose the file
SheetFile readSheetFile(const QString& path, const QString& sheet = {},
                        const std::function<void(qint64 done, qint64 total)>& progress = {});

}  // namespace kovanix::aktar
