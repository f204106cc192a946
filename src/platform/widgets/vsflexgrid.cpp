#include "widgets/vsflexgrid.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "runtime/runtimeerror.h"
#include "widgets/accessibletable.h"
#include "widgets/face.h"
#include "widgets/fittedtext.h"
#include "widgets/gridaccessible.h"
#include "widgets/gridcell.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int badIndex = 381;
constexpr int startCount = 2;
// At the design size.
constexpr int cellPadding = 6;
constexpr int firstPadding = 10;
constexpr int firstNumberColumn = 3;
// What is kept for the columns that take the rest, where the others ask for more than there is.
constexpr double smallestRest = 0.2;
constexpr double largestShareOfRow = 0.62;

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
    // The corners are the page's, and so the page is painted behind the rows.
    viewport()->setAutoFillBackground(false);
    dressScrollBar();
    setCols(startCount);
    setRows(startCount);
    installGridAccessibility();
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
    for (int row = std::max(1, count); row < before; ++row)
        countRow(row, false);
    m_cells.resize(static_cast<size_t>(count), std::vector<QString>(m_columns.size()));
    m_row = std::clamp(m_row, 0, std::max(0, count - 1));
    viewport()->update(changed);
    rowsCameOrWent();
}

void VSFlexGrid::setCols(int count) {
    if (count < 0)
        throwBadIndex();
    if (count == cols())
        return;
    for (std::vector<QString>& line : m_cells)
        line.resize(static_cast<size_t>(count));
    for (int column = cols(); column < count; ++column)
        m_columns.push_back({-1, startAlignment(column), {}});
    m_columns.resize(static_cast<size_t>(count));
    m_texts.resize(static_cast<size_t>(count));
    m_letterSizes.assign(static_cast<size_t>(count), 0);
    for (int column = 0; column < count; ++column)
        recountColumn(column);
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
    if (row > 0)
        countCell(column, cell, false);
    cell = text;
    if (row > 0)
        countCell(column, cell, true);
    updateRow(row);
}

void VSFlexGrid::clear() {
    for (std::vector<QString>& line : m_cells)
        std::fill(line.begin(), line.end(), QString());
    for (int column = 0; column < cols(); ++column)
        recountColumn(column);
    viewport()->update();
}

void VSFlexGrid::removeItem(int row) {
    checkRow(row);
    // The heading is no line of the list.
    if (row == 0)
        throwBadIndex();
    const QRect changed = bodyBelow(row - 1);
    countRow(row, false);
    m_cells.erase(m_cells.begin() + row);
    m_row = std::min(m_row, rows() - 1);
    viewport()->update(changed);
    rowsCameOrWent();
}

void VSFlexGrid::setRow(int row) {
    checkRow(row);
    if (row == m_row)
        return;
    updateRow(m_row);
    m_row = row;
    updateRow(m_row);
    tellCurrentCell(*this);
}

void VSFlexGrid::setCol(int column) {
    checkColumn(column);
    if (column == m_col)
        return;
    m_col = column;
    updateRow(m_row);
    tellCurrentCell(*this);
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
    recountColumn(column);
    m_shaped.clear();
    viewport()->update();
}

void VSFlexGrid::setColSample(int column, const QString& usual, const QString& longest) {
    checkColumn(column);
    m_columns[static_cast<size_t>(column)].sample = usual;
    m_columns[static_cast<size_t>(column)].longest = longest;
    recountColumn(column);
    columnsChanged();
}

bool VSFlexGrid::holdsNames(int column) const {
    const Column& asked = m_columns[static_cast<size_t>(column)];
    return asked.sample.isEmpty() && !asked.alignment.testFlag(Qt::AlignRight);
}

int VSFlexGrid::ordinarySize() const {
    const int wanted = FittedText::pixelSizeOf(font(), logicalDpiY());
    return std::max(1, std::min(wanted, static_cast<int>(m_rowHeight * largestShareOfRow)));
}

int VSFlexGrid::letterSize(int column) const {
    checkColumn(column);
    layOutColumns();
    int& size = m_letterSizes[static_cast<size_t>(column)];
    if (size == 0) {
        const int ordinary = ordinarySize();
        const int smallest = std::min(FittedText::smallestLegible, ordinary);
        const int largest = holdsNames(column)
                                ? std::max(smallest, static_cast<int>(std::lround(ordinary * nameInTwoLines)))
                                : ordinary;
        size =
            m_texts[static_cast<size_t>(column)].letterSize(textRoom(0, column).width(), largest, smallest);
    }
    return size;
}

