#pragma once

#include <functional>

namespace kovanix {

/// Ends the process with the given exit status as soon as the running event procedure returns: no screen is
/// asked or unloaded one by one, open connections are closed on the way out.
void endProcess(int status);

/// Ends the process on the spot, from wherever it stands: for failures after which nothing of its state can
/// be relied on. The steps of atProcessEnd are run and standard streams flushed, nothing else.
[[noreturn]] void abandonProcess(int status);

/// Has a step run when the process ends, the latest one first: ahead of the destruction of every static
/// object that is there by now, and in abandonProcess. The toolkit calls exit() by itself, when its display
/// is gone for one. A process that is killed runs none.
void atProcessEnd(void (*step)());

/// Has a request from outside to end (the session's or the machine's end, Ctrl+C in a terminal) end the event
/// loop with status 0, as endProcess does. A second request kills.
void endOnRequest();

/// Keeps this process's memory, in which passwords lie, off the disk: no core file, no image for a crash
/// reporter, no debugger of the same user. What the process starts later has no core file either, but its own
/// memory image.
void forbidCoreDumps();

/// Has the toolkit hash texts without the processor's wide registers. Where the processor has instructions
/// for it, its hash leaves their upper halves in use, and everything that was built for the narrow ones (the
/// engine, most of the toolkit) runs at half its speed from then on. The price is the random seed, which
/// guards servers against keys that a stranger has chosen. A hash table keeps the way that it was made with:
/// to be called ahead of the application object.
void hashInNarrowRegisters();

/// Replaces what endProcess does; an empty function brings the real one back. The program itself never calls
/// it.
void setProcessEnd(std::function<void(int)> end);

}  // namespace kovanix
