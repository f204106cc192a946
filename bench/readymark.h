#pragma once

#include <QString>

namespace kovanix::bench {

/// Has this process write the line "ready" and end in its orderly way, as soon as its first window has been
/// painted, is active, has the named control focused, and a turn of the event loop has gone by in which
/// nothing was painted any more. To be called before the application object is made.
void endWhenReady(const QString& focusedControl);

}  // namespace kovanix::bench
