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

}  // namespace kovanix
