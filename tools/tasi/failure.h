#pragma once

#include "runtime/runtimeerror.h"

namespace kovanix::tasi {

/// How the program ends; part of what scripts and timers read.
enum class ExitCode {
    done = 0,
    failed = 1,       ///< something broke off; nothing has changed, run again
    usage = 2,        ///< the command line isn't one
    serverUnfit = 3,  ///< the server can't be reached, or its database isn't fit for the shop
    fileUnfit = 4,    ///< the file is in use, damaged, not a shop's, there already, or its password is wrong
    differs = 5,      ///< what was written read back differently; nothing has changed
    unfinished = 6,   ///< the shop is on the server, but not all files have been brought into step: run again
    uncertain = 7,    ///< the connection was lost while the server was to keep the shop: run again
    stopped = 8,      ///< somebody has asked it to stop; nothing has changed
};

/// Why a move has ended before its end, in the technician's words.
class Failure : public RuntimeError {
public:
    Failure(ExitCode code, const QString& description)
        : RuntimeError(static_cast<int>(code), description, QStringLiteral("kovanix-tasi")) {}

    ExitCode code() const { return static_cast<ExitCode>(number()); }
};

}  // namespace kovanix::tasi
