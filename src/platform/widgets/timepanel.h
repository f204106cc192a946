#pragma once

#include "widgets/droppanel.h"

namespace kovanix {

class DrawnButton;

/// The panel from which the hour of a time of day is chosen, or its minute: a key for each, and KAPAT.
class TimePanel : public DropPanel {
    Q_OBJECT

public:
    enum class Part { hour, minute };

    TimePanel(QWidget& field, Part part, int current);
    ~TimePanel() override;

    DrawnButton* key(int number) const { return m_keys.value(number); }
    DrawnButton* closeButton() const { return m_close; }

Q_SIGNALS:
    void chosen(int number);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    QList<QWidget*> stops() const override;

private:
    void goTo(int number);

    QList<DrawnButton*> m_keys;
    DrawnButton* m_close;
    int m_columns;
    int m_current;  // where the keyboard stands
};

}  // namespace kovanix
