#include <QTest>
#include <cmath>
#include <limits>

#include "values/numbers.h"

using namespace kovanix;

namespace {
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// For readers' rows: no number.
constexpr double none = notANumber;
}  // namespace

class TestNumbers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void formats_data();
    void formats();
    void writesPlainText_data();
    void writesPlainText();
    void plainTextReadsBack_data();
    void plainTextReadsBack();
    void readsRegional_data();
    void readsRegional();
    void readsWithDot_data();
    void readsWithDot();
    void readsPrefix_data();
    void readsPrefix();
    void minusZeroLosesItsSign();
    void everyKurusComesBack();
};

void TestNumbers::formats_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("text");

    const QString money = QStringLiteral("###,###,##0.00");
    const QString plain = QStringLiteral("##0.00");
    const QString shortMoney = QStringLiteral("#,##0.00");
    QTest::newRow("money, thousands") << 1234.5 << money << "1.234,50";
    QTest::newRow("money, zero") << 0.0 << money << "0,00";
    QTest::newRow("money, below one") << 0.5 << money << "0,50";
    QTest::newRow("money, hundreds are not grouped") << 999.99 << money << "999,99";
    QTest::newRow("money, exactly a thousand") << 1000.0 << money << "1.000,00";
    QTest::newRow("money, millions") << 1234567.891 << money << "1.234.567,89";
    QTest::newRow("money, more digits than the pattern")
        << 1234567890123.0 << money << "1.234.567.890.123,00";
    QTest::newRow("total, no groups") << 1234.5 << plain << "1234,50";
    QTest::newRow("total, millions without groups") << 1234567.0 << plain << "1234567,00";
    QTest::newRow("short, thousands") << 1234.5 << shortMoney << "1.234,50";
    QTest::newRow("short, tail of one blank") << 12.0 << "#,##0.00 "
                                              << "12,00 ";
    QTest::newRow("cleared cash display, three digits") << 0.0 << "###,###,###0.00"
                                                        << "0,00";
    QTest::newRow("cleared cash display, thousands") << 1234.5 << "###,###,###0.00"
                                                     << "1.234,50";
    QTest::newRow("tail T.L.") << 1234.5 << "###,###,##0.00 T.L."
                               << "1.234,50 T.L.";
    QTest::newRow("tail TL.") << 0.0 << "0.00 TL."
                              << "0,00 TL.";
    QTest::newRow("tail TL. with groups") << 98765.432 << "#,##0.00 TL."
                                          << "98.765,43 TL.";
    QTest::newRow("tail behind a negative") << -2.5 << "0.00 TL."
                                            << "-2,50 TL.";
    QTest::newRow("two digits, one given") << 7.0 << "00"
                                           << "07";
    QTest::newRow("two digits, none given") << 0.0 << "00"
                                            << "00";
    QTest::newRow("two digits, two given") << 59.0 << "00"
                                           << "59";
    QTest::newRow("two digits, three given") << 123.0 << "00"
                                             << "123";
    QTest::newRow("two digits, rounded") << 6.5 << "00"
                                         << "07";
    QTest::newRow("grouped zeros") << 5.0 << "0,000"
                                   << "0.005";
    QTest::newRow("no digit needed before the comma") << 0.5 << "#.00"
                                                      << ",50";
    QTest::newRow("decimals when needed, needed") << 1.5 << "0.##"
                                                  << "1,5";
    QTest::newRow("decimals when needed, not needed") << 2.0 << "0.##"
                                                      << "2";
    QTest::newRow("empty pattern") << 2.5 << ""
                                   << "2,5";
    QTest::newRow("tail alone") << 0.0 << " T.L."
                                << " T.L.";

    QTest::newRow("half, 1.005") << 1.005 << plain << "1,01";
    QTest::newRow("half, 2.675") << 2.675 << plain << "2,68";
    QTest::newRow("half, 1.115") << 1.115 << plain << "1,12";
    QTest::newRow("half, 0.005") << 0.005 << plain << "0,01";
    QTest::newRow("half, 0.125 not to even") << 0.125 << plain << "0,13";
    QTest::newRow("half, 0.145") << 0.145 << plain << "0,15";
    QTest::newRow("half, negative away from zero") << -1.005 << plain << "-1,01";
    QTest::newRow("half, negative 0.125") << -0.125 << plain << "-0,13";
    QTest::newRow("half, only at the 16th digit") << 0.1 + 0.2 - 0.295 << plain << "0,01";
    QTest::newRow("just below half") << 1.00499 << plain << "1,00";
    QTest::newRow("0.0049 rounds to zero") << 0.0049 << plain << "0,00";
    QTest::newRow("0.0005 is far below") << 0.0005 << plain << "0,00";
    QTest::newRow("1E-300") << 1e-300 << plain << "0,00";
    QTest::newRow("carry through nines") << 999.995 << money << "1.000,00";
    QTest::newRow("carry to a new digit") << 0.999 << plain << "1,00";
    QTest::newRow("carry to a new group") << 999999.995 << money << "1.000.000,00";
    QTest::newRow("sum with binary dust") << 0.1 + 0.2 << plain << "0,30";
    QTest::newRow("difference with binary dust") << 0.3 - 0.1 - 0.2 << plain << "0,00";

    QTest::newRow("negative thousands") << -1234.5 << money << "-1.234,50";
    QTest::newRow("negative hundreds") << -123.0 << money << "-123,00";
    QTest::newRow("negative zero") << -0.0 << plain << "0,00";
    QTest::newRow("negative that rounds to zero") << -0.004 << plain << "0,00";

    QTest::newRow("1E+15") << 1e15 << plain << "1000000000000000,00";
    QTest::newRow("1E+20 without groups") << 1e20 << plain << "100000000000000000000,00";
    QTest::newRow("1E+20 with groups") << 1e20 << money << "100.000.000.000.000.000.000,00";
    QTest::newRow("15 digits, then zeros") << 123456789012345678.0 << plain << "123456789012346000,00";
    QTest::newRow("15 digits, none left for decimals") << 99999999999999.99 << plain << "100000000000000,00";
    QTest::newRow("13 digits and kuruş") << 9999999999999.99 << plain << "9999999999999,99";
    QTest::newRow("not a number") << notANumber << money << "0,00";
    QTest::newRow("infinity") << infinity << money << "0,00";
    QTest::newRow("negative infinity") << -infinity << "0.00 TL."
                                       << "0,00 TL.";
}

