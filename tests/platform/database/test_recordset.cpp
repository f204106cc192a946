#include "database/recordset.h"

#include <QDateTime>
#include <limits>
#include <memory>

#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString createProducts =
    u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), satis DOUBLE, stok DOUBLE)"_s;

QStringList remaining(Recordset& set, const QString& field) {
    QStringList values;
    for (; !set.atEnd(); set.moveNext()) {
        values.append(set.field(field).toString());
    }
    return values;
}

}  // namespace

namespace {

struct RefusalRow {
    QString sql;
    QString words;
};

struct PlaceRow {
    QString sql;
    bool seesWrites;
};

struct ValueRow {
    QVariant value;
    QString type;   ///< as the engine names it
    QVariant read;  ///< what the field gives afterwards
};

}  // namespace

Q_DECLARE_METATYPE(RefusalRow)
Q_DECLARE_METATYPE(PlaceRow)
Q_DECLARE_METATYPE(ValueRow)

class TestRecordset : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void readsRowsInOrderOfEntry_data() { DatabaseFile::allKinds(); }
    void readsRowsInOrderOfEntry();
    void givesValuesAsStored_data() { DatabaseFile::allKinds(); }
    void givesValuesAsStored();
    void anEmptySetIsAtItsEnd_data() { DatabaseFile::allKinds(); }
    void anEmptySetIsAtItsEnd();
    void readsNothingWhenOpened_data() { DatabaseFile::bothKinds(); }
    void readsNothingWhenOpened();
    void aBadStatementFailsAtTheOpen_data();
    void aBadStatementFailsAtTheOpen();
    void keepsItsPlaceOverWrites_data();
    void keepsItsPlaceOverWrites();
    void deletesEveryRowWhileReading_data() { DatabaseFile::allKinds(); }
    void deletesEveryRowWhileReading();
    void readsViewsInTheirOrder_data() { DatabaseFile::allKinds(); }
    void readsViewsInTheirOrder();
    void readsTablesWithoutRowIds_data() { DatabaseFile::bothKinds(); }
    void readsTablesWithoutRowIds();
    void holdsNoLockBetweenReads_data() { DatabaseFile::bothKinds(); }
    void holdsNoLockBetweenReads();
    void addsRows_data() { DatabaseFile::allKinds(); }
    void addsRows();
    void storesEveryKindOfValue_data();
    void storesEveryKindOfValue();
    void addsOnlyWhereItCan_data() { DatabaseFile::allKinds(); }
    void addsOnlyWhereItCan();
    void aFailedUpdateCanBeRepeated_data() { DatabaseFile::bothKinds(); }
    void aFailedUpdateCanBeRepeated();
    void opensAndClosesAgain_data() { DatabaseFile::allKinds(); }
    void opensAndClosesAgain();
    void closesWithItsConnection_data() { DatabaseFile::allKinds(); }
    void closesWithItsConnection();

private:
    void addProducts(int count);

    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<Connection> m_connection;
};

void TestRecordset::init() {
    m_file = std::make_unique<DatabaseFile>();
    m_connection = std::make_unique<Connection>(200ms);
    m_connection->open(m_file->connectionString());
    m_connection->execute(createProducts);
}

void TestRecordset::cleanup() {
    m_connection.reset();
    m_file.reset();
}

void TestRecordset::addProducts(int count) {
    m_connection->execute(
        u"INSERT INTO urunler (barkod, stok) WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < %1) SELECT 'b' || i, i FROM n"_s.arg(count));
}

void TestRecordset::readsRowsInOrderOfEntry() {
    m_connection->execute(u"CREATE INDEX b ON urunler (barkod, stok)"_s);
    for (const QString& code : {u"z"_s, u"a"_s, u"m"_s, u"A"_s}) {
        m_connection->execute(u"INSERT INTO urunler (barkod, stok) VALUES ('%1', 1)"_s.arg(code));
    }
    Recordset all;
    all.open(u" select * from urunler"_s, *m_connection);
    QCOMPARE(remaining(all, u"barkod"_s), (QStringList{u"z"_s, u"a"_s, u"m"_s, u"A"_s}));
    Recordset covered;
    covered.open(u"SELECT barkod FROM urunler WHERE stok = 1"_s, *m_connection);
    QCOMPARE(remaining(covered, u"BARKOD"_s), (QStringList{u"z"_s, u"a"_s, u"m"_s, u"A"_s}));
    Recordset equal;
    equal.open(u"select * FROM urunler where barkod='A'"_s, *m_connection);
    QCOMPARE(remaining(equal, u"no"_s), (QStringList{u"2"_s, u"4"_s}));
    Recordset ordered;
    ordered.open(u"SELECT barkod FROM urunler ORDER BY barkod DESC, no DESC"_s, *m_connection);
    QCOMPARE(remaining(ordered, u"barkod"_s), (QStringList{u"z"_s, u"m"_s, u"A"_s, u"a"_s}));
}

