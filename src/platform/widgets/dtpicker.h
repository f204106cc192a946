#pragma once

#include <QDateTime>
#include <QWidget>

namespace kovanix {

/// A field for a day or for a time of day: typed, or chosen from a calendar, respectively from a panel of
/// hours and a panel of minutes, that drops from its button.
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
    QDate date() const { return m_value.date(); }
    /// An invalid day changes nothing.
    void setDate(QDate date);

    /// The time of day, to the second.
    QTime time() const { return m_value.time(); }
    /// An invalid time changes nothing.
    void setTime(QTime time);

    /// What the field shows: dd.MM.yyyy or HH:mm:ss.
    QString text() const;

Q_SIGNALS:
    /// The calendar or the panels have closed, or a typed value was confirmed by Enter; behind change().
    void closeUp();
    /// The user has changed the value.
    void change();
    /// The keyboard went elsewhere than to the picker's own parts.
    void lostFocus();

private:
    Format m_format = Format::date;
    QDateTime m_value;
};

}  // namespace kovanix
