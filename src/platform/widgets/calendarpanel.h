#pragma once

#include <QDate>

#include "widgets/droppanel.h"

namespace kovanix {

class DrawnButton;
class MonthView;

/// The calendar of a field that holds a day: a month with arrows to its neighbours, and "Bugün" below.
class CalendarPanel : public DropPanel {
    Q_OBJECT

public:
    CalendarPanel(QWidget& field, QDate chosen);
    ~CalendarPanel() override;

    MonthView& month() const { return *m_month; }
    void setChosen(QDate day);

    struct Controls {
        DrawnButton* former;
        DrawnButton* next;
        DrawnButton* today;
    };
    const Controls& controls() const { return m_controls; }

Q_SIGNALS:
    void dayChosen(QDate day);

protected:
    QList<QWidget*> stops() const override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    DrawnButton* addArrow(const QString& icon, const QString& name, int months);
    void showMonth();

    Controls m_controls;
    MonthView* m_month;
};

}  // namespace kovanix
