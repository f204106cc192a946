#pragma once

#include <QtCharts/QChartView>

#include "grafik/figurechart.h"

namespace kovanix {

/// A chart in a window: a touch, or the arrow keys, choose the row whose figures it tells. Assistive tools
/// are told them as its description.
class ChartView : public QChartView {
    Q_OBJECT

public:
    explicit ChartView(QWidget* parent = nullptr);

    void setTable(const FigureTable& table);
    int chosen() const { return m_chart->chosen(); }
    /// Tells nobody. @param row  -1 for none
    void choose(int row);

Q_SIGNALS:
    /// The user has chosen another row, or none.
    void rowChosen(int row);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void chooseByHand(int row);

    FigureChart* m_chart;
};

}  // namespace kovanix
