// Takes copies of a shop, proves them, and puts one back.

#include <QWidget>
#include <memory>

#include "yedek/commandline.h"

int main(int argc, char** argv) {
    using namespace kovanix;
    yedek::CommandLine commandLine;
    return runTool(
        argc, argv, commandLine, [&] { return commandLine.wantsWindow(); },
        []() -> std::unique_ptr<QWidget> { return nullptr; }, [&] { return commandLine.run(); });
}
