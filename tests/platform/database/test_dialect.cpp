#include <QTest>

#include "database/dialect.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestDialect : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void translates_data();
    void translates();
    void refuses_data();
    void refuses();
    void recognisesCounters_data();
    void recognisesCounters();
    void findsTheSingleTable_data();
    void findsTheSingleTable();
    void placesACursor_data();
    void placesACursor();
    void addsAColumn_data();
    void addsAColumn();
    void likeMatchesBareSigns_data();
    void likeMatchesBareSigns();
};

void TestDialect::translates_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("engine");
    const auto same = [](const char* name, const QString& sql) { QTest::newRow(name) << sql << sql; };

    QTest::newRow("date with time") << u"VALUES (#5/3/2021 07:05:09#)"_s
                                    << u"VALUES ('2021-05-03 07:05:09')"_s;
    QTest::newRow("date without time") << u"x #12/31/2021#"_s << u"x '2021-12-31 00:00:00'"_s;
    QTest::newRow("time without seconds") << u"x #1/2/2021 7:05#"_s << u"x '2021-01-02 07:05:00'"_s;
    QTest::newRow("leap day") << u"x #2/29/2024 23:59:59#"_s << u"x '2024-02-29 23:59:59'"_s;
    QTest::newRow("two dates") << u"between #1/1/2021 00:00:00# and #1/2/2021 23:59:59#"_s
                               << u"between '2021-01-01 00:00:00' and '2021-01-02 23:59:59'"_s;
    QTest::newRow("year of three digits") << u"x #12/30/899#"_s << u"x '0899-12-30 00:00:00'"_s;

    same("date in a string", u"VALUES ('#5/3/2021#')"_s);
    same("lone hash in a string", u"VALUES ('No #5')"_s);
    same("quotes doubled in a string", u"VALUES ('O''Neil #1/1/2021#, IIF(', 'a''')"_s);
    same("two quotes in a row", u"VALUES ('''''')"_s);
    same("IIF in a bracketed name", u"VALUES ([IIF(a,b])"_s);
    same("hash in a bracketed name", u"VALUES ([kod#], \"kod#\", `kod#`)"_s);
    same("string without an end", u"VALUES ('a #b"_s);
    same("bracket without an end", u"VALUES ([a #b"_s);
    same("numbers", u"VALUES (1.5E-3, .5, 12, -7.25)"_s);
    same("Turkish letters", u"UPDATE ürün SET İsim='ığüşöç'"_s);
    same("comment", u"/* #x# IIF(a */ DELETE FROM t -- 'o"_s);
    same("empty", u""_s);

    QTest::newRow("IIF") << u"SET stok = IIF(stok IS NULL, 0, stok) - 2"_s
                         << u"SET stok = CASE WHEN stok IS NULL THEN 0 ELSE stok END - 2"_s;
    QTest::newRow("IIF without blanks")
        << u"VALUES (iif(a,b,c))"_s << u"VALUES (CASE WHEN a THEN b ELSE c END)"_s;
    QTest::newRow("IIF with a blank ahead of the parenthesis")
        << u"VALUES (IIF (a,b,c))"_s << u"VALUES (CASE WHEN a THEN b ELSE c END)"_s;
    QTest::newRow("IIF ahead of a word")
        << u"VALUES (IIF(a,b,c)or d)"_s << u"VALUES (CASE WHEN a THEN b ELSE c END or d)"_s;
    QTest::newRow("IIF nested")
        << u"VALUES (IIF(a, IIF(b, 1, 2), IIF(c, 3, 4)))"_s
        << u"VALUES (CASE WHEN a THEN CASE WHEN b THEN 1 ELSE 2 END ELSE CASE WHEN c THEN 3 ELSE 4 END END)"_s;
    QTest::newRow("IIF with commas and parentheses in strings")
        << u"VALUES (IIF(a=',(', '),', 'IIF(1,2)'))"_s
        << u"VALUES (CASE WHEN a=',(' THEN '),' ELSE 'IIF(1,2)' END)"_s;
    QTest::newRow("IIF with calls") << u"VALUES (IIF(max(a,b)>(1), round(c,2), (d)))"_s
                                    << u"VALUES (CASE WHEN max(a,b)>(1) THEN round(c,2) ELSE (d) END)"_s;
    QTest::newRow("IIF with a date") << u"VALUES (IIF(a<#1/2/2021#,1,2))"_s
                                     << u"VALUES (CASE WHEN a<'2021-01-02 00:00:00' THEN 1 ELSE 2 END)"_s;
    same("a column called iif", u"UPDATE t SET iif = 1"_s);

    QTest::newRow("LIKE with a percent sign")
        << u"WHERE a LIKE '%50[%]%'"_s << u"WHERE a LIKE '%50\\%%' ESCAPE '\\'"_s;
    QTest::newRow("LIKE with all three")
        << u"WHERE a like 'x[%]y[_]z[[]q]'"_s << u"WHERE a like 'x\\%y\\_z\\[q]' ESCAPE '\\'"_s;
    QTest::newRow("LIKE with the escape sign in the pattern")
        << u"WHERE a LIKE 'c:\\[_]'"_s << u"WHERE a LIKE 'c:\\!_' ESCAPE '!'"_s;
    QTest::newRow("LIKE with a quote")
        << u"WHERE a NOT LIKE 'O''N[_]'"_s << u"WHERE a NOT LIKE 'O''N\\_' ESCAPE '\\'"_s;
    same("LIKE without brackets", u"WHERE a LIKE '%x_y%'"_s);
    same("LIKE with another bracket", u"WHERE a LIKE '[abc]'"_s);
    same("LIKE with an escape of its own", u"WHERE a LIKE '[%]' ESCAPE '!'"_s);
    same("brackets in a compared string", u"WHERE a = '[%]'"_s);

    QTest::newRow("create")
        << u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE, c DATETIME)"_s
        << u"CREATE TABLE t (no INTEGER PRIMARY KEY AUTOINCREMENT, a TEXT(50) COLLATE NOCASE, "
           "b DOUBLE, c DATETIME)"_s;
    QTest::newRow("create with brackets, in lower case")
        << u"create table [t] ([text] text, [counter] counter, [a(b] Text (5) not null)"_s
        << u"create table [t] ([text] text COLLATE NOCASE, [counter] INTEGER PRIMARY KEY AUTOINCREMENT, "
           "[a(b] Text (5) COLLATE NOCASE not null)"_s;
    QTest::newRow("create with names called as types")
        << u"CREATE TABLE IF NOT EXISTS text (text DOUBLE, counter DOUBLE, UNIQUE (text, counter))"_s
        << u"CREATE TABLE IF NOT EXISTS text (text DOUBLE, counter DOUBLE, UNIQUE (text, counter))"_s;
    same("create with a collation", u"CREATE TABLE t (a TEXT(50) NOT NULL COLLATE BINARY, b DOUBLE)"_s);
    QTest::newRow("collation of the next column")
        << u"CREATE TABLE t (a TEXT, b TEXT COLLATE BINARY)"_s
        << u"CREATE TABLE t (a TEXT COLLATE NOCASE, b TEXT COLLATE BINARY)"_s;
    QTest::newRow("add a text column") << u"ALTER TABLE [t] ADD COLUMN [text] TEXT(100)"_s
                                       << u"ALTER TABLE [t] ADD COLUMN [text] TEXT(100) COLLATE NOCASE"_s;
    QTest::newRow("add without the word COLUMN")
        << u"alter table t add a text"_s << u"alter table t add a text COLLATE NOCASE"_s;
    same("add a number", u"ALTER TABLE [t] ADD COLUMN [satis] DOUBLE"_s);
    same("types elsewhere", u"UPDATE counter SET text = counter"_s);

    QTest::newRow("order of entry") << u"select * from urunler"_s
                                    << u"select * from urunler ORDER BY rowid"_s;
    QTest::newRow("order of entry, blanks around")
        << u" select * from urunler where barkod='1' "_s
        << u" select * from urunler where barkod='1' ORDER BY rowid "_s;
    QTest::newRow("order of entry ahead of a limit")
        << u"SELECT a FROM [t x] LIMIT 5"_s << u"SELECT a FROM [t x] ORDER BY rowid LIMIT 5"_s;
    QTest::newRow("order of entry ahead of a semicolon")
        << u"SELECT a FROM t AS u ;"_s << u"SELECT a FROM t AS u ORDER BY rowid ;"_s;
    QTest::newRow("order of entry over a select in the condition")
        << u"SELECT a FROM t WHERE a IN (SELECT max(b) FROM u GROUP BY c)"_s
        << u"SELECT a FROM t WHERE a IN (SELECT max(b) FROM u GROUP BY c) ORDER BY rowid"_s;
    QTest::newRow("a column called order")
        << u"SELECT [order], [group] FROM t"_s << u"SELECT [order], [group] FROM t ORDER BY rowid"_s;
    same("own order", u"SELECT a FROM t ORDER BY a DESC"_s);
    same("aggregate",
         u"select sum(adet) as adet, sum(kar) as kar  from satislar where tarih between 1 and 2"_s);
    same("aggregate in an expression", u"SELECT (1 + count(*)) FROM t"_s);
    same("group", u"SELECT a FROM t GROUP BY a"_s);
    same("distinct", u"SELECT DISTINCT a FROM t"_s);
    same("join", u"SELECT a FROM t INNER JOIN u ON t.a = u.a"_s);
    same("two tables", u"SELECT a FROM t, u WHERE t.a = u.a"_s);
    same("union", u"SELECT a FROM t UNION ALL SELECT a FROM u"_s);
    same("select in FROM", u"SELECT a FROM (SELECT a FROM t)"_s);
    same("no table", u"SELECT 1"_s);
    same("insert from a select", u"INSERT INTO t SELECT a FROM u"_s);
}

