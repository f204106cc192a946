#pragma once

#include <QApplication>
#include <functional>

namespace kovanix {

class RuntimeError;

/// The application object: ends the process with its last screen, and in one orderly way when a failure
/// reaches the event loop uncaught.
class Application : public QApplication {
    Q_OBJECT

public:
    Application(int& argc, char** argv);
    /// Deletes every loaded screen before the toolkit goes down.
    ~Application() override;

    /// Runs the entry procedure, then the event loop until the process ends, then deletes every loaded
    /// screen.
    /// @return the process's exit status
    int run(const std::function<void()>& entryProcedure);

    /// Delivers an event. A RuntimeError that no procedure caught is written to standard error (number and
    /// description), shown in one critical box, and ends the process with status 1.
    bool notify(QObject* receiver, QEvent* event) override;

    /// Sets the words of that box for the rest of the process; until then number and description stand in it.
    static void setFailureText(QString (*text)(const RuntimeError& error));

private:
    void endWithTheLastScreen();
};

}  // namespace kovanix
