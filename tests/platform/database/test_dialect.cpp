#include <QTest>

#include "database/dialect.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct SqlRow {
    QString sql;
    QString found;  ///< the engine's statement, a refusal's words, the parts that were asked for
};

struct RangeRow {
    QString sql;
    dialect::RowRange range;
    QString engine;
};

struct CountRow {
    QString sql;
    QString condition;
    QString engine;
};

struct FilterRow {
    QString filter;
    QString engine;  ///< "none" where the engine can't be asked; the words of a refusal
    QVariantList values;
};

}  // namespace

Q_DECLARE_METATYPE(SqlRow)
Q_DECLARE_METATYPE(RangeRow)
Q_DECLARE_METATYPE(CountRow)
Q_DECLARE_METATYPE(FilterRow)

class TestDialect : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void translates_data();
    void translates();
    void refuses_data();
    void refuses();
    void recognisesCounters_data();
    void recognisesCounters();
    void readsASelectFromOneTable_data();
    void readsASelectFromOneTable();
    void asksForRowsAfterAnother_data();
    void asksForRowsAfterAnother();
    void leavesOutAnIdentityThatIsNotThere();
    void counts_data();
    void counts();
    void asksWhereRowsStand();
    void rendersFilters_data();
    void rendersFilters();
    void addsAColumn_data();
    void addsAColumn();
};

