#pragma once

#include <QStringList>
#include <optional>

#include "kit/backgroundwork.h"
#include "yedek/copies.h"
#include "yedek/shop.h"

namespace kovanix::yedek {

/// What a backup has come to: the copy in the folder stands, whatever became of the sticks.
struct BackupResult {
    Copy copy;
    QStringList sticks;    ///< the names of those that have it too
    QStringList troubles;  ///< what went wrong with others, in words
};

/// Takes a copy of the shop into its folder and onto each stick that is marked for copies.
/// @param folder  empty: the shop's own choice. @throws as takeCopy
BackupResult backUp(const Shop& shop, const QString& folder, const WorkProgress& progress);

/// Has the calling thread step back behind everything else that wants the processor or the disk.
void yieldToTheTill();

}  // namespace kovanix::yedek
