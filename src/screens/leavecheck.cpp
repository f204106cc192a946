#include "screens/leavecheck.h"

#include <QAbstractScrollArea>
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
    if (watched == &m_field && event->type() == QEvent::FocusIn) {
        m_entered = true;
        qApp->installEventFilter(this);
    }
    if (watched == &m_field && event->type() == QEvent::FocusOut)
        m_pressed = static_cast<QFocusEvent*>(event)->reason() == Qt::MouseFocusReason;
    if (event->type() == QEvent::MouseButtonRelease)
        m_passed = false;
    if (event->type() == QEvent::MouseButtonPress && watched->isWidgetType())
        return dropsPress(static_cast<QWidget&>(*watched));
    return QObject::eventFilter(watched, event);
}

/// A press moves the focus before it reaches what it hits, except where that takes the focus by itself.
bool LeaveCheck::dropsPress(const QWidget& hit) {
    if (m_pressIsOn) {
        m_pressIsOn = false;
        qApp->removeEventFilter(this);
        return !m_check();
    }
    if (!m_entered || !m_field.hasFocus() || !leavesFor(hit))
        return false;
    m_passed = m_check();
    return !m_passed;
}

/// Whether that is the rows of a list: it takes the focus by itself, once the press has reached it.
bool LeaveCheck::leavesFor(const QWidget& hit) const {
    const auto* list = qobject_cast<const QAbstractScrollArea*>(hit.parentWidget());
    return list && list->viewport() == &hit && list->isEnabled() && hit.window() == m_field.window();
}

void LeaveCheck::focusChanged(QWidget* now) {
    if (!m_entered || !now || now == &m_field || now->window() != m_field.window())
        return;
    m_entered = false;
    const bool passed = std::exchange(m_passed, false) || !m_field.isVisible() || !m_field.isEnabled();
    const bool pressed = std::exchange(m_pressed, false);
    if (pressed && !passed) {
        m_pressIsOn = true;
        return;
    }
    qApp->removeEventFilter(this);
    if (!passed)
        m_check();
}

}  // namespace kovanix
