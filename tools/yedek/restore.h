#pragma once

#include <QString>

#include "kit/backgroundwork.h"
#include "yedek/manifest.h"
#include "yedek/shop.h"
#include "yedek/storage.h"

namespace kovanix::yedek {

/// What a restore has left.
struct Restored {
    Manifest manifest;
    QString data;             ///< the shop's file now
    QString keptData;         ///< the one of before; empty where there was none
    QString keptConfig;       ///< the configuration of before; empty where there was none
    bool leftServer = false;  ///< the shop's data lay on a server, which holds them still
};

/// Puts a copy in the shop's place. The copy is proved first; no till of this machine may run or start
/// meanwhile, and nobody have the file open. What is replaced stays beside it under another name. Whenever
/// the power goes, the shop is whole: the old one or the new one, with its own configuration.
///
/// A configuration names the shop's file, so that renaming one in is the moment at which the new shop is
/// there.
///
/// A shop on a database server becomes one in a file of the application folder: this machine's tills use the
/// file from then on. The server, what it holds, and the tills of other machines stay as they are.
/// @throws Refusal where a copy, a till or the folder stands against it; RuntimeError,
/// WorkProgress::Cancelled
Restored restoreCopy(const Shop& shop, const QString& packed, Storage& storage, const WorkProgress& progress);

/// Proves a copy in a folder for what isn't whole yet, and throws it away. @throws Refusal where it isn't
/// what it says, or its name isn't that of its moment
Manifest checkCopy(const QString& packed, const QString& workPlace, const WorkProgress& progress);

}  // namespace kovanix::yedek
