#pragma once

#include <QString>
#include <utility>

#include "filelayer.h"
#include "shopbook.h"

namespace kovanix {

/// How a day is traded.
struct DayPlan {
    QString password;              ///< of the shop's file; empty for a plain one
    bool rollbackJournal = false;  ///< as the file of a share is kept
    bool leavesLog = false;        ///< in the middle of the day a till over the network asks for the file
    int sales = 0;
    unsigned seed = 1;
};

/// A day of a shop, and what the engine did to its files.
struct ShopDay {
    FileTrace trace;
    ShopBook book;
    /// Where the log is left for a rollback journal, and the first sale is stored by that: the number of the
    /// first step of it, and of the first behind it.
    std::pair<std::size_t, std::size_t> leaving{};
};

/// Trades for a day on the till's own screen: sales of one line to many, merged lines, weighed goods,
/// quantities of 0, products that were deleted since the scan, sales that the file refuses half-way; the
/// office's writes in between; readers that keep the write-ahead log growing; restarts.
ShopDay tradeForADay(const DayPlan& plan);

}  // namespace kovanix
