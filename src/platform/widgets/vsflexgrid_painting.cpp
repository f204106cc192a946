#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridcell.h"
#include "widgets/pictures.h"
#include "widgets/vsflexgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

// At the design size.
constexpr double designRadius = 8;
constexpr double currentBar = 4;
constexpr double emptyPicture = 84;
constexpr double emptyLine = 22;
constexpr double emptyHint = 16;
constexpr double emptyGap = 12;
constexpr double emptyMargin = 12;
constexpr double headingShare = 0.87;  // of the cells' letters
constexpr double entryBarShare = 0.45;
// The two lines of a name belong together: closer to each other than to the rows above and below.
constexpr double linesApart = 1.15;  // of the letters
constexpr qsizetype mostShaped = 200;

}  // namespace

QColor VSFlexGrid::color(ColorRole role) const {
    return roleColor(role, toneOf(*this));
}

/// The card that the rows stand on, and beside the heading the place above the scroll bar.
void VSFlexGrid::paintCard() {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = designRadius * designScale(*this);
    const QColor card = color(ColorRole::card);
    paintFace(painter, QRectF(rect()), radius, card, card, color(ColorRole::edge), false);
    if (!verticalScrollBar()->isVisible())
        return;
    QPainterPath inside;
    inside.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    painter.setClipPath(inside);
    painter.fillRect(QRect(viewport()->geometry().right(), 0, width(), m_rowHeight + 1),
                     color(ColorRole::heading));
}

/// Below the heading, as wide as a thumb at any size, and round where the card is.
void VSFlexGrid::dressScrollBar() {
    const double scale = designScale(*this);
    const QString style =
        scrollBarStyle(scale, toneOf(*this)) +
        u"QScrollBar:vertical { margin-top: %1px; border-bottom-right-radius: %2px; }"_s.arg(m_rowHeight)
            .arg(static_cast<int>(designRadius * scale) - 1);
    if (verticalScrollBar()->styleSheet() != style)
        verticalScrollBar()->setStyleSheet(style);
}

void VSFlexGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::TextAntialiasing);
    layOutColumns();
    const QRegion& dirty = event->region();
    const QRect area = viewport()->rect();
    const int corner = static_cast<int>(std::ceil(designRadius * designScale(*this)));
    const QRect card(0, 0, width() - 2, height() - 2);
    if (dirty.boundingRect().top() < corner || dirty.boundingRect().bottom() > card.bottom() - corner) {
        QPainterPath round;
        round.addRoundedRect(card, corner - 1, corner - 1);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setClipPath(round);
    }
    const int scrolled = verticalScrollBar()->value();
    const int first = 1 + scrolled / m_rowHeight;
    const int last = std::min(rows() - 1, (scrolled + area.height()) / m_rowHeight);
    for (int row = first; row <= last; ++row) {
        const QRect line(0, rowTop(row), area.width(), m_rowHeight);
        if (dirty.intersects(line))
            paintLine(painter, row, line);
    }
    const QRect below = bodyBelow(std::max(0, rows() - 1));
    if (!below.isEmpty() && dirty.intersects(below)) {
        painter.fillRect(below, color(ColorRole::card));
        if (!accessibleDescription().isEmpty())
            paintEmptyState(painter);
    }
    // Last, over whatever of a scrolled line reaches below it.
    if (dirty.intersects(QRect(0, 0, area.width(), m_rowHeight)))
        paintHeading(painter);
}

void VSFlexGrid::paintHeading(QPainter& painter) const {
    painter.fillRect(QRect(0, 0, viewport()->width(), m_rowHeight), color(ColorRole::heading));
    if (rows() == 0)
        return;
    QFont letters = font();
    const int ordinary = ordinarySize();
    letters.setPixelSize(std::max(std::min(FittedText::smallestLegible, ordinary),
                                  static_cast<int>(std::lround(ordinary * headingShare))));
    letters.setWeight(QFont::Medium);
    painter.setFont(letters);
    painter.setPen(color(ColorRole::headingInk));
    for (int column = 0; column < cols(); ++column) {
        paintCellText(painter, textRoom(0, column), m_cells[0][static_cast<size_t>(column)],
                      m_columns[static_cast<size_t>(column)].alignment & Qt::AlignHorizontal_Mask,
                      CellText::code);
    }
}

void VSFlexGrid::paintLine(QPainter& painter, int row, const QRect& line) const {
    const QColor ground = color(row % 2 == 1 ? ColorRole::card : ColorRole::zebra);
    const QColor accent = color(ColorRole::selectionBar);
    const bool current = row == m_row;
    // The last line is the one that waits for an entry: it is current most of the time and stays quiet.
    const bool entry = row == rows() - 1;
    painter.fillRect(line, current && !entry ? color(ColorRole::selection) : ground);
    painter.fillRect(QRect(line.left(), line.bottom(), line.width(), 1), color(ColorRole::rowLine));
    if (current) {
        const int bar = static_cast<int>(std::lround(currentBar * designScale(*this)));
        painter.fillRect(QRect(line.left(), line.top(), bar, line.height() - 1),
                         entry ? mixed(ground, accent, entryBarShare) : accent);
    }
    paintTexts(painter, row, color(entry ? ColorRole::disabledInk : ColorRole::ink));
    if (current && hasFocus() && m_col < cols()) {
        painter.setPen(QPen(color(ColorRole::focus), 2));
        painter.setBrush(Qt::NoBrush);
        const QRect cell = cellRect(row, m_col);
        if (cell.width() > 2)
            painter.drawRect(cell.adjusted(1, 1, -1, -2));
    }
}

