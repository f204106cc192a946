#pragma once

#include <QColor>
#include <QList>
#include <QRect>
#include <QString>

class QWidget;

namespace kovanix {

/// A text as a window paints it, on what is painted behind it.
struct PaintedText {
    QString text;
    QString control;  ///< the name of the control that stands there
    QColor ink;
    QRect place;  ///< of the letters, in pixels of the window
    double
        middle;    ///< the contrast ratio (WCAG 2.1) of ink and ground, of half the pixels behind the letters
    double worst;  ///< of all but one in twenty of them
    int letters;   ///< their size in pixels
};

/// The texts that a window shows, painted into a picture and looked at one by one. Left out is what a
/// disabled control shows, and what is painted over. A thin outline around letters counts as ground, which it
/// is the smaller part of.
QList<PaintedText> paintedTexts(QWidget& window);

}  // namespace kovanix
