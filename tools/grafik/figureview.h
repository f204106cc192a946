#pragma once

#include <QTableView>

namespace kovanix {

class FigureModel;
struct FigureTable;

/// The table beside the chart, painted as the till's lists: long names in two lines, numbers whole. What is
/// chosen can be copied with Ctrl+C.
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
    void layOut();
    void copyChosen() const;

    FigureModel* m_model;
    bool m_choosing = false;
};

}  // namespace kovanix
