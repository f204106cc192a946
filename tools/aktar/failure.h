#pragma once

#include <QString>

#include "runtime/runtimeerror.h"

namespace kovanix::aktar {

/// A file that can't be used: nothing was written.
class Refused : public RuntimeError {
public:
    explicit Refused(const QString& words) : RuntimeError(badFile, words, QStringLiteral("kovanix-aktar")) {}

private:
    static constexpr int badFile = 321;  // invalid file format
};

/// @throws Refused in these words
[[noreturn]] inline void fail(const QString& words) {
    throw Refused(words);
}

}  // namespace kovanix::aktar
