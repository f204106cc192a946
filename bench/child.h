#pragma once

#include <string>
#include <vector>

namespace kovanix::bench {

/// Path of a program that stands beside this one.
std::string neighbour(const std::string& program);

/// Starts a program and waits for its end. @return what it wrote to standard output; gives up where it fails.
std::string outputOf(const std::vector<std::string>& command);

/// Starts a program and waits until it writes the line "ready", then for its end.
/// @return milliseconds from before the start to that line
double millisecondsToReady(const std::vector<std::string>& command);

/// The milliseconds that the engine's own interface takes to read the product list of a shop
/// (bench_list_raw).
double rawListRead(const std::string& folder);

}  // namespace kovanix::bench
