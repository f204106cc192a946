#pragma once

#include <QString>
#include <QStringList>

#include "kit/backgroundwork.h"
#include "yedek/copies.h"
#include "yedek/shop.h"
#include "yedek/storage.h"

namespace kovanix::yedek {

/// Takes a copy of a shop into a folder. It counts, and bears its name, once it has been read back from the
/// packed file and proved; whatever fails or is cancelled before leaves the folder as it was. Copies of this
/// shop that are older than what is kept go then.
/// @param folder  made where it is missing
/// @throws RuntimeError, WorkProgress::Cancelled
Copy takeCopy(const Shop& shop, const QString& folder, Storage& storage, const WorkProgress& progress);

/// Puts a proved copy into a further folder, reads it back from there, and has what is older than what is
/// kept of that shop go. Waits for another shop's run that is at work there. @throws as takeCopy
void repeatCopy(const Copy& copy, const QString& folder, Storage& storage, const WorkProgress& progress);

}  // namespace kovanix::yedek
