// Takes copies of a shop, proves them, and puts one back.

#include "yedek/commandline.h"
#include "yedek/window.h"

int main(int argc, char** argv) {
    using namespace kovanix;
    yedek::CommandLine commandLine;
    return runTool(
        argc, argv, commandLine, [&] { return commandLine.wantsWindow(); },
        [&]() -> std::unique_ptr<QWidget> {
            commandLine.findShop();
            auto window = std::make_unique<yedek::Window>(commandLine.value(commandLine.place));
            if (commandLine.isSet(commandLine.take))
                QMetaObject::invokeMethod(window.get(), &yedek::Window::takeNow, Qt::QueuedConnection);
            return window;
        },
        [&] { return commandLine.run(); });
}
