#pragma once

#include "database/databaseengine.h"
#include "database/dialect.h"

namespace kovanix {

/// Adds a counter column behind the columns of a table and numbers its rows from 1 in order of entry: in one
/// transaction, with the table's indexes and triggers. The engine itself adds no such column to a table that
/// exists.
/// @throws RuntimeError, the table being untouched, where it is missing, a view or has such a column or any
/// key.
void rebuildWithCounter(DatabaseEngine& engine, const dialect::AddColumn& counter);

}  // namespace kovanix
