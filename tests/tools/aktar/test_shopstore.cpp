#include <QtTest>

#include "aktar/failure.h"
#include "aktar/importer.h"
#include "aktar/shopstore.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "runtests.h"
#include "shopfixture.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class ShopStoreTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_shop.emplace();
        m_shop->openShop();
        m_shop->addProduct(u"100"_s, u"SÜT"_s, 10, 12.5, 5);
        m_shop->addProduct(u"200"_s, u"UN"_s, 1, 2, 7);
        m_connection.emplace(50ms);
        m_connection->open(baglantimetnial());
        m_before = m_shop->tables();
    }
    void cleanup() {
        m_connection.reset();
        m_shop.reset();
    }

    void writesWhatIsPlanned() {
        apply(planOf({{u"100"_s, u"SÜT"_s, u"13"_s}, {u"300"_s, u"TUZ"_s, u"4,5"_s}}));
        QCOMPARE(m_shop->rows(u"SELECT barkod, urun, alis, satis, stok FROM urunler ORDER BY no"_s),
                 (QList<QVariantList>{{u"100"_s, u"SÜT"_s, 10.0, 13.0, 5.0},
                                      {u"200"_s, u"UN"_s, 1.0, 2.0, 7.0},
                                      {u"300"_s, u"TUZ"_s, 0.0, 4.5, 0.0}}));
    }

    void unchangedRowsAreNotWritten() {
        const ImportPlan plan = planOf({{u"100"_s, u"SÜT"_s, u"12,5"_s}, {u"200"_s, u"UN"_s, u"2"_s}});
        QCOMPARE(plan.unchanged, 2);
        const auto lock = m_shop->lockFile();  // nothing to write needs no turn
        apply(plan);
    }

    /// A sale between the look and the writing keeps what it took off the stock.
    void whatOthersStoreMeanwhileStays() {
        const ImportPlan plan = planOf({{u"100"_s, u"SÜT"_s, u"13"_s}});
        m_shop->run(u"UPDATE urunler SET stok = 4 WHERE barkod = '100'"_s);
        apply(plan);
        QCOMPARE(m_shop->rows(u"SELECT satis, stok FROM urunler WHERE barkod = '100'"_s),
                 (QList<QVariantList>{{13.0, 4.0}}));
    }

    void aShopThatHasChangedIsLeftAlone_data() {
        QTest::addColumn<QString>("statement");
        QTest::newRow("a row was deleted") << u"DELETE FROM urunler WHERE barkod = '200'"_s;
        QTest::newRow("a row has another key") << u"UPDATE urunler SET barkod = '201' WHERE barkod = '200'"_s;
        QTest::newRow("a row was added") << u"INSERT INTO urunler (barkod, urun) VALUES ('300', 'TUZ')"_s;
    }
    void aShopThatHasChangedIsLeftAlone() {
        QFETCH(const QString, statement);
        const ImportPlan plan = planOf(
            {{u"100"_s, u"SÜT"_s, u"13"_s}, {u"200"_s, u"UN"_s, u"3"_s}, {u"300"_s, u"TUZ"_s, u"4"_s}});
        QCOMPARE(plan.changed.size() + plan.added.size(), 3U);
        m_shop->run(statement);
        m_before = m_shop->tables();
        QVERIFY_THROWS_EXCEPTION(Refused, apply(plan));
        QCOMPARE(m_shop->tables(), m_before);
    }

    void othersNeedNotWait() {
        const ImportPlan plan = manyNewRows();
        QVERIFY_THROWS_EXCEPTION(Refused, applyPlan(*m_connection, plan, {}, {0ms, 0ms, 2}));
        QCOMPARE(m_shop->tables(), m_before);
        apply(plan);
        QCOMPARE(m_shop->rows(u"SELECT COUNT(*) FROM urunler"_s), (QList<QVariantList>{{2002}}));
    }

    /// A moment in which the machine is busy costs the import a further attempt.
    void whatTakesTooLongIsTriedAgain() {
        const ImportPlan plan = manyNewRows();
        const auto half = static_cast<qint64>(plan.added.size());
        int attempts = 0;
        const auto beBusyOnce = [&](qint64 done, qint64) {
            if (done == half && ++attempts == 1)
                QTest::qSleep(400);
        };
        applyPlan(*m_connection, plan, beBusyOnce, {300ms, 0ms, 50});
        QVERIFY(attempts >= 2);
        QCOMPARE(m_shop->rows(u"SELECT COUNT(*) FROM urunler"_s), (QList<QVariantList>{{2002}}));
    }

    void aFailureWithinTakesAllBack() {
        const ImportPlan plan = manyNewRows();
        const auto half = static_cast<qint64>(plan.added.size());
        const auto cancel = [&](qint64 done, qint64) {
            if (done > half)
                throw std::runtime_error("cancelled");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, applyPlan(*m_connection, plan, cancel));
        QCOMPARE(m_shop->tables(), m_before);
    }

    void aLockedShopIsTold() {
        const ImportPlan plan = planOf({{u"100"_s, u"SÜT"_s, u"13"_s}});
        const auto lock = m_shop->lockFile();
        QVERIFY_THROWS_EXCEPTION(RuntimeError, apply(plan));
    }

    void aShopWithoutTablesIsAnEmptyOne() {
        for (const QString& table : {u"urunler"_s, u"musteri"_s})
            m_shop->run(u"DROP TABLE "_s + table);
        const ImportPlan plan = planOf({{u"100"_s, u"SÜT"_s, u"13"_s}});
        QCOMPARE(plan.added.size(), 1U);
        semahazir = false;
        apply(plan);
        QCOMPARE(m_shop->rows(u"SELECT barkod FROM urunler"_s), (QList<QVariantList>{{u"100"_s}}));
    }

private:
    ImportPlan planOf(const QList<QStringList>& rows) {
        CellTable table;
        for (const QString& heading : {u"Barkod"_s, u"Ürün adı"_s, u"Fiyat"_s})
            table.addCell(heading);
        table.endRow(1);
        for (qsizetype row = 0; row < rows.size(); ++row) {
            for (const QString& cell : rows[row])
                table.addCell(cell);
            table.endRow(row + 2);
        }
        return planImport(*m_connection, table, Kind::products, mapByHeadings(table, Kind::products, false));
    }
    ImportPlan manyNewRows() {
        QList<QStringList> rows;
        for (int row = 0; row < 2000; ++row)
            rows.append({QString::number(1000 + row), u"X"_s, u"1"_s});
        return planOf(rows);
    }
    void apply(const ImportPlan& plan) { applyPlan(*m_connection, plan); }

    std::optional<ShopFixture> m_shop;
    std::optional<Connection> m_connection;
    QMap<QString, QList<QVariantList>> m_before;
};

}  // namespace kovanix::aktar

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::aktar::ShopStoreTest>(argc, argv);
}
#include "test_shopstore.moc"
