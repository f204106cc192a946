#pragma once

#include <QString>

namespace kovanix {

/// The switch of the trace: on means that nothing is written. No setting and no command line reaches it; a
/// diagnostic build (KOVANIX_DIAGNOSTIC) has it the other way round.
#ifdef KOVANIX_DIAGNOSTIC
inline constexpr bool izkapali = false;
#else
inline constexpr bool izkapali = true;
#endif

/// Writes one mark with the present moment to "kovanix_trace.log" in the application folder, and always to a
/// second one in the folder that TEMP names, which survives a read-only application folder. Each line is on
/// disk before the call returns. Failures are swallowed. Does nothing in a delivered build.
void izyaz(const QString& text);

}  // namespace kovanix
