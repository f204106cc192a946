#include "servercluster.h"

#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QTcpServer>
#include <QTest>
#include <algorithm>
#include <utility>

namespace kovanix {

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 30000;  // milliseconds, for what another process does
constexpr uid_t ordinaryUser = 65534;

// What stands between the fields and between the rows that the server's program gives.
constexpr char16_t fieldEnd = u'\x1f';
constexpr char16_t rowEnd = u'\x1e';

/// Where Debian keeps the server's programs, newest version first.
QString findProgram(const QString& name) {
    const QDir versions(u"/usr/lib/postgresql"_s);
    QStringList places;
    for (const QString& version : versions.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name))
        places.prepend(versions.filePath(version + u"/bin"_s));
    const QString found = QStandardPaths::findExecutable(name, places);
    return found.isEmpty() ? QStandardPaths::findExecutable(name) : found;
}

/// Runs as an ordinary user, and ends at once when the test does.
void becomeServer() {
    if (::geteuid() == 0 && (::setgid(ordinaryUser) != 0 || ::setuid(ordinaryUser) != 0))
        ::_exit(1);
    ::prctl(PR_SET_PDEATHSIG, SIGQUIT);
}

bool runToEnd(QProcess& process, const QString& program, const QStringList& arguments) {
    process.start(findProgram(program), arguments);
    return process.waitForFinished(patience) && process.exitStatus() == QProcess::NormalExit &&
           process.exitCode() == 0;
}

int freePort() {
    QTcpServer probe;
    return probe.listen(QHostAddress::LocalHost) ? probe.serverPort() : 0;
}

/// The processes whose parent is another.
QList<qint64> childrenOf(qint64 parent) {
    QList<qint64> children;
    for (const QString& entry : QDir(u"/proc"_s).entryList(QDir::Dirs)) {
        QFile status(u"/proc/%1/stat"_s.arg(entry));
        if (!entry.at(0).isDigit() || !status.open(QIODevice::ReadOnly))
            continue;
        // Behind the name, which is in brackets: the state and the parent.
        const QByteArray line = status.readAll();
        const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
        if (fields.size() > 1 && fields[1].toLongLong() == parent)
            children.append(entry.toLongLong());
    }
    return children;
}

bool isRunningProcess(qint64 process) {
    QFile status(u"/proc/%1/stat"_s.arg(process));
    if (!status.open(QIODevice::ReadOnly))
        return false;
    const QByteArray line = status.readAll();
    return line.mid(line.lastIndexOf(')') + 2, 1) != "Z";
}

/// A folder for a cluster. Most of what a test does there is to make databases and drop them: hundreds of
/// small files each.
std::unique_ptr<QTemporaryDir> makeFolder(bool inMemory) {
    if (!ServerCluster::disk.isEmpty())
        return std::make_unique<QTemporaryDir>(ServerCluster::disk + u"/kovanix-test-XXXXXX");
    const QDir memory(u"/dev/shm"_s);
    constexpr qint64 plenty = qint64{2} << 30;  // bytes
    if (!inMemory || QStorageInfo(memory).bytesAvailable() < plenty)
        return std::make_unique<QTemporaryDir>();
    const QString name = u"kovanix-test-"_s;
    // What killed tests have left.
    for (const QString& entry : memory.entryList({name + u'*'}, QDir::Dirs)) {
        if (!QFileInfo::exists(u"/proc/"_s + entry.section(u'-', 2, 2)))
            QDir(memory.filePath(entry)).removeRecursively();
    }
    return std::make_unique<QTemporaryDir>(
        memory.filePath(name + QString::number(::getpid()) + u"-XXXXXX"_s));
}

}  // namespace

ServerCluster::~ServerCluster() {
    if (!isRunning())
        return;
    resume();
    ::kill(static_cast<pid_t>(m_server.processId()), SIGQUIT);
    if (!m_server.waitForFinished(patience))
        kill();
}

QString ServerCluster::missing() {
    for (const QString& program : {u"initdb"_s, u"postgres"_s, u"psql"_s}) {
        if (findProgram(program).isEmpty())
            return u"no %1 on this machine (package postgresql)"_s.arg(program);
    }
    return {};
}

bool ServerCluster::start(const QStringList& settings) {
    m_dir = makeFolder(!settings.contains(u"fsync=on"_s));
    // The ordinary user has to get at what is his, and at nothing else.
    const QString data = path("data");
    const QString passwordFile = path("password");
    if (!QFile::setPermissions(m_dir->path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                  QFile::ExeGroup | QFile::ExeOther) ||
        !QDir(m_dir->path()).mkpath(u"data"_s) || !QDir(m_dir->path()).mkpath(u"socket"_s))
        return false;
    for (const char* folder : {"data", "socket"}) {
        if (::geteuid() == 0 &&
            ::chown(QFile::encodeName(path(folder)).constData(), ordinaryUser, ordinaryUser) != 0)
            return false;
    }
    QProcess initdb;
    initdb.setChildProcessModifier(becomeServer);
    initdb.setWorkingDirectory(data);
    if (!runToEnd(
            initdb, u"initdb"_s,
            {u"-D"_s, data, u"-U"_s, u"postgres"_s, u"--auth-local=trust"_s, u"--auth-host=scram-sha-256"_s,
             u"--no-locale"_s, u"-E"_s, u"UTF8"_s, u"--no-sync"_s, u"--no-instructions"_s})) {
        qWarning().noquote() << initdb.readAllStandardError();
        return false;
    }
    m_port = freePort();
    m_settings = settings;
    if (!runServer())
        return false;
    rows(u"postgres"_s, u"CREATE ROLE %1 LOGIN PASSWORD '%2'"_s.arg(role(), password()));
    return true;
}