void TestDialect::translates_data() {
    const auto same = [](const QString& sql) { return SqlRow{sql, sql}; };
    addRows<SqlRow>(
        {{"date with time", {u"VALUES (#5/3/2021 07:05:09#)"_s, u"VALUES ('2021-05-03 07:05:09')"_s}},
         {"date without time", {u"x #12/31/2021#"_s, u"x '2021-12-31 00:00:00'"_s}},
         {"time without seconds", {u"x #1/2/2021 7:05#"_s, u"x '2021-01-02 07:05:00'"_s}},
         {"true and false",
          {u"UPDATE t SET a = True WHERE NOT b IS NOT false AND c IN (TRUE, 'true')"_s,
           u"UPDATE t SET a = 1 WHERE NOT b <> 0 IS NOT 0 AND c IN (1, 'true')"_s}},
         {"true as a name", same(u"SELECT sum(a) AS true FROM t"_s)},
         {"true in a definition", same(u"CREATE TABLE t (a DOUBLE, true DOUBLE)"_s)},
         {"leap day", {u"x #2/29/2024 23:59:59#"_s, u"x '2024-02-29 23:59:59'"_s}},
         {"two dates",
          {u"between #1/1/2021 00:00:00# and #1/2/2021 23:59:59#"_s,
           u"between '2021-01-01 00:00:00' and '2021-01-02 23:59:59'"_s}},
         {"year of three digits", {u"x #12/30/899#"_s, u"x '0899-12-30 00:00:00'"_s}},

         {"date in a string", same(u"VALUES ('#5/3/2021#')"_s)},
         {"lone hash in a string", same(u"VALUES ('No #5')"_s)},
         {"quotes doubled in a string", same(u"VALUES ('O''Neil #1/1/2021#, IIF(', 'a''')"_s)},
         {"two quotes in a row", same(u"VALUES ('''''')"_s)},
         {"IIF in a bracketed name", same(u"VALUES ([IIF(a,b])"_s)},
         {"hash in a bracketed name", same(u"VALUES ([kod#], \"kod#\", `kod#`)"_s)},
         {"string without an end", same(u"VALUES ('a #b"_s)},
         {"bracket without an end", same(u"VALUES ([a #b"_s)},
         {"numbers", same(u"VALUES (1.5E-3, .5, 12, -7.25)"_s)},
         {"Turkish letters", same(u"UPDATE ürün SET İsim='ığüşöç'"_s)},
         {"comment", same(u"/* #x# IIF(a */ DELETE FROM t -- 'o"_s)},
         {"empty", same(u""_s)},

         {"IIF",
          {u"SET stok = IIF(stok IS NULL, 0, stok) - 2"_s,
           u"SET stok = CASE WHEN stok IS NULL THEN 0 ELSE stok END - 2"_s}},
         {"IIF without blanks", {u"VALUES (iif(a,b,c))"_s, u"VALUES (CASE WHEN a THEN b ELSE c END)"_s}},
         {"IIF with a blank ahead of the parenthesis",
          {u"VALUES (IIF (a,b,c))"_s, u"VALUES (CASE WHEN a THEN b ELSE c END)"_s}},
         {"IIF ahead of a word",
          {u"VALUES (IIF(a,b,c)or d)"_s, u"VALUES (CASE WHEN a THEN b ELSE c END or d)"_s}},
         {"IIF nested",
          {u"VALUES (IIF(a, IIF(b, 1, 2), IIF(c, 3, 4)))"_s,
           u"VALUES (CASE WHEN a THEN CASE WHEN b THEN 1 ELSE 2 END "
           "ELSE CASE WHEN c THEN 3 ELSE 4 END END)"_s}},
         {"IIF with commas and parentheses in strings",
          {u"VALUES (IIF(a=',(', '),', 'IIF(1,2)'))"_s,
           u"VALUES (CASE WHEN a=',(' THEN '),' ELSE 'IIF(1,2)' END)"_s}},
         {"IIF with calls",
          {u"VALUES (IIF(max(a,b)>(1), round(c,2), (d)))"_s,
           u"VALUES (CASE WHEN max(a,b)>(1) THEN round(c,2) ELSE (d) END)"_s}},
         {"IIF with a date",
          {u"VALUES (IIF(a<#1/2/2021#,1,2))"_s,
           u"VALUES (CASE WHEN a<'2021-01-02 00:00:00' THEN 1 ELSE 2 END)"_s}},
         {"a column called iif", same(u"UPDATE t SET iif = 1"_s)},

         {"LIKE with a percent sign", {u"WHERE a LIKE '%50[%]%'"_s, u"WHERE a LIKE '%50\\%%' ESCAPE '\\'"_s}},
         {"LIKE with all three",
          {u"WHERE a like 'x[%]y[_]z[[]q]'"_s, u"WHERE a like 'x\\%y\\_z\\[q]' ESCAPE '\\'"_s}},
         {"LIKE with the escape sign in the pattern",
          {u"WHERE a LIKE 'c:\\[_]'"_s, u"WHERE a LIKE 'c:\\!_' ESCAPE '!'"_s}},
         {"LIKE with a quote",
          {u"WHERE a NOT LIKE 'O''N[_]'"_s, u"WHERE a NOT LIKE 'O''N\\_' ESCAPE '\\'"_s}},
         {"LIKE without brackets", same(u"WHERE a LIKE '%x_y%'"_s)},
         {"LIKE with another bracket", same(u"WHERE a LIKE '[abc]'"_s)},
         {"LIKE with an escape of its own", same(u"WHERE a LIKE '[%]' ESCAPE '!'"_s)},
         {"brackets in a compared string", same(u"WHERE a = '[%]'"_s)},

         {"create",
          {u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE, c DATETIME)"_s,
           u"CREATE TABLE t (no INTEGER PRIMARY KEY AUTOINCREMENT, a TEXT(50) COLLATE NOCASE, "
           "b DOUBLE, c DATETIME)"_s}},
         {"create with brackets, in lower case",
          {u"create table [t] ([text] text, [counter] counter, [a(b] Text (5) not null)"_s,
           u"create table [t] ([text] text COLLATE NOCASE, [counter] INTEGER PRIMARY KEY AUTOINCREMENT, "
           "[a(b] Text (5) COLLATE NOCASE not null)"_s}},
         {"create with names called as types",
          {u"CREATE TABLE IF NOT EXISTS text (text DOUBLE, counter DOUBLE, UNIQUE (text, counter))"_s,
           u"CREATE TABLE IF NOT EXISTS text (text DOUBLE, counter DOUBLE, UNIQUE (text, counter))"_s}},
         {"create with a collation",
          same(u"CREATE TABLE t (a TEXT(50) NOT NULL COLLATE BINARY, b DOUBLE)"_s)},
         {"collation of the next column",
          {u"CREATE TABLE t (a TEXT, b TEXT COLLATE BINARY)"_s,
           u"CREATE TABLE t (a TEXT COLLATE NOCASE, b TEXT COLLATE BINARY)"_s}},
         {"add a text column",
          {u"ALTER TABLE [t] ADD COLUMN [text] TEXT(100)"_s,
           u"ALTER TABLE [t] ADD COLUMN [text] TEXT(100) COLLATE NOCASE"_s}},
         {"add without the word COLUMN",
          {u"alter table t add a text"_s, u"alter table t add a text COLLATE NOCASE"_s}},
         {"add a number", same(u"ALTER TABLE [t] ADD COLUMN [satis] DOUBLE"_s)},
         {"types elsewhere", same(u"UPDATE counter SET text = counter"_s)},

         {"order of entry", {u"select * from urunler"_s, u"select * from urunler ORDER BY rowid"_s}},
         {"order of entry, blanks around",
          {u" select * from urunler where barkod='1' "_s,
           u" select * from urunler where barkod='1' ORDER BY rowid "_s}},
         {"order of entry ahead of a limit",
          {u"SELECT a FROM [t x] LIMIT 5"_s, u"SELECT a FROM [t x] ORDER BY rowid LIMIT 5"_s}},
         {"order of entry ahead of a semicolon",
          {u"SELECT a FROM t AS u ;"_s, u"SELECT a FROM t AS u ORDER BY rowid ;"_s}},
         {"order of entry over a select in the condition",
          {u"SELECT a FROM t WHERE a IN (SELECT max(b) FROM u GROUP BY c)"_s,
           u"SELECT a FROM t WHERE a IN (SELECT max(b) FROM u GROUP BY c) ORDER BY rowid"_s}},
         {"a column called order",
          {u"SELECT [order], [group] FROM t"_s, u"SELECT [order], [group] FROM t ORDER BY rowid"_s}},
         {"own order", same(u"SELECT a FROM t ORDER BY a DESC"_s)},
         {"aggregate",
          same(u"select sum(adet) as adet, sum(kar) as kar  from satislar where tarih between 1 and 2"_s)},
         {"aggregate in an expression", same(u"SELECT (1 + count(*)) FROM t"_s)},
         {"group", same(u"SELECT a FROM t GROUP BY a"_s)},
         {"distinct", same(u"SELECT DISTINCT a FROM t"_s)},
         {"join", same(u"SELECT a FROM t INNER JOIN u ON t.a = u.a"_s)},
         {"two tables", same(u"SELECT a FROM t, u WHERE t.a = u.a"_s)},
         {"union", same(u"SELECT a FROM t UNION ALL SELECT a FROM u"_s)},
         {"select in FROM", same(u"SELECT a FROM (SELECT a FROM t)"_s)},
         {"no table", same(u"SELECT 1"_s)},
         {"insert from a select", same(u"INSERT INTO t SELECT a FROM u"_s)}});
}

