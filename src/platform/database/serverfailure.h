#pragma once

#include <QString>

#include "database/databaseerror.h"

namespace kovanix {

/// What kind of failure a server's code (SQLSTATE) tells of.
DatabaseError::Kind kindOfServerFailure(const QString& state);

/// Whether the server has taken a statement back for the sake of another till's, so that it may be sent
/// again.
bool isServerConflict(const QString& state);

/// As describeFailure, for a server.
QString describeServerFailure(DatabaseError::Kind kind, const QString& words);

}  // namespace kovanix
