#include "kit/toolprogram.h"

#include <unistd.h>

#include <QFileInfo>
#include <QTextStream>
#include <QWidget>
#include <csignal>
#include <cstdio>

#include "app/frame.h"
#include "app/shopfolder.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "kit/backgroundwork.h"
#include "runtime/runtimeerror.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

volatile std::sig_atomic_t endWanted = 0;

}  // namespace

ToolCommandLine::ToolCommandLine(const QString& name, const QString& description)
    : folder(u"folder"_s, u"Dükkânın klasörü"_s, u"DIR"_s),
      m_help({u"h"_s, u"help"_s}, u"Bu yardımı gösterir."_s),
      m_version({u"v"_s, u"version"_s}, u"Sürümü gösterir."_s) {
    nameApplication();
    QCoreApplication::setApplicationName(name);
    setApplicationDescription(description);
    addOptions({m_help, m_version, folder});
}

std::optional<int> ToolCommandLine::answer() {
    if (!parse(QCoreApplication::arguments())) {
        tellError(QCoreApplication::applicationName() + u": "_s + errorText());
        return ToolExit::wrongUsage;
    }
    if (isSet(m_help))
        tellLine(helpText());
    else if (isSet(m_version))
        tellLine(QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion());
    else
        return std::nullopt;
    return ToolExit::done;
}

bool ToolCommandLine::findShop() const {
    findShopFolder(value(folder));
    return QFileInfo(veritabaniyolu()).isFile();
}

int runTool(int argc, char** argv, ToolCommandLine& commandLine, const std::function<bool()>& wantsWindow,
            const std::function<std::unique_ptr<QWidget>()>& window, const std::function<int()>& run,
            const std::function<bool()>& draws) {
    const QString name = QCoreApplication::applicationName();
    const auto runTold = [](const std::function<int()>& step) {
        try {
            const int status = step();
            if (status != ToolExit::done || (std::fflush(stdout) == 0 && std::ferror(stdout) == 0))
                return status;
            tellError(u"Standart çıktıya yazılamadı."_s);
            return ToolExit::failed;
        } catch (const RuntimeError& error) {
            tellError(error.description());
            return ToolExit::failed;
        }
    };
    bool showsWindow = false;
    {
        QCoreApplication console(argc, argv);
        installToolkitWords();
        if (const std::optional<int> answered = commandLine.answer())
            return runTold([&] { return *answered; });
        showsWindow = wantsWindow();
        if (!showsWindow && !(draws && draws()))
            return runTold(run);
    }
    if (!showsWindow)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Application application(argc, argv);
    prepareApplication();
    QCoreApplication::setApplicationName(name);
    if (!showsWindow)
        return runTold(run);
    const std::unique_ptr<QWidget> shown = window();
    shown->show();
    return QCoreApplication::exec();
}

QDate writtenDay(const QString& text) {
    const QDate date = QDate::fromString(text, u"dd.MM.yyyy"_s);
    return date.isValid() ? date : QDate::fromString(text, u"yyyy-MM-dd"_s);
}

void tellLine(const QString& text) {
    QTextStream(stdout) << text << '\n';
}

void tellError(const QString& text) {
    QTextStream(stderr) << text << '\n';
}

void tellProgress(const QString& what, qint64 done, qint64 total) {
    if (::isatty(STDOUT_FILENO) == 0)
        return;
    constexpr int percent = 100;
    QTextStream out(stdout);
    out << '\r' << what;
    if (total > 0)
        out << u" %1 %"_s.arg(done * percent / total);
    out << u"\x1b[K"_s << (total > 0 && done >= total ? u"\n"_s : QString());
}

void heedRequestsToEnd() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        if (std::signal(signal, [](int) { endWanted = 1; }) == SIG_IGN)
            std::signal(signal, SIG_IGN);
    }
}

void endIfAsked() {
    if (endWanted != 0)
        throw WorkProgress::Cancelled();
}

void tellWork(const QString& what, qint64 done, qint64 total) {
    endIfAsked();
    tellProgress(what, done, total);
}

}  // namespace kovanix
