#pragma once

#include <QStringList>
#include <functional>

#include "aktar/celltable.h"
#include "aktar/ziparchive.h"

namespace kovanix::aktar {

/// What was read of a workbook.
struct WorkbookRows {
    CellTable table;
    QString sheet;       ///< where the rows stand
    QStringList sheets;  ///< all that can be seen and hold something, in their order
};

/// The names of sheets for a message: of many only the first ones.
QString listOfSheets(const QStringList& sheets);

/// Reads a sheet of a workbook: texts (shared and inline), numbers, dates, and of formulas what they came to
/// last. Macros, links and everything else are passed over, and so are sheets that are hidden.
/// @param sheet  its name, in any letter case; empty for the first one that has rows
/// @param rows   told how many have been read
/// @throws RuntimeError in words for the one who chose the file
WorkbookRows readXlsx(ZipArchive& archive, const QString& sheet = {},
                      const std::function<void(qint64 rows)>& rows = {});

}  // namespace kovanix::aktar
