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

void OpenedScreen::keepFocusOnPress() {
    const QList<QWidget*> controls = findChildren<QWidget*>();
    for (QWidget* control : controls) {
        if (control->focusPolicy() & Qt::TabFocus)
            control->setFocusPolicy(Qt::TabFocus);
    }
}

void OpenedScreen::leave() {
    ScreenRegistry::unload(*this);
    giveFocusBack();
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
