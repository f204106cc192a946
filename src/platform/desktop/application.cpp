#include "desktop/application.h"

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

}  // namespace

Application::Application(int& argc, char** argv) : QApplication(prepared(argc), argv) {}

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
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeError& error) {
        endByFailure(error);
    }
}

void Application::setFailureText(QString (*text)(const RuntimeError& error)) {
    failureText = text;
}

}  // namespace kovanix
