#pragma once

class QWidget;

namespace kovanix {

/// Gives a control the focus: shows, raises and activates its window (a minimised one comes back), then
/// focuses the control. Costs nothing when the control has the focus in the active window already.
void giveFocus(QWidget& control);

/// Brings a minimised window back to the state that it had before, maximised or not.
void restore(QWidget& window);

}  // namespace kovanix
