#include "database/rowwalk.h"

#include <QTest>

#include "database/connection.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct WalkRow {
    const char* name;
    int rows;        ///< that are put in, numbered from 1, each a second later than the one before
    QString change;  ///< a statement of the engine behind that
    QString select;
    QList<int> walked;  ///< the first, the last and the number of those walked
    QList<std::pair<qsizetype, qsizetype>> told = {};
};

}  // namespace

Q_DECLARE_METATYPE(WalkRow)

class TestRowWalk : public QObject {
    Q_OBJECT

    static void fill(const DatabaseFile& file, int rows, const QString& change = {}) {
        file.execute({u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, toplam DOUBLE)"_s});
        RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
        QVERIFY(raw.run(u"CREATE INDEX gun ON satislar (tarih)"_s));
        QVERIFY(raw.run(
            u"INSERT INTO satislar (tarih, toplam) WITH RECURSIVE n(i) AS (SELECT 1 WHERE %1 > 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT datetime(1767225600 + i, 'unixepoch'), i FROM n"_s
                .arg(rows)));
        QVERIFY(change.isEmpty() || raw.run(change));
    }

private Q_SLOTS:
    void walks_data() {
        QTest::addColumn<WalkRow>("row");
        const QString all = u"select no, tarih from satislar"_s;
        const QString between = u"select no, tarih from satislar where tarih between "_s;
        const QString year = between + u"#1/1/2026 00:00:00# and #12/31/2026 23:59:59#"_s;
        for (const WalkRow& row : QList<WalkRow>{
                 {"no row", 0, {}, all, {}},
                 {"one row", 1, {}, all, {1, 1, 1}},
                 {"a chunk exactly", 20000, {}, all, {1, 20000, 20000}},
                 {"several chunks", 40001, {}, all, {1, 40001, 40001}},
                 {"a range without rows", 5, {}, between + u"#1/1/2020# and #1/2/2020#"_s, {}},
                 {"a range that ends before it starts", 5, {}, between + u"#1/2/2027# and #1/1/2020#"_s, {}},
                 {"borders included",
                  100,
                  {},
                  between + u"#1/1/2026 00:00:10# and #1/1/2026 00:00:20#"_s,
                  {10, 20, 11}},
                 {"a few, in order of entry",
                  100,
                  u"UPDATE satislar SET tarih = datetime(1767225600 + 200 - no, 'unixepoch')"_s,
                  year,
                  {1, 100, 100}},
                 {"many, in order of entry",
                  40001,
                  u"UPDATE satislar SET tarih = datetime(1767225600 + 50000 - no, 'unixepoch')"_s,
                  year,
                  {1, 40001, 40001},
                  {{20000, 40001}, {40000, 40001}}},
                 {"of one second, in order of entry",
                  30000,
                  u"UPDATE satislar SET tarih = '2026-05-03 10:00:00'"_s,
                  year,
                  {1, 30000, 30000},
                  {{20000, 30000}}},
                 {"many at the end of more",
                  150000,
                  {},
                  between + u"#1/2/2026 10:00:00# and #12/31/2026#"_s,
                  {122400, 150000, 27601},
                  {{20000, 27601}}},
                 {"many in the middle of more",
                  150000,
                  {},
                  between + u"#1/1/2026 15:00:00# and #1/1/2026 21:00:00#"_s,
                  {54000, 75600, 21601},
                  {{20000, 21601}}},
                 {"many far from one another",
                  60000,
                  u"UPDATE satislar SET no = no * 1000 + 60000000"_s,
                  year,
                  {60001000, 120000000, 60000},
                  {{20000, 60000}, {40000, 60000}, {60000, 60000}}},
                 {"numbers below zero",
                  30000,
                  u"UPDATE satislar SET no = no - 15000"_s,
                  year,
                  {-14999, 15000, 30000},
                  {{20000, 30000}}},
                 {"an order of its own", 5, {}, all + u" order by no desc"_s, {5, 1, 5}},
                 {"a view",
                  5,
                  u"CREATE VIEW dun AS SELECT no, tarih FROM satislar"_s,
                  u"select * from dun"_s,
                  {1, 5, 5}},
             })
            QTest::newRow(row.name) << row;
    }
    void walks() {
        QFETCH(const WalkRow, row);
        const DatabaseFile file{QString()};
        fill(file, row.rows, row.change);
        Connection connection;
        connection.open(file.connectionString());
        QList<int> walked;
        QList<std::pair<qsizetype, qsizetype>> told;
        RowWalk(connection, row.select)
            .forEach([&](const RowWalk::Row& each) { walked.append(each.value(0).toInt()); },
                     [&](qsizetype rows, qsizetype total) {
                         told.append({rows, total});
                     });
        QVERIFY(row.walked.value(0) > row.walked.value(1) || std::ranges::is_sorted(walked));
        QCOMPARE(
            walked.isEmpty() ? QList<int>() : QList<int>({walked.first(), walked.last(), int(walked.size())}),
            row.walked);
        QCOMPARE(told, row.told);
    }

    void givesCellsAsStored() {
        const DatabaseFile file{QString()};
        file.execute({u"CREATE TABLE satislar (no COUNTER, toplam DOUBLE)"_s,
                      u"INSERT INTO satislar (toplam) VALUES (NULL)"_s,
                      u"INSERT INTO satislar (toplam) VALUES (2.5)"_s,
                      u"INSERT INTO satislar (toplam) VALUES ('2,5 ş')"_s,
                      u"INSERT INTO satislar (toplam) VALUES (X'4142')"_s});
        Connection connection;
        connection.open(file.connectionString());
        QVariantList values;
        QList<double> numbers;
        QByteArrayList texts;
        RowWalk(connection, u"select toplam, no from satislar"_s).forEach([&](const RowWalk::Row& row) {
            values.append(row.value(0));
            numbers.append(row.number(0).value_or(-1));
            numbers.append(row.number(1).value_or(-1));
            texts.append(QByteArray(row.text(0).data(), qsizetype(row.text(0).size())));
        });
        QCOMPARE(values, (QVariantList{QVariant(), 2.5, u"2,5 ş"_s, QByteArray("AB")}));
        QCOMPARE(numbers, (QList<double>{-1, 1, 2.5, 2, -1, 3, -1, 4}));
        QCOMPARE(texts, (QByteArrayList{"", "", "2,5 ş", ""}));
    }

    /// As many as can be read ahead of the damage have been given.
    void breaksOffAtADamagedPage_data() { DatabaseFile::bothKinds(); }
    void breaksOffAtADamagedPage() {
        const DatabaseFile file;
        fill(file, 60000);
        file.damage();
        Connection connection;
        connection.open(file.connectionString());
        int walked = 0;
        int last = 0;
        const auto error = errorOf([&] {
            RowWalk(connection, u"select no from satislar"_s).forEach([&](const RowWalk::Row& row) {
                ++walked;
                last = row.value(0).toInt();
            });
        });
        QVERIFY(error);
        QCOMPARE(error->source(), file.source());
        QVERIFY(walked > 0 && walked < 60000);
        QCOMPARE(last, walked);
        QVERIFY(walked % 20000 != 0);  // in the midst of a chunk
    }

    /// Few enough to be sorted, which fails before it gives any.
    void givesAFewRowsAheadOfADamagedPage() {
        const DatabaseFile file{QString()};
        fill(file, 60000);
        // Wide rows, and the index behind them, so that the damage lies in these alone.
        for (const char* sql : {"UPDATE satislar SET toplam = printf('x%0200d', no)", "DROP INDEX gun",
                                "VACUUM", "CREATE INDEX gun ON satislar (tarih)"})
            QVERIFY(RawDatabase(file.path(), {}).run(QString::fromLatin1(sql)));
        file.damage();
        Connection connection;
        connection.open(file.connectionString());
        // The damage lies in some of these ranges, behind rows that can be read.
        int ranges = 0;
        for (int hour = 0; hour < 12; ++hour) {
            int walked = 0;
            const auto error = errorOf([&] {
                RowWalk(
                    connection,
                    u"select no, toplam from satislar where tarih between #1/1/2026 %1:00:00# and #1/1/2026 %2:00:00#"_s
                        .arg(hour)
                        .arg(hour + 5))
                    .forEach([&](const RowWalk::Row&) { ++walked; });
            });
            ranges += error && walked > 0;
        }
        QVERIFY(ranges > 0);
    }

    void leavesRoomForAWriter() {
        const DatabaseFile file{QString()};
        fill(file, 50000);
        Connection connection;
        connection.open(file.connectionString());
        RawDatabase till(file.path(), {});  // waits for nobody
        int walked = 0;
        RowWalk(
            connection,
            u"select no from satislar where tarih between #1/1/2026 00:00:00# and #12/31/2027 00:00:00#"_s)
            .forEach([&](const RowWalk::Row&) {
                if (++walked % 10000 == 1)
                    QVERIFY(till.run(
                        u"INSERT INTO satislar (tarih, toplam) VALUES ('2026-06-01 10:00:00', 1)"_s));
            });
        QCOMPARE(walked, 50000);  // those that stood there at the beginning
    }

    void aClosedConnectionIsAnError() {
        Connection connection;
        QVERIFY(
            errorOf([&] { RowWalk(connection, u"select no from satislar"_s).forEach([](const auto&) {}); }));
    }
};

QTEST_GUILESS_MAIN(TestRowWalk)
#include "test_rowwalk.moc"
