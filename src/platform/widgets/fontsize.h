#pragma once

#include <QFont>

class QWidget;

namespace kovanix {

/// Gives a control its font's size at design size, in pixels, and its weight.
void setPixels(QWidget& control, int pixels, QFont::Weight weight = QFont::Normal);

}  // namespace kovanix
