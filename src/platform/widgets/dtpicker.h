#pragma once

#include <QDate>
#include <QIcon>
#include <QPointer>
#include <QTime>
#include <QWidget>
#include <optional>

class QAbstractButton;
class QLineEdit;

namespace kovanix {

class DropPanel;

/// A field for a day or for a time of day: typed, or chosen from a calendar, respectively from a panel of
/// hours and a panel of minutes, that drops from its button. F4, Alt+Down and Space drop it, too; Up and Down
/// in the field change the day, or the part of the time where the caret stands, by one.
///
/// It always holds a valid moment; what is typed and isn't one gives way to the one of before when the field
/// is left. Setting it from code tells nobody.
class DTPicker : public QWidget {
    Q_OBJECT
    Q_PROPERTY(Format format READ format WRITE setFormat)
    Q_PROPERTY(QString text READ text)

public:
    enum class Format { date, time };
    Q_ENUM(Format)

    explicit DTPicker(QWidget* parent = nullptr);
    ~DTPicker() override;

    Format format() const { return m_format; }
    void setFormat(Format format);

    /// The day; today at first, by the till's clock.
    QDate date() const { return m_date; }
    /// An invalid day, and one before the year 100 or behind the year 9999, changes nothing.
    void setDate(QDate date);

    /// The time of day, to the second; now at first, by the till's clock.
    QTime time() const { return m_time; }
    /// An invalid time changes nothing.
    void setTime(QTime time);

    /// What the field shows when nothing is being typed: dd.MM.yyyy or HH:mm:ss.
    QString text() const;

    /// Takes what was typed, as leaving the field does, and tells change(); what is no moment gives way to
    /// the one of before. @return whether the picker is still there
    bool takeTyped();

    /// Whether the calendar, or a panel, is open.
    bool isDropped() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

Q_SIGNALS:
    /// The calendar or the panels have closed, or a typed value was confirmed by Enter; behind change(). A
    /// picker that is hidden or put out of use while its calendar is open tells nothing.
    void closeUp();
    /// The user has changed the value.
    void change();
    /// The keyboard went to another control of the window.
    void lostFocus();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QRect buttonRect() const;
    void paintButton(QPainter& painter) const;
    void layOut();
    void showFormat();
    void showValue();

    struct Moment {
        QDate date;
        QTime time;
    };
    std::optional<Moment> typed() const;
    bool take(QDate date, QTime time);
    bool changeTo(QDate date, QTime time);
    void confirm();
    void step(int by);

    void toggle(bool byKeyboard);
    void dropCalendar(bool byKeyboard);
    void dropTime(bool minutes, bool byKeyboard);
    void drop(DropPanel& panel, bool byKeyboard);
    void discardPanel();
    void panelLeft();
    void chooseDay(QDate day);
    void chooseHour(int hour);
    void chooseMinute(int minute);

    bool isOwn(const QWidget* widget) const;
    void followFocus(const QWidget* now);

    Format m_format = Format::date;
    QDate m_date;
    QTime m_time;
    QLineEdit* m_edit;
    QAbstractButton* m_button;
    QIcon m_icon;
    QPointer<DropPanel> m_panel;  // the one that is open
    bool m_entered = false;       // it has had the keyboard and wasn't left yet
};

}  // namespace kovanix
