#include <QTest>

#include "rows.h"
#include "widgets/typedmoment.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int heldYear = 2026;

struct DateRow {
    QString typed;
    QDate day = {};  ///< invalid: refused
};

struct TimeRow {
    QString typed;
    QTime time = {};  ///< invalid: refused
};

}  // namespace

Q_DECLARE_METATYPE(DateRow)
Q_DECLARE_METATYPE(TimeRow)

class TypedMomentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void dates_data() {
        const QDate may(2026, 5, 1);
        addRows<DateRow>({{"as shown", {u"01.05.2026"_s, may}},
                          {"without zeros", {u"1.5.2026"_s, may}},
                          {"short year", {u"1.5.26"_s, may}},
                          {"short year, the last", {u"1.5.99"_s, {2099, 5, 1}}},
                          {"short year, the first", {u"1.5.00"_s, {2000, 5, 1}}},
                          {"without a year", {u"1.5"_s, may}},
                          {"without a year, dot behind", {u"1.5."_s, may}},
                          {"eight digits", {u"01052026"_s, may}},
                          {"six digits", {u"010526"_s, may}},
                          {"four digits", {u"0105"_s, may}},
                          {"commas, of a number pad", {u"1,5,2026"_s, may}},
                          {"slashes", {u"1/5/2026"_s, may}},
                          {"hyphens", {u"1-5-2026"_s, may}},
                          {"blanks", {u"1 5 2026"_s, may}},
                          {"blanks around", {u"  1 . 5 .2026 "_s, may}},
                          {"leap day", {u"29.02.2028"_s, {2028, 2, 29}}},
                          {"leap day of a full century", {u"29.2.2000"_s, {2000, 2, 29}}},
                          {"first year", {u"1.1.100"_s, {100, 1, 1}}},
                          {"first year with a zero", {u"01.01.0100"_s, {100, 1, 1}}},
                          {"last day", {u"31.12.9999"_s, {9999, 12, 31}}},
                          {"no leap day", {u"29.02.2026"_s}},
                          {"no leap day without a year", {u"29.2"_s}},
                          {"no leap day in 1900", {u"29.2.1900"_s}},
                          {"31st of April", {u"31.4.2026"_s}},
                          {"day 0", {u"0.5.2026"_s}},
                          {"month 13", {u"1.13.2026"_s}},
                          {"month 0", {u"1.0.2026"_s}},
                          {"year 99 in full", {u"1.1.0099"_s}},
                          {"year 10000", {u"1.1.10000"_s}},
                          {"one digit of a year", {u"1.5.6"_s}},
                          {"year first", {u"2026.5.1"_s}},
                          {"day of three digits", {u"001.5.2026"_s}},
                          {"four parts", {u"1.5.2026.1"_s}},
                          {"two dots", {u"1..5.2026"_s}},
                          {"dot ahead", {u".1.5.2026"_s}},
                          {"colons", {u"1:5:2026"_s}},
                          {"a day alone", {u"1"_s}},
                          {"two digits", {u"15"_s}},
                          {"three digits", {u"105"_s}},
                          {"five digits", {u"10526"_s}},
                          {"seven digits", {u"1052026"_s}},
                          {"very many digits", {u"9"_s.repeated(40)}},
                          {"a long part", {u"1.5."_s + u"9"_s.repeated(36)}},
                          {"a sign", {u"-1.5.2026"_s}},
                          {"letters", {u"1 Mayıs 2026"_s}},
                          {"digits of another script", {u"١.٥.٢٠٢٦"_s}},
                          {"nothing", {u""_s}},
                          {"a blank", {u" "_s}},
                          {"a dot", {u"."_s}}});
    }
    void dates() {
        QFETCH(const DateRow, row);
        QCOMPARE(typedDate(row.typed, heldYear).value_or(QDate()), row.day);
    }

    void times_data() {
        addRows<TimeRow>({{"as shown", {u"07:05:09"_s, {7, 5, 9}}},
                          {"hour alone", {u"7"_s, {7, 0}}},
                          {"hour of two digits", {u"23"_s, {23, 0}}},
                          {"hour and minute", {u"7:5"_s, {7, 5}}},
                          {"all without zeros", {u"7:5:9"_s, {7, 5, 9}}},
                          {"colon behind", {u"7:"_s, {7, 0}}},
                          {"dots", {u"7.30"_s, {7, 30}}},
                          {"commas, of a number pad", {u"7,30,15"_s, {7, 30, 15}}},
                          {"blanks", {u" 7 30 "_s, {7, 30}}},
                          {"three digits", {u"730"_s, {7, 30}}},
                          {"four digits", {u"0730"_s, {7, 30}}},
                          {"five digits", {u"73015"_s, {7, 30, 15}}},
                          {"six digits", {u"073015"_s, {7, 30, 15}}},
                          {"start of the day", {u"0"_s, {0, 0}}},
                          {"end of the day", {u"235959"_s, {23, 59, 59}}},
                          {"no hour", {u"75"_s}},
                          {"hour 24", {u"24:00:00"_s}},
                          {"nothing in range", {u"25:99:99"_s}},
                          {"minute 60", {u"7:60"_s}},
                          {"second 60", {u"7:0:60"_s}},
                          {"three digits out of range", {u"799"_s}},
                          {"minute of three digits", {u"7:005"_s}},
                          {"hour of three digits", {u"007:05"_s}},
                          {"four parts", {u"7:5:9:1"_s}},
                          {"two colons", {u"7::5"_s}},
                          {"colon ahead", {u":5"_s}},
                          {"seven digits", {u"0730150"_s}},
                          {"a sign", {u"-7"_s}},
                          {"letters", {u"7:5 pm"_s}},
                          {"slashes", {u"7/5"_s}},
                          {"nothing", {u""_s}}});
    }
    void times() {
        QFETCH(const TimeRow, row);
        QCOMPARE(typedTime(row.typed).value_or(QTime()), row.time);
    }

    void daysThatCanBeChosen() {
        QVERIFY(!canBeChosen({}));
        QVERIFY(!canBeChosen(QDate(99, 12, 31)));
        QVERIFY(canBeChosen(QDate(100, 1, 1)));
        QVERIFY(canBeChosen(QDate(9999, 12, 31)));
        QVERIFY(!canBeChosen(QDate(10000, 1, 1)));
        QVERIFY(!canBeChosen(QDate(-100, 1, 1)));
    }
};

QTEST_APPLESS_MAIN(TypedMomentTest)
#include "test_typedmoment.moc"