void TestDialect::translates() {
    QFETCH(const QString, sql);
    QTEST(dialect::translate(sql), "engine");
}

void TestDialect::refuses_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("words");
    const auto date = [](const char* name, const QString& literal) {
        QTest::newRow(name) << QString(u"select * from t where d = "_s + literal)
                            << QString(u"Syntax error in date in query expression '"_s + literal + u"'."_s);
    };
    date("hours, minutes and seconds out of range", u"#1/2/2021 25:99:99#"_s);
    date("minute 60", u"#1/2/2021 10:60:00#"_s);
    date("day 30 of February", u"#2/30/2021 00:00:00#"_s);
    date("leap day of a common year", u"#2/29/2021#"_s);
    date("month 13", u"#13/1/2021#"_s);
    date("month 0", u"#0/1/2021#"_s);
    date("year of two digits", u"#1/1/21#"_s);
    date("date with dots", u"#1.2.2021#"_s);
    date("words", u"#yesterday#"_s);
    date("empty", u"##"_s);
    QTest::newRow("date without an end")
        << u"where d = #1/2/2021"_s << u"Syntax error in date in query expression '#1/2/2021'."_s;
    const QString arguments = u"Wrong number of arguments used with function IIF in query."_s;
    QTest::newRow("IIF of two") << u"VALUES (IIF(a, b))"_s << arguments;
    QTest::newRow("IIF of four") << u"VALUES (IIF(a, b, c, d))"_s << arguments;
    QTest::newRow("IIF of none") << u"VALUES (IIF())"_s << arguments;
    QTest::newRow("IIF without an end") << u"VALUES IIF(a, b, c"_s << arguments;
}

