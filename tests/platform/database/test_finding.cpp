#include <memory>

#include "database/recordset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// What is asked of a set, and the numbers of the rows that match.
struct CriterionRow {
    QString sql;
    QString criterion;
    QStringList numbers;
};

QStringList numbersOf(Recordset& set) {
    QStringList numbers;
    for (; !set.atEnd(); set.moveNext())
        numbers.append(set.field(u"no"_s).toString());
    return numbers;
}

const QString noCurrentRow = u"Either BOF or EOF is True, or the current record has been deleted."_s;

}  // namespace

Q_DECLARE_METATYPE(CriterionRow)

class TestFinding : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void findsWhatTheFilterLetsThrough_data();
    void findsWhatTheFilterLetsThrough();
    void findsFromTheCurrentRowOn_data() { DatabaseFile::allKinds(); }
    void findsFromTheCurrentRowOn();
    void aMissLeavesNoRow_data() { DatabaseFile::allKinds(); }
    void aMissLeavesNoRow();
    void aRefusalLeavesNoRow_data() { DatabaseFile::allKinds(); }
    void aRefusalLeavesNoRow();
    void aRowThatCantBeStoredLeavesNoRowToDelete_data() { DatabaseFile::bothKinds(); }
    void aRowThatCantBeStoredLeavesNoRowToDelete();
    void filtersAnew_data() { DatabaseFile::allKinds(); }
    void filtersAnew();
    void countsRows_data() { DatabaseFile::bothKinds(); }
    void countsRows();
    void walksThroughManyChunks_data() { DatabaseFile::allKinds(); }
    void walksThroughManyChunks();
    void readsNothingButTheRow_data() { DatabaseFile::bothKinds(); }
    void readsNothingButTheRow();

private:
    void addNumbered(int count);

    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<Connection> m_connection;
};

void TestFinding::init() {
    m_file = std::make_unique<DatabaseFile>();
    m_connection = std::make_unique<Connection>(50ms);
    m_connection->open(m_file->connectionString());
    m_connection->execute(u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE, c DATETIME)"_s);
}

void TestFinding::cleanup() {
    m_connection.reset();
    m_file.reset();
}

void TestFinding::addNumbered(int count) {
    m_connection->execute(
        u"INSERT INTO t (a, b) WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n "
        "WHERE i < %1) SELECT 'a' || i, i / 2.0 FROM n"_s.arg(count));
}

void TestFinding::findsWhatTheFilterLetsThrough_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<CriterionRow>("row");
    const auto row = [](const char* name, const QString& sql, const QString& criterion,
                        const QStringList& numbers) {
        QTest::addRow("%s, plain", name) << QString() << CriterionRow{sql, criterion, numbers};
        QTest::addRow("%s, password", name) << u"gizli"_s << CriterionRow{sql, criterion, numbers};
    };
    const QString all = u" select * from t"_s;
    const QString some = u"select * from t where no > 1 or b = 0.5"_s;
    const QString ordered = u"select * from t order by no desc"_s;
    const QString limited = u"select * from t limit 3"_s;
    const QString columns = u"select no, a as b, b as a from t"_s;
    const QString view = u"select * from v"_s;
    row("counter", all, u"no like '2'"_s, {u"2"_s});
    row("counter, another form", all, u"no = '2.0'"_s, {u"2"_s});
    row("counter, wildcards", all, u"no like '%'"_s, {u"1"_s, u"2"_s, u"3"_s, u"4"_s});
    row("text, the case of ASCII letters ignored", all, u"a = 'aB%'"_s, {u"1"_s, u"2"_s});
    row("text, bracketed sign", all, u"a like 'ab[%]'"_s, {u"1"_s, u"2"_s});
    row("text, wildcard", all, u"a like '%b_'"_s, {u"1"_s, u"2"_s});
    row("text, apostrophe", all, u"a = 'O''Neil'"_s, {u"3"_s});
    row("number", all, u"b = '0.5'"_s, {u"1"_s, u"3"_s});
    row("number, wildcard", all, u"b like '0%'"_s, {u"1"_s, u"3"_s});
    row("moment", all, u"c like '2026-05-03%'"_s, {u"4"_s});
    row("two terms", all, u"b = '0.5' AND a = 'AB%'"_s, {u"1"_s});
    row("null matches nothing", all, u"a like '%' AND no = '4'"_s, {});
    row("no term", all, u""_s, {u"1"_s, u"2"_s, u"3"_s, u"4"_s});
    row("beside a condition", some, u"a = 'ab%'"_s, {u"1"_s, u"2"_s});
    row("own order", ordered, u"a = 'ab%'"_s, {u"2"_s, u"1"_s});
    row("behind a limit", limited, u"b like '0%'"_s, {u"1"_s, u"3"_s});
    row("behind a limit, equality", limited, u"no = '4'"_s, {});
    row("names given anew", columns, u"b = 'O''Neil'"_s, {u"3"_s});
    row("names given anew, number", columns, u"a = '0.5'"_s, {u"1"_s, u"3"_s});
    row("view", view, u"a = 'ab%'"_s, {u"2"_s, u"1"_s});
}

