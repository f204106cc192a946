#include "widgets/gridbands.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QTransform>
#include <vector>

#include "widgets/drawnframe.h"
#include "widgets/gridcell.h"
#include "widgets/gridlayout.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int radius = 8;

QFont bandFont(const QWidget& band, int pixels, QFont::Weight weight) {
    QFont letters = band.font();
    letters.setPixelSize(pixels);
    letters.setWeight(weight);
    return letters;
}

/// What shows beside the grid's round corners.
QColor groundBehind(const QWidget& grid) {
    for (const QWidget* above = grid.parentWidget(); above; above = above->parentWidget()) {
        if (const auto* frame = qobject_cast<const vkFrame*>(above))
            return frame->backcolor1();
    }
    const QWidget& page = grid.parentWidget() ? *grid.parentWidget() : grid;
    return page.palette().color(page.backgroundRole());
}

}  // namespace

GridHeading::GridHeading(TDBGrid& grid, const GridLayout& layout)
    : QWidget(&grid), m_grid(grid), m_layout(layout) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void GridHeading::setSortMark(int column, Qt::SortOrder order) {
    if (column == m_sortColumn && order == m_sortOrder)
        return;
    m_sortColumn = column;
    m_sortOrder = order;
    update();
}

void GridHeading::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), m_layout.color(ColorRole::heading));
    QColor line = m_layout.color(ColorRole::headingInk);
    line.setAlphaF(0.14F);
    for (int column = 0; column < m_layout.columns(); ++column) {
        QRect cell = m_layout.cell(column, 0, height());
        if (cell.width() <= 0)
            continue;
        const QRect room = m_layout.textRoom(column, cell);
        const bool last = column == m_layout.columns() - 1;
        // The last heading reaches over the scroll bar.
        if (last)
            cell.setRight(width());
        if (column == m_sortColumn)
            painter.fillRect(cell, m_layout.color(ColorRole::sortedHeading));
        if (!last)
            painter.fillRect(QRect(cell.right(), 0, 1, height()), line);
        paintCaption(painter, column, room);
    }
}

void GridHeading::paintCaption(QPainter& painter, int column, const QRect& room) const {
    const GridColumn& shown = m_grid.column(column);
    const bool right = shown.isNumber();
    painter.setFont(bandFont(*this, m_layout.headingText(), QFont::Medium));
    painter.setPen(m_layout.color(ColorRole::headingInk));
    QRect words = room;
    if (column == m_sortColumn) {
        const double arrow = 12 * m_layout.scale;
        const double tall = 9 * m_layout.scale;
        const int taken = m_layout.scaled(12 + 6);
        if (right)
            words.setLeft(words.left() + taken);
        else
            words.setRight(words.right() - taken);
        const int width =
            std::min(words.width(), painter.fontMetrics().horizontalAdvance(shown.caption().trimmed()));
        const double left = right ? words.right() + 1 - width - taken : words.left() + width + taken - arrow;
        const double top = (height() - tall) / 2;
        const bool up = m_sortOrder == Qt::AscendingOrder;
        QPainterPath triangle(QPointF(left, up ? top + tall : top));
        triangle.lineTo(left + arrow, up ? top + tall : top);
        triangle.lineTo(left + arrow / 2, up ? top : top + tall);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(triangle, m_layout.color(ColorRole::sortArrow));
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
    paintCellText(painter, words, shown.caption().trimmed(), right ? Qt::AlignRight : Qt::AlignLeft,
                  CellText::name);
}

void GridHeading::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() == Qt::LeftButton)
        m_pressedColumn =
            m_layout.columnAt(std::min(event->position().toPoint().x(), m_layout.edges.back() - 1));
}

void GridHeading::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton)
        return;
    const int column = std::exchange(m_pressedColumn, -1);
    const QPoint place = event->position().toPoint();
    if (column >= 0 && rect().contains(place) &&
        m_layout.columnAt(std::min(place.x(), m_layout.edges.back() - 1)) == column)
        Q_EMIT pressed(column);
}

void GridHeading::mouseDoubleClickEvent(QMouseEvent* event) {
    // Two quick touches are two presses.
    mousePressEvent(event);
}

