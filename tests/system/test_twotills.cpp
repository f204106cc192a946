// Two tills that sell into one file at the same time.

#include "programs.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int sales = 200;
const QString stored = u"stored"_s;

}  // namespace

class TwoTillsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSumsHold_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << u"gizli"_s;
    }

    void theSumsHold() {
        QFETCH(QString, password);
        const ClosedShop shop(password);
        const QString repeat = u"repeat %1"_s.arg(sales);
        const QString report = u"say "_s + stored;
        // Two of bread on one line and a weighed item; bread and three of milk.
        Program one(shop.replay({repeat, u"scan "_s + shelf::bread, u"scan "_s + shelf::bread,
                                 u"scan 2700012002504"_s, u"key F1"_s, report, u"end"_s}));
        Program other(
            shop.replay({repeat, u"scan "_s + shelf::bread, u"type adet 3"_s, u"type barkod "_s + shelf::milk,
                         u"key Return"_s, u"key F1"_s, report, u"end"_s}));
        QVERIFY(one.waitForLine(stored));
        QVERIFY(other.waitForLine(stored));
        QVERIFY2(one.count(stored) < sales && other.count(stored) < sales,
                 "they didn't sell at the same time");

        for (Program* till : {&one, &other}) {
            const Outcome outcome = till->finish();
            QCOMPARE(outcome.errors, QString());
            QVERIFY(outcome.ended);
            QCOMPARE(outcome.status, 0);
            QCOMPARE(till->lines().size(), sales);  // and no message box
        }

        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(shop.value(u"SELECT count(*) FROM satislar"_s).toInt(), 4 * sales);
        const QList<std::pair<QString, double>> sold{
            {shelf::bread, 3.0 * sales}, {shelf::milk, 3.0 * sales}, {shelf::tomatoes, 0.25 * sales}};
        for (const auto& [barcode, quantity] : sold) {
            const QVariant sum =
                shop.value(u"SELECT sum(adet) FROM satislar WHERE barkod = '%1'"_s.arg(barcode));
            QCOMPARE(sum.toDouble(), quantity);
            QCOMPARE(shelf::startStock - shop.stock(barcode), quantity);
        }
    }
};

int main(int argc, char** argv) {
    return runTests<TwoTillsTest>(argc, argv);
}

#include "test_twotills.moc"
