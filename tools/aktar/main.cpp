// Carries products, customers and sales between the shop and files of other programs.

#include "aktar/aktarwindow.h"
#include "aktar/commands.h"

int main(int argc, char** argv) {
    using namespace kovanix;
    aktar::Commands commands;
    return runTool(
        argc, argv, commands, [&] { return commands.wantsWindow(); },
        [&]() -> std::unique_ptr<QWidget> {
            commands.findShop();
            return std::make_unique<aktar::AktarWindow>();
        },
        [&] { return commands.run(); });
}
