// Prints through a CUPS server of the test's own: a queue whose backend keeps what it is given.

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include "cupsserver.h"
#include "pdfpages.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000;  // milliseconds, for what another process does

struct Outcome {
    int status = -1;
    QString errors;
};

/// Prints a text as a process of its own.
Outcome printed(const QString& text, const QString& server, const QString& defaultQueue = {},
                const QStringList& arguments = {}) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"KOVANIX_PRINTER", "PRINTER", "LPDEST"})
        environment.remove(QString::fromLatin1(variable));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
    environment.insert(u"CUPS_SERVER"_s, server);
    if (!defaultQueue.isEmpty())
        environment.insert(u"PRINTER"_s, defaultQueue);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(PRINT_HELPER), arguments);
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
        QTest::newRow("a receipt")
            << u"\r\n Tarih 05.03.2026\r\n Saat 14:07:09\r\nMüşteri :PEŞİN MÜŞTERİ\r\n\r\nKola 1 lt\r\n"
               u"2,5 X 10,00 T.L. = 25,00 T.L.\r\n\r\n0 X 0,00 T.L. = 0,00 T.L.\r\n\r\n"
               u"\tTOPLAM TUTAR  :\t25,00\r\n\r\n\tTEŞEKKÜR EDERİZ"_s;
        QTest::newRow("every Turkish letter") << u"ÇĞİÖŞÜ çğıöşü Iıİi fi fl"_s;
        QString many;
        for (int i = 1; i <= 150; ++i)
            many += u"kalem %1\r\n"_s.arg(i);
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
        QFile title(QString(job).replace(u".pdf"_s, u".title"_s));
        QVERIFY(title.open(QIODevice::ReadOnly));
        QCOMPARE(title.readAll(), QByteArray("Kovanix"));
    }

    void pagesOfAGridReachTheQueue() {
        const qsizetype before = m_server->jobs().size();
        QStringList lines;
        for (int row = 1; row <= 60; ++row)
            lines << u"kalem %1"_s.arg(row);
        const Outcome outcome = printed(lines.join(u'\n'), m_server->socket(), {}, {u"pages"_s});
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QTRY_VERIFY2_WITH_TIMEOUT(m_server->jobs().size() == before + 1, m_server->log().constData(),
                                  patience);
        const QList<QStringList> pages = pagesOf(m_server->jobs().last());
        QCOMPARE(pages.size(), 2);
        QCOMPARE(pages[0].first(), u"KALEM"_s);
        QCOMPARE(pages[0].last(), u"Page 1 of 2"_s);
        QCOMPARE(pages[1].last(), u"Page 2 of 2"_s);
        QCOMPARE(pages[0].mid(1, pages[0].size() - 2) + pages[1].mid(1, pages[1].size() - 2), lines);
        // Half an inch from the paper's edge, and not from the printer's own margin.
        QVERIFY(std::abs(placeOf(u"KALEM"_s, m_server->jobs().last()).left() - 39) < 1);
    }

    void aQueueThatTakesNoJobs() {
        const qsizetype before = m_server->jobs().size();
        const Outcome outcome = printed(u"bir"_s, m_server->socket(), u"Kapali"_s);
        QCOMPARE(outcome.status, 3);
        QVERIFY2(outcome.errors.contains(u"482: "_s), qPrintable(outcome.errors));
        QVERIFY2(outcome.errors.contains(u"Kapali"_s), qPrintable(outcome.errors));
        QCOMPARE(m_server->jobs().size(), before);
    }

    void aMachineWithoutAPrinter() {
        QTemporaryDir nowhere;
        const Outcome outcome = printed(u"bir"_s, nowhere.filePath(u"none.sock"_s));
        QCOMPARE(outcome.status, 3);
        QVERIFY2(outcome.errors.contains(u"482: Varsayılan yazıcı yok"_s), qPrintable(outcome.errors));
    }

    void cleanupTestCase() { m_server.reset(); }

private:
    std::unique_ptr<CupsServer> m_server;
};

QTEST_GUILESS_MAIN(CupsTest)
#include "test_cups.moc"
