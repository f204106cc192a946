#pragma once

#include <chrono>

// The disk barriers of this process: every fsync and fdatasync that it makes, whichever library asks for it.

namespace kovanix {

/// How many there have been since the start.
long diskBarriers();

/// Has each of them take that much longer from now on, as on a slow disk.
void delayDiskBarriers(std::chrono::microseconds delay);

}  // namespace kovanix
