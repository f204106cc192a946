#pragma once

namespace kovanix::tasi {

/// Has the first request from outside to end (SIGTERM, SIGINT, SIGHUP) be heeded where the work can stop
/// without a trace instead of ending the process where it stands. Signals that whoever started the program
/// has ignored stay so. A reader of the output who goes away ends nothing by itself.
void heedRequestsToStop();

/// Ends the work where somebody has asked for it. @throws Failure
void stopIfAsked();

}  // namespace kovanix::tasi
