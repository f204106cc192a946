#include "desktop/application.h"

#include <QWidget>
#include <algorithm>
#include <cstdio>

#include "desktop/messagebox.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"
#include "runtime/screenregistry.h"

namespace kovanix {

namespace {

QString plainText(const RuntimeError& error) {
    return QString::fromUtf8(error.what());
}

QString (*failureText)(const RuntimeError& error) = plainText;

[[noreturn]] void endByFailure(const RuntimeError& error) {
    std::fprintf(stderr, "%s\n", error.what());
    std::fflush(stderr);
    static bool showing = false;
    if (!showing) {
        showing = true;
        messageBox(failureText(error), MessageBoxStyle::critical, QCoreApplication::applicationName());
    }
    abandonProcess(1);
}

/// What has to be done ahead of the toolkit's first hash table.
int& prepared(int& argc) {
    hashInNarrowRegisters();
    return argc;
}

/// Whether a screen goes by this event; one that is minimised doesn't.
bool closesWindow(const QObject& receiver, const QEvent& event) {
    return event.type() == QEvent::Hide && !event.spontaneous() && receiver.isWidgetType() &&
           static_cast<const QWidget&>(receiver).isWindow();
}

bool isScreen(const QWidget* window) {
    return window->isVisible() && (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog);
}

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(prepared(argc), argv) {
    // The toolkit's rule knows no screen that belongs to another one, and asks when a window is closed, not
    // when it is unloaded.
    setQuitOnLastWindowClosed(false);
}

Application::~Application() {
    ScreenRegistry::clear();
}

int Application::run(const std::function<void()>& entryProcedure) {
    try {
        entryProcedure();
    } catch (const RuntimeError& error) {
        endByFailure(error);
    }
    const int status = exec();
    ScreenRegistry::clear();
    return status;
}

bool Application::notify(QObject* receiver, QEvent* event) {
    // When all that this event leads to is done: a screen may make room for the next.
    if (closesWindow(*receiver, *event))
        QMetaObject::invokeMethod(this, &Application::endWithTheLastScreen, Qt::QueuedConnection);
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeError& error) {
        endByFailure(error);
    }
}

void Application::setFailureText(QString (*text)(const RuntimeError& error)) {
    failureText = text;
}

void Application::endWithTheLastScreen() {
    if (std::ranges::none_of(topLevelWidgets(), isScreen))
        quit();
}

}  // namespace kovanix
