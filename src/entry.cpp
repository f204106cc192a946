#include "entry.h"

#include <QCommandLineParser>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <string_view>

#include "access/firstscreen.h"
#include "app/frame.h"
#include "app/manual.h"
#include "app/shopfolder.h"
#include "app/tekornek.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "desktop/keyguard.h"
#include "desktop/tapguard.h"
#include "runtime/process.h"

namespace kovanix {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds lookForOtherTills = 1s;

/// A till that wants to open the file over a network waits for this one to notice, and not for long.
void watchForOtherTills() {
    auto* const watch = new QTimer(QCoreApplication::instance());
    QObject::connect(watch, &QTimer::timeout, watch, [] { baglanti().leaveLogIfAsked(); });
    watch->start(lookForOtherTills);
}

struct CommandLine : QCommandLineParser {
    CommandLine() {
        setApplicationDescription(u"Kovanix: küçük dükkânlar için satış kasası"_s);
        addHelpOption();
        addVersionOption();
        addOptions({folder, manual});
    }

    const QCommandLineOption folder{u"folder"_s, u"Dükkânın klasörü"_s, u"DIR"_s};
    const QCommandLineOption manual{u"yardim"_s, u"Kullanım kılavuzunu açar"_s};
};

/// Whether the command line asks for what a machine without a display can tell as well.
bool asksForWords(int argc, char** argv) {
    return std::any_of(argv + 1, argv + argc, [](const std::string_view argument) {
        return argument == "--version" || argument == "-v" || argument == "--help" || argument == "-h";
    });
}

void entryProcedure() {
    startConnection();
    showFirstScreen();
}

}  // namespace

void startConnection() {
    ilkayarlar();
    baglantiyukle();
    if (veritabanivarmi())
        veritabaninibagla();
    watchForOtherTills();
}

int runTill(int argc, char** argv) {
    CommandLine commandLine;
    if (asksForWords(argc, argv)) {
        QCoreApplication application(argc, argv);
        nameApplication();
        commandLine.process(application);  // answers and ends
    }
    Application application(argc, argv);
    prepareApplication();
    const TapGuard taps;
    const RepeatedKeys repeated;
    commandLine.process(application);
    if (commandLine.isSet(commandLine.manual))
        return openManual() ? 0 : 1;

    if (!tekorneksorgu()) {
        tekornekoneal();
        return 0;
    }
    endOnRequest();
    prepareShopFolder(commandLine.value(commandLine.folder));
    const int status = application.run(entryProcedure);
    baglantikapatsessiz();
    return status;
}

}  // namespace kovanix
