#include "virtualdisplay.h"

#include <signal.h>
#include <sys/prctl.h>

#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include "programs.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

const QString mark = u"KOVANIX_VIRTUAL_DISPLAY"_s;

/// Ends a process that serves the others.
void stop(QProcess& process) {
    process.terminate();
    if (!process.waitForFinished(patience)) {
        process.kill();
        process.waitForFinished();
    }
}

/// Whether a window manager has taken the display.
bool isManaged(const QProcessEnvironment& environment) {
    const Outcome outcome = runProgram({u"xdotool"_s, u"get_num_desktops"_s}, environment);
    return outcome.ended && outcome.status == 0;
}

}  // namespace

QString displayTrouble() {
    for (const char* program : {"Xvfb", "openbox", "xdotool"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
            return QString::fromLatin1(program) + u" is not installed here";
    }
    return {};
}

bool isOnVirtualDisplay() {
    return qEnvironmentVariableIsSet(qPrintable(mark));
}

int runOnVirtualDisplay(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"WAYLAND_DISPLAY", "XDG_CONFIG_HOME", "XAUTHORITY", "QT_SCALE_FACTOR"})
        environment.remove(QString::fromLatin1(variable));
    environment.insert(u"HOME"_s, home.path());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_XCB_GL_INTEGRATION"_s, u"none"_s);
    environment.insert(mark, u"1"_s);

    const auto dieWithUs = [] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); };
    QProcess server;
    server.setChildProcessModifier(dieWithUs);
    // A number of this process's own: servers that look for a free one by themselves take each other's names
    // when one ends while another starts. Without auto-repeat: on a busy machine a key pressed for a moment
    // could count as held down.
    const QString display = u':' + QString::number(1000 + application.applicationPid() % 50000);
    server.start(u"Xvfb"_s, {display, u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1024x768x24"_s,
                             u"-nolisten"_s, u"tcp"_s, u"-r"_s, u"-noreset"_s});
    const bool ready = QTest::qWaitFor([&] { return server.canReadLine(); }, patience);
    if (!ready)
        qFatal("no display: %s", server.readAllStandardError().constData());
    environment.insert(u"DISPLAY"_s, display);

    QProcess manager;
    manager.setChildProcessModifier(dieWithUs);
    manager.setProcessEnvironment(environment);
    manager.start(u"openbox"_s, {u"--sm-disable"_s});
    if (!QTest::qWaitFor([&] { return isManaged(environment); }, patience))
        qFatal("no window manager: %s %s", qPrintable(manager.errorString()),
               manager.readAllStandardError().constData());

    QProcess tests;
    tests.setChildProcessModifier(dieWithUs);
    tests.setProcessEnvironment(environment);
    tests.setProcessChannelMode(QProcess::ForwardedChannels);
    tests.start(QCoreApplication::applicationFilePath(), QCoreApplication::arguments().mid(1));
    tests.waitForFinished(-1);
    stop(manager);
    stop(server);
    return tests.exitStatus() == QProcess::NormalExit ? tests.exitCode() : 1;
}

QString xdotool(const QStringList& arguments) {
    const Outcome outcome =
        runProgram(QStringList{u"xdotool"_s} + arguments, QProcessEnvironment::systemEnvironment());
    return outcome.status == 0 ? outcome.output.trimmed() : QString();
}

void pressKeys(const QStringList& keys) {
    xdotool(QStringList{u"key"_s} + keys);
}

void typeKeys(const QString& text) {
    QStringList keys{u"key"_s, u"--delay"_s, u"2"_s};
    for (const QChar character : text)
        keys << (character == u'\n' ? u"Return"_s : QString(character));
    xdotool(keys);
}

}  // namespace kovanix
