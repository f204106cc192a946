#pragma once

#include <QAbstractScrollArea>
#include <QHash>
#include <QPixmap>
#include <QStaticText>
#include <QString>
#include <QStringList>
#include <vector>

#include "widgets/columntexts.h"
#include "widgets/look.h"

namespace kovanix {

/// The ticket grid: cells of text in rows and columns, the first row a fixed heading, one current cell.
///
/// Cells are text and nothing else. Only rows that can be seen are painted, and setting a cell to the text
/// that it holds costs nothing. Its colours are those of the roles, in the tone of the page that it stands
/// on. A new grid has two rows and two columns. Rows and columns count from 0; a row or column that doesn't
/// exist throws RuntimeError 381.
class VSFlexGrid : public QAbstractScrollArea {
    Q_OBJECT
    Q_PROPERTY(int rowHeight READ rowHeight WRITE setRowHeight)

public:
    explicit VSFlexGrid(QWidget* parent = nullptr);

    int rows() const;
    /// Appends empty rows or drops rows at the end. A current row that is dropped becomes the last.
    void setRows(int count);
    int cols() const;
    void setCols(int count);

    QString textMatrix(int row, int column) const;
    void setTextMatrix(int row, int column, const QString& text);

    /// Empties every cell, the heading's included; rows, columns and widths stay.
    void clear();
    /// Takes a row out; those behind it move up. The heading can't be taken out: 381.
    void removeItem(int row);

    int row() const { return m_row; }
    void setRow(int row);
    int col() const { return m_col; }
    void setCol(int column);

    /// A column's share of the width in design pixels; 0 hides it, a negative one (the start value) takes
    /// what the others leave. The columns always fill the view exactly: there is no horizontal scroll bar.
    int colWidth(int column) const;
    void setColWidth(int column, int pixels);

    /// Makes a column as wide as a text that is usual, in letters of the ordinary size, instead of a share;
    /// empty for a share.
    /// @param longest  a text that has to stand whole, if only in the smallest letters
    void setColSample(int column, const QString& usual, const QString& longest = {});

    /// The letters' size in the cells of a column, in pixels: one size for all of them, the largest at which
    /// the longest of them stands whole, and not below what can be read. A left-aligned column without a
    /// sample holds names: they take two lines and are smaller from the start.
    int letterSize(int column) const;

    /// How a column's cells stand; the start value is Qt::AlignRight | Qt::AlignVCenter for columns from 3 on
    /// and left for the others. A name too long for its two
    /// lines loses its middle; a number shows as "###" where even the smallest letters are too large.
    Qt::Alignment colAlignment(int column) const;
    void setColAlignment(int column, Qt::Alignment alignment);

    /// Height of a row in pixels, the heading's too; 36 at start.
    int rowHeight() const { return m_rowHeight; }
    void setRowHeight(int pixels);

    /// What stands below the entry row as long as there is no other: a picture, a line that says what to do,
    /// and further ones. Assistive tools are told it as a description.
    void setEmptyState(const QString& picture, const QString& line, const QStringList& hints);

    /// The row or column below a point of the viewport, as of the last mouse press; -1 outside of the cells.
    int mouseRow() const { return m_mouseRow; }
    int mouseCol() const { return m_mouseCol; }

    /// Where a cell stands in the viewport; empty for a hidden one, outside of it for a scrolled-off row.
    QRect cellRect(int row, int column) const;

    /// Scrolls so that the row can be seen.
    void ensureRowVisible(int row);

Q_SIGNALS:
    void mousedown(Qt::MouseButton button);
    /// Rows came or went.
    void rowsChanged(int rows);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Column {
        int width = -1;
        Qt::Alignment alignment = Qt::AlignLeft | Qt::AlignVCenter;
        QString sample{};
        QString longest{};
    };
    /// A cell's text as it was last painted: its lines, broken and shaped for that room.
    struct Shaped {
        int letterSize = 0;
        int width = 0;
        std::vector<QStaticText> lines;
    };
    struct EmptyState {
        QString picture;
        QString line;
        QStringList hints;
    };

    void check(int row, int column) const;
    void checkRow(int row) const;
    void checkColumn(int column) const;
    void columnsChanged();
    void layOutColumns() const;
    bool holdsNames(int column) const;
    QRect textRoom(int row, int column) const;
    int ordinarySize() const;
    void recountColumn(int column);
    void countCell(int column, const QString& text, bool added);
    void countRow(int row, bool added);
    void rowsCameOrWent();
    void dressScrollBar();
    QColor color(ColorRole role) const;
    void updateScrollBar();
    void updateRow(int row);
    int rowTop(int row) const;
    int wholeRows(int position) const;
    QRect bodyBelow(int row) const;
    int nextShownColumn(int step) const;
    void paintLine(QPainter& painter, int row, const QRect& line) const;
    void paintCard();
    void paintHeading(QPainter& painter) const;
    void paintTexts(QPainter& painter, int row, const QColor& color) const;
    void paintText(QPainter& painter, int column, const QRect& cell, const QString& text) const;
    const Shaped& shaped(int column, const QString& text, const QFont& letters, int width) const;
    void paintEmptyState(QPainter& painter);

    std::vector<std::vector<QString>> m_cells;
    std::vector<Column> m_columns;
    std::vector<ColumnTexts> m_texts;  // of each column, below the heading
    EmptyState m_emptyState;
    int m_row = 0;
    int m_col = 0;
    int m_mouseRow = -1;
    int m_mouseCol = -1;
    int m_rowHeight = 36;
    QString m_givenName;  // the accessible name that follows the tip

    // The columns' left edges in the viewport and its right one, worked out when asked for.
    mutable std::vector<int> m_edges;
    mutable double m_edgesScale = 1.0;
    mutable std::vector<int> m_letterSizes;                // 0: not worked out yet
    mutable std::vector<QHash<QString, Shaped>> m_shaped;  // of each column
    QPixmap m_emptyPicture;
    QString m_emptyPictureKey;
};

}  // namespace kovanix
