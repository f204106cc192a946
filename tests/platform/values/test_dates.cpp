#include <QLocale>
#include <QTest>

#include "rows.h"
#include "values/dates.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestDates : public QObject {
    Q_OBJECT

    struct WritesDatesRow {
        QDate date;
        QString text, longText;
    };
    struct WritesTimesRow {
        QTime time;
        QString text;
    };

private Q_SLOTS:
    void writesDates_data() {
        addRows<WritesDatesRow>(
            {{"one-digit day and month", {QDate(2021, 5, 3), "03.05.2021", "3 Mayıs 2021 Pazartesi"}},
             {"two-digit day and month", {QDate(2024, 12, 31), "31.12.2024", "31 Aralık 2024 Salı"}},
             {"leap day", {QDate(2024, 2, 29), "29.02.2024", "29 Şubat 2024 Perşembe"}},
             {"zero date of old files", {QDate(1899, 12, 30), "30.12.1899", "30 Aralık 1899 Cumartesi"}},
             {"invalid", {QDate(2021, 2, 30), "", ""}},
             {"none", {QDate(), "", ""}}});
    }
    void writesDates() {
        QFETCH(const WritesDatesRow, row);
        QCOMPARE(dateText(row.date), row.text);
        QCOMPARE(longDateText(row.date), row.longText);
    }

    void writesTimes_data() {
        addRows<WritesTimesRow>({{"midnight", {QTime(0, 0, 0), "00:00:00"}},
                                 {"morning", {QTime(7, 5, 9), "07:05:09"}},
                                 {"last second, milliseconds cut", {QTime(23, 59, 59, 999), "23:59:59"}},
                                 {"invalid", {QTime(24, 0, 0), ""}},
                                 {"none", {QTime(), ""}}});
    }
    void writesTimes() {
        QFETCH(const WritesTimesRow, row);
        QCOMPARE(timeText(row.time), row.text);
    }

    void everyMonthAndDay() {
        const QStringList months = {u"Ocak"_s,  u"Şubat"_s,   u"Mart"_s,   u"Nisan"_s,
                                    u"Mayıs"_s, u"Haziran"_s, u"Temmuz"_s, u"Ağustos"_s,
                                    u"Eylül"_s, u"Ekim"_s,    u"Kasım"_s,  u"Aralık"_s};
        for (int month = 1; month <= 12; ++month)
            QCOMPARE(longDateText(QDate(2023, month, 1)).section(u' ', 1, 1), months[month - 1]);
        const QStringList days = {u"Pazartesi"_s, u"Salı"_s,      u"Çarşamba"_s, u"Perşembe"_s,
                                  u"Cuma"_s,      u"Cumartesi"_s, u"Pazar"_s};
        for (int day = 0; day < 7; ++day)
            QCOMPARE(longDateText(QDate(2021, 5, 3 + day)).section(u' ', 3, 3), days[day]);
    }

    void ignoresTheLocale() {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
        const QString date = dateText(QDate(2021, 5, 3));
        const QString longDate = longDateText(QDate(2021, 5, 3));
        const QString time = timeText(QTime(7, 5, 9));
        QLocale::setDefault(before);
        QCOMPARE(date, QStringLiteral("03.05.2021"));
        QCOMPARE(longDate, QStringLiteral("3 Mayıs 2021 Pazartesi"));
        QCOMPARE(time, QStringLiteral("07:05:09"));
    }
};

QTEST_GUILESS_MAIN(TestDates)
#include "test_dates.moc"
