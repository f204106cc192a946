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
using namespace Qt::StringLiterals;

constexpr int wrongUsage = 2;

void say(FILE* stream, const QStringList& lines) {
    for (const QString& line : lines)
        std::fprintf(stream, "%s\n", qUtf8Printable(line));
    std::fflush(stream);
}

/// A message box as one line: whether it bears the critical icon, its title and its text.
QString boxLine(const QMessageBox& box) {
    const QString kind = box.icon() == QMessageBox::Critical ? u"critical box"_s : u"box"_s;
    return kind + u' ' + box.windowTitle() + u": " + box.text().replace(u'\n', u"\\n"_s);
}

void tellBoxes(const BoxAnswers& boxes) {
    QObject::connect(&boxes, &BoxAnswers::opened, QCoreApplication::instance(),
                     [](QMessageBox& box) { say(stdout, {boxLine(box)}); });
}

/// What the command line asks for.
struct Wishes {
    QString folder;
    QString output;
    QString script;
    bool tellBoxes = false;
    bool atSales = false;
};

/// Opens the shop and its sales screen, as after a manager's login.
void beginAtSales() {
    startConnection();
    girisyetki = 1;
    screen<satisekrani>().show();
}

int playScript(Application& application, const Wishes& wishes) {
    QFile file(wishes.script);
    if (!file.open(QIODevice::ReadOnly)) {
        say(stderr, {u"can't read " + file.fileName()});
        return wrongUsage;
    }
    QStringList errors;
    const QList<ScriptStep> steps = readScript(QString::fromUtf8(file.readAll()), errors);
    if (!errors.isEmpty()) {
        say(stderr, errors);
        return wrongUsage;
    }

    prepareShopFolder(wishes.folder);
    Player player(steps, wishes.output);
    QObject::connect(&player, &Player::finished, &application, [] { QCoreApplication::exit(); });
    if (wishes.tellBoxes)
        tellBoxes(player.boxes());
    const int status = application.run([&player, &wishes] {
        if (wishes.atSales) {
            beginAtSales();
        } else {
            startConnection();
            showFirstScreen();
        }
        player.start();
    });
    baglantikapatsessiz();
    player.noteEnd();
    say(stderr, player.failures());
    return status == 0 && !player.failures().isEmpty() ? 1 : status;
}

/// Reads the command line; ends the process where it can't be meant.
Wishes readCommandLine(const Application& application) {
    QCommandLineParser commandLine;
    commandLine.setApplicationDescription(
        u"Plays a script of a cashier's actions on the till's own screens."_s);
    commandLine.addHelpOption();
    const QCommandLineOption folder(u"folder"_s, u"The shop's folder."_s, u"DIR"_s);
    const QCommandLineOption output(u"output"_s, u"Where pictures and rows go."_s, u"DIR"_s, u"."_s);
    const QCommandLineOption boxes(u"boxes"_s, u"Writes each message box to standard output."_s);
    const QCommandLineOption atSales(u"sales"_s,
                                     u"Begins at the sales screen, as after a manager's login."_s);
    commandLine.addOptions({folder, output, boxes, atSales});
    commandLine.addPositionalArgument(u"file"_s, u"The script."_s, u"file"_s);
    commandLine.process(application);

    Wishes wishes;
    wishes.folder = commandLine.value(folder);
    wishes.output = commandLine.value(output);
    wishes.script = commandLine.positionalArguments().value(0);
    wishes.tellBoxes = commandLine.isSet(boxes);
    wishes.atSales = commandLine.isSet(atSales);
    if (commandLine.positionalArguments().size() != 1)
        commandLine.showHelp(wrongUsage);
    return wishes;
}

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") &&
        qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application application(argc, argv);
    prepareApplication();
    const Wishes wishes = readCommandLine(application);
    return playScript(application, wishes);
}
