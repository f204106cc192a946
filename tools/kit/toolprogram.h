#pragma once

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDate>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class QWidget;

namespace kovanix {

/// How a program beside the till ends, the same for all of them.
namespace ToolExit {
inline constexpr int done = 0;
inline constexpr int failed = 1;      ///< something went wrong: said on standard error
inline constexpr int wrongUsage = 2;  ///< an option that isn't known, or that doesn't go with another
inline constexpr int refused = 3;     ///< nothing was changed, because it would have done harm
inline constexpr int cancelled = 4;
}  // namespace ToolExit

/// What the programs beside the till have in common on the command line: --folder, --help, --version, and
/// that they show a window when they are told nothing to do.
class ToolCommandLine : public QCommandLineParser {
public:
    /// @param name  the program's, as it is called
    ToolCommandLine(const QString& name, const QString& description);

    /// Sets the application folder to the shop's: that of --folder, else where the till looks. It is never
    /// made. @return whether there is a shop in it
    bool findShop() const;

    /// Reads the program's arguments, and answers --help, --version and an option that isn't known.
    /// @return the exit status where that is all there is to do
    std::optional<int> answer();

    const QCommandLineOption folder;

private:
    const QCommandLineOption m_help;
    const QCommandLineOption m_version;
};

/// Runs a program beside the till: with a display and the till's look when it shows a window, without either
/// when the command line gives it something to do.
///
/// @param wantsWindow  whether the command line, which has been read by then, asks for the window
/// @param window  makes the window
/// @param run  does what the command line asks for. @return the exit status; a RuntimeError is said on
/// standard error, and so is output that couldn't be written
/// @param draws  whether that draws a picture: it is done with the till's look then, on no display. Empty for
/// never
int runTool(int argc, char** argv, ToolCommandLine& commandLine, const std::function<bool()>& wantsWindow,
            const std::function<std::unique_ptr<QWidget>()>& window, const std::function<int()>& run,
            const std::function<bool()>& draws = {});

/// A day as a shopkeeper or a script writes it on the command line, 30.11.2026 or 2026-11-30; an invalid one
/// for anything else.
QDate writtenDay(const QString& text);

/// A line on standard output or error, in UTF-8.
void tellLine(const QString& text);
void tellError(const QString& text);

/// Shows how far a piece of work is on a terminal, in one line that is written over; nothing where standard
/// output is no terminal.
void tellProgress(const QString& what, qint64 done, qint64 total);

/// Has a request from outside to end (SIGINT, SIGTERM, SIGHUP) be heeded by tellWork instead of ending the
/// process where it stands. A signal that whoever started the program has it ignore stays ignored.
void heedRequestsToEnd();

/// @throws WorkProgress::Cancelled once the program has been asked to end
void endIfAsked();

/// As tellProgress. @throws WorkProgress::Cancelled once the program has been asked to end, so that the work
/// takes back what it began
void tellWork(const QString& what, qint64 done, qint64 total);

}  // namespace kovanix
