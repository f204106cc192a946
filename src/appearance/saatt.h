#pragma once

#include "appearance/clockdial.h"
#include "screens/openedscreen.h"
#include "widgets/timer.h"

namespace kovanix {

/// The analog clock: a dial with two hands that move once a second, and a sweep at its centre that shows that
/// the till is alive. Its window is the dial and never takes the keyboard; it is moved by dragging it, and a
/// click on it closes it.
class saatt : public OpenedScreen {
    Q_OBJECT

public:
    saatt();
    ~saatt() override;

    void form_load() override;

    QSize sizeHint() const override { return ClockDial::designSize; }
    const ClockHands& hands() const { return m_hands; }
    /// The dial as it is drawn for the window's present size.
    const ClockDial& dial();

    Timer Timer1;  ///< the hands
    Timer Timer2;  ///< the sweep

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void Timer1_tick();
    void Timer2_tick();
    void form_click();
    void tellTime(QTime time);

    ClockHands m_hands;
    ClockDial m_dial;
    bool m_pressed = false;
    QPoint m_pressedAt;
};

}  // namespace kovanix
