// One row of a kept list read anew: afterwards all questions are answered as by a list that was read whole.

#include <limits>

#include "database/rowset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString all = u"select * from meyve"_s;

/// What another till stores in the row of identity 3, and whether that is a change.
struct ChangeRow {
    QString sql;
    bool changes = true;
};

struct SelectRow {
    QString select;
    QString sql;
    bool changes;
};

struct Shown {
    QStringList rows;

    explicit Shown(const RowSet& list) {
        for (qsizetype place = 0; place < list.recordCount(); ++place) {
            QStringList cells{QString::number(list.identity(place))};
            for (int field = 0; field < list.fieldCount(); ++field) {
                const QVariant value = list.value(place, field);
                cells << QString::fromLatin1(value.typeName()) + u':' + list.text(place, field);
            }
            rows << cells.join(u'|');
        }
    }
};

QStringList numbers(const RowSet& list) {
    QStringList found;
    for (qsizetype place = 0; place < list.recordCount(); ++place)
        found << QString::number(list.identity(place));
    return found;
}

}  // namespace

Q_DECLARE_METATYPE(ChangeRow)
Q_DECLARE_METATYPE(SelectRow)

class TestRowSetRereading : public QObject {
    Q_OBJECT

    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<Connection> m_connection;
    RowSet m_rows;

    std::unique_ptr<RawDatabase> m_otherTill;

    void otherTill(const QString& sql) {
        if (!m_otherTill)
            m_otherTill = std::make_unique<RawDatabase>(m_file->path(), m_file->password());
        if (!m_otherTill->run(sql))
            qFatal("the other till can't: %s", qUtf8Printable(sql));
    }
    /// Whether the list answers as one that was read just now.
    void answersAsAFreshOne(const QString& select) {
        RowSet fresh;
        fresh.read(*m_connection, select);
        for (const QString& filter :
             {u""_s, u"ad LIKE '%a%'"_s, u"ad LIKE '%armut%'"_s, u"fiyat LIKE '7.25'"_s,
              u"fiyat LIKE '%5%'"_s, u"tarih LIKE '%2026%'"_s, u"ad LIKE ''"_s}) {
            for (const QString& sort : {u""_s, u"ad ASC"_s, u"ad DESC"_s, u"fiyat ASC"_s, u"tarih DESC"_s}) {
                for (RowSet* list : {&m_rows, &fresh}) {
                    list->setFilter({});
                    list->setSort(sort);
                    list->setFilter(RowFilter::parse(filter));
                }
                QCOMPARE(Shown(m_rows).rows, Shown(fresh).rows);
            }
        }
    }

private Q_SLOTS:
    void initTestCase_data() { DatabaseFile::bothKinds(); }
    void init() {
        QFETCH_GLOBAL(const QString, password);
        m_file = std::make_unique<DatabaseFile>(password);
        m_file->execute({u"CREATE TABLE meyve (no COUNTER, ad TEXT(50), fiyat DOUBLE, tarih DATETIME)"_s,
                         u"INSERT INTO meyve (ad, fiyat, tarih) VALUES ('Elma', 1.5, #5/3/2026 10:15:00#)"_s,
                         u"INSERT INTO meyve (ad, fiyat, tarih) VALUES ('Kayısı', 12, NULL)"_s,
                         u"INSERT INTO meyve (ad, fiyat, tarih) VALUES ('Ceviz', 3, #5/3/2025 10:15:00#)"_s,
                         u"INSERT INTO meyve (ad, fiyat, tarih) VALUES (NULL, NULL, #5/4/2026 10:15:00#)"_s,
                         u"INSERT INTO meyve (ad, fiyat, tarih) VALUES ('', 5.5, 'yarın')"_s});
        m_connection = std::make_unique<Connection>(std::chrono::milliseconds(200));
        m_connection->open(m_file->connectionString());
        m_rows = RowSet();
    }
    void cleanup() {
        m_otherTill.reset();
        m_connection.reset();
        m_file.reset();
    }

    void changes_data() {
        QTest::addColumn<ChangeRow>("row");
        const auto row = [](const char* name, const QString& set, bool changes = true) {
            QTest::newRow(name) << ChangeRow{u"UPDATE meyve SET "_s + set + u" WHERE no = 3"_s, changes};
        };
        row("nothing", u"ad = ad"_s, false);
        row("same number, whole before and not now", u"fiyat = 3.0"_s, false);
        row("longer", u"ad = 'Ankara armudu, Armut'"_s);
        row("shorter", u"ad = 'a'"_s);
        row("as long", u"ad = 'Armut'"_s);
        row("empty", u"ad = ''"_s);
        row("null", u"ad = NULL"_s);
        row("Turkish letters", u"ad = 'IŞIK İNCİRİ'"_s);
        row("a zero byte", u"ad = CAST(x'610062' AS TEXT)"_s);
        row("another number", u"fiyat = 7.25"_s);
        row("no number any more", u"fiyat = NULL"_s);
        row("a text in the column of numbers", u"fiyat = 'abc'"_s);
        row("a text that looks like one", u"fiyat = '7.25 '"_s);
        row("a number too long for a double", u"fiyat = 9007199254740993"_s);
        row("bytes in the column of texts", u"ad = x'41'"_s);
        row("another moment", u"tarih = '2026-12-31 00:00:00'"_s);
        row("no moment", u"tarih = 'dün'"_s);
        row("a number for a moment", u"tarih = 45"_s);
        row("everything", u"ad = 'Armut', fiyat = 0, tarih = NULL"_s);
    }
    void changes() {
        QFETCH(const ChangeRow, row);
        m_rows.read(*m_connection, all);
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%e%'"_s));  // prepares what filters and sorts need
        m_rows.setSort(u"ad ASC"_s);
        m_rows.setFilter({});
        m_rows.setSort({});
        otherTill(row.sql);
        QCOMPARE(m_rows.readRow(*m_connection, 3), row.changes);
        QCOMPARE(m_rows.readRow(*m_connection, 3), false);
        answersAsAFreshOne(all);
    }