void TestNumbers::formats() {
    QFETCH(double, value);
    QFETCH(QString, pattern);
    QTEST(format(value, pattern), "text");
}

void TestNumbers::writesPlainText_data() {
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0.0 << "0";
    QTest::newRow("negative zero") << -0.0 << "0";
    QTest::newRow("whole") << 5.0 << "5";
    QTest::newRow("trailing zeros of the whole part stay") << 1200.0 << "1200";
    QTest::newRow("comma") << 2.5 << "2,5";
    QTest::newRow("no groups") << 1234567.5 << "1234567,5";
    QTest::newRow("negative") << -3.25 << "-3,25";
    QTest::newRow("below one") << 0.05 << "0,05";
    QTest::newRow("binary dust is cut") << 0.1 + 0.2 << "0,3";
    QTest::newRow("15 digits") << 1.0 / 3.0 << "0,333333333333333";
    QTest::newRow("15 digits, two thirds") << 200.0 / 3.0 << "66,6666666666667";
    QTest::newRow("0.0001") << 0.0001 << "0,0001";
    QTest::newRow("0.000001") << 0.000001 << "0,000001";
    QTest::newRow("2E-07 still fits") << 2e-7 << "0,0000002";
    QTest::newRow("1E-15, the last that fits") << 1e-15 << "0,000000000000001";
    QTest::newRow("2E-16, the first that does not") << 2e-16 << "2E-16";
    QTest::newRow("1.5E-15 needs a 16th decimal") << 1.5e-15 << "1,5E-15";
    QTest::newRow("a fifteenth needs a 16th decimal") << 1.0 / 15.0 << "6,66666666666667E-02";
    QTest::newRow("999999999999999, the last that fits") << 999999999999999.0 << "999999999999999";
    QTest::newRow("999999999999999.9 rounds over") << 999999999999999.9 << "1E+15";
    QTest::newRow("1E+15") << 1e15 << "1E+15";
    QTest::newRow("1.5E+20") << 1.5e20 << "1,5E+20";
    QTest::newRow("negative 1.5E+20") << -1.5e20 << "-1,5E+20";
    QTest::newRow("three digits of exponent") << 1e100 << "1E+100";
    QTest::newRow("three digits of negative exponent") << 2.5e-123 << "2,5E-123";
    QTest::newRow("largest double") << std::numeric_limits<double>::max() << "1,79769313486232E+308";
    QTest::newRow("smallest double") << std::numeric_limits<double>::denorm_min() << "4,94065645841247E-324";
    QTest::newRow("not a number") << notANumber << "0";
    QTest::newRow("infinity") << infinity << "0";
}

