#pragma once

#include <functional>

#include "aktar/importplan.h"

namespace kovanix {
class Connection;
}

namespace kovanix::aktar {

/// Works out what an import would do; nothing is written.
/// @param progress  told what is being done and how far it is
/// @throws RuntimeError
ImportPlan planImport(
    Connection& connection, const CellTable& table, Kind kind, const Mapping& mapping,
    const std::function<void(const QString& what, qint64 done, qint64 total)>& progress = {});

/// The columns of a file in words of the command line: "barkod,urun,-,satis", each column of the file in its
/// order, "-" for one that isn't taken. @throws RuntimeError for a name that is no column
Mapping mapByNames(const QString& names, const CellTable& table, Kind kind);

/// The columns of a file as mapByNames takes them.
QString namesOf(const Mapping& mapping, Kind kind);

}  // namespace kovanix::aktar
