#include "appearance/smallscreen.h"

#include <QAbstractButton>
#include <QKeyEvent>

#include "desktop/focus.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"

namespace kovanix {

SmallScreen::~SmallScreen() = default;

void SmallScreen::setCloseButton(QAbstractButton& button) {
    m_closeButton = &button;
    button.setFocus();
}

void SmallScreen::leave() {
    ScreenRegistry::unload(*this);
    // Asked for first: a notice may go while the sales screen is still being loaded, and must not show it.
    if (loaded<satisekrani>() && screen<satisekrani>().isVisible())
        giveFocus(*screen<satisekrani>().ui.barkod);
}

void SmallScreen::closeEvent(QCloseEvent* event) {
    Screen::closeEvent(event);
    leave();
}

void SmallScreen::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && m_closeButton)
        m_closeButton->click();
    else
        Screen::keyPressEvent(event);
}

}  // namespace kovanix
