#pragma once

#include <QDate>
#include <QFont>
#include <QList>
#include <QWidget>

namespace kovanix {

class DayCell;

/// A month as six weeks from Monday, with the days of its neighbours around: the days are buttons. One of
/// them is the chosen one, one is today, and one is where the keyboard stands, which starts at the chosen
/// one.
class MonthView : public QWidget {
    Q_OBJECT

public:
    /// In pixels.
    struct Measures {
        QSize cell;
        int gap;      ///< between two weeks
        int heading;  ///< the height of the weekdays' names
        QFont headingFont;
        QFont dayFont;
    };

    MonthView(QDate chosen, QDate today, const Measures& measures, QWidget* parent = nullptr);
    ~MonthView() override;

    /// The day where the keyboard stands; the month that is shown is its month.
    QDate current() const { return m_current; }
    /// A day that can't be chosen (one before the year 100, say) changes nothing.
    void setCurrent(QDate day);
    /// The same day so many months on, or the month's last one.
    void turn(int months) { setCurrent(m_current.addMonths(months)); }
    bool canTurn(int months) const;

    QDate chosen() const { return m_chosen; }
    void setChosen(QDate day);
    QDate today() const { return m_today; }

    /// Whether the day where the keyboard stands is marked: behind the first key.
    bool marksCurrent() const { return m_marksCurrent; }
    void setMarksCurrent(bool marks);

    /// The button on which a day stands, the month's own or a neighbour's; null for one that isn't shown.
    QWidget* cell(QDate day) const;
    /// That of the day where the keyboard stands.
    QWidget* currentCell() const { return cell(m_current); }

Q_SIGNALS:
    void dayChosen(QDate day);
    void monthChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fill();

    QDate m_chosen;
    QDate m_today;
    QDate m_current;
    Measures m_measures;
    bool m_marksCurrent = false;
    QList<DayCell*> m_cells;
};

}  // namespace kovanix
