#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <cmath>
#include <optional>

#include "demoshop/barcode.h"
#include "demoshop/catalogue.h"
#include "demoshop/history.h"
#include "rows.h"
#include "values/codepage.h"

using namespace kovanix;
using namespace kovanix::demoshop;
using namespace Qt::StringLiterals;

class CatalogueTest : public QObject {
    Q_OBJECT

    struct CheckDigitsRow {
        QString digits;
        int digit;
    };
    struct BarcodesAreJudgedRow {
        QString text;
        bool valid;
    };
    struct QuickKeysRow {
        qsizetype count, keys;
    };
    struct DaysOfHistoryRow {
        qsizetype lines;
        int days;
    };
    struct HistoryRow {
        qsizetype products, lines;
    };

private Q_SLOTS:
    // The language's standard gives the 10000th number of the engine with its default seed.
    void engineIsTheStandardsOne() {
        Random random(5489);
        quint64 value = 0;
        for (int i = 0; i < 10000; ++i)
            value = random.below(~quint64{0});
        QCOMPARE(value, 9981545732273789042ULL);
    }

    void numbersBelowALimit_data() {
        QTest::addColumn<quint64>("limit");
        QTest::newRow("only zero") << quint64(1);
        QTest::newRow("coin") << quint64(2);
        QTest::newRow("no power of two") << quint64(7);
        QTest::newRow("nearly all there are") << ~quint64{0} - 1;
    }
    void numbersBelowALimit() {
        QFETCH(quint64, limit);
        Random random(3);
        QSet<quint64> seen;
        for (int i = 0; i < 500; ++i) {
            const quint64 value = random.below(limit);
            QVERIFY(value < limit);
            seen.insert(value);
        }
        QVERIFY(limit > 100 ? seen.size() > 490 : quint64(seen.size()) == limit);
    }

    void checkDigits_data() {
        addRows<CheckDigitsRow>({{"EAN-13 of a pen", {u"400638133393"_s, 1}},
                                 {"EAN-13 of a book", {u"978030640615"_s, 7}},
                                 {"EAN-13, second of the textbook", {u"590123412345"_s, 7}},
                                 {"EAN-13 of the country 869", {u"869000000000"_s, 5}},
                                 {"EAN-8", {u"9638507"_s, 4}},
                                 {"UPC-A", {u"03600029145"_s, 2}},
                                 {"sum ends in zero", {u"000000000000"_s, 0}},
                                 {"sum is ten", {u"31"_s, 4}},
                                 {"no digits", {u""_s, 0}}});
    }
    void checkDigits() {
        QFETCH(const CheckDigitsRow, row);
        QCOMPARE(checkDigit(row.digits), row.digit);
    }

    void barcodesAreJudged_data() {
        addRows<BarcodesAreJudgedRow>({{"right", {u"4006381333931"_s, true}},
                                       {"wrong check digit", {u"4006381333932"_s, false}},
                                       {"two digits changed places", {u"4006381339331"_s, false}},
                                       {"too short", {u"400638133393"_s, false}},
                                       {"too long", {u"40063813339310"_s, false}},
                                       {"letter", {u"40063813339A1"_s, false}},
                                       {"digits of another script", {QString(13, QChar(0x0660)), false}},
                                       {"blank in front", {u" 406381333931"_s, false}},
                                       {"empty", {u""_s, false}}});
    }
    void barcodesAreJudged() {
        QFETCH(const BarcodesAreJudgedRow, row);
        QCOMPARE(isEan13(row.text), row.valid);
    }

    void serialBecomesBarcode() {
        QCOMPARE(ean13(0), u"8690000000005"_s);
        QCOMPARE(ean13(999999999).left(12), u"869999999999"_s);
        QVERIFY(isEan13(ean13(123456789)));
    }

