#pragma once

#include <QtGlobal>
#include <functional>

namespace kovanix {

/// Told between the chunks of a read, while no statement is open: how many rows there are by now, and about
/// how many there will be (never less). A read that is done with its first chunk tells nothing.
using ReadProgress = std::function<void(qsizetype rows, qsizetype total)>;

/// Told how much of a copy is done of how much, in whatever it counts; may throw, which ends the copy.
using CopyProgress = std::function<void(qint64 done, qint64 total)>;

}  // namespace kovanix
