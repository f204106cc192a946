#include <QLocale>
#include <QTest>

#include "rows.h"
#include "values/dates.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct DateRow {
    QDate date;
    QString text;
    QString longText;
};

struct TimeRow {
    QTime time;
    QString text;
};

struct Moment {
    QString from;
    QString to;  ///< empty where there is nothing
};

}  // namespace

Q_DECLARE_METATYPE(DateRow)
Q_DECLARE_METATYPE(TimeRow)
Q_DECLARE_METATYPE(Moment)

class TestDates : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writesDates_data();
    void writesDates();
    void writesTimes_data();
    void writesTimes();
    void everyMonthAndDay();
    void ignoresTheLocale();
    void showsMoments_data();
    void showsMoments();
    void storesMoments_data();
    void storesMoments();
};

void TestDates::writesDates_data() {
    addRows<DateRow>(
        {{"one-digit day and month", {QDate(2021, 5, 3), u"03.05.2021"_s, u"3 Mayıs 2021 Pazartesi"_s}},
         {"two-digit day and month", {QDate(2024, 12, 31), u"31.12.2024"_s, u"31 Aralık 2024 Salı"_s}},
         {"leap day", {QDate(2024, 2, 29), u"29.02.2024"_s, u"29 Şubat 2024 Perşembe"_s}},
         {"zero date of old files", {QDate(1899, 12, 30), u"30.12.1899"_s, u"30 Aralık 1899 Cumartesi"_s}},
         {"invalid", {QDate(2021, 2, 30), u""_s, u""_s}},
         {"none", {QDate(), u""_s, u""_s}}});
}

void TestDates::writesDates() {
    QFETCH(const DateRow, row);
    QCOMPARE(dateText(row.date), row.text);
    QCOMPARE(longDateText(row.date), row.longText);
}

void TestDates::writesTimes_data() {
    addRows<TimeRow>({{"midnight", {QTime(0, 0, 0), u"00:00:00"_s}},
                      {"morning", {QTime(7, 5, 9), u"07:05:09"_s}},
                      {"last second, milliseconds cut", {QTime(23, 59, 59, 999), u"23:59:59"_s}},
                      {"invalid", {QTime(24, 0, 0), u""_s}},
                      {"none", {QTime(), u""_s}}});
}

void TestDates::writesTimes() {
    QFETCH(const TimeRow, row);
    QCOMPARE(timeText(row.time), row.text);
}

void TestDates::everyMonthAndDay() {
    const QStringList months = {u"Ocak"_s,   u"Şubat"_s,   u"Mart"_s,  u"Nisan"_s, u"Mayıs"_s, u"Haziran"_s,
                                u"Temmuz"_s, u"Ağustos"_s, u"Eylül"_s, u"Ekim"_s,  u"Kasım"_s, u"Aralık"_s};
    for (int month = 1; month <= 12; ++month) {
        QCOMPARE(longDateText(QDate(2023, month, 1)).section(u' ', 1, 1), months[month - 1]);
        QCOMPARE(monthText(QDate(2023, month, 28)), months[month - 1] + u" 2023");
    }
    const QStringList days = {u"Pazartesi"_s, u"Salı"_s,      u"Çarşamba"_s, u"Perşembe"_s,
                              u"Cuma"_s,      u"Cumartesi"_s, u"Pazar"_s};
    for (int day = 0; day < 7; ++day)
        QCOMPARE(longDateText(QDate(2021, 5, 3 + day)).section(u' ', 3, 3), days[day]);
}

void TestDates::ignoresTheLocale() {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    const QString date = dateText(QDate(2021, 5, 3));
    const QString longDate = longDateText(QDate(2021, 5, 3));
    const QString time = timeText(QTime(7, 5, 9));
    QLocale::setDefault(before);
    QCOMPARE(date, u"03.05.2021"_s);
    QCOMPARE(longDate, u"3 Mayıs 2021 Pazartesi"_s);
    QCOMPARE(time, u"07:05:09"_s);
}

void TestDates::showsMoments_data() {
    QTest::addColumn<Moment>("row");
    QTest::newRow("morning") << Moment{u"2021-05-03 07:05:09"_s, u"03.05.2021 07:05:09"_s};
    QTest::newRow("midnight") << Moment{u"2024-02-29 00:00:00"_s, u"29.02.2024 00:00:00"_s};
    QTest::newRow("last second") << Moment{u"1899-12-30 23:59:59"_s, u"30.12.1899 23:59:59"_s};
    QTest::newRow("early year") << Moment{u"0100-01-01 00:00:00"_s, u"01.01.0100 00:00:00"_s};
    QTest::newRow("no such day") << Moment{u"2021-02-29 00:00:00"_s, {}};
    QTest::newRow("no such hour") << Moment{u"2021-05-03 24:00:00"_s, {}};
    QTest::newRow("no time") << Moment{u"2021-05-03"_s, {}};
    QTest::newRow("T between") << Moment{u"2021-05-03T07:05:09"_s, {}};
    QTest::newRow("letters for digits") << Moment{u"2021-05-xx 07:05:09"_s, {}};
    QTest::newRow("Arabic digits") << Moment{u"٢٠٢١-05-03 07:05:09"_s, {}};
    QTest::newRow("something behind") << Moment{u"2021-05-03 07:05:09.5"_s, {}};
    QTest::newRow("as shown already") << Moment{u"03.05.2021 07:05:09"_s, {}};
    QTest::newRow("empty") << Moment{u""_s, {}};
}

void TestDates::showsMoments() {
    QFETCH(const Moment, row);
    QCOMPARE(shownMoment(row.from).value_or(QString()), row.to);
}

void TestDates::storesMoments_data() {
    QTest::addColumn<Moment>("row");
    QTest::newRow("morning") << Moment{u"03.05.2021 07:05:09"_s, u"2021-05-03 07:05:09"_s};
    QTest::newRow("leap day") << Moment{u"29.02.2024 23:59:59"_s, u"2024-02-29 23:59:59"_s};
    QTest::newRow("no such day") << Moment{u"31.04.2021 00:00:00"_s, {}};
    QTest::newRow("no such minute") << Moment{u"03.05.2021 07:60:09"_s, {}};
    QTest::newRow("as stored already") << Moment{u"2021-05-03 07:05:09"_s, {}};
    QTest::newRow("one digit") << Moment{u"3.5.2021 07:05:09"_s, {}};
    QTest::newRow("empty") << Moment{u""_s, {}};
}

void TestDates::storesMoments() {
    QFETCH(const Moment, row);
    QCOMPARE(storedMoment(row.from).value_or(QString()), row.to);
}

QTEST_GUILESS_MAIN(TestDates)
#include "test_dates.moc"
