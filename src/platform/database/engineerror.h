#pragma once

#include <QSqlError>
#include <QString>

#include "database/databaseerror.h"

namespace kovanix {

/// A failure that the toolkit's driver reports, in the engine's own words.
/// @param engine  the name that the error carries as its source
/// @param withPassword  whether the file was opened with a password
DatabaseError engineError(const QSqlError& error, const QString& engine, bool withPassword);

}  // namespace kovanix
