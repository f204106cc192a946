#pragma once

#include <functional>

#include "aktar/celltable.h"

namespace kovanix::aktar {

/// A file that was read.
struct SheetFile {
    CellTable table;
    QString description;  ///< what kind of file it turned out to be, in words
};

/// No file above this is read.
inline constexpr qint64 largestFile = qint64(256) << 20;

/// Reads a file of rows, whatever its name: a text file, a workbook or a page that the till has exported.
/// @param progress  told how far the reading is; a total of 0 where that isn't known
/// @throws RuntimeError in words for the one who chose the file
SheetFile readSheetFile(const QString& path,
                        const std::function<void(qint64 done, qint64 total)>& progress = {});

}  // namespace kovanix::aktar