void VSFlexGrid::recountColumn(int column) {
    ColumnTexts& texts = m_texts[static_cast<size_t>(column)];
    texts.reset(font(), holdsNames(column) ? ColumnTexts::Lines::two : ColumnTexts::Lines::one);
    for (int row = 1; row < rows(); ++row)
        texts.add(onOneLine(m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)]));
    m_letterSizes[static_cast<size_t>(column)] = 0;
}

void VSFlexGrid::countCell(int column, const QString& text, bool added) {
    if (text.isEmpty())
        return;
    ColumnTexts& texts = m_texts[static_cast<size_t>(column)];
    const int before = letterSize(column);
    if (added)
        texts.add(onOneLine(text));
    else
        texts.remove(onOneLine(text));
    m_letterSizes[static_cast<size_t>(column)] = 0;
    if (letterSize(column) != before)
        viewport()->update();
}

void VSFlexGrid::countRow(int row, bool added) {
    for (int column = 0; column < cols(); ++column)
        countCell(column, m_cells[static_cast<size_t>(row)][static_cast<size_t>(column)], added);
}

void VSFlexGrid::rowsCameOrWent() {
    updateScrollBar();
    const bool empty = rows() <= startCount && !m_emptyState.line.isEmpty();
    const QString description = empty ? m_emptyState.line + u'\n' + m_emptyState.hints.join(u' ') : QString();
    if (accessibleDescription() != description) {
        setAccessibleDescription(description);
        viewport()->update();  // the state stands across all rows
    }
    Q_EMIT rowsChanged(rows());
}

void VSFlexGrid::setEmptyState(const QString& picture, const QString& line, const QStringList& hints) {
    m_emptyState = {picture, line, hints};
    rowsCameOrWent();
}

void VSFlexGrid::setRowHeight(int pixels) {
    pixels = std::max(1, pixels);
    if (pixels == m_rowHeight)
        return;
    m_rowHeight = pixels;
    dressScrollBar();
    updateScrollBar();
    columnsChanged();
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
    m_shaped.clear();
    std::ranges::fill(m_letterSizes, 0);
    viewport()->update();
}

void VSFlexGrid::layOutColumns() const {
    const int room = viewport()->width();
    const double scale = designScale(*this);
    if (m_edges.size() == m_columns.size() + 1 && m_edgesScale == scale)
        return;
    QFont letters = font();
    letters.setPixelSize(ordinarySize());
    const QFontMetrics metrics(letters);
    letters.setPixelSize(std::min(FittedText::smallestLegible, ordinarySize()));
    const QFontMetrics smallest(letters);
    // What a column asks for, in pixels; less than nothing: what the others leave.
    std::vector<double> widths;
    double asked = 0;
    int takers = 0;
    bool first = true;
    for (const Column& column : m_columns) {
        double width = column.width * scale;
        if (!column.sample.isEmpty() && column.width != 0)
            width = std::max(metrics.horizontalAdvance(column.sample),
                             smallest.horizontalAdvance(column.longest)) +
                    std::ceil(((first ? firstPadding : cellPadding) + cellPadding) * scale);
        first = first && column.width == 0;
        widths.push_back(width);
        if (width < 0)
            ++takers;
        else
            asked += width;
    }
    const double rest = takers > 0 ? std::max(room - asked, room * smallestRest) : 0.0;
    const double factor = asked > 0 && (takers == 0 || asked > room - rest) ? (room - rest) / asked : 1.0;
    m_edgesScale = scale;
    std::ranges::fill(m_letterSizes, 0);
    m_edges.assign(1, 0);
    double edge = 0;
    for (const double width : widths) {
        edge += width < 0 ? rest / takers : width * factor;
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

QRect VSFlexGrid::textRoom(int row, int column) const {
    const QRect cell = cellRect(row, column);
    const double scale = designScale(*this);
    const bool first = cell.left() == 0;
    return cell.adjusted(static_cast<int>(std::lround((first ? firstPadding : cellPadding) * scale)), 0,
                         -static_cast<int>(std::lround(cellPadding * scale)), 0);
}

void VSFlexGrid::resizeEvent(QResizeEvent* event) {
    QAbstractScrollArea::resizeEvent(event);
    updateScrollBar();
    columnsChanged();
}

void VSFlexGrid::changeEvent(QEvent* event) {
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        for (int column = 0; column < cols(); ++column)
            recountColumn(column);
        columnsChanged();
    }
    if (event->type() == QEvent::PaletteChange)
        dressScrollBar();
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::EnabledChange) {
        update();
        viewport()->update();
    }
}

bool VSFlexGrid::event(QEvent* event) {
    if (event->type() == QEvent::Paint) {
        paintCard();
        return true;
    }
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
    tellCurrentCell(*this);
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

}  // namespace kovanix
