#include "desktop/tapguard.h"

#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QMouseEvent>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <utility>

namespace kovanix {

namespace {

constexpr int reach = 40;  // pixels; a finger is no pen

/// What a window of the desktop's shows.
QWidget* widgetIn(const QObject& window) {
    const QWidgetList all = QApplication::topLevelWidgets();
    const auto found =
        std::ranges::find_if(all, [&](const QWidget* each) { return each->windowHandle() == &window; });
    return found == all.cend() ? nullptr : *found;
}

/// The screen that a window of the desktop's shows; nothing for a message box, which its answer closes.
QWidget* screenIn(const QObject& window) {
    QWidget* widget = widgetIn(window);
    return qobject_cast<QDialog*>(widget) ? nullptr : widget;
}

}  // namespace

TapGuard::TapGuard(QObject* parent) : QObject(parent) {
    qApp->installEventFilter(this);
}

bool TapGuard::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonDblClick: {
            const auto& mouse = static_cast<const QMouseEvent&>(*event);
            if (watched->isWindowType())
                return dropInWindow(*watched, mouse);
            if (!watched->isWidgetType() || mouse.timestamp() == std::exchange(m_stamp, mouse.timestamp()))
                return false;
            return press(static_cast<QWidget&>(*watched), mouse.globalPosition().toPoint());
        }
        case QEvent::MouseButtonRelease:
            // In a window: of a press that was dropped there. All others come to a control.
            if (!watched->isWidgetType() && !(watched->isWindowType() && m_droppedInWindow))
                return false;
            m_droppedInWindow = false;
            // Keys act when the finger is lifted, other controls when it comes down.
            m_sinceLast.start();
            if (!m_dropped)
                m_sinceMeant.start();
            return std::exchange(m_dropped, false);
        case QEvent::Close:
            if (QWidget* window = event->spontaneous() ? screenIn(*watched) : nullptr;
                window && closeRequest(*window)) {
                event->ignore();
                return true;
            }
            return false;
        default:
            return false;
    }
}

bool TapGuard::isUnmeant(const QWidget& pressed, const QPoint& place) const {
    const qint64 interval = QApplication::doubleClickInterval();
    if (!m_sinceLast.isValid() || m_sinceLast.hasExpired(interval) || m_sinceMeant.hasExpired(2 * interval) ||
        (place - m_place).manhattanLength() > reach)
        return false;
    const QWidget* control = m_control.data();
    return pressed.window() != m_window.data() || !control || !control->isVisible();
}

/// Drops an unmeant press before it comes to a control: the toolkit gives what is pressed the focus ahead of
/// the press. @return whether it is dropped; all others are looked at again where they arrive
bool TapGuard::dropInWindow(const QObject& window, const QMouseEvent& press) {
    if (m_droppedInWindow && press.timestamp() == m_stamp)
        return true;  // the same one, as a double click
    const QWidget* widget = QApplication::activePopupWidget() ? nullptr : widgetIn(window);
    m_droppedInWindow = widget && isUnmeant(*widget, press.globalPosition().toPoint());
    if (!m_droppedInWindow)
        return false;
    m_stamp = press.timestamp();
    m_dropped = true;
    m_sinceLast.start();
    return true;
}

/// @return whether the press is dropped
bool TapGuard::press(QWidget& pressed, const QPoint& place) {
    m_dropped = isUnmeant(pressed, place);
    m_sinceLast.start();
    if (m_dropped)
        return true;
    m_sinceMeant.start();
    m_control = &pressed;
    m_window = pressed.window();
    m_place = place;
    m_wasRequest = false;
    return false;
}

/// @return whether the request is dropped
bool TapGuard::closeRequest(QWidget& window) {
    const bool soon = m_sinceLast.isValid() && !m_sinceLast.hasExpired(QApplication::doubleClickInterval());
    // What closes along with a window, or by a tap, is the program's own doing.
    if (m_closing || (soon && !m_wasRequest))
        return false;
    if (soon && m_window.data() != &window) {
        m_sinceLast.start();
        return true;
    }
    m_closing = true;
    QTimer::singleShot(0, this, [this] { m_closing = false; });
    m_sinceLast.start();
    m_sinceMeant.start();
    m_control = nullptr;
    m_window = &window;
    m_place = QCursor::pos();
    m_wasRequest = true;
    return false;
}

}  // namespace kovanix
