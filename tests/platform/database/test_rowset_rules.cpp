#include <QRandomGenerator>
#include <QTest>
#include <memory>

#include "database/rowset.h"
#include "databasefile.h"
#include "sanitized.h"
#include "values/sortkey.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct Choice {
    QString filter;
    QList<int> numbers;  ///< of the rows that it lets through
};

struct Order {
    QString sort;
    QList<int> numbers;
};

struct MomentsRow {
    QStringList moments;  ///< as stored, in order of entry; a null one is null there
    QList<int> ascending;
    QList<int> descending;
};

struct Search {
    QString criterion;
    qsizetype from;
    qsizetype place;
};

QList<int> numbers(const RowSet& rows) {
    QList<int> found;
    for (qsizetype place = 0; place < rows.recordCount(); ++place)
        found.append(static_cast<int>(rows.identity(place)));
    return found;
}

/// Every row once, whatever its order.
QList<int> sorted(QList<int> rows) {
    std::ranges::sort(rows);
    return rows;
}

}  // namespace

Q_DECLARE_METATYPE(Choice)
Q_DECLARE_METATYPE(Order)
Q_DECLARE_METATYPE(MomentsRow)
Q_DECLARE_METATYPE(Search)

/// What filter, sort, search and current row make of rows once read.
class TestRowSetRules : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void filters_data();
    void filters();
    void refusesFilters_data();
    void refusesFilters();
    void narrowsAndWidens();
    void filtersAsTheMatcherMatches();
    void longPatternsAreQuick();
    void sorts_data();
    void sorts();
    void sortsMixedCells_data();
    void sortsMixedCells();
    void sortsMoments_data();
    void sortsMoments();
    void sortsTextsByTheirKeys();
    void refusesSorts_data();
    void refusesSorts();
    void sortsWhatIsFiltered();
    void finds_data();
    void finds();
    void findsAmongWhatIsShown();
    void keepsTheCurrentRow();
    void showsMixedCellsAsTheyAre();

private:
    void read(const QStringList& statements);

    std::unique_ptr<DatabaseFile> m_file;  // with the rows that most rules are shown on
    RowSet m_rows;
};

