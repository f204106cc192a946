#pragma once

#include <QAbstractItemView>
#include <QPixmap>
#include <QPointer>
#include <QString>
#include <memory>
#include <optional>
#include <vector>

#include "widgets/gridcolumn.h"
#include "widgets/gridlayout.h"
#include "widgets/printinfo.h"

namespace kovanix {

class Adodc;
class FilterBar;
class GridFooter;
class GridHeading;
class GridModel;
class GridRim;

/// The list grid: shows the rows of a data control, one current cell, a heading that can be pressed, a bar of
/// filter cells and a band of footers.
///
/// It sorts and filters nothing by itself: a screen answers headClick and filterChange by asking its data
/// control for another order or choice. The current row is the data control's, so several grids on one have
/// it in common. Rows are read and painted where they can be seen and nowhere else. All rows are of one
/// height and none is ever cut; the columns fill the view exactly.
///
/// Characters typed while the rows have the focus begin a search: see setScanColumn. Enter on a row that was
/// chosen by a press or an arrow and can be seen acts as a double click; on another one it chooses that row
/// or brings it into sight. Enter in a filter cell acts as a double click, too, once one row is left and
/// every cell is in force; in the scan column's cell only where the row's text is what was typed. Escape
/// empties a filter cell; one that is empty leaves the key to the screen.
class TDBGrid : public QAbstractItemView {
    Q_OBJECT
    Q_PROPERTY(QStringList footerTexts READ footerTexts)
    Q_PROPERTY(bool filterBar READ hasFilterBar WRITE setFilterBar)

public:
    /// What stands in place of rows while there are none.
    struct EmptyState {
        QString icon;  ///< path of a picture, painted in the ink of hints; a magnifier where there is none
        QString text;  ///< what is so
        QString hint;  ///< what to press
    };

    explicit TDBGrid(QWidget* parent = nullptr);
    ~TDBGrid() override;

    // --- columns
    int columnCount() const { return static_cast<int>(m_columns.size()); }
    /// Columns count from 0. @throws RuntimeError 381 where there is none
    GridColumn& column(int index);
    const GridColumn& column(int index) const;
    GridColumn& addColumn(const QString& caption, const QString& dataField = {}, int width = 100,
                          const QString& format = {});
    /// Gives the grid that many columns, with these headings.
    void setColumnCaptions(const QStringList& captions);
    QString columnCaption(int index) const { return column(index).caption(); }
    void setColumnCaption(int index, const QString& text) { column(index).setCaption(text); }

    // --- rows
    /// Shows the rows of a data control, which may be shown by other grids too.
    void setDataSource(Adodc& source);
    Adodc* dataSource() const;
    /// Shows the rows as they are now.
    void refresh();

    /// The current cell's column; kept while there are no rows. @throws RuntimeError 381 for none
    int col() const { return m_col; }
    void setCol(int index);

    /// The layout survives a change of the rows: columns are the grid's own and never taken from the rows, so
    /// there is nothing to hold.
    void holdFields() {}
    /// Goes on with typing in the filter cell that is being typed in, its caret where it was; false gives the
    /// focus back to the rows. Does nothing while the focus is elsewhere.
    void setEditActive(bool active);

    // --- heading, filter bar, footers
    /// Marks the column that the rows are ordered by; -1 for none. Told as the heading's description.
    void setSortMark(int index, Qt::SortOrder order = Qt::AscendingOrder);
    int sortColumn() const;

    bool hasFilterBar() const { return m_filterBarShown; }
    void setFilterBar(bool shown);
    /// Marks a filter cell whose text isn't in force; a change of the text takes the mark away.
    void setFilterRefused(int index, bool refused);
    bool isFilterRefused(int index) const;

    /// Where digits typed at the rows go (barcodes), and where letters do (names); -1 for nowhere. Each
    /// begins a search anew: the cell is emptied first, and for digits, which may be a scan that has to find
    /// its product whatever was searched for before, all others too. Digits without a scan column go where
    /// letters do.
    void setScanColumn(int index) { m_scanColumn = index; }
    void setNameColumn(int index) { m_nameColumn = index; }

    /// The columns' footers, in their order.
    QStringList footerTexts() const;
    /// Where the band of the footers begins in the grid's height, in pixels; its whole height without one.
    int footerTop() const;
    /// The column whose footer matters most, -1 for none, and a small line below the text at the left.
    void setFooterTotal(int index);
    void setFooterNote(const QString& text);

