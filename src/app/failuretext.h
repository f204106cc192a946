#pragma once

#include <QString>

namespace kovanix {

class RuntimeError;

/// The text of the box for a failure that nobody caught: that the program ends, what has happened, that what
/// was stored is safe; behind it, for support, number and description.
QString uncaughtFailureText(const RuntimeError& error);

}  // namespace kovanix
