#include <QCommandLineParser>
#include <QTemporaryDir>
#include <cstdio>

#include "app/frame.h"
#include "app/session.h"
#include "app/shopfolder.h"
#include "boxanswers.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "entry.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "soak.h"

namespace {

void say(FILE* stream, const QStringList& lines) {
    for (const QString& line : lines)
        std::fprintf(stream, "%s\n", qUtf8Printable(line));
    std::fflush(stream);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kovanix;
    constexpr int wrongUsage = 2;
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application application(argc, argv);
    prepareApplication();

    QCommandLineParser commandLine;
    commandLine.setApplicationDescription(
        "Acts by chance on the till's own screens, as a cashier might, and checks after each action what "
        "must "
        "hold. Stores sales: take a copy of a shop.");
    commandLine.addHelpOption();
    const QCommandLineOption folder("folder", "The shop's folder.", "DIR");
    const QCommandLineOption actions("actions", "How many actions.", "N", "10000");
    const QCommandLineOption seed("seed", "Equal seeds make equal actions on equal shops.", "S", "1");
    const QCommandLineOption tell("tell", "Writes each action to standard output.");
    commandLine.addOptions({folder, actions, seed, tell});
    commandLine.process(application);
    bool isCount = false;
    bool isSeed = false;
    SoakPlan plan;
    plan.actions = commandLine.value(actions).toInt(&isCount);
    plan.seed = commandLine.value(seed).toULongLong(&isSeed);
    if (!isCount || !isSeed || plan.actions < 0 || !commandLine.isSet(folder) ||
        !commandLine.positionalArguments().isEmpty())
        commandLine.showHelp(wrongUsage);

    const QTemporaryDir receipts;
    plan.receipts = receipts.path();
    qputenv("KOVANIX_PRINTER", "pdf:" + receipts.path().toLocal8Bit());
    prepareShopFolder(commandLine.value(folder));
    BoxAnswers boxes;
    Soak soak(plan, boxes);
    if (commandLine.isSet(tell))
        QObject::connect(&soak, &Soak::acting, &application, [](int number, const QString& what) {
            say(stdout, {QString::number(number) + u' ' + what});
        });
    // At once: after an uncaught failure there is no later.
    QObject::connect(&soak, &Soak::finished, &application, [&soak] {
        say(soak.held() ? stdout : stderr, soak.report());
        QCoreApplication::exit(soak.held() ? 0 : 1);
    });
    const int status = application.run([&soak] {
        startConnection();
        girisyetki = 1;
        screen<satisekrani>().show();
        soak.start();
    });
    baglantikapatsessiz();
    return soak.held() ? status : 1;
}
