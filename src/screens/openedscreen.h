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

    /// For a screen without an entry field or a list: the keyboard rests on its close button. What is pressed
    /// by hand doesn't take it away, or the Enter of the next scan would press that once more, and it is back
    /// there whenever the screen becomes active again. Tab reaches everything as before.
    void restOnCloseButton();

    /// Unloads the screen and gives the keyboard back.
    void leave();

    /// What leave() does last: gives the keyboard to where focusreturn.h says, unless a screen knows better.
    virtual void giveFocusBack();

    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QAbstractButton* m_closeButton = nullptr;
    bool m_restsOnCloseButton = false;
    vkFrame* m_frame = nullptr;
};

}  // namespace kovanix
