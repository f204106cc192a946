#include "entry.h"

#include <QCommandLineParser>
#include <QTimer>
#include <chrono>

#include "access/firstscreen.h"
#include "app/frame.h"
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
    Application application(argc, argv);
    prepareApplication();
    const TapGuard taps;
    const RepeatedKeys repeated;

    QCommandLineParser commandLine;
    commandLine.setApplicationDescription(u"Kovanix: küçük dükkânlar için satış kasası"_s);
    commandLine.addHelpOption();
    commandLine.addVersionOption();
    const QCommandLineOption folder(u"folder"_s, u"Dükkânın klasörü"_s, u"DIR"_s);
    commandLine.addOption(folder);
    commandLine.process(application);

    if (!tekorneksorgu()) {
        tekornekoneal();
        return 0;
    }
    endOnRequest();
    prepareShopFolder(commandLine.value(folder));
    const int status = application.run(entryProcedure);
    baglantikapatsessiz();
    return status;
}

}  // namespace kovanix
