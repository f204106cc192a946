#include <QtTest>
#include <cmath>
#include <random>

#include "grafik/figuretable.h"
#include "grafik/salesfigures.h"
#include "rows.h"
#include "values/numbers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct PresetRow {
    Preset preset;
    DayRange range;
};

struct StepRow {
    DayRange range;
    QString heading;
    std::size_t count;
    QString firstLabel;
    QString firstName;
    QString lastLabel;
};

struct DayRow {
    const char* moment;
    QDate day;  ///< invalid where the moment tells none
    int hour;   ///< -1 where it tells none
};

struct ProductRow {
    const char* barcode;
    const char* name;
    QString shownName;
    QString shownBarcode;
};

struct CsvRow {
    QString name;
    QString barcode;
    QString line;
};

struct CertainRow {
    double value;
    int times;
    bool certain;
};

SoldLine line(const char* moment, double turnover = 10, double profit = 3) {
    return {moment, "869", "Ekmek", 1.0, turnover, profit};
}

DayRange november{{2026, 11, 1}, {2026, 11, 30}};

FigureTable tableOf(const QString& name, const QString& barcode) {
    FigureTable table{Division::product, u"Ürün"_s, {}};
    FigureRow row;
    row.name = name;
    row.barcode = barcode;
    row.amounts.quantity.add(1.5);
    row.amounts.turnover.add(1234.5);
    row.amounts.profit.add(-2);
    table.rows.push_back(row);
    return table;
}

}  // namespace

Q_DECLARE_METATYPE(kovanix::DayRange)

class FiguresTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // --- sums

    void sumsLoseNothing() {
        Sum sum;
        sum.add(1e15);
        for (int i = 0; i < 1000; ++i)
            sum.add(0.01);
        sum.add(-1e15);
        QCOMPARE(sum.value(), 10.0);
        Sum whole;
        whole.add(1e15);
        Sum part;
        part.add(-1e15);
        for (int i = 0; i < 1000; ++i)
            part.add(0.01);
        whole += part;
        QCOMPARE(whole.value(), 10.0);
    }

    void certainty_data() {
        addRows<CertainRow>({{"nothing", {1, 0, true}},
                             {"whole kuruş", {10.75, 1001, true}},
                             {"half a kuruş", {33.335, 1001, false}},
                             {"half a kuruş below zero", {-33.335, 1001, false}},
                             {"half a kuruş of a few", {0.005, 3, true}},  // 15 digits tell it
                             {"near half a kuruş", {33.334, 1001, true}}});
    }
    void certainty() {
        QFETCH(const CertainRow, row);
        Sum sum;
        for (int i = 0; i < row.times; ++i)
            sum.add(row.value);
        QCOMPARE(sum.isCertain(false), row.certain);
    }

    void anyOrderIsWithinTheDoubt() {
        std::mt19937 random(7);
        std::vector<double> values(2000);
        for (double& value : values)
            value = static_cast<double>(random() % 1'000'000) * 0.00125 - 300;
        for (int round = 0; round < 50; ++round) {
            std::ranges::shuffle(values, random);
            Sum sum;
            double plain = 0;
            for (const double value : values) {
                sum.add(value);
                plain += value;
            }
            sum.settle(plain);
            QCOMPARE(sum.value(), plain);
        }
    }

    /// Where the order is known, the plain sum is, too.
    void inOrderOnlyHalvesAreUncertain() {
        Sum many;
        Sum halves;
        double plain = 0;
        for (int i = 0; i < 300'000; ++i)
            many.add(333.33);
        for (int i = 0; i < 1001; ++i) {
            halves.add(i % 2 ? 33.335 : 0.1);
            plain += i % 2 ? 33.335 : 0.1;
        }
        QVERIFY(!many.isCertain(false));
        QVERIFY(many.isCertain(true));
        QCOMPARE(halves.isCertain(true), roundedToCents(plain) == roundedToCents(halves.value()));
        Sum joined = many;
        joined += Sum();
        QVERIFY(joined.isCertain(true));
        joined += halves;
        QVERIFY(!joined.isCertain(true));
    }

    void orderIsSeen() {
        SalesFigures figures;
        for (const char* moment : {"2026-11-05 10:00:00", "2026-11-05 10:00:00", "2026-11-06 09:00:00"})
            figures.add(line(moment));
        QVERIFY(figures.isInOrder());
        figures.add(line("2026-11-06 08:59:59"));
        figures.add(line("2026-11-07 09:00:00"));
        QVERIFY(!figures.isInOrder());
    }

    void whatIsAddedToASettledSumCounts() {
        Sum settled;
        settled.add(2);
        settled.settle(2);
        Sum sum;
        sum += settled;
        sum += settled;
        settled += sum;
        QCOMPARE(sum.value(), 4.0);
        settled.settle(6);
        settled.add(1);
        QCOMPARE(settled.value(), 7.0);
    }

    void sumsOfOtherRowsDontSettle() {
        Sum sum;
        for (int i = 0; i < 1001; ++i)
            sum.add(33.335);
        sum.settle(33468.335);
        QCOMPARE(moneyText(sum), u"33.368,34"_s);
        QVERIFY(!sum.isCertain(false));
    }

    // --- what a line counts in

    void moments_data() {
        addRows<DayRow>({{"first second", {"2026-11-05 00:00:00", {2026, 11, 5}, 0}},
                         {"last second", {"2026-11-05 23:59:59", {2026, 11, 5}, 23}},
                         {"leap day", {"2024-02-29 12:00:00", {2024, 2, 29}, 12}},
                         {"no leap day", {"2026-02-29 12:00:00", {}, 12}},
                         {"day alone", {"2026-11-05", {2026, 11, 5}, -1}},
                         {"hour that is none", {"2026-11-05 24:00:00", {2026, 11, 5}, -1}},
                         {"cut", {"2026-11", {}, -1}},
                         {"empty", {"", {}, -1}},
                         {"another form", {"05.11.2026 10:00:00", {}, 10}}});
    }
    void moments() {
        QFETCH(const DayRow, row);
        SalesFigures figures;
        figures.add(line(row.moment));
        QCOMPARE(figures.total().lines, 1);
        QCOMPARE(figures.days().size(), row.day.isValid() ? 1 : 0);
        if (row.day.isValid())
            QCOMPARE(figures.days().begin()->first, row.day);
        QCOMPARE(figures.withoutDay().lines, row.day.isValid() ? 0 : 1);
        QCOMPARE(figures.withoutHour().lines, row.hour < 0 ? 1 : 0);
        if (row.hour >= 0)
            QCOMPARE(figures.byHour()[static_cast<std::size_t>(row.hour)].lines, 1);
    }

    void missingNumbersAddNothing() {
        SalesFigures figures;
        figures.add({"2026-11-05 10:00:00", "869", "Ekmek", {}, {}, {}});
        QCOMPARE(figures.total().turnover.value(), 0.0);
        QCOMPARE(figures.total().lines, 1);
    }

    void products_data() {
        addRows<ProductRow>({{"both", {"869", "Ekmek", u"Ekmek"_s, u"869"_s}},
                             {"blanks around", {" 869 ", "\tEkmek  200 g ", u"Ekmek 200 g"_s, u"869"_s}},
                             {"no name", {"869", "", u"869"_s, u"869"_s}},
                             {"no barcode", {"", "Ekmek", u"Ekmek"_s, {}}},
                             {"neither", {"", " ", u"Adsız ürün"_s, {}}}});
    }
    void products() {
        QFETCH(const ProductRow, row);
        SalesFigures figures;
        figures.add({"2026-11-05 10:00:00", row.barcode, row.name, 1.0, 10.0, 3.0});
        const FigureTable table = byProduct(figures);
        QCOMPARE(table.rows.size(), 1U);
        QCOMPARE(table.rows[0].name, row.shownName);
        QCOMPARE(table.rows[0].barcode, row.shownBarcode);
    }

    void aProductIsItsBarcode() {
        SalesFigures figures;
        figures.add({"2026-11-05 10:00:00", "1", "Ekmek", 1.0, 10.0, 3.0});
        figures.add({"2026-11-05 10:00:00", "2", "Ekmek", 1.0, 20.0, 3.0});
        figures.add({"2026-11-05 10:00:00", "1", "Ekmek 250 g", 1.0, 11.0, 3.0});
        figures.add({"2026-11-05 10:00:00", "1", "", 1.0, 12.0, 3.0});
        figures.add({"2026-11-05 10:00:00", "", "1", 1.0, 5.0, 3.0});  // a name, no barcode
        const FigureTable table = byProduct(figures);
        QCOMPARE(table.rows.size(), 3U);
        QCOMPARE(table.rows[0].name, u"Ekmek 250 g"_s);  // the last one
        QCOMPARE(moneyText(table.rows[0].amounts.turnover), u"33,00"_s);
        QCOMPARE(table.rows[1].barcode, u"2"_s);
        QCOMPARE(moneyText(table.rows[2].amounts.turnover), u"5,00"_s);
    }

    // --- tables

    void presets_data() {
        const QDate today(2026, 3, 1);
        addRows<PresetRow>({{"today", {Preset::today, {today, today}}},
                            {"yesterday", {Preset::yesterday, {{2026, 2, 28}, {2026, 2, 28}}}},
                            {"8 days", {Preset::eightDays, {{2026, 2, 22}, today}}},
                            {"31 days", {Preset::thirtyOneDays, {{2026, 1, 30}, today}}},
                            {"month", {Preset::thisMonth, {{2026, 3, 1}, today}}},
                            {"year", {Preset::thisYear, {{2026, 1, 1}, today}}}});
    }
    void presets() {
        QFETCH(const PresetRow, row);
        QCOMPARE(presetRange(row.preset, QDate(2026, 3, 1)), row.range);
    }

    void steps_data() {
        const auto from = [](QDate first, QDate last) { return DayRange{first, last}; };
        addRows<StepRow>(
            {{"one day",
              {from({2026, 11, 22}, {2026, 11, 22}), u"Gün"_s, 1, u"22.11"_s, u"22.11.2026 Pazar"_s,
               u"22.11"_s}},
             {"most days",
              {from({2026, 10, 1}, {2026, 12, 1}), u"Gün"_s, 62, u"01.10"_s, u"01.10.2026 Perşembe"_s,
               u"01.12"_s}},
             {"a day more",
              {from({2026, 10, 1}, {2026, 12, 2}), u"Ay"_s, 3, u"Eki ’26"_s, u"Ekim 2026"_s, u"Ara ’26"_s}},
             {"most months",
              {from({2021, 11, 30}, {2026, 12, 1}), u"Ay"_s, 62, u"Kas ’21"_s, u"Kasım 2021"_s,
               u"Ara ’26"_s}},
             {"a month more",
              {from({2021, 10, 31}, {2026, 12, 1}), u"Yıl"_s, 6, u"2021"_s, u"2021"_s, u"2026"_s}},
             {"a clock in 1970",
              {from({1970, 1, 1}, {2026, 12, 1}), u"Yıl"_s, 57, u"1970"_s, u"1970"_s, u"2026"_s}},
             {"decades",
              {from({1950, 1, 1}, {2026, 12, 1}), u"Yıllar"_s, 8, u"1950"_s, u"1950 – 1959"_s, u"2020"_s}},
             {"all days there are",
              {from({100, 1, 1}, {9999, 12, 31}), u"Yıllar"_s, 10, u"1"_s, u"1 – 999"_s, u"9000"_s}},
             {"backwards", {from({2026, 11, 2}, {2026, 11, 1}), u"Gün"_s, 0, {}, {}, {}}},
             {"no days", {{}, u"Gün"_s, 0, {}, {}, {}}}});
    }
    void steps() {
        QFETCH(const StepRow, row);
        const FigureTable table = byDay({}, row.range);
        QCOMPARE(table.heading, row.heading);
        QCOMPARE(table.rows.size(), row.count);
        if (row.count == 0)
            return;
        QCOMPARE(table.rows.front().label, row.firstLabel);
        QCOMPARE(table.rows.front().name, row.firstName);
        QCOMPARE(table.rows.back().label, row.lastLabel);
        // One behind the other, and no more than the range.
        QCOMPARE(table.rows.front().span->from.date(), row.range.first);
        QCOMPARE(table.rows.back().span->to.date(), row.range.last);
        for (std::size_t i = 1; i < table.rows.size(); ++i)
            QCOMPARE(table.rows[i].span->from.date(), table.rows[i - 1].span->to.date().addDays(1));
    }

    void daysWithoutSalesAreZero() {
        SalesFigures figures;
        figures.add(line("2026-11-03 10:00:00", 10, -4));
        figures.add(line("2026-11-05 10:00:00", 20, 5));
        const FigureTable table = byDay(figures, {{2026, 11, 3}, {2026, 11, 5}});
        QStringList shown;
        for (const FigureRow& row : table.rows)
            shown << row.label + u' ' + moneyText(row.amounts.turnover) + u' ' +
                         moneyText(row.amounts.profit);
        QCOMPARE(shown, (QStringList{u"03.11 10,00 -4,00"_s, u"04.11 0,00 0,00"_s, u"05.11 20,00 5,00"_s}));
    }

    /// Under the first of its days that is in the range, line by line: a month is as certain as a day then.
    void daysAreAddedUpInTheirGroup() {
        const DayRange range{{2026, 1, 15}, {2026, 12, 31}};
        SalesFigures figures(dayGroups(range));
        for (const char* moment : {"2026-01-16 10:00:00", "2026-01-31 23:59:59", "2026-02-01 00:00:00"})
            figures.add(line(moment, 33.335));
        QCOMPARE(figures.days().size(), 2U);
        QCOMPARE(figures.days().begin()->first, QDate(2026, 1, 15));
        const FigureTable table = byDay(figures, range);
        QCOMPARE(table.rows[0].amounts.lines, 2);
        QCOMPARE(table.rows[1].amounts.lines, 1);
        QVERIFY(table.rows[0].amounts.isCertain(true));
    }

    void linesWithoutADayAreTold() {
        SalesFigures figures;
        figures.add(line("2026-11-31 10:00:00"));
        figures.add(line("2026-11-05"));
        QCOMPARE(byDay(figures, november).rows.back().name, u"Günü okunamayan"_s);
        const FigureTable hours = byHour(figures, november);
        QCOMPARE(hours.rows.size(), 25U);
        QCOMPARE(hours.rows.back().name, u"Saati okunamayan"_s);
        QCOMPARE(hours.rows.back().amounts.lines, 1);
    }

    void allHoursAreShown() {
        const FigureTable none = byHour({}, {});
        QCOMPARE(none.rows.size(), 24U);
        QCOMPARE(none.rows[9].label, u"09"_s);
        QCOMPARE(none.rows[9].name, u"09:00 – 09:59"_s);
        QVERIFY(!none.rows[9].span);
        QVERIFY(!byHour({}, november).rows[9].span);
        const FigureTable oneDay = byHour({}, {november.first, november.first});
        QCOMPARE(oneDay.rows[23].span->to.time(), QTime(23, 59, 59));
    }

    void theRestIsTogether() {
        SalesFigures figures;
        for (int i = 0; i < 1500; ++i) {
            const std::string barcode = std::to_string(i);
            figures.add({"2026-11-05 10:00:00", barcode, "x", 1.0, 1.0 + i % 7, 1.0});
        }
        const FigureTable all = byProduct(figures);
        QVERIFY(std::ranges::is_sorted(all.rows, std::ranges::greater(),
                                       [](const FigureRow& row) { return row.amounts.turnover.value(); }));
        const FigureTable best = withRest(all, 12);
        QCOMPARE(best.rows.size(), 13U);
        QCOMPARE(best.rows.back().name, u"Diğer ürünler (1.488)"_s);
        Amounts sum;
        for (const FigureRow& row : best.rows)
            sum += row.amounts;
        QCOMPARE(moneyText(sum.turnover), moneyText(figures.total().turnover));
        QCOMPARE(withRest(all, 1500).rows.size(), 1500U);
    }

    // --- texts

    void csv_data() {
        addRows<CsvRow>(
            {{"plain",
              {u"Ekmek"_s, u"8690000000011"_s, u"Ekmek;\"=\"\"8690000000011\"\"\";1,5;1234,50;-2,00"_s}},
             {"separator", {u"a;b"_s, {}, u"\"a;b\";;1,5;1234,50;-2,00"_s}},
             {"quote", {u"15\" tepsi"_s, {}, u"\"15\"\" tepsi\";;1,5;1234,50;-2,00"_s}},
             {"formula", {u"=1+1"_s, {}, u"'=1+1;;1,5;1234,50;-2,00"_s}},
             {"formula as barcode", {u"x"_s, u"@SUM(1)"_s, u"x;'@SUM(1);1,5;1234,50;-2,00"_s}}});
    }
    void csv() {
        QFETCH(const CsvRow, row);
        const FigureTable table = tableOf(row.name, row.barcode);
        const QStringList lines = csvText(table, table.rows[0].amounts).split(u"\r\n"_s);
        QCOMPARE(lines,
                 (QStringList{
                     u"Ürün;Barkod;Miktar;Tutar;Kazanç"_s, row.line, u"Toplam;;1,5;1234,50;-2,00"_s, {}}));
    }

    void clipboard() {
        const FigureTable table = tableOf(u"a\tb"_s, u"8690000000011"_s);
        QCOMPARE(plainText(table, table.rows[0].amounts).split(u"\r\n"_s).at(1),
                 u"a b\t8690000000011\t1,5\t1.234,50\t-2,00"_s);
    }
};

QTEST_GUILESS_MAIN(FiguresTest)
#include "test_figures.moc"
