#include <QElapsedTimer>
#include <QProcess>

#include "database/dialect.h"
#include "database/recordset.h"
#include "database/waiting.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString createProducts =
    u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), urun TEXT(50), alis DOUBLE, satis DOUBLE, stok DOUBLE)"_s;
const QString createSales =
    u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, barkod TEXT(50), adet DOUBLE, toplam DOUBLE)"_s;

struct FailureRow {
    QString sql;
    QString words;
};

QStringList described(const QList<TableInfo>& tables) {
    QStringList names;
    for (const TableInfo& table : tables) {
        names.append(table.name + u'|' + table.type);
    }
    return names;
}

}  // namespace

Q_DECLARE_METATYPE(FailureRow)

class TestConnection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void storesWhatStatementsSay_data() { DatabaseFile::bothKinds(); }
    void storesWhatStatementsSay();
    void failsInTheEnginesWords_data();
    void failsInTheEnginesWords();
    void ignoresLetterCaseThroughTheIndex_data() { DatabaseFile::bothKinds(); }
    void ignoresLetterCaseThroughTheIndex();
    void listsTables_data() { DatabaseFile::bothKinds(); }
    void listsTables();
    void twoConnectionsShareAFile_data() { DatabaseFile::allKinds(); }
    void twoConnectionsShareAFile();
    void waitsFiveSecondsForAWriter_data() { DatabaseFile::bothKinds(); }
    void waitsFiveSecondsForAWriter();
    void idlingMakesACopyWhole_data() { DatabaseFile::bothKinds(); }
    void idlingMakesACopyWhole();
    void idlingNeverWaits_data() { DatabaseFile::bothKinds(); }
    void idlingNeverWaits();
};

void TestConnection::storesWhatStatementsSay() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(createProducts);
    connection.execute(createSales);
    connection.execute(
        u"INSERT INTO urunler (barkod,urun,satis) VALUES ('869','O''Neil IIF(1,2) #5# Şİığ',12.5)"_s);
    connection.execute(u"INSERT INTO urunler (barkod,stok) VALUES ('870',3)"_s);
    connection.execute(u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - 1.25 WHERE barkod='869'"_s);
    connection.execute(u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - -2 WHERE barkod='870'"_s);
    connection.execute(u"INSERT INTO satislar (tarih,barkod,adet) VALUES (#5/3/2021 07:05:09#,'869',1)"_s);
    connection.execute(u"DELETE FROM satislar WHERE tarih < #5/3/2021 07:05:09#"_s);
    connection.close();
    QCOMPARE(file.rows(u"SELECT no, barkod, urun, alis, satis, stok FROM urunler"_s),
             (QStringList{u"1|869|O'Neil IIF(1,2) #5# Şİığ|NULL|12.5|-1.25"_s, u"2|870|NULL|NULL|NULL|5"_s}));
    QCOMPARE(file.rows(u"SELECT tarih, typeof(tarih), typeof(adet) FROM satislar"_s),
             QStringList{u"2021-05-03 07:05:09|text|real"_s});
}

void TestConnection::failsInTheEnginesWords_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<FailureRow>("row");
    const auto row = [](const char* name, const QString& sql, const QString& words) {
        QTest::addRow("%s, plain", name) << QString() << FailureRow{sql, words};
        QTest::addRow("%s, password", name) << u"gizli"_s << FailureRow{sql, words};
    };
    row("no table", u"DELETE FROM nichts"_s, u"no such table: nichts"_s);
    row("no column", u"UPDATE urunler SET nichts = 1"_s, u"no such column: nichts"_s);
    row("syntax", u"DELETE urunler"_s, u"near \"urunler\": syntax error"_s);
    row("no statement", u"gibberish"_s, u"near \"gibberish\": syntax error"_s);
    row("string without an end", u"INSERT INTO urunler (urun) VALUES ('x)"_s,
        u"unrecognized token: \"'x)\""_s);
    row("date", u"DELETE FROM urunler WHERE urun = #2/30/2021#"_s,
        u"Syntax error in date in query expression '#2/30/2021#'."_s);
    row("table that exists", createProducts, u"table urunler already exists"_s);
    QTest::newRow("table named as a view, plain")
        << QString() << FailureRow{u"CREATE TABLE v (a DOUBLE)"_s, u"view v already exists"_s};
    QTest::newRow("table named as a view, password")
        << u"gizli"_s << FailureRow{u"CREATE TABLE v (a DOUBLE)"_s, u"table v already exists"_s};
    row("constraint", u"INSERT INTO urunler (no) VALUES (1)"_s, u"UNIQUE constraint failed: urunler.no"_s);
    row("two statements", u"DELETE FROM urunler; DELETE FROM urunler"_s,
        u"Unable to execute multiple statements at a time"_s);
}

