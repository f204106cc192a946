#pragma once

#include <QStringList>
#include <QTextStream>

#include "failure.h"

namespace kovanix::tasi {

/// Reads the command line, does what it asks for and tells of it.
/// @param arguments  with the program's own name ahead
ExitCode runCommandLine(const QStringList& arguments, QTextStream& out, QTextStream& errors);

}  // namespace kovanix::tasi
