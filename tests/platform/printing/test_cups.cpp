// Prints through a CUPS server of the test's own: a queue whose backend keeps what it is given.

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "cupsserver.h"

using namespace kovanix;

namespace {

constexpr int patience = 20000;  // milliseconds, for what another process does

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

}  // namespace

class CupsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!CupsServer::missing().isEmpty())
            QSKIP(qPrintable(CupsServer::missing()));
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
        QCOMPARE(textLines(pageText(job)), textLines(text));
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
#include "test_cups.moc"
