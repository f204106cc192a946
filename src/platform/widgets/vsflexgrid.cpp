#include "widgets/vsflexgrid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "runtime/runtimeerror.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridcell.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int badIndex = 381;
constexpr int startCount = 2;
constexpr int cellPadding = 10;
constexpr int firstNumberColumn = 3;
// What is kept for the columns that take the rest, where the others ask for more than there is.
constexpr double smallestRest = 0.2;

[[noreturn]] void throwBadIndex() {
    throw RuntimeError(badIndex, u"Invalid property array index"_s, u"VSFlexGrid"_s);
}

Qt::Alignment startAlignment(int column) {
    return (column >= firstNumberColumn ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

}  // namespace

VSFlexGrid::VSFlexGrid(QWidget* parent) : QAbstractScrollArea(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setFrameStyle(static_cast<int>(QFrame::Box) | static_cast<int>(QFrame::Plain));
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setStyleSheet(scrollBarStyle());
    QPalette colors = palette();
    colors.setColor(QPalette::Base, roleColor(ColorRole::card));
    colors.setColor(QPalette::AlternateBase, roleColor(ColorRole::zebra));
    colors.setColor(QPalette::Text, roleColor(ColorRole::ink));
    colors.setColor(QPalette::Button, roleColor(ColorRole::heading));
    colors.setColor(QPalette::ButtonText, roleColor(ColorRole::headingInk));
    colors.setColor(QPalette::Highlight, roleColor(ColorRole::focus));
    colors.setColor(QPalette::Midlight, roleColor(ColorRole::rowLine));
    colors.setColor(QPalette::WindowText, roleColor(ColorRole::edge));
    setPalette(colors);
    // Every pixel is painted by us.
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    setCols(startCount);
    setRows(startCount);
}

int VSFlexGrid::rows() const {
    return static_cast<int>(m_cells.size());
}

int VSFlexGrid::cols() const {
    return static_cast<int>(m_columns.size());
}

void VSFlexGrid::check(int row, int column) const {
    if (row < 0 || row >= rows() || column < 0 || column >= cols())
        throwBadIndex();
}

void VSFlexGrid::checkRow(int row) const {
    if (row < 0 || row >= rows())
        throwBadIndex();
}

void VSFlexGrid::checkColumn(int column) const {
    if (column < 0 || column >= cols())
        throwBadIndex();
}

void VSFlexGrid::setRows(int count) {
    if (count < 0)
        throwBadIndex();
    const int before = rows();
    if (count == before)
        return;
    const QRect changed = bodyBelow(std::min(before, count) - 1);
    m_cells.resize(static_cast<size_t>(count), std::vector<QString>(m_columns.size()));
    m_row = std::clamp(m_row, 0, std::max(0, count - 1));
    updateScrollBar();
    viewport()->update(changed);
}

void VSFlexGrid::setCols(int count) {
    if (count < 0)
        throwBadIndex();
    if (count == cols())
        return;
    for (std::vector<QString>& line : m_cells)
        line.resize(static_cast<size_t>(count));
    for (int column = cols(); column < count; ++column)
        m_columns.push_back({-1, startAlignment(column)});
    m_columns.resize(static_cast<size_t>(count));
    m_col = std::clamp(m_col, 0, std::max(0, count - 1));
    columnsChanged();
}

QString VSFlexGrid::textMatrix(int row, int column) const {
    check(row, column);
    return m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)];
}

void VSFlexGrid::setTextMatrix(int row, int column, const QString& text) {
    check(row, column);
    QString& cell = m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)];
    if (cell == text)
        return;
    cell = text;
    updateRow(row);
}

void VSFlexGrid::clear() {
    for (std::vector<QString>& line : m_cells)
        std::fill(line.begin(), line.end(), QString());
    viewport()->update();
}

void VSFlexGrid::removeItem(int row) {
    checkRow(row);
    // The heading is no line of the list.
    if (row == 0)
        throwBadIndex();
    const QRect changed = bodyBelow(row - 1);
    m_cells.erase(m_cells.begin() + row);
    m_row = std::min(m_row, rows() - 1);
    updateScrollBar();
    viewport()->update(changed);
}

void VSFlexGrid::setRow(int row) {
    checkRow(row);
    if (row == m_row)
        return;
    updateRow(m_row);
    m_row = row;
    updateRow(m_row);
}

void VSFlexGrid::setCol(int column) {
    checkColumn(column);
    if (column == m_col)
        return;
    m_col = column;
    updateRow(m_row);
}

int VSFlexGrid::colWidth(int column) const {
    checkColumn(column);
    return m_columns[static_cast<size_t>(column)].width;
}

void VSFlexGrid::setColWidth(int column, int pixels) {
    checkColumn(column);
    Column& target = m_columns[static_cast<size_t>(column)];
    if (target.width == pixels)
        return;
    target.width = pixels;
    columnsChanged();
}

Qt::Alignment VSFlexGrid::colAlignment(int column) const {
    checkColumn(column);
    return m_columns[static_cast<size_t>(column)].alignment;
}

