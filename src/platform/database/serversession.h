#pragma once

#include <QString>

namespace kovanix {

struct ServerAddress;

// What the sessions of tills and of tools on a database server have in common.

/// The number of the advisory lock under which tables are changed, one program after the other: "KVX".
constexpr int serverTableLock = 0x4B5658;

/// The settings of a session, as the server takes them on the way in ("-c name=value …"). Parallel sums would
/// add up in another order every time.
QString serverSessionSettings();

/// How a session is encrypted and the server's certificate is checked, as options of a toolkit's connection:
/// "sslmode=…;sslrootcert=…".
QString serverTlsOptions(const ServerAddress& address);

}  // namespace kovanix
