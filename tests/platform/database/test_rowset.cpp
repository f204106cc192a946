#include "database/rowset.h"

#include <malloc.h>

#include "database/recordset.h"
#include "databasefile.h"
#include "sanitized.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString createProducts =
    u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), alis DOUBLE, satis DOUBLE, stok DOUBLE)"_s;
const QString allProducts = u"select * from urunler"_s;

/// One more row than fits a chunk, twice.
constexpr int manyRows = 40001;

QString insertMany(int count) {
    return u"INSERT INTO urunler (barkod, urun, alis, satis, stok) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT CAST(8690000000000 + i AS TEXT), 'Süt Ürünü ' || i, i / 4.0, i / 2.0, i %% 7 FROM n"_s
        .replace(u"%%"_s, u"%"_s)
        .arg(count);
}

/// The texts of a field at all places.
QStringList column(const RowSet& rows, const QString& field) {
    QStringList texts;
    for (qsizetype place = 0; place < rows.recordCount(); ++place)
        texts.append(rows.text(place, rows.fieldIndex(field)));
    return texts;
}

QStringList numbers(const RowSet& rows) {
    return column(rows, u"no"_s);
}

}  // namespace

class TestRowSet : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsEmpty_data() { DatabaseFile::allKinds(); }
    void startsEmpty();
    void readsCells_data() { DatabaseFile::allKinds(); }
    void readsCells();
    void readsInOrderOfEntry_data() { DatabaseFile::allKinds(); }
    void readsInOrderOfEntry();
    void readsEveryChunk_data() { DatabaseFile::allKinds(); }
    void readsEveryChunk();
    void readsWhatHasNoOrderOfEntry_data() { DatabaseFile::bothKinds(); }
    void readsWhatHasNoOrderOfEntry();
    void readsRangesOfMoments_data() { DatabaseFile::allKinds(); }
    void readsRangesOfMoments();
    void readsUnusualSelects_data() { DatabaseFile::bothKinds(); }
    void readsUnusualSelects();
    void aFailedReadKeepsTheRows_data() { DatabaseFile::bothKinds(); }
    void aFailedReadKeepsTheRows();
    void holdsNoLockBehindARead_data() { DatabaseFile::bothKinds(); }
    void holdsNoLockBehindARead();
    void letsWritersInBetweenItsChunks_data() { DatabaseFile::allKinds(); }
    void letsWritersInBetweenItsChunks();
    void readsAgainOnlyWhatChanged_data() { DatabaseFile::allKinds(); }
    void readsAgainOnlyWhatChanged();
    void readsPastAHalfReadRecordset_data() { DatabaseFile::allKinds(); }
    void readsPastAHalfReadRecordset();
    void aReadKeepsSortFilterAndRow_data() { DatabaseFile::allKinds(); }
    void aReadKeepsSortFilterAndRow();
    void aReadDropsWhatHasNoField_data() { DatabaseFile::allKinds(); }
    void aReadDropsWhatHasNoField();
    void forgetsEverythingWhenCleared_data() { DatabaseFile::allKinds(); }
    void forgetsEverythingWhenCleared();
    void takesLittleMemory_data() { DatabaseFile::allKinds(); }
    void takesLittleMemory();

private:
    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<Connection> m_connection;
    std::unique_ptr<RowSet> m_rows;
};

void TestRowSet::init() {
    m_file = std::make_unique<DatabaseFile>();
    m_connection = std::make_unique<Connection>(std::chrono::milliseconds(200));
    m_connection->open(m_file->connectionString());
    m_connection->execute(createProducts);
    m_rows = std::make_unique<RowSet>();
}

void TestRowSet::cleanup() {
    m_rows.reset();
    m_connection.reset();
    m_file.reset();
}

