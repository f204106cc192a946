#pragma once

#include <optional>
#include <utility>

#include "runtime/runtimeerror.h"

namespace kovanix {

/// Runs one statement; when it fails, the program goes on behind it.
///
/// Only a RuntimeError is passed over: anything else is a defect of ours and goes on up. Write one statement
/// per call, so that a reader sees which failure is swallowed.
/// @return the failure, or nothing when the statement succeeded.
template <class Statement>
std::optional<RuntimeError> attempt(Statement&& statement) {
    try {
        std::forward<Statement>(statement)();
    } catch (const RuntimeError& error) {
        return error;
    }
    return std::nullopt;
}

}  // namespace kovanix
