#include "desktop/focus.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMessageBox>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>

#include "desktop/windowplace.h"

namespace kovanix {

namespace {

QPointer<QWidget>& lastFront() {
    static QPointer<QWidget> front;
    return front;
}

/// Takes the window that becomes active for the one in front. A message box isn't one: between two boxes no
/// window is active, and the second belongs where the first did.
void followActivation() {
    static const QObject* followed = nullptr;
    if (followed == qApp)
        return;
    followed = qApp;
    QObject::connect(qApp, &QGuiApplication::focusWindowChanged, qApp, [](const QWindow* active) {
        const QWidgetList all = QApplication::topLevelWidgets();
        const auto window = std::ranges::find_if(
            all, [active](const QWidget* each) { return active && each->windowHandle() == active; });
        if (window != all.cend() && !qobject_cast<QMessageBox*>(*window))
            lastFront() = *window;
    });
}

/// Makes a window active again that a window manager passes over: the one that was active before goes at that
/// very moment, and it picks the next by itself. For a second, and until somebody presses a key or a button
/// or another window is brought to the front.
class Insistence : public QObject {
public:
    explicit Insistence(QWidget& window) : m_window(&window) {
        current() = this;
        qApp->installEventFilter(this);
        connect(qApp, &QGuiApplication::focusWindowChanged, this, &Insistence::follow);
        QTimer::singleShot(1000, this, &QObject::deleteLater);
    }

    static QPointer<Insistence>& current() {
        static QPointer<Insistence> insistence;
        return insistence;
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        switch (event->type()) {
            case QEvent::KeyPress:
            case QEvent::MouseButtonPress:
            case QEvent::TouchBegin:
                m_window.clear();
                break;
            default:
                break;
        }
        return false;
    }

private:
    void follow(const QWindow* active) const {
        QWidget* window = m_window.data();
        if (active && window && window->isVisible() && window->windowHandle() != active &&
            !QApplication::activeModalWidget())
            window->activateWindow();
    }

    QPointer<QWidget> m_window;
};

void bringForward(QWidget& window) {
    followActivation();
    delete Insistence::current();
    window.show();
    window.raise();
    window.activateWindow();
    lastFront() = &window;
}

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

/// Size and place for a window that opens.
void place(QWidget& window, const QWindow* owner, const Opening& opening) {
    const QRect area = screenArea(owner);
    // Its own frame isn't known before it is shown; the owner's is of the same make.
    const bool framed = owner && !(window.windowFlags() & Qt::FramelessWindowHint);
    const QMargins border = framed ? owner->frameMargins() : QMargins();
    const QSize hint = window.sizeHint();
    const Qt::WindowStates states = window.windowState();
    if (states & Qt::WindowMaximized)
        window.resize(area.size().shrunkBy(border));
    else if (hint.isValid())
        window.resize((QSizeF(hint) * screenScale()).toSize().boundedTo(area.size().shrunkBy(border)));
    window.move(placeFor(window.size().grownBy(border), owner, opening.place, opening.within).topLeft());
    // A window that has been shown before is no longer maximised once it is given a size.
    window.setWindowState(states);
}

void putAbove(QWidget& window, QWindow& owner) {
    // Window managers keep dialogs above their owners, other windows not.
    if (window.windowType() != Qt::Dialog)
        window.setWindowFlag(Qt::Dialog);
    window.winId();  // makes the window's handle, without showing it
    window.windowHandle()->setTransientParent(&owner);
}

/// Closes a window when the one that it belongs to is hidden or gone.
class Belonging : public QObject {
public:
    Belonging(QWidget& window, QWidget& opener) : QObject(&window), m_window(window), m_opener(&opener) {
        opener.installEventFilter(this);
        connect(&opener, &QObject::destroyed, this, &Belonging::closeSoon);
    }

    bool eventFilter(QObject* /*opener*/, QEvent* event) override {
        // Not the one that comes from the window system, with a minimised window.
        if (event->type() == QEvent::Hide && !event->spontaneous())
            closeSoon();
        return false;
    }

private:
    /// Not at once: the opener is still on its way out, and at the end of the program nothing is closed any
    /// more.
    void closeSoon() {
        const auto close = [this] {
            const QWidget* opener = m_opener;
            if (opener && opener->isVisible())
                return;
            // Sent straight: what comes by the window system may be dropped as the second press on an X.
            QCloseEvent request;
            QCoreApplication::sendEvent(&m_window, &request);
            if (request.isAccepted())
                m_window.hide();
        };
        QMetaObject::invokeMethod(this, close, Qt::QueuedConnection);
    }

    QWidget& m_window;
    QPointer<QWidget> m_opener;
};

/// The window that a window belongs to from now on; nothing where that is to be found out.
QWindow* attach(QWidget& window, const Opening& opening) {
    if (!opening.opener)
        return nullptr;
    QWidget& opener = *opening.opener->window();
    if (!opener.isVisible() || &opener == &window)
        return nullptr;
    QWindow* owner = opener.windowHandle();
    for (const QWindow* above = owner; above; above = above->transientParent()) {
        if (above == window.windowHandle())
            return nullptr;  // it can't stand above itself
    }
    const bool open = window.isVisible();
    if (open && window.windowHandle()->transientParent() == owner)
        return owner;
    const QObjectList children = window.children();
    for (QObject* child : children) {
        if (dynamic_cast<Belonging*>(child))
            delete child;
    }
    new Belonging(window, opener);
    if (open) {
        // The window system hears of the owner when a window is shown.
        window.hide();
        putAbove(window, *owner);
        window.show();
    }
    return owner;
}

}  // namespace

void showInFront(QWidget& window, const Opening& opening) {
    QWindow* owner = attach(window, opening);
    if (!window.isVisible()) {
        if (!owner)
            owner = firstOwner(window);
        place(window, owner, opening);
        if (owner)
            putAbove(window, *owner);
    } else if (window.isMinimized()) {
        restore(window);
    }
    if (window.windowFlags() & Qt::WindowDoesNotAcceptFocus) {
        window.show();
        window.raise();
        return;
    }
    bringForward(window);
}

QWidget* frontWindow() {
    followActivation();
    QWidget* const front = lastFront().data();
    return front && front->isVisible() ? front : QApplication::activeWindow();
}

void restore(QWidget& window) {
    // The widget's own state forgets "maximised" while it is minimised; the window system's doesn't.
    const Qt::WindowStates states =
        window.windowHandle() ? window.windowHandle()->windowStates() : window.windowState();
    window.setWindowState(states & ~Qt::WindowMinimized);
}

void giveFocusForGood(QWidget& control) {
    giveFocus(control);
    delete Insistence::current();
    new Insistence(*control.window());
}

void giveFocus(QWidget& control) {
    // Asked for on every scan: the usual case must not reach the window system.
    QWidget& window = *control.window();
    if (!window.isActiveWindow() || window.isMinimized() || !window.isVisible()) {
        if (window.isMinimized())
            restore(window);
        bringForward(window);
    }
    if (!control.hasFocus())
        control.setFocus(Qt::OtherFocusReason);
}

}  // namespace kovanix
