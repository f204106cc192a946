#include <QTest>
#include <cmath>
#include <limits>

#include "rows.h"
#include "values/numbers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// For readers' rows: no number.
constexpr double none = notANumber;
}  // namespace

class TestNumbers : public QObject {
    Q_OBJECT

    struct FormatsRow {
        double value;
        QString pattern, text;
    };
    struct WritesPlainTextRow {
        double value;
        QString text;
    };
    struct KeepsGroupsRow {
        QString before, after, kept;  ///< "|" is the caret
    };
    struct ReadsRegionalRow {
        QString text;
        double value;
    };

private Q_SLOTS:
    void keepsGroups_data() {
        addRows<KeepsGroupsRow>({{"decimals", {"1.200,00", "1.200,0|", "1.200,0|"}},
                                 {"a group one short", {"1.200", "1.20|", "120|"}},
                                 {"a group one short, caret inside", {"1.200,00", "1.2|0,00", "12|0,00"}},
                                 {"a group one long", {"1.200,00", "1.25|00,00", "125|00,00"}},
                                 {"the first group one long", {"123.456,00", "1239|.456,00", "1239|456,00"}},
                                 {"the first of two groups", {"123.456.789", "1239|.456.789", "1239|456789"}},
                                 {"a group in the middle", {"1.234.567", "1.23|.567", "123|.567"}},
                                 {"the last of two groups", {"1.234.567,5", "1.234.56|,5", "123456|,5"}},
                                 {"a whole group", {"1.234.567", "1.|.567", "1|.567"}},
                                 {"all before a dot", {"1.234,50", "|.234,50", "|234,50"}},
                                 {"the dot itself", {"1.234,50", "1|234,50", "1|234,50"}},
                                 {"one dot of two", {"1.234.567", "1|234.567", "1|234567"}},
                                 {"the comma", {"1.234,50", "1.234|50", "1234|50"}},
                                 {"a comma before a dot", {"1.234.567", "1,|.234.567", "1,|234567"}},
                                 {"a second comma", {"1.234,50", "1.234,50,|", "1.234,50,|"}},
                                 {"a digit in front", {"1.234", "9|1.234", "9|1.234"}},
                                 {"behind a sign", {"-1.234", "-1.23|", "-123|"}},
                                 {"everything", {"1.234", "|", "|"}},
                                 {"letters behind", {"1.234", "1.234abc|", "1.234abc|"}},
                                 {"a dot that never grouped", {"12.5", "12.55|", "12.55|"}},
                                 {"a dot behind the comma", {"1,234.5", "1,234.|", "1,234.|"}},
                                 {"no dot before", {"1234", "12.34|", "12.34|"}}});
    }
    void keepsGroups() {
        QFETCH(const KeepsGroupsRow, row);
        qsizetype caret = row.after.indexOf(u'|');
        QString kept = keptGroups(row.before, QString(row.after).remove(u'|'), &caret);
        QCOMPARE(kept.insert(caret, u'|'), row.kept);
    }

