#pragma once

#include <QBrush>
#include <QColor>
#include <QPixmap>
#include <QRectF>

#include "widgets/look.h"

class QPainter;
class QWidget;

namespace kovanix {

// What the drawn controls share: their colours' arithmetic and the strokes of a face. Lengths are in device
// independent pixels.

/// Between two colours: share 0 gives the first, 1 the second.
QColor mixed(const QColor& first, const QColor& second, double share);

/// The contrast ratio of two colours, 1 to 21 (WCAG 2.1, relative luminance).
double contrast(const QColor& first, const QColor& second);

/// The colour of a face, and of a caption on such a face, while its control is disabled. The caption stays
/// legible. On a dark page a face is muted
/// towards dark, so that it doesn't shine out of it.
QColor mutedFace(const QColor& color, bool onDark = false);
QColor mutedText(const QColor& text, const QColor& face);

/// The contrast ratios at which small and large glyphs are read without effort, and the size in pixels from
/// which glyphs are large (WCAG 2.1, 1.4.3).
constexpr double legible = 4.5;
constexpr double legibleLarge = 3.0;
constexpr int largeGlyphs = 24;
constexpr int largeBoldGlyphs = 19;

/// The least contrast of an ink on a face that runs from one colour to another.
double contrastOver(const QColor& ink, const QColor& from, const QColor& to);

/// Black or white, whichever stands out better on a ground.
QColor blackOrWhite(const QColor& ground);

/// The wanted ink where it is legible all over a face, else black or white.
QColor inkOn(const QColor& wanted, const QColor& from, const QColor& to);

/// What is painted around glyphs that don't stand out everywhere on the face behind them: a darker or lighter
/// shade of a coloured ink where that does, else black or white, no stronger than it takes to reach the
/// wanted contrast. Invalid where the glyphs reach it by themselves.
QColor outlineFor(const QColor& ink, const QColor& from, const QColor& to, double wanted);

/// An icon is a shape: the same one in another colour, so that it can be seen on every face.
QPixmap inColor(QPixmap shape, const QColor& color);

/// Whether a control stands on a dark page: one whose labels are written in a light ink.
bool standsOnDark(const QWidget& control);
/// The tone of the roles' colours that suits the page on which a control stands.
Tone toneOf(const QWidget& control);

/// The scale of the resizing container that holds the control; 1 outside of one.
double designScale(const QWidget& control);

/// A rounded face with a vertical gradient, a border of one pixel and, when lit, a soft light along its upper
/// edge.
void paintFace(QPainter& painter, const QRectF& bounds, double radius, const QColor& top,
               const QColor& bottom, const QColor& border, bool lit);

/// The ground and the rim of a field: one pixel, two in the colour of the focus while it has that.
/// @param control  whose scale, tone and state they are painted in
/// @param ground  of a field that can be used
void paintField(QPainter& painter, const QRectF& bounds, const QWidget& control, bool enabled, bool focused,
                const QBrush& ground);

/// The border that suits a face of these two colours: darker than a light one, lighter than a black one.
QColor borderFor(const QColor& top, const QColor& bottom);

/// The soft shade inside the upper edge of a face that is held down.
void paintPressedShade(QPainter& painter, const QRectF& bounds, double radius);

/// Three pixels of colour and a thin light line inside, so that it stands out on light, dark and blue faces
/// alike.
void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius);

}  // namespace kovanix
