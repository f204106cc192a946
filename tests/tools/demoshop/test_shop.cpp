#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>
#include <cmath>

#include "databasefile.h"
#include "demoshop/barcode.h"
#include "demoshop/shop.h"
#include "profile/profilefile.h"
#include "rows.h"
#include "runtime/runtimeerror.h"

using namespace kovanix;
using namespace kovanix::demoshop;
using namespace Qt::StringLiterals;

namespace {

using Rows = QList<QVariantList>;

const QStringList tables{u"urunler"_s, u"satislar"_s, u"kullanici"_s, u"musteri"_s, u"urunler_hazir"_s};

/// The shop's file through a connection that isn't the till's.
class Reader {
public:
    explicit Reader(const QString& folder, const QString& password = {})
        : database(QDir(folder).filePath(u"kovanix.data"_s), password) {}

    Rows rows(const QString& sql) { return database.values(sql); }
    QVariant value(const QString& sql) { return rows(sql).value(0).value(0); }

private:
    RawDatabase database;
};

ShopPlan smallPlan(const QString& folder) {
    ShopPlan plan;
    plan.folder = folder;
    plan.products = 120;
    plan.sales = 400;
    plan.today = QDate(2026, 4, 23);
    return plan;
}

QString setting(const QString& folder, const QString& key) {
    return ProfileFile::value(QDir(folder).filePath(u"Kovanix.config"_s), u"ayar"_s, key);
}

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void put(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

QStringList files(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

const QStringList shopFiles{u"Kovanix.config"_s, u"kovanix.data"_s};

}  // namespace

class ShopTest : public QObject {
    Q_OBJECT

    struct MadeRow {
        qsizetype products;
        qsizetype sales;
        QString password;
    };
    struct ColumnsAreTheTillsRow {
        QString table;
        QString columns;
    };
    struct OtherPlansMakeOtherShopsRow {
        quint64 seed;
        QDate today;
        QString table;
    };

private Q_SLOTS:
    void made_data();
    void made();
    void columnsAreTheTills_data();
    void columnsAreTheTills();
    void fileIsInWriteAheadMode();
    void saleRowsAddUp();
    void users();
    void quickKeysSellRealProducts();
    void readyMadeGoodsAreNotYetProducts();
    void configurationIsInTheShopsCodePage();
    void equalPlansMakeEqualShops();
    void otherPlansMakeOtherShops_data();
    void otherPlansMakeOtherShops();
    void passwordThatNoTillCouldRead_data();
    void passwordThatNoTillCouldRead();
    void existingShopIsRefused_data();
    void existingShopIsRefused();
    void existingShopIsReplaced();
    void otherFilesStay();
    void folderThatCannotBe();
};

void ShopTest::made_data() {
    addRows<MadeRow>({{"plain file", {120, 400, QString()}},
                      {"file with a password", {120, 400, u"gizli;şifre=1'"_s}},
                      {"no products", {0, 0, QString()}},
                      {"one product", {1, 3, QString()}},
                      {"no sales", {50, 0, QString()}},
                      {"the usual shop", {ShopPlan().products, ShopPlan().sales, QString()}},
                      {"names with numbers", {5000, 10, QString()}}});
}

void ShopTest::made() {
    QFETCH(const MadeRow, row);
    const QTemporaryDir folder;
    ShopPlan plan = smallPlan(folder.filePath(u"yeni/dükkân"_s));
    plan.products = row.products;
    plan.sales = row.sales;
    plan.password = row.password;

    const ShopSummary made = makeShop(plan);

    QCOMPARE(files(plan.folder), shopFiles);
    QCOMPARE(made.products, row.products);
    QCOMPARE(made.sales, row.sales);
    QCOMPARE(contents(plan.folder + u"/kovanix.data"_s).startsWith("SQLite format 3"),
             row.password.isEmpty());
    QCOMPARE(setting(plan.folder, u"dbpass"_s), row.password);
    {
        Reader shop(plan.folder, row.password);
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM urunler"_s).toLongLong(), row.products);
        QCOMPARE(shop.value(u"SELECT COUNT(DISTINCT barkod) FROM urunler"_s).toLongLong(), row.products);
        QCOMPARE(shop.value(u"SELECT COUNT(DISTINCT urun) FROM urunler"_s).toLongLong(), row.products);
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM satislar"_s).toLongLong(), row.sales);
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM musteri"_s).toLongLong(), made.customers);
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM urunler_hazir"_s).toLongLong(), made.readyMade);
        QCOMPARE(
            shop.value(u"SELECT COUNT(*) FROM satislar WHERE barkod NOT IN (SELECT barkod FROM urunler)"_s)
                .toInt(),
            0);
        QCOMPARE(shop.value(u"SELECT SUM(LENGTH(barkod)=4) FROM urunler"_s).toLongLong(), made.weighed);
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        for (const QVariantList& product : shop.rows(u"SELECT barkod FROM urunler"_s))
            QVERIFY2(isEan13(product[0].toString()) || product[0].toString().size() == 4,
                     qPrintable(product[0].toString()));
        if (row.sales > 0) {
            QCOMPARE(shop.value(u"SELECT MAX(SUBSTR(tarih,1,10)) FROM satislar"_s).toString(),
                     u"2026-04-23"_s);
            QCOMPARE(shop.value(u"SELECT MIN(tarih) FROM satislar"_s).toString().left(10),
                     made.firstSale.toString(Qt::ISODate));
        }
    }
}

void ShopTest::columnsAreTheTills_data() {
    addRows<ColumnsAreTheTillsRow>(
        {{"products",
          {u"urunler"_s, u"no INTEGER,barkod TEXT(50),urun TEXT(50),alis DOUBLE,satis DOUBLE,stok DOUBLE"_s}},
         {"sales",
          {u"satislar"_s,
           u"no INTEGER,tarih DATETIME,barkod TEXT(50),urun TEXT(50),adet DOUBLE,fiyat DOUBLE,alis DOUBLE,"
           u"kar DOUBLE,toplam DOUBLE,satis DOUBLE"_s}},
         {"users", {u"kullanici"_s, u"id INTEGER,personeladi TEXT(50),sifre TEXT(50),yetki TEXT(50)"_s}},
         {"customers", {u"musteri"_s, u"no INTEGER,adi TEXT(50),telefon TEXT(50),adres TEXT(100)"_s}},
         {"ready-made products",
          {u"urunler_hazir"_s,
           u"no INTEGER,barkod TEXT(50),urun TEXT(50),alis DOUBLE,satis DOUBLE,stok DOUBLE"_s}}});
}

void ShopTest::columnsAreTheTills() {
    QFETCH(const ColumnsAreTheTillsRow, row);
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    Reader shop(folder.path());
    QStringList columns;
    for (const QVariantList& column : shop.rows(u"PRAGMA table_info(%1)"_s.arg(row.table)))
        columns << column[1].toString() + u' ' + column[2].toString();
    QCOMPARE(columns.join(u','), row.columns);
}

void ShopTest::fileIsInWriteAheadMode() {
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    // Bytes 18 and 19 of the database header: the file format's write and read version, 2 for write-ahead
    // logging.
    QCOMPARE(contents(folder.filePath(u"kovanix.data"_s)).mid(18, 2), QByteArray("\x02\x02"));
}

void ShopTest::saleRowsAddUp() {
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    Reader shop(folder.path());
    const Rows rows =
        shop.rows(u"SELECT adet, fiyat, alis, kar, toplam, satis, tarih FROM satislar ORDER BY no"_s);
    QCOMPARE(rows.size(), 400);
    QString before;
    for (const QVariantList& row : rows) {
        const double quantity = row[0].toDouble();
        const double total = row[4].toDouble();
        QCOMPARE(total, quantity * row[1].toDouble());
        QCOMPARE(row[3].toDouble(), total - quantity * row[2].toDouble());
        QCOMPARE(row[5].toDouble(), row[3].toDouble());
        QVERIFY(row[3].toDouble() > 0);
        const QString moment = row[6].toString();
        QCOMPARE(moment.size(), 19);
        QVERIFY(QDateTime::fromString(moment, u"yyyy-MM-dd HH:mm:ss"_s).isValid());
        QVERIFY(before <= moment);
        before = moment;
    }
}

void ShopTest::users() {
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    const Rows expected{{u"Ayşe"_s, QString(), u"Yönetici"_s}, {u"Mehmet"_s, QString(), u"Kasiyer"_s}};
    Reader shop(folder.path());
    QCOMPARE(shop.rows(u"SELECT personeladi, sifre, yetki FROM kullanici ORDER BY id"_s), expected);
    QCOMPARE(shop.value(u"SELECT COUNT(*) FROM kullanici WHERE sifre=''"_s).toInt(), 2);
}

void ShopTest::quickKeysSellRealProducts() {
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    QCOMPARE(setting(folder.path(), u"ensonkikisayol"_s), u"1"_s);
    Reader shop(folder.path());
    for (int page = 1; page <= 4; ++page) {
        QVERIFY(!setting(folder.path(), u"hizliurunkat%1"_s.arg(page)).isEmpty());
        for (int slot = 0; slot < 8; ++slot) {
            const QString barcode = setting(folder.path(), u"%1hizlibarkod%2"_s.arg(page).arg(slot));
            QVERIFY(!setting(folder.path(), u"%1hizliurun%2"_s.arg(page).arg(slot)).isEmpty());
            QCOMPARE(shop.value(u"SELECT COUNT(*) FROM urunler WHERE barkod='%1'"_s.arg(barcode)).toInt(), 1);
        }
    }
    QCOMPARE(shop.value(u"SELECT urun FROM urunler WHERE barkod='%1'"_s.arg(
                            setting(folder.path(), u"1hizlibarkod0"_s)))
                 .toString(),
             u"Ekmek 200 g"_s);
}

void ShopTest::readyMadeGoodsAreNotYetProducts() {
    const QTemporaryDir folder;
    QCOMPARE(makeShop(smallPlan(folder.path())).readyMade, 240);
    Reader shop(folder.path());
    for (const QString& column : {u"barkod"_s, u"urun"_s})
        QCOMPARE(shop.value(u"SELECT COUNT(*) FROM urunler_hazir WHERE %1 IN (SELECT %1 FROM urunler)"_s.arg(
                                column))
                     .toInt(),
                 0);
}

void ShopTest::configurationIsInTheShopsCodePage() {
    const QTemporaryDir folder;
    makeShop(smallPlan(folder.path()));
    const QByteArray bytes = contents(folder.filePath(u"Kovanix.config"_s));
    QVERIFY(bytes.contains("[ayar]"));
    QVERIFY(bytes.contains("hizliurunkat1=F\xfdr\xfdn"));
    QVERIFY(
        bytes.contains("3hizliurun6=\xc7"
                       "ay"));
    QVERIFY(!bytes.contains("dbpass"));
}

void ShopTest::equalPlansMakeEqualShops() {
    const QTemporaryDir folder;
    QList<QList<Rows>> shops;
    QList<QByteArray> configurations;
    for (const QString& name : {u"a"_s, u"b"_s}) {
        makeShop(smallPlan(folder.filePath(name)));
        configurations << contents(folder.filePath(name + u"/Kovanix.config"_s));
        Reader shop(folder.filePath(name));
        QList<Rows> all;
        for (const QString& table : tables)
            all << shop.rows(u"SELECT * FROM %1 ORDER BY 1"_s.arg(table));
        shops << all;
    }
    for (qsizetype table = 0; table < tables.size(); ++table) {
        QVERIFY(!shops[0][table].isEmpty());
        QCOMPARE(shops[1][table], shops[0][table]);
    }
    QCOMPARE(configurations[1], configurations[0]);
}

void ShopTest::otherPlansMakeOtherShops_data() {
    addRows<OtherPlansMakeOtherShopsRow>(
        {{"another seed, other products", {2, QDate(2026, 4, 23), u"urunler"_s}},
         {"another seed, other sales", {2, QDate(2026, 4, 23), u"satislar"_s}},
         {"another seed, other customers", {2, QDate(2026, 4, 23), u"musteri"_s}},
         {"another day, other sales", {1, QDate(2026, 4, 24), u"satislar"_s}}});
}

void ShopTest::otherPlansMakeOtherShops() {
    QFETCH(const OtherPlansMakeOtherShopsRow, row);
    const QTemporaryDir folder;
    ShopPlan other = smallPlan(folder.filePath(u"b"_s));
    other.seed = row.seed;
    other.today = row.today;
    makeShop(smallPlan(folder.filePath(u"a"_s)));
    makeShop(other);
    const QString sql = u"SELECT * FROM %1 ORDER BY 1"_s.arg(row.table);
    const Rows rows = Reader(folder.filePath(u"a"_s)).rows(sql);
    QVERIFY(!rows.isEmpty());
    QVERIFY(Reader(folder.filePath(u"b"_s)).rows(sql) != rows);
}

void ShopTest::passwordThatNoTillCouldRead_data() {
    QTest::addColumn<QString>("password");
    QTest::newRow("blanks only") << u"   "_s;
    QTest::newRow("blank at the end") << u"gizli "_s;
    QTest::newRow("in quotes") << u"\"gizli\""_s;
    QTest::newRow("letters outside the code page") << u"пароль"_s;
    QTest::newRow("longer than a value") << QString(300, u'x');
}

void ShopTest::passwordThatNoTillCouldRead() {
    QFETCH(QString, password);
    const QTemporaryDir folder;
    ShopPlan plan = smallPlan(folder.path());
    plan.password = password;
    QVERIFY_THROWS_EXCEPTION(RuntimeError, makeShop(plan));
    QCOMPARE(files(folder.path()), QStringList());
}

void ShopTest::existingShopIsRefused_data() {
    QTest::addColumn<QString>("file");
    QTest::newRow("database") << u"kovanix.data"_s;
    QTest::newRow("older database") << u"kovanix.mdb"_s;
    QTest::newRow("configuration") << u"Kovanix.config"_s;
}

void ShopTest::existingShopIsRefused() {
    QFETCH(QString, file);
    const QTemporaryDir folder;
    put(folder.filePath(file), "dokunma");
    QVERIFY_THROWS_EXCEPTION(RuntimeError, makeShop(smallPlan(folder.path())));
    QCOMPARE(files(folder.path()), QStringList{file});
    QCOMPARE(contents(folder.filePath(file)), "dokunma");
}

void ShopTest::existingShopIsReplaced() {
    const QTemporaryDir folder;
    ShopPlan plan = smallPlan(folder.path());
    plan.password = u"eski"_s;
    makeShop(plan);
    put(folder.filePath(u"kovanix.data-wal"_s), "artık");
    plan.password.clear();
    plan.products = 30;
    plan.replace = true;
    makeShop(plan);
    QCOMPARE(files(folder.path()), shopFiles);
    QCOMPARE(setting(folder.path(), u"dbpass"_s), QString());
    QCOMPARE(Reader(folder.path()).value(u"SELECT COUNT(*) FROM urunler"_s).toInt(), 30);
}

void ShopTest::otherFilesStay() {
    const QTemporaryDir folder;
    put(folder.filePath(u"kovanix.mdb"_s), "eski kasa");
    put(folder.filePath(u"notlar.txt"_s), "not");
    ShopPlan plan = smallPlan(folder.path());
    plan.replace = true;
    makeShop(plan);
    QCOMPARE(contents(folder.filePath(u"kovanix.mdb"_s)), "eski kasa");
    QCOMPARE(contents(folder.filePath(u"notlar.txt"_s)), "not");
}

void ShopTest::folderThatCannotBe() {
    const QTemporaryDir folder;
    put(folder.filePath(u"dosya"_s), "x");
    QVERIFY_THROWS_EXCEPTION(RuntimeError, makeShop(smallPlan(folder.filePath(u"dosya/alt"_s))));
    QCOMPARE(files(folder.path()), QStringList{u"dosya"_s});
}

QTEST_GUILESS_MAIN(ShopTest)
#include "test_shop.moc"