    void backAndForth() {
        m_rows.read(*m_connection, all);
        for (const QString& value : {u"'uzun bir meyve adı'"_s, u"NULL"_s, u"x'41'"_s, u"'kısa'"_s, u"NULL"_s,
                                     u"''"_s, u"'Ceviz'"_s}) {
            otherTill(u"UPDATE meyve SET ad = "_s + value + u", fiyat = "_s + value + u" WHERE no = 3"_s);
            QVERIFY(m_rows.readRow(*m_connection, 3));
            answersAsAFreshOne(all);
        }
    }

    /// Whatever was chosen and ordered before stays until the next time.
    void staysWhereItIs() {
        m_rows.read(*m_connection, all);
        m_rows.setSort(u"ad DESC"_s);
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%e%'"_s));
        m_rows.setCurrent(1);
        QCOMPARE(numbers(m_rows), (QStringList{u"1"_s, u"3"_s}));
        otherTill(u"UPDATE meyve SET ad = 'Zzz' WHERE no = 3"_s);
        QVERIFY(m_rows.readRow(*m_connection, 3));
        QCOMPARE(numbers(m_rows), (QStringList{u"1"_s, u"3"_s}));
        QCOMPARE(m_rows.current(), 1);
        QCOMPARE(m_rows.text(1, 1), u"Zzz"_s);
        // A filter that narrows the one of before looks at what is in the row now.
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%el%'"_s));
        QCOMPARE(numbers(m_rows), QStringList{u"1"_s});
    }

    void aHiddenRowThatMatchesNowShows_data() {
        QTest::addColumn<QString>("sort");
        QTest::newRow("in order of entry") << QString();
        QTest::newRow("sorted") << u"ad DESC"_s;
    }
    void aHiddenRowThatMatchesNowShows() {
        QFETCH(const QString, sort);
        m_rows.read(*m_connection, all);
        m_rows.setSort(sort);
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%a%'"_s));
        QCOMPARE(m_rows.placeOf(3), -1);
        otherTill(u"UPDATE meyve SET ad = 'Narenciye' WHERE no = 3"_s);
        QVERIFY(m_rows.readRow(*m_connection, 3));
        QVERIFY(m_rows.placeOf(3) >= 0);
        QCOMPARE(m_rows.recordCount(), 3);
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%are%'"_s));
        QCOMPARE(numbers(m_rows), QStringList{u"3"_s});
    }

    void gone() {
        m_rows.read(*m_connection, all);
        const QStringList before = Shown(m_rows).rows;
        otherTill(u"DELETE FROM meyve WHERE no = 3"_s);
        QVERIFY(!m_rows.readRow(*m_connection, 3));
        QVERIFY(!m_rows.readRow(*m_connection, 99));  // was never there
        QCOMPARE(Shown(m_rows).rows, before);
    }

    void otherTables_data() {
        QTest::addColumn<ChangeRow>("row");
        QTest::newRow("a column less")
            << ChangeRow{u"CREATE TABLE meyve (no INTEGER PRIMARY KEY, ad TEXT)"_s};
        QTest::newRow("as many of other names")
            << ChangeRow{u"CREATE TABLE meyve (no INTEGER PRIMARY KEY, renk TEXT, fiyat REAL, tarih TEXT)"_s};
    }
    void otherTables() {
        QFETCH(const ChangeRow, row);
        m_rows.read(*m_connection, all);
        const QStringList before = Shown(m_rows).rows;
        otherTill(u"ALTER TABLE meyve RENAME TO eski"_s);
        otherTill(row.sql);
        otherTill(u"INSERT INTO meyve (no) VALUES (3)"_s);
        QVERIFY(!m_rows.readRow(*m_connection, 3));
        QCOMPARE(Shown(m_rows).rows, before);
    }