void TestDialect::translates() {
    QFETCH(const SqlRow, row);
    QCOMPARE(dialect::translate(row.sql, u"rowid"_s), row.found);
}

void TestDialect::refuses_data() {
    const auto date = [](const QString& literal) {
        return SqlRow{u"select * from t where d = "_s + literal,
                      u"Syntax error in date in query expression '"_s + literal + u"'."_s};
    };
    const QString arguments = u"Wrong number of arguments used with function IIF in query."_s;
    addRows<SqlRow>({{"hours, minutes and seconds out of range", date(u"#1/2/2021 25:99:99#"_s)},
                     {"minute 60", date(u"#1/2/2021 10:60:00#"_s)},
                     {"day 30 of February", date(u"#2/30/2021 00:00:00#"_s)},
                     {"leap day of a common year", date(u"#2/29/2021#"_s)},
                     {"month 13", date(u"#13/1/2021#"_s)},
                     {"month 0", date(u"#0/1/2021#"_s)},
                     {"year of two digits", date(u"#1/1/21#"_s)},
                     {"date with dots", date(u"#1.2.2021#"_s)},
                     {"words", date(u"#yesterday#"_s)},
                     {"empty", date(u"##"_s)},
                     {"date without an end",
                      {u"where d = #1/2/2021"_s, u"Syntax error in date in query expression '#1/2/2021'."_s}},
                     {"IIF of two", {u"VALUES (IIF(a, b))"_s, arguments}},
                     {"IIF of four", {u"VALUES (IIF(a, b, c, d))"_s, arguments}},
                     {"IIF of none", {u"VALUES (IIF())"_s, arguments}},
                     {"IIF without an end", {u"VALUES IIF(a, b, c"_s, arguments}}});
}

