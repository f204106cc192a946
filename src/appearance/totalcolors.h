#pragma once

#include <QColor>
#include <QString>
#include <array>

namespace kovanix {

class DrawnButton;

// The five colours that make up the look of the total, on a drawn button and in the configuration. The file
// holds decimal colour values (widgets/colorvalue.h), the button holds what they look like: a system colour
// comes back from a button as the plain colour that it had become.

/// In the order of their keys.
enum class TotalColor { forecolor, backcolor1, backcolor2, backcolorpushed1, backcolorpushed2 };

inline constexpr std::array totalColors{TotalColor::forecolor, TotalColor::backcolor1, TotalColor::backcolor2,
                                        TotalColor::backcolorpushed1, TotalColor::backcolorpushed2};

/// The three sets of five keys: the live colours (toplamtema1 to 5), and the two saved ones (toplamtemakyt1
/// to 5 and toplamtemakyt6 to 10).
enum class TotalSet { live, saved1, saved2 };

QColor totalColor(const DrawnButton& button, TotalColor color);
void setTotalColor(DrawnButton& button, TotalColor color, const QColor& value);

/// The configuration key of one colour of a set.
QString totalKey(TotalSet set, TotalColor color);

/// One colour of a set as the file holds it now; an empty key and a text without a number are black.
/// @throws RuntimeError (overflow) for a number beyond 32 bits
QColor storedTotalColor(TotalSet set, TotalColor color);
void storeTotalColor(TotalSet set, TotalColor color, const QColor& value);

/// Gives a button the five colours of a set. A number beyond 32 bits leaves its property as it is.
void applyTotalColors(DrawnButton& button, TotalSet set);

}  // namespace kovanix
