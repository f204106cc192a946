#include "widgets/gridcell.h"

#include <QFontInfo>
#include <QPainter>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

#include "widgets/face.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

// A share of the ordinary size at which a number can still be read.
constexpr double smallestNumber = 0.6;
constexpr int smallestGlyphs = 6;
// A name is read, not only recognised.
constexpr int smallestName = 11;
// More than any cell has room for. A file may hold far longer texts, and every glyph measured costs time.
constexpr qsizetype mostGlyphs = 1000;

/// The ordinary font at a share of its size, but not below a size that it isn't below itself.
QFont smallerFont(const QFont& ordinary, double share, int floor) {
    const int size = QFontInfo(ordinary).pixelSize();
    QFont smaller = ordinary;
    smaller.setPixelSize(std::max(static_cast<int>(size * share), std::min(floor, size)));
    return smaller;
}

/// Whether a blank stands between a number and the unit that ends the name: "400 g" stays together.
bool holdsUnit(const QString& text, qsizetype blank) {
    return blank > 0 && text[blank - 1].isDigit() && text.indexOf(u' ', blank + 1) < 0;
}

/// The blank at which a name breaks so that both of its lines are whole: the last such, but one that parts a
/// number from its unit only where there is no other. -1 where no blank does.
qsizetype wholeBreak(const QString& text, const QFontMetrics& metrics, int width) {
    qsizetype parting = -1;
    qsizetype best = -1;
    for (qsizetype blank = text.indexOf(u' '); blank >= 0; blank = text.indexOf(u' ', blank + 1)) {
        if (metrics.horizontalAdvance(text.left(blank)) > width)
            break;
        if (metrics.horizontalAdvance(text.mid(blank + 1)) <= width)
            (holdsUnit(text, blank) ? parting : best) = blank;
    }
    return best >= 0 ? best : parting;
}

/// A second line that is still too long loses its middle, since sizes stand at the end of names.
QString inTwoLines(const QString& text, const QFontMetrics& metrics, int width) {
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    qsizetype end = wholeBreak(text, metrics, width);
    if (end >= 0)
        return text.left(end) + u'\n' + text.mid(end + 1);
    for (qsizetype blank = text.indexOf(u' '); blank >= 0; blank = text.indexOf(u' ', blank + 1)) {
        if (metrics.horizontalAdvance(text.left(blank)) > width)
            break;
        if (end < 0 || !holdsUnit(text, blank))
            end = blank;
    }
    if (end < 0)
        return metrics.elidedText(text, Qt::ElideMiddle, width);
    return text.left(end) + u'\n' + metrics.elidedText(text.mid(end + 1), Qt::ElideMiddle, width);
}

/// Barcodes, telephone numbers, dates: no numbers, but one that lost a digit would be another.
bool isFigures(const QString& text) {
    return std::all_of(text.begin(), text.end(), [](QChar letter) {
        return letter.isDigit() || QStringView(u" .:,-/+()").contains(letter);
    });
}

QPen signPen(const QColor& color, double width) {
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

/// Paints in a square of 24 units.
template <class Paint>
void paintSign(QPainter& painter, const QRectF& box, const Paint& paint) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(box.topLeft());
    painter.scale(box.width() / 24, box.height() / 24);
    painter.setBrush(Qt::NoBrush);
    paint();
    painter.restore();
}

}  // namespace

QString wholeNumber(const QString& text, const QFontMetrics& metrics, int width) {
    if (metrics.horizontalAdvance(text) <= width)
        return text;
    const QChar sign = u'#';
    return QString(std::max(1, width / metrics.horizontalAdvance(sign)), sign);
}

// Line ends would break the two lines that there is room for.
QString onOneLine(const QString& text) {
    QString line = text.size() > mostGlyphs ? text.left(mostGlyphs) + QChar(0x2026) : text;
    for (QChar& letter : line) {
        if (letter.isSpace() || letter == QChar::LineSeparator || letter == QChar::ParagraphSeparator)
            letter = u' ';
    }
    return line;
}

bool fitsOnTwoLines(const QString& text, const QFontMetrics& metrics, int width) {
    return metrics.horizontalAdvance(text) <= width || wholeBreak(text, metrics, width) >= 0;
}

QStringList nameLines(const QString& name, const QFontMetrics& metrics, int width) {
    return inTwoLines(onOneLine(name), metrics, width).split(u'\n');
}

