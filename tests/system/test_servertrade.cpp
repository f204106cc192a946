// Several tills that sell into one database on a server, which is killed in mid-trade again and again, and so
// are they.

#include <random>

#include "countingproxy.h"
#include "data/baglanmamodulu.h"
#include "database/serversession.h"
#include "runtests.h"
#include "sellingtills.h"
#include "servercluster.h"
#include "wantedtimes.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int tillCount = 4;
constexpr int longestDelay = 60;  // milliseconds from a stored sale to the kill: some sales

}  // namespace

class ServerTradeTest : public QObject {
    Q_OBJECT

    std::mt19937 m_random{20260503};

    /// A moment in the middle of some sale, that many sales from now.
    bool waitForSales(SellingTills& tills, int sales) {
        const qsizetype moment = tills.told() + sales;
        const bool came = tills.waitFor([&] {
            tills.startEnded();
            return tills.told() >= moment || tills.areDone();
        });
        runFor(static_cast<int>(m_random() % longestDelay));
        return came;
    }

    static bool finish(SellingTills& tills) {
        return tills.waitFor([&] {
            tills.told();
            tills.startEnded();
            return tills.areDone();
        });
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }

    /// With none of the tables there, a till makes them at its start.
    void twoTillsOpenAnEmptyDatabase() {
        const auto tablesOf = [](const ShopFixture& shop) {
            return shop.rows(
                u"SELECT table_name, column_name, data_type, domain_name FROM information_schema.columns WHERE table_schema = 'public' ORDER BY table_name, ordinal_position"_s);
        };
        ShopFixture alone;
        alone.openShop();
        const QList<QVariantList> wanted = tablesOf(alone);
        QVERIFY(wanted.size() > 20);
        baglantikapat();
        for (int round = 0; round < 3; ++round) {
            ShopFixture shop;
            shop.makeDatabase();
            // Both begin at once, behind a third one that is at it.
            shop.run(u"BEGIN"_s);
            shop.rows(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(serverTableLock));
            const QStringList command{replayProgram(), u"--sales"_s,  u"--boxes"_s,
                                      u"--folder"_s,   shop.folder(), QProcess::nullDevice()};
            Program one(command);
            Program other(command);
            const QString waiting =
                u"SELECT count(*) FROM pg_locks WHERE locktype = 'advisory' AND NOT granted"_s;
            QTRY_COMPARE_WITH_TIMEOUT(shop.rows(waiting).value(0).value(0).toInt(), 2, 20000);
            shop.run(u"COMMIT"_s);
            for (Program* const till : {&one, &other}) {
                const Outcome outcome = till->finish();
                QCOMPARE(outcome.output + outcome.errors, QString());
                QCOMPARE(outcome.status, 0);
            }
            QCOMPARE(tablesOf(shop), wanted);
        }
    }

    void allSellAtOnce_data() {
        QTest::addColumn<int>(
            "delay");  // of the network, in microseconds a round trip; below 0 without a proxy
        QTest::newRow("on the server's machine") << -1;
        QTest::newRow("0.3 ms away") << 300;
        QTest::newRow("3 ms away") << 3000;
    }

    void allSellAtOnce() {
        QFETCH(const int, delay);
        const ClosedShop shop;
        CountingProxy proxy(testServer().port());
        proxy.setDelay(std::max(delay, 0));
        if (delay >= 0) {
            QFile pointer(shop.databaseFile());
            QVERIFY(pointer.open(QIODevice::ReadWrite));
            const QByteArray text = pointer.readAll().replace(QByteArray::number(testServer().port()),
                                                              QByteArray::number(proxy.port()));
            QVERIFY(pointer.resize(0) && pointer.seek(0) && pointer.write(text) == text.size());
        }
        SellingTills tills(
            shop, 2 * tillCount,
            TradeLength::of(wantedTimes("KOVANIX_TRADE", 25), wantedTimes("KOVANIX_TRADE_SECONDS", 0)));
        QVERIFY(tills.waitFor([&] { return tills.told() >= 0 && tills.areDone(); }));
        for (int number = 0; number < tills.count(); ++number) {
            QCOMPARE(tills.at(number).strange().join(u'\n'), QString());
            QCOMPARE(tills.at(number).cut(), 0);
        }
        QCOMPARE(proxy.connections() > 0, delay >= 0);
        QCOMPARE(tills.difference(shop), QString());
        qInfo("%d tills: %s", tills.count(), qPrintable(tills.summary()));
    }

    void tillsAreKilled() {
        const int kills = wantedTimes("KOVANIX_TILL_KILLS", 5);
        const ClosedShop shop;
        SellingTills tills(shop, tillCount, {20 * (kills + 1)});
        for (int kill = 0; kill < kills; ++kill) {
            QVERIFY(waitForSales(tills, 20));
            tills.at(kill % tillCount).kill();
        }
        QVERIFY(finish(tills));
        for (int number = 0; number < tills.count(); ++number)
            QCOMPARE(tills.at(number).strange().join(u'\n'), QString());
        QCOMPARE(tills.difference(shop), QString());
        qInfo("%d kills: %s", kills, qPrintable(tills.summary()));
    }

    void theServerIsKilled_data() {
        QTest::addColumn<bool>("stockIsTaken");
        QTest::newRow("a sale's last statement writes") << true;
        QTest::newRow("a sale's last statement finds no row to write") << false;
    }

    void theServerIsKilled() {
        QFETCH(const bool, stockIsTaken);
        const int kills = wantedTimes("KOVANIX_SERVER_KILLS", 10) / 2;
        const ClosedShop shop;
        if (!stockIsTaken) {
            shop.run(
                u"CREATE FUNCTION birak() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN RETURN NULL; END $$"_s);
            shop.run(
                u"CREATE TRIGGER birak BEFORE UPDATE ON urunler FOR EACH ROW EXECUTE FUNCTION birak()"_s);
        }
        SellingTills tills(shop, tillCount, {20 * (kills + 1)});
        for (int kill = 0; kill < kills; ++kill) {
            QVERIFY(waitForSales(tills, 30));
            testServer().kill();
            QVERIFY2(testServer().restart(), testServer().log().constData());
        }
        QVERIFY(finish(tills));
        QCOMPARE(tills.difference(shop, stockIsTaken), QString());
        qInfo("%d kills: %s", kills, qPrintable(tills.summary()));
    }
};

int main(int argc, char** argv) {
    qputenv("KOVANIX_TEST_SERVER", "1");
    return runTests<ServerTradeTest>(argc, argv);
}

#include "test_servertrade.moc"
