#pragma once

#include <QString>

#include "kit/backgroundwork.h"
#include "yedek/manifest.h"

namespace kovanix::yedek {

/// Packs the parts of a copy into one file: its manifest first, then the parts, as a compressed archive that
/// any tar unpacks. @param folder  where the parts lie, under their names
/// @param target  there is none yet; it isn't synced. @throws Failure
void pack(const QString& folder, const Manifest& manifest, const QString& target,
          const WorkProgress& progress);

/// Reads what a packed copy says of itself, nothing more. @throws Refusal
Manifest readManifest(const QString& packed);

/// Unpacks a copy and proves it: every byte of the packed file, the sum of each part, what the engine finds
/// in the data, and every table's rows and sums. Nothing that fails stays behind.
/// @param folder  takes the parts; it is empty
/// @throws Refusal where the copy isn't what it says
Manifest unpackAndCheck(const QString& packed, const QString& folder, const WorkProgress& progress);

/// The SHA-256 of a file in hexadecimal digits. @throws Failure
QByteArray sha256Of(const QString& path, const WorkProgress& progress, const QString& what);

/// The password that a configuration holds for the shop's file. @param config  its path
QString passwordIn(const QString& config);

}  // namespace kovanix::yedek