void TestNumbers::writesPlainText() {
    QFETCH(double, value);
    QTEST(numberText(value), "text");
}

void TestNumbers::plainTextReadsBack_data() {
    QTest::addColumn<double>("value");
    for (const double value :
         {0.0, 1.0, -1.0, 2.5, 1234.0, 1234.567, 0.001, 0.123, 1e15, 1.5e20, 2e-16, -6.25e-30})
        QTest::addRow("%g", value) << value;
}

void TestNumbers::plainTextReadsBack() {
    QFETCH(double, value);
    const auto read = toNumber(numberText(value));
    QVERIFY(read.has_value());
    QVERIFY(*read == value);
}

void TestNumbers::readsRegional_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("whole") << "12" << 12.0;
    QTest::newRow("comma") << "12,5" << 12.5;
    QTest::newRow("comma and groups") << "1.234,56" << 1234.56;
    QTest::newRow("the other country's form") << "1,234.56" << none;
    QTest::newRow("dot not before three digits") << "12.5" << none;
    QTest::newRow("dot before three digits") << "1.234" << 1234.0;
    QTest::newRow("dot before four digits") << "1.2345" << none;
    QTest::newRow("two groups") << "1.234.567" << 1234567.0;
    QTest::newRow("a group of two") << "1.23.456" << none;
    QTest::newRow("four digits before a group") << "1234.567" << none;
    QTest::newRow("three digits before a group") << "123.456" << 123456.0;
    QTest::newRow("zero before a group") << "0.123" << 123.0;
    QTest::newRow("dot at the end") << "12." << none;
    QTest::newRow("dot at the start") << ".5" << none;
    QTest::newRow("dot before three digits alone") << ".500" << none;
    QTest::newRow("two dots") << "1..234" << none;
    QTest::newRow("group and comma at the end") << "1.234," << 1234.0;
    QTest::newRow("short group before the comma") << "1.23,4" << none;
    QTest::newRow("dot behind the comma") << "1,234.567" << none;
    QTest::newRow("two commas") << "1,2,3" << none;
    QTest::newRow("comma at the end") << "12," << 12.0;
    QTest::newRow("comma at the start") << ",5" << 0.5;
    QTest::newRow("comma alone") << "," << none;
    QTest::newRow("dot alone") << "." << none;
    QTest::newRow("empty") << "" << none;
    QTest::newRow("blank") << " " << none;
    QTest::newRow("blanks around") << " 5 " << 5.0;
    QTest::newRow("tab and line end around") << "\t5\r\n" << 5.0;
    QTest::newRow("blank within") << "1 2" << none;
    QTest::newRow("no-break space around") << QStringLiteral("5\u00A0") << none;
    QTest::newRow("minus before") << "-5" << -5.0;
    QTest::newRow("plus before") << "+5" << 5.0;
    QTest::newRow("minus behind") << "5-" << -5.0;
    QTest::newRow("plus behind") << "5+" << 5.0;
    QTest::newRow("minus, blank, digits") << "- 5" << -5.0;
    QTest::newRow("digits, blank, minus") << "5 -" << -5.0;
    QTest::newRow("two signs before") << "+-5" << none;
    QTest::newRow("two signs behind") << "5--" << none;
    QTest::newRow("signs on both sides") << "-5-" << none;
    QTest::newRow("sign alone") << "-" << none;
    QTest::newRow("sign and comma alone") << "-," << none;
    QTest::newRow("exponent") << "1e5" << 100000.0;
    QTest::newRow("capital exponent, negative") << "1,5E-3" << 0.0015;
    QTest::newRow("exponent with plus") << "1,5E+20" << 1.5e20;
    QTest::newRow("exponent behind groups") << "1.234,5e1" << 12345.0;
    QTest::newRow("exponent without digits") << "1e" << none;
    QTest::newRow("exponent with a sign alone") << "1e+" << none;
    QTest::newRow("exponent alone") << "e5" << none;
    QTest::newRow("exponent with a comma") << "1e2,5" << none;
    QTest::newRow("blank before the exponent") << "1 e5" << none;
    QTest::newRow("letter behind") << "12a" << none;
    QTest::newRow("hexadecimal, platform's form") << "&H10" << none;
    QTest::newRow("hexadecimal, C's form") << "0x10" << none;
    QTest::newRow("currency sign") << QStringLiteral("₺5") << none;
    QTest::newRow("currency letters") << "5 TL" << none;
    QTest::newRow("full-width digits") << QStringLiteral("１２") << none;
    QTest::newRow("Arabic digits") << QStringLiteral("١٢") << none;
    QTest::newRow("the word for infinity") << "inf" << none;
    QTest::newRow("the word for no number") << "nan" << none;
    QTest::newRow("leading zeros") << "000123" << 123.0;
    QTest::newRow("barcode of 13 digits") << "8690000000017" << 8690000000017.0;
    QTest::newRow("zero") << "0" << 0.0;
    QTest::newRow("amount as displayed") << "1.234.567,89" << 1234567.89;
    QTest::newRow("exact digits") << "0,1" << 0.1;
    QTest::newRow("too large") << "1e999" << none;
    QTest::newRow("too large, digits before the comma") << QString(400, u'9') << none;
    QTest::newRow("too small is zero") << "1e-999" << 0.0;
    QTest::newRow("too small by its digits") << QString(u',' + QString(400, u'0') + u'1') << 0.0;
    QTest::newRow("exponent beyond an int") << "1e99999999999" << none;
    QTest::newRow("zero to a great power") << "0e99999999999" << 0.0;
    QTest::newRow("large exponent made up for")
        << QString(u',' + QString(400, u'0') + QStringLiteral("1e401")) << 1.0;
    QTest::newRow("a NUL behind") << QString(QStringLiteral("5") + QChar(u'\0')) << none;
}

