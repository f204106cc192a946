#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

namespace kovanix {

/// Text in Windows-1254 (the Turkish single-byte code page), one byte a character. A character that the code
/// page lacks becomes "?".
QByteArray toWindows1254(QStringView text);

/// The text of Windows-1254 bytes. A byte that the code page leaves undefined becomes U+FFFD.
QString fromWindows1254(QByteArrayView bytes);

}  // namespace kovanix
