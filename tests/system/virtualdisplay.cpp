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

VirtualDisplay::VirtualDisplay() {
    const auto dieWithUs = [] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); };
    m_server.setChildProcessModifier(dieWithUs);
    // A number of this process's own: servers that look for a free one by themselves take each other's names
    // when one ends while another starts. Without auto-repeat: on a busy machine a key pressed for a moment
    // could count as held down.
    m_name = u':' + QString::number(1000 + QCoreApplication::applicationPid() % 50000);
    m_server.start(u"Xvfb"_s, {m_name, u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1024x768x24"_s,
                               u"-nolisten"_s, u"tcp"_s, u"-r"_s, u"-noreset"_s});
    const bool ready = QTest::qWaitFor([&] { return m_server.canReadLine(); }, patience);
    if (!ready)
        qFatal("no display: %s", m_server.readAllStandardError().constData());

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    enter(environment);
    m_manager.setChildProcessModifier(dieWithUs);
    m_manager.setProcessEnvironment(environment);
    m_manager.start(u"openbox"_s, {u"--sm-disable"_s});
    if (!QTest::qWaitFor([&] { return isManaged(environment); }, patience))
        qFatal("no window manager: %s %s", qPrintable(m_manager.errorString()),
               m_manager.readAllStandardError().constData());
}

VirtualDisplay::~VirtualDisplay() {
    stop(m_manager);
    stop(m_server);
}

void VirtualDisplay::enter(QProcessEnvironment& environment) const {
    for (const char* variable : {"WAYLAND_DISPLAY", "XAUTHORITY", "QT_SCALE_FACTOR"})
        environment.remove(QString::fromLatin1(variable));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"QT_XCB_GL_INTEGRATION"_s, u"none"_s);
    environment.insert(u"DISPLAY"_s, m_name);
}

void VirtualDisplay::vanish() {
    m_server.kill();
    m_server.waitForFinished(patience);
}

int runOnVirtualDisplay(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    const VirtualDisplay display;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(u"XDG_CONFIG_HOME"_s);
    environment.insert(u"HOME"_s, home.path());
    environment.insert(mark, u"1"_s);
    display.enter(environment);

    QProcess tests;
    tests.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    tests.setProcessEnvironment(environment);
    tests.setProcessChannelMode(QProcess::ForwardedChannels);
    tests.start(QCoreApplication::applicationFilePath(), QCoreApplication::arguments().mid(1));
    tests.waitForFinished(-1);
    return tests.exitStatus() == QProcess::NormalExit ? tests.exitCode() : 1;
}

QString xdotool(const QStringList& arguments) {
    return xdotool(arguments, QProcessEnvironment::systemEnvironment());
}

QString xdotool(const QStringList& arguments, const QProcessEnvironment& environment) {
    const Outcome outcome = runProgram(QStringList{u"xdotool"_s} + arguments, environment);
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
