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

namespace {

const QString mark = QStringLiteral("KOVANIX_VIRTUAL_DISPLAY");

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
    const Outcome outcome =
        runProgram({QStringLiteral("xdotool"), QStringLiteral("get_num_desktops")}, environment);
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
    environment.insert(QStringLiteral("HOME"), home.path());
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    environment.insert(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("none"));
    environment.insert(mark, QStringLiteral("1"));

    const auto dieWithUs = [] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); };
    QProcess server;
    server.setChildProcessModifier(dieWithUs);
    // A number of this process's own: servers that look for a free one by themselves take each other's names
    // when one ends while another starts. Without auto-repeat: on a busy machine a key pressed for a moment
    // could count as held down.
    const QString display = u':' + QString::number(1000 + application.applicationPid() % 50000);
    server.start(QStringLiteral("Xvfb"),
                 {display, QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                  QStringLiteral("0"), QStringLiteral("1024x768x24"), QStringLiteral("-nolisten"),
                  QStringLiteral("tcp"), QStringLiteral("-r"), QStringLiteral("-noreset")});
    const bool ready = QTest::qWaitFor([&] { return server.canReadLine(); }, patience);
    if (!ready)
        qFatal("no display: %s", server.readAllStandardError().constData());
    environment.insert(QStringLiteral("DISPLAY"), display);

    QProcess manager;
    manager.setChildProcessModifier(dieWithUs);
    manager.setProcessEnvironment(environment);
    manager.start(QStringLiteral("openbox"), {QStringLiteral("--sm-disable")});
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
    const Outcome outcome = runProgram(QStringList{QStringLiteral("xdotool")} + arguments,
                                       QProcessEnvironment::systemEnvironment());
    return outcome.status == 0 ? outcome.output.trimmed() : QString();
}

void pressKeys(const QStringList& keys) {
    xdotool(QStringList{QStringLiteral("key")} + keys);
}

void typeKeys(const QString& text) {
    QStringList keys{QStringLiteral("key"), QStringLiteral("--delay"), QStringLiteral("2")};
    for (const QChar character : text)
        keys << (character == u'\n' ? QStringLiteral("Return") : QString(character));
    xdotool(keys);
}

}  // namespace kovanix
