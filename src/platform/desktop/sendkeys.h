#pragma once

#include <Qt>

class QWidget;

namespace kovanix {

// Keys that the till types by itself. One takes effect when the running event is over and everything sent
// before it has taken effect. It is dropped instead where a message box has come up since, where the window
// that it is meant for is hidden or gone, or where that window isn't active within two seconds.

/// Presses and releases a key in whatever has the focus at that time.
void sendKey(Qt::Key key);

/// The same in a window, as soon as that is active: a window manager takes its time.
/// @param receiver  a window, for what has the focus in it; or a control, which is given the focus first
void sendKey(Qt::Key key, QWidget& receiver);

/// Gives a control the focus in the same way: behind what its window does when it becomes active.
void sendFocus(QWidget& control);

}  // namespace kovanix
