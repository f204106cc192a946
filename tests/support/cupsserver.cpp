#include "cupsserver.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000;  // milliseconds, for what another process does

const QString serverPrograms = u"/usr/lib/cups/daemon"_s;

QString findServer() {
    return QStandardPaths::findExecutable(u"cupsd"_s, {u"/usr/sbin"_s, u"/usr/local/sbin"_s});
}

bool write(const QString& path, const QString& text, QFile::Permissions permissions) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0 &&
           file.setPermissions(permissions);
}

QString backend() {
    return u"#!/bin/sh\n"
           u"[ $# -ge 5 ] || exit 0\n"
           u"folder=${DEVICE_URI#keep:}\n"
           u"printf '%s' \"$3\" >\"$folder/$1.title\" || exit 1\n"
           u"cat ${6:+\"$6\"} >\"$folder/$1.part\" && mv \"$folder/$1.part\" \"$folder/$1.pdf\"\n"_s;
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
        return u"no CUPS server on this machine (package cups-daemon)"_s;
    if (QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty())
        return u"no pdftotext on this machine (package poppler-utils)"_s;
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
    for (const QString& name : printed.entryList({u"*.pdf"_s}, QDir::Files, QDir::Name))
        files << printed.filePath(name);
    return files;
}

QByteArray CupsServer::log() const {
    QFile file(path("log/error"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString CupsServer::configuration() const {
    return u"Listen %1\nLogLevel info\nMaxLogSize 0\nBrowsing Off\nWebInterface No\nDefaultAuthType "
           u"None\n"
           u"<Location />\nOrder deny,allow\nAllow all\n</Location>\n"
           u"<Policy default>\nJobPrivateAccess all\nJobPrivateValues none\n"
           u"<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n</Policy>\n"_s.arg(socket());
}

QString CupsServer::files() const {
    return u"ServerRoot %1\nStateDir %1/state\nCacheDir %1/cache\nTempDir %1/temp\nRequestRoot "
           u"%1/spool\n"
           u"ServerBin %1/bin\nDataDir /usr/share/cups\nAccessLog %1/log/access\nErrorLog "
           u"%1/log/error\n"
           u"PageLog %1/log/page\nSandboxing relaxed\n"_s.arg(m_dir.path());
}

QString CupsServer::queues() const {
    const QString queue =
        u"<%1 %2>\nDeviceURI keep:%3/printed\nState Idle\nAccepting %4\nShared No\nJobSheets none none\n"
        u"OpPolicy default\nErrorPolicy abort-job\n</%1>\n"_s;
    return queue.arg(u"DefaultPrinter"_s, u"Kasa"_s, m_dir.path(), u"Yes"_s) +
           queue.arg(u"Printer"_s, u"Kapali"_s, m_dir.path(), u"No"_s);
}

bool CupsServer::run() {
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.start(findServer(), {u"-f"_s, u"-c"_s, path("cupsd.conf"), u"-s"_s, path("cups-files.conf")});
    const auto answers = [this] {
        QLocalSocket client;
        client.connectToServer(socket());
        return client.waitForConnected(100);
    };
    return m_process.waitForStarted() && QTest::qWaitFor(answers, patience);
}

QString pageText(const QString& file) {
    QProcess process;
    process.start(u"pdftotext"_s, {u"-layout"_s, file, u"-"_s});
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

QStringList textLines(QString text) {
    text.remove(QLatin1Char('\f'));
    QStringList result;
    for (const QString& line : text.split(QRegularExpression(u"[\r\n]+"_s))) {
        if (!line.trimmed().isEmpty())
            result << line.simplified();
    }
    return result;
}

}  // namespace kovanix
