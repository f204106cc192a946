#pragma once

#include <QtGlobal>

namespace kovanix {

/// How often a test is to do what it does by chance.
/// @param variable  of the environment, by which somebody may want it more often than a build does
/// @param usually   where that isn't set, or is no number
inline int wantedTimes(const char* variable, int usually) {
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? wanted : usually;
}

}  // namespace kovanix