void VSFlexGrid::paintTexts(QPainter& painter, int row, const QColor& ink) const {
    painter.setPen(ink);
    const std::vector<QString>& line = m_cells[static_cast<size_t>(row)];
    QFont letters = font();
    for (int column = 0; column < cols(); ++column) {
        const QString& text = line[static_cast<size_t>(column)];
        const QRect cell = textRoom(row, column);
        if (text.isEmpty() || cell.width() <= 0)
            continue;
        letters.setPixelSize(letterSize(column));
        painter.setFont(letters);
        paintText(painter, column, cell, text);
    }
}

/// In the painter's font and pen.
void VSFlexGrid::paintText(QPainter& painter, int column, const QRect& cell, const QString& text) const {
    const Shaped& drawn = shaped(column, text, painter.font(), cell.width());
    const int apart = static_cast<int>(std::lround(drawn.letterSize * linesApart));
    const int lineHeight = painter.fontMetrics().height();
    const int block = lineHeight + apart * static_cast<int>(drawn.lines.size() - 1);
    const bool right = m_columns[static_cast<size_t>(column)].alignment.testFlag(Qt::AlignRight);
    int top = cell.top() + (cell.height() - block + 1) / 2;  // a whole pixel, so that the letters stay sharp
    for (const QStaticText& line : drawn.lines) {
        painter.drawStaticText(
            QPointF(right ? cell.left() + cell.width() - line.size().width() : cell.left(), top), line);
        top += apart;
    }
}

/// Breaking and shaping a text takes most of the time of its painting, and the ticket is painted again
/// whenever the page behind its corners is.
const VSFlexGrid::Shaped& VSFlexGrid::shaped(int column, const QString& text, const QFont& letters,
                                             int width) const {
    m_shaped.resize(m_columns.size());
    QHash<QString, Shaped>& known = m_shaped[static_cast<size_t>(column)];
    if (known.size() >= mostShaped && !known.contains(text))
        known.clear();
    Shaped& entry = known[text];
    if (entry.letterSize == letters.pixelSize() && entry.width == width)
        return entry;
    entry = {letters.pixelSize(), width, {}};
    const QFontMetrics metrics(letters);
    QStringList lines;
    if (holdsNames(column))
        lines = nameLines(text, metrics, width);
    else if (m_columns[static_cast<size_t>(column)].alignment.testFlag(Qt::AlignRight))
        lines = {wholeNumber(onOneLine(text), metrics, width)};
    else
        // Eliding goes by parts of pixels, letter sizes by whole ones.
        lines = {metrics.horizontalAdvance(onOneLine(text)) <= width
                     ? onOneLine(text)
                     : metrics.elidedText(onOneLine(text), Qt::ElideRight, width)};
    for (const QString& line : std::as_const(lines)) {
        QStaticText prepared(line);
        prepared.setTextFormat(Qt::PlainText);
        prepared.prepare({}, letters);
        entry.lines.push_back(prepared);
    }
    return entry;
}

void VSFlexGrid::paintEmptyState(QPainter& painter) {
    const double scale = designScale(*this);
    const QColor muted = color(ColorRole::mutedInk);
    const QRectF room = bodyBelow(rows() - 1);
    const double side = emptyPicture * scale;
    const double gap = emptyGap * scale;
    const double margin = emptyMargin * scale;
    const double ratio = devicePixelRatioF();
    const QString key = u"%1|%2|%3"_s.arg(side).arg(ratio).arg(muted.name());
    if (key != m_emptyPictureKey) {
        m_emptyPictureKey = key;
        m_emptyPicture =
            inColor(sharedIcon(m_emptyState.picture).pixmap(QSizeF(side, side).toSize(), ratio), muted);
    }
    QFont letters = font();
    const auto lineHeight = [&](double pixels, QFont::Weight weight) {
        letters.setPixelSize(std::max(FittedText::smallestLegible, static_cast<int>(pixels * scale)));
        letters.setWeight(weight);
        return std::ceil(QFontMetricsF(letters).height()) + 2;
    };
    const double height =
        side + gap + lineHeight(emptyLine, QFont::Medium) +
        static_cast<double>(m_emptyState.hints.size()) * (gap / 2 + lineHeight(emptyHint, QFont::Normal));
    double top = room.top() + std::max(0.0, (room.height() - height) / 2);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QPointF(std::round((room.width() - side) / 2), std::round(top)), m_emptyPicture);
    top += side + gap;
    const auto line = [&](const QString& text, double pixels, QFont::Weight weight, ColorRole role) {
        const double high = lineHeight(pixels, weight);
        FittedText fitted;
        fitted.fit(text, letters, letters.pixelSize(), QRectF(margin, top, room.width() - 2 * margin, high),
                   Qt::AlignCenter, 1);
        fitted.paint(painter, color(role));
        top += high + gap / 2;
    };
    line(m_emptyState.line, emptyLine, QFont::Medium, ColorRole::ink);
    for (const QString& hint : m_emptyState.hints)
        line(hint, emptyHint, QFont::Normal, ColorRole::mutedInk);
}

}  // namespace kovanix