void TestFinding::findsWhatTheFilterLetsThrough() {
    QFETCH(const CriterionRow, row);
    for (const QString& values : {u"'ab%', 0.5, NULL"_s, u"'AB%', 1, NULL"_s, u"'O''Neil', 0.5, NULL"_s,
                                  u"NULL, 7, #5/3/2026 07:05:09#"_s})
        m_connection->execute(u"INSERT INTO t (a, b, c) VALUES ("_s + values + u')');
    m_connection->execute(u"CREATE VIEW v AS SELECT no, a FROM t ORDER BY no DESC"_s);
    Recordset filtered;
    filtered.open(row.sql, *m_connection);
    filtered.setFilter(row.criterion);
    QCOMPARE(filtered.recordCount(), row.numbers.size());
    QCOMPARE(numbersOf(filtered), row.numbers);
    Recordset searched;
    searched.open(row.sql, *m_connection);
    QStringList found;
    while (searched.find(row.criterion)) {
        found.append(searched.field(u"no"_s).toString());
        searched.moveNext();
    }
    QCOMPARE(found, row.numbers);
}

void TestFinding::findsFromTheCurrentRowOn() {
    addNumbered(100);
    Recordset set;
    set.open(u"select * from t"_s, *m_connection);
    QVERIFY(set.find(u"a like 'a5%'"_s));
    QCOMPARE(set.field(u"no"_s), QVariant(5LL));
    QVERIFY(set.find(u"a like 'a5%'"_s));
    QCOMPARE(set.field(u"no"_s), QVariant(5LL));
    set.moveNext();
    QCOMPARE(set.field(u"no"_s), QVariant(6LL));
    QVERIFY(set.find(u"a like 'a5%'"_s));
    QCOMPARE(set.field(u"no"_s), QVariant(50LL));
    set.deleteCurrent();
    QVERIFY(set.find(u"a like 'a5%'"_s));
    QCOMPARE(set.field(u"no"_s), QVariant(51LL));
    QVERIFY(!set.find(u"no = '5'"_s));
    set.moveFirst();
    QVERIFY(set.find(u"no = '5'"_s));
}

void TestFinding::aMissLeavesNoRow() {
    addNumbered(3);
    for (const QString& sql : {u"select * from t"_s, u"select * from t order by no"_s}) {
        Recordset set;
        set.open(sql, *m_connection);
        QVERIFY(!set.find(u"a = 'yok'"_s));
        QVERIFY(set.atEnd());
        QCOMPARE(wordsOf([&] { set.deleteCurrent(); }), noCurrentRow);
        QCOMPARE(wordsOf([&] { set.setField(u"a"_s, 1); }), noCurrentRow);
        QCOMPARE(set.recordCount(), 3);
        set.moveFirst();
        QCOMPARE(set.field(u"no"_s), QVariant(1LL));
    }
}

