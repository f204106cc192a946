#pragma once

#include <QWidget>
#include <optional>

namespace kovanix {

class TDBGrid;
struct GridLayout;

/// The heading of a list grid; it runs over the scroll bar.
class GridHeading : public QWidget {
    Q_OBJECT

public:
    GridHeading(TDBGrid& grid, const GridLayout& layout);

    void setSortMark(int column, Qt::SortOrder order);
    int sortColumn() const { return m_sortColumn; }
    Qt::SortOrder sortOrder() const { return m_sortOrder; }

Q_SIGNALS:
    void pressed(int column);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    void paintCaption(QPainter& painter, int column, const QRect& room) const;

    const TDBGrid& m_grid;
    const GridLayout& m_layout;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
    int m_pressedColumn = -1;
};

/// The band below the rows: a text column's footer large at the left, the numbers with their headings above
/// at the right, not bound to the columns' widths.
class GridFooter : public QWidget {
    Q_OBJECT

public:
    GridFooter(TDBGrid& grid, const GridLayout& layout);

    /// The column whose footer is the one that matters most; -1 for none.
    void setTotalColumn(int column);
    /// A small line below the text at the left.
    void setNote(const QString& text);
    /// Paints the columns' footers and tells them to assistive tools.
    void tellTexts();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const TDBGrid& m_grid;
    const GridLayout& m_layout;
    int m_totalColumn = -1;
    QString m_note;
};

/// The rounded rim of a list grid, over everything that it holds; presses go through.
class GridRim : public QWidget {
public:
    GridRim(QWidget* grid, const GridLayout& layout);

    void layOut();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    const GridLayout& m_layout;
};

}  // namespace kovanix
