#include <QPaintEvent>
#include <QPainter>

#include "widgets/adodc.h"
#include "widgets/gridcell.h"
#include "widgets/gridmodel.h"
#include "widgets/pictures.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int barWidth = 5;

QFont letters(const QFont& family, int pixels, QFont::Weight weight) {
    QFont font = family;
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

/// Whether a field numbers its rows.
bool isCounter(const QString& field) {
    return field.compare(u"no", Qt::CaseInsensitive) == 0 || field.compare(u"id", Qt::CaseInsensitive) == 0;
}

/// A picture's shape in one colour.
QPixmap tinted(const QString& path, int side, double ratio, const QColor& color) {
    QPixmap picture = sharedIcon(path).pixmap(QSize(side, side), ratio);
    if (picture.isNull())
        return picture;
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(0, 0), picture.deviceIndependentSize()), color);
    return picture;
}

}  // namespace

void TDBGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    const QRegion& dirty = event->region();
    const int rows = m_rows->rowCount();
    const int first = firstRow();
    const int end = std::min(rows, first + visibleRows());
    const int edited = editedPlace();
    const int current = edited >= 0 ? -1 : currentIndex().row();
    for (int row = first; row < end; ++row) {
        const QRect line = rowRect(row);
        if (dirty.intersects(line))
            paintRow(painter, row, line, row == current, row == edited);
    }
    const QRect below(0, rowTop(std::max(first, end)), viewport()->width(), viewport()->height());
    if (dirty.intersects(below))
        painter.fillRect(below, m_layout.color(ColorRole::card));
    if (rows == 0)
        paintEmptyState(painter);
}

void TDBGrid::paintRow(QPainter& painter, int row, const QRect& line, bool current, bool edited) const {
    const ColorRole ground = edited         ? ColorRole::editedRow
                             : current      ? ColorRole::selection
                             : row % 2 == 1 ? ColorRole::zebra
                                            : ColorRole::card;
    painter.fillRect(line, m_layout.color(ground));
    painter.fillRect(QRect(line.left(), line.bottom(), line.width(), 1), m_layout.color(ColorRole::rowLine));
    if (current || edited)
        painter.fillRect(QRect(line.left(), line.top(), m_layout.scaled(barWidth), line.height()),
                         m_layout.color(edited ? ColorRole::editedBar : ColorRole::selectionBar));
    painter.setFont(letters(font(), m_layout.rowText(), current || edited ? QFont::Medium : QFont::Normal));
    for (int column = 0; column < m_layout.columns(); ++column) {
        const QRect cell = m_layout.cell(column, line.top(), line.height() - 1);
        if (cell.width() <= 0)
            continue;
        const GridColumn& shown = this->column(column);
        const bool quiet = shown.isCode() || isCounter(shown.dataField());
        painter.setPen(m_layout.color(quiet && !current && !edited ? ColorRole::mutedInk : ColorRole::ink));
        const bool number = m_rows->isNumber(column);
        const QString text = m_rows->text(row, column);
        // A format may end in a blank: the figures stand below the heading's edge all the same.
        paintCellText(painter, number ? m_layout.textRoom(column, cell) : m_layout.leftTextRoom(column, cell),
                      number ? text.trimmed() : text, number ? Qt::AlignRight : Qt::AlignLeft,
                      number           ? CellText::number
                      : shown.isCode() ? CellText::code
                                       : CellText::name);
    }
    if (!hasFocus() || currentIndex().row() != row || m_col >= m_layout.columns())
        return;
    const QRect cell = m_layout.cell(m_col, line.top(), line.height());
    painter.setPen(QPen(m_layout.color(ColorRole::selectionBar), 2));
    painter.setBrush(Qt::NoBrush);
    if (cell.width() > 2)
        painter.drawRect(cell.adjusted(1, 1, -1, -1));
}

void TDBGrid::paintEmptyState(QPainter& painter) const {
    const EmptyState& state = emptyStateShown();
    if (state.text.isEmpty() && state.hint.isEmpty())
        return;
    const QColor muted = m_layout.color(ColorRole::mutedInk);
    const int side = m_layout.scaled(72);
    const int gap = m_layout.scaled(12);
    const int lineHeight = m_layout.scaled(24);
    const QRect room = viewport()->rect();
    int top = (room.height() - side - 2 * (gap + lineHeight)) / 2;
    const QRect icon((room.width() - side) / 2, top, side, side);
    const double ratio = painter.device()->devicePixelRatioF();
    const QString key = u"%1|%2|%3|%4"_s.arg(state.icon).arg(side).arg(ratio).arg(muted.name());
    if (key != m_emptyIconPath) {
        m_emptyIconPath = key;
        m_emptyIcon = state.icon.isEmpty() ? QPixmap() : tinted(state.icon, side, ratio, muted);
    }
    if (m_emptyIcon.isNull())
        paintMagnifier(painter, icon, muted);
    else
        painter.drawPixmap(icon.topLeft(), m_emptyIcon);
    top += side + gap;
    const auto line = [&](const QString& text, int pixels, QFont::Weight weight, const QColor& ink) {
        painter.setFont(letters(font(), m_layout.text(pixels), weight));
        painter.setPen(ink);
        paintCellText(painter, QRect(gap, top, room.width() - 2 * gap, lineHeight), text, Qt::AlignHCenter,
                      CellText::name);
        top += lineHeight + gap;
    };
    line(state.text, 20, QFont::Medium, m_layout.color(ColorRole::ink));
    line(state.hint, 16, QFont::Normal, muted);
}

}  // namespace kovanix