    void products_data() {
        QTest::addColumn<qsizetype>("count");
        QTest::newRow("none") << qsizetype(0);
        QTest::newRow("one") << qsizetype(1);
        QTest::newRow("the usual shop") << qsizetype(2000);
        QTest::newRow("every variety once") << Catalogue::varietyCount();
        QTest::newRow("names with numbers") << qsizetype(20000);
    }
    void products() {
        QFETCH(qsizetype, count);
        Random random(1);
        const Catalogue catalogue(count, random);
        QCOMPARE(catalogue.size(), count);
        const QRegularExpression shortCode(u"^00[0-9]{2}$"_s);
        QSet<QString> barcodes;
        QSet<QString> names;
        for (qsizetype number = 0; number < count; ++number) {
            const Product product = catalogue.at(number);
            const QByteArray name = product.name.toUtf8();
            QVERIFY2(product.weighed ? shortCode.match(product.barcode).hasMatch() : isEan13(product.barcode),
                     qPrintable(product.barcode));
            QVERIFY2(product.weighed || product.barcode.startsWith(u"869"_s), name.constData());
            QVERIFY2(product.name.size() <= 50 && product.name.size() >= 3, name.constData());
            QCOMPARE(product.name, product.name.simplified());
            QCOMPARE(fromWindows1254(toWindows1254(product.name)), product.name);
            QVERIFY2(product.purchase > 0 && product.purchase < product.sale, name.constData());
            QVERIFY2(product.sale < 20000, name.constData());
            QCOMPARE(product.stock, std::floor(product.stock));
            const int kurus = int(std::lround(product.sale * 100)) % 100;
            QVERIFY2(kurus == 0 || kurus == 50 || kurus == 90, name.constData());
            QVERIFY(catalogue.popularity(number) > 0);
            barcodes.insert(product.barcode);
            names.insert(product.name.toCaseFolded());
        }
        QCOMPARE(barcodes.size(), count);
        QCOMPARE(names.size(), count);
    }

    void weighedGoodsHaveShortCodes() {
        Random random(1);
        const Catalogue catalogue(2000, random);
        QStringList codes;
        for (qsizetype number = 0; number < catalogue.size(); ++number)
            if (catalogue.at(number).weighed)
                codes << catalogue.at(number).barcode;
        QCOMPARE(codes.size(), 40);
        QCOMPARE(codes.first(), u"0001"_s);
        QCOMPARE(codes.last(), u"0040"_s);
    }

    void longerCatalogueBeginsWithTheShorter() {
        Random one(7);
        Random other(7);
        const Catalogue shorter(300, one);
        const Catalogue longer(500, other);
        for (qsizetype number = 0; number < shorter.size(); ++number) {
            const Product expected = shorter.at(number);
            const Product product = longer.at(number);
            QCOMPARE(product.barcode, expected.barcode);
            QCOMPARE(product.name, expected.name);
            QCOMPARE(product.sale, expected.sale);
            QCOMPARE(product.purchase, expected.purchase);
            QCOMPARE(product.stock, expected.stock);
        }
    }

    void seedDecides() {
        Random one(1);
        Random other(2);
        const Catalogue first(200, one);
        const Catalogue second(200, other);
        int sameName = 0;
        int sameBarcode = 0;
        for (qsizetype number = 0; number < 200; ++number) {
            sameName += first.at(number).name == second.at(number).name ? 1 : 0;
            sameBarcode += first.at(number).barcode == second.at(number).barcode ? 1 : 0;
        }
        QVERIFY(sameName < 80);  // the staples stay
        QCOMPARE(sameBarcode, 40);
    }

