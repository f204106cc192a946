#include "widgets/gridaccessible.h"

#include <QAccessibleWidget>
#include <QHash>
#include <algorithm>
#include <utility>

#include "widgets/filterbar.h"
#include "widgets/gridbands.h"
#include "widgets/tdbgrid.h"

namespace kovanix {

using namespace Qt::StringLiterals;
namespace {

constexpr int headingRow = -1;

/// A cell of the rows, or a heading.
class GridCellInterface : public QAccessibleInterface,
                          public QAccessibleTableCellInterface,
                          public QAccessibleActionInterface {
public:
    GridCellInterface(TDBGrid& grid, int row, int column) : m_grid(grid), m_row(row), m_column(column) {}

    bool isValid() const override {
        return m_column < m_grid.columnCount() && m_row < m_grid.model()->rowCount();
    }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&m_grid); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override {
        if (!isValid() || (kind != QAccessible::Name && kind != QAccessible::Description))
            return {};
        const QString caption = m_grid.columnCaption(m_column);
        if (isHeading())
            return kind == QAccessible::Name ? caption : sortWords();
        return kind == QAccessible::Name ? index().data().toString() : caption;
    }

    QRect rect() const override {
        if (!isValid())
            return {};
        const QWidget& place = isHeading() ? static_cast<const QWidget&>(m_grid) : *m_grid.viewport();
        const QRect cell = isHeading() ? m_grid.headingRect(m_column) : m_grid.visualRect(index());
        return {place.mapToGlobal(cell.topLeft()), cell.size()};
    }

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
        state.focused = m_grid.hasFocus() && m_grid.currentIndex() == index();
        state.offscreen = m_row < m_grid.firstRow() || m_row >= m_grid.firstRow() + m_grid.visibleRows();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableCellInterface)
            return static_cast<QAccessibleTableCellInterface*>(this);
        if (type == QAccessible::ActionInterface && isHeading())
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    bool isSelected() const override { return isValid() && m_grid.currentIndex().row() == m_row; }
    QList<QAccessibleInterface*> columnHeaderCells() const override {
        return isHeading() || !isValid() ? QList<QAccessibleInterface*>() : QList{parent()->child(m_column)};
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
            Q_EMIT m_grid.headClick(m_column);
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

private:
    bool isHeading() const { return m_row == headingRow; }

    QString sortWords() const {
        const auto* heading = m_grid.findChild<GridHeading*>();
        if (!heading || heading->sortColumn() != m_column)
            return {};
        return heading->sortOrder() == Qt::AscendingOrder ? u"Artan sırada"_s : u"Azalan sırada"_s;
    }

    QModelIndex index() const { return m_grid.model()->index(m_row, m_column); }

    // Cells go with the interface of their grid, and that with the grid.
    TDBGrid& m_grid;
    int m_row;
    int m_column;
};

/// Its children are the headings, the cells of the rows that can be seen, the filter bar and the footers;
/// every other cell is had by its row and column. A list of a million rows must not make a tool ask for as
/// many children.
class GridInterface : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    explicit GridInterface(TDBGrid& grid) : QAccessibleWidget(&grid, QAccessible::Table), m_grid(grid) {}
    ~GridInterface() override { forgetCells(); }
    GridInterface(const GridInterface&) = delete;
    GridInterface& operator=(const GridInterface&) = delete;

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TableInterface ? static_cast<QAccessibleTableInterface*>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    /// A grid without a name of its own has that of the frame or screen that it stands in.
    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name)
            return QAccessibleWidget::text(kind);
        const QWidget* named = &m_grid;
        while (named->accessibleName().isEmpty() && named->parentWidget())
            named = named->parentWidget();
        return named->accessibleName();
    }

    int childCount() const override {
        return (1 + shownRows()) * columnCount() + static_cast<int>(bands().size());
    }

    QAccessibleInterface* child(int index) const override {
        const int columns = columnCount();
        const int cells = (1 + shownRows()) * columns;
        if (index < 0 || index >= childCount())
            return nullptr;
        if (index >= cells)
            return QAccessible::queryAccessibleInterface(bands()[index - cells]);
        return cell(index < columns ? headingRow : m_grid.firstRow() + index / columns - 1, index % columns);
    }

    int indexOfChild(const QAccessibleInterface* child) const override {
        const int columns = columnCount();
        if (const auto* found = dynamic_cast<const GridCellInterface*>(child)) {
            const int row = found->rowIndex() == headingRow ? 0 : found->rowIndex() - m_grid.firstRow() + 1;
            return row < 0 || row > shownRows() ? -1 : row * columns + found->columnIndex();
        }
        const qsizetype band = child ? bands().indexOf(qobject_cast<QWidget*>(child->object())) : -1;
        return band < 0 ? -1 : (1 + shownRows()) * columns + static_cast<int>(band);
    }

    QAccessibleInterface* childAt(int x, int y) const override {
        for (int index = 0; index < childCount(); ++index) {
            QAccessibleInterface* found = child(index);
            if (found && found->rect().contains(x, y))
                return found;
        }
        return nullptr;
    }

    QAccessibleInterface* focusChild() const override {
        const QModelIndex current = m_grid.currentIndex();
        if (m_grid.hasFocus() && current.isValid())
            return cell(current.row(), current.column());
        return QAccessibleWidget::focusChild();
    }

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override {
        const bool there = row >= 0 && row < rowCount() && column >= 0 && column < columnCount();
        return there ? cell(row, column) : nullptr;
    }
    int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
    QList<QAccessibleInterface*> selectedCells() const override {
        QList<QAccessibleInterface*> cells;
        for (int column = 0; column < selectedCellCount(); ++column)
            cells << cell(m_grid.currentIndex().row(), column);
        return cells;
    }
    QString columnDescription(int column) const override {
        return column >= 0 && column < columnCount() ? m_grid.columnCaption(column) : QString();
    }
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return m_grid.currentIndex().isValid() ? 1 : 0; }
    int columnCount() const override { return m_grid.columnCount(); }
    int rowCount() const override { return m_grid.model()->rowCount(); }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override {
        return selectedRowCount() == 0 ? QList<int>() : QList<int>{m_grid.currentIndex().row()};
    }
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return selectedRows().contains(row); }
    bool selectRow(int row) override {
        if (row < 0 || row >= rowCount())
            return false;
        m_grid.setCurrentIndex(m_grid.model()->index(row, m_grid.col()));
        return true;
    }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override { forgetCells(); }