void TestRecordset::givesValuesAsStored() {
    m_connection->execute(u"INSERT INTO urunler (barkod, urun, satis) VALUES ('0012', 'Şeker ''ığ''', 2)"_s);
    Recordset set;
    set.open(u"select *, satis * 1.5 as BirBucuk, #5/3/2021 07:05:09# as gun from urunler"_s, *m_connection);
    QCOMPARE(set.field(u"no"_s), QVariant(1LL));
    QCOMPARE(set.field(u"NO"_s), QVariant(1LL));
    QCOMPARE(set.field(u"barkod"_s), QVariant(u"0012"_s));
    QCOMPARE(set.field(u"urun"_s), QVariant(u"Şeker 'ığ'"_s));
    QCOMPARE(set.field(u"satis"_s), QVariant(2.0));
    QCOMPARE(set.field(u"stok"_s), QVariant());
    QCOMPARE(set.field(u"birbucuk"_s), QVariant(3.0));
    QCOMPARE(set.field(u"gun"_s), QVariant(u"2021-05-03 07:05:09"_s));
    QCOMPARE(wordsOf([&] { set.field(u"yok"_s); }), u"Item cannot be found in the collection: yok"_s);
    QCOMPARE(wordsOf([&] { set.field(u"rowid"_s); }), u"Item cannot be found in the collection: rowid"_s);
    Recordset sums;
    sums.open(u"select sum(satis) as satis, sum(stok) as stok  from urunler"_s, *m_connection);
    QCOMPARE(sums.field(u"satis"_s), QVariant(2.0));
    QCOMPARE(sums.field(u"stok"_s), QVariant());
    sums.moveNext();
    QVERIFY(sums.atEnd());
}

void TestRecordset::anEmptySetIsAtItsEnd() {
    Recordset set;
    set.open(u"select * from urunler where barkod='yok'"_s, *m_connection);
    QVERIFY(set.atEnd());
    const QString words = u"Either BOF or EOF is True, or the current record has been deleted."_s;
    QCOMPARE(wordsOf([&] { set.field(u"barkod"_s); }), words);
    QCOMPARE(wordsOf([&] { set.moveNext(); }), words);
    QVERIFY(set.atEnd());
    addProducts(1);
    Recordset one;
    one.open(u"select * from urunler"_s, *m_connection);
    one.moveNext();
    QVERIFY(one.atEnd());
    QCOMPARE(wordsOf([&] { one.field(u"barkod"_s); }), words);
    QCOMPARE(errorOf([&] { one.moveNext(); })->source(), m_file->source());
}

void TestRecordset::readsNothingWhenOpened() {
    addProducts(3);
    // The engine refuses to take the absolute value at the first row that it reads.
    Recordset trap;
    trap.open(u"select abs(-9223372036854775807 - 1) as x, * from urunler"_s, *m_connection);
    trap.addNew();
    trap.setField(u"barkod"_s, u"yeni"_s);
    trap.update();
    QCOMPARE(wordsOf([&] { trap.atEnd(); }), u"integer overflow"_s);
    QCOMPARE(m_file->rows(u"SELECT barkod FROM urunler WHERE no = 4"_s), QStringList{u"yeni"_s});
    // What was written behind the open is there at the first read.
    Recordset late;
    late.open(u"select * from urunler"_s, *m_connection);
    m_connection->execute(u"DELETE FROM urunler WHERE no < 4"_s);
    QCOMPARE(late.field(u"barkod"_s), u"yeni"_s);
}

