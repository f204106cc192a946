#pragma once

#include <QTableView>

namespace kovanix {

class FigureModel;
class FigurePainter;
struct FigureTable;

/// The table beside the chart, painted as the till's lists, but in letters of one size: long names break into
/// lines, and numbers are whole. What is chosen can be copied with Ctrl+C.
class FigureView : public QTableView {
    Q_OBJECT

public:
    explicit FigureView(QWidget* parent = nullptr);

    void setTable(const FigureTable& table);
    /// Tells nobody. @param row  -1 for none
    void choose(int row);

Q_SIGNALS:
    /// The user has chosen another row, or none.
    void rowChosen(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    QStringList longestFigures() const;
    int nameHeight(const QFont& letters, int width) const;
    void layOut();
    void copyChosen() const;

    FigureModel* m_model;
    FigurePainter* m_painter;
    bool m_choosing = false;
};

}  // namespace kovanix
