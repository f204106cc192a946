#pragma once

class QWidget;

namespace kovanix {

/// Gives a control the focus: shows, raises and activates its window (a minimised one comes back), then
/// focuses the control. Costs nothing when the control has the focus in the active window already.
void giveFocus(QWidget& control);

/// Brings a minimised window back to the state that it had before, maximised or not.
void restore(QWidget& window);

/// Opens a window in front of the active one and gives it the keyboard. It stays above the window that all
/// others were opened from and is centred on that. A window that wasn't open gets the size of its hint,
/// scaled with the screen from the design size of 1024×768, and is whole on the screen; an open one keeps
/// size and place, a minimised one comes back.
void showInFront(QWidget& window);

}  // namespace kovanix
