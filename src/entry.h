#pragma once

namespace kovanix {

/// Brings the configuration into step and opens the shop's file, where there is one: what comes before the
/// first screen.
void startConnection();

/// The whole life of the till: command line, single instance, the shop's folder, then the entry procedure and
/// the event loop.
/// @return the process's exit status
int runTill(int argc, char** argv);

}  // namespace kovanix
