// Two tills that sell into one file at the same time, one of them killed now and then.

#include <random>

#include "runtests.h"
#include "sellingtills.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

int killsIn(int sales) {
    return 3 + sales / 500;
}

constexpr int longestDelay = 30;  // milliseconds from a stored sale to the kill: one or two sales

}  // namespace

class TwoTillsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void whatWasPressedIsThere_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << u"gizli"_s;
    }

    void whatWasPressedIsThere() {
        QFETCH(QString, password);
        const int sales = wantedTimes("KOVANIX_TRADE", 150);
        const ClosedShop shop(password);
        std::mt19937 random(20260503);
        SellingTills tills(shop, 2, {sales});
        const int kills = killsIn(sales);
        for (int kill = 1; kill <= kills; ++kill) {
            const qsizetype moment = 2 * sales * qsizetype{kill} / (kills + 2);
            QVERIFY(tills.waitFor([&] { return tills.told() >= moment; }));
            runFor(static_cast<int>(random() % longestDelay));
            SellingTill& till = tills.at(kill % 2);
            QVERIFY2(till.isRunning(), qPrintable(till.strange().join(u'\n')));
            till.kill();
            till.start();
        }
        for (int number = 0; number < 2; ++number) {
            SellingTill& till = tills.at(number);
            QVERIFY(tills.waitFor([&] { return !till.isRunning(); }));
            const Outcome outcome = till.finish();
            QCOMPARE(till.strange().join(u'\n'), QString());
            QCOMPARE(outcome.errors, QString());
            QCOMPARE(outcome.status, 0);
            QCOMPARE(till.pressed().size(), sales);
        }
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(tills.difference(shop), QString());
        qInfo("%d kills: %s", kills, qPrintable(tills.summary()));
    }
};

int main(int argc, char** argv) {
    return runTests<TwoTillsTest>(argc, argv);
}

#include "test_twotills.moc"
