#pragma once

#include <QString>

namespace kovanix {

/// The name that a running till holds (see SingleInstance).
QString tekornekadi();

/// Whether this process is the first instance on the machine, whichever user runs it. The first call takes
/// the name and holds it until the process ends; a machine that refuses the attempt counts as not first.
bool tekorneksorgu();

/// Brings the running instance to the front; a failure to do so is passed over.
void tekornekoneal();

}  // namespace kovanix
