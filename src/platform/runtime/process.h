#pragma once

#include <functional>

namespace kovanix {

/// Ends the process with the given exit status as soon as the running event procedure returns: no screen is
/// asked or unloaded one by one, open connections are closed on the way out.
void endProcess(int status);

/// Ends the process on the spot, from wherever it stands: for failures after which nothing of its state can
/// be relied on. Standard streams are flushed, nothing else is run.
[[noreturn]] void abandonProcess(int status);

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
