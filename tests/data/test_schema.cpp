#include <QFile>
#include <array>
#include <memory>

#include "app/modTrace.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "databasefile.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

static_assert(!izkapali, "the steps of the check are read from the trace");

namespace {

struct ColumnRow {
    const char* table;
    const char* column;
    const char* type;
};

// The format of a shop's file, in the order in which it is checked.
constexpr std::array<ColumnRow, 30> allColumns{{
    {"urunler", "no", "COUNTER"},          {"urunler", "barkod", "TEXT(50)"},
    {"urunler", "urun", "TEXT(50)"},       {"urunler", "alis", "DOUBLE"},
    {"urunler", "satis", "DOUBLE"},        {"urunler", "stok", "DOUBLE"},
    {"satislar", "no", "COUNTER"},         {"satislar", "tarih", "DATETIME"},
    {"satislar", "barkod", "TEXT(50)"},    {"satislar", "urun", "TEXT(50)"},
    {"satislar", "adet", "DOUBLE"},        {"satislar", "fiyat", "DOUBLE"},
    {"satislar", "alis", "DOUBLE"},        {"satislar", "kar", "DOUBLE"},
    {"satislar", "toplam", "DOUBLE"},      {"satislar", "satis", "DOUBLE"},
    {"kullanici", "id", "COUNTER"},        {"kullanici", "personeladi", "TEXT(50)"},
    {"kullanici", "sifre", "TEXT(50)"},    {"kullanici", "yetki", "TEXT(50)"},
    {"musteri", "no", "COUNTER"},          {"musteri", "adi", "TEXT(50)"},
    {"musteri", "telefon", "TEXT(50)"},    {"musteri", "adres", "TEXT(100)"},
    {"urunler_hazir", "no", "COUNTER"},    {"urunler_hazir", "barkod", "TEXT(50)"},
    {"urunler_hazir", "urun", "TEXT(50)"}, {"urunler_hazir", "alis", "DOUBLE"},
    {"urunler_hazir", "satis", "DOUBLE"},  {"urunler_hazir", "stok", "DOUBLE"},
}};

const QStringList allTables{u"urunler"_s, u"satislar"_s, u"kullanici"_s, u"musteri"_s, u"urunler_hazir"_s};
const QString checked = u"DB schema: kontrol tamam (satislar.satis OK)"_s;
const QString unchecked = u"DB schema UYARI: satislar.satis eklenemedi"_s;

QString created(const QString& table) {
    return u"DB schema: "_s + table + u" tablosu olusturuldu"_s;
}

QString added(const QString& table, const QString& column) {
    return u"DB schema: "_s + table + u'.' + column + u" eklendi"_s;
}

QString text(const char* latin) {
    return QString::fromLatin1(latin);
}

/// The engine's own spelling of a column type.
QString engineType(const QString& type) {
    if (type == u"COUNTER")
        return u"INTEGER PRIMARY KEY AUTOINCREMENT"_s;
    return type.startsWith(u"TEXT") ? QString(type + u" COLLATE NOCASE"_s) : type;
}

/// A table of the shop's file without one column, in the engine's own SQL.
QString tableWithout(const QString& table, const QString& left) {
    QStringList definitions;
    for (const ColumnRow& row : allColumns) {
        if (text(row.table) == table && text(row.column) != left)
            definitions << text(row.column) + u' ' + engineType(text(row.type));
    }
    return u"CREATE TABLE "_s + table + u" ("_s + definitions.join(u", "_s) + u')';
}

/// A shop whose trace can be read, with one independent connection: each opening of a password file costs.
class TracedShop : public ShopFixture {
public:
    TracedShop() { qputenv("TEMP", QFile::encodeName(m_temp.path())); }
    ~TracedShop() { qunsetenv("TEMP"); }
    TracedShop(const TracedShop&) = delete;
    TracedShop& operator=(const TracedShop&) = delete;

    void makeDatabase(const QString& password = {}) {
        ShopFixture::makeDatabase(password);
        m_password = password;
    }
    void run(const QString& sql) { QVERIFY2(independent().run(sql), qPrintable(sql)); }
    QStringList rows(const QString& sql) {
        // The older engine answers questions about columns from what it knows until it reads the catalogue.
        independent().rows(u"SELECT count(*) FROM sqlite_master"_s);
        return independent().rows(sql);
    }

