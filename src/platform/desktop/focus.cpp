#include "desktop/focus.h"

#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "desktop/screensize.h"

namespace kovanix {

namespace {

constexpr QSizeF designScreen(1024, 768);

/// The first of the windows that stand open by themselves: between two screens, none is active.
QWindow* firstOpenWindow() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWindow* window) {
        const QWindow* owner = window->transientParent();
        const bool screen = window->type() == Qt::Window || window->type() == Qt::Dialog;
        return screen && window->isVisible() && !(owner && owner->isVisible());
    });
    return found == windows.end() ? nullptr : *found;
}

/// The window that the others were opened from: the first visible one in the chain of the active window's
/// owners. None when the window to open stands in that chain itself: it can't stand above itself.
QWindow* firstOwner(const QWidget& opened) {
    const QWidget* active = QApplication::activeWindow();
    QWindow* owner = nullptr;
    for (QWindow* window = active ? active->windowHandle() : firstOpenWindow(); window;
         window = window->transientParent()) {
        if (window == opened.windowHandle())
            return nullptr;
        if (window->isVisible())
            owner = window;
    }
    return owner;
}

/// Where windows may stand: the screen of that window, as large as the one source of the screen's size says.
QRect screenArea(const QWindow* owner) {
    const QScreen* screen = owner ? owner->screen() : QGuiApplication::primaryScreen();
    const QSize size = screenMetrics().pixels;
    if (!screen)
        return {QPoint(0, 0), size};
    // A panel of the desktop takes its part off.
    return screen->geometry().size() == size ? screen->availableGeometry()
                                             : QRect(screen->geometry().topLeft(), size);
}

/// Size and place for a window that opens.
void place(QWidget& window, const QWindow* owner) {
    const QSizeF screen = screenMetrics().pixels;
    const QRect area = screenArea(owner);
    // Its own frame isn't known before it is shown; the owner's is of the same make.
    const QMargins border = owner ? owner->frameMargins() : QMargins();
    const double scale =
        std::min(screen.width() / designScreen.width(), screen.height() / designScreen.height());
    const QSize hint = window.sizeHint();
    if (hint.isValid())
        window.resize((QSizeF(hint) * scale).toSize().boundedTo(area.size().shrunkBy(border)));
    QRect frame(QPoint(0, 0), window.size().grownBy(border));
    frame.moveCenter(owner ? owner->frameGeometry().center() : area.center());
    // The upper left corner last: where a window can't be whole, its title stays within reach.
    frame.moveBottomRight({std::min(frame.right(), area.right()), std::min(frame.bottom(), area.bottom())});
    frame.moveTopLeft({std::max(frame.left(), area.left()), std::max(frame.top(), area.top())});
    window.move(frame.topLeft());
}

void putAbove(QWidget& window, QWindow& owner) {
    // Window managers keep dialogs above their owners, other windows not.
    if (window.windowType() != Qt::Dialog)
        window.setWindowFlag(Qt::Dialog);
    window.winId();  // makes the window's handle, without showing it
    window.windowHandle()->setTransientParent(&owner);
}

}  // namespace

void showInFront(QWidget& window) {
    if (!window.isVisible()) {
        QWindow* owner = firstOwner(window);
        place(window, owner);
        if (owner)
            putAbove(window, *owner);
    } else if (window.isMinimized()) {
        restore(window);
    }
    window.show();
    window.raise();
    window.activateWindow();
}

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
