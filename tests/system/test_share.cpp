// A till on the file's own machine and one that opens the file over a network.

#include "database/connection.h"
#include "programs.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int sales = 150;
const QString ready = u"ready"_s;
const QString stored = u"stored"_s;

}  // namespace

class ShareTest : public QObject {
    Q_OBJECT

    /// How the file is written now: "wal" or "delete".
    static QString journal(const ClosedShop& shop) { return shop.value(u"PRAGMA journal_mode"_s).toString(); }

    static void openOverNetwork(Connection& connection, const ClosedShop& shop) {
        setNetworkFileTest([](const QString&) { return true; });
        connection.open(u"Provider=x;Data Source="_s + shop.databaseFile());
    }

    static void checkEnd(Program& till) {
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
    }

private Q_SLOTS:
    void cleanup() { setNetworkFileTest({}); }

    void anIdleTillMakesRoom_data() {
        QTest::addColumn<int>("tills");
        QTest::newRow("one till") << 1;
        QTest::newRow("two tills of one machine") << 2;
    }

    void anIdleTillMakesRoom() {
        QFETCH(int, tills);
        const ClosedShop shop;
        const QString sell = u"scan "_s + shelf::bread;
        std::vector<std::unique_ptr<Program>> local;
        for (int till = 0; till < tills; ++till) {
            local.push_back(std::make_unique<Program>(shop.replay(
                {sell, u"key F1"_s, u"say "_s + ready, u"pause"_s, sell, u"key F1"_s, u"say "_s + stored})));
            QVERIFY(local.back()->waitForLine(ready));
        }
        QCOMPARE(journal(shop), u"wal"_s);

        Connection remote;
        openOverNetwork(remote, shop);
        QCOMPARE(journal(shop), u"delete"_s);
        remote.execute(u"UPDATE urunler SET stok = stok - 1 WHERE barkod = '%1'"_s.arg(shelf::bread));
        for (const std::unique_ptr<Program>& till : local) {
            till->goOn();
            checkEnd(*till);
            QCOMPARE(till->lines(), (QStringList{ready, stored}));  // and no message box
        }
        QCOMPARE(shop.stock(shelf::bread), shelf::startStock - 1 - 2 * tills);
    }

    void aSellingTillLosesNoSale() {
        const ClosedShop shop;
        Program local(shop.replay({u"repeat %1"_s.arg(sales), u"scan "_s + shelf::bread,
                                   u"scan "_s + shelf::milk, u"key F1"_s, u"say "_s + stored, u"end"_s}));
        QVERIFY(local.waitForLine(stored));
        Connection remote;
        openOverNetwork(remote, shop);
        const QString change = u"UPDATE urunler SET stok = stok - 1 WHERE barkod = '%1'"_s.arg(shelf::bread);
        constexpr int changes = 20;
        for (int i = 0; i < changes; ++i)
            remote.execute(change);
        QVERIFY2(local.isRunning(), "they didn't sell at the same time");
        checkEnd(local);
        QCOMPARE(local.lines().size(), sales);
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(shop.value(u"SELECT count(*) FROM satislar"_s).toInt(), 2 * sales);
        QCOMPARE(shop.stock(shelf::bread), shelf::startStock - sales - changes);
        QCOMPARE(shop.stock(shelf::milk), shelf::startStock - sales);
    }
};

int main(int argc, char** argv) {
    return runTests<ShareTest>(argc, argv);
}

#include "test_share.moc"
