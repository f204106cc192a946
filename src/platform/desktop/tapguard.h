#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

class QWidget;

namespace kovanix {

/// Keeps an impatient finger's taps off what stands behind a window that one of them has closed: presses that
/// follow quickly, at about the same place, are dropped. Each one dropped makes the wait anew.
class TapGuard : public QObject {
public:
    /// Watches where the window is pressed.
    explicit TapGuard(QWidget& window);

    /// The window goes. Nothing is dropped where it wasn't pressed a moment ago.
    void windowCloses() const;

    /// Lets all taps through again, whatever window has gone.
    static void reset();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
    QPoint m_place;
    QElapsedTimer m_sincePress;
};

}  // namespace kovanix
