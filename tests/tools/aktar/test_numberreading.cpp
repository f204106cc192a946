#include <QtTest>

#include "aktar/numberreading.h"
#include "rows.h"

namespace kovanix::aktar {

using namespace Qt::StringLiterals;

namespace {

struct ReadRow {
    QString text;
    std::optional<DecimalSign> sign;
    double value = 0;
    NumberFault fault = NumberFault::none;
};

struct VoteRow {
    QStringList texts;
    bool silent = false;
    std::optional<DecimalSign> sign;
};

constexpr auto comma = DecimalSign::comma;
constexpr auto dot = DecimalSign::dot;
constexpr auto noNumber = NumberFault::noNumber;
constexpr auto ambiguous = NumberFault::ambiguous;

}  // namespace

class NumberReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void reads_data() {
        addRows<ReadRow>({
            {"Turkish with groups", {u"1.234,50"_s, comma, 1234.5}},
            {"English with groups", {u"1,234.50"_s, comma, 1234.5}},
            {"Turkish where dots decide", {u"1.234,50"_s, dot, 1234.5}},
            {"in a split column, clear by itself", {u"1,234.50"_s, {}, 1234.5}},
            {"comma", {u"12,5"_s, dot, 12.5}},
            {"dot", {u"12.5"_s, comma, 12.5}},
            {"three digits behind the column's dot", {u"1.234"_s, dot, 1.234}},
            {"three digits behind a dot that groups", {u"1.234"_s, comma, 1234}},
            {"three digits behind the column's comma", {u"1,234"_s, comma, 1.234}},
            {"three digits behind a comma that groups", {u"1,234"_s, dot, 1234}},
            {"three digits in a split column", {u"1.234"_s, {}, 0, ambiguous}},
            {"nothing grouped ahead of it", {u"0,500"_s, dot, 0.5}},
            {"four digits ahead", {u"1234,500"_s, dot, 1234.5}},
            {"two groups", {u"1.234.567"_s, dot, 1234567}},
            {"two groups and decimals", {u"1.234.567,89"_s, dot, 1234567.89}},
            {"whole", {u"1250"_s, {}, 1250}},
            {"zero", {u"0"_s, comma, 0}},
            {"minus zero", {u"-0"_s, comma, 0}},
            {"negative", {u"-3,5"_s, comma, -3.5}},
            {"the sign of typesetters", {u"−3,5"_s, comma, -3.5}},
            {"plus", {u"+3,5"_s, comma, 3.5}},
            {"decimals only", {u",5"_s, comma, 0.5}},
            {"nothing behind the sign", {u"12,"_s, comma, 12}},
            {"TL behind", {u"12,50 TL"_s, comma, 12.5}},
            {"TL. behind", {u"12,50 TL."_s, comma, 12.5}},
            {"lira sign ahead", {u"₺12,50"_s, comma, 12.5}},
            {"minus ahead of the lira sign", {u"-₺12,50"_s, comma, -12.5}},
            {"blanks that can't be broken", {u"\u00a012,50\u00a0"_s, comma, 12.5}},
            {"blanks group", {u"1 234,50"_s, dot, 1234.5}},
            {"blanks group, with a dot", {u"1 234.5"_s, comma, 1234.5}},
            {"blanks group a whole number", {u"1 234 567"_s, {}, 1234567}},
            {"three digits behind a comma beside blanks", {u"1 234,567"_s, dot, 1234.567}},
            {"blanks that can't be broken group", {u"1\u00a0234\u00a0567,5"_s, comma, 1234567.5}},
            {"narrow ones", {u"1\u202f234,5"_s, comma, 1234.5}},
            {"thin ones, and a currency", {u"-1\u2009234,5 TL"_s, comma, -1234.5}},
            {"two kinds of blanks", {u"1 234\u00a0567"_s, comma, 0, noNumber}},
            {"blanks that part no thousands", {u"12 34"_s, comma, 0, noNumber}},
            {"a blank behind the decimal sign", {u"1,234 5"_s, comma, 0, noNumber}},
            {"blanks and dots that group", {u"1 234.567,8"_s, comma, 0, noNumber}},
            {"two decimal signs beside blanks", {u"1 234,5,6"_s, comma, 0, noNumber}},
            {"four digits ahead of a blank", {u"1234 567"_s, comma, 0, noNumber}},
            {"a line end groups nothing", {u"1\n234"_s, comma, 0, noNumber}},
            {"empty", {QString(), comma, 0, noNumber}},
            {"letters", {u"on iki"_s, comma, 0, noNumber}},
            {"letters behind", {u"12,5 kg"_s, comma, 0, noNumber}},
            {"only a sign", {u","_s, comma, 0, noNumber}},
            {"only a currency", {u"TL"_s, comma, 0, noNumber}},
            {"two decimal signs", {u"1,2,3"_s, comma, 0, noNumber}},
            {"groups of two", {u"12.34.56"_s, comma, 0, noNumber}},
            {"groups behind the decimals", {u"1,234.567,8"_s, comma, 0, noNumber}},
            {"four digits ahead of a group", {u"1234.567,8"_s, comma, 0, noNumber}},
            {"exponent", {u"1,5E+3"_s, comma, 0, noNumber}},
            {"formula", {u"=1+1"_s, comma, 0, noNumber}},
            {"digits of another script", {u"١٢"_s, comma, 0, noNumber}},
            {"beyond a double", {QString(400, u'9'), comma, 0, noNumber}},
        });
    }
    void reads() {
        QFETCH(const ReadRow, row);
        const NumberReading reading = readNumber(row.text, row.sign);
        QCOMPARE(reading.fault, row.fault);
        QCOMPARE(reading.value, row.value);
        QVERIFY(!std::signbit(reading.value) || reading.value != 0);
    }

