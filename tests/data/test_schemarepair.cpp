#include <map>

#include "runtests.h"
#include "tracedshop.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

/// What the check makes of files that lack something, or have it in another form.
class TestSchemaRepair : public QObject {
    Q_OBJECT

    struct MissingTableRow {
        QString password, table;
    };
    struct MissingColumnRow {
        QString password, table, column, type;
    };
    struct AnotherCounterStaysRow {
        QString password, table, counter;
    };
    struct LeavesColumnsUntouchedRow {
        QString password, table, from, to;
    };

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

    void missingTable_data() {
        QTest::addColumn<MissingTableRow>("row");
        for (const QString& table : allTables) {
            QTest::addRow("%s, plain file", qPrintable(table)) << MissingTableRow{QString(), table};
            QTest::addRow("%s, password file", qPrintable(table)) << MissingTableRow{u"gizli"_s, table};
        }
    }
    void missingTable() {
        QFETCH(const MissingTableRow, row);
        TracedShop& shop = emptied(row.password);
        shop.makeTablesBut(row.table);
        QVERIFY(shop.check());
        QCOMPARE(shop.lines(), (QStringList{created(row.table), checked}));
        QStringList wanted;
        for (const ColumnRow& column : allColumns) {
            if (text(column.table) == row.table)
                wanted << text(column.column);
        }
        QCOMPARE(shop.columnsOf(row.table), wanted);
    }

    void missingColumn_data() {
        QTest::addColumn<MissingColumnRow>("row");
        for (const ColumnRow& row : allColumns) {
            QTest::addRow("%s.%s, plain file", row.table, row.column)
                << MissingColumnRow{QString(), text(row.table), text(row.column), text(row.type)};
            QTest::addRow("%s.%s, password file", row.table, row.column)
                << MissingColumnRow{u"gizli"_s, text(row.table), text(row.column), text(row.type)};
        }
    }
    void missingColumn() {
        QFETCH(const MissingColumnRow, row);
        TracedShop& shop = emptied(row.password);
        shop.makeTablesBut(row.table);
        shop.run(tableWithout(row.table, row.column));
        const QStringList before = shop.columnsOf(row.table);
        const bool counter = row.type == u"COUNTER";
        // Four rows, the second taken out again; the others are told by a column that stands already.
        const QString known = before.at(counter ? 0 : 1);
        for (const char* value : {"4", "3", "2", "1"})
            shop.run(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(row.table, known, text(value)));
        shop.run(u"DELETE FROM %1 WHERE %2 = '3'"_s.arg(row.table, known));

        QVERIFY(shop.check());
        QCOMPARE(shop.lines(), (QStringList{added(row.table, row.column), checked}));
        QCOMPARE(shop.columnsOf(row.table), QStringList(before) << row.column);
        QCOMPARE(shop.rows(u"SELECT %1, %2 FROM %3 ORDER BY rowid"_s.arg(known, row.column, row.table)),
                 counter ? (QStringList{u"4|1"_s, u"2|2"_s, u"1|3"_s})
                         : (QStringList{u"4|NULL"_s, u"2|NULL"_s, u"1|NULL"_s}));

        // The column works as in a new file.
        if (counter) {
            shop.run(u"INSERT INTO %1 (%2) VALUES (0)"_s.arg(row.table, known));
            QCOMPARE(shop.rows(u"SELECT max(%1) FROM %2"_s.arg(row.column, row.table)), QStringList{u"4"_s});
        } else if (row.type.startsWith(u"TEXT")) {
            shop.run(u"UPDATE %1 SET %2 = 'abc'"_s.arg(row.table, row.column));
            QCOMPARE(shop.rows(u"SELECT * FROM %1 WHERE %2 = 'ABC'"_s.arg(row.table, row.column)).size(), 3);
        }
        QVERIFY(allAnswered(shop.boxes));
    }

    void anotherCounterStays_data() {
        QTest::addColumn<AnotherCounterStaysRow>("row");
        for (const ColumnRow& row : allColumns) {
            if (text(row.type) != u"COUNTER")
                continue;
            QTest::addRow("%s, plain file", row.table)
                << AnotherCounterStaysRow{QString(), text(row.table), text(row.column)};
            QTest::addRow("%s, password file", row.table)
                << AnotherCounterStaysRow{u"gizli"_s, text(row.table), text(row.column)};
        }
    }
    void anotherCounterStays() {
        QFETCH(const AnotherCounterStaysRow, row);
        TracedShop& shop = emptied(row.password);
        shop.makeTablesBut(row.table);
        const QString definition =
            tableWithout(row.table, row.counter).chopped(1) + u", sira INTEGER PRIMARY KEY AUTOINCREMENT)"_s;
        shop.run(definition);
        QVERIFY(shop.check());
        QCOMPARE(shop.lines(), QStringList{checked});
        QCOMPARE(shop.definitionOf(row.table), QStringList{definition});
        QVERIFY(allAnswered(shop.boxes));
    }

    void leavesColumnsUntouched_data() {
        QTest::addColumn<LeavesColumnsUntouchedRow>("row");
        const auto row = [](const char* name, const QString& table, const QString& from, const QString& to) {
            QTest::addRow("%s, plain file", name) << LeavesColumnsUntouchedRow{QString(), table, from, to};
            QTest::addRow("%s, password file", name)
                << LeavesColumnsUntouchedRow{u"gizli"_s, table, from, to};
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
    void leavesColumnsUntouched() {
        QFETCH(const LeavesColumnsUntouchedRow, row);
        TracedShop& shop = emptied(row.password);
        shop.makeTablesBut(row.table);
        const QString usual = tableWithout(row.table, QString());
        QCOMPARE(usual.count(row.from), 1);
        const QString other = QString(usual).replace(row.from, row.to);
        shop.run(other);
        QVERIFY(shop.check());
        QCOMPARE(shop.lines(), QStringList{checked});
        QCOMPARE(shop.definitionOf(row.table), QStringList{other});
    }
};

int main(int argc, char** argv) {
    return runTests<TestSchemaRepair>(argc, argv);
}
#include "test_schemarepair.moc"
