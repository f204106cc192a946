#include "database/recordset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString catalogue = u"SELECT type, name, sql FROM sqlite_master WHERE name <> 'sqlite_sequence'"_s;

struct RefusalRow {
    QString create;
    QString sql;
    QString words;
};

}  // namespace

Q_DECLARE_METATYPE(RefusalRow)

class TestCounter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void numbersTheRows_data() { DatabaseFile::bothKinds(); }
    void numbersTheRows();
    void keepsWhatHangsOnTheTable_data() { DatabaseFile::bothKinds(); }
    void keepsWhatHangsOnTheTable();
    void refuses_data();
    void refuses();
    void aFailureLeavesTheTable_data() { DatabaseFile::bothKinds(); }
    void aFailureLeavesTheTable();
    void keepsThePlaceOfRecordsets_data() { DatabaseFile::bothKinds(); }
    void keepsThePlaceOfRecordsets();
};

void TestCounter::numbersTheRows() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE [Ürün listesi] (barkod TEXT(50), satis DOUBLE, x)"_s);
    connection.execute(u"INSERT INTO [Ürün listesi] VALUES ('c', 1.5, 'metin')"_s);
    connection.execute(u"INSERT INTO [Ürün listesi] VALUES ('silinen', 0, 0)"_s);
    connection.execute(u"INSERT INTO [Ürün listesi] VALUES ('a', NULL, 7)"_s);
    connection.execute(u"INSERT INTO [Ürün listesi] VALUES ('b', 2, x'00ff')"_s);
    connection.execute(u"DELETE FROM [Ürün listesi] WHERE barkod = 'silinen'"_s);
    connection.execute(u"ALTER TABLE [ÜRüN LISTESI] ADD COLUMN [no] COUNTER"_s);
    QCOMPARE(connection.shape(u"Ürün listesi"_s).indexOf(u"no"_s), 3);
    connection.execute(u"INSERT INTO [Ürün listesi] (barkod) VALUES ('d')"_s);
    connection.execute(u"DELETE FROM [Ürün listesi] WHERE barkod = 'd'"_s);
    connection.execute(u"INSERT INTO [Ürün listesi] (barkod) VALUES ('e')"_s);
    QCOMPARE(
        file.rows(u"SELECT barkod, typeof(satis), typeof(x), no FROM [Ürün listesi]"_s),
        (QStringList{u"c|real|text|1"_s, u"a|null|integer|2"_s, u"b|real|blob|3"_s, u"e|null|null|5"_s}));
    QCOMPARE(file.rows(u"SELECT count(*) FROM [Ürün listesi] WHERE barkod = 'A'"_s), QStringList{u"1"_s});
    QCOMPARE(file.rows(u"PRAGMA table_info([Ürün listesi])"_s),
             (QStringList{u"0|barkod|TEXT(50)|0|NULL|0"_s, u"1|satis|DOUBLE|0|NULL|0"_s, u"2|x||0|NULL|0"_s,
                          u"3|no|INTEGER|0|NULL|1"_s}));
}

void TestCounter::keepsWhatHangsOnTheTable() {
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (a TEXT(50) NOT NULL, b DOUBLE DEFAULT 3, UNIQUE (a))"_s,
                  u"CREATE TABLE log (a TEXT(50))"_s, u"CREATE INDEX i ON t (b)"_s,
                  u"CREATE VIEW v AS SELECT a FROM t"_s,
                  u"CREATE TRIGGER r AFTER INSERT ON t BEGIN INSERT INTO log VALUES (new.a); END"_s,
                  u"CREATE TRIGGER s AFTER INSERT ON log BEGIN UPDATE t SET b = b + 1 WHERE a = new.a; END"_s,
                  u"INSERT INTO t (a) VALUES ('x')"_s});
    const QStringList before = file.rows(
        u"SELECT type, name, sql FROM sqlite_master WHERE name IN ('i','v','r','s') ORDER BY name"_s);
    QCOMPARE(before.size(), 4);
    file.execute({u"ALTER TABLE t ADD COLUMN no COUNTER"_s, u"INSERT INTO t (a) VALUES ('y')"_s});
    QCOMPARE(
        file.rows(
            u"SELECT type, name, sql FROM sqlite_master WHERE name IN ('i','v','r','s') ORDER BY name"_s),
        before);
    QCOMPARE(file.rows(u"SELECT a, b, no FROM t"_s), (QStringList{u"x|4|1"_s, u"y|4|2"_s}));
    QCOMPARE(file.rows(u"SELECT a FROM log"_s), (QStringList{u"x"_s, u"y"_s}));
    QCOMPARE(file.rows(u"SELECT a FROM v"_s), (QStringList{u"x"_s, u"y"_s}));
    QVERIFY(!RawDatabase(file.path(), file.password()).run(u"INSERT INTO t (a) VALUES ('X')"_s));
    QCOMPARE(file.rows(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
}

void TestCounter::refuses_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<RefusalRow>("row");
    const auto row = [](const char* name, const QString& create, const QString& sql, const QString& words) {
        QTest::addRow("%s, plain", name) << QString() << RefusalRow{create, sql, words};
        QTest::addRow("%s, password", name) << u"gizli"_s << RefusalRow{create, sql, words};
    };
    const QString key = u"table \"t\" has more than one primary key"_s;
    row("counter under another name", u"CREATE TABLE t (sira COUNTER, a TEXT(50))"_s,
        u"ALTER TABLE [t] ADD COLUMN [no] COUNTER"_s, key);
    row("another key", u"CREATE TABLE t (a TEXT(50) PRIMARY KEY)"_s, u"ALTER TABLE t ADD COLUMN no COUNTER"_s,
        key);
    row("key of two columns", u"CREATE TABLE t (a TEXT(50), b DOUBLE, PRIMARY KEY (a, b))"_s,
        u"ALTER TABLE t ADD COLUMN no COUNTER"_s, key);
    row("column exists", u"CREATE TABLE t (a TEXT(50), NO DOUBLE)"_s,
        u"ALTER TABLE t ADD COLUMN no COUNTER"_s, u"duplicate column name: no"_s);
    row("no table", u"CREATE TABLE u (a TEXT(50))"_s, u"ALTER TABLE t ADD COLUMN no COUNTER"_s,
        u"no such table: t"_s);
    row("view", u"CREATE VIEW t AS SELECT 'x' AS a"_s, u"ALTER TABLE t ADD COLUMN no COUNTER"_s,
        u"Cannot add a column to a view"_s);
    row("system table", u"CREATE TABLE t (no COUNTER)"_s,
        u"ALTER TABLE sqlite_sequence ADD COLUMN no COUNTER"_s,
        u"table sqlite_sequence may not be dropped"_s);
}

