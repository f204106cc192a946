#pragma once

#include <QSqlError>
#include <QString>

#include "database/databaseerror.h"
#include "database/dialect.h"

namespace kovanix {

/// What a failure is shown with: what has happened in Turkish, and in brackets behind it the engine's own
/// words, which support asks for. The kinds that only the words can tell of have the words alone,
/// and blank words stay blank.
QString describeFailure(DatabaseError::Kind kind, const QString& words,
                        dialect::Target target = dialect::Target::file);

/// A failure that the toolkit's driver reports, described by its kind.
/// @param engine  the name that the error carries as its source
/// @param withPassword  whether the file was opened with a password
DatabaseError engineError(const QSqlError& error, const QString& engine, bool withPassword);

}  // namespace kovanix
