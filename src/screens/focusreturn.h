#pragma once

class QWidget;

namespace kovanix {

/// Names the control that has the keyboard again when an opened screen is left. There is one; a later call
/// replaces it, and it is forgotten when it is deleted.
void setFocusReturn(QWidget& control);

/// Gives that control the focus. Nothing happens where none was named, or while its window isn't shown: a
/// notice may go while the screen is still being loaded, and must not show it.
void returnFocus();

}  // namespace kovanix
