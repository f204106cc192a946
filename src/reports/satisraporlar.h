#pragma once

#include "database/changemark.h"
#include "screens/listscreen.h"
#include "ui_satisraporlar.h"
#include "widgets/timer.h"

namespace kovanix {

/// The sales report: the sold lines of a range of time, newest first, and what they come to. The range stands
/// in the screen's controls and nowhere else.
///
/// The sums below the list are those of the whole range, whatever the filter bar lets through, and are what
/// was stored with each line: nothing is worked out anew.
class satisraporlar : public ListScreen {
    Q_OBJECT

public:
    satisraporlar();
    ~satisraporlar() override;

    void form_load() override;

    Ui::satisraporlar ui;
    Timer acilis;  ///< reads once more, a second behind the load

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// The strip tells the range in words, not a count.
    void tellCount() override {}
    /// A range that is refused, by a time that is none, leaves the words of the one before.
    void tellEmpty(bool readable) override;

private:
    /// What the lines of a range come to, as last read.
    struct Sums {
        QString range;
        ChangeMark mark;  ///< of the database's content just ahead of the read
        QString quantity;
        QString turnover;
        QString profit;
    };

    /// The cells of a panel, by their index in Label1.
    struct Cells {
        int columns;
        int width;  ///< at the design size
        int first;
        int count;
        int closes;
    };

    void connectControls();
    void addCells(vkFrame& panel, const Cells& cells);
    void openPanel(vkFrame& panel, const QString& end);
    void placePanel(vkFrame& panel);

    void acilis_tick();
    void bugunkusatis_click();
    void dunkusatis_click();
    void haftaliksatis_click();
    void ayliksatis_click();
    void tarihlerarasi_click();
    void Button_XP12_click();
    void Button_XP14_click();
    void Button_XP15_click();
    void vkToggleButton1_click();
    void Label1_click(int index, const QString& caption);
    void urunsil_click();
    void excelekaydet_click();
    void vkCommand1_click();
    void htmlkaydet_click();
    void yazdir_click();
    void vkCommand4_click();

    void preset(int daysBack, int daysLong);
    void joinTimes();
    void showRange();
    void satisgetir(bool takesFocus = true);
    bool showSums(const QString& range);
    void deleteSale(const QString& number);
    void exportTo(const QString& path);

    Sums m_sums;
    bool m_wasRead = false;  ///< rows stand, or there were none
};

}  // namespace kovanix
