#include "database/bulkwriter.h"

#include <QDateTime>

#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestBulkWriter : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keepsAllRowsOrNone_data() { DatabaseFile::allKinds(); }
    void keepsAllRowsOrNone();
    void fails_data() { DatabaseFile::bothKinds(); }
    void fails();
};

void TestBulkWriter::keepsAllRowsOrNone() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50), b DATETIME)"_s);
    connection.execute(u"CREATE TABLE [iki kelime] (x DOUBLE)"_s);
    const QString rows = u"SELECT a, b FROM t ORDER BY no"_s;
    for (const bool finishes : {false, true}) {
        BulkWriter writer(connection);
        writer.into(u"t"_s, {u"a"_s, u"b"_s});
        writer.add({u"O'Neil"_s, QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9))});
        writer.add({QString(), QVariant()});
        writer.into(u"iki kelime"_s, {u"x"_s});
        writer.add({1.5});
        QCOMPARE(file.rows(rows), QStringList());
        if (finishes)
            writer.finish();
    }
    QCOMPARE(file.rows(rows), (QStringList{u"O'Neil|2026-05-03 07:05:09"_s, u"|NULL"_s}));
    QCOMPARE(file.rows(u"SELECT x FROM \"iki kelime\""_s), QStringList{u"1.5"_s});
}

void TestBulkWriter::fails() {
    const DatabaseFile file;
    Connection connection(50ms);
    QVERIFY(errorOf([&] { BulkWriter closed(connection); }));
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (a TEXT(50) UNIQUE)"_s);
    {
        BulkWriter writer(connection);
        QCOMPARE(wordsOf([&] { writer.into(u"yok"_s, {u"a"_s}); }), u"no such table: yok"_s);
        writer.into(u"t"_s, {u"a"_s});
        writer.add({u"x"_s});
        QCOMPARE(wordsOf([&] { writer.add({u"X"_s}); }), u"UNIQUE constraint failed: t.a"_s);
    }
    QCOMPARE(file.rows(u"SELECT * FROM t"_s), QStringList());
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    QCOMPARE(wordsOf([&] { BulkWriter locked(connection); }), u"database is locked"_s);
    QVERIFY(other.run(u"COMMIT"_s));
    connection.execute(u"INSERT INTO t VALUES ('y')"_s);
}

QTEST_GUILESS_MAIN(TestBulkWriter)
#include "test_bulkwriter.moc"
