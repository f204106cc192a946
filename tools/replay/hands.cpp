#include "hands.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

#include "player.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

void sendMouse(QWidget& control, QEvent::Type type, const QPointF& place, Qt::MouseButton button) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
    QMouseEvent event(type, place, control.mapToGlobal(place), button, held, Qt::NoModifier);
    QApplication::sendEvent(&control, &event);
}

/// The toolkit does this for presses of its own only.
void focusPressed(QWidget& control) {
    for (QWidget* candidate = &control; candidate; candidate = candidate->parentWidget()) {
        if (candidate->isEnabled() && (candidate->focusPolicy() & Qt::ClickFocus) == Qt::ClickFocus) {
            candidate->setFocus(Qt::MouseFocusReason);
            return;
        }
        if (candidate->isWindow())
            return;
    }
}

}  // namespace

bool canPress(const QWidget& control) {
    return canPress(control, control.rect().center());
}

bool canPress(const QWidget& control, const QPoint& place) {
    if (!control.isVisible() || !control.isEnabled() || !control.rect().contains(place))
        return false;
    return control.window()->childAt(control.mapTo(control.window(), place)) == &control;
}

void pressOn(QWidget& control, Qt::MouseButton button) {
    pressOn(control, control.rect().center(), button);
}

void pressOn(QWidget& control, const QPoint& place, Qt::MouseButton button) {
    focusPressed(control);
    sendMouse(control, QEvent::MouseButtonPress, place, button);
    sendMouse(control, QEvent::MouseButtonRelease, place, button);
}

void pressTwice(QWidget& control) {
    pressTwice(control, control.rect().center());
}

void pressTwice(QWidget& control, const QPoint& place) {
    pressOn(control, place);
    sendMouse(control, QEvent::MouseButtonDblClick, place, Qt::LeftButton);
    sendMouse(control, QEvent::MouseButtonRelease, place, Qt::LeftButton);
}

void sendEnter() {
    sendKey(Qt::Key_Return, u"\r"_s);
}

}  // namespace kovanix
