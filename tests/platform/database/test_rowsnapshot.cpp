// What was shown at one moment stays as it was, whatever becomes of the list.

#include "database/rowset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString all = u"select * from meyve"_s;

template <class Rows>
QStringList shown(const Rows& rows) {
    QStringList texts;
    for (qsizetype place = 0; place < rows.recordCount(); ++place) {
        QStringList cells;
        for (int field = 0; field < 3; ++field)
            cells << rows.text(place, field) + u':' + QLatin1StringView(rows.value(place, field).typeName());
        texts << cells.join(u'|');
    }
    return texts;
}

}  // namespace

class TestRowSnapshot : public QObject {
    Q_OBJECT

    DatabaseFile m_file{QString()};
    Connection m_connection;
    RowSet m_rows;

    struct LaterRow {
        void (*happens)(TestRowSnapshot& test);
    };

    void run(const QString& sql) const {
        RawDatabase other(m_file.path(), m_file.password());
        QVERIFY(other.run(sql));
    }

private Q_SLOTS:
    void initTestCase() {
        m_file.execute({u"CREATE TABLE meyve (no COUNTER, ad TEXT(50), fiyat DOUBLE)"_s});
        m_connection.open(m_file.connectionString());
    }
    void init() {
        run(u"DELETE FROM meyve"_s);
        run(u"INSERT INTO meyve (no, ad, fiyat) VALUES (1, 'Elma', 1.5), (2, 'Kayısı', 12), "
            "(3, NULL, 'bozuk'), (4, 'Ceviz', NULL), (5, 'Kiraz', 3)"_s);
        m_rows = RowSet();
        m_rows.read(m_connection, all);
        m_rows.setFilter(RowFilter::parse(u"no LIKE '%'"_s));
        m_rows.setSort(u"no DESC"_s);
    }

    void staysAsItWas_data() {
        QTest::addColumn<LaterRow>("row");
        const auto row = [](const char* name, void (*happens)(TestRowSnapshot&)) {
            QTest::newRow(name) << LaterRow{happens};
        };
        row("rows read anew", [](auto& test) {
            test.run(u"DELETE FROM meyve WHERE no < 4"_s);
            QVERIFY(test.m_rows.read(test.m_connection, all));
        });
        row("one row read anew", [](auto& test) {
            test.run(u"UPDATE meyve SET ad = 'Armut ile uzun', fiyat = 99 WHERE no = 3"_s);
            QVERIFY(test.m_rows.readRow(test.m_connection, 3));
            QCOMPARE(test.m_rows.text(2, 1), u"Armut ile uzun"_s);
            QCOMPARE(test.m_rows.text(2, 2), u"99"_s);
        });
        row("another order", [](auto& test) { test.m_rows.setSort(u"ad ASC"_s); });
        row("a filter", [](auto& test) { test.m_rows.setFilter(RowFilter::parse(u"ad LIKE '%z%'"_s)); });
        row("nothing left", [](auto& test) { test.m_rows.clear(); });
        row("the list gone", [](auto& test) { test.m_rows = RowSet(); });
    }
    void staysAsItWas() {
        QFETCH(const LaterRow, row);
        const QStringList before = shown(m_rows);
        QCOMPARE(before.size(), 5);
        const RowSnapshot kept = m_rows.snapshot();
        row.happens(*this);
        QVERIFY(shown(m_rows) != before);
        QCOMPARE(shown(kept), before);
    }

    void aRowReadAnewAnswersAsBefore() {
        const RowSnapshot kept = m_rows.snapshot();
        run(u"UPDATE meyve SET ad = 'Armut' WHERE no = 1"_s);
        QVERIFY(m_rows.readRow(m_connection, 1));
        m_rows.setFilter(RowFilter::parse(u"ad LIKE '%armut%'"_s));
        QCOMPARE(m_rows.recordCount(), 1);
        QCOMPARE(m_rows.identity(0), 1);
    }
};

QTEST_GUILESS_MAIN(TestRowSnapshot)
#include "test_rowsnapshot.moc"
