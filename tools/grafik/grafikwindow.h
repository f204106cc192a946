#pragma once

#include <QList>
#include <optional>

#include "grafik/salesreading.h"
#include "kit/toolwindow.h"

class QLabel;
class QStackedWidget;

namespace kovanix {

class ChartView;
class DTPicker;
class FigureView;

/// Turnover and profit of a time that is chosen, as bars by day, by hour or by product, and as a table.
class GrafikWindow : public ToolWindow {
    Q_OBJECT

public:
    GrafikWindow();
    ~GrafikWindow() override;

protected:
    void workEnded() override;

private:
    void addDivisions(QLayout& row);
    void addPickers(QLayout& row);
    void addPresets(QLayout& row);
    void addFigures();
    void addTotals();
    void addCommands();

    void choosePreset(DrawnButton& button, const DayRange& range);
    void readPicked();
    void read(const DayRange& range);
    void showPicture(SalesPicture picture);
    void showDivision();

    void print();
    void saveImage();
    void copy();

    SalesPicture m_picture;
    Division m_division = Division::day;
    std::optional<DayRange> m_next;  // what was chosen meanwhile
    QList<DrawnButton*> m_presets;
    DTPicker* m_first = nullptr;
    DTPicker* m_last = nullptr;
    QStackedWidget* m_places = nullptr;
    ChartView* m_chart = nullptr;
    FigureView* m_figures = nullptr;
    QLabel* m_quantity = nullptr;
    QLabel* m_turnover = nullptr;
    QLabel* m_profit = nullptr;
};

}  // namespace kovanix
