#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace kovanix {

/// What a test on a display of its own needs (an X server without a screen, a window manager, a keyboard to
/// press); names what this machine lacks, and is empty when all is there.
QString displayTrouble();

/// A display of this process's own with a window manager, 1024×768; both end with the object. One at a time.
class VirtualDisplay {
public:
    VirtualDisplay();
    ~VirtualDisplay();
    VirtualDisplay(const VirtualDisplay&) = delete;
    VirtualDisplay& operator=(const VirtualDisplay&) = delete;

    /// Puts the display into the environment of a program that is to be shown on it.
    void enter(QProcessEnvironment& environment) const;
    /// Takes the display away from whoever is on it.
    void vanish();

private:
    QString m_name;
    QProcess m_server;
    QProcess m_manager;
};

/// Runs this very program once more, on a display of its own with a window manager. @return its exit status
int runOnVirtualDisplay(int argc, char** argv);
/// Whether this is that run.
bool isOnVirtualDisplay();

/// Runs xdotool and waits for its end, with this program's event loop running. @return what it wrote; empty
/// when it failed
QString xdotool(const QStringList& arguments);
/// The same on the display of that environment.
QString xdotool(const QStringList& arguments, const QProcessEnvironment& environment);
/// Presses keys of the X keyboard, "F9" or "alt+F4".
void pressKeys(const QStringList& keys);
/// Types letters, digits and Enter (a line feed) on the X keyboard, some 300 keys a second.
void typeKeys(const QString& text);

}  // namespace kovanix
