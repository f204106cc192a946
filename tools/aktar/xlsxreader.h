#pragma once

#include <functional>

#include "aktar/celltable.h"
#include "aktar/ziparchive.h"

namespace kovanix::aktar {

/// Reads the first sheet of a workbook that isn't hidden: texts (shared and inline), numbers, dates, and of
/// formulas what they came to last. Macros, links and everything else are passed over.
/// @param rows  told how many have been read
/// @throws RuntimeError in words for the one who chose the file
CellTable readXlsx(ZipArchive& archive, const std::function<void(qint64 rows)>& rows = {});

}  // namespace kovanix::aktar
