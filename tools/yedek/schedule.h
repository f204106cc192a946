#pragma once

#include "yedek/shop.h"

namespace kovanix::yedek {

// The copy of each day, by the timer of the user's own systemd.

/// Whether a copy is taken each day.
bool isScheduled();
/// Has one taken each day of a shop. @throws Failure where there is none in its folder, or this machine has
/// no such timers: everything is as before then
void schedule(const Shop& shop);
/// Has none taken any more. @throws Failure likewise
void unschedule();

}  // namespace kovanix::yedek
