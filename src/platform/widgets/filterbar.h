#pragma once

#include <QLineEdit>
#include <QWidget>
#include <vector>

#include "widgets/look.h"

namespace kovanix {

struct GridLayout;

/// A cell of the filter bar: a magnifier while it is empty, a cross that empties it while it is filled.
class FilterCell : public QLineEdit {
    Q_OBJECT

public:
    explicit FilterCell(QWidget* parent);

    /// Whether the text can't be taken: it isn't in force, and is told so to the eye and to assistive tools.
    bool isRefused() const { return m_refused; }
    void setRefused(bool refused);

    /// At which side of the cell text and magnifier stand.
    void setNumber(bool number);
    /// Takes scale, letters and colours from the grid's.
    void setMeasures(const GridLayout& layout);

    /// Where a press empties the cell; empty where none does.
    QRect crossTarget() const;

Q_SIGNALS:
    /// Enter was pressed.
    void entered();
    /// The arrow that leads to the rows was pressed.
    void leftForRows();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    bool showsCross() const;
    void dress();
    QRectF well() const;
    double signInset() const;
    QColor color(ColorRole role) const;

    double m_scale = 1.0;
    int m_target = 44;
    Tone m_tone = Tone::light;
    bool m_number = false;
    bool m_refused = false;
    bool m_onCross = false;  // a press on the cross is down
};

/// The strip below a list's heading in which every column has a cell to search by.
class FilterBar : public QWidget {
    Q_OBJECT

public:
    /// @param layout  the grid's; it has to outlive the bar
    FilterBar(QWidget* parent, const GridLayout& layout);

    int count() const { return static_cast<int>(m_cells.size()); }
    FilterCell& cell(int column) const { return *m_cells[static_cast<size_t>(column)]; }
    void setCount(int count);

    /// Gives a cell a text that nobody typed: nothing is emitted.
    void setText(int column, const QString& text);

    /// Names the cells "TDBGrid1_filter_0", …
    void setCellNames(const QString& grid);

    /// Puts every cell below its heading.
    void layOut();

Q_SIGNALS:
    /// The user changed a cell's text.
    void typed(int column);
    void entered(int column);
    void leftForRows();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    const GridLayout& m_layout;
    std::vector<FilterCell*> m_cells;
    QString m_gridName;
    bool m_setting = false;  // a text that nobody typed is on its way
};

}  // namespace kovanix
