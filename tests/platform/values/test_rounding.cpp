#include <QRandomGenerator>
#include <QTest>
#include <cmath>
#include <limits>

#include "rows.h"
#include "values/numbers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// How a sum that stands in a text is rounded: written with two decimals and read again.
double textWay(double value) {
    return toNumber(format(value, u"#,##0.00 ")).value_or(0);
}

bool same(double first, double second) {
    return first == second && std::signbit(first) == std::signbit(second);
}

}  // namespace

/// The rounding of sums that are rounded at each step, against the texts that it stands for.
class TestRounding : public QObject {
    Q_OBJECT

    struct Row {
        double value, rounded;
    };

private Q_SLOTS:
    void rounds_data() {
        constexpr double infinity = std::numeric_limits<double>::infinity();
        addRows<Row>({{"zero", {0, 0}},
                      {"negative zero", {-0.0, 0}},
                      {"two decimals", {12.34, 12.34}},
                      {"half a cent, exact in binary", {0.125, 0.13}},
                      {"half a cent, below in binary", {1.005, 1.01}},
                      {"half a cent, above in binary", {2.675, 2.68}},
                      {"half a cent, negative", {-1.005, -1.01}},
                      {"less than half a cent", {1.0049, 1}},
                      {"rounds to zero", {-0.004, 0}},
                      {"just below half a cent", {0.00499999999999999, 0}},
                      {"half a cent at 15 digits", {0.00499999999999999999, 0.01}},
                      {"beyond 15 digits", {1.00499999999999999, 1.01}},
                      {"carries over", {999999.995, 1000000}},
                      {"a milliard and half a cent", {1234567890.125, 1234567890.13}},
                      {"15 digits with one decimal", {12345678901234.56, 12345678901234.6}},
                      {"whole beyond 15 digits", {1e20, 1e20}},
                      {"the largest", {1.7e308, 1.7e308}},
                      {"the smallest", {5e-324, 0}},
                      {"infinite", {infinity, 0}},
                      {"no number", {std::nan(""), 0}}});
    }
    void rounds() {
        QFETCH(const Row, row);
        QVERIFY2(same(roundedToCents(row.value), row.rounded),
                 qPrintable(QString::number(roundedToCents(row.value), 'g', 17)));
        QVERIFY(same(roundedToCents(row.value), textWay(row.value)));
    }

    void equalsTheTextWayOfAnyNumber() {
        QRandomGenerator random(1);
        const auto check = [](double value) {
            if (!same(roundedToCents(value), textWay(value)))
                QFAIL(qPrintable(QString::number(value, 'g', 17)));
        };
        for (int i = 0; i < 100000; ++i) {
            const double any = (random.generateDouble() - 0.5) * std::pow(10, random.bounded(18));
            check(any);
            // Halves of a cent, and their neighbours on both sides.
            const double half = std::floor(any) + random.bounded(100) / 100.0 + 0.005;
            check(half);
            check(std::nextafter(half, 1e300));
            check(std::nextafter(half, -1e300));
            check(half * (1 + 4e-15));
        }
    }

    void addsLikeTheTextWay_data() {
        QTest::addColumn<double>("most");
        QTest::newRow("kurus") << 1.0;
        QTest::newRow("sales") << 1000.0;
        QTest::newRow("sums beyond a milliard") << 1e7;
        QTest::newRow("sums beyond 15 digits") << 1e12;
    }
    void addsLikeTheTextWay() {
        QFETCH(const double, most);
        QRandomGenerator random(2);
        double total = 0;
        double asText = 0;
        for (int i = 0; i < 20000; ++i) {
            // Weighed goods, halves of a cent, returned goods among them.
            double row = std::floor(random.generateDouble() * most * 1000) / 1000;
            if (i % 3 == 0)
                row = std::floor(row * 100) / 100 + 0.005;
            if (i % 7 == 0)
                row = -row * 3;
            total = roundedToCents(total + row);
            asText = textWay(asText + row);
            if (!same(total, asText))
                QFAIL(qPrintable(u"row %1: %2, %3"_s.arg(i).arg(total, 0, 'g', 17).arg(asText, 0, 'g', 17)));
        }
    }
};

QTEST_GUILESS_MAIN(TestRounding)
#include "test_rounding.moc"
