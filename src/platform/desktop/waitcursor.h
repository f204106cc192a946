#pragma once

namespace kovanix {

/// Shows the wait cursor on every window at once, until the event loop runs again, be it a message box's. It
/// lets no events through.
void showWaitCursor();

}  // namespace kovanix