void TestDialect::refuses() {
    QFETCH(const QString, sql);
    const auto error = errorOf([&] { dialect::translate(sql); });
    QVERIFY(error);
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
    QTEST(error->description(), "words");
}

void TestDialect::recognisesCounters_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("found");
    QTest::newRow("brackets") << u"ALTER TABLE [urunler] ADD COLUMN [no] COUNTER"_s << u"urunler.no"_s;
    QTest::newRow("bare, lower case") << u" alter table urunler add column no counter "_s << u"urunler.no"_s;
    QTest::newRow("without COLUMN") << u"ALTER TABLE urunler ADD no COUNTER;"_s << u"urunler.no"_s;
    QTest::newRow("blank in the names") << u"ALTER TABLE [a b] ADD COLUMN [c d] COUNTER"_s << u"a b.c d"_s;
    QTest::newRow("column called COLUMN") << u"ALTER TABLE t ADD COLUMN [COLUMN] COUNTER"_s << u"t.COLUMN"_s;
    QTest::newRow("quoted") << u"ALTER TABLE \"a\"\"b\" ADD COLUMN c COUNTER"_s << u"a\"b.c"_s;
    QTest::newRow("another type") << u"ALTER TABLE [t] ADD COLUMN [counter] DOUBLE"_s << u""_s;
    QTest::newRow("more behind the type") << u"ALTER TABLE t ADD COLUMN a COUNTER NOT NULL"_s << u""_s;
    QTest::newRow("create") << u"CREATE TABLE t (no COUNTER)"_s << u""_s;
    QTest::newRow("in a string") << u"INSERT INTO t VALUES ('ALTER TABLE t ADD COLUMN c COUNTER')"_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void TestDialect::recognisesCounters() {
    QFETCH(const QString, sql);
    const auto counter = dialect::addCounterColumn(sql);
    const QString found = counter ? QString(counter->table + u'.' + counter->column) : u""_s;
    QTEST(found, "found");
}

