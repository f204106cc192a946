#pragma once

#include <QString>

namespace kovanix {

/// The beginning of a text as a field of the database takes it: no more than 50 UTF-16 units, never half a
/// letter; a letter with too many marks loses some of them.
QString cutToField(const QString& text);

}  // namespace kovanix