void TestDialect::refuses() {
    QFETCH(const SqlRow, row);
    const auto error = errorOf([&] { dialect::translate(row.sql); });
    QVERIFY(error);
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
    QCOMPARE(error->description(), row.found);
}

void TestDialect::recognisesCounters_data() {
    addRows<SqlRow>(
        {{"brackets", {u"ALTER TABLE [urunler] ADD COLUMN [no] COUNTER"_s, u"urunler.no"_s}},
         {"bare, lower case", {u" alter table urunler add column no counter "_s, u"urunler.no"_s}},
         {"without COLUMN", {u"ALTER TABLE urunler ADD no COUNTER;"_s, u"urunler.no"_s}},
         {"blank in the names", {u"ALTER TABLE [a b] ADD COLUMN [c d] COUNTER"_s, u"a b.c d"_s}},
         {"column called COLUMN", {u"ALTER TABLE t ADD COLUMN [COLUMN] COUNTER"_s, u"t.COLUMN"_s}},
         {"quoted", {u"ALTER TABLE \"a\"\"b\" ADD COLUMN c COUNTER"_s, u"a\"b.c"_s}},
         {"another type", {u"ALTER TABLE [t] ADD COLUMN [counter] DOUBLE"_s, u""_s}},
         {"more behind the type", {u"ALTER TABLE t ADD COLUMN a COUNTER NOT NULL"_s, u""_s}},
         {"create", {u"CREATE TABLE t (no COUNTER)"_s, u""_s}},
         {"in a string", {u"INSERT INTO t VALUES ('ALTER TABLE t ADD COLUMN c COUNTER')"_s, u""_s}},
         {"empty", {u""_s, u""_s}}});
}

void TestDialect::recognisesCounters() {
    QFETCH(const SqlRow, row);
    const auto counter = dialect::addCounterColumn(row.sql);
    const QString found = counter ? QString(counter->table + u'.' + counter->column) : u""_s;
    QCOMPARE(found, row.found);
}

void TestDialect::readsASelectFromOneTable_data() {
    QTest::addColumn<SqlRow>("row");
    const auto row = [](const char* name, const QString& sql, const QString& parts) {
        QTest::newRow(name) << SqlRow{sql, parts};
    };
    row("plain", u" select * from urunler"_s, u"urunler, all columns"_s);
    row("columns", u" select *, a from urunler"_s, u"urunler"_s);
    row("condition", u" select * from urunler where barkod='1' "_s, u"urunler, all columns, conditional"_s);
    row("brackets", u"SELECT a FROM [a b] u ORDER BY x"_s, u"a b, ordered"_s);
    row("limit", u"SELECT a FROM t LIMIT 3"_s, u"t, limited"_s);
    row("schema", u"SELECT * FROM main.[t]"_s, u"t, all columns"_s);
    row("from in a string", u"SELECT 'x from y' FROM t"_s, u"t"_s);
    row("aggregate", u"SELECT sum(a) FROM t"_s, u"none"_s);
    row("join", u"SELECT * FROM t LEFT JOIN u ON 1"_s, u"none"_s);
    row("comma", u"SELECT * FROM t, u"_s, u"none"_s);
    row("comma behind an alias", u"SELECT * FROM t a, u b"_s, u"none"_s);
    row("union", u"SELECT * FROM t UNION SELECT * FROM u"_s, u"none"_s);
    row("group", u"SELECT a FROM t GROUP BY a"_s, u"none"_s);
    row("no select", u"DELETE FROM t"_s, u"none"_s);
    row("no table", u"SELECT * FROM"_s, u"none"_s);
}

void TestDialect::readsASelectFromOneTable() {
    QFETCH(const SqlRow, row);
    const auto select = dialect::tableSelect(row.sql);
    QStringList parts{select ? select->table : u"none"_s};
    if (select && select->allColumns)
        parts.append(u"all columns"_s);
    if (select && select->conditional)
        parts.append(u"conditional"_s);
    if (select && select->ordered)
        parts.append(u"ordered"_s);
    if (select && select->limited)
        parts.append(u"limited"_s);
    QCOMPARE(parts.join(u", "_s), row.found);
}

