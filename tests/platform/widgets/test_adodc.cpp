#include "gridfixture.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct SourceRow {
    Adodc::CommandType type;
    QString source;
    int rows = 0;
};

struct FailRow {
    std::function<void(ProductList&)> step;
};

struct CurrentRow {
    std::function<void(ProductList&)> step;
    QString no;  // of the row that is current then
};

QString currentNo(const ProductList& list) {
    return list.grid.column(0).value();
}

}  // namespace

Q_DECLARE_METATYPE(SourceRow)
Q_DECLARE_METATYPE(FailRow)
Q_DECLARE_METATYPE(CurrentRow)

class TestAdodc : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void hasNoFace() {
        QWidget form;
        auto* source = new Adodc(&form);
        form.show();
        QVERIFY(!source->isVisible());
        QVERIFY(source->size().isEmpty());
        QCOMPARE(source->focusPolicy(), Qt::NoFocus);
    }

    void recordSources_data() {
        QTest::addColumn<SourceRow>("row");
        QTest::newRow("table") << SourceRow{Adodc::CommandType::table, u"urunler"_s, 20};
        QTest::newRow("table with its condition")
            << SourceRow{Adodc::CommandType::table, u"urunler where satis between 5 and 10"_s, 5};
        QTest::newRow("select") << SourceRow{Adodc::CommandType::text,
                                             u"select * from urunler where no = 3"_s, 1};
        QTest::newRow("no row") << SourceRow{Adodc::CommandType::text,
                                             u"select * from urunler where no = 0"_s, 0};
    }
    void recordSources() {
        QFETCH(const SourceRow, row);
        ProductList list(20);
        list.source.setCommandType(row.type);
        list.source.setRecordSource(row.source);
        list.source.refresh();
        QCOMPARE(list.source.recordset().recordCount(), row.rows);
        QCOMPARE(list.grid.model()->rowCount(), row.rows);
    }

    void failuresLeaveTheRows_data() {
        QTest::addColumn<FailRow>("row");
        const auto row = [](const char* name, std::function<void(ProductList&)> step) {
            QTest::newRow(name) << FailRow{std::move(step)};
        };
        row("no such table", [](ProductList& list) {
            list.source.setRecordSource(u"yok"_s);
            list.source.refresh();
        });
        row("no such file", [](ProductList& list) {
            list.source.setConnectionString(DatabaseFile::connectionString(u"/yok/yok.mdb"_s, {}));
            list.source.refresh();
        });
        row("no connection string", [](ProductList& list) {
            list.source.setConnectionString({});
            list.source.refresh();
        });
        row("unknown field to sort by", [](ProductList& list) { list.source.setSort(u"marka ASC"_s); });
        row("no filter", [](ProductList& list) { list.source.setFilter(u"urun <> 'a'"_s); });
        row("refused number", [](ProductList& list) { list.source.setFilter(u"satis LIKE '1.2.3'"_s); });
    }
    void failuresLeaveTheRows() {
        QFETCH(const FailRow, row);
        ProductList list(20);
        list.source.setFilter(u"urun LIKE '%1%'"_s);
        list.source.setCurrent(4);
        const QStringList shown = list.shown(0);
        const QString current = currentNo(list);
        const QSignalSpy changed(&list.source, &Adodc::rowsChanged);
        QVERIFY(errorOf([&] { row.step(list); }).has_value());
        QCOMPARE(list.shown(0), shown);
        QCOMPARE(currentNo(list), current);
        QVERIFY(changed.isEmpty());
    }

    void oneSignalForEachChange() {
        ProductList list(20);
        const QSignalSpy rows(&list.source, &Adodc::rowsChanged);
        const QSignalSpy current(&list.source, &Adodc::currentChanged);
        list.source.setSort(u"no DESC"_s);
        list.source.setFilter(u"urun LIKE '%1%'"_s);
        QCOMPARE(rows.size(), 2);
        list.add(u"1"_s, u"Süt"_s, 1);
        list.source.refresh();
        QCOMPARE(rows.size(), 3);
        QCOMPARE(current.size(), 0);
        list.source.setCurrent(3);
        list.source.setCurrent(3);
        QCOMPARE(current.size(), 1);
        QCOMPARE(rows.size(), 3);
    }

    void aRowReadAnew() {
        ProductList list(20);
        list.source.setCurrent(4);
        const QSignalSpy rows(&list.source, &Adodc::rowsChanged);
        list.source.refreshRow(5);
        QCOMPARE(rows.size(), 0);  // as it was
        list.file.execute({u"UPDATE urunler SET urun = 'Başka' WHERE no = 5"_s});
        QCOMPARE(list.grid.column(2).value(), u"Ürün 5"_s);
        list.source.refreshRow(5);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(list.grid.column(2).value(), u"Başka"_s);
        QCOMPARE(list.shown(2).value(4), u"Başka"_s);
        QCOMPARE(currentNo(list), u"5"_s);
        list.file.execute({u"DELETE FROM urunler WHERE no = 5"_s});
        list.source.refreshRow(5);
        QCOMPARE(rows.size(), 1);
        QCOMPARE(list.grid.column(2).value(), u"Başka"_s);
        list.file.execute({u"ALTER TABLE urunler RENAME TO eski"_s});
        list.source.refreshRow(5);
        QCOMPARE(list.shown(2).size(), 20);
    }

    // Nothing to show anew, so nobody is told.
    void unchangedFileIsNoChange() {
        ProductList list(20);
        const QSignalSpy rows(&list.source, &Adodc::rowsChanged);
        list.source.refresh();
        QCOMPARE(rows.size(), 0);
    }

    void currentRow_data() {
        QTest::addColumn<CurrentRow>("row");
        const auto row = [](const char* name, std::function<void(ProductList&)> step, const QString& no) {
            QTest::newRow(name) << CurrentRow{std::move(step), no};
        };
        row(
            "the first at start", [](ProductList&) {}, u"1"_s);
        row(
            "the first of another order, none chosen",
            [](ProductList& list) { list.source.setSort(u"no DESC"_s); }, u"20"_s);
        row(
            "the chosen one in another order",
            [](ProductList& list) {
                list.source.setCurrent(4);
                list.source.setSort(u"no DESC"_s);
            },
            u"5"_s);
        row(
            "the first, chosen",
            [](ProductList& list) {
                list.show();
                QTest::mouseClick(list.grid.viewport(), Qt::LeftButton, {}, list.middleOf(0, 1));
                list.source.setSort(u"no DESC"_s);
            },
            u"1"_s);
        row(
            "the first while the chosen one is hidden",
            [](ProductList& list) {
                list.source.setCurrent(4);
                list.source.setFilter(u"urun LIKE '%2%'"_s);
            },
            u"2"_s);
        row(
            "the chosen one when it is back",
            [](ProductList& list) {
                list.source.setCurrent(4);
                list.source.setFilter(u"urun LIKE '%2%'"_s);
                list.source.setFilter({});
            },
            u"5"_s);
        row(
            "the first when the chosen one is gone",
            [](ProductList& list) {
                list.source.setCurrent(4);
                list.run(u"DELETE FROM urunler WHERE no = 5"_s);
                list.source.refresh();
            },
            u"1"_s);
        row("none of no rows", [](ProductList& list) { list.source.setFilter(u"urun LIKE 'yok'"_s); }, {});
        row("none when told so", [](ProductList& list) { list.source.setCurrent(-1); }, {});
    }
    void currentRow() {
        QFETCH(const CurrentRow, row);
        ProductList list(20);
        row.step(list);
        QCOMPARE(currentNo(list), row.no);
        QCOMPARE(list.grid.currentIndex().isValid(), !row.no.isEmpty());
    }
};

QTEST_MAIN(TestAdodc)
#include "test_adodc.moc"
