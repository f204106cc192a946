#pragma once

namespace kovanix {

/// The whole life of the till: command line, single instance, the shop's folder, then the entry procedure and
/// the event loop.
/// @return the process's exit status
int runTill(int argc, char** argv);

}  // namespace kovanix