void TestDialect::asksForRowsAfterAnother_data() {
    QTest::addColumn<RangeRow>("row");
    const auto row = [](const char* name, const RangeRow& range) { QTest::newRow(name) << range; };
    row("all rows", {u"select * from t"_s, {}, u"select *, id from t ORDER BY id"_s});
    row("after a row",
        {u"select * from t"_s, {7, {}, 5}, u"select *, id from t WHERE id > 7 ORDER BY id LIMIT 5"_s});
    row("condition, its own too",
        {u"select a from t u where a=1 or b=2 ;"_s,
         {7, u"c = ?"_s},
         u"select a, id from t u where ( a=1 or b=2) AND c = ? AND id > 7 ORDER BY id ;"_s});
    row("own order", {u"select a from t order by a"_s, {}, u"select a, id from t order by a"_s});
    row("own order, condition", {u"select a from t order by a"_s,
                                 {std::nullopt, u"c = ?"_s},
                                 u"select a, id from t WHERE c = ? order by a"_s});
    row("own order, after a row", {u"select a from t order by a"_s, {7}, {}});
    row("limit", {u"select a from t limit 3"_s, {}, u"select a, id from t ORDER BY id limit 3"_s});
    row("limit, condition", {u"select a from t limit 3"_s, {std::nullopt, u"c = ?"_s}, {}});
    row("limit, cut", {u"select a from t limit 3"_s, {std::nullopt, {}, 2}, {}});
    row("aggregate", {u"select count(*) from t"_s, {}, {}});
    row("by identity",
        {u"select a from t x where b between 1 and 2"_s,
         {3, u"id <= 9"_s, 5, true},
         u"select a, id from t x NOT INDEXED where ( b between 1 and 2) AND id <= 9 AND id > 3 "
         u"ORDER BY id LIMIT 5"_s});
}

void TestDialect::asksForRowsAfterAnother() {
    QFETCH(const RangeRow, row);
    QCOMPARE(dialect::translateAfterRow(row.sql, u"id"_s, row.range).value_or(QString()), row.engine);
}

void TestDialect::leavesOutAnIdentityThatIsNotThere() {
    const QString sql = u"select * from v where a = 1"_s;
    QCOMPARE(dialect::translate(sql), sql);
    QCOMPARE(dialect::translateAfterRow(sql, {}).value_or(QString()), sql);
    QCOMPARE(dialect::translateAfterRow(sql, {}, {std::nullopt, u"b = ?"_s}).value_or(QString()),
             u"select * from v where ( a = 1) AND b = ?"_s);
    QVERIFY(!dialect::translateAfterRow(sql, {}, {std::nullopt, {}, 5}));
}

void TestDialect::counts_data() {
    QTest::addColumn<CountRow>("row");
    QTest::newRow("plain") << CountRow{u"select * from t"_s, {}, u"SELECT count(*) from t"_s};
    QTest::newRow("columns and order")
        << CountRow{u"select a, (b) from t order by a;"_s, {}, u"SELECT count(*) from t"_s};
    QTest::newRow("conditions") << CountRow{u"select * from t where a=1 or b=2"_s, u"c = ?"_s,
                                            u"SELECT count(*) from t where ( a=1 or b=2) AND c = ?"_s};
    QTest::newRow("limit") << CountRow{u"select * from t limit 2"_s, {}, {}};
    QTest::newRow("aggregate") << CountRow{u"select sum(a) from t"_s, {}, {}};
}

void TestDialect::counts() {
    QFETCH(const CountRow, row);
    QCOMPARE(dialect::translateCount(row.sql, row.condition).value_or(QString()).simplified(), row.engine);
}

void TestDialect::asksWhereRowsStand() {
    QCOMPARE(dialect::translateExtent(u"select a from t where b = 1 order by a"_s, u"id"_s)
                 .value_or(QString())
                 .simplified(),
             u"SELECT min(id), max(id), count(*) from t where b = 1"_s);
    QVERIFY(!dialect::translateExtent(u"select a from t limit 2"_s, u"id"_s));
}

