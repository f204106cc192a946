#pragma once

#include <chrono>
#include <functional>

#include "aktar/importplan.h"

namespace kovanix {
class Connection;
}

namespace kovanix::aktar {

/// Told how many of how many rows are done.
using RowsDone = std::function<void(qint64 done, qint64 total)>;

/// What an import is held against.
struct ShopRows {
    StoredRows byKey;
    qint64 lastIdentity = 0;
};

/// Reads the rows of a shop's table whose keys a file mentions. A table that isn't there yet has none.
/// @throws RuntimeError the engine's failure
ShopRows readShopRows(Connection& connection, Kind kind, const ImportRecords& records);

/// How long another till may have to wait for the rows of an import; it gives up itself after five seconds.
inline constexpr std::chrono::milliseconds longestHold{4000};

/// Writes what a plan says: all of it, or nothing.
/// @throws Refused where the shop has changed since the plan was made, or other tills would have to wait
/// longer than that; RuntimeError the engine's failure. Nothing was written then.
void applyPlan(Connection& connection, const ImportPlan& plan, const RowsDone& progress = {},
               std::chrono::milliseconds hold = longestHold);

}  // namespace kovanix::aktar
