// Two tills that sell into one file at the same time.

#include "programs.h"
#include "runtests.h"

using namespace kovanix;

namespace {

constexpr int sales = 200;
const QString stored = QStringLiteral("stored");

}  // namespace

class TwoTillsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theSumsHold_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << QStringLiteral("gizli");
    }

    void theSumsHold() {
        QFETCH(QString, password);
        const ClosedShop shop(password);
        const QString repeat = QStringLiteral("repeat %1").arg(sales);
        const QString report = QStringLiteral("say ") + stored;
        // Two of bread on one line and a weighed item; bread and three of milk.
        Program one(shop.replay({repeat, QStringLiteral("scan ") + shelf::bread,
                                 QStringLiteral("scan ") + shelf::bread, QStringLiteral("scan 2700012002504"),
                                 QStringLiteral("key F1"), report, QStringLiteral("end")}));
        Program other(
            shop.replay({repeat, QStringLiteral("scan ") + shelf::bread, QStringLiteral("type adet 3"),
                         QStringLiteral("type barkod ") + shelf::milk, QStringLiteral("key Return"),
                         QStringLiteral("key F1"), report, QStringLiteral("end")}));
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

        QCOMPARE(shop.value(QStringLiteral("PRAGMA integrity_check")).toString(), QStringLiteral("ok"));
        QCOMPARE(shop.value(QStringLiteral("SELECT count(*) FROM satislar")).toInt(), 4 * sales);
        const QList<std::pair<QString, double>> sold{
            {shelf::bread, 3.0 * sales}, {shelf::milk, 3.0 * sales}, {shelf::tomatoes, 0.25 * sales}};
        for (const auto& [barcode, quantity] : sold) {
            const QVariant sum =
                shop.value(QStringLiteral("SELECT sum(adet) FROM satislar WHERE barkod = '%1'").arg(barcode));
            QCOMPARE(sum.toDouble(), quantity);
            QCOMPARE(shelf::startStock - shop.stock(barcode), quantity);
        }
    }
};

int main(int argc, char** argv) {
    return runTests<TwoTillsTest>(argc, argv);
}

#include "test_twotills.moc"
