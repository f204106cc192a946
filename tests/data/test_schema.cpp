#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "tracedshop.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

void bothKinds() {
    QTest::addColumn<QString>("password");
    QTest::newRow("plain file") << QString();
    QTest::newRow("password file") << u"gizli"_s;
}

}  // namespace

class TestSchema : public QObject {
    Q_OBJECT

    struct FindsTablesRow {
        QString name;
        bool found;
    };
    struct FindsColumnsRow {
        QString table, column;
        bool found;
    };

private Q_SLOTS:
    void freshFile_data() { bothKinds(); }
    void freshFile() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        baglantiac();
        QStringList expected;
        for (const QString& table : allTables)
            expected << created(table);
        QCOMPARE(shop.lines(), expected << checked);
        QVERIFY(semahazir);

        QStringList columns;
        QStringList wanted;
        for (const ColumnRow& row : allColumns)
            wanted << text(row.table) + u'.' + text(row.column) + u' ' +
                          (text(row.type) == u"COUNTER" ? u"INTEGER"_s : text(row.type));
        for (const QString& table : allTables) {
            for (const QString& row : shop.rows(u"PRAGMA table_info("_s + table + u')')) {
                const QStringList parts = row.split(u'|');
                columns << table + u'.' + parts.at(1) + u' ' + parts.at(2);
                QCOMPARE(parts.at(3), u"0"_s);  // null is allowed
            }
            QCOMPARE(shop.rows(u"SELECT * FROM "_s + table).size(), 0);
        }
        QCOMPARE(columns, wanted);
        QVERIFY(allAnswered(shop.boxes));
    }

    void wholeFile_data() { bothKinds(); }
    void wholeFile() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        QVERIFY(baglantihazir());
        const QStringList version = shop.rows(u"PRAGMA schema_version"_s);
        baglantikapat();
        semahazir = false;  // as in the next process
        shop.lines();
        QVERIFY(baglantihazir());
        QCOMPARE(shop.lines(), QStringList{checked});
        QVERIFY(semahazir);
        QCOMPARE(shop.rows(u"PRAGMA schema_version"_s), version);
    }

    void olderFileLacksSeveral_data() { bothKinds(); }
    void olderFileLacksSeveral() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        shop.run(u"CREATE TABLE satislar (tarih DATETIME, barkod TEXT(50))"_s);
        shop.run(u"CREATE TABLE kullanici (sifre TEXT(50))"_s);
        shop.run(u"CREATE TABLE urunler_hazir (barkod TEXT(50), urun TEXT(50), alis DOUBLE, satis DOUBLE)"_s);
        QVERIFY(baglantihazir());
        QCOMPARE(
            shop.lines(),
            (QStringList{created(u"urunler"_s), created(u"musteri"_s), added(u"satislar"_s, u"no"_s),
                         added(u"satislar"_s, u"urun"_s), added(u"satislar"_s, u"adet"_s),
                         added(u"satislar"_s, u"fiyat"_s), added(u"satislar"_s, u"alis"_s),
                         added(u"satislar"_s, u"kar"_s), added(u"satislar"_s, u"toplam"_s),
                         added(u"satislar"_s, u"satis"_s), added(u"kullanici"_s, u"id"_s),
                         added(u"kullanici"_s, u"personeladi"_s), added(u"kullanici"_s, u"yetki"_s),
                         added(u"urunler_hazir"_s, u"no"_s), added(u"urunler_hazir"_s, u"stok"_s), checked}));
        QVERIFY(allAnswered(shop.boxes));
    }

    void viewIsNoTable_data() { bothKinds(); }
    void viewIsNoTable() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        shop.makeTablesBut(u"urunler"_s);
        const QString view = u"CREATE VIEW urunler AS SELECT no, barkod FROM urunler_hazir"_s;
        shop.run(view);
        QVERIFY(baglantihazir());
        QCOMPARE(shop.lines(), (QStringList{created(u"urunler"_s), checked}));
        QCOMPARE(shop.definitionOf(u"urunler"_s), QStringList{view});
        QVERIFY(allAnswered(shop.boxes));
    }

    void secondOpenIssuesNothing_data() { bothKinds(); }
    void secondOpenIssuesNothing() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        QVERIFY(baglantihazir());
        shop.lines();
        shop.run(u"DROP TABLE urunler_hazir"_s);
        const QStringList version = shop.rows(u"PRAGMA schema_version"_s);
        baglantiac();
        QCOMPARE(shop.lines(), QStringList());
        QCOMPARE(shop.rows(u"PRAGMA schema_version"_s), version);
        QVERIFY(semahazir);
        baglantihazir();
        semakontrol(baglanti());
        QCOMPARE(shop.lines(), QStringList());
    }

    void newestColumnCannotBeAdded_data() { bothKinds(); }
    void newestColumnCannotBeAdded() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        shop.makeTablesBut(u"satislar"_s);
        shop.run(u"CREATE VIEW satislar AS SELECT no, barkod FROM urunler"_s);
        for (int time = 0; time < 2; ++time) {
            baglantiac();
            QVERIFY(!semahazir);
            QCOMPARE(baglantidurumu, 1);  // the file stays usable
            QCOMPARE(shop.lines(), (QStringList{created(u"satislar"_s), unchecked}));
        }
        // An open connection isn't checked again, whatever the check found.
        QVERIFY(baglantihazir());
        QCOMPARE(shop.lines(), QStringList());
        // Once the obstacle is gone, the next opening finds the column.
        shop.run(u"DROP VIEW satislar"_s);
        baglantiac();
        QCOMPARE(shop.lines(), (QStringList{created(u"satislar"_s), checked}));
        QVERIFY(semahazir);
        QVERIFY(allAnswered(shop.boxes));
    }

    void failureIsTold_data() { bothKinds(); }
    void failureIsTold() {
        QFETCH(const QString, password);
        TracedShop shop;
        shop.makeDatabase(password);
        shop.makeTablesBut(u"satislar"_s);
        // A table that takes no further column.
        QString full = tableWithout(u"satislar"_s, u"satis"_s).chopped(1);
        for (int column = 0; column < 1991; ++column)
            full += u", k"_s + QString::number(column);
        shop.run(full + u')');
        baglantiac();
        QCOMPARE(baglantidurumu, 1);
        QVERIFY(!semahazir);
        QCOMPARE(
            shop.lines(),
            (QStringList{u"DB schema HATA: satislar.satis - too many columns on sqlite_altertab_satislar"_s,
                         unchecked}));
        QVERIFY(allAnswered(shop.boxes));
    }

    void needsAnOpenConnection() {
        TracedShop shop;
        shop.makeDatabase();
        Connection connection;
        semakontrol(connection);
        QVERIFY(!semahazir);
        QCOMPARE(shop.lines(), QStringList());
        connection.open(baglantiyazisi());
        semahazir = true;
        semakontrol(connection);
        QVERIFY(semahazir);
        QCOMPARE(shop.lines(), QStringList());
        QVERIFY(!tablovar(connection, u"urunler"_s));
        semahazir = false;
        semakontrol(connection);
        QVERIFY(semahazir);
        QVERIFY(tablovar(connection, u"urunler"_s));
    }

    void findsTables_data() {
        addRows<FindsTablesRow>({{"table", {u"urunler"_s, true}},
                                 {"other case", {u"URUNLER"_s, true}},
                                 {"longer name", {u"urunler_hazir"_s, true}},
                                 {"missing", {u"urunle"_s, false}},
                                 {"empty", {QString(), false}},
                                 {"view", {u"gorunum"_s, false}},
                                 {"index", {u"kovanix_urunler_barkod"_s, false}},
                                 {"system table", {u"sqlite_sequence"_s, false}},
                                 {"catalogue", {u"sqlite_master"_s, false}},
                                 {"name with blanks and a quote", {u"eski 'ürünler'"_s, true}}});
    }
    void findsTables() {
        QFETCH(const FindsTablesRow, row);
        TracedShop shop;
        shop.makeDatabase();
        QVERIFY(baglantihazir());
        shop.run(u"CREATE VIEW gorunum AS SELECT * FROM urunler"_s);
        shop.run(u"CREATE TABLE \"eski 'ürünler'\" (a)"_s);
        QCOMPARE(tablovar(baglanti(), row.name), row.found);
    }

    void findsColumns_data() {
        addRows<FindsColumnsRow>({{"column", {u"satislar"_s, u"satis"_s, true}},
                                  {"column in other case", {u"satislar"_s, u"SATIS"_s, true}},
                                  {"table in other case", {u"SATISLAR"_s, u"satis"_s, true}},
                                  {"counter", {u"kullanici"_s, u"id"_s, true}},
                                  {"missing column", {u"satislar"_s, u"stok"_s, false}},
                                  {"beginning of a name", {u"satislar"_s, u"sati"_s, false}},
                                  {"missing table", {u"yok"_s, u"satis"_s, false}}});
    }
    void findsColumns() {
        QFETCH(const FindsColumnsRow, row);
        TracedShop shop;
        shop.makeDatabase();
        QVERIFY(baglantihazir());
        QCOMPARE(kolonvar(baglanti(), row.table, row.column), row.found);
    }

    void closedCatalogueThrows() {
        const TracedShop shop;
        Connection connection;
        QVERIFY_THROWS_EXCEPTION(RuntimeError, tablovar(connection, u"urunler"_s));
        QVERIFY_THROWS_EXCEPTION(RuntimeError, kolonvar(connection, u"urunler"_s, u"no"_s));
        // The steps of the check pass over it; a creation line tells of the attempt.
        kolonekle(connection, u"urunler"_s, u"raf"_s, u"TEXT(20)"_s);
        QCOMPARE(shop.lines(), QStringList());
        tablolariolustur(connection);
        QStringList attempts;
        for (const QString& table : allTables)
            attempts << created(table);
        QCOMPARE(shop.lines(), attempts);
    }

    void addsColumns() {
        TracedShop shop;
        shop.makeDatabase();
        QVERIFY(baglantihazir());
        shop.run(u"CREATE TABLE \"order\" (a)"_s);
        shop.lines();
        kolonekle(baglanti(), u"order"_s, u"select"_s, u"DOUBLE"_s);
        QCOMPARE(shop.lines(), QStringList{added(u"order"_s, u"select"_s)});
        QCOMPARE(shop.columnsOf(u"'order'"_s), (QStringList{u"a"_s, u"select"_s}));
        kolonekle(baglanti(), u"order"_s, u"SELECT"_s, u"TEXT(10)"_s);
        kolonekle(baglanti(), u"yok"_s, u"a"_s, u"DOUBLE"_s);
        QCOMPARE(shop.lines(), QStringList());
        QCOMPARE(shop.columnsOf(u"'order'"_s), (QStringList{u"a"_s, u"select"_s}));
    }
};

int main(int argc, char** argv) {
    return runTests<TestSchema>(argc, argv);
}
#include "test_schema.moc"
