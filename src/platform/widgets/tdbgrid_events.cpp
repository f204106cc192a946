#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "widgets/adodc.h"
#include "widgets/face.h"
#include "widgets/filterbar.h"
#include "widgets/gridbands.h"
#include "widgets/gridmodel.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

// --- where rows stand

int TDBGrid::visibleRows() const {
    return std::max(1, viewport()->height() / m_layout.target());
}

int TDBGrid::firstRow() const {
    return verticalScrollBar()->value();
}

int TDBGrid::rowHeight() const {
    return static_cast<int>(std::lround(static_cast<double>(viewport()->height()) / visibleRows()));
}

/// Worked out from the whole height each time, so that the odd pixels are spread and the last row ends where
/// the view does.
int TDBGrid::rowTop(int row) const {
    return static_cast<int>(
        std::lround(static_cast<double>(row - firstRow()) * viewport()->height() / visibleRows()));
}

QRect TDBGrid::rowRect(int row) const {
    const int top = rowTop(row);
    return {0, top, viewport()->width(), rowTop(row + 1) - top};
}

int TDBGrid::rowAt(int y) const {
    if (y < 0 || y >= viewport()->height())
        return -1;
    int row = firstRow() + static_cast<int>(static_cast<qint64>(y) * visibleRows() / viewport()->height());
    while (rowTop(row) > y)
        --row;
    while (rowTop(row + 1) <= y)
        ++row;
    return row < m_rows->rowCount() ? row : -1;
}

bool TDBGrid::isInSight(int row) const {
    return row >= firstRow() && row < firstRow() + visibleRows();
}

void TDBGrid::bringIntoSight(int row) {
    if (row < firstRow())
        verticalScrollBar()->setValue(row);
    else if (row >= firstRow() + visibleRows())
        verticalScrollBar()->setValue(row - visibleRows() + 1);
}

QRect TDBGrid::visualRect(const QModelIndex& index) const {
    if (!index.isValid() || index.column() >= m_layout.columns())
        return {};
    const QRect line = rowRect(index.row());
    return m_layout.cell(index.column(), line.top(), line.height());
}

QRect TDBGrid::headingRect(int index) const {
    check(index);
    return m_layout.cell(index, 0, m_heading->height()).translated(m_heading->pos());
}

void TDBGrid::scrollTo(const QModelIndex& index, ScrollHint /*hint*/) {
    if (index.isValid())
        bringIntoSight(index.row());
}

QModelIndex TDBGrid::indexAt(const QPoint& point) const {
    const int row = rowAt(point.y());
    const int column = m_layout.columnAt(point.x());
    return row < 0 || column < 0 ? QModelIndex() : m_rows->index(row, column);
}

int TDBGrid::verticalOffset() const {
    return firstRow() * rowHeight();
}

bool TDBGrid::isIndexHidden(const QModelIndex& index) const {
    return visualRect(index).width() <= 0;
}

// There is never more of a selection than the current row, and that is set with it.
void TDBGrid::setSelection(const QRect& /*rect*/, QItemSelectionModel::SelectionFlags /*flags*/) {}

QRegion TDBGrid::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        const int first = std::max(range.top(), firstRow());
        const int last = std::min(range.bottom(), firstRow() + visibleRows());
        for (int row = first; row <= last; ++row)
            region += rowRect(row);
    }
    return region;
}

int TDBGrid::nextShownColumn(int step) const {
    for (int column = m_col + step; column >= 0 && column < m_layout.columns(); column += step) {
        if (m_layout.cell(column, 0, 1).width() > 0)
            return column;
    }
    return m_col;
}

QModelIndex TDBGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers /*modifiers*/) {
    const int last = m_rows->rowCount() - 1;
    int row = currentIndex().row();
    int column = m_col;
    const bool none = row < 0;
    switch (action) {
        case MoveUp:
        case MovePrevious:
            row -= 1;
            break;
        case MoveDown:
        case MoveNext:
            row += 1;
            break;
        case MovePageUp:
            row -= visibleRows();
            break;
        case MovePageDown:
            row += visibleRows();
            break;
        case MoveHome:
            row = 0;
            break;
        case MoveEnd:
            row = last;
            break;
        case MoveLeft:
            column = nextShownColumn(-1);
            break;
        case MoveRight:
            column = nextShownColumn(1);
            break;
    }
    if (last < 0 || column >= columnCount())
        return {};
    // With no row current the first key makes one so.
    if (none)
        row = action == MoveEnd ? last : firstRow();
    return m_rows->index(std::clamp(row, 0, last), column);
}

// --- events

bool TDBGrid::event(QEvent* event) {
    if (event->type() == QEvent::Resize)
        layOutBands();
    return QAbstractItemView::event(event);
}

bool TDBGrid::eventFilter(QObject* watched, QEvent* event) {
    // Whenever the view lays out its parts it puts the scroll bar on top of them.
    if (watched == m_aboveBar->parentWidget() && event->type() == QEvent::ZOrderChange)
        m_rim->raise();
    return QAbstractItemView::eventFilter(watched, event);
}

void TDBGrid::resizeEvent(QResizeEvent* event) {
    // Fewer rows may fit now: what was in sight stays there.
    const int row = m_editedRow ? editedPlace() : currentIndex().row();
    const bool seen = row >= 0 && row >= firstRow() && row < firstRow() + verticalScrollBar()->pageStep();
    QAbstractItemView::resizeEvent(event);
    layOutColumns();
    if (seen)
        bringIntoSight(row);
}

