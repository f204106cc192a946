#pragma once

#include <QString>

#include "database/tableshape.h"

namespace kovanix {

/// A column of a database file.
/// @param declared  the type that it was declared with, whatever stands there ("TEXT(50)", "timestamp", "")
TableColumn declaredColumn(const QString& name, const QString& declared);

}  // namespace kovanix