void TestNumbers::readsRegional() {
    QFETCH(QString, text);
    QFETCH(double, value);
    const auto read = toNumber(text);
    QCOMPARE(isNumeric(text), !std::isnan(value));
    QCOMPARE(read.has_value(), !std::isnan(value));
    if (read)
        QVERIFY2(*read == value, qPrintable(QString::number(*read, 'g', 17)));
}

void TestNumbers::readsWithDot_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("whole") << "12" << 12.0;
    QTest::newRow("dot") << "1234.56" << 1234.56;
    QTest::newRow("dot before three digits is no group") << "1.234" << 1.234;
    QTest::newRow("dot at the end") << "12." << 12.0;
    QTest::newRow("dot at the start") << ".5" << 0.5;
    QTest::newRow("two dots") << "1.234.567" << none;
    QTest::newRow("comma") << "12,5" << none;
    QTest::newRow("blanks around") << " 5.5 " << 5.5;
    QTest::newRow("minus before") << "-5.5" << -5.5;
    QTest::newRow("minus behind") << "5.5-" << -5.5;
    QTest::newRow("exponent") << "1.5e-3" << 0.0015;
    QTest::newRow("letter behind") << "12a" << none;
    QTest::newRow("empty") << "" << none;
    QTest::newRow("dot alone") << "." << none;
    QTest::newRow("too large") << "-1e999" << none;
}

