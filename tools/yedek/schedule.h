#pragma once

#include <QString>

namespace kovanix::yedek {

// The copy of each day, by the timer of the user's own systemd.

/// Whether a copy is taken each day.
bool isScheduled();
/// Has one taken each day of the shop in a folder. @throws Failure where this machine has no such timers
void schedule(const QString& shopFolder);
/// Has none taken any more. @throws Failure likewise
void unschedule();

}  // namespace kovanix::yedek
