#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>

class QWidget;

namespace kovanix {

/// Keeps an impatient finger's taps off what stands behind a window that one of them has closed, and off one
/// that it has just opened: presses that follow quickly, at about the same place, are dropped. Each one
/// dropped makes the wait anew. So are requests of the desktop to close a window behind one that it has just
/// closed.
class TapGuard : public QObject {
    Q_OBJECT

public:
    /// Watches where the window is pressed.
    explicit TapGuard(QWidget& window);

    /// The window goes. Presses are dropped only where it was pressed a moment ago.
    /// @param onRequest  whether the desktop asked for it (its X), so that a second request would reach the
    ///                   window behind
    void windowCloses(bool onRequest = false) const;
    /// The window has opened another one.
    void windowOpens(QWidget& opened) const;

    /// Lets all taps through again, whatever window has come or gone.
    static void reset();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool wasPressed() const;

    QWidget& m_window;
    QPoint m_place;
    QElapsedTimer m_sinceTap;
};

}  // namespace kovanix
