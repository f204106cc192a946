#pragma once

namespace kovanix {

/// Brings all process-wide values back to what they are after a start: no screen, no open connection, an
/// empty session, no theme, the machine's own clock, screen and end of the process.
void resetProcess();

}  // namespace kovanix