void TestCounter::refuses() {
    QFETCH(const RefusalRow, row);
    const DatabaseFile file;
    file.execute({row.create});
    RawDatabase(file.path(), file.password()).run(u"INSERT INTO t (a) VALUES ('x')"_s);
    const QStringList schema = file.rows(catalogue);
    const QStringList rows = file.rows(u"SELECT * FROM t"_s);
    Connection connection;
    connection.open(file.connectionString());
    const auto error = errorOf([&] { connection.execute(row.sql); });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), row.words);
    QCOMPARE(error->source(), file.source());
    QCOMPARE(file.rows(catalogue), schema);
    QCOMPARE(file.rows(u"SELECT * FROM t"_s), rows);
    connection.execute(u"CREATE TABLE afterwards (a TEXT(50))"_s);
    QVERIFY(connection.shape(u"kovanix_rebuild"_s).columns.isEmpty());
}

void TestCounter::aFailureLeavesTheTable() {
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (a TEXT(50))"_s, u"INSERT INTO t VALUES ('x')"_s,
                  u"INSERT INTO t VALUES ('y')"_s, u"CREATE INDEX i ON t (a)"_s});
    // The row that the rebuild fails at is found after the table has been dropped and made again.
    {
        RawDatabase raw(file.path(), file.password());
        QVERIFY(raw.run(u"PRAGMA writable_schema = ON"_s));
        QVERIFY(
            raw.run(u"UPDATE sqlite_master SET sql = 'CREATE TABLE t (a TEXT(50) COLLATE NOCASE, CHECK (a <> "
                    u"''y''))' "
                    "WHERE name = 't'"_s));
    }
    const QStringList schema = file.rows(catalogue);
    Connection connection(200ms);
    connection.open(file.connectionString());
    const QString words = wordsOf([&] { connection.execute(u"ALTER TABLE t ADD COLUMN no COUNTER"_s); });
    QVERIFY2(words.startsWith(u"CHECK constraint failed"_s), qPrintable(words));
    QCOMPARE(file.rows(catalogue), schema);
    QCOMPARE(file.rows(u"SELECT * FROM t"_s), (QStringList{u"x"_s, u"y"_s}));
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    QCOMPARE(wordsOf([&] { connection.execute(u"ALTER TABLE t ADD COLUMN no COUNTER"_s); }),
             u"database is locked"_s);
    QVERIFY(other.run(u"ROLLBACK"_s));
    connection.execute(u"INSERT INTO t VALUES ('z')"_s);
    QCOMPARE(file.rows(u"SELECT * FROM t"_s), (QStringList{u"x"_s, u"y"_s, u"z"_s}));
}

void TestCounter::keepsThePlaceOfRecordsets() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    for (const QString& a : {u"x"_s, u"y"_s, u"z"_s}) {
        connection.execute(u"INSERT INTO t VALUES ('%1')"_s.arg(a));
    }
    Recordset set;
    set.open(u"select * from t"_s, connection);
    QCOMPARE(set.field(u"a"_s), u"x"_s);
    connection.execute(u"ALTER TABLE t ADD COLUMN no COUNTER"_s);
    set.moveNext();
    QCOMPARE(set.field(u"a"_s), u"y"_s);
}

QTEST_GUILESS_MAIN(TestCounter)
#include "test_counter.moc"
