#include "desktop/focus.h"

#include <QWidget>
#include <QWindow>

namespace kovanix {

void restore(QWidget& window) {
    // The widget's own state forgets "maximised" while it is minimised; the window system's doesn't.
    const Qt::WindowStates states =
        window.windowHandle() ? window.windowHandle()->windowStates() : window.windowState();
    window.setWindowState(states & ~Qt::WindowMinimized);
}

void giveFocus(QWidget& control) {
    // Asked for on every scan: the usual case must not reach the window system.
    QWidget& window = *control.window();
    if (!window.isActiveWindow() || window.isMinimized() || !window.isVisible()) {
        if (window.isMinimized())
            restore(window);
        if (!window.isVisible())
            window.show();
        window.raise();
        window.activateWindow();
    }
    if (!control.hasFocus())
        control.setFocus(Qt::OtherFocusReason);
}

}  // namespace kovanix