void TestRecordset::aBadStatementFailsAtTheOpen_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<RefusalRow>("row");
    const auto row = [](const char* name, const QString& sql, const QString& words) {
        QTest::addRow("%s, plain", name) << QString() << RefusalRow{sql, words};
        QTest::addRow("%s, password", name) << u"gizli"_s << RefusalRow{sql, words};
    };
    row("no table", u"select * from yok"_s, u"no such table: yok"_s);
    row("no column", u"select yok from urunler"_s, u"no such column: yok"_s);
    row("syntax", u"select * frm urunler"_s, u"near \"frm\": syntax error"_s);
    row("date", u"select * from urunler where urun between #1/1/2021 25:99:99# and #1/2/2021 00:00:00#"_s,
        u"Syntax error in date in query expression '#1/1/2021 25:99:99#'."_s);
}

void TestRecordset::aBadStatementFailsAtTheOpen() {
    QFETCH(const RefusalRow, row);
    Recordset set;
    const auto error = errorOf([&] { set.open(row.sql, *m_connection); });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), row.words);
    QCOMPARE(error->source(), m_file->source());
    QVERIFY(!set.isOpen());
    set.open(u"select * from urunler"_s, *m_connection);
    QVERIFY(set.isOpen());
}

void TestRecordset::keepsItsPlaceOverWrites_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<PlaceRow>("row");
    const auto row = [](const char* name, const QString& sql, bool seesWrites) {
        QTest::addRow("%s, plain", name) << QString() << PlaceRow{sql, seesWrites};
        QTest::addRow("%s, password", name) << u"gizli"_s << PlaceRow{sql, seesWrites};
    };
    row("order of entry", u"select * from urunler"_s, true);
    row("condition", u"select * from urunler where stok > 0 or barkod = 'x'"_s, true);
    row("own order", u"select * from urunler order by stok"_s, false);
    row("distinct", u"select distinct barkod, stok from urunler"_s, false);
    row("limit", u"select * from urunler limit 100"_s, false);
}

void TestRecordset::keepsItsPlaceOverWrites() {
    QFETCH(const PlaceRow, row);
    addProducts(6);
    Recordset set;
    Recordset ended;
    set.open(row.sql, *m_connection);
    ended.open(row.sql, *m_connection);
    remaining(ended, u"barkod"_s);
    QCOMPARE(set.field(u"barkod"_s), u"b1"_s);
    m_connection->execute(u"UPDATE urunler SET urun = 'x'"_s);
    QCOMPARE(set.field(u"barkod"_s), u"b1"_s);
    set.moveNext();
    set.moveNext();
    QCOMPARE(set.field(u"barkod"_s), u"b3"_s);
    m_connection->execute(u"UPDATE urunler SET barkod = 'c4' WHERE barkod = 'b4'"_s);
    m_connection->execute(u"INSERT INTO urunler (barkod, stok) VALUES ('b7', 7)"_s);
    set.moveNext();
    const QStringList written{u"c4"_s, u"b5"_s, u"b6"_s, u"b7"_s};
    const QStringList before{u"b4"_s, u"b5"_s, u"b6"_s};
    QCOMPARE(remaining(set, u"barkod"_s), row.seesWrites ? written : before);
    QVERIFY(ended.atEnd());
}

void TestRecordset::deletesEveryRowWhileReading() {
    addProducts(5);
    Recordset set;
    set.open(u"select * from urunler"_s, *m_connection);
    QStringList seen;
    for (; !set.atEnd(); set.moveNext()) {
        seen.append(set.field(u"no"_s).toString());
        m_connection->execute(u"DELETE FROM urunler WHERE no="_s + set.field(u"no"_s).toString());
    }
    QCOMPARE(seen, (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}));
    QCOMPARE(m_file->rows(u"SELECT no FROM urunler"_s), QStringList());
}

void TestRecordset::readsViewsInTheirOrder() {
    addProducts(4);
    m_connection->execute(
        u"CREATE VIEW v AS SELECT barkod, count(*) AS adet FROM urunler GROUP BY no ORDER BY stok DESC"_s);
    Recordset set;
    set.open(u"select * from V"_s, *m_connection);
    QCOMPARE(set.field(u"barkod"_s), u"b4"_s);
    m_connection->execute(u"UPDATE urunler SET urun = 'x'"_s);
    set.moveNext();
    QCOMPARE(remaining(set, u"barkod"_s), (QStringList{u"b3"_s, u"b2"_s, u"b1"_s}));
}

