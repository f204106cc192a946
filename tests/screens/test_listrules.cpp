#include "screens/listrules.h"

#include <QtTest>

#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct FilterRow {
    const char* name;
    QList<FilterInput> cells;
    QString filter;
};

struct PressRow {
    const char* name;
    ListOrder before;
    QString field;
    QString sort;
};

struct WidthRow {
    const char* name;
    int stored;  ///< the grid's width when the widths were stored
    QList<int> columns;
    int now;
    QList<int> widths;
};

struct ProgressRow {
    const char* name;
    qsizetype rows;
    qsizetype total;
    std::chrono::milliseconds taken;
    std::optional<double> shown;
};

}  // namespace

Q_DECLARE_METATYPE(ProgressRow)
Q_DECLARE_METATYPE(FilterRow)
Q_DECLARE_METATYPE(PressRow)
Q_DECLARE_METATYPE(WidthRow)

class TestListRules : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void filter_data();
    void filter();
    void blankedField();
    void press_data();
    void press();
    void directionRunsOnAcrossColumns();
    void widths_data();
    void widths();
    void fiftyOneColumns();
    void progress_data();
    void progress();
};

void TestListRules::progress_data() {
    QTest::addColumn<ProgressRow>("row");
    for (const ProgressRow& row : QList<ProgressRow>{
             {"too soon", 20000, 40000, 149ms, {}},
             {"soon enough", 20000, 40000, 150ms, 0.5},
             {"all", 40000, 40000, 900ms, 1.0},
             {"more than was thought", 50000, 40000, 900ms, 1.0},
             {"nothing to read", 0, 0, 900ms, {}},
         })
        QTest::newRow(row.name) << row;
}

void TestListRules::progress() {
    QFETCH(const ProgressRow, row);
    QCOMPARE(progressShown(row.rows, row.total, row.taken), row.shown);
}

void TestListRules::filter_data() {
    const QString barkod = u"barkod"_s;
    const QString urun = u"urun"_s;
    const QString satis = u"satis"_s;
    const QString alis = u"alis"_s;
    QTest::addColumn<FilterRow>("row");
    for (const FilterRow& row : QList<FilterRow>{
             {"no cell", {}, u""_s},
             {"all empty", {{barkod, u""_s}, {urun, u""_s}}, u""_s},
             {"blanks alone count as empty", {{urun, u" \t "_s}}, u""_s},
             {"a text matches anywhere", {{urun, u"süt"_s}}, u"urun LIKE '%süt%'"_s},
             {"what is typed isn't trimmed", {{urun, u" süt "_s}}, u"urun LIKE '% süt %'"_s},
             {"two terms in column order",
              {{barkod, u"869"_s}, {urun, u"çay"_s}},
              u"barkod LIKE '%869%' AND urun LIKE '%çay%'"_s},
             {"an empty cell between",
              {{barkod, u"8"_s}, {urun, u""_s}, {satis, u"5"_s}},
              u"barkod LIKE '%8%' AND satis LIKE '5'"_s},
             {"percent sign", {{urun, u"%"_s}}, u"urun LIKE '%[%]%'"_s},
             {"underscore", {{urun, u"a_b"_s}}, u"urun LIKE '%a[_]b%'"_s},
             {"bracket", {{urun, u"[x]"_s}}, u"urun LIKE '%[[]x]%'"_s},
             {"apostrophe", {{urun, u"Ali'nin"_s}}, u"urun LIKE '%Ali''nin%'"_s},
             {"a number has no wildcards and a dot", {{satis, u"12,5"_s}}, u"satis LIKE '12.5'"_s},
             {"every comma", {{satis, u"1,2,3"_s}}, u"satis LIKE '1.2.3'"_s},
             {"a number isn't trimmed", {{satis, u" 5 "_s}}, u"satis LIKE ' 5 '"_s},
             {"a percent sign in a number", {{alis, u"5%"_s}}, u"alis LIKE '5[%]'"_s},
             {"a comma in a text stays", {{urun, u"1,5 l"_s}}, u"urun LIKE '%1,5 l%'"_s},
         })
        QTest::newRow(row.name) << row;
}

