// The receipt on its way to paper: a real print server, and none.

#include <QElapsedTimer>

#include "cupsserver.h"
#include "programs.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QStringList sale{u"clock 2026-05-03T10:15:07"_s,
                       u"scan "_s + shelf::bread,
                       u"scan "_s + shelf::bread,
                       u"scan 2700012012504"_s,
                       u"say before"_s,
                       u"key F2"_s,
                       u"say after"_s};

QProcessEnvironment printingAt(const QString& server) {
    QProcessEnvironment environment = tillEnvironment();
    environment.insert(u"CUPS_SERVER"_s, server);
    return environment;
}

void compareStored(const ClosedShop& shop) {
    QCOMPARE(shop.rows(u"SELECT barkod, adet, toplam FROM satislar ORDER BY no"_s),
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
        QCOMPARE(outcome.output, u"before\nafter\n"_s);
        QCOMPARE(outcome.status, 0);

        QTRY_COMPARE_WITH_TIMEOUT(server.jobs().size(), 1, patience);
        const QStringList expected{u"Tarih 03.05.2026"_s,
                                   u"Saat 10:15:07"_s,
                                   u"Müşteri :PEŞİN MÜŞTERİ"_s,
                                   u"Köy Ekmeği"_s,
                                   u"2 X 10,00 T.L. = 20,00 T.L."_s,
                                   u"Domates"_s,
                                   u"1,25 X 40,00 T.L. = 50,00 T.L."_s,
                                   u"0 X 0,00 T.L. = 0,00 T.L."_s,
                                   u"TOPLAM TUTAR : 70,00"_s,
                                   u"TEŞEKKÜR EDERİZ"_s};
        QCOMPARE(textLines(pageText(server.jobs().first())), expected);
        compareStored(shop);
    }

    void aMachineWithoutAPrinter() {
        const ClosedShop shop;
        QTemporaryDir nowhere;
        Program till(shop.replay(sale), printingAt(nowhere.filePath(u"none.sock"_s)));
        QVERIFY(till.waitForLine(u"before"_s));
        QElapsedTimer clock;
        clock.start();
        QVERIFY(till.waitForLine(u"after"_s));
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
        environment.insert(u"PRINTER"_s, u"Kapali"_s);
        const Outcome outcome = runProgram(shop.replay(sale), environment);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.output, u"before\nafter\n"_s);
        QCOMPARE(server.jobs(), QStringList());
        compareStored(shop);
    }
};

int main(int argc, char** argv) {
    return runTests<ReceiptCupsTest>(argc, argv);
}

#include "test_receipt_cups.moc"
