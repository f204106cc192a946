#include "screens/openedscreen.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>

#include "runtime/screenregistry.h"
#include "screens/focusreturn.h"

namespace kovanix {

OpenedScreen::~OpenedScreen() = default;

void OpenedScreen::setCloseButton(QAbstractButton& button) {
    m_closeButton = &button;
    button.setFocus();
}

void OpenedScreen::leave() {
    // In this order: a window manager that sees the active window go makes the next one active by itself.
    giveFocusBack();
    ScreenRegistry::unload(*this);
}

void OpenedScreen::giveFocusBack() {
    returnFocus();
}

void OpenedScreen::closeEvent(QCloseEvent* event) {
    event->accept();
    leave();
}

void OpenedScreen::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Escape)
        Screen::keyPressEvent(event);
    else if (m_closeButton)
        m_closeButton->click();
    else
        close();
}

}  // namespace kovanix
