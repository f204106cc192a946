#pragma once

#include <QString>
#include <QStringList>

namespace kovanix {

/// What a test on a display of its own needs (an X server without a screen, a window manager, a keyboard to
/// press); names what this machine lacks, and is empty when all is there.
QString displayTrouble();

/// Runs this very program once more, on a display of its own with a window manager. @return its exit status
int runOnVirtualDisplay(int argc, char** argv);
/// Whether this is that run.
bool isOnVirtualDisplay();

/// Runs xdotool and waits for its end, with this program's event loop running. @return what it wrote; empty
/// when it failed
QString xdotool(const QStringList& arguments);
/// Presses keys of the X keyboard, "F9" or "alt+F4".
void pressKeys(const QStringList& keys);
/// Types letters, digits and Enter (a line feed) on the X keyboard, some 300 keys a second.
void typeKeys(const QString& text);

}  // namespace kovanix