void TDBGrid::changeEvent(QEvent* event) {
    QAbstractItemView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        layOutColumns();
    if (event->type() == QEvent::PaletteChange && m_layout.tone != toneOf(*this)) {
        m_layout.tone = toneOf(*this);
        layOutBands();
        layOutColumns();
    }
}

// Not the item view's own: it would make the first row the current one unasked.
void TDBGrid::focusInEvent(QFocusEvent* event) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void TDBGrid::focusOutEvent(QFocusEvent* event) {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call)
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void TDBGrid::scrollContentsBy(int /*dx*/, int /*dy*/) {
    viewport()->update();
}

void TDBGrid::pressAt(const QPoint& place) {
    m_choiceByEnter = false;
    m_pressPlace = place;
    m_pressedRow = rowAt(place.y());
    m_pressFirstRow = firstRow();
    m_pressIsDown = true;
    m_dragged = false;
}

void TDBGrid::mousePressEvent(QMouseEvent* event) {
    event->accept();
    setFocus(Qt::MouseFocusReason);
    if (event->button() == Qt::LeftButton)
        pressAt(event->position().toPoint());
    Q_EMIT mousedown(event->button());
}

/// A finger that is drawn over the rows moves them. What it chooses is told by its release alone, so that
/// scrolling never chooses another row.
void TDBGrid::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    if (m_pressIsDown && event->buttons().testFlag(Qt::LeftButton)) {
        const int drawn = m_pressPlace.y() - event->position().toPoint().y();
        const int slack = std::max(QApplication::startDragDistance(), m_layout.target() / 3);
        if (verticalScrollBar()->maximum() > 0 && std::abs(drawn) > slack)
            m_dragged = true;
        if (m_dragged)
            verticalScrollBar()->setValue(
                m_pressFirstRow + static_cast<int>(std::lround(static_cast<double>(drawn) / rowHeight())));
    }
    Q_EMIT mousemove();
}

void TDBGrid::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    const QPointer<TDBGrid> self(this);
    bool chosen = false;
    if (event->button() == Qt::LeftButton && m_pressIsDown) {
        m_pressIsDown = false;
        const QPoint place = event->position().toPoint();
        const bool near = std::abs(place.y() - m_pressPlace.y()) <= m_layout.target() / 3 ||
                          rowAt(place.y()) == m_pressedRow;
        const int column = m_layout.columnAt(m_pressPlace.x());
        chosen = !m_dragged && near && m_pressedRow >= 0 && m_pressedRow < m_rows->rowCount() && column >= 0;
        if (chosen)
            moveTo(m_pressedRow, column);
    }
    Q_EMIT mouseup(event->button());
    if (chosen && self)
        Q_EMIT click();
}

void TDBGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
    const QPoint place = event->position().toPoint();
    // Two quick draws that begin at one place are no double click.
    if (event->button() != Qt::LeftButton || m_dragged) {
        mousePressEvent(event);
        return;
    }
    m_pressIsDown = false;
    const int row = rowAt(place.y());
    const int column = m_layout.columnAt(place.x());
    const QPointer<TDBGrid> self(this);
    if (row >= 0 && column >= 0)
        moveTo(row, column);
    Q_EMIT mousedown(event->button());
    // An empty list is answered too; the ground below the rows of another chooses nothing.
    if (self && (row >= 0 || m_rows->rowCount() == 0))
        Q_EMIT dblclick();
}

void TDBGrid::keyPressEvent(QKeyEvent* event) {
    static constexpr Qt::KeyboardModifiers commands =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    std::optional<CursorAction> action;
    event->accept();
    switch (event->key()) {
        case Qt::Key_Up:
            action = MoveUp;
            break;
        case Qt::Key_Down:
            action = MoveDown;
            break;
        case Qt::Key_PageUp:
            action = MovePageUp;
            break;
        case Qt::Key_PageDown:
            action = MovePageDown;
            break;
        case Qt::Key_Home:
            action = MoveHome;
            break;
        case Qt::Key_End:
            action = MoveEnd;
            break;
        case Qt::Key_Left:
            setCol(nextShownColumn(-1));
            return;
        case Qt::Key_Right:
            setCol(nextShownColumn(1));
            return;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!currentIndex().isValid())
                event->ignore();
            else if (!event->isAutoRepeat())
                enterRow();
            return;
        default:
            if ((event->modifiers() & commands) != 0 || !searchFor(event->text()))
                event->ignore();
            return;
    }
    // A row that is current without having been chosen is chosen by a key that leads to it.
    const int before = dataSource() && dataSource()->isCurrentChosen() ? currentIndex().row() : -1;
    const QModelIndex target = moveCursor(*action, event->modifiers());
    if (!target.isValid())
        return;
    m_choiceByEnter = false;
    moveTo(target.row(), m_col);
    if (target.row() != before)
        Q_EMIT rowKeyed();
}

/// Nobody has chosen the first row of a list that has just opened. Enter chooses it; but however many Enters
/// come (some scanners send two), they don't take it.
void TDBGrid::enterRow() {
    const int row = currentIndex().row();
    const bool chosen = dataSource()->isCurrentChosen();
    if (chosen && isInSight(row) && !m_choiceByEnter) {
        Q_EMIT dblclick();
        return;
    }
    moveTo(row, m_col);
    if (chosen)
        return;
    m_choiceByEnter = true;
    Q_EMIT rowKeyed();
}

}  // namespace kovanix
