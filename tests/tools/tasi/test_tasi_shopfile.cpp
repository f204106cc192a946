// A shop's file as the move sees it: held against tills, its tables as the till knows them.

#include <QFileInfo>
#include <QTest>
#include <algorithm>

#include "data/schema.h"
#include "databasefile.h"
#include "tasi/digest.h"
#include "tasi/failure.h"
#include "tasi/shopfile.h"

using namespace kovanix;
using namespace kovanix::tasi;
using namespace Qt::StringLiterals;

namespace {

const QString driver = u"KOVANIXSQLITE"_s;

void makeTables(const DatabaseFile& file) {
    Connection connection;
    connection.open(file.connectionString());
    tablolariolustur(connection);
}

/// How the open of a file ends.
std::optional<ExitCode> refusal(const QString& path, const QString& password) {
    try {
        const ShopFile file(path, password);
        return std::nullopt;
    } catch (const Failure& failure) {
        return failure.code();
    }
}

const Table* find(const ShopFile& file, const QString& name) {
    const auto place = std::ranges::find(file.tables(), name, &Table::name);
    return place == file.tables().end() ? nullptr : &*place;
}

QString digestOf(ShopFile& file) {
    Digest digest;
    for (const Table& table : file.tables()) {
        digest.add(table);
        file.forEachRow(table, [&](const engine::RowCursor& row) {
            for (int i = 0; i < table.columns.size(); ++i)
                digest.add(row.cell(i));
        });
    }
    return digest.result();
}

struct DigestRow {
    const char* name;
    QString change;
};

struct OrderRow {
    const char* name;
    QString create;
    QString insert;
    int counter;
    QStringList order;
};

/// A column of the shop's own.
struct FormRow {
    const char* name;
    QString declared;
    QStringList cells;  ///< in the engine's SQL
    Form form;
};

}  // namespace

Q_DECLARE_METATYPE(DigestRow)
Q_DECLARE_METATYPE(FormRow)
Q_DECLARE_METATYPE(OrderRow)

class TestTasiShopFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readsTablesAsTheTillDoes_data() { DatabaseFile::bothKinds(); }
    void readsTablesAsTheTillDoes() {
        const DatabaseFile file;
        makeTables(file);
        file.execute(
            {u"CREATE TABLE fazla (a INTEGER PRIMARY KEY, b VARCHAR(12), c, d BLOB, e REAL, f "
             "TIMESTAMP, g DECIMAL(8,2), h INT, i CLOB)"_s,
             u"CREATE TABLE iki (a INTEGER, b TEXT(9), PRIMARY KEY (a, b))"_s,
             u"CREATE TABLE anahtarsiz (rowid TEXT, b INTEGER)"_s});
        QHash<QString, TableShape> shapes;
        {
            Connection connection;
            connection.open(file.connectionString());
            for (const TableInfo& table : connection.tables()) {
                if (table.type == u"TABLE")
                    shapes.insert(table.name, connection.shape(table.name));
            }
        }
        const ShopFile shop(file.path(), file.password());
        QCOMPARE(shop.tables().size(), shapes.size());
        for (const Table& table : shop.tables()) {
            const TableShape shape = shapes.value(table.name);
            QCOMPARE(table.columns.size(), shape.columns.size());
            for (qsizetype i = 0; i < shape.columns.size(); ++i) {
                QCOMPARE(table.columns[i].name, shape.columns[i].name);
                QCOMPARE(table.columns[i].type, shape.columns[i].type);
                QCOMPARE(table.columns[i].width, shape.columns[i].width);
            }
            QCOMPARE(table.order.isEmpty(), shape.identity.isEmpty());
        }
    }

    void knowsTheTillsOwnTables() {
        const DatabaseFile file{QString()};
        makeTables(file);
        const ShopFile shop(file.path(), {});
        QStringList names;
        for (const Table& table : shop.tables()) {
            names.append(table.name);
            for (const Column& column : table.columns)
                QVERIFY2(isTillColumn(table.name, column.name), qPrintable(column.name));
        }
        QCOMPARE(names, tillTables());
        QVERIFY(shop.notices().isEmpty());
        QVERIFY(!isTillColumn(u"urunler"_s, u"renk"_s));
        QVERIFY(isTillColumn(u"URUNLER"_s, u"Barkod"_s));
    }

    void ordersRows_data() {
        QTest::addColumn<OrderRow>("row");
        const QList<OrderRow> rows{
            {"counter",
             u"no INTEGER PRIMARY KEY AUTOINCREMENT, urun TEXT(50)"_s,
             u"(7, 'a'), (-2, 'b')"_s,
             0,
             {u"b"_s, u"a"_s}},
            {"counter elsewhere",
             u"urun TEXT(50), sira INTEGER PRIMARY KEY"_s,
             u"('a', 3), ('b', 1)"_s,
             1,
             {u"b"_s, u"a"_s}},
            {"none", u"no INTEGER, urun TEXT(50)"_s, u"(9, 'a'), (1, 'b')"_s, -1, {u"a"_s, u"b"_s}},
            {"a key of two",
             u"no INTEGER, urun TEXT(50), PRIMARY KEY (no, urun)"_s,
             u"(9, 'a'), (1, 'b')"_s,
             -1,
             {u"a"_s, u"b"_s}},
        };
        for (const OrderRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void ordersRows() {
        QFETCH(OrderRow, row);
        const DatabaseFile file{QString()};
        QVERIFY(RawDatabase(file.path(), {}, driver).run(u"CREATE TABLE urunler (%1)"_s.arg(row.create)));
        QVERIFY(RawDatabase(file.path(), {}, driver).run(u"INSERT INTO urunler VALUES "_s + row.insert));
        ShopFile shop(file.path(), {});
        const Table& table = shop.tables().constFirst();
        QCOMPARE(table.counter, row.counter);
        const int column = table.columns[0].name == u"urun" ? 0 : 1;
        QStringList order;
        shop.forEachRow(table, [&](const engine::RowCursor& cells) {
            const std::string_view text = cells.cell(column).bytes;
            order.append(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
        });
        QCOMPARE(order, row.order);
    }

    void findsTheLastNumberEverGiven() {
        const DatabaseFile file{QString()};
        makeTables(file);
        file.execute({u"INSERT INTO urunler (no, urun) VALUES (41, 'a')"_s,
                      u"DELETE FROM urunler WHERE no = 41"_s,
                      u"INSERT INTO musteri (no, adi) VALUES (5, 'b')"_s});
        const ShopFile shop(file.path(), {});
        QCOMPARE(find(shop, u"urunler"_s)->lastNumber, 41);
        QCOMPARE(find(shop, u"musteri"_s)->lastNumber, 5);
        QCOMPARE(find(shop, u"satislar"_s)->lastNumber, 0);
    }

    void choosesForms_data() {
        QTest::addColumn<FormRow>("row");
        const QString edge = u"9007199254740992"_s;  // the last whole number before doubles have gaps
        const QString beyond = u"9007199254740993"_s;
        const QList<FormRow> rows{
            {"whole", u"INTEGER"_s, {u"1"_s, u"NULL"_s}, Form::whole},
            {"whole and fractions", u"INTEGER"_s, {u"1"_s, u"1.5"_s}, Form::number},
            {"large and fractions", u"INTEGER"_s, {u"1.5"_s, beyond}, Form::text},
            {"whole without a type", u""_s, {beyond}, Form::whole},
            {"small whole without a type", u""_s, {u"5"_s}, Form::whole},
            {"fractions without a type", u""_s, {u"1.5"_s, u"2"_s}, Form::number},
            {"whole where fractions may come", u"DECIMAL(8,2)"_s, {edge, u"-"_s + edge}, Form::number},
            {"large where fractions may come", u"DECIMAL(8,2)"_s, {beyond}, Form::whole},
            {"very small where fractions may come", u"DECIMAL(8,2)"_s, {u"-"_s + beyond}, Form::whole},
            {"bytes", u"BLOB"_s, {u"x'00ff'"_s, u"NULL"_s}, Form::bytes},
            {"bytes of a number's type", u"INT"_s, {u"x'00'"_s}, Form::bytes},
            {"bytes of a text's type", u"TEXT(9)"_s, {u"x'00'"_s}, Form::bytes},
            {"bytes of a moment's type", u"DATETIME"_s, {u"x'00'"_s}, Form::bytes},
            {"bytes and texts", u"BLOB"_s, {u"x'00'"_s, u"'a'"_s}, Form::text},
            {"bytes and numbers", u"INT"_s, {u"x'00'"_s, u"1"_s}, Form::text},
            {"no cells", u"BLOB"_s, {}, Form::text},
            {"no cells of a number's type", u"INT"_s, {u"NULL"_s}, Form::number},
            {"no cells of an unknown type", u"MEMO"_s, {u"NULL"_s}, Form::text},
            {"a text of an unknown type", u"MEMO"_s, {u"'a'"_s}, Form::text},
            {"a text that is a number, of an unknown type", u"STRING"_s, {u"'1,5'"_s}, Form::text},
            {"whole numbers of an unknown type", u"STRING"_s, {u"5"_s}, Form::number},
            {"a text of a number's type", u"INT"_s, {u"'A12'"_s}, Form::text},
            {"a word for true", u"BOOLEAN"_s, {u"'evet'"_s}, Form::text},
            {"a number as text", u"DOUBLE"_s, {u"'1,5'"_s, u"2"_s}, Form::number},
            {"a zero as text", u"DOUBLE"_s, {u"'0,00 '"_s, u"''"_s}, Form::number},
            {"a number and a word", u"DOUBLE"_s, {u"'1,5'"_s, u"'beş'"_s}, Form::text},
            {"a number as text beside a large one", u"INT"_s, {u"'1,5'"_s, beyond}, Form::text},
            {"a moment", u"DATETIME"_s, {u"'2026-05-03'"_s}, Form::moment},
        };
        for (const FormRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void choosesForms() {
        QFETCH(FormRow, row);
        const DatabaseFile file{QString()};
        makeTables(file);
        const auto run = [&file](const QString& sql) {
            return RawDatabase(file.path(), {}, driver).run(sql);
        };
        QVERIFY(run(u"CREATE TABLE ek (bir TEXT, iki %1, uc INT)"_s.arg(row.declared)));
        for (const QString& cell : row.cells)
            QVERIFY(run(u"INSERT INTO ek VALUES ('a', %1, 1)"_s.arg(cell)));
        const ShopFile shop(file.path(), {});
        QCOMPARE(find(shop, u"ek"_s)->columns[1].form, row.form);
    }

    /// Whatever words another program has declared them with.
    void givesTheTillsColumnsTheTillsForms() {
        const DatabaseFile file{QString()};
        const auto run = [&file](const QString& sql) {
            return RawDatabase(file.path(), {}, driver).run(sql);
        };
        QVERIFY(
            run(u"CREATE TABLE Satislar (no STRING, TARIH TEXT(30), barkod INT, urun VARCHAR(80), adet "
                "MEMO, fiyat TEXT(9), kar BLOB)"_s));
        QVERIFY(run(u"INSERT INTO Satislar VALUES ('A1', 'dün', 5, 'a', 'beş', 'x', x'00')"_s));
        const ShopFile shop(file.path(), {});
        QList<Form> forms;
        QList<ColumnType> types;
        QList<int> widths;
        for (const Column& column : shop.tables().constFirst().columns) {
            forms.append(column.form);
            types.append(column.type);
            widths.append(column.width);
        }
        QCOMPARE(forms, (QList<Form>{Form::text, Form::moment, Form::text, Form::text, Form::number,
                                     Form::number, Form::number}));
        using enum ColumnType;
        QCOMPARE(types, (QList<ColumnType>{text, moment, text, text, number, number, number}));
        QCOMPARE(widths, (QList<int>{0, 0, 0, 80, 0, 0, 0}));
    }

    void tellsWhatStaysBehind() {
        const DatabaseFile file{QString()};
        makeTables(file);
        file.execute({u"CREATE VIEW pahali AS SELECT * FROM urunler"_s,
                      u"CREATE INDEX eskiden ON urunler (urun)"_s,
                      u"CREATE TRIGGER dur AFTER INSERT ON musteri BEGIN SELECT 1; END"_s,
                      u"ALTER TABLE urunler ADD COLUMN renk TEXT(20)"_s,
                      u"CREATE TABLE notlar (metin TEXT, kisa TEXT AS (substr(metin, 1, 9)) STORED)"_s});
        const ShopFile shop(file.path(), {});
        QStringList told;
        for (const Notice& notice : shop.notices())
            told.append(notice.table + u": " + notice.words);
        told.sort();
        QCOMPARE(told.size(), 6);
        QVERIFY(told[0].startsWith(u"musteri: tetikleyici"));
        QVERIFY(told[1].startsWith(u"notlar: hesaplanan sütun") && told[1].endsWith(u": kisa"));
        QVERIFY(told[2].startsWith(u"notlar: "));
        QVERIFY(told[3].startsWith(u"pahali: "));
        QVERIFY(told[4].startsWith(u"urunler: dizin"));
        QVERIFY(told[5].endsWith(u": renk"));
    }

    void isRefusedWhileATillHasItOpen_data() { DatabaseFile::bothKinds(); }
    void isRefusedWhileATillHasItOpen() {
        const DatabaseFile file;
        makeTables(file);
        Connection till;
        till.open(file.connectionString());
        QCOMPARE(refusal(file.path(), file.password()), ExitCode::fileUnfit);
        till.close();
        QCOMPARE(refusal(file.path(), file.password()), std::nullopt);
    }

    void holdsTillsOff_data() { DatabaseFile::bothKinds(); }
    void holdsTillsOff() {
        const DatabaseFile file;
        makeTables(file);
        const ShopFile shop(file.path(), file.password());
        Connection till(std::chrono::milliseconds(10));
        QVERIFY(errorOf([&] { till.open(file.connectionString()); }));
    }

    /// A till that shares its file over a network has it open without a lock while it rests.
    void holdsOffATillOfANetwork() {
        const DatabaseFile file{QString()};
        makeTables(file);
        setNetworkFileTest([](const QString&) { return true; });
        Connection till(std::chrono::milliseconds(10));
        till.open(file.connectionString());
        const ShopFile shop(file.path(), {});
        QVERIFY(errorOf([&] { till.execute(u"INSERT INTO urunler (urun) VALUES ('a')"_s); }));
        QVERIFY(errorOf([&] { till.tables(); }));
        setNetworkFileTest({});
    }

    void leavesTheFileAsItIs_data() { DatabaseFile::bothKinds(); }
    void leavesTheFileAsItIs() {
        const DatabaseFile file;
        makeTables(file);
        const auto bytes = [&file] {
            QFile opened(file.path());
            return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
        };
        const QByteArray before = bytes();
        {
            ShopFile shop(file.path(), file.password());
            QVERIFY(!digestOf(shop).isEmpty());
        }
        QCOMPARE(bytes(), before);
        QCOMPARE(QDir(file.folder()).entryList(QDir::Files).size(), 1);
    }

    void refuses_data() {
        QTest::addColumn<QString>("kind");
        for (const char* kind : {"missing", "wrong password", "no password", "no shop", "empty"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }
    void refuses() {
        QFETCH(QString, kind);
        const DatabaseFile file(kind.endsWith(u"password") ? u"gizli"_s : QString());
        QString path = file.path();
        QString password = file.password();
        if (kind != u"empty" && kind != u"no shop")
            makeTables(file);
        if (kind == u"missing")
            path += u".yok";
        else if (kind == u"wrong password")
            password = u"başka"_s;
        else if (kind == u"no password")
            password.clear();
        else if (kind == u"no shop")
            QVERIFY(RawDatabase(path, {}, driver).run(u"CREATE TABLE defter (a)"_s));
        QCOMPARE(refusal(path, password), ExitCode::fileUnfit);
    }

    void findsDamage() {
        const DatabaseFile file{QString()};
        makeTables(file);
        QVERIFY(RawDatabase(file.path(), {}, driver)
                    .run(u"WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                         "INSERT INTO urunler (urun) SELECT 'ürün ' || i FROM n"_s));
        file.damage();
        QVERIFY_THROWS_EXCEPTION(Failure, ShopFile shop(file.path(), {}); digestOf(shop));
    }

    void renamesUnderTheLock() {
        const DatabaseFile file{QString()};
        makeTables(file);
        {
            ShopFile shop(file.path(), {});
            shop.rename(file.path() + u".tasindi");
            QVERIFY(!QFileInfo::exists(file.path()));
        }
        QCOMPARE(QDir(file.folder()).entryList(QDir::Files),
                 QStringList{QFileInfo(file.path()).fileName() + u".tasindi"});
        QCOMPARE(refusal(file.path() + u".tasindi", {}), std::nullopt);
    }

    void neverRenamesOverAFile() {
        const DatabaseFile file{QString()};
        const DatabaseFile other{QString()};
        QVERIFY_THROWS_EXCEPTION(Failure, renameFile(file.path(), other.path()));
        QVERIFY(QFileInfo::exists(file.path()));
    }

    void tellsContentsApart_data() {
        QTest::addColumn<DigestRow>("row");
        const QList<DigestRow> rows{
            {"a cell", u"UPDATE urunler SET satis = 2.5000000000000004"_s},
            {"its kind", u"UPDATE urunler SET urun = x'656b6d656b'"_s},
            {"null", u"UPDATE urunler SET barkod = NULL"_s},
            {"another row", u"INSERT INTO urunler (urun) VALUES ('b')"_s},
            {"the last number", u"UPDATE sqlite_sequence SET seq = 12"_s},
            {"a column", u"ALTER TABLE urunler ADD COLUMN renk TEXT(20)"_s},
            {"a table", u"CREATE TABLE notlar (metin TEXT)"_s},
            {"where a text ends", u"UPDATE urunler SET barkod = CAST(x'610300000062' AS TEXT), urun = 'c'"_s},
        };
        for (const DigestRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void tellsContentsApart() {
        QFETCH(DigestRow, row);
        const DatabaseFile file{QString()};
        makeTables(file);
        // What ends one text and begins the next is no part of either.
        QVERIFY(RawDatabase(file.path(), {}, driver)
                    .run(u"INSERT INTO urunler (barkod, urun, satis) VALUES ('a', "
                         "CAST(x'620300000063' AS TEXT), 2.5)"_s));
        const auto digest = [&file] {
            ShopFile shop(file.path(), {});
            return digestOf(shop);
        };
        const QString before = digest();
        QCOMPARE(digest(), before);
        QVERIFY(RawDatabase(file.path(), {}, driver).run(row.change));
        QVERIFY(digest() != before);
    }
};

QTEST_GUILESS_MAIN(TestTasiShopFile)
#include "test_tasi_shopfile.moc"
