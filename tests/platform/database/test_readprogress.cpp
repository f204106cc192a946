#include "database/readprogress.h"

#include <QTest>

#include "database/connection.h"
#include "database/rowset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString allProducts = u"select * from urunler"_s;

struct ProgressRow {
    const char* name;
    int rows;        ///< that are put in
    QString change;  ///< a statement of the engine behind that
    QString select;
    QList<std::pair<qsizetype, qsizetype>> told;  ///< rows by then and rows in all
};

}  // namespace

Q_DECLARE_METATYPE(ProgressRow)

class TestReadProgress : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void tellsItsProgress_data();
    void tellsItsProgress();
};

void TestReadProgress::tellsItsProgress_data() {
    QTest::addColumn<ProgressRow>("row");
    for (const ProgressRow& row : QList<ProgressRow>{
             {"no row", 0, {}, allProducts, {}},
             {"one chunk", 19999, {}, allProducts, {}},
             {"a chunk exactly", 20000, {}, allProducts, {{20000, 20000}}},
             {"three chunks", 40001, {}, allProducts, {{20000, 40001}, {40000, 40001}}},
             {"numbered from elsewhere on",
              40001,
              u"UPDATE urunler SET no = no + 1000000"_s,
              allProducts,
              {{20000, 40001}, {40000, 40001}}},
             // Every second row is gone, but the last.
             {"with gaps", 40001, u"DELETE FROM urunler WHERE no % 2 = 0"_s, allProducts, {{20000, 20001}}},
             {"with a condition",
              60000,
              {},
              u"select * from urunler where no > 20000"_s,
              {{20000, 40000}, {40000, 40000}}},
             {"with a condition on its end",
              60000,
              {},
              u"select * from urunler where no <= 30000"_s,
              {{20000, 30000}}},
             {"with a condition that rows at both ends meet",
              60000,
              {},
              u"select * from urunler where no <= 10000 or no > 45000"_s,
              {{20000, 25000}}},
             {"with a condition that a chunk meets exactly",
              60000,
              {},
              u"select * from urunler where no between 101 and 20100"_s,
              {{20000, 20000}}},
             {"with a condition that no row meets", 60000, {}, u"select * from urunler where no < 0"_s, {}},
             {"in an order of its own", 40001, {}, u"select * from urunler order by urun"_s, {}},
         })
        QTest::newRow(row.name) << row;
}

void TestReadProgress::tellsItsProgress() {
    QFETCH(const ProgressRow, row);
    const DatabaseFile file{QString()};
    file.execute({u"CREATE TABLE urunler (no COUNTER, urun TEXT(50))"_s});
    RawDatabase raw(file.path(), {});
    QVERIFY(raw.run(
        u"INSERT INTO urunler (urun) WITH RECURSIVE n(i) AS (SELECT 1 WHERE %1 > 0 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT 'Ürün ' || i FROM n"_s
            .arg(row.rows)));
    QVERIFY(row.change.isEmpty() || raw.run(row.change));
    Connection connection;
    connection.open(file.connectionString());
    RowSet rows;
    QList<std::pair<qsizetype, qsizetype>> told;
    const auto tell = [&](qsizetype count, qsizetype total) {
        told.append({count, total});
        QCOMPARE(rows.totalCount(), 0);  // the rows of before
    };
    QVERIFY(rows.read(connection, row.select, tell));
    QCOMPARE(told, row.told);
    QCOMPARE(QStringList(QString::number(rows.totalCount())),
             raw.rows(u"SELECT count(*) FROM ("_s + row.select + u')'));
    // Nothing is read that is known.
    told.clear();
    QVERIFY(!rows.read(connection, row.select, tell));
    QCOMPARE(told.size(), 0);
}

QTEST_GUILESS_MAIN(TestReadProgress)
#include "test_readprogress.moc"