GridFooter::GridFooter(TDBGrid& grid, const GridLayout& layout)
    : QWidget(&grid), m_grid(grid), m_layout(layout) {
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void GridFooter::setTotalColumn(int column) {
    m_totalColumn = column;
    update();
}

void GridFooter::setNote(const QString& text) {
    m_note = text;
    update();
}

void GridFooter::tellTexts() {
    QStringList texts;
    for (int column = 0; column < m_grid.columnCount(); ++column) {
        const GridColumn& shown = m_grid.column(column);
        if (!shown.footerText().isEmpty())
            texts << (shown.isNumber() ? shown.caption() + u' ' + shown.footerText() : shown.footerText());
    }
    setAccessibleName(texts.join(u", "_s));
    update();
}

void GridFooter::paintEvent(QPaintEvent* /*event*/) {
    struct Sum {
        QString caption;
        QString text;
        QFont letters;
        int width = 0;
        bool total = false;
    };
    QPainter painter(this);
    painter.fillRect(rect(), m_layout.color(ColorRole::footer));
    painter.fillRect(QRect(0, 0, width(), 2), m_layout.color(ColorRole::heading));
    const QFont small = bandFont(*this, m_layout.text(13), QFont::Normal);
    QString words;
    std::vector<Sum> sums;
    for (int column = 0; column < m_grid.columnCount(); ++column) {
        const GridColumn& shown = m_grid.column(column);
        if (shown.footerText().isEmpty())
            continue;
        if (!shown.isNumber() && words.isEmpty() && sums.empty())
            words = shown.footerText().trimmed();
        else
            sums.push_back(
                {shown.caption().trimmed(), shown.footerText().trimmed(), {}, 0, column == m_totalColumn});
    }
    const QRect room = rect().adjusted(m_layout.scaled(16), 2, -m_layout.scaled(28), 0);
    const int gap = m_layout.scaled(24);
    const QFont wordsFont = bandFont(*this, m_layout.text(20), QFont::Bold);
    const int wordsWidth = std::max(QFontMetrics(wordsFont).horizontalAdvance(words),
                                    QFontMetrics(small).horizontalAdvance(m_note));
    // Sums of a large shop take smaller figures rather than lose some.
    double share = 1.0;
    for (int attempt = 0; attempt < 3; ++attempt) {
        int needed = wordsWidth;
        for (Sum& sum : sums) {
            sum.letters =
                bandFont(*this, static_cast<int>(m_layout.text(sum.total ? 34 : 28) * share), QFont::Bold);
            sum.width = std::max(QFontMetrics(sum.letters).horizontalAdvance(sum.text),
                                 QFontMetrics(small).horizontalAdvance(sum.caption));
            needed += sum.width + gap;
        }
        if (needed <= room.width() || sums.empty())
            break;
        share *= static_cast<double>(room.width() - wordsWidth) / std::max(1, needed - wordsWidth);
        share = std::max(share, 0.2);
    }
    const int line = room.top() + m_layout.scaled(25);
    int right = room.right() + 1;
    for (auto sum = sums.rbegin(); sum != sums.rend(); ++sum) {
        const QRect box(right - sum->width, room.top(), sum->width, room.height());
        painter.setFont(small);
        painter.setPen(m_layout.color(ColorRole::mutedInk));
        painter.drawText(QRect(box.left(), box.top() + m_layout.scaled(2), box.width(), line - box.top()),
                         static_cast<int>(Qt::AlignRight) | Qt::AlignVCenter, sum->caption);
        painter.setFont(sum->letters);
        painter.setPen(m_layout.color(sum->total ? ColorRole::footerTotal : ColorRole::ink));
        painter.drawText(QRect(box.left(), line, box.width(), box.bottom() - line - m_layout.scaled(3)),
                         static_cast<int>(Qt::AlignRight) | Qt::AlignVCenter, sum->text);
        right -= sum->width + gap;
    }
    QRect left(room.left(), room.top(), right - room.left(), room.height());
    painter.setFont(wordsFont);
    painter.setPen(m_layout.color(ColorRole::ink));
    if (m_note.isEmpty()) {
        paintCellText(painter, left, words, Qt::AlignLeft, CellText::name);
        return;
    }
    const int middle = room.center().y() + m_layout.scaled(4);
    left.setBottom(middle);
    paintCellText(painter, left.adjusted(0, m_layout.scaled(8), 0, 0), words, Qt::AlignLeft, CellText::name);
    painter.setFont(small);
    painter.setPen(m_layout.color(ColorRole::mutedInk));
    paintCellText(painter, QRect(left.left(), middle, left.width(), m_layout.scaled(22)), m_note,
                  Qt::AlignLeft, CellText::name);
}

GridRim::GridRim(QWidget* grid, const GridLayout& layout) : QWidget(grid), m_layout(layout) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
}

void GridRim::layOut() {
    setGeometry(parentWidget()->rect());
    const int round = m_layout.scaled(radius);
    // What is no rim isn't painted by it: a change of a row must not reach it.
    setMask(QRegion(rect()) - QRegion(rect().adjusted(round, 1, -round, -1)) -
            QRegion(rect().adjusted(1, round, -1, -round)));
    raise();
}

void GridRim::paintEvent(QPaintEvent* event) {
    const QColor ground = groundBehind(*parentWidget());
    const QColor edge = m_layout.color(ColorRole::edge);
    const int round = m_layout.scaled(radius);
    QPainter painter(this);
    const int across = width() - 2 * round;
    const int down = height() - 2 * round;
    for (const QRect& line : {QRect(round, 0, across, 1), QRect(round, height() - 1, across, 1),
                              QRect(0, round, 1, down), QRect(width() - 1, round, 1, down)})
        painter.fillRect(line, edge);

    // The corners one by one, since most paintings reach one or two of them.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(edge);
    const QRectF circle(0.5, 0.5, 2 * round, 2 * round);
    QPainterPath outside;
    outside.moveTo(circle.left(), circle.center().y());
    outside.arcTo(circle, 180, -90);
    outside.lineTo(circle.center().x(), 0);
    outside.lineTo(0, 0);
    outside.lineTo(0, circle.center().y());
    outside.closeSubpath();
    int turn = 0;
    for (const QPoint& corner :
         {QPoint(0, 0), QPoint(width(), 0), QPoint(width(), height()), QPoint(0, height())}) {
        painter.setTransform(QTransform::fromTranslate(corner.x(), corner.y()).rotate(90.0 * turn++));
        if (!event->region().intersects(painter.transform().mapRect(QRect(0, 0, round + 1, round + 1))))
            continue;
        painter.fillPath(outside, ground);
        painter.drawArc(circle, 90 * 16, 90 * 16);
    }
}

}  // namespace kovanix