    void formats_data() {
        const QString money = u"###,###,##0.00"_s;
        const QString plain = u"##0.00"_s;
        const QString shortMoney = u"#,##0.00"_s;
        addRows<FormatsRow>(
            {{"money, thousands", {1234.5, money, "1.234,50"}},
             {"money, zero", {0.0, money, "0,00"}},
             {"money, below one", {0.5, money, "0,50"}},
             {"money, hundreds are not grouped", {999.99, money, "999,99"}},
             {"money, exactly a thousand", {1000.0, money, "1.000,00"}},
             {"money, millions", {1234567.891, money, "1.234.567,89"}},
             {"money, more digits than the pattern", {1234567890123.0, money, "1.234.567.890.123,00"}},
             {"total, no groups", {1234.5, plain, "1234,50"}},
             {"total, millions without groups", {1234567.0, plain, "1234567,00"}},
             {"short, thousands", {1234.5, shortMoney, "1.234,50"}},
             {"short, tail of one blank", {12.0, "#,##0.00 ", "12,00 "}},
             {"cleared cash display, three digits", {0.0, "###,###,###0.00", "0,00"}},
             {"cleared cash display, thousands", {1234.5, "###,###,###0.00", "1.234,50"}},
             {"tail T.L.", {1234.5, "###,###,##0.00 T.L.", "1.234,50 T.L."}},
             {"tail TL.", {0.0, "0.00 TL.", "0,00 TL."}},
             {"tail TL. with groups", {98765.432, "#,##0.00 TL.", "98.765,43 TL."}},
             {"tail behind a negative", {-2.5, "0.00 TL.", "-2,50 TL."}},
             {"two digits, one given", {7.0, "00", "07"}},
             {"two digits, none given", {0.0, "00", "00"}},
             {"two digits, two given", {59.0, "00", "59"}},
             {"two digits, three given", {123.0, "00", "123"}},
             {"two digits, rounded", {6.5, "00", "07"}},
             {"grouped zeros", {5.0, "0,000", "0.005"}},
             {"no digit needed before the comma", {0.5, "#.00", ",50"}},
             {"decimals when needed, needed", {1.5, "0.##", "1,5"}},
             {"decimals when needed, not needed", {2.0, "0.##", "2"}},
             {"empty pattern", {2.5, "", "2,5"}},
             {"tail alone", {0.0, " T.L.", " T.L."}},
             {"half, 1.005", {1.005, plain, "1,01"}},
             {"half, 2.675", {2.675, plain, "2,68"}},
             {"half, 1.115", {1.115, plain, "1,12"}},
             {"half, 0.005", {0.005, plain, "0,01"}},
             {"half, 0.125 not to even", {0.125, plain, "0,13"}},
             {"half, 0.145", {0.145, plain, "0,15"}},
             {"half, negative away from zero", {-1.005, plain, "-1,01"}},
             {"half, negative 0.125", {-0.125, plain, "-0,13"}},
             {"half, only at the 16th digit", {0.1 + 0.2 - 0.295, plain, "0,01"}},
             {"just below half", {1.00499, plain, "1,00"}},
             {"0.0049 rounds to zero", {0.0049, plain, "0,00"}},
             {"0.0005 is far below", {0.0005, plain, "0,00"}},
             {"1E-300", {1e-300, plain, "0,00"}},
             {"carry through nines", {999.995, money, "1.000,00"}},
             {"carry to a new digit", {0.999, plain, "1,00"}},
             {"carry to a new group", {999999.995, money, "1.000.000,00"}},
             {"sum with binary dust", {0.1 + 0.2, plain, "0,30"}},
             {"difference with binary dust", {0.3 - 0.1 - 0.2, plain, "0,00"}},
             {"negative thousands", {-1234.5, money, "-1.234,50"}},
             {"negative hundreds", {-123.0, money, "-123,00"}},
             {"negative zero", {-0.0, plain, "0,00"}},
             {"negative that rounds to zero", {-0.004, plain, "0,00"}},
             {"1E+15", {1e15, plain, "1000000000000000,00"}},
             {"1E+20 without groups", {1e20, plain, "100000000000000000000,00"}},
             {"1E+20 with groups", {1e20, money, "100.000.000.000.000.000.000,00"}},
             {"15 digits, then zeros", {123456789012345678.0, plain, "123456789012346000,00"}},
             {"15 digits, none left for decimals", {99999999999999.99, plain, "100000000000000,00"}},
             {"13 digits and kuruş", {9999999999999.99, plain, "9999999999999,99"}},
             {"not a number", {notANumber, money, "0,00"}},
             {"infinity", {infinity, money, "0,00"}},
             {"negative infinity", {-infinity, "0.00 TL.", "0,00 TL."}}});
    }
    void formats() {
        QFETCH(const FormatsRow, row);
        QCOMPARE(format(row.value, row.pattern), row.text);
    }

    void writesPlainText_data() {
        addRows<WritesPlainTextRow>(
            {{"zero", {0.0, "0"}},
             {"negative zero", {-0.0, "0"}},
             {"whole", {5.0, "5"}},
             {"trailing zeros of the whole part stay", {1200.0, "1200"}},
             {"comma", {2.5, "2,5"}},
             {"no groups", {1234567.5, "1234567,5"}},
             {"negative", {-3.25, "-3,25"}},
             {"below one", {0.05, "0,05"}},
             {"binary dust is cut", {0.1 + 0.2, "0,3"}},
             {"15 digits", {1.0 / 3.0, "0,333333333333333"}},
             {"15 digits, two thirds", {200.0 / 3.0, "66,6666666666667"}},
             {"0.0001", {0.0001, "0,0001"}},
             {"0.000001", {0.000001, "0,000001"}},
             {"2E-07 still fits", {2e-7, "0,0000002"}},
             {"1E-15, the last that fits", {1e-15, "0,000000000000001"}},
             {"2E-16, the first that does not", {2e-16, "2E-16"}},
             {"1.5E-15 needs a 16th decimal", {1.5e-15, "1,5E-15"}},
             {"a fifteenth needs a 16th decimal", {1.0 / 15.0, "6,66666666666667E-02"}},
             {"999999999999999, the last that fits", {999999999999999.0, "999999999999999"}},
             {"999999999999999.9 rounds over", {999999999999999.9, "1E+15"}},
             {"1E+15", {1e15, "1E+15"}},
             {"1.5E+20", {1.5e20, "1,5E+20"}},
             {"negative 1.5E+20", {-1.5e20, "-1,5E+20"}},
             {"three digits of exponent", {1e100, "1E+100"}},
             {"three digits of negative exponent", {2.5e-123, "2,5E-123"}},
             {"largest double", {std::numeric_limits<double>::max(), "1,79769313486232E+308"}},
             {"smallest double", {std::numeric_limits<double>::denorm_min(), "4,94065645841247E-324"}},
             {"not a number", {notANumber, "0"}},
             {"infinity", {infinity, "0"}}});
    }
    void writesPlainText() {
        QFETCH(const WritesPlainTextRow, row);
        QCOMPARE(numberText(row.value), row.text);
    }