    /// The texts of the lines since the last call.
    QStringList lines() const {
        QFile log(file(u"kovanix_trace.log"_s));
        if (!log.open(QIODevice::ReadOnly))
            return {};
        QStringList texts;
        for (const QByteArray& line : log.readAll().split('\n')) {
            if (!line.isEmpty())
                texts << QString::fromUtf8(line.mid(21));
        }
        log.close();
        log.remove();
        return texts;
    }

    /// Makes the tables, all but one, with the engine's own SQL, as another release left them.
    void makeTablesBut(const QString& left) {
        for (const QString& table : allTables) {
            if (table != left)
                run(tableWithout(table, QString()));
        }
    }

    QStringList columnsOf(const QString& table) {
        QStringList names;
        for (const QString& row : rows(u"PRAGMA table_info("_s + table + u')'))
            names << row.section(u'|', 1, 1);
        return names;
    }

    QStringList definitionOf(const QString& name) {
        return rows(u"SELECT sql FROM sqlite_master WHERE name = '"_s + name + u"' COLLATE NOCASE"_s);
    }

private:
    // Made when first needed: a file with a password gets its salt from whoever writes it first.
    RawDatabase& independent() {
        if (!m_independent)
            m_independent = std::make_unique<RawDatabase>(databaseFile(), m_password);
        return *m_independent;
    }

    QTemporaryDir m_temp;
    QString m_password;
    std::unique_ptr<RawDatabase> m_independent;
};

void bothKinds() {
    QTest::addColumn<QString>("password");
    QTest::newRow("plain file") << QString();
    QTest::newRow("password file") << u"gizli"_s;
}

}  // namespace

class TestSchema : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void freshFile_data() { bothKinds(); }
    void freshFile();
    void wholeFile_data() { bothKinds(); }
    void wholeFile();
    void missingTable_data();
    void missingTable();
    void missingColumn_data();
    void missingColumn();
    void olderFileLacksSeveral_data() { bothKinds(); }
    void olderFileLacksSeveral();
    void anotherCounterStays_data();
    void anotherCounterStays();
    void viewIsNoTable_data() { bothKinds(); }
    void viewIsNoTable();
    void leavesColumnsUntouched_data();
    void leavesColumnsUntouched();
    void secondOpenIssuesNothing_data() { bothKinds(); }
    void secondOpenIssuesNothing();
    void newestColumnCannotBeAdded_data() { bothKinds(); }
    void newestColumnCannotBeAdded();
    void failureIsTold_data() { bothKinds(); }
    void failureIsTold();
    void needsAnOpenConnection();
    void findsTables_data();
    void findsTables();
    void findsColumns_data();
    void findsColumns();
    void closedCatalogueThrows();
    void addsColumns();
};

void TestSchema::freshFile() {
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

void TestSchema::wholeFile() {
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

void TestSchema::missingTable_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("table");
    for (const QString& table : allTables) {
        QTest::addRow("%s, plain file", qPrintable(table)) << QString() << table;
        QTest::addRow("%s, password file", qPrintable(table)) << u"gizli"_s << table;
    }
}

void TestSchema::missingTable() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    TracedShop shop;
    shop.makeDatabase(password);
    shop.makeTablesBut(table);
    QVERIFY(baglantihazir());
    QCOMPARE(shop.lines(), (QStringList{created(table), checked}));
    QStringList wanted;
    for (const ColumnRow& row : allColumns) {
        if (text(row.table) == table)
            wanted << text(row.column);
    }
    QCOMPARE(shop.columnsOf(table), wanted);
}

void TestSchema::missingColumn_data() {
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

void TestSchema::missingColumn() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, column);
    QFETCH(const QString, type);
    TracedShop shop;
    shop.makeDatabase(password);
    shop.makeTablesBut(table);
    shop.run(tableWithout(table, column));
    const QStringList before = shop.columnsOf(table);
    const bool counter = type == u"COUNTER";
    // Four rows, the second taken out again; the others are told by a column that stands already.
    const QString known = before.at(counter ? 0 : 1);
    for (const char* value : {"4", "3", "2", "1"})
        shop.run(u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(table, known, text(value)));
    shop.run(u"DELETE FROM %1 WHERE %2 = '3'"_s.arg(table, known));

    QVERIFY(baglantihazir());
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