void TestRowSet::startsEmpty() {
    QCOMPARE(m_rows->fieldCount(), 0);
    QCOMPARE(m_rows->recordCount(), 0);
    QCOMPARE(m_rows->current(), -1);
    QCOMPARE(m_rows->fieldIndex(u"no"), -1);
    m_rows->setFilter({});
    m_rows->setSort({});
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(m_rows->fieldCount(), 6);
    QCOMPARE(m_rows->totalCount(), 0);
    QCOMPARE(m_rows->placeOf(1), -1);
    m_rows->setSort(u"urun DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"urun LIKE '%a%'"));
    QCOMPARE(m_rows->recordCount(), 0);
    QCOMPARE(m_rows->find(RowFilter::parse(u"no like '1'")), -1);
}

void TestRowSet::readsCells() {
    m_connection->execute(u"INSERT INTO urunler VALUES (7, '0012', 'Şeker ''ığ''', 1.5, 12, -3)"_s);
    m_connection->execute(u"INSERT INTO urunler (no, urun) VALUES (9, '')"_s);
    m_rows->read(*m_connection, allProducts);
    QCOMPARE(m_rows->recordCount(), 2);
    const QList<ColumnType> types = {ColumnType::counter, ColumnType::text,   ColumnType::text,
                                     ColumnType::number,  ColumnType::number, ColumnType::number};
    const QStringList names = {u"no"_s, u"barkod"_s, u"urun"_s, u"alis"_s, u"satis"_s, u"stok"_s};
    const QVariantList values = {7LL, u"0012"_s, u"Şeker 'ığ'"_s, 1.5, 12.0, -3.0};
    const QStringList texts = {u"7"_s, u"0012"_s, u"Şeker 'ığ'"_s, u"1,5"_s, u"12"_s, u"-3"_s};
    const QVariantList lacking = {9LL, QVariant(), u""_s, QVariant(), QVariant(), QVariant()};
    for (int field = 0; field < m_rows->fieldCount(); ++field) {
        QCOMPARE(m_rows->fieldName(field), names[field]);
        QCOMPARE(m_rows->fieldIndex(names[field].toUpper()), field);
        QCOMPARE(m_rows->fieldType(field), types[field]);
        QCOMPARE(m_rows->value(0, field), values[field]);
        QCOMPARE(m_rows->text(0, field), texts[field]);
        QCOMPARE(m_rows->value(1, field), lacking[field]);
        QCOMPARE(m_rows->text(1, field), field == 0 ? u"9"_s : u""_s);
    }
    QCOMPARE(m_rows->identity(1), 9);
    QCOMPARE(m_rows->fieldIndex(u"yok"), -1);
}

void TestRowSet::readsInOrderOfEntry() {
    m_connection->execute(u"CREATE INDEX b ON urunler (barkod)"_s);
    for (const QString& code : {u"z"_s, u"a"_s, u"m"_s})
        m_connection->execute(u"INSERT INTO urunler (barkod) VALUES ('%1')"_s.arg(code));
    m_connection->execute(u"INSERT INTO urunler (no, barkod) VALUES (-5, 'first')"_s);
    m_rows->read(*m_connection, u" select * from urunler ; "_s);
    QCOMPARE(column(*m_rows, u"barkod"_s), (QStringList{u"first"_s, u"z"_s, u"a"_s, u"m"_s}));
    QCOMPARE(m_rows->placeOf(-5), 0);
    QCOMPARE(m_rows->placeOf(3), 3);
    QCOMPARE(m_rows->placeOf(4), -1);
}

void TestRowSet::readsEveryChunk() {
    m_connection->execute(insertMany(manyRows));
    m_rows->read(*m_connection, u"SELECT * FROM urunler -- all"_s);
    QCOMPARE(m_rows->recordCount(), manyRows);
    for (const qsizetype place : {0, 19999, 20000, 20001, 39999, 40000}) {
        QCOMPARE(m_rows->identity(place), place + 1);
        QCOMPARE(m_rows->text(place, 2), u"Süt Ürünü %1"_s.arg(place + 1));
    }
    m_connection->execute(u"DELETE FROM urunler WHERE no BETWEEN 15000 AND 25000"_s);
    m_rows->read(*m_connection, u"select * from urunler where stok = 1 or stok = 2"_s);
    QCOMPARE(m_rows->recordCount(), 2 * 5715 - 2858);
    QCOMPARE(m_rows->placeOf(15002), -1);
    QCOMPARE(m_rows->identity(0), 1);
    QCOMPARE(m_rows->identity(1), 2);
    QCOMPARE(m_rows->identity(2), 8);
}

void TestRowSet::readsWhatHasNoOrderOfEntry() {
    m_connection->execute(insertMany(9));
    m_connection->execute(
        u"CREATE VIEW dolu AS SELECT barkod, stok FROM urunler WHERE no > 6 ORDER BY no DESC"_s);
    m_connection->execute(u"CREATE TABLE sayi (a TEXT(5) PRIMARY KEY, b DOUBLE) WITHOUT ROWID"_s);
    m_connection->execute(u"INSERT INTO sayi VALUES ('b', 1), ('a', 2)"_s);
    m_connection->execute(u"CREATE TABLE kimlik (rowid TEXT(5))"_s);
    m_connection->execute(u"INSERT INTO kimlik VALUES ('b'), ('a')"_s);
    m_rows->read(*m_connection, u"select * from dolu"_s);
    QCOMPARE(column(*m_rows, u"stok"_s), (QStringList{u"2"_s, u"1"_s, u"0"_s}));
    QCOMPARE(m_rows->identity(2), 3);
    m_rows->read(*m_connection, u"select * from sayi"_s);
    QCOMPARE(column(*m_rows, u"b"_s), (QStringList{u"2"_s, u"1"_s}));
    m_rows->read(*m_connection, u"select * from kimlik"_s);
    QCOMPARE(column(*m_rows, u"rowid"_s), (QStringList{u"b"_s, u"a"_s}));
    m_rows->read(*m_connection, u"select no, urun from urunler order by no desc"_s);
    QCOMPARE(numbers(*m_rows).first(2), (QStringList{u"9"_s, u"8"_s}));
    QCOMPARE(m_rows->identity(0), 1);
    m_rows->read(*m_connection, u"select * from urunler where no > 4 limit 2"_s);
    QCOMPARE(numbers(*m_rows), (QStringList{u"5"_s, u"6"_s}));
    m_rows->read(*m_connection, u"select * from urunler order by no desc"_s);
    QCOMPARE(numbers(*m_rows).first(2), (QStringList{u"9"_s, u"8"_s}));
    QCOMPARE(m_rows->text(0, m_rows->fieldIndex(u"urun")), u"Süt Ürünü 9"_s);
}

void TestRowSet::readsRangesOfMoments() {
    m_connection->execute(u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, toplam DOUBLE)"_s);
    m_connection->execute(
        u"INSERT INTO satislar (tarih, toplam) VALUES (#5/3/2026 10:15:00#, 1.5), (#5/4/2026 00:00:00#, 2), "
        u"(#5/3/2026 00:00:00#, 3), (NULL, 4)"_s);
    m_rows->read(*m_connection,
                 u"select * from satislar where tarih between #5/3/2026 00:00:00# and #5/3/2026 23:59:59#"_s);
    QCOMPARE(column(*m_rows, u"tarih"_s), (QStringList{u"03.05.2026 10:15:00"_s, u"03.05.2026 00:00:00"_s}));
    QCOMPARE(m_rows->fieldType(1), ColumnType::moment);
    QCOMPARE(m_rows->value(0, 1), u"2026-05-03 10:15:00"_s);
}

void TestRowSet::readsUnusualSelects() {
    m_connection->execute(u"INSERT INTO urunler (barkod, satis) VALUES (NULL, 2), ('b', 4)"_s);
    m_rows->read(*m_connection,
                 u"select satis * 2 as Kat, NULL as bos, urun, barkod as kod, no from urunler"_s);
    QCOMPARE(m_rows->fieldName(0), u"Kat"_s);
    QCOMPARE(m_rows->fieldType(0), ColumnType::number);
    QCOMPARE(m_rows->fieldType(1), ColumnType::text);
    QCOMPARE(m_rows->fieldType(3), ColumnType::text);
    QCOMPARE(m_rows->fieldType(4), ColumnType::counter);
    QCOMPARE(m_rows->value(1, 0), 8.0);
    QCOMPARE(m_rows->value(0, 1), QVariant());
    QCOMPARE(column(*m_rows, u"kod"_s), (QStringList{u""_s, u"b"_s}));
    m_rows->read(*m_connection, u"select sum(satis) as toplam, count(*) as adet from urunler"_s);
    QCOMPARE(m_rows->value(0, 0), 6.0);
    QCOMPARE(m_rows->text(0, 1), u"2"_s);
    m_connection->execute(u"CREATE TABLE tek (no COUNTER)"_s);
    m_connection->execute(u"INSERT INTO tek DEFAULT VALUES"_s);
    m_rows->read(*m_connection, u"select * from tek"_s);
    QCOMPARE(m_rows->fieldCount(), 1);
    QCOMPARE(m_rows->value(0, 0), 1LL);
}

void TestRowSet::aFailedReadKeepsTheRows() {
    m_connection->execute(insertMany(manyRows));
    m_connection->execute(u"CREATE TABLE bozuk (no COUNTER, sayi INTEGER)"_s);
    m_connection->execute(u"INSERT INTO bozuk SELECT no, no FROM urunler"_s);
    m_connection->execute(u"UPDATE bozuk SET sayi = -9223372036854775807 - 1 WHERE no = 30000"_s);
    m_rows->read(*m_connection, allProducts);
    m_rows->setSort(u"no DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"stok LIKE '3'"));
    m_rows->setCurrent(2);
    const auto unchanged = [this] {
        QCOMPARE(m_rows->totalCount(), manyRows);
        QCOMPARE(m_rows->recordCount(), 5715);
        QCOMPARE(m_rows->current(), 2);
        QCOMPARE(m_rows->text(0, 2), u"Süt Ürünü 40001"_s);
        QCOMPARE(m_rows->sort(), u"no DESC"_s);
    };
    // The engine refuses to take the absolute value when it comes to that row, in the second chunk.
    const auto halfWay =
        errorOf([this] { m_rows->read(*m_connection, u"select * from bozuk where abs(sayi) > 0"_s); });
    QVERIFY(halfWay);
    QCOMPARE(halfWay->description(), u"integer overflow"_s);
    QCOMPARE(halfWay->source(), m_file->source());
    unchanged();
    QVERIFY(RawDatabase(m_file->path(), m_file->password()).run(u"DROP TABLE bozuk"_s));
    const auto error = errorOf([this] { m_rows->read(*m_connection, u"select * from bozuk"_s); });
    QCOMPARE(enginesWords(error->description()), u"no such table: bozuk"_s);
    QCOMPARE(error->source(), m_file->source());
    unchanged();
    QVERIFY(errorOf([this] { m_rows->read(*m_connection, u"select * frm urunler"_s); }));
    QVERIFY(errorOf([this] { m_rows->read(*m_connection, u"select * from urunler where a = #1/1#"_s); }));
    unchanged();
    m_connection->close();
    QVERIFY(errorOf([this] { m_rows->read(*m_connection, allProducts); }));
    unchanged();
}

void TestRowSet::holdsNoLockBehindARead() {
    // With a rollback journal a reader keeps the writers out.
    setNetworkFileTest([](const QString&) { return true; });
    m_connection->close();
    m_connection->open(m_file->connectionString());
    setNetworkFileTest({});
    m_connection->execute(insertMany(manyRows));
    m_rows->read(*m_connection, allProducts);
    RawDatabase other(m_file->path(), m_file->password());
    QVERIFY(other.run(u"UPDATE urunler SET stok = -1 WHERE no = 1"_s));
    QVERIFY(errorOf([this] {
        m_rows->read(*m_connection, u"select * from urunler where abs(iif(no=30000,1<<63,no)) > 0"_s);
    }));
    QVERIFY(other.run(u"UPDATE urunler SET stok = -2 WHERE no = 1"_s));
    m_rows->read(*m_connection, u"select * from urunler order by no"_s);
    QVERIFY(other.run(u"UPDATE urunler SET stok = -3 WHERE no = 1"_s));
}

/// With a rollback journal no writer gets through while a statement is being read.
void TestRowSet::letsWritersInBetweenItsChunks() {
    m_connection->execute(insertMany(3 * manyRows));
    m_connection->close();
    setNetworkFileTest([](const QString&) { return true; });
    Connection reading;
    reading.open(m_file->connectionString());
    setNetworkFileTest({});
    RawDatabase other(m_file->path(), m_file->password());
    int writes = 0;
    int refused = 0;
    const auto writeMeanwhile = [&](qsizetype, qsizetype) {
        // One row goes ahead of where the read is, one comes behind.
        const bool written = other.run(u"DELETE FROM urunler WHERE no = (SELECT min(no) FROM urunler)"_s) &&
                             other.run(u"INSERT INTO urunler (urun) VALUES ('yeni')"_s);
        ++(written ? writes : refused);
    };
    QVERIFY(m_rows->read(reading, allProducts, writeMeanwhile));
    QVERIFY(writes > 1);
    QCOMPARE(refused, 0);
    for (qsizetype place = 1; place < m_rows->totalCount(); ++place)
        QVERIFY(m_rows->identity(place) > m_rows->identity(place - 1));
    // What was written meanwhile shows at the next read.
    QVERIFY(m_rows->read(reading, allProducts));
    QCOMPARE(m_rows->totalCount(), 3 * manyRows);
    QCOMPARE(m_rows->identity(0), writes + 1);
}

void TestRowSet::readsAgainOnlyWhatChanged() {
    m_connection->execute(insertMany(3));
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QVERIFY(!m_rows->read(*m_connection, allProducts));
    m_connection->execute(u"UPDATE urunler SET stok = 100 WHERE no = 2"_s);
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(m_rows->value(1, 5), 100.0);
    QVERIFY(!m_rows->read(*m_connection, allProducts));
    RawDatabase other(m_file->path(), m_file->password());
    QVERIFY(other.run(u"DELETE FROM urunler WHERE no = 1"_s));
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(numbers(*m_rows), (QStringList{u"2"_s, u"3"_s}));
    QVERIFY(!m_rows->read(*m_connection, allProducts));
    m_connection->execute(u"ALTER TABLE urunler ADD COLUMN yeni DOUBLE"_s);
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(m_rows->fieldCount(), 7);
    QVERIFY(m_rows->read(*m_connection, u"select * from urunler where no = 2"_s));
    QVERIFY(m_rows->read(*m_connection, allProducts));
    m_connection->close();
    m_connection->open(m_file->connectionString());
    QVERIFY(m_rows->read(*m_connection, allProducts));
    Connection second;
    second.open(m_file->connectionString());
    QVERIFY(m_rows->read(second, allProducts));
    QVERIFY(!m_rows->read(second, allProducts));
}

void TestRowSet::readsPastAHalfReadRecordset() {
    m_connection->execute(insertMany(3));
    m_rows->read(*m_connection, allProducts);
    Recordset half;
    half.open(allProducts, *m_connection);
    QCOMPARE(half.field(u"no"_s), 1LL);
    QVERIFY(
        RawDatabase(m_file->path(), m_file->password()).run(u"UPDATE urunler SET stok = 50 WHERE no = 3"_s));
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(m_rows->value(2, 5), 50.0);
    half.moveNext();
    QCOMPARE(half.field(u"no"_s), 2LL);
}

void TestRowSet::aReadKeepsSortFilterAndRow() {
    m_connection->execute(insertMany(20));
    m_rows->read(*m_connection, allProducts);
    m_rows->setSort(u"stok DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"urun LIKE '%Ürünü 1%'"));
    QCOMPARE(numbers(*m_rows), (QStringList{u"13"_s, u"12"_s, u"19"_s, u"11"_s, u"18"_s, u"10"_s, u"17"_s,
                                            u"16"_s, u"1"_s, u"15"_s, u"14"_s}));
    m_rows->setCurrent(3);
    m_connection->execute(u"UPDATE urunler SET stok = 9 WHERE no = 11"_s);
    m_connection->execute(u"DELETE FROM urunler WHERE no = 13"_s);
    QVERIFY(m_rows->read(*m_connection, allProducts));
    QCOMPARE(m_rows->sort(), u"stok DESC"_s);
    QCOMPARE(numbers(*m_rows), (QStringList{u"11"_s, u"12"_s, u"19"_s, u"18"_s, u"10"_s, u"17"_s, u"16"_s,
                                            u"1"_s, u"15"_s, u"14"_s}));
    QCOMPARE(m_rows->current(), 0);
    m_connection->execute(u"DELETE FROM urunler WHERE no = 11"_s);
    m_rows->read(*m_connection, allProducts);
    QCOMPARE(m_rows->current(), -1);
    m_connection->execute(u"INSERT INTO urunler (no, urun, stok) VALUES (11, 'Ürünü 11', 1)"_s);
    m_rows->read(*m_connection, allProducts);
    QCOMPARE(m_rows->current(), -1);
}

void TestRowSet::aReadDropsWhatHasNoField() {
    m_connection->execute(insertMany(5));
    m_connection->execute(u"CREATE TABLE musteri (no COUNTER, musteri TEXT(50), stok TEXT(9))"_s);
    m_connection->execute(u"INSERT INTO musteri (musteri, stok) VALUES ('Ayşe', '3'), ('Ali', '33')"_s);
    m_rows->read(*m_connection, allProducts);
    m_rows->setSort(u"urun DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"stok LIKE '3'"));
    m_rows->setCurrent(0);
    m_rows->read(*m_connection, u"select * from musteri"_s);
    QCOMPARE(m_rows->sort(), u""_s);
    QCOMPARE(column(*m_rows, u"musteri"_s), QStringList{u"Ayşe"_s});
    QCOMPARE(m_rows->current(), -1);
    m_rows->setSort(u"no DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"musteri LIKE '%a%'"));
    m_rows->setCurrent(0);
    QCOMPARE(m_rows->identity(0), 2);
    m_rows->read(*m_connection, allProducts);
    QCOMPARE(m_rows->current(), -1);
    QCOMPARE(m_rows->sort(), u"no DESC"_s);
    QCOMPARE(numbers(*m_rows), (QStringList{u"5"_s, u"4"_s, u"3"_s, u"2"_s, u"1"_s}));
}

void TestRowSet::forgetsEverythingWhenCleared() {
    m_connection->execute(insertMany(3));
    m_rows->read(*m_connection, allProducts);
    m_rows->setSort(u"no DESC"_s);
    m_rows->setFilter(RowFilter::parse(u"no LIKE '%2%'"));
    m_rows->setCurrent(0);
    RowSet moved = std::move(*m_rows);
    QCOMPARE(numbers(moved), QStringList{u"2"_s});
    moved.clear();
    QCOMPARE(moved.fieldCount(), 0);
    QCOMPARE(moved.totalCount(), 0);
    QCOMPARE(moved.current(), -1);
    QCOMPARE(moved.sort(), u""_s);
    QVERIFY(moved.read(*m_connection, allProducts));
    QCOMPARE(numbers(moved), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
}

void TestRowSet::takesLittleMemory() {
    if (sanitized)
        QSKIP("the sanitizer's allocator doesn't tell what is in use");
    constexpr int rows = 100000;
    constexpr double mostBytesARow = 350;
    m_connection->execute(insertMany(rows));
    m_connection->execute(u"UPDATE urunler SET urun = urun || ' Yarım Yağlı' "_s);
    const auto inUse = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    // What the engine keeps of a read file in its cache isn't the rows'.
    RowSet().read(*m_connection, allProducts);
    const double before = inUse();
    m_rows->read(*m_connection, allProducts);
    m_rows->setFilter(RowFilter::parse(u"urun LIKE '%YAĞLI%' AND barkod LIKE '%869%'"));
    m_rows->setSort(u"urun DESC"_s);
    QCOMPARE(m_rows->recordCount(), rows);
    const double bytesARow = (inUse() - before) / rows;
    QVERIFY2(bytesARow > 50 && bytesARow <= mostBytesARow, qPrintable(QString::number(bytesARow)));
    qInfo("%.0f bytes a row", bytesARow);
}

QTEST_GUILESS_MAIN(TestRowSet)
#include "test_rowset.moc"