void TestDialect::rendersFilters_data() {
    QTest::addColumn<FilterRow>("row");
    const auto row = [](const char* name, const FilterRow& filter) { QTest::newRow(name) << filter; };
    const QString mismatch = u"Data type mismatch in criteria expression."_s;
    row("no term", {u""_s, u""_s, {}});
    row("text", {u"barkod = 'O''Neil'"_s, u"\"barkod\" = ? COLLATE NOCASE"_s, {u"O'Neil"_s}});
    row("empty text", {u"barkod = ''"_s, u"\"barkod\" = ? COLLATE NOCASE"_s, {u""_s}});
    row("brackets are signs in an equality",
        {u"barkod = '[%]'"_s, u"\"barkod\" = ? COLLATE NOCASE"_s, {u"[%]"_s}});
    row("LIKE without wildcards", {u"BARKOD like '12[%]'"_s, u"\"barkod\" = ? COLLATE NOCASE"_s, {u"12%"_s}});
    row("LIKE",
        {u"barkod LIKE '%a[%]_\\[[]b[_]'"_s, u"\"barkod\" LIKE ? ESCAPE '\\'"_s, {u"%a\\%_\\\\[b\\_"_s}});
    row("counter", {u"no like '17'"_s, u"\"no\" = ?"_s, {17LL}});
    row("counter of another form", {u"no = '17.0'"_s, u"\"no\" = ?"_s, {17.0}});
    row("counter with wildcards", {u"no like '%7'"_s, u"none"_s, {}});
    row("no counter", {u"no like ''"_s, mismatch, {}});
    row("number", {u"stok LIKE '12.5'"_s, u"\"stok\" = ?"_s, {12.5}});
    row("number with wildcards", {u"stok LIKE '1%'"_s, u"none"_s, {}});
    row("no number", {u"stok LIKE '12,5'"_s, mismatch, {}});
    row("no finite number", {u"stok = 'inf'"_s, mismatch, {}});
    row("moment", {u"tarih = '2026-05-03 10:15:00'"_s, u"\"tarih\" = ?"_s, {u"2026-05-03 10:15:00"_s}});
    row("two terms", {u"stok = '1' AND barkod = 'x'"_s,
                      u"\"stok\" = ? AND \"barkod\" = ? COLLATE NOCASE"_s,
                      {1LL, u"x"_s}});
    row("a wrong term behind wildcards",
        {u"no like '%' AND yok = 'x'"_s, u"Item cannot be found in the collection: yok"_s, {}});
}

void TestDialect::rendersFilters() {
    QFETCH(const FilterRow, row);
    const TableShape shape{u"urunler"_s,
                           {{u"no"_s, ColumnType::counter},
                            {u"barkod"_s, ColumnType::text, 50},
                            {u"stok"_s, ColumnType::number},
                            {u"tarih"_s, ColumnType::moment}},
                           u"id"_s};
    QString sql;
    QVariantList values;
    const QString words = wordsOf([&] {
        const auto condition = dialect::condition(RowFilter::parse(row.filter), shape);
        sql = condition ? condition->sql : u"none"_s;
        values = condition ? condition->values : QVariantList();
    });
    QCOMPARE(words == u"no error"_s ? sql : words, row.engine);
    QCOMPARE(values, row.values);
}

void TestDialect::addsAColumn_data() {
    addRows<SqlRow>({{"plain", {u"CREATE TABLE t (a, b TEXT(5))"_s, u"CREATE TABLE t (a, b TEXT(5), X)"_s}},
                     {"table constraint",
                      {u"CREATE TABLE t(a,b,UNIQUE(a,b),CHECK(a>0))"_s,
                       u"CREATE TABLE t(a,b,X, UNIQUE(a,b),CHECK(a>0))"_s}},
                     {"comment ahead of the end",
                      {u"CREATE TABLE t (a -- one, (two\n)"_s, u"CREATE TABLE t (a, X -- one, (two\n)"_s}},
                     {"virtual", {u"CREATE VIRTUAL TABLE t USING fts4(a)"_s, u""_s}}});
}

void TestDialect::addsAColumn() {
    QFETCH(const SqlRow, row);
    QCOMPARE(dialect::withColumn(row.sql, u"X"_s).value_or(u""_s), row.found);
}

QTEST_GUILESS_MAIN(TestDialect)
#include "test_dialect.moc"
