#include "desktop/focus.h"

#include <QWidget>

namespace kovanix {

void giveFocus(QWidget& control) {
    // Asked for on every scan: the usual case must not reach the window system.
    QWidget& window = *control.window();
    if (!window.isActiveWindow() || window.isMinimized() || !window.isVisible()) {
        if (window.isMinimized())
            window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
        if (!window.isVisible())
            window.show();
        window.raise();
        window.activateWindow();
    }
    if (!control.hasFocus())
        control.setFocus(Qt::OtherFocusReason);
}

}  // namespace kovanix
