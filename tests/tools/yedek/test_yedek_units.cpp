#include <QDir>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>
#include <functional>
#include <random>

#include "rows.h"
#include "yedek/copies.h"
#include "yedek/failure.h"
#include "yedek/manifest.h"
#include "yedek/places.h"
#include "yedek/retention.h"
#include "yedek/tablesums.h"
#include "yedek/tar.h"
#include "yedek/words.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

struct RetentionRow {
    QStringList moments;  ///< "yyyy-MM-dd" or with "Thh:mm"
    QStringList goes;
    QString now = u"2026-11-22T20:00"_s;
};

struct SumRow {
    QList<double> numbers;
    QList<qint64> whole;
    QString text;
};

struct MomentRow {
    QString moment;
    QString words;
    CopyAge age;
};

struct ManifestRow {
    QByteArray what;
    QByteArray instead;
};

struct NameRow {
    QString name;
    bool tells;  ///< of a copy
    bool fits;   ///< to the one that the test has
};

struct DetailRow {
    QStringList said;
    QString words;
};

struct SizeRow {
    qint64 bytes;
    QString words;
};

namespace {

QDateTime at(const QString& text) {
    return QDateTime::fromString(text.contains(u'T') ? text : text + u"T12:00", u"yyyy-MM-ddTHH:mm"_s);
}

QStringList days(const QString& first, int count) {
    QStringList all;
    for (int i = 0; i < count; ++i)
        all << QDate::fromString(first, Qt::ISODate).addDays(i).toString(Qt::ISODate);
    return all;
}

/// Of the last spans of time that have a moment the newest one each. @param format  tells a span from others;
/// empty: a week
QSet<QDateTime> newestOf(QList<QDateTime> moments, const QString& format, int count) {
    std::ranges::sort(moments, std::greater());
    QMap<QString, QDateTime> found;
    for (const QDateTime& moment : std::as_const(moments)) {
        int year = 0;
        const int week = moment.date().weekNumber(&year);
        const QString span = format.isEmpty() ? u"%1 %2"_s.arg(year).arg(week) : moment.toString(format);
        if (!found.contains(span))
            found.insert(span, moment);
        if (found.size() == count)
            break;
    }
    return {found.begin(), found.end()};
}

Manifest sample() {
    return {.moment = at(u"2026-11-22T13:05"_s),
            .version = u"1.2.3"_s,
            .shop = u"abc"_s,
            .hasPassword = true,
            .parts = {{dataName, 9'007'199'254'740'993, "aa"}, {configName, 5, "bb"}},
            .tables = {{u"ürünler"_s, 3, {{u"stok"_s, u"-1.5"_s}}}, {u"boş"_s, 0, {}}}};
}

}  // namespace

class YedekUnitsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void copiesThatMayGo_data() {
        // The days from 2026-11-09 (a Monday) on; of 14 days, 7 days and two weeks' newest stay.
        addRows<RetentionRow>({
            {"none", {{}, {}}},
            {"one old one", {{u"2020-01-01"_s}, {}}},
            {"two of a day",
             {{u"2026-11-22T08:00"_s, u"2026-11-22T13:00"_s, u"2026-11-21"_s}, {u"2026-11-22T08:00"_s}}},
            {"seven days", {days(u"2026-11-16"_s, 7), {}}},
            {"eight days in two weeks", {days(u"2026-11-15"_s, 8), {}}},
            {"nine days in two weeks", {days(u"2026-11-14"_s, 9), {u"2026-11-14"_s}}},
            {"days without a copy don't count",
             {{u"2026-01-01"_s, u"2026-02-01"_s, u"2026-03-01"_s, u"2026-04-01"_s}, {}}},
            {"a fifth week of a month",
             {days(u"2026-10-05"_s, 1) + days(u"2026-10-12"_s, 1) + days(u"2026-10-19"_s, 1) +
                  days(u"2026-10-26"_s, 1) + days(u"2026-11-02"_s, 1) + days(u"2026-11-16"_s, 7),
              {u"2026-10-05"_s, u"2026-10-12"_s}}},
            {"a thirteenth month",
             {[] {
                  QStringList all = days(u"2026-11-16"_s, 7);
                  for (int month = 1; month <= 13; ++month)
                      all << QDate(2026, 11, 5).addMonths(-month).toString(Qt::ISODate);
                  return all;
              }(),
              {u"2025-10-05"_s, u"2025-11-05"_s}}},
            {"a clock that was ahead",
             {{u"2031-01-01"_s, u"2030-01-01"_s, u"2026-11-22T08:00"_s, u"2026-11-22T13:00"_s},
              {u"2026-11-22T08:00"_s}}},
            {"a clock that was set back", {{u"2026-11-22"_s, u"2026-11-21"_s}, {}, u"2001-01-01T00:00"_s}},
        });
    }
    void copiesThatMayGo() {
        QFETCH(const RetentionRow, row);
        QList<QDateTime> moments;
        for (const QString& moment : row.moments)
            moments << at(moment);
        QList<QDateTime> expected;
        for (const QString& moment : row.goes)
            expected << at(moment);
        QCOMPARE(surplusCopies(moments, at(row.now)), expected);
        std::ranges::reverse(moments);
        QCOMPARE(surplusCopies(moments, at(row.now)), expected);
    }

    /// One copy or two on most days, a fortnight of holidays, three days of a clock that is 40 days behind.
    void twoYearsOfCopies() {
        std::mt19937 random(2026);
        QList<QDateTime> taken;
        QList<QDateTime> kept;
        const QDateTime first = at(u"2024-09-30T13:00"_s);
        const auto isClosed = [&random](int day) { return random() % 7 == 0 || (day >= 200 && day < 214); };
        for (int day = 0; day < 2 * 366; ++day) {
            const int copies = isClosed(day) ? 0 : 1 + static_cast<int>(random() % 2);
            const bool isBehind = day >= 400 && day < 403;
            for (int copy = 0; copy < copies; ++copy) {
                const QDateTime now = first.addDays(isBehind ? day - 40 : day).addSecs(copy * 6 * 60 * 60);
                const QList<QDateTime> before = kept;
                taken << now;
                kept << now;
                for (const QDateTime& gone : surplusCopies(kept, now))
                    kept.removeOne(gone);
                QVERIFY(kept.contains(now));
                for (const QDateTime& moment : before)
                    QVERIFY(moment <= now || kept.contains(moment));
                if (isBehind || day % 3 != 0)
                    continue;
                QSet<QDateTime> due = newestOf(taken, u"yyyy-MM-dd"_s, 7);
                due += newestOf(taken, {}, 4);
                due += newestOf(taken, u"yyyy-MM"_s, 12);
                QCOMPARE(QSet(kept.begin(), kept.end()), due);
            }
        }
        QVERIFY(kept.size() > 7 + 10 && kept.size() <= 7 + 4 + 12);
    }

    void theNewestStaysWhateverIsKept() {
        const QList<QDateTime> moments{at(u"2020-01-01"_s), at(u"2020-01-02"_s), at(u"2030-01-01"_s)};
        QCOMPARE(surplusCopies(moments, at(u"2026-11-22"_s), {.days = 0, .weeks = 0, .months = 0}),
                 QList<QDateTime>{at(u"2020-01-01"_s)});
    }

    void sumsAreExact_data() {
        addRows<SumRow>({
            {"tenths", {{0.1, 0.2, 0.3}, {}, u"0.6"_s}},
            {"nothing lost beside much", {{1e15, 0.000001, -1e15}, {}, u"0.000001"_s}},
            {"negative", {{-12.5, 0.25}, {}, u"-12.25"_s}},
            {"small and negative", {{-0.05}, {}, u"-0.05"_s}},
            {"whole and broken", {{0.5}, {1, 2}, u"3.5"_s}},
            {"largest whole numbers",
             {{},
              {std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::max()},
              u"18446744073709551614"_s}},
            {"zero", {{0.0}, {}, u"0"_s}},
            {"a hundred", {{}, {100}, u"100"_s}},
            {"what no shop has", {{std::numeric_limits<double>::infinity(), 1e300, 1}, {}, u"1"_s}},
        });
    }
    void sumsAreExact() {
        QFETCH(const SumRow, row);
        ExactSum sum;
        QVERIFY(sum.isEmpty());
        for (const double number : row.numbers)
            sum.add(number);
        for (const qint64 number : row.whole)
            sum.add(number);
        QCOMPARE(sum.text(), row.text);
        QVERIFY(!sum.isEmpty());
    }

    void momentsInWords_data() {
        addRows<MomentRow>({
            {"now", {u"2026-11-22T20:00"_s, u"bugün 20:00"_s, CopyAge::fresh}},
            {"this morning", {u"2026-11-22T00:00"_s, u"bugün 00:00"_s, CopyAge::fresh}},
            {"yesterday", {u"2026-11-21T23:59"_s, u"dün 23:59"_s, CopyAge::fresh}},
            {"two days to the minute",
             {u"2026-11-20T20:00"_s, u"2 gün önce, 20.11.2026 20:00"_s, CopyAge::fresh}},
            {"a minute more", {u"2026-11-20T19:59"_s, u"2 gün önce, 20.11.2026 19:59"_s, CopyAge::overdue}},
            {"a minute ahead", {u"2026-11-22T20:01"_s, u"bugün 20:01"_s, CopyAge::fresh}},
            {"two minutes ahead", {u"2026-11-22T20:02"_s, u"bugün 20:02"_s, CopyAge::ahead}},
            {"years ahead", {u"2030-01-01T08:00"_s, u"01.01.2030 08:00"_s, CopyAge::ahead}},
        });
    }
    void momentsInWords() {
        QFETCH(const MomentRow, row);
        const QDateTime now = at(u"2026-11-22T20:00"_s);
        QCOMPARE(momentWords(at(row.moment), now), row.words);
        QCOMPARE(ageOf(at(row.moment), now), row.age);
    }
    void noCopyIsOverdue() { QCOMPARE(ageOf({}, at(u"2026-11-22"_s)), CopyAge::overdue); }

    void sizesInWords_data() {
        addRows<SizeRow>({{"small", {2048, u"2 KB"_s}},
                          {"megabytes", {25'690'112, u"24,5 MB"_s}},
                          {"gigabytes", {qint64{1} << 31, u"2,0 GB"_s}}});
    }
    void sizesInWords() {
        QFETCH(const SizeRow, row);
        QCOMPARE(sizeWords(row.bytes), row.words);
    }

    void aManifestIsReadAsItWasWritten() {
        const Manifest read = Manifest::fromJson(sample().toJson());
        QCOMPARE(read.moment, sample().moment);
        QCOMPARE(read.version, sample().version);
        QCOMPARE(read.shop, sample().shop);
        QCOMPARE(read.hasPassword, true);
        QCOMPARE(read.parts, sample().parts);
        QCOMPARE(read.tables, sample().tables);
    }

    void aManifestThatIsNoneIsRefused_data() {
        addRows<ManifestRow>({
            {"newer format", {"\"format\": 1", "\"format\": 2"}},
            {"no format", {"\"format\": 1", "\"formal\": 1"}},
            {"a path", {"\"kovanix.data\"", "\"../kovanix.data\""}},
            {"another file", {"\"Kovanix.config\"", "\".bashrc\""}},
            {"data twice", {"\"Kovanix.config\"", "\"kovanix.data\""}},
            {"no moment", {"2026-11-22T", "yesterday T"}},
            {"size below 0", {"\"5\"", "\"-5\""}},
            {"rows that are none", {"\"3\"", "\"three\""}},
            {"no text", {"\"abc\"", "7"}},
            {"cut", {"\"version\": \"1.2.3\"\n}", ""}},
        });
    }
    void aManifestThatIsNoneIsRefused() {
        QFETCH(const ManifestRow, row);
        QByteArray json = sample().toJson();
        QVERIFY(json.contains(row.what));
        json.replace(row.what, row.instead);
        QVERIFY_THROWS_EXCEPTION(Refusal, Manifest::fromJson(json));
    }

    void archiveHeadsAreReadBack_data() {
        addRows<TarMember>({
            {"empty", {u"a"_s, 0}},
            {"small", {dataName, 511}},
            {"last in digits", {dataName, (qint64{1} << 33) - 1}},
            {"first in bits", {dataName, qint64{1} << 33}},
            {"huge", {dataName, qint64{1} << 50}},
        });
    }
    void archiveHeadsAreReadBack() {
        QFETCH(const TarMember, row);
        QByteArray head = tarHead(row, 1'700'000'000);
        QCOMPARE(head.size(), tarBlock);
        QCOMPARE(readTarHead(head), row);
        QCOMPARE((row.size + tarPadding(row.size)) % tarBlock, 0);
        head[3] = char(head[3] ^ 1);
        QVERIFY_THROWS_EXCEPTION(Refusal, readTarHead(head));
    }

    void namesTellMomentAndShop_data() {
        addRows<NameRow>({
            {"today's", {u"kovanix-2026-11-22-130500-0a1b2c3d4e5f.yedek"_s, true, true}},
            {"the older form", {u"kovanix-2026-11-22-130500.yedek"_s, true, true}},
            {"another shop's", {u"kovanix-2026-11-22-130500-ffffffffffff.yedek"_s, true, false}},
            {"another moment's", {u"kovanix-2026-11-22-130501-0a1b2c3d4e5f.yedek"_s, true, false}},
            {"an older one's of another moment", {u"kovanix-2026-11-22-130501.yedek"_s, true, false}},
            {"no month", {u"kovanix-2026-13-22-130500.yedek"_s, false, false}},
            {"words ahead", {u"eski kovanix-2026-11-22-130500.yedek"_s, false, false}},
            {"words behind", {u"kovanix-2026-11-22-130500.yedek.part"_s, false, false}},
            {"no shop", {u"kovanix-2026-11-22-130500-.yedek"_s, false, false}},
            {"a path for a shop", {u"kovanix-2026-11-22-130500-../a.yedek"_s, false, false}},
        });
    }
    void namesTellMomentAndShop() {
        QFETCH(const NameRow, row);
        Manifest manifest;
        manifest.moment = at(u"2026-11-22T13:05"_s);
        manifest.shop = u"0a1b2c3d4e5f"_s;
        const CopyName name = CopyName::of(row.name);
        QCOMPARE(name.moment.isValid(), row.tells);
        QCOMPARE(name.fits(manifest), row.fits);
        if (row.tells)
            QCOMPARE(name.text(), row.name);
    }

    void detailsAreOneLine_data() {
        addRows<DetailRow>({
            {"nothing", {{}, {}}},
            {"blank", {{u" \n"_s}, {}}},
            {"one line", {{u"Failed to connect to bus"_s}, u" (Failed to connect to bus)"_s}},
            {"an engine's findings",
             {{u"*** in database main ***\nPage 7: btreeInitPage() returns error code 11\nPage 8: x"_s,
               u"y"_s},
              u" (Page 7: btreeInitPage() returns error code 11)"_s}},
            {"a long one", {{QString(200, u'x')}, u" ("_s + QString(120, u'x') + u"…)"}},
        });
    }
    void detailsAreOneLine() {
        QFETCH(const DetailRow, row);
        QCOMPARE(detailWords(row.said), row.words);
    }

    void sticksAreMountsAndMarkedByTheirFolder() {
        const QTemporaryDir media;
        QDir dir(media.path());
        QVERIFY(dir.mkpath(u"BEYAZ/Kovanix yedek"_s));
        QVERIFY(dir.mkpath(u"MAVI"_s));
        QVERIFY(dir.mkpath(u"salt klasor/Kovanix yedek"_s));
        const QList<Stick> found =
            sticksBelow({media.path(), media.path() + u"/yok"},
                        [](const QString& path) { return !path.endsWith(u"klasor"_s); });
        QCOMPARE(found.size(), 2);
        QCOMPARE(found[0].name, u"BEYAZ"_s);
        QVERIFY(found[0].isMarked);
        QCOMPARE(found[0].folder, media.filePath(u"BEYAZ/Kovanix yedek"_s));
        QVERIFY(!found[1].isMarked);
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::RetentionRow)
Q_DECLARE_METATYPE(kovanix::yedek::SumRow)
Q_DECLARE_METATYPE(kovanix::yedek::MomentRow)
Q_DECLARE_METATYPE(kovanix::yedek::ManifestRow)
Q_DECLARE_METATYPE(kovanix::yedek::NameRow)
Q_DECLARE_METATYPE(kovanix::yedek::DetailRow)
Q_DECLARE_METATYPE(kovanix::yedek::SizeRow)
Q_DECLARE_METATYPE(kovanix::yedek::TarMember)

QTEST_GUILESS_MAIN(kovanix::yedek::YedekUnitsTest)
#include "test_yedek_units.moc"
