#include <QCommandLineParser>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <cstdio>
#include <optional>

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
#include "soak.h"

namespace {

using namespace kovanix;

constexpr int wrongUsage = 2;
constexpr int mostActions = 100'000'000;

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
    bool tellActions = false;
    bool atSales = false;
    std::optional<int> actions;  ///< of a soak
    quint64 seed = 1;
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
    QObject::connect(&player, &Player::finished, &application,
                     [&player] { QCoreApplication::exit(player.failures().isEmpty() ? 0 : 1); });
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
    say(stderr, player.failures());
    return status;
}

int soak(Application& application, const Wishes& wishes) {
    const QTemporaryDir receipts;
    qputenv("KOVANIX_PRINTER", "pdf:" + receipts.path().toLocal8Bit());
    prepareShopFolder(wishes.folder);
    BoxAnswers boxes;
    if (wishes.tellBoxes)
        tellBoxes(boxes);
    Soak soak({*wishes.actions, wishes.seed, receipts.path()}, boxes);
    if (wishes.tellActions)
        QObject::connect(&soak, &Soak::acting, &application, [](int number, const QString& what) {
            say(stdout, {QString::number(number) + u' ' + what});
        });
    // At once: after an uncaught failure there is no later.
    QObject::connect(&soak, &Soak::finished, &application, [&soak] {
        say(soak.held() ? stdout : stderr, soak.report());
        QCoreApplication::exit(soak.held() ? 0 : 1);
    });
    const int status = application.run([&soak] {
        beginAtSales();
        soak.start();
    });
    baglantikapatsessiz();
    return soak.held() ? status : 1;
}

/// Reads the command line; ends the process where it can't be meant.
Wishes readCommandLine(const Application& application) {
    QCommandLineParser commandLine;
    commandLine.setApplicationDescription(QStringLiteral(
        "Plays a script of a cashier's actions on the till's own screens, or actions by chance."));
    commandLine.addHelpOption();
    const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("The shop's folder."),
                                    QStringLiteral("DIR"));
    const QCommandLineOption output(QStringLiteral("output"), QStringLiteral("Where pictures and rows go."),
                                    QStringLiteral("DIR"), QStringLiteral("."));
    const QCommandLineOption boxes(QStringLiteral("boxes"),
                                   QStringLiteral("Writes each message box to standard output."));
    const QCommandLineOption atSales(
        QStringLiteral("sales"), QStringLiteral("Begins at the sales screen, as after a manager's login."));
    const QCommandLineOption actions(
        QStringLiteral("soak"),
        QStringLiteral(
            "Makes N actions by chance at the sales screen instead of a script, and checks after each what "
            "must hold. Stores sales: take a copy of a shop."),
        QStringLiteral("N"));
    const QCommandLineOption seed(QStringLiteral("seed"),
                                  QStringLiteral("Equal seeds make equal actions on equal shops."),
                                  QStringLiteral("S"), QStringLiteral("1"));
    const QCommandLineOption tellActions(QStringLiteral("actions"),
                                         QStringLiteral("Writes each action of a soak to standard output."));
    commandLine.addOptions({folder, output, boxes, atSales, actions, seed, tellActions});
    commandLine.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The script."),
                                      QStringLiteral("[file]"));
    commandLine.process(application);

    Wishes wishes;
    wishes.folder = commandLine.value(folder);
    wishes.output = commandLine.value(output);
    wishes.script = commandLine.positionalArguments().value(0);
    wishes.tellBoxes = commandLine.isSet(boxes);
    wishes.tellActions = commandLine.isSet(tellActions);
    wishes.atSales = commandLine.isSet(atSales);
    bool isCount = true;
    bool isSeed = false;
    if (commandLine.isSet(actions))
        wishes.actions = commandLine.value(actions).toInt(&isCount);
    wishes.seed = commandLine.value(seed).toULongLong(&isSeed);
    const bool inRange = !wishes.actions || (*wishes.actions >= 0 && *wishes.actions <= mostActions);
    const qsizetype scripts = commandLine.positionalArguments().size();
    if (!isCount || !isSeed || !inRange || scripts != (wishes.actions ? 0 : 1))
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
    return wishes.actions ? soak(application, wishes) : playScript(application, wishes);
}