    void quickKeys_data() {
        addRows<QuickKeysRow>({{"no products", {qsizetype(0), qsizetype(0)}},
                               {"bread only", {qsizetype(1), qsizetype(1)}},
                               {"half a page", {qsizetype(4), qsizetype(4)}},
                               {"all four pages", {qsizetype(2000), qsizetype(32)}}});
    }
    void quickKeys() {
        QFETCH(const QuickKeysRow, row);
        Random random(1);
        const Catalogue catalogue(row.count, random);
        QSet<QString> barcodes;
        for (qsizetype number = 0; number < row.count; ++number)
            barcodes.insert(catalogue.at(number).barcode);
        QSet<int> places;
        for (const QuickKey& key : catalogue.quickKeys()) {
            QVERIFY(key.page >= 1 && key.page <= 4);
            QVERIFY(key.slot >= 0 && key.slot <= 7);
            QVERIFY(!key.caption.isEmpty());
            QVERIFY(barcodes.contains(key.barcode));
            places.insert(key.page * 10 + key.slot);
        }
        QCOMPARE(qsizetype(places.size()), row.keys);
        QCOMPARE(qsizetype(catalogue.quickKeys().size()), row.keys);
    }

    void daysOfHistory_data() {
        addRows<DaysOfHistoryRow>({{"none", {qsizetype(0), 1}},
                                   {"one line", {qsizetype(1), 1}},
                                   {"two days", {qsizetype(240), 2}},
                                   {"a year", {qsizetype(43800), 365}},
                                   {"a year at most", {qsizetype(1000000), 365}}});
    }
    void daysOfHistory() {
        QFETCH(const DaysOfHistoryRow, row);
        QCOMPARE(historyDays(row.lines), row.days);
    }

    void history_data() {
        addRows<HistoryRow>({{"nothing sold", {qsizetype(10), qsizetype(0)}},
                             {"one line", {qsizetype(2000), qsizetype(1)}},
                             {"one product", {qsizetype(1), qsizetype(500)}},
                             {"a month", {qsizetype(2000), qsizetype(3600)}},
                             {"a busy year", {qsizetype(100), qsizetype(60000)}}});
    }
    void history() {
        QFETCH(const HistoryRow, row);
        const QDate today(2024, 3, 1);  // a leap year's February lies behind it
        Random random(1);
        const Catalogue catalogue(row.products, random);
        qsizetype told = 0;
        std::optional<SoldLine> before;
        tellHistory(catalogue, today, row.lines, random, [&](const SoldLine& line) {
            ++told;
            QVERIFY(line.date <= today);
            QVERIFY(line.date > today.addDays(-historyDays(row.lines)));
            QVERIFY(line.time >= QTime(8, 0) && line.time < QTime(line.date == today ? 10 : 22, 0));
            QVERIFY(line.product >= 0 && line.product < row.products);
            const Product product = catalogue.at(line.product);
            QVERIFY(line.quantity > 0 && line.quantity <= 5);
            if (!product.weighed)
                QCOMPARE(line.quantity, std::floor(line.quantity));
            QVERIFY2(line.purchase > 0 && line.purchase < line.price, qPrintable(product.name));
            QVERIFY(line.price <= product.sale + 0.25);
            if (before)
                QVERIFY(before->date < line.date || (before->date == line.date && before->time <= line.time));
            before = line;
        });
        QCOMPARE(told, row.lines);
        if (row.lines > 0)
            QCOMPARE(before->date, today);
    }

    void historyOfAnEmptyShop() {
        Random random(1);
        const Catalogue catalogue(0, random);
        int told = 0;
        tellHistory(catalogue, QDate(2026, 1, 1), 100, random, [&told](const SoldLine&) { ++told; });
        QCOMPARE(told, 0);
    }

    void weekendsAreFuller() {
        Random random(1);
        const Catalogue catalogue(100, random);
        int saturdays = 0;
        int mondays = 0;
        tellHistory(catalogue, QDate(2026, 6, 30), 43800, random, [&](const SoldLine& line) {
            saturdays += line.date.dayOfWeek() == 6 ? 1 : 0;
            mondays += line.date.dayOfWeek() == 1 ? 1 : 0;
        });
        QVERIFY(saturdays > mondays * 1.2);
    }
};

QTEST_GUILESS_MAIN(CatalogueTest)
#include "test_catalogue.moc"
