#pragma once

#include <QColor>
#include <QString>
#include <array>
#include <span>

#include "widgets/colorvalue.h"
#include "widgets/look.h"

class QWidget;

namespace kovanix {

/// The four looks of the sales screen.
enum class Palette { resim1, resim2, resim3, resim4 };

inline constexpr std::array allPalettes{Palette::resim1, Palette::resim2, Palette::resim3, Palette::resim4};

/// The tone of a look: what the table doesn't name takes the roles' colours in that tone.
Tone toneOf(Palette palette);

/// What a palette sets on a control: a drawn control's property, or the two colours of a plain one.
enum class ColorProperty {
    backcolor1,
    backcolor2,
    backcolorpushed1,
    backcolorpushed2,
    forecolor,
    bordercolor,
    titlecolor1,
    titlecolor2,
    BackColor,
    ForeColor,
};

/// What one palette does to one property: nothing, one value, or two set one after the other.
struct PaletteCell {
    constexpr PaletteCell() = default;
    constexpr PaletteCell(ColorValue value) : values{value, 0}, count(1) {}
    constexpr PaletteCell(ColorValue first, ColorValue second) : values{first, second}, count(2) {}

    /// The value that stays; 0 where the palette leaves the property alone.
    constexpr ColorValue last() const { return count == 0 ? 0 : values[count - 1]; }

    std::array<ColorValue, 2> values{};
    std::size_t count = 0;
};

/// One row of the table: its controls by objectName, a property, and a cell for each palette.
struct PaletteRow {
    const PaletteCell& cell(Palette palette) const { return cells[static_cast<std::size_t>(palette)]; }

    std::span<const char* const> controls;
    ColorProperty property;
    std::array<PaletteCell, 4> cells;
};

/// The whole table, in the order of application; the rows of the total come first.
std::span<const PaletteRow> paletteRows();

/// The name of a property, as the controls call it.
const char* propertyName(ColorProperty property);

/// Sets one colour property of a control. @return false for a control that has no such property.
bool setColorProperty(QWidget& control, ColorProperty property, const QColor& color);
/// Reads it; invalid for a control that has no such property.
QColor colorProperty(const QWidget& control, ColorProperty property);

/// Paints the rows of `toplam` alone.
void paintTotal(QWidget& screen, Palette palette);
/// Paints all other rows, top to bottom, and then by their role the fields that the table doesn't name. A
/// control that the screen lacks is passed over.
void paintPalette(QWidget& screen, Palette palette);

/// What the table holds for one control; the cell's last value. 0 where the palette leaves it alone.
ColorValue paletteColor(const QString& control, ColorProperty property, Palette palette);

}  // namespace kovanix
