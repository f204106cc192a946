#pragma once

#include <QVariant>

namespace kovanix {

// What a field holds, the same for every engine: text (QString), whole number (qint64), number (double),
// bytes (QByteArray), or null (an invalid QVariant). A moment is the text "yyyy-MM-dd HH:mm:ss".

/// A value of the toolkit's driver as the room gives it out.
QVariant given(const QVariant& value);

/// A value of the modules as a field takes it; an empty text stays one, an invalid moment is null.
QVariant stored(const QVariant& value);

}  // namespace kovanix
