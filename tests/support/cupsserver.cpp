#include "cupsserver.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace kovanix {

namespace {

constexpr int patience = 20000;  // milliseconds, for what another process does

const QString serverPrograms = QStringLiteral("/usr/lib/cups/daemon");

QString findServer() {
    return QStandardPaths::findExecutable(QStringLiteral("cupsd"),
                                          {QStringLiteral("/usr/sbin"), QStringLiteral("/usr/local/sbin")});
}

bool write(const QString& path, const QString& text, QFile::Permissions permissions) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 &&
           file.setPermissions(permissions);
}

QString backend() {
    return QStringLiteral(
        "#!/bin/sh\n"
        "[ $# -ge 5 ] || exit 0\n"
        "folder=${DEVICE_URI#keep:}\n"
        "printf '%s' \"$3\" >\"$folder/$1.title\" || exit 1\n"
        "cat ${6:+\"$6\"} >\"$folder/$1.part\" && mv \"$folder/$1.part\" \"$folder/$1.pdf\"\n");
}

}  // namespace

CupsServer::~CupsServer() {
    m_process.terminate();
    if (!m_process.waitForFinished(patience)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

QString CupsServer::missing() {
    if (findServer().isEmpty())
        return QStringLiteral("no CUPS server on this machine (package cups-daemon)");
    if (QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty())
        return QStringLiteral("no pdftotext on this machine (package poppler-utils)");
    return {};
}

bool CupsServer::start() {
    const QDir root(m_dir.path());
    for (const char* folder : {"state", "cache", "temp", "spool", "log", "bin/backend", "printed"}) {
        if (!root.mkpath(QString::fromLatin1(folder)))
            return false;
    }
    // The program that starts backends; the queues are raw, so that no filter is needed.
    QFile::link(serverPrograms, path("bin/daemon"));
    const QFile::Permissions ours = QFile::ReadOwner | QFile::WriteOwner;
    return write(path("cupsd.conf"), configuration(), ours) &&
           write(path("cups-files.conf"), files(), ours) && write(path("printers.conf"), queues(), ours) &&
           // Closed to everyone else: the server then runs it as itself, who may write here.
           write(path("bin/backend/keep"), backend(), ours | QFile::ExeOwner) && run();
}

QStringList CupsServer::jobs() const {
    const QDir printed(path("printed"));
    QStringList files;
    for (const QString& name : printed.entryList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Name))
        files << printed.filePath(name);
    return files;
}

QByteArray CupsServer::log() const {
    QFile file(path("log/error"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString CupsServer::configuration() const {
    return QStringLiteral(
               "Listen %1\nLogLevel info\nMaxLogSize 0\nBrowsing Off\nWebInterface No\nDefaultAuthType "
               "None\n"
               "<Location />\nOrder deny,allow\nAllow all\n</Location>\n"
               "<Policy default>\nJobPrivateAccess all\nJobPrivateValues none\n"
               "<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n</Policy>\n")
        .arg(socket());
}

QString CupsServer::files() const {
    return QStringLiteral(
               "ServerRoot %1\nStateDir %1/state\nCacheDir %1/cache\nTempDir %1/temp\nRequestRoot "
               "%1/spool\n"
               "ServerBin %1/bin\nDataDir /usr/share/cups\nAccessLog %1/log/access\nErrorLog "
               "%1/log/error\n"
               "PageLog %1/log/page\nSandboxing relaxed\n")
        .arg(m_dir.path());
}

QString CupsServer::queues() const {
    const QString queue = QStringLiteral(
        "<%1 %2>\nDeviceURI keep:%3/printed\nState Idle\nAccepting %4\nShared No\nJobSheets none none\n"
        "OpPolicy default\nErrorPolicy abort-job\n</%1>\n");
    return queue.arg(QStringLiteral("DefaultPrinter"), QStringLiteral("Kasa"), m_dir.path(),
                     QStringLiteral("Yes")) +
           queue.arg(QStringLiteral("Printer"), QStringLiteral("Kapali"), m_dir.path(), QStringLiteral("No"));
}

bool CupsServer::run() {
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(findServer(), {QStringLiteral("-f"), QStringLiteral("-c"), path("cupsd.conf"),
                                   QStringLiteral("-s"), path("cups-files.conf")});
    const auto answers = [this] {
        QLocalSocket client;
        client.connectToServer(socket());
        return client.waitForConnected(100);
    };
    return m_process.waitForStarted() && QTest::qWaitFor(answers, patience);
}

QString pageText(const QString& file) {
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

QStringList textLines(QString text) {
    text.remove(QLatin1Char('\f'));
    QStringList result;
    for (const QString& line : text.split(QRegularExpression(QStringLiteral("[\r\n]+")))) {
        if (!line.trimmed().isEmpty())
            result << line.simplified();
    }
    return result;
}

}  // namespace kovanix