    void votes_data() {
        addRows<VoteRow>({
            {"whole numbers", {{u"12"_s, u"1250"_s}, true, {}}},
            {"ambiguous ones", {{u"1.234"_s, u"12,500"_s}, true, {}}},
            {"one comma", {{u"1.234"_s, u"12,5"_s}, false, comma}},
            {"one dot", {{u"12"_s, u"12.5"_s}, false, dot}},
            {"dots in groups speak for the comma", {{u"1.234.567"_s}, false, comma}},
            {"commas in groups speak for the dot", {{u"1,234,567"_s}, false, dot}},
            {"a sign beside blanks", {{u"1 234,500"_s, u"1 234"_s}, false, comma}},
            {"both", {{u"1.234,50"_s, u"1,234.50"_s}, false, {}}},
            {"what is no number says nothing", {{u"a.b"_s, u"1,2,3"_s}, true, {}}},
        });
    }
    void votes() {
        QFETCH(const VoteRow, row);
        DecimalVote vote;
        for (const QString& text : row.texts)
            vote.add(text);
        QCOMPARE(vote.isSilent(), row.silent);
        QVERIFY(vote.sign() == row.sign);
        QCOMPARE(vote.isSplit(), !row.silent && !row.sign);
    }

    void spreadsheetNumbersLoseTheirTail() {
        QCOMPARE(readSpreadsheetNumber(u"12.499999999999998").value(), 12.5);
        QCOMPARE(readSpreadsheetNumber(u"1E-3").value(), 0.001);
        QVERIFY(!readSpreadsheetNumber(u"12,5"));
        QVERIFY(!readSpreadsheetNumber(u"1E999"));
    }
};

}  // namespace kovanix::aktar

Q_DECLARE_METATYPE(kovanix::aktar::ReadRow)
Q_DECLARE_METATYPE(kovanix::aktar::VoteRow)

QTEST_GUILESS_MAIN(kovanix::aktar::NumberReadingTest)
#include "test_numberreading.moc"