private:
    int shownRows() const { return std::clamp(rowCount() - m_grid.firstRow(), 0, m_grid.visibleRows()); }

    QList<QWidget*> bands() const {
        QList<QWidget*> shown;
        for (QWidget* band : {static_cast<QWidget*>(m_grid.findChild<FilterBar*>()),
                              static_cast<QWidget*>(m_grid.findChild<GridFooter*>())}) {
            if (band && !band->isHidden())
                shown << band;
        }
        return shown;
    }

    QAccessibleInterface* cell(int row, int column) const {
        const auto found = m_cells.constFind({row, column});
        if (found != m_cells.cend())
            return QAccessible::accessibleInterface(*found);
        auto* made = new GridCellInterface(m_grid, row, column);
        m_cells.insert({row, column}, QAccessible::registerAccessibleInterface(made));
        return made;
    }

    void forgetCells() {
        for (const QAccessible::Id id : std::as_const(m_cells))
            QAccessible::deleteAccessibleInterface(id);
        m_cells.clear();
    }

    TDBGrid& m_grid;
    // The toolkit owns them; a tool is given the same one each time.
    mutable QHash<std::pair<int, int>, QAccessible::Id> m_cells;
};

QAccessibleInterface* makeInterface(const QString& kind, QObject* object) {
    auto* grid = qobject_cast<TDBGrid*>(object);
    return grid && kind == QLatin1String(TDBGrid::staticMetaObject.className()) ? new GridInterface(*grid)
                                                                                : nullptr;
}

}  // namespace

void installGridAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(installed)
}

}  // namespace kovanix
