#include "screens/leavecheck.h"

#include <QApplication>
#include <QFocusEvent>
#include <QWidget>
#include <utility>

namespace kovanix {

LeaveCheck::LeaveCheck(QWidget& field, std::function<bool()> check)
    : QObject(&field), m_field(field), m_check(std::move(check)) {
    field.installEventFilter(this);
    connect(qApp, &QApplication::focusChanged, this,
            [this](QWidget* /*former*/, QWidget* now) { focusChanged(now); });
}

bool LeaveCheck::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &m_field && event->type() == QEvent::FocusIn)
        m_entered = true;
    if (watched == &m_field && event->type() == QEvent::FocusOut)
        m_pressed = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
    if (m_pressIsOn && event->type() == QEvent::MouseButtonPress && watched->isWidgetType()) {
        m_pressIsOn = false;
        qApp->removeEventFilter(this);
        return !m_check();
    }
    return QObject::eventFilter(watched, event);
}

/// A press moves the focus before it reaches what it hits.
void LeaveCheck::focusChanged(QWidget* now) {
    if (!m_entered || !now || now == &m_field || now->window() != m_field.window())
        return;
    m_entered = false;
    const bool pressed = std::exchange(m_pressed, false);
    if (!m_field.isVisible())
        return;
    if (!pressed) {
        m_check();
        return;
    }
    m_pressIsOn = true;
    qApp->installEventFilter(this);
}

}  // namespace kovanix