void TestConnection::failsInTheEnginesWords() {
    QFETCH(const FailureRow, row);
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(createProducts);
    connection.execute(u"CREATE VIEW v AS SELECT urun FROM urunler"_s);
    connection.execute(u"INSERT INTO urunler (urun) VALUES ('bir')"_s);
    const auto error = errorOf([&] { connection.execute(row.sql); });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), row.words);
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
    QCOMPARE(error->source(), file.source());
    QVERIFY(connection.isOpen());
    QCOMPARE(file.rows(u"SELECT urun FROM urunler"_s), QStringList{u"bir"_s});
}

void TestConnection::ignoresLetterCaseThroughTheIndex() {
    const DatabaseFile file;
    file.execute({createProducts, createSales, u"CREATE INDEX b ON urunler (barkod)"_s,
                  u"CREATE INDEX t ON satislar (tarih)"_s,
                  u"INSERT INTO urunler (barkod) VALUES ('abC-1')"_s});
    RawDatabase raw(file.path(), file.password());
    const dialect::RowRange chunk{std::nullopt, {}, 32};
    const auto engineSql = [](const QString& sql, const dialect::RowRange& range) {
        return dialect::translateAfterRow(sql, u"rowid"_s, range).value_or(QString());
    };
    const QString byCode = engineSql(u"select * from urunler where barkod='ABc-1'"_s, chunk);
    QCOMPARE(raw.rows(byCode), QStringList{u"1|abC-1|NULL|NULL|NULL|NULL|1"_s});
    const QString plan = raw.rows(u"EXPLAIN QUERY PLAN "_s + byCode).join(u'\n');
    QVERIFY2(plan.contains(u"USING INDEX b (barkod=?)"_s), qPrintable(plan));
    QVERIFY2(!plan.contains(u"TEMP B-TREE"_s), qPrintable(plan));
    const QString byDate = engineSql(
        u"select * from satislar where tarih between #1/1/2021 00:00:00# and #1/2/2021 23:59:59#"_s, chunk);
    const QString datePlan = raw.rows(u"EXPLAIN QUERY PLAN "_s + byDate).join(u'\n');
    QVERIFY2(datePlan.contains(u"USING INDEX t (tarih>? AND tarih<?)"_s), qPrintable(datePlan));
}

void TestConnection::listsTables() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    QCOMPARE(described(connection.tables()), QStringList{u"sqlite_master|SYSTEM TABLE"_s});
    connection.execute(createProducts);
    connection.execute(u"CREATE TABLE [iki kelime] (a TEXT(50))"_s);
    connection.execute(u"CREATE VIEW Liste AS SELECT urun FROM urunler"_s);
    connection.execute(u"CREATE INDEX b ON urunler (barkod)"_s);
    QCOMPARE(described(connection.tables()),
             (QStringList{u"sqlite_master|SYSTEM TABLE"_s, u"urunler|TABLE"_s,
                          u"sqlite_sequence|SYSTEM TABLE"_s, u"iki kelime|TABLE"_s, u"Liste|VIEW"_s}));
}

