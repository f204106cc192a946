#pragma once

#include "runtime/runtimeerror.h"

namespace kovanix::yedek {

/// Something went wrong: what was begun has been taken back.
class Failure : public RuntimeError {
public:
    explicit Failure(const QString& description)
        : RuntimeError(1, description, QStringLiteral("kovanix-yedek")) {}
};

/// Nothing was changed, because it would have done harm.
class Refusal : public Failure {
public:
    using Failure::Failure;
};

}  // namespace kovanix::yedek
