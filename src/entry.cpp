#include "entry.h"

#include <QCommandLineParser>

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

namespace {

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