    void theSmallestNumber() {
        constexpr qint64 smallest = std::numeric_limits<qint64>::min();
        otherTill(u"INSERT INTO meyve (no, ad) VALUES (-9223372036854775807 - 1, 'İlk')"_s);
        otherTill(u"INSERT INTO meyve (no, ad) VALUES (9223372036854775807, 'Son')"_s);
        m_rows.read(*m_connection, all);
        otherTill(u"UPDATE meyve SET ad = 'Yeni' WHERE no < 0 OR no > 99"_s);
        QVERIFY(m_rows.readRow(*m_connection, smallest));
        QVERIFY(m_rows.readRow(*m_connection, std::numeric_limits<qint64>::max()));
        QCOMPARE(m_rows.text(0, 1), u"Yeni"_s);
        QCOMPARE(m_rows.text(m_rows.recordCount() - 1, 1), u"Yeni"_s);
        otherTill(u"DELETE FROM meyve WHERE no < 0"_s);
        QVERIFY(!m_rows.readRow(*m_connection, smallest));
    }

    void selects_data() {
        QTest::addColumn<SelectRow>("row");
        const QString price = u"UPDATE meyve SET fiyat = 9 WHERE no = 3"_s;
        const auto row = [](const char* name, const QString& select, const QString& sql, bool changes) {
            QTest::newRow(name) << SelectRow{select, sql, changes};
        };
        row("fewer columns", u"select ad, fiyat, tarih from meyve"_s, price, true);
        row("the counter under another name", u"select no as id, ad, fiyat, tarih from meyve"_s, price, true);
        row("with a condition", u"select * from meyve where fiyat > 2"_s, price, true);
        row("a condition that isn't met any more", u"select * from meyve where fiyat > 2"_s,
            u"UPDATE meyve SET fiyat = 1 WHERE no = 3"_s, false);
        row("an order of its own", u"select * from meyve order by no"_s, price, false);
        row("a limit", u"select * from meyve limit 4"_s, price, false);
    }
    void selects() {
        QFETCH(const SelectRow, row);
        m_rows.read(*m_connection, row.select);
        otherTill(row.sql);
        QCOMPARE(m_rows.readRow(*m_connection, 3), row.changes);
        if (row.changes)
            answersAsAFreshOne(row.select);
    }

    /// A column whose type no cell has told yet.
    void anUndecidedColumn_data() {
        QTest::addColumn<QString>("value");
        for (const char* value : {"'metin'", "5", "2.5", "9007199254740993", "''"})
            QTest::newRow(value) << QString::fromLatin1(value);
    }
    void anUndecidedColumn() {
        QFETCH(const QString, value);
        otherTill(u"CREATE TABLE bos (no INTEGER PRIMARY KEY, x)"_s);
        otherTill(u"INSERT INTO bos VALUES (1, NULL), (2, NULL), (3, NULL)"_s);
        const QString select = u"select no, IIF(1 = 1, x, NULL) as deger from bos"_s;
        m_rows.read(*m_connection, select);
        otherTill(u"UPDATE bos SET x = "_s + value + u" WHERE no = 2"_s);
        QVERIFY(m_rows.readRow(*m_connection, 2));
        RowSet fresh;
        fresh.read(*m_connection, select);
        for (const QString& sort : {u""_s, u"deger DESC"_s}) {
            m_rows.setSort(sort);
            fresh.setSort(sort);
            QCOMPARE(Shown(m_rows).rows, Shown(fresh).rows);
        }
    }

    /// One look-up, however many rows there are: none but that one is touched.
    void touchesNoOtherRow() {
        m_connection->execute(
            u"INSERT INTO meyve (ad, fiyat) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 30000) SELECT 'x', 1 FROM n"_s);
        const QString select = u"select * from meyve where abs(fiyat) >= 0"_s;
        m_rows.read(*m_connection, select);
        // The engine refuses to take their absolute value.
        otherTill(u"UPDATE meyve SET fiyat = -9223372036854775807 - 1, ad = 'bozuk' WHERE no <> 20000"_s);
        otherTill(u"CREATE TABLE tam (no INTEGER PRIMARY KEY, ad TEXT, fiyat, tarih)"_s);
        otherTill(
            u"INSERT INTO tam SELECT no, ad, CASE no WHEN 20000 THEN 1 ELSE -9223372036854775807 - 1 END, tarih FROM meyve"_s);
        otherTill(u"DROP TABLE meyve"_s);
        otherTill(u"ALTER TABLE tam RENAME TO meyve"_s);
        otherTill(u"UPDATE meyve SET ad = 'yeni' WHERE no = 20000"_s);
        QVERIFY(m_rows.readRow(*m_connection, 20000));
        QCOMPARE(m_rows.text(m_rows.placeOf(20000), 1), u"yeni"_s);
        const QStringList before = Shown(m_rows).rows;
        const auto error = errorOf([this] { m_rows.readRow(*m_connection, 20001); });
        QVERIFY(error);
        QCOMPARE(error->description(), u"integer overflow"_s);
        QCOMPARE(Shown(m_rows).rows, before);
    }

    void aClosedConnection() {
        m_rows.read(*m_connection, all);
        m_connection->close();
        QVERIFY(errorOf([this] { m_rows.readRow(*m_connection, 3); }));
        QCOMPARE(m_rows.totalCount(), 5);
    }
};

QTEST_GUILESS_MAIN(TestRowSetRereading)
#include "test_rowset_rereading.moc"
