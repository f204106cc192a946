#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace kovanix {

/// What becomes of a character that the code page lacks.
enum class Lacking {
    questionMark,  ///< "?"
    baseLetter,    ///< the letter without its marks where the code page has that one (č gives c), else "?"
};

/// Text in Windows-1254 (the Turkish single-byte code page), one byte a character.
QByteArray toWindows1254(QStringView text, Lacking lacking = Lacking::questionMark);

/// The text of Windows-1254 bytes. A byte that the code page leaves undefined becomes U+FFFD.
QString fromWindows1254(QByteArrayView bytes);

}  // namespace kovanix
