#pragma once

#include <QStringList>
#include <vector>

#include "appearance/palette.h"

namespace kovanix {

/// How well a text stands out from the face that the same palette gives its control.
struct TextContrast {
    QStringList controls;  ///< those that share their rows of the table
    Palette palette;
    double middle;  ///< contrast ratio (WCAG 2.1) where the caption stands
    double worst;   ///< at the worse end of the face's gradient; the same on a plain face
};

/// The contrast of every text whose own colour and whose ground both stand in the table, from the table
/// alone: in the table's order, each control in the four palettes.
std::vector<TextContrast> textContrasts();

/// Those that fall below a ratio in the middle or at the worse end, as the lines of a Markdown table.
QStringList weakTextLines(double ratio);

}  // namespace kovanix
