#pragma once

#include "runtime/screen.h"

class QAbstractButton;

namespace kovanix {

class vkFrame;

/// A screen that another one opens and that is left again. Escape presses its close button, a request of the
/// desktop's to close it unloads it, and whichever way it goes, the keyboard is back where focusreturn.h
/// says.
class OpenedScreen : public Screen {
    Q_OBJECT

public:
    using Screen::Screen;
    ~OpenedScreen() override;

protected:
    /// Names the button that closes the screen. It has the focus at first: the Enter of a scan that arrives
    /// here then does nothing worse than close the screen. Without such a button, Escape closes the window.
    void setCloseButton(QAbstractButton& button);

    /// Makes a frame that fills the screen the frame of its window: the desktop puts none around it, its
    /// corners are round, and it is moved by its title bar.
    void standInFrame(vkFrame& frame);

    /// Leaves the keyboard where it is when something is pressed by hand, in a screen of settings: the Enter
    /// of the next scan would press it once more. Tab reaches everything as before.
    void keepFocusOnPress();

    /// Unloads the screen and gives the keyboard back.
    void leave();

    /// What leave() does last: gives the keyboard to where focusreturn.h says, unless a screen knows better.
    virtual void giveFocusBack();

    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QAbstractButton* m_closeButton = nullptr;
    vkFrame* m_frame = nullptr;
};

}  // namespace kovanix