void VSFlexGrid::setColAlignment(int column, Qt::Alignment alignment) {
    checkColumn(column);
    Column& target = m_columns[static_cast<size_t>(column)];
    if (target.alignment == alignment)
        return;
    target.alignment = alignment;
    viewport()->update();
}

void VSFlexGrid::setRowHeight(int pixels) {
    pixels = std::max(1, pixels);
    if (pixels == m_rowHeight)
        return;
    m_rowHeight = pixels;
    updateScrollBar();
    viewport()->update();
}

void VSFlexGrid::ensureRowVisible(int row) {
    checkRow(row);
    if (row == 0)
        return;
    const int top = (row - 1) * m_rowHeight;
    const int room = viewport()->height() - m_rowHeight;
    QScrollBar* bar = verticalScrollBar();
    if (top < bar->value())
        bar->setValue(top);
    else if (top + m_rowHeight > bar->value() + room)
        bar->setValue(wholeRows(top + m_rowHeight - room));
}

void VSFlexGrid::columnsChanged() {
    m_edges.clear();
    viewport()->update();
}

void VSFlexGrid::layOutColumns() const {
    const int width = viewport()->width();
    const double scale = designScale(*this);
    if (m_edges.size() == m_columns.size() + 1 && m_edgesScale == scale)
        return;
    double asked = 0;
    int takers = 0;
    for (const Column& column : m_columns) {
        if (column.width < 0)
            ++takers;
        else
            asked += column.width * scale;
    }
    const double rest = takers > 0 ? std::max(width - asked, width * smallestRest) : 0.0;
    const double factor = asked > 0 && (takers == 0 || asked > width - rest) ? (width - rest) / asked : 1.0;
    m_edgesScale = scale;
    m_edges.assign(1, 0);
    double edge = 0;
    for (const Column& column : m_columns) {
        edge += column.width < 0 ? rest / takers : column.width * scale * factor;
        m_edges.push_back(static_cast<int>(std::lround(edge)));
    }
}

void VSFlexGrid::updateScrollBar() {
    const int room = viewport()->height() - m_rowHeight;
    const int need = std::max(0, rows() - 1) * m_rowHeight;
    QScrollBar* bar = verticalScrollBar();
    bar->setPageStep(std::max(1, room));
    bar->setSingleStep(m_rowHeight);
    bar->setRange(0, wholeRows(std::max(0, need - room)));
}

/// The next scroll position from here on at which the topmost row stands whole.
int VSFlexGrid::wholeRows(int position) const {
    return (position + m_rowHeight - 1) / m_rowHeight * m_rowHeight;
}

QRect VSFlexGrid::bodyBelow(int row) const {
    const int top = std::max(row < 0 ? 0 : m_rowHeight, rowTop(row) + m_rowHeight);
    return {0, top, viewport()->width(), std::max(0, viewport()->height() - top)};
}

int VSFlexGrid::rowTop(int row) const {
    return row <= 0 ? row * m_rowHeight : row * m_rowHeight - verticalScrollBar()->value();
}

void VSFlexGrid::updateRow(int row) {
    QRect line(0, rowTop(row), viewport()->width(), m_rowHeight);
    if (row > 0)
        line.setTop(std::max(line.top(), m_rowHeight));
    if (line.isValid() && line.intersects(viewport()->rect()))
        viewport()->update(line);
}

QRect VSFlexGrid::cellRect(int row, int column) const {
    layOutColumns();
    const int left = m_edges[static_cast<size_t>(column)];
    return {left, rowTop(row), m_edges[static_cast<size_t>(column) + 1] - left, m_rowHeight};
}

void VSFlexGrid::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBar();
    columnsChanged();
}

void VSFlexGrid::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::PaletteChange ||
        event->type() == QEvent::EnabledChange)
        viewport()->update();
}

bool VSFlexGrid::event(QEvent* event) {
    if (event->type() == QEvent::ToolTipChange &&
        (accessibleName().isEmpty() || accessibleName() == m_givenName)) {
        m_givenName = toolTip();
        setAccessibleName(m_givenName);
    }
    return QAbstractScrollArea::event(event);
}

void VSFlexGrid::focusInEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusInEvent(event);
    updateRow(m_row);
}

void VSFlexGrid::focusOutEvent(QFocusEvent* event) {
    QAbstractScrollArea::focusOutEvent(event);
    updateRow(m_row);
}

void VSFlexGrid::scrollContentsBy(int, int) {
    viewport()->update(bodyBelow(0));
}

void VSFlexGrid::mousePressEvent(QMouseEvent* event) {
    const QPoint point = event->position().toPoint();
    layOutColumns();
    m_mouseRow = -1;
    m_mouseCol = -1;
    const int row = point.y() < m_rowHeight ? 0 : (point.y() + verticalScrollBar()->value()) / m_rowHeight;
    if (point.y() >= 0 && row < rows())
        m_mouseRow = row;
    const auto next = std::upper_bound(m_edges.begin(), m_edges.end(), point.x());
    if (next != m_edges.begin() && next != m_edges.end())
        m_mouseCol = static_cast<int>(next - m_edges.begin()) - 1;
    event->accept();
    Q_EMIT mousedown(event->button());
}

void VSFlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    // Two quick touches are two presses.
    mousePressEvent(event);
}

int VSFlexGrid::nextShownColumn(int step) const {
    layOutColumns();
    for (int column = m_col + step; column >= 0 && column < cols(); column += step) {
        if (cellRect(0, column).width() > 0)
            return column;
    }
    return m_col;
}

void VSFlexGrid::keyPressEvent(QKeyEvent* event) {
    if (rows() < 2 || cols() < 1) {
        event->ignore();
        return;
    }
    const int page = std::max(1, viewport()->height() / m_rowHeight - 1);
    int target = m_row;
    switch (event->key()) {
        case Qt::Key_Up:
            target -= 1;
            break;
        case Qt::Key_Down:
            target += 1;
            break;
        case Qt::Key_PageUp:
            target -= page;
            break;
        case Qt::Key_PageDown:
            target += page;
            break;
        case Qt::Key_Home:
            target = 1;
            break;
        case Qt::Key_End:
            target = rows() - 1;
            break;
        case Qt::Key_Left:
            setCol(nextShownColumn(-1));
            break;
        case Qt::Key_Right:
            setCol(nextShownColumn(1));
            break;
        default:
            event->ignore();
            return;
    }
    event->accept();
    setRow(std::clamp(target, 1, rows() - 1));
    ensureRowVisible(m_row);
}

void VSFlexGrid::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::TextAntialiasing);
    layOutColumns();
    const QRegion& dirty = event->region();
    const QRect area = viewport()->rect();
    const int scrolled = verticalScrollBar()->value();
    const int first = 1 + scrolled / m_rowHeight;
    const int last = std::min(rows() - 1, (scrolled + area.height()) / m_rowHeight);
    const int textSize = std::min(FittedText::pixelSizeOf(font(), logicalDpiY()), m_rowHeight * 62 / 100);

    QFont face = font();
    face.setPixelSize(std::max(1, textSize));
    painter.setFont(face);
    for (int row = first; row <= last; ++row) {
        const QRect line(0, rowTop(row), area.width(), m_rowHeight);
        if (dirty.intersects(line))
            paintLine(painter, row, line);
    }
    const QRect below = bodyBelow(std::max(0, rows() - 1));
    if (!below.isEmpty() && dirty.intersects(below))
        painter.fillRect(below, palette().color(QPalette::Base));

    // Last, over whatever of a scrolled line reaches below it.
    const QRect heading(0, 0, area.width(), m_rowHeight);
    if (!dirty.intersects(heading))
        return;
    painter.fillRect(heading, palette().color(QPalette::Button));
    if (rows() == 0)
        return;
    face.setPixelSize(std::max(1, textSize * 84 / 100));
    face.setWeight(QFont::DemiBold);
    painter.setFont(face);
    paintTexts(painter, 0, palette().color(QPalette::ButtonText));
}

void VSFlexGrid::paintLine(QPainter& painter, int row, const QRect& line) const {
    const QColor ground = palette().color(row % 2 == 1 ? QPalette::Base : QPalette::AlternateBase);
    const QColor accent = palette().color(QPalette::Highlight);
    const bool current = row == m_row;
    // The last line is the one that waits for an entry: it is current most of the time and stays quiet.
    const bool entry = row == rows() - 1;
    painter.fillRect(line, current && !entry ? mixed(ground, accent, 0.1) : ground);
    painter.fillRect(QRect(line.left(), line.bottom(), line.width(), 1), palette().color(QPalette::Midlight));
    if (current)
        painter.fillRect(QRect(line.left(), line.top(), 4, line.height() - 1),
                         entry ? mixed(ground, accent, 0.45) : accent);
    paintTexts(painter, row, palette().color(QPalette::Text));
    if (current && hasFocus() && m_col < cols()) {
        painter.setPen(QPen(accent, 2));
        painter.setBrush(Qt::NoBrush);
        const QRect cell = cellRect(row, m_col);
        if (cell.width() > 2)
            painter.drawRect(cell.adjusted(1, 1, -1, -2));
    }
}

void VSFlexGrid::paintTexts(QPainter& painter, int row, const QColor& color) const {
    painter.setPen(color);
    const std::vector<QString>& line = m_cells[static_cast<size_t>(row)];
    for (int column = 0; column < cols(); ++column) {
        const QString& text = line[static_cast<size_t>(column)];
        const QRect cell = cellRect(row, column).adjusted(cellPadding, 0, -cellPadding, 0);
        const bool number = m_columns[static_cast<size_t>(column)].alignment.testFlag(Qt::AlignRight);
        paintCellText(painter, cell, text,
                      m_columns[static_cast<size_t>(column)].alignment & Qt::AlignHorizontal_Mask,
                      number ? CellText::number : CellText::name);
    }
}

}  // namespace kovanix
