#pragma once

#include <QColor>
#include <QString>
#include <QStringView>

namespace kovanix {

/// A colour as shops' files and programs hold it: 32 bits, low byte red, then green, then blue (255 is pure
/// red). A set top bit means a system colour, by its index in the low byte (8000000F: the button's face).
using ColorValue = quint32;

/// The colour that a value names; a system colour is the toolkit palette's of this moment. An index that
/// names no system colour gives black.
QColor colorOf(ColorValue value);

/// The value of a colour; its transparency is dropped.
ColorValue colorValue(const QColor& color);

/// The decimal text of a value as a signed 32-bit number, the form in which configuration files hold it.
QString colorText(ColorValue value);

/// The value of such a text, read leniently: what is empty or begins with no number is 0 (black).
/// @throws RuntimeError (overflow) for a number beyond 32 bits
ColorValue colorFromText(QStringView text);

}  // namespace kovanix