void TestRecordset::readsTablesWithoutRowIds() {
    m_connection->execute(u"CREATE TABLE w (a TEXT(50) PRIMARY KEY, b DOUBLE) WITHOUT ROWID"_s);
    m_connection->execute(u"INSERT INTO w VALUES ('x', 1)"_s);
    m_connection->execute(u"INSERT INTO w VALUES ('y', 2)"_s);
    m_connection->execute(u"INSERT INTO w VALUES ('z', 3)"_s);
    Recordset set;
    set.open(u"select * from w where b > 0"_s, *m_connection);
    QCOMPARE(set.field(u"a"_s), u"x"_s);
    m_connection->execute(u"UPDATE w SET b = b + 1"_s);
    set.moveNext();
    QCOMPARE(remaining(set, u"a"_s), (QStringList{u"y"_s, u"z"_s}));
}

void TestRecordset::holdsNoLockBetweenReads() {
    addProducts(2);
    m_connection->close();
    {
        RawDatabase raw(m_file->path(), m_file->password());
        QVERIFY(raw.run(u"CREATE INDEX b ON urunler (barkod)"_s));
    }
    m_connection->open(m_file->connectionString());
    Recordset one;
    one.open(u"select * from urunler where barkod='b2'"_s, *m_connection);
    QCOMPARE(one.field(u"no"_s), QVariant(2LL));
    // Leaving the log needs the file alone: every connection but the asking one at rest.
    Recordset journal;
    journal.open(u"PRAGMA journal_mode = DELETE"_s, *m_connection);
    QCOMPARE(journal.field(u"journal_mode"_s), u"delete"_s);
    RawDatabase other(m_file->path(), m_file->password());
    QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
    QVERIFY(other.run(u"COMMIT"_s));
    addProducts(100);
    for (const QString& sql : {u"select * from urunler"_s, u"select * from urunler order by stok"_s}) {
        Recordset begun;
        begun.open(sql, *m_connection);
        QVERIFY(begun.field(u"no"_s).isValid());
        QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
        QVERIFY(other.run(u"COMMIT"_s));
    }
}

void TestRecordset::addsRows() {
    addProducts(1);
    Recordset set;
    set.open(u" select * from urunler"_s, *m_connection);
    set.addNew();
    set.setField(u"BARKOD"_s, u"O'Neil \"x\"; [y] #1/1/2021#"_s);
    set.setField(u"urun"_s, u"İĞÜŞÖÇ ığüşöç €"_s);
    set.setField(u"satis"_s, 12.34);
    set.setField(u"satis"_s, 0.1);
    set.setField(u"stok"_s, 7);
    set.update();
    set.addNew();
    set.update();
    set.addNew();
    set.setField(u"barkod"_s, u"bekleyen"_s);
    set.addNew();
    set.setField(u"urun"_s, u"son"_s);
    set.update();
    QCOMPARE(
        m_file->rows(u"SELECT * FROM urunler WHERE no > 1"_s),
        (QStringList{u"2|O'Neil \"x\"; [y] #1/1/2021#|İĞÜŞÖÇ ığüşöç €|0.1|7"_s, u"3|NULL|NULL|NULL|NULL"_s,
                     u"4|bekleyen|NULL|NULL|NULL"_s, u"5|NULL|son|NULL|NULL"_s}));
    QCOMPARE(remaining(set, u"no"_s), (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s, u"5"_s}));
}

void TestRecordset::storesEveryKindOfValue_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<ValueRow>("row");
    const auto row = [](const char* name, const QVariant& value, const QString& type, const QVariant& read) {
        QTest::addRow("%s, plain", name) << QString() << ValueRow{value, type, read};
        QTest::addRow("%s, password", name) << u"gizli"_s << ValueRow{value, type, read};
    };
    row("text", u"a"_s, u"text"_s, u"a"_s);
    row("empty text", u""_s, u"text"_s, u""_s);
    row("text never set", QString(), u"text"_s, u""_s);
    row("text of digits", u"007"_s, u"text"_s, u"007"_s);
    row("letters beyond the basic plane", u"😀"_s, u"text"_s, u"😀"_s);
    row("double", 0.1, u"real"_s, 0.1);
    row("great double", std::numeric_limits<double>::max(), u"real"_s, std::numeric_limits<double>::max());
    row("int", -5, u"integer"_s, -5LL);
    row("64 bits", 9223372036854775807LL, u"integer"_s, 9223372036854775807LL);
    row("bool", true, u"integer"_s, 1LL);
    row("null", QVariant(), u"null"_s, QVariant());
    row("bytes", QByteArray("\0\xff", 2), u"blob"_s, QByteArray("\0\xff", 2));
    row("date-time", QDateTime(QDate(2021, 5, 3), QTime(7, 5, 9, 999)), u"text"_s, u"2021-05-03 07:05:09"_s);
    row("date", QDate(2024, 2, 29), u"text"_s, u"2024-02-29 00:00:00"_s);
    row("date-time never set", QDateTime(), u"null"_s, QVariant());
}

