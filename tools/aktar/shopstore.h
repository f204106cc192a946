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

/// How long other tills may have to wait for an import's rows.
struct Turns {
    /// At once; a till gives up after five seconds. Storing that takes longer is taken back,
    std::chrono::milliseconds longest{4000};
    /// the tills get their turn meanwhile,
    std::chrono::milliseconds pause{1000};
    /// and it is tried again, so often in all.
    int attempts = 5;
};

/// Writes what a plan says: all of it, or nothing.
/// @throws Refused where the shop has changed since the plan was made, or other tills would have to wait
/// longer than they may; RuntimeError the engine's failure. Nothing was written then.
void applyPlan(Connection& connection, const ImportPlan& plan, const RowsDone& progress = {},
               const Turns& turns = {});

}  // namespace kovanix::aktar