void paintCellText(QPainter& painter, const QRect& cell, const QString& text, Qt::Alignment horizontal,
                   CellText kind) {
    if (text.isEmpty() || cell.width() <= 0)
        return;
    const QString line = onOneLine(text);
    const QFont ordinary = painter.font();
    const auto flags = static_cast<int>(horizontal.toInt()) | Qt::AlignVCenter;
    // Shaping the glyphs is most of the work, so they are measured and painted in one go.
    QTextLayout layout(line, ordinary, painter.device());
    layout.setCacheEnabled(true);
    layout.beginLayout();
    const QTextLine whole = layout.createLine();
    layout.endLayout();
    const double width = whole.horizontalAdvance();
    const double room = cell.width() - width;
    if (room > -0.5) {
        const double left = horizontal.testFlag(Qt::AlignRight)     ? room
                            : horizontal.testFlag(Qt::AlignHCenter) ? room / 2
                                                                    : 0;
        whole.draw(&painter, QPointF(cell.left() + left, cell.top() + (cell.height() - whole.height()) / 2));
        return;
    }
    if (kind == CellText::code) {
        painter.drawText(cell, flags, painter.fontMetrics().elidedText(line, Qt::ElideRight, cell.width()));
        return;
    }
    const double fitting = std::max(cell.width() / width, smallestNumber);
    painter.setFont(kind == CellText::number || isFigures(line)
                        ? smallerFont(ordinary, fitting, smallestGlyphs)
                        : smallerFont(ordinary, nameInTwoLines, smallestName));
    const QFontMetrics smaller(painter.font());
    painter.drawText(cell, flags,
                     kind == CellText::number ? wholeNumber(line, smaller, cell.width())
                                              : inTwoLines(line, smaller, cell.width()));
    painter.setFont(ordinary);
}

QString scrollBarStyle(double scale, Tone tone) {
    const auto scaled = [scale](int length) {
        return QString::number(static_cast<int>(std::lround(length * scale)));
    };
    const QColor line = roleColor(ColorRole::fieldLine, tone);
    const int thumb = scaled(28).toInt() - 2 * scaled(6).toInt();
    const int radius = thumb / 2;
    // The radius has to stay below half of the thumb, or the toolkit leaves the corners square.
    const QString upright =
        u"QScrollBar:vertical { width: %1px; background: %2; border: none; margin: 0; }"
        u"QScrollBar::handle:vertical { background: %3; border-radius: %4px; min-height: %5px; "
        u"margin: %6px %7px; }"
        u"QScrollBar::handle:vertical:pressed { background: %8; }"
        u"QScrollBar::handle:vertical:disabled { background: transparent; }"
        u"QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }"
        u"QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }"_s;
    const QString lying =
        u"QScrollBar:horizontal { height: %1px; background: %2; border: none; margin: 0; }"
        u"QScrollBar::handle:horizontal { background: %3; border-radius: %4px; min-width: %5px; "
        u"margin: %7px %6px; }"
        u"QScrollBar::handle:horizontal:pressed { background: %8; }"
        u"QScrollBar::handle:horizontal:disabled { background: transparent; }"
        u"QScrollBar::add-line:horizontal, QScrollBar::sub-line:horizontal { width: 0; }"
        u"QScrollBar::add-page:horizontal, QScrollBar::sub-page:horizontal { background: transparent; }"_s;
    return QString(upright + lying)
        .arg(scaled(28), roleColor(ColorRole::ground, tone).name(),
             mixed(line, roleColor(ColorRole::edge, tone), 0.44).name(), QString::number(radius), scaled(44),
             scaled(4), scaled(6), line.name());
}

void paintMagnifier(QPainter& painter, const QRectF& box, const QColor& color) {
    paintSign(painter, box, [&] {
        painter.setPen(signPen(color, 2));
        painter.drawEllipse(QPointF(10.5, 10.5), 6.8, 6.8);
        painter.drawLine(QPointF(15.6, 15.6), QPointF(21, 21));
    });
}

void paintCross(QPainter& painter, const QRectF& box, const QColor& color) {
    paintSign(painter, box, [&] {
        painter.setPen(signPen(color, 2.4));
        painter.drawLine(QPointF(5, 5), QPointF(19, 19));
        painter.drawLine(QPointF(19, 5), QPointF(5, 19));
    });
}

void paintWarning(QPainter& painter, const QRectF& box, const QColor& color) {
    paintSign(painter, box, [&] {
        painter.setPen(signPen(color, 2));
        painter.drawPolygon(QPolygonF({QPointF(12, 2.8), QPointF(22.2, 20.5), QPointF(1.8, 20.5)}));
        painter.setPen(signPen(color, 2.6));
        painter.drawLine(QPointF(12, 9.5), QPointF(12, 14.5));
        painter.drawPoint(QPointF(12, 17.4));
    });
}

}  // namespace kovanix