void TestRecordset::storesEveryKindOfValue() {
    m_connection->execute(u"CREATE TABLE v (x)"_s);
    Recordset set;
    set.open(u"select x, typeof(x) as t from v"_s, *m_connection);
    set.addNew();
    QFETCH(const ValueRow, row);
    set.setField(u"x"_s, row.value);
    set.update();
    QCOMPARE(set.field(u"t"_s).toString(), row.type);
    QCOMPARE(set.field(u"x"_s), row.read);
}

void TestRecordset::addsOnlyWhereItCan() {
    const QString words = u"Operation is not allowed in this context."_s;
    Recordset set;
    set.open(u"select count(*) from urunler"_s, *m_connection);
    QCOMPARE(wordsOf([&] { set.addNew(); }), u"Current Recordset does not support updating."_s);
    set.close();
    set.open(u"select * from urunler"_s, *m_connection);
    QCOMPARE(wordsOf([&] { set.update(); }), words);
    set.addNew();
    QCOMPARE(wordsOf([&] { set.setField(u"yok"_s, 1); }), u"Item cannot be found in the collection: yok"_s);
    set.setField(u"urun"_s, u"a"_s);
    set.update();
    QCOMPARE(wordsOf([&] { set.update(); }), words);
    QCOMPARE(m_file->rows(u"SELECT urun FROM urunler"_s), QStringList{u"a"_s});
}

void TestRecordset::aFailedUpdateCanBeRepeated() {
    RawDatabase other(m_file->path(), m_file->password());
    Recordset set;
    set.open(u"select * from urunler"_s, *m_connection);
    set.addNew();
    set.setField(u"urun"_s, u"a"_s);
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    const auto error = errorOf([&] { set.update(); });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), u"database is locked"_s);
    QVERIFY(other.run(u"COMMIT"_s));
    set.update();
    QCOMPARE(m_file->rows(u"SELECT urun FROM urunler"_s), QStringList{u"a"_s});
}

void TestRecordset::opensAndClosesAgain() {
    addProducts(2);
    Recordset set;
    set.close();
    QCOMPARE(wordsOf([&] { set.atEnd(); }), u"Operation is not allowed when the object is closed."_s);
    for (int i = 0; i < 3; ++i) {
        set.open(u"select * from urunler"_s, *m_connection);
        QCOMPARE(wordsOf([&] { set.open(u"select * from urunler"_s, *m_connection); }),
                 u"Operation is not allowed when the object is open."_s);
        QCOMPARE(set.field(u"barkod"_s), u"b1"_s);
        set.addNew();
        set.close();
        QVERIFY(!set.isOpen());
    }
    set.open(u"select * from urunler"_s, *m_connection);
    QCOMPARE(wordsOf([&] { set.update(); }), u"Operation is not allowed in this context."_s);
    Connection closed;
    Recordset other;
    QCOMPARE(wordsOf([&] { other.open(u"select 1"_s, closed); }),
             u"Operation is not allowed when the object is closed."_s);
}

void TestRecordset::closesWithItsConnection() {
    addProducts(3);
    Recordset set;
    Recordset adding;
    set.open(u"select * from urunler"_s, *m_connection);
    adding.open(u"select * from urunler"_s, *m_connection);
    set.moveNext();
    adding.addNew();
    m_connection->close();
    QVERIFY(!set.isOpen());
    QVERIFY(!adding.isOpen());
    QCOMPARE(wordsOf([&] { set.moveNext(); }), u"Operation is not allowed when the object is closed."_s);
    m_connection->open(m_file->connectionString());
    set.open(u"select * from urunler"_s, *m_connection);
    QCOMPARE(set.field(u"no"_s), QVariant(1LL));
    m_connection.reset();
    QVERIFY(!set.isOpen());
}

QTEST_GUILESS_MAIN(TestRecordset)
#include "test_recordset.moc"
