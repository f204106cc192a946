// A till killed at random moments of its sales: what its file holds afterwards.

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <random>

#include "programs.h"
#include "runtests.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostSales = 25;  // reported before the kill is armed
constexpr int longestDelay = 12000;  // microseconds from there: a few statements
constexpr int commitsOfSale = 4;     // two rows, two updates of the stock
const QString stored = u"stored"_s;

QStringList sellingForever() {
    return {u"repeat 2000"_s, u"scan "_s + shelf::bread, u"scan "_s + shelf::milk,
            u"key F1"_s,      u"say "_s + stored,        u"end"_s};
}

/// Lets the event loop run for that long.
void runFor(std::chrono::microseconds time) {
    QEventLoop loop;
    QElapsedTimer clock;
    clock.start();
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, &loop, [&] {
        if (std::chrono::nanoseconds(clock.nsecsElapsed()) >= time)
            loop.quit();
    });
    watch.start(0);
    loop.exec();
}

struct Stored {
    int bread = 0;  ///< rows
    int milk = 0;
    double breadTaken = 0;  ///< off the stock
    double milkTaken = 0;

    explicit Stored(const ClosedShop& shop) {
        const QString rows = u"(SELECT count(*) FROM satislar WHERE adet = 1 AND barkod = '%1')"_s;
        const QString stock = u"(SELECT stok FROM urunler WHERE barkod = '%1')"_s;
        const QVariantList found =
            shop.rows(u"SELECT " + rows.arg(shelf::bread) + u", " + rows.arg(shelf::milk) + u", " +
                      stock.arg(shelf::bread) + u", " + stock.arg(shelf::milk))
                .first();
        bread = found.at(0).toInt();
        milk = found.at(1).toInt();
        breadTaken = shelf::startStock - found.at(2).toDouble();
        milkTaken = shelf::startStock - found.at(3).toDouble();
    }
};

}  // namespace

class KillTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void nothingThatWasStoredIsLost_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << u"gizli"_s;
    }

    void nothingThatWasStoredIsLost() {
        QFETCH(QString, password);
        const int rounds = wantedTimes("KOVANIX_KILLS", 20);
        const ClosedShop shop(password);
        std::mt19937 random(20260503);
        std::uniform_int_distribution<qsizetype> sales(0, mostSales);
        std::uniform_int_distribution<int> delay(0, longestDelay);

        qsizetype reportedSales = 0;
        int cutSales = 0;
        Stored before(shop);
        for (int round = 0; round < rounds; ++round) {
            Program till(shop.replay(sellingForever()));
            QVERIFY(till.waitForLine(stored, 1 + sales(random)));
            runFor(std::chrono::microseconds(delay(random)));
            QVERIFY(till.isRunning());
            till.killHard();
            const int reported = static_cast<int>(till.count(stored));
            QCOMPARE(till.lines().size(), reported);  // and no message box

            QCOMPARE(shop.rows(u"PRAGMA integrity_check"_s), QList<QVariantList>{{u"ok"_s}});
            const Stored after(shop);
            const int bread = after.bread - before.bread;
            const int milk = after.milk - before.milk;
            const double breadTaken = after.breadTaken - before.breadTaken;
            const double milkTaken = after.milkTaken - before.milkTaken;
            const QString found = u"round %1: %2 reported; rows %3 and %4, stock taken %5 and %6"_s.arg(round)
                                      .arg(reported)
                                      .arg(bread)
                                      .arg(milk)
                                      .arg(breadTaken)
                                      .arg(milkTaken);
            // Every sale that was reported is whole, and at most one more was under way: its statements came
            // in the order bread's row, milk's row, bread's stock, milk's stock.
            const std::array<double, 5> steps{static_cast<double>(reported), milkTaken, breadTaken,
                                              static_cast<double>(milk), static_cast<double>(bread)};
            QVERIFY2(std::is_sorted(steps.begin(), steps.end()), qPrintable(found));
            QVERIFY2(bread <= reported + 1, qPrintable(found));
            reportedSales += reported;
            before = after;
            cutSales += bread != milkTaken ? 1 : 0;
        }
        qInfo("%d commits reported, %d of %d kills fell between the statements of a sale",
              static_cast<int>(reportedSales) * commitsOfSale, cutSales, rounds);
        QVERIFY(reportedSales * commitsOfSale >= 500);
    }
};

int main(int argc, char** argv) {
    return runTests<KillTest>(argc, argv);
}

#include "test_kill.moc"
