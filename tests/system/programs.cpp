#include "programs.h"

#include <net/if.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <cstring>

#include "data/baglanmamodulu.h"

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

bool isRoot() {
    return geteuid() == 0;
}

}  // namespace

QString kovanixProgram() {
    return QStringLiteral(KOVANIX_PROGRAM);
}

QString replayProgram() {
    return QStringLiteral(REPLAY_PROGRAM);
}

QString demoShopProgram() {
    return QStringLiteral(DEMO_SHOP_PROGRAM);
}

QProcessEnvironment tillEnvironment() {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"KOVANIX_FOLDER", "KOVANIX_PRINTER", "PRINTER", "LPDEST", "CUPS_SERVER",
                                 "DISPLAY", "WAYLAND_DISPLAY", "XDG_ACTIVATION_TOKEN"})
        environment.remove(QString::fromLatin1(variable));
    // Every start makes the export folder: not among the documents of whoever runs the tests.
    static const QTemporaryDir drive;
    environment.insert(u"KOVANIX_DRIVE_C"_s, drive.path());
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    // No server: a test that prints names its own.
    environment.insert(u"CUPS_SERVER"_s, u"/nonexistent/cups.sock"_s);
    return environment;
}

QStringList asOrdinaryUser() {
    if (!isRoot())
        return {};
    return {u"setpriv"_s, u"--reuid=nobody"_s, u"--regid=nogroup"_s, u"--clear-groups"_s, u"--"_s};
}

QString ordinaryUserTrouble() {
    if (!isRoot())
        return {};
    if (QStandardPaths::findExecutable(u"setpriv"_s).isEmpty())
        return u"no setpriv here to start a program as another user with"_s;
    const Outcome outcome = runProgram(asOrdinaryUser() + QStringList{u"test"_s, u"-x"_s, kovanixProgram()});
    if (outcome.ended && outcome.status == 0)
        return {};
    return u"an ordinary user can't reach the build folder"_s;
}

bool someTillAnswers() {
    QLocalSocket socket;
    socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    socket.connectToServer(u"Global\\KovanixSingleInstance2026"_s);
    if (!socket.waitForConnected(1000))
        return false;
    socket.write("raise\n");
    return socket.waitForReadyRead(1000) && socket.readLine() == "taken\n";
}

void isolateFromOtherTills() {
    if (::unshare(CLONE_NEWNET) != 0)
        return;
    // A server of the test's own is reached over the loopback, which is down at first.
    ifreq loopback{};
    std::strcpy(loopback.ifr_name, "lo");
    const int any = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ::ioctl(any, SIOCGIFFLAGS, &loopback);
    loopback.ifr_flags = static_cast<short>(loopback.ifr_flags | IFF_UP);
    ::ioctl(any, SIOCSIFFLAGS, &loopback);
    ::close(any);
}

Outcome runProgram(const QStringList& command, const QProcessEnvironment& environment) {
    return Program(command, environment).finish();
}

Program::Program(const QStringList& command, const QProcessEnvironment& environment) {
    m_process.setProcessEnvironment(environment);
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process, [this] { read(); });
    // Nothing may outlive a test that is killed itself.
    m_process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGKILL); });
    m_process.start(command.first(), command.mid(1));
    if (!m_process.waitForStarted(patience))
        qFatal("%s doesn't start: %s", qUtf8Printable(command.first()),
               qUtf8Printable(m_process.errorString()));
}

Program::~Program() {
    killHard();
}

void Program::read() {
    m_unread += m_process.readAllStandardOutput();
    for (qsizetype end = m_unread.indexOf('\n'); end >= 0; end = m_unread.indexOf('\n')) {
        m_lines.append(QString::fromUtf8(m_unread.left(end)));
        m_output += m_lines.last() + u'\n';
        m_unread.remove(0, end + 1);
    }
}

bool Program::waitForLine(const QString& line, qsizetype times) {
    return QTest::qWaitFor([&] { return count(line) >= times || !isRunning(); }, patience) &&
           count(line) >= times;
}

void Program::goOn() {
    m_process.write("\n");
}

void Program::killHard() {
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
    read();
}

Outcome Program::finish() {
    const bool ended =
        QTest::qWaitFor([this] { return m_process.state() == QProcess::NotRunning; }, patience);
    killHard();
    Outcome outcome;
    outcome.ended = ended && m_process.exitStatus() == QProcess::NormalExit;
    outcome.status = m_process.exitCode();
    outcome.output = m_output + QString::fromUtf8(m_unread);
    // The toolkit's remarks on the surroundings are no words of the program.
    for (const QByteArray& line : m_process.readAllStandardError().split('\n')) {
        const bool remark =
            line.startsWith("QStandardPaths: ") || line.startsWith("This plugin does not support ");
        if (!line.isEmpty() && !remark)
            outcome.errors += QString::fromUtf8(line) + u'\n';
    }
    return outcome;
}

ClosedShop::ClosedShop(const QString& password) {
    openShop(password, [](ShopFixture& shop) {
        shop.addProduct(shelf::bread, u"Köy Ekmeği"_s, 7, 10, shelf::startStock);
        shop.addProduct(shelf::milk, u"Tam Yağlı Süt 1 L"_s, 25, 32.5, shelf::startStock);
        shop.addProduct(shelf::tomatoes, u"Domates"_s, 30, 40, shelf::startStock);
        // The first of the list, who logs in with Enter alone.
        shop.run(u"INSERT INTO kullanici (personeladi, sifre, yetki) VALUES ('Ayşe', '', 'Yönetici')"_s);
    });
    baglantikapat();
}

QString ClosedShop::script(const QStringList& lines) const {
    static int serial = 0;
    QFile script(file(u"script-%1.replay"_s.arg(++serial)));
    const QByteArray text = (lines.join(u'\n') + u'\n').toUtf8();
    if (!script.open(QIODevice::WriteOnly) || script.write(text) != text.size())
        qFatal("no script");
    return script.fileName();
}

QStringList ClosedShop::replay(const QStringList& lines, const QString& elsewhere) const {
    const QString on = elsewhere.isEmpty() ? folder() : elsewhere;
    return {replayProgram(), u"--sales"_s, u"--boxes"_s, u"--folder"_s, on, script(lines)};
}

QStringList ClosedShop::till() const {
    return {kovanixProgram(), u"--folder"_s, folder()};
}

void ClosedShop::openToEveryone() const {
    const QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    const QFile::Permissions write = QFile::WriteOwner;
    QFile::setPermissions(folder(), read | write | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
    for (const QFileInfo& entry : QDir(folder()).entryInfoList(QDir::Files))
        QFile::setPermissions(entry.filePath(), read | write);
}

QVariant ClosedShop::value(const QString& sql) const {
    const QList<QVariantList> found = rows(sql);
    return found.isEmpty() ? QVariant() : found.first().value(0);
}

double ClosedShop::stock(const QString& barcode) const {
    return value(u"SELECT stok FROM urunler WHERE barkod = '%1'"_s.arg(barcode)).toDouble();
}

}  // namespace kovanix
