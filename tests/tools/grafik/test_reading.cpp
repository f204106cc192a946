#include <random>

#include "grafik/salesreading.h"
#include "rows.h"
#include "salesreporttest.h"

using namespace kovanix;

namespace {

struct OrderRow {
    bool inOrder;
};

struct DatabaseRow {
    QString password;
};

struct MomentRow {
    QString moment;
};

struct OddRow {
    QString total;  ///< as it stands in the statement
    QString profit;
};

}  // namespace

/// The figures of kovanix-grafik against those of the sales report, which is asked as a cashier asks it.
class ReadingTest : public SalesReportTest {
    Q_OBJECT

    SalesPicture read(const DayRange& range) const {
        Connection connection;
        connection.open(baglantimetnial());
        return readSales(connection, range, WorkProgress());
    }

    /// The turnover and the profit that the sales report shows for a range.
    QStringList reported(const QDate& first, const QDate& last, int hour = -1) const {
        const QString two = QString::number(hour).rightJustified(2, '0');
        report().saat1->setText(hour < 0 ? QString("00:00:00") : QString(two + ":00:00"));
        report().saat2->setText(hour < 0 ? QString("23:59:59") : QString(two + ":59:59"));
        setDays(first, last);
        return footers().mid(1);
    }
    static QStringList told(const Amounts& amounts) {
        return {moneyText(amounts.turnover) + " TL.", moneyText(amounts.profit) + " TL."};
    }
    static Amounts sumOf(const FigureTable& table) {
        Amounts sum;
        for (const FigureRow& row : table.rows)
            sum += row.amounts;
        return sum;
    }
    /// Whether every sum over a range that the report can be asked for is the report's.
    void compare(const DayRange& range) const {
        const SalesPicture picture = read(range);
        const QStringList whole = reported(range.first, range.last);
        QCOMPARE(told(picture.total), whole);
        for (const Division division : {Division::day, Division::hour, Division::product})
            QVERIFY(std::abs(sumOf(picture.table(division)).turnover.value() -
                             picture.total.turnover.value()) < 1e-6);
        for (const FigureRow& row : picture.days.rows)
            QCOMPARE(told(row.amounts), reported(row.span->from.date(), row.span->to.date()));
        for (const FigureRow& row : picture.hours.rows) {
            if (row.span)
                QCOMPARE(told(row.amounts), reported(range.first, range.first, row.span->from.time().hour()));
        }
    }

    /// Lines as a shop sells them, prices and weights that end in half a kuruş among them, and a few that no
    /// till stores.
    void sellAtRandom(int lines, unsigned seed) const {
        std::mt19937 random(seed);
        const auto below = [&random](int limit) {
            return static_cast<int>(random() % static_cast<unsigned>(limit));
        };
        const QDateTime begin(QDate(2026, 4, 20), QTime(7, 0), Qt::UTC);
        const QStringList odd{"'12,5'", "'1.234,56'", "'12a'", "NULL", "'7.25'"};
        QStringList values;
        const auto number = [](double value) { return QString::number(value, 'g', 17); };
        const auto textOrNull = [](bool text, const QString& value) {
            return text ? QString("'" + value + "'") : QString("NULL");
        };
        for (int i = 0; i < lines; ++i) {
            const int product = below(40);
            const double quantity = below(3) > 0 ? 1 + below(4) : below(2000) / 1000.0;
            const double price = below(20000) / 100.0 + (below(5) > 0 ? 0 : 0.005);
            const double profit = quantity * price * (below(100) / 100.0 - 0.2);
            const QString total = below(50) > 0 ? number(quantity * price) : odd[below(5)];
            const QString moment = begin.addSecs(below(86400 * 12)).toString("yyyy-MM-dd HH:mm:ss");
            const QString label = QString::number(product);
            values << QString("('%1', %2, %3, %4, %5, %6, %7)")
                          .arg(moment, textOrNull(product % 9 > 0, "86" + label),
                               textOrNull(product % 7 > 0, "Ürün " + label), number(quantity), number(price),
                               total, number(profit));
        }
        m_shop->run("INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, toplam, kar) VALUES " +
                    values.join(", "));
    }

private Q_SLOTS:
    void init() { openManagersShop(); }

    void sumsAreTheReports() {
        for (const unsigned seed : {1U, 2U, 3U}) {
            m_shop->run("DELETE FROM satislar");
            sellAtRandom(1500, seed);
            open();
            compare({{2026, 4, 20}, {2026, 5, 2}});
            compare({{2026, 4, 21}, {2026, 4, 30}});  // most of them: the others are passed over
            compare({{2026, 4, 24}, {2026, 4, 24}});
            compare({{2026, 1, 1}, {2026, 12, 31}});  // by month
            if (QTest::currentTestFailed())
                return;
            form().close();
        }
    }