bool ServerCluster::runServer() {
    QStringList arguments{u"-D"_s, path("data"), u"-p"_s, QString::number(m_port), u"-k"_s, path("socket")};
    // A server that is killed loses nothing without syncs: only its machine's end would.
    for (const QString& setting : QStringList{u"listen_addresses=127.0.0.1"_s, u"fsync=off"_s,
                                              u"shared_buffers=32MB"_s, u"max_wal_size=128MB"_s} +
                                      m_settings)
        arguments << u"-c"_s << setting;
    m_server.setChildProcessModifier(becomeServer);
    m_server.setWorkingDirectory(path("data"));
    m_server.setStandardErrorFile(path("log"), QIODevice::Append);
    m_server.setStandardOutputFile(QProcess::nullDevice());
    m_server.start(findProgram(u"postgres"_s), arguments);
    return m_server.waitForStarted(patience) &&
           QTest::qWaitFor(
               [this] {
                   QProcess ready;
                   return runToEnd(ready, u"pg_isready"_s,
                                   {u"-q"_s, u"-h"_s, path("socket"), u"-p"_s, QString::number(m_port)});
               },
               patience);
}

QString ServerCluster::createDatabase(const QString& original) {
    const QString name = u"dukkan%1"_s.arg(++m_databases);
    const QString source = original.isEmpty() ? u"template0"_s : original;
    QStringList statements;
    for (const QString& unused : std::exchange(m_unused, {}))
        statements << u"DROP DATABASE IF EXISTS %1 WITH (FORCE)"_s.arg(unused);
    // By its files: page by page, a copy goes through the server's log as well.
    statements << u"CREATE DATABASE %1 OWNER %2 TEMPLATE %3 ENCODING 'UTF8' LOCALE 'C' STRATEGY file_copy"_s
                      .arg(name, role(), source);
    QProcess psql;
    bool made = ask(psql, u"postgres"_s, statements);
    if (made && original.isEmpty())
        made = ask(psql, name, {u"CREATE EXTENSION citext"_s});
    return made ? name : QString();
}

void ServerCluster::dropDatabase(const QString& name) const {
    rows(u"postgres"_s, u"DROP DATABASE %1 WITH (FORCE)"_s.arg(name));
}

QString ServerCluster::writePointer(const QString& folder, const QString& database) const {
    QFile file(QDir(folder).filePath(database + u".sunucu"_s));
    const QString text =
        u"[sunucu]\r\nadres=%1\r\nport=%2\r\nveritabani=%3\r\nkullanici=%4\r\ntls=yok\r\n"_s.arg(
            host(), QString::number(m_port), database, role());
    return file.open(QIODevice::WriteOnly) && file.write(text.toLatin1()) == text.size() ? file.fileName()
                                                                                         : QString();
}

/// Runs statements one after the other, each by itself. @return whether all went well
bool ServerCluster::ask(QProcess& psql, const QString& database, const QStringList& statements) const {
    QStringList arguments{u"-X"_s, u"-q"_s, u"-A"_s, u"-t"_s, u"-v"_s, u"ON_ERROR_STOP=1"_s};
    arguments << u"-F"_s << QChar(fieldEnd) << u"-R"_s << QChar(rowEnd);
    arguments << u"-h"_s << path("socket") << u"-p"_s << QString::number(m_port);
    arguments << u"-U"_s << u"postgres"_s << u"-d"_s << database;
    for (const QString& sql : statements)
        arguments << u"-c"_s << sql;
    const bool done = runToEnd(psql, u"psql"_s, arguments);
    if (!done)
        qWarning().noquote() << statements << psql.readAllStandardError();
    return done;
}

QList<QStringList> ServerCluster::rows(const QString& database, const QString& sql) const {
    QProcess psql;
    ask(psql, database, {sql});
    QString text = QString::fromUtf8(psql.readAllStandardOutput());
    if (text.endsWith(u'\n'))
        text.chop(1);
    QList<QStringList> rows;
    if (text.isEmpty())
        return rows;
    for (const QString& row : text.split(QChar(rowEnd)))
        rows.append(row.split(QChar(fieldEnd)));
    return rows;
}

/// The server and its children, the server first: it would start new ones for those that go.
void ServerCluster::signalAll(int signal) const {
    const qint64 server = m_server.processId();
    if (server == 0)
        return;
    ::kill(static_cast<pid_t>(server), signal);
    for (const qint64 child : childrenOf(server))
        ::kill(static_cast<pid_t>(child), signal);
}

void ServerCluster::kill() {
    // Stood still first, so that no child is missed.
    ::kill(static_cast<pid_t>(m_server.processId()), SIGSTOP);
    const QList<qint64> children = childrenOf(m_server.processId());
    for (const qint64 child : children)
        ::kill(static_cast<pid_t>(child), SIGKILL);
    m_server.kill();
    m_server.waitForFinished(patience);
    // A server doesn't start as long as one of an earlier one's is on its way out.
    if (!QTest::qWaitFor([&children] { return std::ranges::none_of(children, isRunningProcess); }, patience))
        qWarning("a process of the server doesn't end");
}

void ServerCluster::stop() {
    ::kill(static_cast<pid_t>(m_server.processId()), SIGINT);
    m_server.waitForFinished(patience);
}

bool ServerCluster::restart() {
    return runServer();
}

void ServerCluster::pause() {
    signalAll(SIGSTOP);
}

void ServerCluster::resume() {
    signalAll(SIGCONT);
}

QByteArray ServerCluster::log() const {
    QFile file(path("log"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

ServerCluster& testServer() {
    static ServerCluster cluster;
    static const bool started = cluster.start();
    if (!started)
        qFatal("no server");
    return cluster;
}

}  // namespace kovanix
