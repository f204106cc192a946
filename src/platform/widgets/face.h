#pragma once

#include <QColor>
#include <QRectF>

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
/// legible.
QColor mutedFace(const QColor& color);
QColor mutedText(const QColor& text, const QColor& face);

/// What is painted around glyphs that could hardly be told from the face behind them; invalid where they
/// stand out.
QColor haloFor(const QColor& text, const QColor& face);

/// The scale of the resizing container that holds the control; 1 outside of one.
double designScale(const QWidget& control);

/// A rounded face with a vertical gradient, a border of one pixel and, when lit, a soft light along its upper
/// edge.
void paintFace(QPainter& painter, const QRectF& bounds, double radius, const QColor& top,
               const QColor& bottom, const QColor& border, bool lit);

/// The border that suits a face of these two colours: darker than a light one, lighter than a black one.
QColor borderFor(const QColor& top, const QColor& bottom);

/// The soft shade inside the upper edge of a face that is held down.
void paintPressedShade(QPainter& painter, const QRectF& bounds, double radius);

/// Three pixels of colour and a thin light line inside, so that it stands out on light, dark and blue faces
/// alike.
void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius);

}  // namespace kovanix
