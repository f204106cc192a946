#include "widgets/accessibletable.h"

#include <algorithm>

namespace kovanix {

namespace {

/// A cell of the rows, or a heading.
class Cell : public QAccessibleInterface,
             public QAccessibleTableCellInterface,
             public QAccessibleActionInterface {
public:
    Cell(AccessibleTable& owner, int row, int column) : m_owner(owner), m_row(row), m_column(column) {}

    bool isValid() const override { return m_column < m_owner.columnCount() && m_row < m_owner.rowCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return &m_owner; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override {
        if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description))
            return {};
        if (isHeading())
            return kind == QAccessible::Name ? m_owner.heading(m_column) : m_owner.headingNote(m_column);
        return kind == QAccessible::Name ? m_owner.cellText(m_row, m_column) : m_owner.heading(m_column);
    }

    QRect rect() const override { return isValid() ? m_owner.cellPlace(m_row, m_column) : QRect(); }

    QAccessible::Role role() const override {
        return isHeading() ? QAccessible::ColumnHeader : QAccessible::Cell;
    }

    QAccessible::State state() const override {
        QAccessible::State state;
        state.invalid = !isValid();
        if (state.invalid || isHeading())
            return state;
        state.selectable = state.focusable = true;
        state.selected = isSelected();
        state.focused = m_owner.hasFocus() && isSelected() && m_owner.currentColumn() == m_column;
        state.offscreen = m_row < m_owner.firstRow() || m_row >= m_owner.firstRow() + m_owner.visibleRows();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableCellInterface)
            return static_cast<QAccessibleTableCellInterface*>(this);
        if (type == QAccessible::ActionInterface && isHeading())
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    bool isSelected() const override { return isValid() && m_owner.isRowSelected(m_row); }
    QList<QAccessibleInterface*> columnHeaderCells() const override {
        return isHeading() || !isValid() ? QList<QAccessibleInterface*>() : QList{m_owner.child(m_column)};
    }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return m_column; }
    int rowIndex() const override { return m_row; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (isValid() && name == pressAction())
            m_owner.pressHeading(m_column);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isHeading() const { return m_row == AccessibleTable::headingRow; }

    // Cells go with the interface of their grid, and that with the grid.
    AccessibleTable& m_owner;
    int m_row;
    int m_column;
};

}  // namespace

AccessibleTable::AccessibleTable(QAbstractScrollArea& grid) : QAccessibleWidget(&grid, QAccessible::Table) {}

AccessibleTable::~AccessibleTable() {
    forgetCells();
}

void* AccessibleTable::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                               : QAccessibleWidget::interface_cast(type);
}

QString AccessibleTable::text(QAccessible::Text kind) const {
    if (kind != QAccessible::Name)
        return QAccessibleWidget::text(kind);
    const QWidget* named = widget();
    while (named->accessibleName().isEmpty() && named->parentWidget())
        named = named->parentWidget();
    return named->accessibleName();
}

int AccessibleTable::childCount() const {
    return (1 + shownRows()) * columnCount() + static_cast<int>(bands().size());
}

QAccessibleInterface* AccessibleTable::child(int index) const {
    const int columns = columnCount();
    const int cells = (1 + shownRows()) * columns;
    if (index < 0 || index >= childCount())
        return nullptr;
    if (index >= cells)
        return QAccessible::queryAccessibleInterface(bands()[index - cells]);
    return cell(index < columns ? headingRow : firstRow() + index / columns - 1, index % columns);
}

int AccessibleTable::indexOfChild(const QAccessibleInterface* child) const {
    const int columns = columnCount();
    if (const auto* found = dynamic_cast<const Cell*>(child)) {
        const int row = found->rowIndex() == headingRow ? 0 : found->rowIndex() - firstRow() + 1;
        return row < 0 || row > shownRows() ? -1 : row * columns + found->columnIndex();
    }
    const qsizetype band = child ? bands().indexOf(qobject_cast<QWidget*>(child->object())) : -1;
    return band < 0 ? -1 : (1 + shownRows()) * columns + static_cast<int>(band);
}

QAccessibleInterface* AccessibleTable::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        QAccessibleInterface* found = child(index);
        if (found && found->rect().contains(x, y))
            return found;
    }
    return nullptr;
}

QAccessibleInterface* AccessibleTable::focusChild() const {
    QAccessibleInterface* current = hasFocus() ? cellAt(currentRow(), currentColumn()) : nullptr;
    return current ? current : QAccessibleWidget::focusChild();
}

QAccessibleInterface* AccessibleTable::cellAt(int row, int column) const {
    const bool there = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
    return there ? cell(row, column) : nullptr;
}

QList<QAccessibleInterface*> AccessibleTable::selectedCells() const {
    QList<QAccessibleInterface*> cells;
    for (int column = 0; column < selectedCellCount(); ++column)
        cells << cell(currentRow(), column);
    return cells;
}

QString AccessibleTable::columnDescription(int column) const {
    return column >= 0 && column < columnCount() ? heading(column) : QString();
}

QList<int> AccessibleTable::selectedRows() const {
    return currentRow() < 0 ? QList<int>() : QList<int>{currentRow()};
}

int AccessibleTable::shownRows() const {
    return std::clamp(rowCount() - firstRow(), 0, visibleRows());
}

QAccessibleInterface* AccessibleTable::cell(int row, int column) const {
    const auto found = m_cells.constFind({row, column});
    if (found != m_cells.cend())
        return QAccessible::accessibleInterface(*found);
    auto* made = new Cell(const_cast<AccessibleTable&>(*this), row, column);
    m_cells.insert({row, column}, QAccessible::registerAccessibleInterface(made));
    return made;
}

void AccessibleTable::forgetCells() {
    for (const QAccessible::Id id : std::as_const(m_cells))
        QAccessible::deleteAccessibleInterface(id);
    m_cells.clear();
}

void tellCurrentCell(QAbstractScrollArea& grid) {
    if (!grid.hasFocus())
        return;
    const auto* table = dynamic_cast<AccessibleTable*>(QAccessible::queryAccessibleInterface(&grid));
    const QAccessibleInterface* current =
        table ? table->cellAt(table->currentRow(), table->currentColumn()) : nullptr;
    if (!current)
        return;
    QAccessibleEvent focus(&grid, QAccessible::Focus);
    focus.setChild(table->indexOfChild(current));
    QAccessible::updateAccessibility(&focus);
}

}  // namespace kovanix