    void plainTextReadsBack_data() {
        QTest::addColumn<double>("value");
        for (const double value :
             {0.0, 1.0, -1.0, 2.5, 1234.0, 1234.567, 0.001, 0.123, 1e15, 1.5e20, 2e-16, -6.25e-30})
            QTest::addRow("%g", value) << value;
    }
    void plainTextReadsBack() {
        QFETCH(double, value);
        const auto read = toNumber(numberText(value));
        QVERIFY(read.has_value());
        QVERIFY(*read == value);
    }

    void readsRegional_data() {
        addRows<ReadsRegionalRow>(
            {{"whole", {"12", 12.0}},
             {"comma", {"12,5", 12.5}},
             {"comma and groups", {"1.234,56", 1234.56}},
             {"the other country's form", {"1,234.56", none}},
             {"dot not before three digits", {"12.5", none}},
             {"dot before three digits", {"1.234", 1234.0}},
             {"dot before four digits", {"1.2345", none}},
             {"two groups", {"1.234.567", 1234567.0}},
             {"a group of two", {"1.23.456", none}},
             {"four digits before a group", {"1234.567", none}},
             {"three digits before a group", {"123.456", 123456.0}},
             {"zero before a group", {"0.123", 123.0}},
             {"dot at the end", {"12.", none}},
             {"dot at the start", {".5", none}},
             {"dot before three digits alone", {".500", none}},
             {"two dots", {"1..234", none}},
             {"group and comma at the end", {"1.234,", 1234.0}},
             {"short group before the comma", {"1.23,4", none}},
             {"dot behind the comma", {"1,234.567", none}},
             {"two commas", {"1,2,3", none}},
             {"comma at the end", {"12,", 12.0}},
             {"comma at the start", {",5", 0.5}},
             {"comma alone", {",", none}},
             {"dot alone", {".", none}},
             {"empty", {"", none}},
             {"blank", {" ", none}},
             {"blanks around", {" 5 ", 5.0}},
             {"tab and line end around", {"\t5\r\n", 5.0}},
             {"blank within", {"1 2", none}},
             {"no-break space around", {u"5\u00A0"_s, none}},
             {"minus before", {"-5", -5.0}},
             {"plus before", {"+5", 5.0}},
             {"minus behind", {"5-", -5.0}},
             {"plus behind", {"5+", 5.0}},
             {"minus, blank, digits", {"- 5", -5.0}},
             {"digits, blank, minus", {"5 -", -5.0}},
             {"two signs before", {"+-5", none}},
             {"two signs behind", {"5--", none}},
             {"signs on both sides", {"-5-", none}},
             {"sign alone", {"-", none}},
             {"sign and comma alone", {"-,", none}},
             {"exponent", {"1e5", 100000.0}},
             {"capital exponent, negative", {"1,5E-3", 0.0015}},
             {"exponent with plus", {"1,5E+20", 1.5e20}},
             {"exponent behind groups", {"1.234,5e1", 12345.0}},
             {"exponent without digits", {"1e", none}},
             {"exponent with a sign alone", {"1e+", none}},
             {"exponent alone", {"e5", none}},
             {"exponent with a comma", {"1e2,5", none}},
             {"blank before the exponent", {"1 e5", none}},
             {"letter behind", {"12a", none}},
             {"hexadecimal, platform's form", {"&H10", none}},
             {"hexadecimal, C's form", {"0x10", none}},
             {"currency sign", {u"₺5"_s, none}},
             {"currency letters", {"5 TL", none}},
             {"full-width digits", {u"１２"_s, none}},
             {"Arabic digits", {u"١٢"_s, none}},
             {"the word for infinity", {"inf", none}},
             {"the word for no number", {"nan", none}},
             {"leading zeros", {"000123", 123.0}},
             {"barcode of 13 digits", {"8690000000017", 8690000000017.0}},
             {"zero", {"0", 0.0}},
             {"amount as displayed", {"1.234.567,89", 1234567.89}},
             {"exact digits", {"0,1", 0.1}},
             {"too large", {"1e999", none}},
             {"too large, digits before the comma", {QString(400, u'9'), none}},
             {"too small is zero", {"1e-999", 0.0}},
             {"too small by its digits", {QString(u',' + QString(400, u'0') + u'1'), 0.0}},
             {"exponent beyond an int", {"1e99999999999", none}},
             {"zero to a great power", {"0e99999999999", 0.0}},
             {"large exponent made up for", {QString(u',' + QString(400, u'0') + u"1e401"_s), 1.0}},
             {"a NUL behind", {QString(u"5"_s + QChar(u'\0')), none}}});
    }
    void readsRegional() {
        QFETCH(const ReadsRegionalRow, row);
        const auto read = toNumber(row.text);
        QCOMPARE(isNumeric(row.text), !std::isnan(row.value));
        QCOMPARE(read.has_value(), !std::isnan(row.value));
        if (read)
            QVERIFY2(*read == row.value, qPrintable(QString::number(*read, 'g', 17)));
    }

