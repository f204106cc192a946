#pragma once

#include <QString>

#include "database/databaseerror.h"
#include "database/dialect.h"

namespace kovanix {

// What a shopkeeper is told of a failure of the database.

/// What has happened, and where there is a remedy, that too; empty where only the engine's words say it.
/// @param target  where the data are
QString failureText(DatabaseError::Kind kind, dialect::Target target);

/// That a driver of the toolkit isn't there, and the package that brings it.
/// @param driver  its key, which is told along
QString missingDriverText(const QString& driver);

/// How a server's database treats letters.
struct ServerLocale {
    QString encoding;
    QString provider;  ///< 'c' for the system's library, 'i' for ICU; empty on a server that knows only one
    QString order;
    QString letters;
};

/// Whether it treats them as a file does: only the locale C of the system's library folds the letters A to Z
/// and no others.
bool isSuitable(const ServerLocale& locale);
/// In a refusal: "UTF8, C, ICU"; the letters where they differ from the order: "UTF8, C, C.UTF-8".
QString localeText(const ServerLocale& locale);

}  // namespace kovanix
