#pragma once

#include <QString>

namespace kovanix::tasi {

/// Asks at the terminal, without showing what is typed.
/// @param twice  for a new password: until both are equal
/// @throws Failure where there is no terminal
QString askPassword(const QString& question, bool twice = false);

/// The password that the settings of an application folder hold for its database file; empty for none.
QString configuredPassword(const QString& folder);

}  // namespace kovanix::tasi
