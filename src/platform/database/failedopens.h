#pragma once

#include <QString>
#include <chrono>
#include <optional>

#include "database/databaseerror.h"

namespace kovanix {

/// The opens of servers by the calling thread that have failed of late. Within a moment, another one fails
/// with the same error, at once: a server that is away keeps nobody waiting twice for one thing that he did.
class FailedOpens {
public:
    /// @param key  tells what was to be opened. @param took  how long somebody has waited for it
    static void remember(const QString& key, const DatabaseError& error, std::chrono::milliseconds took);
    static void forget(const QString& key);
    /// The error of an open that has failed of late; nothing where there is none.
    static std::optional<DatabaseError> recent(const QString& key);

    /// How long a failed open is remembered.
    static inline std::chrono::milliseconds moment{2000};

    /// While one lives, no time passes for those that took long: somebody reads a message box, and what goes
    /// on behind it is still the same thing that he did. One that failed at once costs nothing to try again.
    class Hold {
    public:
        Hold();
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
    };
};

}  // namespace kovanix
