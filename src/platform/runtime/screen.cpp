#include "runtime/screen.h"

#include <QCloseEvent>

namespace kovanix {

namespace {
// The screen of ours that was active last; message boxes and other programs don't change it.
const Screen* lastActiveScreen = nullptr;
}  // namespace

Screen::Screen(QWidget* parent) : QWidget(parent, Qt::Window) {}

Screen::~Screen() {
    if (lastActiveScreen == this)
        lastActiveScreen = nullptr;
}

void Screen::closeEvent(QCloseEvent* event) {
    event->accept();
    ScreenRegistry::unload(*this);
}

bool Screen::event(QEvent* event) {
    const bool handled = QWidget::event(event);
    if (event->type() == QEvent::WindowActivate && lastActiveScreen != this) {
        lastActiveScreen = this;
        form_activate();
    }
    return handled;
}

}  // namespace kovanix
