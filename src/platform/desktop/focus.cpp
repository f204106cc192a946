#include "desktop/focus.h"

#include <QWidget>

namespace kovanix {

void giveFocus(QWidget& control) {
    // Asked for on every scan: the usual case must not reach the window system.
    if (control.hasFocus() && control.isActiveWindow())
        return;
    QWidget& window = *control.window();
    if (window.isMinimized())
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    if (!window.isVisible())
        window.show();
    window.raise();
    window.activateWindow();
    control.setFocus(Qt::OtherFocusReason);
}

}  // namespace kovanix
