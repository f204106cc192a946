// Prints through a CUPS server of the test's own: a queue whose backend keeps what it is given.

#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

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

/// A running CUPS server with a default queue and one, "Kapali", that takes no jobs; ends with the object.
class CupsServer {
public:
    ~CupsServer() {
        m_process.terminate();
        if (!m_process.waitForFinished(patience)) {
            m_process.kill();
            m_process.waitForFinished();
        }
    }

    bool start() {
        const QDir root(m_dir.path());
        for (const char* folder : {"state", "cache", "temp", "spool", "log", "bin/backend", "printed"}) {
            if (!root.mkpath(QString::fromLatin1(folder)))
                return false;
        }
        // The program that starts backends; the queues are raw, so that no filter is needed.
        QFile::link(serverPrograms, path("bin/daemon"));
        const QFile::Permissions ours = QFile::ReadOwner | QFile::WriteOwner;
        return write(path("cupsd.conf"), configuration(), ours) &&
               write(path("cups-files.conf"), files(), ours) &&
               write(path("printers.conf"), queues(), ours) &&
               // Closed to everyone else: the server then runs it as itself, who may write here.
               write(path("bin/backend/keep"), backend(), ours | QFile::ExeOwner) && run();
    }

    /// The path of the server's socket, the value of CUPS_SERVER.
    QString socket() const { return path("cups.sock"); }

    /// The jobs that reached the printer, oldest first.
    QStringList jobs() const {
        const QDir printed(path("printed"));
        QStringList files;
        for (const QString& name : printed.entryList({QStringLiteral("*.pdf")}, QDir::Files, QDir::Name))
            files << printed.filePath(name);
        return files;
    }

    /// What the server wrote about itself, for a failed test.
    QByteArray log() const {
        QFile file(path("log/error"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    QString path(const char* name) const { return m_dir.filePath(QString::fromLatin1(name)); }

    QString configuration() const {
        return QStringLiteral(
                   "Listen %1\nLogLevel info\nMaxLogSize 0\nBrowsing Off\nWebInterface No\nDefaultAuthType "
                   "None\n"
                   "<Location />\nOrder deny,allow\nAllow all\n</Location>\n"
                   "<Policy default>\nJobPrivateAccess all\nJobPrivateValues none\n"
                   "<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n</Policy>\n")
            .arg(socket());
    }

    QString files() const {
        return QStringLiteral(
                   "ServerRoot %1\nStateDir %1/state\nCacheDir %1/cache\nTempDir %1/temp\nRequestRoot "
                   "%1/spool\n"
                   "ServerBin %1/bin\nDataDir /usr/share/cups\nAccessLog %1/log/access\nErrorLog "
                   "%1/log/error\n"
                   "PageLog %1/log/page\nSandboxing relaxed\n")
            .arg(m_dir.path());
    }

    QString queues() const {
        const QString queue = QStringLiteral(
            "<%1 %2>\nDeviceURI keep:%3/printed\nState Idle\nAccepting %4\nShared No\nJobSheets none none\n"
            "OpPolicy default\nErrorPolicy abort-job\n</%1>\n");
        return queue.arg(QStringLiteral("DefaultPrinter"), QStringLiteral("Kasa"), m_dir.path(),
                         QStringLiteral("Yes")) +
               queue.arg(QStringLiteral("Printer"), QStringLiteral("Kapali"), m_dir.path(),
                         QStringLiteral("No"));
    }

    static QString backend() {
        return QStringLiteral(
            "#!/bin/sh\n"
            "[ $# -ge 5 ] || exit 0\n"
            "folder=${DEVICE_URI#keep:}\n"
            "printf '%s' \"$3\" >\"$folder/$1.title\" || exit 1\n"
            "cat ${6:+\"$6\"} >\"$folder/$1.part\" && mv \"$folder/$1.part\" \"$folder/$1.pdf\"\n");
    }

    bool run() {
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

    QTemporaryDir m_dir;
    QProcess m_process;
};

struct Outcome {
    int status = -1;
    QString errors;
};

/// Prints a text as a process of its own.
Outcome printed(const QString& text, const QString& server, const QString& defaultQueue = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"KOVANIX_PRINTER", "PRINTER", "LPDEST"})
        environment.remove(QString::fromLatin1(variable));
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("CUPS_SERVER"), server);
    if (!defaultQueue.isEmpty())
        environment.insert(QStringLiteral("PRINTER"), defaultQueue);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PRINT_HELPER), QStringList());
    process.write(text.toUtf8());
    process.closeWriteChannel();
    if (!process.waitForFinished(patience) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

QString pageText(const QString& file) {
    QProcess process;
    process.start(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), file, QStringLiteral("-")});
    return process.waitForFinished() ? QString::fromUtf8(process.readAllStandardOutput()) : QString();
}