void TestNumbers::readsWithDot() {
    QFETCH(QString, text);
    QFETCH(double, value);
    const auto read = toNumberWithDot(text);
    QCOMPARE(read.has_value(), !std::isnan(value));
    if (read)
        QVERIFY2(*read == value, qPrintable(QString::number(*read, 'g', 17)));
}

void TestNumbers::readsPrefix_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("value");

    QTest::newRow("empty") << "" << 0.0;
    QTest::newRow("blank") << "  " << 0.0;
    QTest::newRow("word") << "abc" << 0.0;
    QTest::newRow("whole") << "42" << 42.0;
    QTest::newRow("time") << "12:30" << 12.0;
    QTest::newRow("comma stops") << "7,5" << 7.0;
    QTest::newRow("dot goes on") << "7.5" << 7.5;
    QTest::newRow("second dot stops") << "7.5.6" << 7.5;
    QTest::newRow("dot first") << ".25x" << 0.25;
    QTest::newRow("dot alone") << "." << 0.0;
    QTest::newRow("dot last") << "3." << 3.0;
    QTest::newRow("leading blanks") << "  8" << 8.0;
    QTest::newRow("leading tab") << "\t8" << 8.0;
    QTest::newRow("blank stops") << "1 2" << 1.0;
    QTest::newRow("leading zeros") << "0123" << 123.0;
    QTest::newRow("minus") << "-3kg" << -3.0;
    QTest::newRow("plus") << "+3" << 3.0;
    QTest::newRow("two signs") << "--3" << 0.0;
    QTest::newRow("sign behind is no part") << "5-" << 5.0;
    QTest::newRow("exponent") << "1e3" << 1000.0;
    QTest::newRow("exponent without digits") << "2e" << 2.0;
    QTest::newRow("exponent with a sign alone") << "2e+x" << 2.0;
    QTest::newRow("letter e of a word") << "2ekmek" << 2.0;
    QTest::newRow("full-width digits") << QStringLiteral("１") << 0.0;
    QTest::newRow("too large") << "1e999" << std::numeric_limits<double>::max();
    QTest::newRow("too large and negative") << "-1e999" << std::numeric_limits<double>::lowest();
    QTest::newRow("too small") << "1e-999" << 0.0;
}

void TestNumbers::readsPrefix() {
    QFETCH(QString, text);
    QFETCH(double, value);
    const double read = numericPrefix(text);
    QVERIFY2(read == value, qPrintable(QString::number(read, 'g', 17)));
}

void TestNumbers::minusZeroLosesItsSign() {
    QVERIFY(!std::signbit(toNumber(u"-0").value()));
    QVERIFY(!std::signbit(toNumber(u"0-").value()));
    QVERIFY(!std::signbit(toNumberWithDot(u"-0.0").value()));
    QVERIFY(!std::signbit(numericPrefix(u"-0")));
}

void TestNumbers::everyKurusComesBack() {
    for (int kurus = 0; kurus <= 200000; ++kurus) {
        const QString expected =
            (kurus >= 100000
                 ? QStringLiteral("%1.%2").arg(kurus / 100000).arg(kurus / 100 % 1000, 3, 10, QChar(u'0'))
                 : QString::number(kurus / 100)) +
            QStringLiteral(",%1").arg(kurus % 100, 2, 10, QChar(u'0'));
        const double value = kurus / 100.0;
        const QString text = format(value, u"###,###,##0.00");
        if (text != expected)
            QCOMPARE(text, expected);
        if (toNumber(text) != value)
            QFAIL(qPrintable(text));
    }
}

QTEST_GUILESS_MAIN(TestNumbers)
#include "test_numbers.moc"
