#pragma once

#include <functional>

namespace kovanix {

/// Has a sign given as soon as a statement of any connection begins to wait for a file that somebody else has
/// locked, or waits long for its server; an empty function ends that. It runs in the middle of the statement:
/// it must neither touch the database nor let events through. Nobody waits for a thread beside the
/// application's: no sign is given there.
void setWaitSign(std::function<void()> sign);

/// Gives the sign.
void giveWaitSign();

}  // namespace kovanix
