#include <map>

#include "runtests.h"
#include "tracedshop.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// What the check makes of files that lack something, or have it in another form.
class TestSchemaRepair : public QObject {
    Q_OBJECT

    /// An empty file of the kind, in a shop that all cases share: each opening of a file with a password
    /// costs.
    TracedShop& emptied(const QString& password) {
        std::unique_ptr<TracedShop>& shop = m_shops[password];
        if (!shop) {
            shop = std::make_unique<TracedShop>();
            shop->makeDatabase(password);
        }
        shop->empty();
        return *shop;
    }

    std::map<QString, std::unique_ptr<TracedShop>> m_shops;

private Q_SLOTS:
    void cleanupTestCase() { m_shops.clear(); }

    void missingTable_data();
    void missingTable();
    void missingColumn_data();
    void missingColumn();
    void anotherCounterStays_data();
    void anotherCounterStays();
    void leavesColumnsUntouched_data();
    void leavesColumnsUntouched();
};

void TestSchemaRepair::missingTable_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("table");
    for (const QString& table : allTables) {
        QTest::addRow("%s, plain file", qPrintable(table)) << QString() << table;
        QTest::addRow("%s, password file", qPrintable(table)) << u"gizli"_s << table;
    }
}

void TestSchemaRepair::missingTable() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    TracedShop& shop = emptied(password);
    shop.makeTablesBut(table);
    QVERIFY(shop.check());
    QCOMPARE(shop.lines(), (QStringList{created(table), checked}));
    QStringList wanted;
    for (const ColumnRow& row : allColumns) {
        if (text(row.table) == table)
            wanted << text(row.column);
    }
    QCOMPARE(shop.columnsOf(table), wanted);
}

void TestSchemaRepair::missingColumn_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<QString>("type");
    for (const ColumnRow& row : allColumns) {
        QTest::addRow("%s.%s, plain file", row.table, row.column)
            << QString() << text(row.table) << text(row.column) << text(row.type);
        QTest::addRow("%s.%s, password file", row.table, row.column)
            << u"gizli"_s << text(row.table) << text(row.column) << text(row.type);
    }
}

void TestSchemaRepair::missingColumn() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, column);
    QFETCH(const QString, type);
    TracedShop& shop = emptied(password);
    shop.makeTablesBut(table);
    shop.run(tableWithout(table, column));
    const QStringList before = shop.columnsOf(table);
    const bool counter = type == u"COUNTER";
    // Four rows, the second taken out again; the others are told by a column that stands already.
    const QString known = before.at(counter ? 0 : 1);
    for (const char* value : {"4", "3", "2", "1"})
        shop.run(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(table, known, text(value)));
    shop.run(u"DELETE FROM %1 WHERE %2 = '3'"_s.arg(table, known));

    QVERIFY(shop.check());
    QCOMPARE(shop.lines(), (QStringList{added(table, column), checked}));
    QCOMPARE(shop.columnsOf(table), QStringList(before) << column);
    QCOMPARE(shop.rows(u"SELECT %1, %2 FROM %3 ORDER BY rowid"_s.arg(known, column, table)),
             counter ? (QStringList{u"4|1"_s, u"2|2"_s, u"1|3"_s})
                     : (QStringList{u"4|NULL"_s, u"2|NULL"_s, u"1|NULL"_s}));

    // The column works as in a new file.
    if (counter) {
        shop.run(u"INSERT INTO %1 (%2) VALUES (0)"_s.arg(table, known));
        QCOMPARE(shop.rows(u"SELECT max(%1) FROM %2"_s.arg(column, table)), QStringList{u"4"_s});
    } else if (type.startsWith(u"TEXT")) {
        shop.run(u"UPDATE %1 SET %2 = 'abc'"_s.arg(table, column));
        QCOMPARE(shop.rows(u"SELECT * FROM %1 WHERE %2 = 'ABC'"_s.arg(table, column)).size(), 3);
    }
    QVERIFY(allAnswered(shop.boxes));
}

void TestSchemaRepair::anotherCounterStays_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("counter");
    for (const ColumnRow& row : allColumns) {
        if (text(row.type) != u"COUNTER")
            continue;
        QTest::addRow("%s, plain file", row.table) << QString() << text(row.table) << text(row.column);
        QTest::addRow("%s, password file", row.table) << u"gizli"_s << text(row.table) << text(row.column);
    }
}

void TestSchemaRepair::anotherCounterStays() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, counter);
    TracedShop& shop = emptied(password);
    shop.makeTablesBut(table);
    const QString definition =
        tableWithout(table, counter).chopped(1) + u", sira INTEGER PRIMARY KEY AUTOINCREMENT)"_s;
    shop.run(definition);
    QVERIFY(shop.check());
    QCOMPARE(shop.lines(), QStringList{checked});
    QCOMPARE(shop.definitionOf(table), QStringList{definition});
    QVERIFY(allAnswered(shop.boxes));
}

void TestSchemaRepair::leavesColumnsUntouched_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    const auto row = [](const char* name, const QString& table, const QString& from, const QString& to) {
        QTest::addRow("%s, plain file", name) << QString() << table << from << to;
        QTest::addRow("%s, password file", name) << u"gizli"_s << table << from << to;
    };
    row("column in other case", u"urunler"_s, u"barkod"_s, u"BARKOD"_s);
    row("newest column in other case", u"satislar"_s, u" satis "_s, u" Satis "_s);
    row("counter in other case", u"kullanici"_s, u"id"_s, u"ID"_s);
    row("narrower", u"kullanici"_s, u"sifre TEXT(50)"_s, u"sifre TEXT(20)"_s);
    row("wider", u"musteri"_s, u"adres TEXT(100)"_s, u"adres TEXT(255)"_s);
    row("another type", u"urunler"_s, u"stok DOUBLE"_s, u"stok INTEGER"_s);
    row("no type", u"satislar"_s, u"tarih DATETIME"_s, u"tarih"_s);
    row("counter that is a plain number", u"urunler"_s, u"no INTEGER PRIMARY KEY AUTOINCREMENT"_s,
        u"no INTEGER"_s);
    row("a column of its own", u"urunler"_s, u"stok DOUBLE"_s, u"stok DOUBLE, raf TEXT(20)"_s);
    row("table in other case", u"musteri"_s, u"TABLE musteri"_s, u"TABLE MUSTERI"_s);
}

void TestSchemaRepair::leavesColumnsUntouched() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    TracedShop& shop = emptied(password);
    shop.makeTablesBut(table);
    const QString usual = tableWithout(table, QString());
    QCOMPARE(usual.count(from), 1);
    const QString other = QString(usual).replace(from, to);
    shop.run(other);
    QVERIFY(shop.check());
    QCOMPARE(shop.lines(), QStringList{checked});
    QCOMPARE(shop.definitionOf(table), QStringList{other});
}

int main(int argc, char** argv) {
    return runTests<TestSchemaRepair>(argc, argv);
}
#include "test_schemarepair.moc"