    // --- looks
    /// Without and with a text in a filter cell. While there are no rows, assistive tools are told it as the
    /// grid's description.
    void setEmptyState(const EmptyState& state);
    void setNoMatchState(const EmptyState& state);

    /// Marks the row, by its identity, that an open entry frame edits, and brings it into sight; none
    /// unmarks.
    void setEditedRow(std::optional<qint64> identity);

    /// The scale of all its sizes against design size.
    double scale() const { return m_layout.scale; }
    void setScale(double scale);

    /// How many rows can be seen at once, the first one that is, and the height of each (a pixel more or
    /// less, so that they share the room exactly).
    int visibleRows() const;
    int firstRow() const;
    int rowHeight() const;

    /// Where a column's heading stands in the grid.
    QRect headingRect(int index) const;

    // --- export and printing
    /// Writes captions, rows as shown and footers, if there are any, as an HTML table: UTF-8 with a
    /// byte-order mark. A file of the same name is replaced once the new one stands whole.
    /// @param append  whether the table goes behind what the file holds already
    /// @param width  the table's width as HTML states it ("100%"); empty for none
    /// @throws RuntimeError 76 for a missing folder, 75 for whatever else can't be written; the old file
    /// stays
    void exportToFile(const QString& path, bool append, const QString& width = {}) const;

    /// The first print-information entry.
    PrintInfo& printInfo() { return m_printInfo; }
    /// What is shown now, to be printed: later changes of the grid and of its rows change nothing of it.
    PrintTable printTable() const;

    // --- what the toolkit asks of a view
    QRect visualRect(const QModelIndex& index) const override;
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;
    QModelIndex indexAt(const QPoint& point) const override;

Q_SIGNALS:
    /// A row was pressed and let go.
    void click();
    void dblclick();
    void mousedown(Qt::MouseButton button);
    void mousemove();
    void mouseup(Qt::MouseButton button);
    void headClick(int column);
    /// The user changed the text of a filter cell.
    void filterChange();
    /// A row was chosen by a key.
    void rowKeyed();

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;

    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    int horizontalOffset() const override { return 0; }
    int verticalOffset() const override;
    bool isIndexHidden(const QModelIndex& index) const override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags flags) override;
    QRegion visualRegionForSelection(const QItemSelection& selection) const override;

private:
    friend class GridColumn;

    void check(int index) const;
    void setColumnCount(int count);
    void captionChanged(int index);
    void nameParts();

    void showRows();
    void followCurrent();
    int currentRow() const;
    void moveTo(int row, int column);
    bool isInSight(int row) const;
    void bringIntoSight(int row);
    int editedPlace() const;

    void layOutBands();
    void layOutColumns();
    int rowTop(int row) const;
    QRect rowRect(int row) const;
    int rowAt(int y) const;
    int nextShownColumn(int step) const;
    void pressAt(const QPoint& place);
    void enterRow();

    void typedInto(int column);
    void enteredIn(int column);
    bool searchFor(const QString& typed);

    void paintRow(QPainter& painter, int row, const QRect& line, bool current, bool edited) const;
    void paintEmptyState(QPainter& painter) const;
    const EmptyState& emptyStateShown() const;
    void tellEmptyState();

    std::vector<std::unique_ptr<GridColumn>> m_columns;
    GridLayout m_layout;
    GridModel* m_rows;
    GridHeading* m_heading;
    FilterBar* m_filterBar;
    GridFooter* m_footer;
    GridRim* m_rim;
    // Keep the scroll bar clear of the bands.
    QWidget* m_aboveBar;
    QWidget* m_belowBar;

    int m_col = 0;
    int m_scanColumn = -1;
    int m_nameColumn = -1;
    int m_typingColumn = -1;  // whose filter cell is being typed in
    bool m_filterBarShown = true;
    bool m_choiceByEnter = false;  // the current row was chosen by Enter alone
    bool m_following = false;      // the source says which row is current
    double m_styledScale = 0;
    Tone m_styledTone = Tone::light;
    std::optional<qint64> m_editedRow;
    EmptyState m_emptyState;
    EmptyState m_noMatchState;
    mutable QPixmap m_emptyIcon;  // of the state last painted
    mutable QString m_emptyIconPath;
    PrintInfo m_printInfo;

    // A press that is down: where, on which row, and where the rows stood.
    QPoint m_pressPlace;
    int m_pressedRow = -1;
    int m_pressFirstRow = 0;
    bool m_pressIsDown = false;
    bool m_dragged = false;  // it has moved the rows, so it chooses none
};

}  // namespace kovanix