/// The lines that carry text, with single blanks.
QStringList lines(QString text) {
    text.remove(QLatin1Char('\f'));
    QStringList result;
    for (const QString& line : text.split(QRegularExpression(QStringLiteral("[\r\n]+")))) {
        if (!line.trimmed().isEmpty())
            result << line.simplified();
    }
    return result;
}

}  // namespace

class CupsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (findServer().isEmpty())
            QSKIP("no CUPS server on this machine (package cups-daemon)");
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("pdftotext")).isEmpty(),
                 "pdftotext (package poppler-utils) is needed");
        m_server = std::make_unique<CupsServer>();
        QVERIFY2(m_server->start(), m_server->log().constData());
    }

    void aPrintedTextReachesTheQueue_data() {
        QTest::addColumn<QString>("text");
        QTest::newRow("a receipt") << QStringLiteral(
            "\r\n Tarih 05.03.2026\r\n Saat 14:07:09\r\nMüşteri :PEŞİN MÜŞTERİ\r\n\r\nKola 1 lt\r\n"
            "2,5 X 10,00 T.L. = 25,00 T.L.\r\n\r\n0 X 0,00 T.L. = 0,00 T.L.\r\n\r\n"
            "\tTOPLAM TUTAR  :\t25,00\r\n\r\n\tTEŞEKKÜR EDERİZ");
        QTest::newRow("every Turkish letter") << QStringLiteral("ÇĞİÖŞÜ çğıöşü Iıİi fi fl");
        QString many;
        for (int i = 1; i <= 150; ++i)
            many += QStringLiteral("kalem %1\r\n").arg(i);
        QTest::newRow("several pages") << many;
    }

    void aPrintedTextReachesTheQueue() {
        QFETCH(QString, text);
        const qsizetype before = m_server->jobs().size();
        const Outcome outcome = printed(text, m_server->socket());
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QTRY_VERIFY2_WITH_TIMEOUT(m_server->jobs().size() == before + 1, m_server->log().constData(),
                                  patience);
        const QString job = m_server->jobs().last();
        QCOMPARE(lines(pageText(job)), lines(text));
        QFile title(QString(job).replace(QStringLiteral(".pdf"), QStringLiteral(".title")));
        QVERIFY(title.open(QIODevice::ReadOnly));
        QCOMPARE(title.readAll(), QByteArray("Kovanix"));
    }

    void aQueueThatTakesNoJobs() {
        const qsizetype before = m_server->jobs().size();
        const Outcome outcome = printed(QStringLiteral("bir"), m_server->socket(), QStringLiteral("Kapali"));
        QCOMPARE(outcome.status, 3);
        QVERIFY2(outcome.errors.contains(QStringLiteral("482: ")), qPrintable(outcome.errors));
        QVERIFY2(outcome.errors.contains(QStringLiteral("Kapali")), qPrintable(outcome.errors));
        QCOMPARE(m_server->jobs().size(), before);
    }

    void aMachineWithoutAPrinter() {
        QTemporaryDir nowhere;
        const Outcome outcome = printed(QStringLiteral("bir"), nowhere.filePath(QStringLiteral("none.sock")));
        QCOMPARE(outcome.status, 3);
        QVERIFY2(outcome.errors.contains(QStringLiteral("482: There is no default printer")),
                 qPrintable(outcome.errors));
    }

    void cleanupTestCase() { m_server.reset(); }

private:
    std::unique_ptr<CupsServer> m_server;
};

QTEST_GUILESS_MAIN(CupsTest)
#include "cups_test.moc"
