#pragma once

#include <QRect>
#include <Qt>

class QWidget;

namespace kovanix {

/// Gives a control the focus: shows, raises and activates its window (a minimised one comes back), then
/// focuses the control. Costs nothing when the control has the focus in the active window already.
void giveFocus(QWidget& control);

/// The same, for when the active window goes: a window manager that makes another one active in its place is
/// overruled, unless the user has pressed something since or it was brought to the front by the program.
void giveFocusForGood(QWidget& control);

/// The window that was brought to the front last and is visible still, whether or not it is active yet; no
/// message box. Nothing where there is none.
QWidget* frontWindow();

/// Brings a minimised window back to the state that it had before, maximised or not.
void restore(QWidget& window);

/// What a window that opens belongs to, and where it goes.
struct Opening {
    /// The window, or a control of it, that the opened one belongs to: it stays above it, and is closed when
    /// that is hidden or gone. None, or one that isn't shown: the window that all others were opened from,
    /// which it outlives.
    QWidget* opener = nullptr;
    /// Centred on the window that it stands above, or along edges of the screen or of a part of it.
    Qt::Alignment place = Qt::AlignCenter;
    /// That part, in the screen's coordinates; empty for all of it.
    QRect within{};
};

/// Opens a window in front of the active one and gives it the keyboard. A window that wasn't open gets the
/// size of its hint, scaled with the screen from the design size of 1024×768, and is whole on the screen; a
/// maximised one that of the screen at once. An open one keeps size and place and belongs to its new opener,
/// a minimised one comes back. A window that doesn't accept the keyboard leaves it where it is.
void showInFront(QWidget& window, const Opening& opening = {});

}  // namespace kovanix
