#include "database/recordset.h"
#include "database/statementshape.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct ShapeRow {
    QString sql;
    QString text;  ///< null for a statement that has no shape
    QVariantList values;
};

struct SameRow {
    QString sql;
};

}  // namespace

Q_DECLARE_METATYPE(ShapeRow)
Q_DECLARE_METATYPE(SameRow)

/// Statements that are prepared once for all of their shape, and whether they still do what they say.
class TestStatementShape : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void shapes_data() {
        QTest::addColumn<ShapeRow>("row");
        const std::vector<std::pair<const char*, ShapeRow>> rows{
            {"texts and numbers",
             {u"INSERT INTO t (a,b) VALUES ('x',12.5,7,-3)"_s,
              u"INSERT INTO t (a,b) VALUES (?,?,?,-?)"_s,
              {u"x"_s, 12.5, 7LL, 3LL}}},
            {"letter case", {u" update T set a=1"_s, u" update T set a=?"_s, {1LL}}},
            {"apostrophes",
             {u"DELETE FROM t WHERE a='O''Neil'''"_s, u"DELETE FROM t WHERE a=?"_s, {u"O'Neil'"_s}}},
            {"an empty text", {u"DELETE FROM t WHERE a=''"_s, u"DELETE FROM t WHERE a=?"_s, {u""_s}}},
            {"a moment",
             {u"INSERT INTO t VALUES (#5/3/2021 07:05:09#)"_s,
              u"INSERT INTO t VALUES (?)"_s,
              {u"2021-05-03 07:05:09"_s}}},
            {"names", {u"UPDATE [t 1] SET \"b'2\"=3"_s, u"UPDATE [t 1] SET \"b'2\"=?"_s, {3LL}}},
            {"digits of a name", {u"UPDATE t1 SET b2c=3"_s, u"UPDATE t1 SET b2c=?"_s, {3LL}}},
            {"a select's condition",
             {u"SELECT 1, 'a', b FROM t WHERE a='x' AND b=2"_s,
              u"SELECT 1, 'a', b FROM t WHERE a=? AND b=2"_s,
              {u"x"_s}}},
            {"no value", {u"DELETE FROM t"_s, {}, {}}},
            {"a select without a condition", {u"SELECT 'a' FROM t"_s, {}, {}}},
            {"a pattern", {u"DELETE FROM t WHERE a LIKE '[%]'"_s, {}, {}}},
            {"a select within", {u"INSERT INTO t SELECT 'a'"_s, {}, {}}},
            {"an order by place", {u"SELECT a FROM t WHERE a='x' ORDER BY 1"_s, {}, {}}},
            {"a limit", {u"SELECT a FROM t WHERE a='x' LIMIT 1"_s, {}, {}}},
            {"a table", {u"CREATE TABLE t (a TEXT(50))"_s, {}, {}}},
            {"a text without an end", {u"DELETE FROM t WHERE a='x"_s, {}, {}}},
            {"a name without an end", {u"DELETE FROM [t WHERE a='x'"_s, {}, {}}},
            {"a date that is none", {u"DELETE FROM t WHERE a=#2/30/2021 00:00:00#"_s, {}, {}}},
            {"a date alone", {u"DELETE FROM t WHERE a=#2/3/2021#"_s, {}, {}}},
            {"a short year", {u"DELETE FROM t WHERE a=#2/3/21 00:00:00#"_s, {}, {}}},
            {"a time without minutes", {u"DELETE FROM t WHERE a=#2/3/2021 7::09#"_s, {}, {}}},
            {"a time of three digits", {u"DELETE FROM t WHERE a=#2/3/2021 007:00:09#"_s, {}, {}}},
            {"a date without an end", {u"DELETE FROM t WHERE a=#2/3/2021"_s, {}, {}}},
            {"an exponent", {u"INSERT INTO t VALUES (1e5)"_s, {}, {}}},
            {"a number too long", {u"INSERT INTO t VALUES (12345678901234567890)"_s, {}, {}}},
            {"a number without a whole part", {u"INSERT INTO t VALUES (.5)"_s, {}, {}}},
            {"a place of its own", {u"INSERT INTO t VALUES (?, 1)"_s, {}, {}}},
            {"two statements", {u"DELETE FROM t WHERE a=1; DELETE FROM t"_s, {}, {}}},
            {"a comment", {u"DELETE FROM t WHERE a=1 -- 'x'"_s, {}, {}}},
            {"a long comment", {u"DELETE /* 'x' */ FROM t WHERE a=1"_s, {}, {}}},
            {"nothing", {QString(), {}, {}}},
        };
        for (const auto& [name, row] : rows)
            QTest::newRow(name) << row;
    }
    void shapes() {
        QFETCH(const ShapeRow, row);
        const std::optional<StatementShape> shape = StatementShape::of(row.sql);
        QCOMPARE(shape.has_value(), !row.text.isNull());
        if (!shape)
            return;
        QCOMPARE(shape->text, row.text);
        QCOMPARE(shape->values, row.values);
        for (qsizetype i = 0; i < row.values.size(); ++i)
            QCOMPARE(shape->values[i].typeId(), row.values[i].typeId());
    }

    /// What the till's modules write must come to the same as through the engine alone.
    void doesWhatTheLiteralsDo_data() {
        QTest::addColumn<QString>("password");
        QTest::addColumn<SameRow>("row");
        const std::vector<std::pair<const char*, SameRow>> rows{
            {"numbers", {u"INSERT INTO t (a,b,d) VALUES (12.5,'x',-7)"_s}},
            {"a whole number for a double", {u"INSERT INTO t (a) VALUES (3)"_s}},
            {"a number for a text", {u"INSERT INTO t (b) VALUES (12.50)"_s}},
            {"a text for a number", {u"INSERT INTO t (a,d) VALUES ('12','x')"_s}},
            {"fifteen digits", {u"INSERT INTO t (a) VALUES (0.123456789012345)"_s}},
            {"letters", {u"INSERT INTO t (b) VALUES ('Şİığ ''\"[%')"_s}},
            {"a text found in another case", {u"UPDATE t SET a = a - 1 WHERE b='ABC'"_s}},
            {"a counter found by its text", {u"UPDATE t SET a = a - 1 WHERE no='2'"_s}},
            {"twice negative", {u"UPDATE t SET a = IIF(a IS NULL, 0, a) - -2.5 WHERE b='abc'"_s}},
        };
        for (const auto& [name, row] : rows) {
            QTest::addRow("%s, plain", name) << QString() << row;
            QTest::addRow("%s, password", name) << u"gizli"_s << row;
        }
    }
    void doesWhatTheLiteralsDo() {
        QFETCH(const SameRow, row);
        const QString create = u"CREATE TABLE %1 (no COUNTER, a DOUBLE, b TEXT(50), d DATETIME)"_s;
        const DatabaseFile file;
        Connection connection;
        connection.open(file.connectionString());
        for (const QString& table : {u"t"_s, u"u"_s}) {
            connection.execute(create.arg(table));
            connection.execute(u"INSERT INTO %1 (b) VALUES ('abc')"_s.arg(table));
            connection.execute(u"INSERT INTO %1 (a,b) VALUES (1,'def')"_s.arg(table));
        }
        for (int twice = 0; twice < 2; ++twice) {
            connection.execute(row.sql);
            // A statement with a comment isn't taken apart.
            QString literal = row.sql;
            connection.execute(literal.replace(u" t "_s, u" u "_s) + u" --"_s);
        }
        const QString select = u"SELECT no, a, typeof(a), b, typeof(b), d, typeof(d) FROM %1"_s;
        QCOMPARE(file.rows(select.arg(u"t"_s)), file.rows(select.arg(u"u"_s)));
        QVERIFY(StatementShape::of(row.sql));
    }

    void selectsOfOneShapeKeepApart_data() { DatabaseFile::bothKinds(); }
    void selectsOfOneShapeKeepApart() {
        const DatabaseFile file;
        Connection connection;
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE t (a DOUBLE, b TEXT(50))"_s);
        for (int i = 0; i < 100; ++i)
            connection.execute(u"INSERT INTO t VALUES (%1, '%2')"_s.arg(i).arg(i % 2 == 0 ? u"x"_s : u"y"_s));
        const auto select = [](const QString& b) { return u"SELECT a FROM t WHERE b='%1'"_s.arg(b); };
        Recordset one;
        Recordset other;
        for (int again = 0; again < 2; ++again) {
            one.open(select(u"x"_s), connection);
            other.open(select(u"Y"_s), connection);
            QCOMPARE(one.field(u"a"_s), 0.0);
            for (int i = 0; i < 50; ++i, one.moveNext(), other.moveNext()) {
                QCOMPARE(one.field(u"a"_s), 2.0 * i);
                QCOMPARE(other.field(u"a"_s), 2.0 * i + 1);
            }
            QVERIFY(one.atEnd() && other.atEnd());
            other.moveFirst();
            other.setFilter(u"a = '3'"_s);
            QCOMPARE(other.recordCount(), 1);
            one.close();
            other.close();
        }
        // Another connection gives the table another shape.
        RawDatabase raw(file.path(), file.password());
        QVERIFY(raw.run(u"DROP TABLE t"_s));
        QCOMPARE(wordsOf([&] { one.open(select(u"x"_s), connection); }), u"no such table: t"_s);
        QVERIFY(raw.run(u"CREATE TABLE t (rowid DOUBLE, b TEXT COLLATE NOCASE, a TEXT)"_s));
        QVERIFY(raw.run(u"INSERT INTO t VALUES (5, 'X', 'yeni')"_s));
        one.open(select(u"x"_s), connection);
        QCOMPARE(one.field(u"a"_s), u"yeni"_s);
        one.setField(u"a"_s, u"eski"_s);
        one.update();
        QCOMPARE(raw.rows(u"SELECT * FROM t"_s), QStringList{u"5|X|eski"_s});
    }

    void tablesMayChangeUnderAKeptStatement_data() { DatabaseFile::bothKinds(); }
    void tablesMayChangeUnderAKeptStatement() {
        const DatabaseFile file;
        Connection connection;
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE t (a DOUBLE)"_s);
        const QString insert = u"INSERT INTO t VALUES (1)"_s;
        connection.execute(insert);
        connection.execute(u"ALTER TABLE t ADD COLUMN no COUNTER"_s);
        QVERIFY(wordsOf([&] { connection.execute(insert); }).contains(u"has 2 columns"_s));
        connection.execute(u"DROP TABLE t"_s);
        QCOMPARE(wordsOf([&] { connection.execute(insert); }), u"no such table: t"_s);
        connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
        connection.execute(insert);
        QCOMPARE(file.rows(u"SELECT a, typeof(a) FROM t"_s), QStringList{u"1|text"_s});
    }
};

QTEST_GUILESS_MAIN(TestStatementShape)
#include "test_statementshape.moc"
