#pragma once

#include <QString>

#include "database/readprogress.h"
#include "database/rowtable.h"

namespace kovanix {

struct ConnectionCore;

/// Reads all rows of a select from one table in order of entry, in closed chunks by the rows' identities.
/// What has no order of entry (an order of its own, a limit, a view) is read in one go and its rows are
/// numbered from 1.
/// @param progress  told between the chunks; may be empty
/// @throws RuntimeError the engine's failure
RowTable readRows(ConnectionCore& core, const QString& sql, const ReadProgress& progress);

/// Reads one row of a table anew, which was read by that select.
/// @return whether it was another one; a row that is gone, and one that has no identity, stays as it was
/// @throws RuntimeError the engine's failure
bool rereadRow(ConnectionCore& core, const QString& sql, RowTable& table, std::size_t row);

}  // namespace kovanix
