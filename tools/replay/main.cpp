#include <QCommandLineParser>
#include <QFile>
#include <QMessageBox>
#include <cstdio>

#include "access/firstscreen.h"
#include "app/frame.h"
#include "app/session.h"
#include "app/shopfolder.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "entry.h"
#include "player.h"
#include "runtime/screenregistry.h"
#include "sales/satisekrani.h"
#include "script.h"

namespace {

using namespace kovanix;

void say(FILE* stream, const QStringList& lines) {
    for (const QString& line : lines)
        std::fprintf(stream, "%s\n", qUtf8Printable(line));
    std::fflush(stream);
}

/// A message box as one line: whether it bears the critical icon, its title and its text.
QString boxLine(const QMessageBox& box) {
    const QString kind =
        box.icon() == QMessageBox::Critical ? QStringLiteral("critical box") : QStringLiteral("box");
    return kind + u' ' + box.windowTitle() + u": " + box.text().replace(u'\n', QStringLiteral("\\n"));
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application application(argc, argv);
    prepareApplication();

    QCommandLineParser commandLine;
    commandLine.setApplicationDescription(
        QStringLiteral("Plays a script of a cashier's actions on the till's own screens."));
    commandLine.addHelpOption();
    const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("The shop's folder."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption output(QStringLiteral("output"), QStringLiteral("Where pictures and rows go."),
                                    QStringLiteral("DIR"), QStringLiteral("."));
    const QCommandLineOption boxes(QStringLiteral("boxes"),
                                   QStringLiteral("Writes each message box to standard output."));
    const QCommandLineOption atSales(QStringLiteral("sales"),
                                     QStringLiteral("Begins at the sales screen, as after a manager's login."));
    commandLine.addOptions({folder, output, boxes, atSales});
    commandLine.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The script."));
    commandLine.process(application);
    if (commandLine.positionalArguments().size() != 1)
        commandLine.showHelp(2);

    QFile file(commandLine.positionalArguments().constFirst());
    if (!file.open(QIODevice::ReadOnly)) {
        say(stderr, {u"can't read " + file.fileName()});
        return 2;
    }
    QStringList errors;
    const QList<ScriptStep> steps = readScript(QString::fromUtf8(file.readAll()), errors);
    if (!errors.isEmpty()) {
        say(stderr, errors);
        return 2;
    }

    prepareShopFolder(commandLine.value(folder));
    Player player(steps, commandLine.value(output));
    QObject::connect(&player, &Player::finished, &application,
                     [&player] { QCoreApplication::exit(player.failures().isEmpty() ? 0 : 1); });
    if (commandLine.isSet(boxes))
        QObject::connect(&player.boxes(), &BoxAnswers::opened, &application,
                         [](QMessageBox& box) { say(stdout, {boxLine(box)}); });
    const int status = application.run([&player, beginAtSales = commandLine.isSet(atSales)] {
        startConnection();
        if (beginAtSales) {
            girisyetki = 1;
            screen<satisekrani>().show();
        } else {
            showFirstScreen();
        }
        player.start();
    });
    baglantikapatsessiz();
    say(stderr, player.failures());
    return status;
}
