#pragma once

#include <QRectF>
#include <QString>
#include <QStringList>

#include "widgets/look.h"

class QFontMetrics;
class QPainter;

namespace kovanix {

// What the grids paint alike: the texts of their cells, their scroll bars, and the signs of lists.

/// A name that is too long breaks into two smaller lines; a number shrinks, and shows as "###" where that is
/// not enough, since one that lost its end would be another number; a code keeps its size and loses its end.
enum class CellText { name, number, code };

/// How large the letters of a name that takes two lines are, beside those of one line.
constexpr double nameInTwoLines = 0.84;

/// Paints a text on one line of the cell, fitted to its width, in the painter's font and pen.
/// @param cell  the room of the glyphs, padding taken off
/// @param horizontal  Qt::AlignLeft, Qt::AlignRight or Qt::AlignHCenter
void paintCellText(QPainter& painter, const QRect& cell, const QString& text, Qt::Alignment horizontal,
                   CellText kind);

/// The lines of a name in that width: one, or two where it is too long. What two lines don't hold loses its
/// middle.
QStringList nameLines(const QString& name, const QFontMetrics& metrics, int width);

/// Whether a name that breaks in one place, at a blank, stands whole on two lines of that width.
bool fitsOnTwoLines(const QString& text, const QFontMetrics& metrics, int width);

/// The number, or "###" where the number would lose a digit in that width.
QString wholeNumber(const QString& text, const QFontMetrics& metrics, int width);

/// A text as a cell shows it: on one line, and no longer than any cell has room for.
QString onOneLine(const QString& text);

/// The style sheet of a scroll bar, upright or lying, that is wide enough for a thumb. A bar that is
/// disabled, because there is nothing to scroll, shows its track and no thumb.
QString scrollBarStyle(double scale = 1.0, Tone tone = Tone::light);

// The signs, each in a square box.
void paintMagnifier(QPainter& painter, const QRectF& box, const QColor& color);
void paintCross(QPainter& painter, const QRectF& box, const QColor& color);
void paintWarning(QPainter& painter, const QRectF& box, const QColor& color);

}  // namespace kovanix
