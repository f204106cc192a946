// The receipt on its way to paper: a real print server, and none.

#include <QElapsedTimer>

#include "cupsserver.h"
#include "programs.h"
#include "runtests.h"

using namespace kovanix;

namespace {

const QStringList sale{QStringLiteral("clock 2026-05-03T10:15:07"),
                       QStringLiteral("scan ") + shelf::bread,
                       QStringLiteral("scan ") + shelf::bread,
                       QStringLiteral("scan 2700012012504"),
                       QStringLiteral("say before"),
                       QStringLiteral("key F2"),
                       QStringLiteral("say after")};

QProcessEnvironment printingAt(const QString& server) {
    QProcessEnvironment environment = tillEnvironment();
    environment.insert(QStringLiteral("CUPS_SERVER"), server);
    return environment;
}

void compareStored(const ClosedShop& shop) {
    QCOMPARE(shop.rows(QStringLiteral("SELECT barkod, adet, toplam FROM satislar ORDER BY no")),
             (QList<QVariantList>{{shelf::bread, 2.0, 20.0}, {shelf::tomatoes, 1.25, 50.0}}));
    QCOMPARE(shop.stock(shelf::bread), shelf::startStock - 2);
}

}  // namespace

class ReceiptCupsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theReceiptReachesTheDefaultQueue() {
        if (!CupsServer::missing().isEmpty())
            QSKIP(qPrintable(CupsServer::missing()));
        CupsServer server;
        QVERIFY2(server.start(), server.log().constData());
        const ClosedShop shop;
        const Outcome outcome = runProgram(shop.replay(sale), printingAt(server.socket()));
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.output, QStringLiteral("before\nafter\n"));
        QCOMPARE(outcome.status, 0);

        QTRY_COMPARE_WITH_TIMEOUT(server.jobs().size(), 1, patience);
        const QStringList expected{QStringLiteral("Tarih 03.05.2026"),
                                   QStringLiteral("Saat 10:15:07"),
                                   QStringLiteral("Müşteri :PEŞİN MÜŞTERİ"),
                                   QStringLiteral("Köy Ekmeği"),
                                   QStringLiteral("2 X 10,00 T.L. = 20,00 T.L."),
                                   QStringLiteral("Domates"),
                                   QStringLiteral("1,25 X 40,00 T.L. = 50,00 T.L."),
                                   QStringLiteral("0 X 0,00 T.L. = 0,00 T.L."),
                                   QStringLiteral("TOPLAM TUTAR : 70,00"),
                                   QStringLiteral("TEŞEKKÜR EDERİZ")};
        QCOMPARE(textLines(pageText(server.jobs().first())), expected);
        compareStored(shop);
    }

    void aMachineWithoutAPrinter() {
        const ClosedShop shop;
        QTemporaryDir nowhere;
        Program till(shop.replay(sale), printingAt(nowhere.filePath(QStringLiteral("none.sock"))));
        QVERIFY(till.waitForLine(QStringLiteral("before")));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(till.waitForLine(QStringLiteral("after")));
        QVERIFY2(clock.elapsed() < 2000, qPrintable(QString::number(clock.elapsed())));
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(till.lines().size(), 2);  // and no message box
        compareStored(shop);
    }

    void aPrintServerThatTakesNoJobs() {
        if (!CupsServer::missing().isEmpty())
            QSKIP(qPrintable(CupsServer::missing()));
        CupsServer server;
        QVERIFY2(server.start(), server.log().constData());
        const ClosedShop shop;
        QProcessEnvironment environment = printingAt(server.socket());
        environment.insert(QStringLiteral("PRINTER"), QStringLiteral("Kapali"));
        const Outcome outcome = runProgram(shop.replay(sale), environment);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.output, QStringLiteral("before\nafter\n"));
        QCOMPARE(server.jobs(), QStringList());
        compareStored(shop);
    }
};

int main(int argc, char** argv) {
    return runTests<ReceiptCupsTest>(argc, argv);
}

#include "test_receipt_cups.moc"