void TestSchema::olderFileLacksSeveral() {
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

void TestSchema::anotherCounterStays_data() {
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

void TestSchema::anotherCounterStays() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, counter);
    TracedShop shop;
    shop.makeDatabase(password);
    shop.makeTablesBut(table);
    const QString definition =
        tableWithout(table, counter).chopped(1) + u", sira INTEGER PRIMARY KEY AUTOINCREMENT)"_s;
    shop.run(definition);
    QVERIFY(baglantihazir());
    QCOMPARE(shop.lines(), QStringList{checked});
    QCOMPARE(shop.definitionOf(table), QStringList{definition});
    QVERIFY(allAnswered(shop.boxes));
}

void TestSchema::viewIsNoTable() {
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

void TestSchema::leavesColumnsUntouched_data() {
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

void TestSchema::leavesColumnsUntouched() {
    QFETCH(const QString, password);
    QFETCH(const QString, table);
    QFETCH(const QString, from);
    QFETCH(const QString, to);
    TracedShop shop;
    shop.makeDatabase(password);
    shop.makeTablesBut(table);
    const QString usual = tableWithout(table, QString());
    QCOMPARE(usual.count(from), 1);
    const QString other = QString(usual).replace(from, to);
    shop.run(other);
    QVERIFY(baglantihazir());
    QCOMPARE(shop.lines(), QStringList{checked});
    QCOMPARE(shop.definitionOf(table), QStringList{other});
}

void TestSchema::secondOpenIssuesNothing() {
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

void TestSchema::newestColumnCannotBeAdded() {
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

void TestSchema::failureIsTold() {
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
    QCOMPARE(shop.lines(),
             (QStringList{u"DB schema HATA: satislar.satis - too many columns on sqlite_altertab_satislar"_s,
                          unchecked}));
    QVERIFY(allAnswered(shop.boxes));
}

void TestSchema::needsAnOpenConnection() {
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

void TestSchema::findsTables_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("found");
    QTest::newRow("table") << u"urunler"_s << true;
    QTest::newRow("other case") << u"URUNLER"_s << true;
    QTest::newRow("longer name") << u"urunler_hazir"_s << true;
    QTest::newRow("missing") << u"urunle"_s << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("view") << u"gorunum"_s << false;
    QTest::newRow("index") << u"kovanix_urunler_barkod"_s << false;
    QTest::newRow("system table") << u"sqlite_sequence"_s << false;
    QTest::newRow("catalogue") << u"sqlite_master"_s << false;
    QTest::newRow("name with blanks and a quote") << u"eski 'ürünler'"_s << true;
}

void TestSchema::findsTables() {
    QFETCH(const QString, name);
    QFETCH(const bool, found);
    TracedShop shop;
    shop.makeDatabase();
    QVERIFY(baglantihazir());
    shop.run(u"CREATE VIEW gorunum AS SELECT * FROM urunler"_s);
    shop.run(u"CREATE TABLE \"eski 'ürünler'\" (a)"_s);
    QCOMPARE(tablovar(baglanti(), name), found);
}

void TestSchema::findsColumns_data() {
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("column");
    QTest::addColumn<bool>("found");
    QTest::newRow("column") << u"satislar"_s << u"satis"_s << true;
    QTest::newRow("column in other case") << u"satislar"_s << u"SATIS"_s << true;
    QTest::newRow("table in other case") << u"SATISLAR"_s << u"satis"_s << true;
    QTest::newRow("counter") << u"kullanici"_s << u"id"_s << true;
    QTest::newRow("missing column") << u"satislar"_s << u"stok"_s << false;
    QTest::newRow("beginning of a name") << u"satislar"_s << u"sati"_s << false;
    QTest::newRow("missing table") << u"yok"_s << u"satis"_s << false;
}

void TestSchema::findsColumns() {
    QFETCH(const QString, table);
    QFETCH(const QString, column);
    QFETCH(const bool, found);
    TracedShop shop;
    shop.makeDatabase();
    QVERIFY(baglantihazir());
    QCOMPARE(kolonvar(baglanti(), table, column), found);
}

void TestSchema::closedCatalogueThrows() {
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

void TestSchema::addsColumns() {
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

int main(int argc, char** argv) {
    return runTests<TestSchema>(argc, argv);
}
#include "test_schema.moc"