void TestDialect::findsTheSingleTable_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("table");
    QTest::newRow("plain") << u" select * from urunler"_s << u"urunler"_s;
    QTest::newRow("condition") << u" select * from urunler where barkod='1' "_s << u"urunler"_s;
    QTest::newRow("brackets") << u"SELECT * FROM [a b] u ORDER BY x"_s << u"a b"_s;
    QTest::newRow("schema") << u"SELECT * FROM main.[t]"_s << u"t"_s;
    QTest::newRow("from in a string") << u"SELECT 'x from y' FROM t"_s << u"t"_s;
    QTest::newRow("aggregate") << u"SELECT sum(a) FROM t"_s << u""_s;
    QTest::newRow("join") << u"SELECT * FROM t LEFT JOIN u ON 1"_s << u""_s;
    QTest::newRow("comma") << u"SELECT * FROM t, u"_s << u""_s;
    QTest::newRow("comma behind an alias") << u"SELECT * FROM t a, u b"_s << u""_s;
    QTest::newRow("union") << u"SELECT * FROM t UNION SELECT * FROM u"_s << u""_s;
    QTest::newRow("group") << u"SELECT a FROM t GROUP BY a"_s << u""_s;
    QTest::newRow("no select") << u"DELETE FROM t"_s << u""_s;
    QTest::newRow("no table") << u"SELECT * FROM"_s << u""_s;
}

void TestDialect::findsTheSingleTable() {
    QFETCH(const QString, sql);
    QTEST(dialect::singleTable(sql).value_or(u""_s), "table");
}

void TestDialect::placesACursor_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("next");
    QTest::newRow("all rows") << u"select * from t"_s << u"select *, rowid from t ORDER BY rowid"_s
                              << u"select *, rowid from t WHERE rowid > 7 ORDER BY rowid"_s;
    QTest::newRow("condition")
        << u"select a from t u where a=1 or b=2 ;"_s
        << u"select a, rowid from t u where a=1 or b=2 ORDER BY rowid ;"_s
        << u"select a, rowid from t u where ( a=1 or b=2) AND rowid > 7 ORDER BY rowid ;"_s;
    QTest::newRow("own order") << u"select a from t order by a"_s << u""_s << u""_s;
    QTest::newRow("limit") << u"select a from t limit 3"_s << u""_s << u""_s;
    QTest::newRow("aggregate") << u"select count(*) from t"_s << u""_s << u""_s;
}

void TestDialect::placesACursor() {
    QFETCH(const QString, sql);
    QTEST(dialect::translatePlaced(sql).value_or(u""_s), "first");
    QTEST(dialect::translatePlaced(sql, 7).value_or(u""_s), "next");
}

void TestDialect::addsAColumn_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QString>("result");
    QTest::newRow("plain") << u"CREATE TABLE t (a, b TEXT(5))"_s << u"CREATE TABLE t (a, b TEXT(5), X)"_s;
    QTest::newRow("table constraint") << u"CREATE TABLE t(a,b,UNIQUE(a,b),CHECK(a>0))"_s
                                      << u"CREATE TABLE t(a,b,X, UNIQUE(a,b),CHECK(a>0))"_s;
    QTest::newRow("comment ahead of the end")
        << u"CREATE TABLE t (a -- one, (two\n)"_s << u"CREATE TABLE t (a, X -- one, (two\n)"_s;
    QTest::newRow("virtual") << u"CREATE VIRTUAL TABLE t USING fts4(a)"_s << u""_s;
}

void TestDialect::addsAColumn() {
    QFETCH(const QString, sql);
    QTEST(dialect::withColumn(sql, u"X"_s).value_or(u""_s), "result");
}

void TestDialect::likeMatchesBareSigns_data() {
    DatabaseFile::bothKinds();
}

void TestDialect::likeMatchesBareSigns() {
    const DatabaseFile file;
    const QString text = u"VALUES ('%1' LIKE '%2')"_s;
    RawDatabase raw(file.path(), file.password());
    const auto matches = [&](const QString& value, const QString& pattern) {
        return raw.rows(dialect::translate(text.arg(value, pattern))) == QStringList{u"1"_s};
    };
    QVERIFY(matches(u"50% off"_s, u"%0[%] %"_s));
    QVERIFY(!matches(u"500 off"_s, u"%0[%] %"_s));
    QVERIFY(matches(u"a_b"_s, u"a[_]b"_s));
    QVERIFY(!matches(u"axb"_s, u"a[_]b"_s));
    QVERIFY(matches(u"a[b]"_s, u"A[[]b]"_s));
    QVERIFY(matches(u"c:\\x_"_s, u"c:\\%[_]"_s));
    QVERIFY(matches(u"O''N_"_s, u"o''n[_]"_s));
}

QTEST_GUILESS_MAIN(TestDialect)
#include "test_dialect.moc"