void TestListRules::filter() {
    QFETCH(const FilterRow, row);
    QCOMPARE(filterText(row.cells, {{u"alis"_s, u"satis"_s, u"stok"_s}, {}}), row.filter);
}

void TestListRules::blankedField() {
    const FilterRules rules{{u"fiyat"_s}, u"urun"_s};
    QCOMPARE(filterText({{u"urun"_s, u"çay"_s}, {u"barkod"_s, u"1"_s}, {u"fiyat"_s, u"2"_s}}, rules),
             u"urun LIKE  '%çay%' AND barkod LIKE '%1%' AND fiyat LIKE '2'"_s);
}

void TestListRules::press_data() {
    QTest::addColumn<PressRow>("row");
    for (const PressRow& row : QList<PressRow>{
             {"first press", {}, u"urun"_s, u"urun ASC"_s},
             {"same column after ASC", {u"urun"_s, u"ASC"_s}, u"urun"_s, u"urun DESC"_s},
             {"same column after DESC", {u"urun"_s, u"DESC"_s}, u"urun"_s, u"urun ASC"_s},
             {"same column, no direction yet", {u"urun"_s, {}}, u"urun"_s, u"urun DESC"_s},
             {"new column after ASC", {u"urun"_s, u"ASC"_s}, u"no"_s, u"no DESC"_s},
             {"new column after DESC", {u"urun"_s, u"DESC"_s}, u"no"_s, u"no ASC"_s},
             {"new column, no direction yet", {u"urun"_s, {}}, u"no"_s, u"no ASC"_s},
         })
        QTest::newRow(row.name) << row;
}

void TestListRules::press() {
    QFETCH(PressRow, row);
    QCOMPARE(row.before.press(row.field), row.sort);
    QCOMPARE(row.before.field, row.field);
    QCOMPARE(row.before.field + u' ' + row.before.direction, row.sort);
}

void TestListRules::directionRunsOnAcrossColumns() {
    ListOrder order;
    QStringList sorts;
    for (const QString& field : {u"no"_s, u"barkod"_s, u"urun"_s, u"urun"_s, u"no"_s})
        sorts << order.press(field);
    QCOMPARE(sorts, (QStringList{u"no ASC"_s, u"barkod DESC"_s, u"urun ASC"_s, u"urun DESC"_s, u"no ASC"_s}));
}

void TestListRules::widths_data() {
    QTest::addColumn<WidthRow>("row");
    for (const WidthRow& row : QList<WidthRow>{
             {"same width", 1000, {100, 200, 300, 50}, 1000, {100, 200, 300, 50}},
             // 400 more over four columns: 400 / (3 - 1) for each but the first.
             {"wider", 1000, {100, 200, 300, 50}, 1400, {100, 400, 500, 250}},
             {"narrower, to less than nothing", 1000, {100, 200, 300, 50}, 800, {100, 100, 200, -50}},
             {"a fraction is rounded", 1000, {100, 200, 300, 50}, 1001, {100, 201, 301, 51}},
             {"six columns", 1000, {10, 10, 10, 10, 10, 10}, 1100, {10, 35, 35, 35, 35, 35}},
             {"nothing stored", 0, {}, 500, {}},
         })
        QTest::newRow(row.name) << row;
}

void TestListRules::widths() {
    QFETCH(const WidthRow, row);
    ColumnWidths widths;
    QVERIFY(!widths.isStored());
    widths.store(row.stored, row.columns);
    QCOMPARE(widths.widthsFor(row.now), row.widths);
    QCOMPARE(widths.widthsFor(row.stored),
             row.columns);  // worked out from what was stored, not from the last widths
}

void TestListRules::fiftyOneColumns() {
    ColumnWidths widths;
    widths.store(100, QList<int>(51, 1));
    QCOMPARE(widths.widthsFor(100).size(), 51);
    try {
        widths.store(100, QList<int>(52, 1));
        QFAIL("a column too many was taken");
    } catch (const RuntimeError& error) {
        QCOMPARE(error.number(), RuntimeError::outOfRange);
    }
}

QTEST_GUILESS_MAIN(TestListRules)
#include "test_listrules.moc"
