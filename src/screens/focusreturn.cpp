#include "screens/focusreturn.h"

#include <QPointer>
#include <QWidget>

#include "desktop/focus.h"

namespace kovanix {

namespace {

QPointer<QWidget>& target() {
    static QPointer<QWidget> control;
    return control;
}

}  // namespace

void setFocusReturn(QWidget& control) {
    target() = &control;
}

void returnFocus() {
    if (target() && target()->window()->isVisible())
        giveFocusForGood(*target());
}

}  // namespace kovanix
