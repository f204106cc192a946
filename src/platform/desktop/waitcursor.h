#pragma once

namespace kovanix {

/// Shows the wait cursor on every window at once, until the event loop runs again, be it a message box's. It
/// lets no events through.
void showWaitCursor();

/// The wait cursor on every window for as long as it lives. No message box belongs under it.
class WaitCursor {
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

}  // namespace kovanix