    /// Many lines whose exact sum ends in half a kuruş: which side a plain addition falls on hangs on its
    /// order.
    void halvesFallOnTheReportsSide_data() {
        addRows<OrderRow>({{"as they were sold", {true}}, {"in another order", {false}}});
    }
    void halvesFallOnTheReportsSide() {
        QFETCH(const OrderRow, row);
        QStringList values;
        for (int day = 1; day <= 28; ++day) {
            for (int i = 0; i < 41 + day; ++i)
                values << QString("('2026-02-%1 %2:00:00', 1, %3, %4)")
                              .arg(day, 2, 10, QChar('0'))
                              .arg(row.inOrder ? i / 3 : (i * 7) % 24, 2, 10, QChar('0'))
                              .arg(i % 2 ? "33.335" : "0.1", i % 3 ? "-0.335" : "7.77");
        }
        m_shop->run("INSERT INTO satislar (tarih, adet, toplam, kar) VALUES " + values.join(", "));
        open();
        compare({{2026, 2, 1}, {2026, 2, 28}});
    }

    void oddNumbers_data() {
        addRows<OddRow>({{"text with a comma", {"'12,5'", "1"}},
                         {"text with groups", {"'1.234,56'", "1"}},
                         {"text with a dot", {"'12.5'", "'0.5'"}},
                         {"words", {"'on iki'", "'-'"}},
                         {"digits and letters", {"'12a'", "'-3b'"}},
                         {"blanks ahead", {"'  12'", "' -3'"}},
                         {"exponent", {"'1e3'", "'1e3x'"}},
                         {"nothing", {"NULL", "NULL"}},
                         {"empty", {"''", "''"}},
                         {"below zero", {"-10", "-3"}},
                         {"bytes", {"x'3132'", "1"}}});
    }
    void oddNumbers() {
        QFETCH(const OddRow, row);
        sell({.total = row.total, .profit = row.profit});
        open();
        compare({{2026, 5, 4}, {2026, 5, 4}});
    }

    void nothingSold() {
        open();
        compare({{2026, 5, 1}, {2026, 5, 4}});
        compare({{2026, 5, 4}, {2026, 5, 1}});  // the report's list is empty, too
        Connection connection;
        connection.open(baglantimetnial());
        QVERIFY(soldDays(connection).isEmpty());
        QVERIFY(readShop(anyDay(), WorkProgress()).days.rows.empty());
    }

    void allThatWasSold_data() {
        addRows<DatabaseRow>({{"plain file", {}}, {"file with a password", {"gizli;=x"}}});
    }
    void allThatWasSold() {
        QFETCH(const DatabaseRow, row);
        if (!row.password.isEmpty()) {
            m_shop.reset();
            m_shop = std::make_unique<SalesFixture>();
            m_shop->openShop(row.password);
        }
        sell({.moment = "2019-12-31 23:59:59"});
        sell({.moment = "2026-05-04 00:00:00"});
        sell({.moment = "2026-05-04 23:59:59"});
        m_shop->run("INSERT INTO satislar (tarih, toplam) VALUES (NULL, 5), (20260504, 5)");  // no report
                                                                                              // counts these
        const auto before = m_shop->tables();
        const QByteArray config = m_shop->config();
        const SalesPicture picture = readShop(anyDay(), WorkProgress());
        QCOMPARE(picture.range, (DayRange{{2019, 12, 31}, {2026, 5, 4}}));
        QCOMPARE(picture.total.lines, 3);
        QCOMPARE(m_shop->tables(), before);
        QCOMPARE(m_shop->config(), config);
    }

    void momentsThatAreNone_data() {
        addRows<MomentRow>({{"at the end", {"2026-11-31 10:00:00"}},
                            {"at the beginning", {"2019-00-01 10:00:00"}},
                            {"a spreadsheet's", {"20.11.2026 10:00"}},
                            {"in the middle", {"2026-05-00 10:00:00"}}});
    }
    void momentsThatAreNone() {
        QFETCH(const MomentRow, row);
        sell({.moment = "2026-05-04 00:00:00"});
        sell({.moment = row.moment});
        sell({.moment = "2026-04-30 23:59:59"});
        const SalesPicture picture = readShop(anyDay(), WorkProgress());
        QCOMPARE(picture.range, (DayRange{{2026, 4, 30}, {2026, 5, 4}}));
        QCOMPARE(ReadingTest::told(picture.total), reported({2026, 4, 30}, {2026, 5, 4}));
    }

    void linesAcrossChunks() {
        m_shop->run(
            "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 49999) INSERT INTO "
            "satislar (tarih, barkod, urun, adet, toplam, kar) SELECT datetime('2026-01-01', (i * 7919 % "
            "7776000) || ' seconds'), i % 300, 'x', 1, i % 100 / 8.0, i % 10 FROM n");
        open();
        QList<qint64> told;
        Connection connection;
        connection.open(baglantimetnial());
        const SalesPicture picture =
            readSales(connection, {{2026, 1, 1}, {2026, 3, 31}},
                      WorkProgress([&](const QString&, qint64 done, qint64) { told << done; }));
        QCOMPARE(picture.total.lines, 50000);
        QCOMPARE(ReadingTest::told(picture.total), reported({2026, 1, 1}, {2026, 3, 31}));
        QVERIFY(told.contains(20000));
    }

    void readingCanBeCancelled() {
        sell();
        const auto cancelled = std::make_shared<std::atomic<bool>>(true);
        const WorkProgress progress({}, cancelled);
        QVERIFY_THROWS_EXCEPTION(WorkProgress::Cancelled, readShop(anyDay(), progress));
    }
};

int main(int argc, char** argv) {
    return runTests<ReadingTest>(argc, argv);
}
#include "test_reading.moc"
