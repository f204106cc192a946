#pragma once

#include "runtime/screen.h"

class QAbstractButton;

namespace kovanix {

/// A screen that another one opens and that is left again. Escape presses its close button, the window's own
/// X unloads it, and whichever way it goes, the keyboard is back where focusreturn.h says.
class OpenedScreen : public Screen {
    Q_OBJECT

public:
    using Screen::Screen;
    ~OpenedScreen() override;

protected:
    /// Names the button that closes the screen. It has the focus at first: the Enter of a scan that arrives
    /// here then does nothing worse than close the screen. Without such a button, Escape closes the window.
    void setCloseButton(QAbstractButton& button);

    /// Leaves the keyboard where it is when something is pressed by hand, in a screen of settings: the Enter of
    /// the next scan would press it once more. Tab reaches everything as before.
    void keepFocusOnPress();

    /// Unloads the screen and gives the keyboard back.
    void leave();

    /// What leave() does last: gives the keyboard to where focusreturn.h says, unless a screen knows better.
    virtual void giveFocusBack();

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QAbstractButton* m_closeButton = nullptr;
};

}  // namespace kovanix