void TestRowSetRules::initTestCase() {
    m_file = std::make_unique<DatabaseFile>(QString());
    m_file->execute(
        {u"CREATE TABLE urunler (no COUNTER, urun TEXT(50), satis DOUBLE, tarih DATETIME)"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES ('Süt 1 L', 12.5, #5/3/2026 10:15:00#)"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES ('İNCİR', 12, #12/31/2025 23:59:59#)"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES ('ISPANAK', -0.5, NULL)"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES ('Ülker''in %50 a_b [x]', 1234.5, #5/3/2026 09:00:00#)"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES (NULL, NULL, 'yarın')"_s,
         u"INSERT INTO urunler (urun, satis, tarih) VALUES ('', 'abc', 45)"_s,
         u"INSERT INTO urunler (no, urun, satis, tarih) VALUES (17, 'süt tozu', 0, '2026-05-03')"_s});
}

void TestRowSetRules::init() {
    m_rows = RowSet();
    Connection connection;
    connection.open(m_file->connectionString());
    m_rows.read(connection, u"select * from urunler"_s);
}

/// Reads the rows of another file instead.
void TestRowSetRules::read(const QStringList& statements) {
    m_rows = RowSet();
    const DatabaseFile file{QString()};
    file.execute(statements);
    Connection connection;
    connection.open(file.connectionString());
    m_rows.read(connection, u"select * from urunler"_s);
}

void TestRowSetRules::filters_data() {
    QTest::addColumn<Choice>("row");
    const auto row = [](const char* name, const QString& filter, const QList<int>& rows) {
        QTest::newRow(name) << Choice{filter, rows};
    };
    row("none", u""_s, {1, 2, 3, 4, 5, 6, 17});
    row("anywhere, letter case ignored", u"urun LIKE '%SÜT%'"_s, {1, 17});
    row("from end to end", u"urun LIKE 'süt tozu'"_s, {17});
    row("prefix", u"urun LIKE 'süt%'"_s, {1, 17});
    row("suffix", u"urun LIKE '%k'"_s, {3});
    row("any one", u"urun LIKE 's_t%'"_s, {1, 17});
    row("two pieces", u"urun LIKE '%s%z%'"_s, {17});
    row("İ for i", u"urun LIKE '%incir%'"_s, {2});
    row("I for ı", u"urun LIKE '%ıspanak%'"_s, {3});
    row("i isn't ı", u"urun LIKE '%ispanak%'"_s, {});
    row("field in another case", u"URUN LIKE '%süt%'"_s, {1, 17});
    row("apostrophe", u"urun LIKE '%r''in%'"_s, {4});
    row("bare percent", u"urun LIKE '%[%]%'"_s, {4});
    row("bare underscore", u"urun LIKE '%[_]%'"_s, {4});
    row("bare bracket", u"urun LIKE '%[[]x]%'"_s, {4});
    row("only wildcards find null too", u"urun LIKE '%%'"_s, {1, 2, 3, 4, 5, 6, 17});
    row("at least one letter finds no null", u"urun LIKE '%_%'"_s, {1, 2, 3, 4, 17});
    row("empty text finds null", u"urun LIKE ''"_s, {5, 6});
    row("text that is no number, on texts", u"urun LIKE '1.234.50'"_s, {});
    row("equal text, letter case ignored", u"urun = 'incir'"_s, {2});
    row("equal is no pattern", u"urun = '%süt%'"_s, {});
    row("equal empty text", u"urun = ''"_s, {5, 6});
    row("NUL", u"urun LIKE '%\0%'"_s, {});
    row("number", u"satis LIKE '12.5'"_s, {1});
    row("number with a zero behind", u"satis LIKE '12.50'"_s, {1});
    row("number without its decimals", u"satis LIKE '12'"_s, {2});
    row("number with a bare point", u"satis LIKE '12.'"_s, {2});
    row("number with zeros ahead", u"satis LIKE '012'"_s, {2});
    row("negative number", u"satis LIKE '-0.5'"_s, {3});
    row("number without its zero", u"satis LIKE '-.5'"_s, {3});
    row("thousand", u"satis LIKE '1234.5'"_s, {4});
    row("zero isn't null", u"satis LIKE '0'"_s, {17});
    row("number by equality", u"satis = '12.50'"_s, {1});
    row("number as shown, by wildcards", u"satis LIKE '12%'"_s, {1, 2, 4});
    row("number as shown, with its comma", u"satis LIKE '%,5'"_s, {1, 3, 4});
    row("only wildcards find no number too", u"satis LIKE '%%'"_s, {1, 2, 3, 4, 5, 6, 17});
    row("text among numbers, by wildcards", u"satis LIKE '%B%'"_s, {6});
    row("counter by its digits", u"no LIKE '%7%'"_s, {17});
    row("counter by its first digit", u"no LIKE '1%'"_s, {1, 17});
    row("counter as a number", u"no LIKE '17'"_s, {17});
    row("counter as a number in another form", u"no LIKE '17.0'"_s, {17});
    row("counter isn't matched in part", u"no LIKE '7'"_s, {});
    row("counter by equality", u"no = '4'"_s, {4});
    row("counter and what is no number", u"no LIKE 'x'"_s, {});
    row("counter and the empty text", u"no LIKE ''"_s, {});
    row("day as shown", u"tarih LIKE '%03.05.2026%'"_s, {1, 4});
    row("day as stored", u"tarih LIKE '%2026-05-03 %'"_s, {});
    row("hour", u"tarih LIKE '% 10:%'"_s, {1});
    row("whole moment", u"tarih = '31.12.2025 23:59:59'"_s, {2});
    row("no moment, as stored", u"tarih LIKE '%2026-05-03'"_s, {17});
    row("text among moments", u"tarih LIKE 'YARIN'"_s, {5});
    row("number among moments", u"tarih LIKE '45'"_s, {6});
    row("null moment", u"tarih LIKE ''"_s, {3});
    row("two terms", u"urun LIKE '%süt%' AND satis LIKE '12.5'"_s, {1});
    row("two terms, none for both", u"urun LIKE '%süt%' AND satis LIKE '12'"_s, {});
    row("two terms on one field", u"urun LIKE '%a%' AND urun LIKE '%k%'"_s, {3, 4});
}

void TestRowSetRules::filters() {
    QFETCH(const Choice, row);
    m_rows.setFilter(RowFilter::parse(row.filter));
    QCOMPARE(numbers(m_rows), row.numbers);
    QCOMPARE(m_rows.totalCount(), 7);
    // The choice doesn't depend on the order that it is shown in.
    m_rows.setSort(u"urun DESC"_s);
    QCOMPARE(sorted(numbers(m_rows)), row.numbers);
}

void TestRowSetRules::refusesFilters_data() {
    QTest::addColumn<QString>("row");
    QTest::newRow("unknown field") << u"yok LIKE '%a%'"_s;
    QTest::newRow("no number") << u"satis LIKE 'abc'"_s;
    QTest::newRow("a point") << u"satis LIKE '.'"_s;
    QTest::newRow("two points") << u"satis LIKE '1.234.50'"_s;
    QTest::newRow("empty") << u"satis LIKE ''"_s;
    QTest::newRow("comma") << u"satis LIKE '12,5'"_s;
    QTest::newRow("bracketed percent") << u"satis LIKE '50[%]'"_s;
    QTest::newRow("by equality") << u"satis = 'abc'"_s;
    QTest::newRow("wildcard by equality") << u"satis = '%1%'"_s;
    QTest::newRow("a good term ahead") << u"urun LIKE '%s%' AND satis LIKE 'abc'"_s;
    QTest::newRow("a good term behind") << u"satis LIKE 'abc' AND urun LIKE '%s%'"_s;
}

void TestRowSetRules::refusesFilters() {
    QFETCH(const QString, row);
    m_rows.setFilter(RowFilter::parse(u"urun LIKE '%süt%'"));
    m_rows.setCurrent(1);
    const RowFilter refused = RowFilter::parse(row);
    for (const auto& error :
         {errorOf([&] { m_rows.setFilter(refused); }), errorOf([&] { m_rows.find(refused); })}) {
        QVERIFY(error);
        QCOMPARE(error->number(), RuntimeError::databaseFailure);
        QVERIFY(!error->description().isEmpty());
    }
    QCOMPARE(numbers(m_rows), (QList<int>{1, 17}));
    QCOMPARE(m_rows.current(), 1);
}

void TestRowSetRules::narrowsAndWidens() {
    const auto choose = [this](const QString& filter) {
        m_rows.setFilter(RowFilter::parse(filter));
        return numbers(m_rows);
    };
    QCOMPARE(choose(u"urun LIKE '%s%'"_s), (QList<int>{1, 3, 17}));
    QCOMPARE(choose(u"urun LIKE '%sü%'"_s), (QList<int>{1, 17}));
    QCOMPARE(choose(u"urun LIKE '%süt 1%'"_s), QList<int>{1});
    QCOMPARE(choose(u"urun LIKE '%süt 1x%'"_s), QList<int>{});
    QCOMPARE(choose(u"urun LIKE '%süt%'"_s), (QList<int>{1, 17}));
    QCOMPARE(choose(u"urun LIKE '%süt%' AND no LIKE '%7%'"_s), QList<int>{17});
    QCOMPARE(choose(u"no LIKE '%7%'"_s), QList<int>{17});
    QCOMPARE(choose(u"urun LIKE '%t%'"_s), (QList<int>{1, 17}));
    QCOMPARE(choose(u"urun LIKE '%t'"_s), QList<int>{});
    QCOMPARE(choose(u"urun LIKE '%_t%'"_s), (QList<int>{1, 17}));
    QCOMPARE(choose(u"satis LIKE '12'"_s), QList<int>{2});
    QCOMPARE(choose(u"satis LIKE '12.5'"_s), QList<int>{1});
    QCOMPARE(choose(u""_s).size(), 7);
}

/// Rows of random names, and what the filter's own matcher says of each.
void TestRowSetRules::filtersAsTheMatcherMatches() {
    QRandomGenerator random(42);
    const auto randomText = [&random](QStringView letters, int longest) {
        QString text(random.bounded(longest + 1), Qt::Uninitialized);
        for (QChar& letter : text)
            letter = letters[random.bounded(letters.size())];
        return text;
    };
    QStringList names;
    for (int i = 0; i < 2000; ++i)
        names.append(randomText(u"abIıiİşŞğ 1", 12));
    read({u"CREATE TABLE urunler (no COUNTER, urun TEXT(50))"_s,
          u"INSERT INTO urunler (urun) VALUES ('"_s + names.join(u"'),('") + u"')"_s});
    QString typed;
    for (int i = 0; i < 1000; ++i) {
        // Most go on from the one before, as a typist's do.
        typed = i % 4 == 0 ? randomText(u"abIıiİşŞğ %_", 2) : QString(typed + randomText(u"abşi_%", 1));
        const QString pattern = u'%' + typed + u'%';
        QList<int> expected;
        for (qsizetype row = 0; row < names.size(); ++row) {
            if (RowFilter::matches(names[row], pattern))
                expected.append(static_cast<int>(row) + 1);
        }
        const QString filter = u"urun LIKE '"_s + pattern + u'\'';
        m_rows.setFilter(RowFilter::parse(filter));
        QVERIFY2(numbers(m_rows) == expected, qUtf8Printable(pattern));
    }
}

void TestRowSetRules::longPatternsAreQuick() {
    read({u"CREATE TABLE urunler (no COUNTER, urun TEXT(50), satis DOUBLE)"_s,
          u"INSERT INTO urunler (urun) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE "
          u"i < "
          u"100000) SELECT 'aaaaaaaaaaaaaaaaaaaaaaaaaa' || i FROM n"_s});
    constexpr int length = 1000000;
    constexpr int longest = sanitized ? 20000 : 2000;  // milliseconds
    const QStringList patterns = {u'%' + QString(length, u'a') + u'%', u'%' + u"a_%"_s.repeated(length / 3),
                                  QString(length, u'_')};
    for (const QString& pattern : patterns) {
        const QString filter = u"urun LIKE '"_s + pattern + u'\'';
        QElapsedTimer timer;
        timer.start();
        m_rows.setFilter(RowFilter::parse(filter));
        QCOMPARE(m_rows.recordCount(), 0);
        QVERIFY2(timer.elapsed() < longest, qPrintable(QString::number(timer.elapsed())));
    }
    QElapsedTimer timer;
    timer.start();
    const QString digits = u"satis LIKE '"_s + QString(length, u'9') + u'\'';
    QVERIFY(errorOf([&] { m_rows.setFilter(RowFilter::parse(digits)); }));
    QVERIFY2(timer.elapsed() < longest, qPrintable(QString::number(timer.elapsed())));
}

void TestRowSetRules::sorts_data() {
    QTest::addColumn<Order>("row");
    const auto row = [](const char* name, const QString& sort, const QList<int>& rows) {
        QTest::newRow(name) << Order{sort, rows};
    };
    row("order of entry", u""_s, {1, 2, 3, 4, 5, 6, 17});
    row("texts", u"urun ASC"_s, {5, 6, 3, 2, 1, 17, 4});
    row("texts, descending, ties in order of entry", u"urun DESC"_s, {4, 17, 1, 2, 3, 5, 6});
    row("numbers, null ahead and text behind", u"satis ASC"_s, {5, 3, 17, 2, 1, 4, 6});
    row("numbers, descending", u"satis DESC"_s, {6, 4, 1, 2, 17, 3, 5});
    row("moments, null ahead, number ahead of texts", u"tarih ASC"_s, {3, 6, 2, 17, 4, 1, 5});
    row("moments, descending", u"tarih DESC"_s, {5, 1, 4, 17, 2, 6, 3});
    row("counter", u"no ASC"_s, {1, 2, 3, 4, 5, 6, 17});
    row("counter, descending", u"no DESC"_s, {17, 6, 5, 4, 3, 2, 1});
    row("no direction", u"urun"_s, {5, 6, 3, 2, 1, 17, 4});
    row("any case, bracketed", u" [URUN]  desc "_s, {4, 17, 1, 2, 3, 5, 6});
}

void TestRowSetRules::sorts() {
    QFETCH(const Order, row);
    m_rows.setSort(u"satis DESC"_s);
    m_rows.setSort(row.sort);
    QCOMPARE(m_rows.sort(), row.sort);
    QCOMPARE(numbers(m_rows), row.numbers);
    for (qsizetype place = 0; place < m_rows.recordCount(); ++place)
        QCOMPARE(m_rows.placeOf(row.numbers[place]), place);
}

void TestRowSetRules::sortsMixedCells_data() {
    QTest::addColumn<Order>("row");
    QTest::newRow("texts among numbers") << Order{u"satis ASC"_s, {5, 3, 2, 4, 1, 6}};
    QTest::newRow("texts among numbers, descending") << Order{u"satis DESC"_s, {6, 1, 2, 4, 3, 5}};
    QTest::newRow("numbers among moments") << Order{u"tarih ASC"_s, {4, 2, 1, 3, 5, 6}};
    QTest::newRow("numbers among moments, descending") << Order{u"tarih DESC"_s, {5, 6, 1, 3, 2, 4}};
}

void TestRowSetRules::sortsMixedCells() {
    QFETCH(const Order, row);
    read(
        {u"CREATE TABLE urunler (no COUNTER, satis DOUBLE, tarih DATETIME)"_s,
         u"INSERT INTO urunler (satis, tarih) VALUES ('b', 7), ('a', 3), (5, 7.0), ('A', NULL), (NULL, 'x'), ('ç', 'X')"_s});
    m_rows.setSort(row.sort);
    QCOMPARE(numbers(m_rows), row.numbers);
}

void TestRowSetRules::sortsMoments_data() {
    QTest::addColumn<MomentsRow>("row");
    const QString early = u"2026-05-04 09:59:59"_s;
    const QString ten = u"2026-05-04 10:00:00"_s;
    const QString late = u"2026-05-04 10:00:01"_s;
    const auto row = [](const char* name, const MomentsRow& moments) { QTest::newRow(name) << moments; };
    row("as they came", {{early, ten, late}, {1, 2, 3}, {3, 2, 1}});
    row("as they came, in one second", {{early, ten, ten, late}, {1, 2, 3, 4}, {4, 2, 3, 1}});
    row("all in one second", {{ten, ten, ten}, {1, 2, 3}, {1, 2, 3}});
    row("the last one early", {{ten, late, early}, {3, 1, 2}, {2, 1, 3}});
    row("the first one late", {{late, early, ten}, {2, 3, 1}, {1, 3, 2}});
    row("over a year's end", {{u"2025-12-31 23:59:59"_s, u"2026-01-01 00:00:00"_s}, {1, 2}, {2, 1}});
    row("one that is null", {{early, {}, late}, {2, 1, 3}, {3, 1, 2}});
    row("one that is no moment", {{u"2026-05-04"_s, u"2026-05-04-x"_s, ten}, {1, 3, 2}, {2, 3, 1}});
    row("no line", {{}, {}, {}});
}

void TestRowSetRules::sortsMoments() {
    QFETCH(const MomentsRow, row);
    QStringList statements{u"CREATE TABLE urunler (no COUNTER, tarih DATETIME)"_s};
    for (const QString& moment : row.moments)
        statements << u"INSERT INTO urunler (tarih) VALUES ("_s +
                          (moment.isNull() ? u"NULL"_s : u'\'' + moment + u'\'') + u')';
    read(statements);
    m_rows.setSort(u"tarih ASC"_s);
    QCOMPARE(numbers(m_rows), row.ascending);
    m_rows.setSort(u"tarih DESC "_s);
    QCOMPARE(numbers(m_rows), row.descending);
}

/// Ties, texts that begin alike, long ones and ones kept as numbers look.
void TestRowSetRules::sortsTextsByTheirKeys() {
    QRandomGenerator random(7);
    QStringList names{u"10"_s, u"9"_s, u"100"_s, u"09"_s};
    for (int i = 0; i < 3000; ++i) {
        QString name = i % 3 == 0   ? u"Pınar Süt "_s
                       : i % 3 == 1 ? QString(random.bounded(20), u'ş')
                                    : QString();
        for (int letters = random.bounded(12); letters > 0; --letters)
            name += u"aâAbcçıIiİ 19."_s[random.bounded(14)];
        names.append(name);
    }
    names.append(QString(300000, u'z') + u'b');
    names.append(QString(300000, u'Z') + u'a');
    read({u"CREATE TABLE urunler (no COUNTER, urun TEXT(50))"_s,
          u"INSERT INTO urunler (urun) VALUES ('"_s + names.join(u"'),('"_s) + u"')"_s});
    QList<int> expected;
    for (int row = 0; row < names.size(); ++row)
        expected.append(row + 1);
    const auto key = [&names](int number) { return sortKey(names[number - 1]); };
    std::ranges::stable_sort(expected, std::ranges::less(), key);
    m_rows.setSort(u"urun ASC"_s);
    QVERIFY(numbers(m_rows) == expected);
    std::ranges::sort(expected);
    std::ranges::stable_sort(expected, std::ranges::greater(), key);
    m_rows.setSort(u"urun DESC"_s);
    QVERIFY(numbers(m_rows) == expected);
}

void TestRowSetRules::refusesSorts_data() {
    QTest::addColumn<QString>("row");
    QTest::newRow("unknown field") << u"yok ASC"_s;
    QTest::newRow("unknown direction") << u"urun UP"_s;
    QTest::newRow("direction alone") << u"'urun'"_s;
    QTest::newRow("two fields") << u"urun ASC, no DESC"_s;
    QTest::newRow("something behind") << u"urun ASC no"_s;
}

void TestRowSetRules::refusesSorts() {
    QFETCH(const QString, row);
    m_rows.setSort(u"no DESC"_s);
    const auto error = errorOf([&] { m_rows.setSort(row); });
    QVERIFY(error);
    QCOMPARE(error->number(), RuntimeError::databaseFailure);
    QCOMPARE(m_rows.sort(), u"no DESC"_s);
    QCOMPARE(numbers(m_rows).first(), 17);
}

void TestRowSetRules::sortsWhatIsFiltered() {
    m_rows.setFilter(RowFilter::parse(u"tarih LIKE '%2026%'"));
    m_rows.setSort(u"satis DESC"_s);
    QCOMPARE(numbers(m_rows), (QList<int>{4, 1, 17}));
    m_rows.setFilter(RowFilter::parse(u"satis LIKE '1%'"));
    QCOMPARE(numbers(m_rows), (QList<int>{4, 1, 2}));
    m_rows.setSort({});
    QCOMPARE(numbers(m_rows), (QList<int>{1, 2, 4}));
    QCOMPARE(m_rows.placeOf(4), 2);
    QCOMPARE(m_rows.placeOf(3), -1);
    QCOMPARE(m_rows.placeOf(5), -1);
}

void TestRowSetRules::finds_data() {
    QTest::addColumn<Search>("row");
    QTest::newRow("counter") << Search{u"no like '17'"_s, 0, 6};
    QTest::newRow("counter in part") << Search{u"no like '7'"_s, 0, -1};
    QTest::newRow("counter, empty") << Search{u"no like ''"_s, 0, -1};
    QTest::newRow("counter, letters") << Search{u"no like 'abc'"_s, 0, -1};
    QTest::newRow("text") << Search{u"urun LIKE '%süt%'"_s, 0, 0};
    QTest::newRow("text, from its place") << Search{u"urun LIKE '%süt%'"_s, 6, 6};
    QTest::newRow("text, from behind") << Search{u"urun LIKE '%süt%'"_s, 1, 6};
    QTest::newRow("from the end") << Search{u"urun LIKE '%süt%'"_s, 7, -1};
    QTest::newRow("from ahead of the start") << Search{u"urun LIKE '%süt%'"_s, -3, 0};
    QTest::newRow("number") << Search{u"satis = '12'"_s, 0, 1};
    QTest::newRow("nothing asked") << Search{u""_s, 2, 2};
}

void TestRowSetRules::finds() {
    QFETCH(const Search, row);
    m_rows.setCurrent(3);
    QCOMPARE(m_rows.find(RowFilter::parse(row.criterion), row.from), row.place);
    QCOMPARE(m_rows.current(), 3);
}

void TestRowSetRules::findsAmongWhatIsShown() {
    m_rows.setSort(u"no DESC"_s);
    QCOMPARE(m_rows.find(RowFilter::parse(u"no like '4'")), 3);
    m_rows.setFilter(RowFilter::parse(u"urun LIKE '%süt%'"));
    QCOMPARE(m_rows.find(RowFilter::parse(u"no like '4'")), -1);
    QCOMPARE(m_rows.find(RowFilter::parse(u"no like '1'")), 1);
}

void TestRowSetRules::keepsTheCurrentRow() {
    QCOMPARE(m_rows.current(), -1);
    m_rows.setCurrent(3);
    m_rows.setSort(u"no DESC"_s);
    QCOMPARE(m_rows.current(), 3);
    m_rows.setSort(u"urun DESC"_s);
    QCOMPARE(m_rows.current(), 0);
    m_rows.setFilter(RowFilter::parse(u"satis LIKE '%,5'"));
    QCOMPARE(m_rows.identity(m_rows.current()), 4);
    // Hidden, it isn't forgotten.
    m_rows.setFilter(RowFilter::parse(u"urun LIKE '%süt%'"));
    QCOMPARE(m_rows.current(), -1);
    m_rows.setFilter({});
    QCOMPARE(m_rows.current(), 0);
    m_rows.setCurrent(-1);
    m_rows.setSort({});
    QCOMPARE(m_rows.current(), -1);
}

void TestRowSetRules::showsMixedCellsAsTheyAre() {
    const int satis = m_rows.fieldIndex(u"satis");
    const int tarih = m_rows.fieldIndex(u"tarih");
    QCOMPARE(m_rows.value(5, satis), u"abc"_s);
    QCOMPARE(m_rows.text(5, satis), u"abc"_s);
    QCOMPARE(m_rows.value(5, tarih), 45LL);
    QCOMPARE(m_rows.text(5, tarih), u"45"_s);
    QCOMPARE(m_rows.value(4, tarih), u"yarın"_s);
    QCOMPARE(m_rows.text(4, tarih), u"yarın"_s);
    QCOMPARE(m_rows.text(6, tarih), u"2026-05-03"_s);
    QCOMPARE(m_rows.fieldType(satis), ColumnType::number);
    QCOMPARE(m_rows.text(3, satis), u"1234,5"_s);
}

QTEST_GUILESS_MAIN(TestRowSetRules)
#include "test_rowset_rules.moc"