void TestConnection::twoConnectionsShareAFile() {
    const DatabaseFile file;
    Connection reading;
    Connection writing;
    reading.open(file.connectionString());
    writing.open(file.connectionString());
    writing.execute(createProducts);
    QVERIFY(reading.shape(u"urunler"_s).indexOf(u"stok"_s) >= 0);
    writing.execute(u"INSERT INTO urunler (barkod) VALUES ('1')"_s);
    writing.execute(u"INSERT INTO urunler (barkod) VALUES ('2')"_s);
    writing.execute(u"INSERT INTO urunler (barkod) VALUES ('3')"_s);
    Recordset set;
    set.open(u"select * from urunler"_s, reading);
    QCOMPARE(set.field(u"barkod"_s), u"1"_s);
    writing.execute(u"UPDATE urunler SET barkod = 'x' WHERE barkod = '1'"_s);
    reading.execute(u"UPDATE urunler SET stok = 5 WHERE barkod = '3'"_s);
    set.moveNext();
    QCOMPARE(set.field(u"barkod"_s), u"2"_s);
    QCOMPARE(file.rows(u"SELECT barkod, stok FROM urunler ORDER BY no"_s),
             (QStringList{u"x|NULL"_s, u"2|NULL"_s, u"3|5"_s}));
}

void TestConnection::waitsFiveSecondsForAWriter() {
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (a DOUBLE)"_s});
    Connection connection;
    connection.open(file.connectionString());
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    QElapsedTimer timer;
    timer.start();
    QList<qint64> signs;
    setWaitSign([&] { signs.append(timer.elapsed()); });
    const auto error = errorOf([&] { connection.execute(u"INSERT INTO t VALUES (1)"_s); });
    const qint64 waited = timer.elapsed();
    QVERIFY(error);
    QCOMPARE(signs.size(), 1);
    QVERIFY2(signs.first() < 1000, qPrintable(QString::number(signs.first())));
    QCOMPARE(enginesWords(error->description()), u"database is locked"_s);
    QVERIFY2(waited >= 4900 && waited < 20000, qPrintable(QString::number(waited)));
    QVERIFY(other.run(u"COMMIT"_s));
    connection.execute(u"INSERT INTO t VALUES (2)"_s);
    QCOMPARE(signs.size(), 1);  // nothing to wait for
    setWaitSign({});
    QCOMPARE(file.rows(u"SELECT a FROM t"_s), QStringList{u"2"_s});
}

void TestConnection::idlingMakesACopyWhole() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (a DOUBLE)"_s);
    for (int i = 1; i <= 3; ++i) {
        connection.execute(u"INSERT INTO t VALUES (%1)"_s.arg(i));
    }
    Recordset reading;
    reading.open(u"select * from t"_s, connection);
    QCOMPARE(reading.field(u"a"_s).toInt(), 1);
    connection.execute(u"INSERT INTO t VALUES (4)"_s);
    reading.moveNext();
    connection.idle();
    const QString copy = file.folder() + u"/copy.data"_s;
    // Copying by another process: reading the file in this one would drop the engine's locks.
    QCOMPARE(QProcess::execute(u"cp"_s, {file.path(), copy}), 0);
    QCOMPARE(RawDatabase(copy, file.password()).rows(u"SELECT a FROM t"_s),
             (QStringList{u"1"_s, u"2"_s, u"3"_s, u"4"_s}));
    reading.moveNext();
    QCOMPARE(reading.field(u"a"_s).toInt(), 3);
}

void TestConnection::idlingNeverWaits() {
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (a DOUBLE)"_s, u"INSERT INTO t VALUES (1)"_s});
    Connection connection;
    connection.open(file.connectionString());
    RawDatabase reader(file.path(), file.password());
    QVERIFY(reader.run(u"BEGIN"_s) && reader.run(u"SELECT * FROM t"_s));
    RawDatabase writer(file.path(), file.password());
    connection.execute(u"INSERT INTO t VALUES (2)"_s);
    QVERIFY(writer.run(u"BEGIN IMMEDIATE"_s));
    QElapsedTimer timer;
    timer.start();
    connection.idle();
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
}

QTEST_GUILESS_MAIN(TestConnection)
#include "test_connection.moc"
