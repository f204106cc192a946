#pragma once

#include <QString>

#include "filelayer.h"
#include "shopbook.h"

namespace kovanix {

/// How a day is traded.
struct DayPlan {
    QString password;              ///< of the shop's file; empty for a plain one
    bool rollbackJournal = false;  ///< as the file of a share is kept
    int sales = 0;
    unsigned seed = 1;
};

/// A day of a shop, and what the engine did to its files.
struct ShopDay {
    FileTrace trace;
    ShopBook book;
};

/// Trades for a day on the till's own screen: sales of one line to many, merged lines, weighed goods,
/// quantities of 0, products that were deleted since the scan, sales that the file refuses half-way; the
/// office's writes in between; readers that keep the write-ahead log growing; restarts.
ShopDay tradeForADay(const DayPlan& plan);

}  // namespace kovanix
