#pragma once

#include <QFont>
#include <QPixmap>
#include <QRectF>
#include <QString>
#include <QTextLayout>
#include <memory>

class QPainter;

namespace kovanix {

/// A text fitted to a box and kept ready for painting: on one line where there is room, else broken at
/// blanks, else with smaller glyphs. Words end in an ellipsis where their smallest size isn't small enough;
/// figures, which are a text without letters, shrink as far as they have to. Working it out is
/// done once for each text, font and box; painting again costs only the painting. Control
/// characters aren't drawn.
class FittedText {
public:
    /// In pixels, on a display of any size: what is smaller can't be read at arm's length.
    static constexpr int smallestLegible = 11;

    /// Works out where the glyphs stand; does nothing when none of the arguments changed.
    /// @param box in device independent pixels. @param maxLines lines of its own in the text aren't counted.
    /// @param smallestWords  how small the glyphs of words may get, in pixels
    void fit(const QString& text, const QFont& font, int pixelSize, const QRectF& box,
             Qt::Alignment alignment, int maxLines, int smallestWords = smallestLegible);

    /// What the glyphs of the last fit take of the box.
    const QRectF& bounds() const { return m_bounds; }
    /// The glyphs' size after fitting, in pixels; 0 before the first.
    int pixelSize() const { return m_fittedSize; }
    /// The contrast with what lies behind them at which glyphs of that size are read without effort.
    double wantedContrast() const;
    /// What is painted of the text, without the line breaks that the fit has put in; it ends in an ellipsis
    /// where not all of it has room.
    QString shown() const { return m_layout ? m_layout->text() : QString(); }
    int lineCount() const { return m_layout ? m_layout->lineCount() : 0; }

    /// Paints the last fit. A valid outline is painted around the glyphs, in the strength of its opacity.
    void paint(QPainter& painter, const QColor& color, const QColor& outline = {}) const;

    /// A font's size in pixels on a display of that many dots an inch, whichever way the font states it.
    static int pixelSizeOf(const QFont& font, int dotsPerInch);

private:
    bool layOut(int pixelSize, int maxLines, double width, QTextOption::WrapMode wrap);
    void search(int smallest, int largest, int maxLines);
    void balance();
    void elide(int pixelSize, int maxLines);
    void place();
    void paintOutline(QPainter& painter, const QColor& outline) const;

    QString m_text;
    QFont m_font;
    int m_wantedSize = 0;
    QRectF m_box;
    Qt::Alignment m_alignment;
    int m_maxLines = 0;
    int m_smallestWords = 0;

    std::unique_ptr<QTextLayout> m_layout;
    int m_fittedSize = 0;
    QRectF m_bounds;
    mutable QPixmap m_outline;     // of the last fit, made when first painted
    mutable QRgb m_outlineTone{};  // what it was made in
};

}  // namespace kovanix
