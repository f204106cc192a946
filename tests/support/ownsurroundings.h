#pragma once

#include <QString>

namespace kovanix {

/// Gives this process, and what it starts from now on, a network with nothing but a loopback, and mounts that
/// nobody else sees. For a program's beginning: it must have no threads yet.
/// @return why that isn't allowed here; empty when it is done
QString enterOwnSurroundings();

/// Takes the loopback of such a network away, as a pulled cable does, or brings it back.
/// @return whether that was done
bool setLoopback(bool up);

/// Mounts a small file system of its own over a folder. @return whether that was done
bool mountSmallDisk(const QString& folder, int megabytes);
void unmountDisk(const QString& folder);

/// Takes every byte that is left on a file system, or gives it back.
void fillDisk(const QString& folder);
void clearDisk(const QString& folder);

}  // namespace kovanix