    void readsWithDot_data() {
        addRows<ReadsRegionalRow>({{"whole", {"12", 12.0}},
                                   {"dot", {"1234.56", 1234.56}},
                                   {"dot before three digits is no group", {"1.234", 1.234}},
                                   {"dot at the end", {"12.", 12.0}},
                                   {"dot at the start", {".5", 0.5}},
                                   {"two dots", {"1.234.567", none}},
                                   {"comma", {"12,5", none}},
                                   {"blanks around", {" 5.5 ", 5.5}},
                                   {"minus before", {"-5.5", -5.5}},
                                   {"minus behind", {"5.5-", -5.5}},
                                   {"exponent", {"1.5e-3", 0.0015}},
                                   {"letter behind", {"12a", none}},
                                   {"empty", {"", none}},
                                   {"dot alone", {".", none}},
                                   {"too large", {"-1e999", none}}});
    }
    void readsWithDot() {
        QFETCH(const ReadsRegionalRow, row);
        const auto read = toNumberWithDot(row.text);
        QCOMPARE(read.has_value(), !std::isnan(row.value));
        if (read)
            QVERIFY2(*read == row.value, qPrintable(QString::number(*read, 'g', 17)));
    }

    void readsPrefix_data() {
        addRows<ReadsRegionalRow>(
            {{"empty", {"", 0.0}},
             {"blank", {"  ", 0.0}},
             {"word", {"abc", 0.0}},
             {"whole", {"42", 42.0}},
             {"time", {"12:30", 12.0}},
             {"comma stops", {"7,5", 7.0}},
             {"dot goes on", {"7.5", 7.5}},
             {"second dot stops", {"7.5.6", 7.5}},
             {"dot first", {".25x", 0.25}},
             {"dot alone", {".", 0.0}},
             {"dot last", {"3.", 3.0}},
             {"leading blanks", {"  8", 8.0}},
             {"leading tab", {"\t8", 8.0}},
             {"blank stops", {"1 2", 1.0}},
             {"leading zeros", {"0123", 123.0}},
             {"minus", {"-3kg", -3.0}},
             {"plus", {"+3", 3.0}},
             {"two signs", {"--3", 0.0}},
             {"sign behind is no part", {"5-", 5.0}},
             {"exponent", {"1e3", 1000.0}},
             {"exponent without digits", {"2e", 2.0}},
             {"exponent with a sign alone", {"2e+x", 2.0}},
             {"letter e of a word", {"2ekmek", 2.0}},
             {"full-width digits", {u"１"_s, 0.0}},
             {"too large", {"1e999", std::numeric_limits<double>::max()}},
             {"too large and negative", {"-1e999", std::numeric_limits<double>::lowest()}},
             {"too small", {"1e-999", 0.0}}});
    }
    void readsPrefix() {
        QFETCH(const ReadsRegionalRow, row);
        const double read = numericPrefix(row.text);
        QVERIFY2(read == row.value, qPrintable(QString::number(read, 'g', 17)));
    }

    void minusZeroLosesItsSign() {
        QVERIFY(!std::signbit(toNumber(u"-0").value()));
        QVERIFY(!std::signbit(toNumber(u"0-").value()));
        QVERIFY(!std::signbit(toNumberWithDot(u"-0.0").value()));
        QVERIFY(!std::signbit(numericPrefix(u"-0")));
    }

    void everyKurusComesBack() {
        for (int kurus = 0; kurus <= 200000; ++kurus) {
            const QString expected =
                (kurus >= 100000 ? u"%1.%2"_s.arg(kurus / 100000).arg(kurus / 100 % 1000, 3, 10, QChar(u'0'))
                                 : QString::number(kurus / 100)) +
                u",%1"_s.arg(kurus % 100, 2, 10, QChar(u'0'));
            const double value = kurus / 100.0;
            const QString text = format(value, u"###,###,##0.00");
            if (text != expected)
                QCOMPARE(text, expected);
            if (toNumber(text) != value)
                QFAIL(qPrintable(text));
        }
    }
};

QTEST_GUILESS_MAIN(TestNumbers)
#include "test_numbers.moc"
