#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QPointer>
#include <QWidget>

class QEvent;
class QMouseEvent;

namespace kovanix {

/// Keeps an impatient finger's taps off what it never meant to press: what stood behind a window, a panel or
/// a message box that one of them has closed, and what one of them has opened.
///
/// A press is dropped where it follows another within the time of a double click, at about the same place,
/// and hits another window, or the control that the other hit is gone. Whoever goes on tapping is kept off
/// for twice that time and no longer. Of the desktop's requests to close a window, one that follows another
/// within that time upon another window is dropped, too, as often as it comes: the last one would end the
/// program.
///
/// One watches the whole program. Programs that press for a person have none: they are quicker than any
/// finger.
class TapGuard : public QObject {
    Q_OBJECT

public:
    /// Watches from now on; needs the application object.
    explicit TapGuard(QObject* parent = nullptr);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool isUnmeant(const QWidget& pressed, const QPoint& place) const;
    bool dropInWindow(const QObject& window, const QMouseEvent& press);
    bool press(QWidget& pressed, const QPoint& place);
    bool closeRequest(QWidget& window);

    // The last tap or request to close.
    QPointer<QWidget> m_control;  // nothing for a request
    QPointer<QWidget> m_window;
    QPoint m_place;             // on the desktop
    QElapsedTimer m_sinceLast;  // its end, or that of the last one dropped behind it
    QElapsedTimer m_sinceMeant;
    bool m_wasRequest = false;
    bool m_closing = false;          // a request is being carried out
    bool m_dropped = false;          // the press that is down was dropped: so is its release
    bool m_droppedInWindow = false;  // before a control could learn of it
    quint64 m_stamp = 0;             // of the last press: one that a control leaves to its parent comes again
};

}  // namespace kovanix