void TestFinding::aRefusalLeavesNoRow() {
    addNumbered(3);
    for (const QString& wrong : {u"yok = '1'"_s, u"no like '1"_s, u"no ? '1'"_s, u"b like '1,5'"_s}) {
        for (const bool read : {false, true}) {
            Recordset set;
            set.open(u"select * from t"_s, *m_connection);
            QCOMPARE(read && set.atEnd(), false);
            QVERIFY(errorOf([&] { set.find(wrong); }));
            QVERIFY(set.atEnd());
            QCOMPARE(wordsOf([&] { set.deleteCurrent(); }), noCurrentRow);
            set.moveFirst();
            QVERIFY(errorOf([&] { set.setFilter(wrong); }));
            // Not even by going there does the first row become the one that is deleted.
            set.moveFirst();
            QCOMPARE(set.recordCount(), 0);
            QVERIFY(set.atEnd());
            QVERIFY(!set.find(u"no = '1'"_s));
            QCOMPARE(wordsOf([&] { set.deleteCurrent(); }), noCurrentRow);
            QCOMPARE(wordsOf([&] { set.setField(u"a"_s, 1); }), noCurrentRow);
            set.setFilter(u""_s);
            QCOMPARE(numbersOf(set), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
        }
    }
    QCOMPARE(m_file->rows(u"SELECT count(*) FROM t"_s), QStringList{u"3"_s});
}

void TestFinding::aRowThatCantBeStoredLeavesNoRowToDelete() {
    addNumbered(3);
    RawDatabase other(m_file->path(), m_file->password());
    for (const bool filter : {true, false}) {
        Recordset set;
        set.open(u"select * from t"_s, *m_connection);
        set.setField(u"a"_s, u"x"_s);
        QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
        const QString wanted = u"no = '3'"_s;
        QVERIFY(errorOf([&] { filter ? set.setFilter(wanted) : static_cast<void>(set.find(wanted)); }));
        QVERIFY(other.run(u"COMMIT"_s));
        QCOMPARE(wordsOf([&] { set.deleteCurrent(); }), noCurrentRow);
    }
    QCOMPARE(m_file->rows(u"SELECT count(*) FROM t"_s), QStringList{u"3"_s});
}

void TestFinding::filtersAnew() {
    addNumbered(10);
    Recordset set;
    set.open(u"select * from t"_s, *m_connection);
    set.moveNext();
    set.setFilter(u"a = 'A7'"_s);
    QCOMPARE(set.field(u"no"_s), QVariant(7LL));
    set.setFilter(u"b like '5'"_s);
    QCOMPARE(numbersOf(set), QStringList{u"10"_s});
    set.setFilter(u"no like '1%'"_s);
    QVERIFY(set.find(u"no = '10'"_s));
    QVERIFY(!set.find(u"no = '1'"_s));
    set.setFilter(u""_s);
    QCOMPARE(set.recordCount(), 10);
}

void TestFinding::countsRows() {
    addNumbered(100);
    const auto count = [this](const QString& sql) {
        Recordset set;
        set.open(sql, *m_connection);
        return set.recordCount();
    };
    QCOMPARE(count(u"select * from t"_s), 100);
    QCOMPARE(count(u"select * from t where a = 'A7'"_s), 1);
    QCOMPARE(count(u"select a, b from t where no > 20 or no < 5 order by b;"_s), 84);
    QCOMPARE(count(u"select * from t limit 40"_s), 40);
    QCOMPARE(count(u"select distinct round(b) as r from t"_s), 50);
    QCOMPARE(count(u"select sum(b) as b from t"_s), 1);
    Recordset set;
    set.open(u"select * from t where no <= 90"_s, *m_connection);
    set.moveNext();
    QCOMPARE(set.recordCount(), 90);
    set.deleteCurrent();
    QCOMPARE(set.recordCount(), 89);
    m_connection->execute(u"DELETE FROM t WHERE no > 80"_s);
    QCOMPARE(set.recordCount(), 79);
    while (!set.atEnd())
        set.moveNext();
    QCOMPARE(set.recordCount(), 79);
}

void TestFinding::walksThroughManyChunks() {
    addNumbered(20000);
    m_connection->execute(u"DELETE FROM t WHERE no % 7 = 0"_s);
    for (const QString& sql : {u"select * from t"_s, u"select no, a from t where b > 0"_s}) {
        Recordset set;
        set.open(sql, *m_connection);
        qint64 rows = 0;
        qint64 last = 0;
        for (; !set.atEnd(); set.moveNext(), ++rows) {
            const qint64 number = set.field(u"no"_s).toLongLong();
            QCOMPARE(number, (last + 1) % 7 == 0 ? last + 2 : last + 1);
            last = number;
        }
        QCOMPARE(rows, 20000 - 20000 / 7);
    }
}

/// A file whose middle can't be read: whoever passes there fails.
void TestFinding::readsNothingButTheRow() {
    addNumbered(20000);
    m_connection->keepIndex(u"t"_s, u"a"_s);
    m_connection->execute(u"CREATE TABLE plain (no COUNTER, a TEXT(250))"_s);
    m_connection->execute(
        u"INSERT INTO plain (a) SELECT hex(zeroblob(100)) || no FROM t WHERE no <= 10000"_s);
    m_connection->execute(u"DELETE FROM t"_s);
    m_connection->execute(u"VACUUM"_s);
    m_connection->close();
    m_file->damage();
    m_connection->open(m_file->connectionString());
    Recordset all;
    all.open(u" select * from plain"_s, *m_connection);
    QCOMPARE(all.field(u"no"_s), QVariant(1LL));
    QVERIFY(errorOf([&] { numbersOf(all); }));
    Recordset set;
    set.open(u" select * from plain"_s, *m_connection);
    QVERIFY(set.find(u"no like '9990'"_s));
    QCOMPARE(set.field(u"no"_s), QVariant(9990LL));
    set.deleteCurrent();
    set.update();
    set.setFilter(u"no = '9991'"_s);
    QCOMPARE(set.recordCount(), 1);
    set.setField(u"a"_s, u"x"_s);
    set.update();
    set.addNew();
    set.setField(u"a"_s, u"y"_s);
    set.update();
    QCOMPARE(
        m_file->rows(u"SELECT no, substr(a, 1, 1) FROM plain WHERE no > 9988 AND no < 9992 OR no > 9999"_s),
        (QStringList{u"9989|0"_s, u"9991|x"_s, u"10000|0"_s, u"10001|y"_s}));
}

QTEST_GUILESS_MAIN(TestFinding)
#include "test_finding.moc"
