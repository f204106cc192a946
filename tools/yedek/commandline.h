#pragma once

#include "kit/toolprogram.h"

namespace kovanix::yedek {

/// The exit status where the folder has its copy and a stick didn't take it: taking another one would change
/// nothing.
inline constexpr int stickFailed = 5;

/// What the program is asked for on its command line.
class CommandLine : public ToolCommandLine {
public:
    CommandLine();

    /// Whether nothing is asked for, or a copy that is taken in the window.
    bool wantsWindow() const;
    /// Does what is asked for. @return the exit status
    int run() const;

    const QCommandLineOption take;
    const QCommandLineOption restore;
    const QCommandLineOption list;
    const QCommandLineOption check;
    const QCommandLineOption scheduled;
    const QCommandLineOption unscheduled;
    const QCommandLineOption place;
    const QCommandLineOption yes;
    const QCommandLineOption inWindow;

private:
    qsizetype tasks() const;
    int runTake() const;
    int runRestore() const;
    int runList() const;
    int runCheck() const;
    QString chosenFolder() const;
};

}  // namespace kovanix::yedek
