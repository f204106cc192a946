#include "widgets/colorvalue.h"

#include <QGuiApplication>
#include <QPalette>
#include <array>
#include <cmath>
#include <limits>

#include "runtime/runtimeerror.h"
#include "values/numbers.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr ColorValue systemBit = 0x80000000;

struct PaletteColor {
    QPalette::ColorRole role;
    QPalette::ColorGroup group = QPalette::Active;
};

constexpr std::array<PaletteColor, 25> systemColors{{
    {QPalette::Mid},                             // 0, the ground of a scroll bar
    {QPalette::Window},                          // 1, the desktop
    {QPalette::Highlight},                       // 2, the title of the active window
    {QPalette::Mid},                             // 3, the title of another one
    {QPalette::Window},                          // 4, a menu
    {QPalette::Base},                            // 5, the ground of a window
    {QPalette::Dark},                            // 6, its frame
    {QPalette::WindowText},                      // 7, the text of a menu
    {QPalette::Text},                            // 8, the text in a window
    {QPalette::HighlightedText},                 // 9, the text of the active title
    {QPalette::Button},                          // 10, the border of the active window
    {QPalette::Button},                          // 11, the border of another one
    {QPalette::Dark},                            // 12, the ground behind inner windows
    {QPalette::Highlight},                       // 13, what is selected
    {QPalette::HighlightedText},                 // 14, the text of it
    {QPalette::Button},                          // 15 (0F), the face of a button
    {QPalette::Dark},                            // 16, its shaded edge
    {QPalette::WindowText, QPalette::Disabled},  // 17, the text of what can't be used now
    {QPalette::ButtonText},                      // 18 (12), the text of a button
    {QPalette::WindowText},                      // 19, the text of another window's title
    {QPalette::Light},                           // 20, the lit edge of a button
    {QPalette::Shadow},                          // 21, its dark shadow
    {QPalette::Midlight},                        // 22, its lighter side
    {QPalette::ToolTipText},                     // 23, the text of a tip
    {QPalette::ToolTipBase},                     // 24, its ground
}};

QColor systemColor(ColorValue index) {
    if (index >= systemColors.size())
        return Qt::black;
    const auto [role, group] = systemColors[index];
    return QGuiApplication::palette().color(group, role);
}

}  // namespace

QColor colorOf(ColorValue value) {
    if (value & systemBit)
        return systemColor(value & 0xFF);
    return QColor::fromRgb(value & 0xFF, value >> 8 & 0xFF, value >> 16 & 0xFF);
}

ColorValue colorValue(const QColor& color) {
    return static_cast<ColorValue>(color.red()) | static_cast<ColorValue>(color.green()) << 8 |
           static_cast<ColorValue>(color.blue()) << 16;
}

QString colorText(ColorValue value) {
    return QString::number(static_cast<qint32>(value));
}

ColorValue colorFromText(QStringView text) {
    const double number = std::nearbyint(numericPrefix(text));
    if (number < std::numeric_limits<qint32>::min() || number > std::numeric_limits<qint32>::max())
        throw RuntimeError(RuntimeError::overflow, u"Overflow"_s);
    return static_cast<ColorValue>(static_cast<qint32>(number));
}

}  // namespace kovanix
