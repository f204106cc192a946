#pragma once

#include <QAbstractScrollArea>
#include <QAccessibleWidget>
#include <QHash>
#include <QList>
#include <QRect>
#include <QString>
#include <utility>

namespace kovanix {

/// What assistive tools are told of a grid that paints its own cells: a table of headings, rows and cells.
///
/// Its children are the headings, the cells of the rows that can be seen, and further widgets of the grid;
/// every other cell is had by its row and column. A list of a million rows must not make a tool ask for as
/// many children. Rows are those below the headings and count from 0, as columns do.
class AccessibleTable : public QAccessibleWidget, public QAccessibleTableInterface {
public:
    static constexpr int headingRow = -1;

    explicit AccessibleTable(QAbstractScrollArea& grid);
    ~AccessibleTable() override;
    AccessibleTable(const AccessibleTable&) = delete;
    AccessibleTable& operator=(const AccessibleTable&) = delete;

    virtual QString heading(int column) const = 0;
    /// What is to be told of a heading besides.
    virtual QString headingNote(int /*column*/) const { return {}; }
    /// Presses a heading, where that does anything.
    virtual void pressHeading(int /*column*/) {}
    virtual QString cellText(int row, int column) const = 0;
    /// Where a cell or heading stands on the screen.
    virtual QRect cellPlace(int row, int column) const = 0;
    /// The current cell's; -1 where there is none.
    virtual int currentRow() const = 0;
    virtual int currentColumn() const = 0;
    /// The first of the rows that can be seen, and how many can.
    virtual int firstRow() const = 0;
    virtual int visibleRows() const = 0;
    /// Widgets of the grid besides its cells.
    virtual QList<QWidget*> bands() const { return {}; }

    bool hasFocus() const { return widget()->hasFocus(); }

    void* interface_cast(QAccessible::InterfaceType type) override;
    /// A grid without a name of its own has that of the frame or screen that it stands in.
    QString text(QAccessible::Text kind) const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override;
    int selectedCellCount() const override { return selectedRowCount() * columnCount(); }
    QList<QAccessibleInterface*> selectedCells() const override;
    QString columnDescription(int column) const override;
    QString rowDescription(int) const override { return {}; }
    int selectedColumnCount() const override { return 0; }
    int selectedRowCount() const override { return currentRow() < 0 ? 0 : 1; }
    QList<int> selectedColumns() const override { return {}; }
    QList<int> selectedRows() const override;
    bool isColumnSelected(int) const override { return false; }
    bool isRowSelected(int row) const override { return row >= 0 && row == currentRow(); }
    bool selectColumn(int) override { return false; }
    bool unselectRow(int) override { return false; }
    bool unselectColumn(int) override { return false; }
    void modelChange(QAccessibleTableModelChangeEvent*) override { forgetCells(); }

private:
    int shownRows() const;
    QAccessibleInterface* cell(int row, int column) const;
    void forgetCells();

    // The toolkit owns them; a tool is given the same one each time.
    mutable QHash<std::pair<int, int>, QAccessible::Id> m_cells;
};

/// Tells assistive tools that the focus has moved to the current cell of a grid that has the keyboard.
void tellCurrentCell(QAbstractScrollArea& grid);

}  // namespace kovanix
