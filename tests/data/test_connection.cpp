#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "desktop/messagebox.h"
#include "runtests.h"
#include "runtime/runtimeerror.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString hidden = u"gizli şifre"_s;

void bothKinds() {
    QTest::addColumn<QString>("password");
    QTest::newRow("plain file") << QString();
    QTest::newRow("password file") << hidden;
}

/// What the engine says when a file is opened with a password that may be empty.
QString enginesWords(const QString& path, const QString& password) {
    QString text = u"Data Source="_s + path;
    if (!password.isEmpty())
        text += u";Jet OLEDB:Database Password="_s + password;
    try {
        Connection connection;
        connection.open(text);
    } catch (const RuntimeError& error) {
        return error.description();
    }
    return {};
}

void configure(const QString& key, const QString& value) {
    ayaryaz(u"ayar"_s, key, value, ayardosyasi());
}

/// The box of an open that failed.
void expectFailure(ShopFixture& fixture, const QString& path, const QString& words) {
    fixture.boxes.expect(u"Hata"_s, harfcevir(u"Veritabanı açılamadı:\n"_s + path + u"\n\n"_s + words),
                         MessageBoxAnswer::ok);
}

}  // namespace

class TestConnection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void opens_data() { bothKinds(); }
    void opens();
    void tellsOfFailures_data();
    void tellsOfFailures();
    void tellsTheAbsentPathOfIp();
    void transcribesPathAndWords();
    void opensTheOlderName();
    void opensTwice_data() { bothKinds(); }
    void opensTwice();
    void failedReopenCloses_data() { bothKinds(); }
    void failedReopenCloses();
    void readyReopens_data() { bothKinds(); }
    void readyReopens();
    void readyAsksForTheStateToo();
    void refreshesTheState();
    void closes_data() { bothKinds(); }
    void closes();
    void closesTheSharedRecordset();
    void asksForTheFile_data();
    void asksForTheFile();
    void connectsAtStart_data() { bothKinds(); }
    void connectsAtStart();
    void connectsNothingAtStart();
    void keepsAccessPaths_data() { bothKinds(); }
    void keepsAccessPaths();
    void fileWithoutAccessPathsOpens();
};

void TestConnection::opens() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.makeDatabase(password);
    QCOMPARE(baglantidurumu, 0);
    baglantiac();
    QCOMPARE(baglantidurumu, 1);
    QVERIFY(baglanti().isOpen());
    QVERIFY(semahazir);
    QVERIFY(baglantihazir());
    baglanti().execute(u"INSERT INTO musteri (adi) VALUES ('Ali')"_s);
    QCOMPARE(fixture.rows(u"SELECT no, adi FROM musteri"_s), (QList<QVariantList>{{1, u"Ali"_s}}));
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::tellsOfFailures_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("configured");
    QTest::addColumn<QString>("state");
    const QString wrong = u"yanlış"_s;
    QTest::newRow("missing, plain") << QString() << QString() << u"missing"_s;
    QTest::newRow("missing, password") << hidden << hidden << u"missing"_s;
    QTest::newRow("damaged, plain") << QString() << QString() << u"damaged"_s;
    QTest::newRow("damaged, password") << hidden << hidden << u"damaged"_s;
    QTest::newRow("folder, plain") << QString() << QString() << u"folder"_s;
    QTest::newRow("wrong password") << hidden << wrong << u"whole"_s;
    QTest::newRow("password in other case") << hidden << hidden.toUpper() << u"whole"_s;
    QTest::newRow("no password for a password file") << hidden << QString() << u"whole"_s;
    QTest::newRow("password for a plain file") << QString() << hidden << u"whole"_s;
}

void TestConnection::tellsOfFailures() {
    QFETCH(const QString, password);
    QFETCH(const QString, configured);
    QFETCH(const QString, state);
    ShopFixture fixture;
    fixture.openShop(password);
    baglantikapat();
    configure(u"dbpass"_s, configured);
    const QString path = fixture.databaseFile();
    if (state == u"missing" || state == u"folder")
        QVERIFY(QFile::remove(path));
    if (state == u"folder")
        QVERIFY(QDir().mkdir(path));
    if (state == u"damaged") {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        const QByteArray noise(file.size(), 'x');
        QCOMPARE(file.write(noise), noise.size());
    }
    const QString words = enginesWords(path, configured);
    QVERIFY(!words.isEmpty());

    baglantidurumu = 1;
    expectFailure(fixture, path, words);
    baglantiac();
    QCOMPARE(baglantidurumu, 0);
    QVERIFY(!baglanti().isOpen());
    expectFailure(fixture, path, words);
    QVERIFY(!baglantihazir());
    QVERIFY(allAnswered(fixture.boxes));
    QCOMPARE(QFileInfo::exists(path), state != u"missing");
}

void TestConnection::tellsTheAbsentPathOfIp() {
    ShopFixture fixture;
    const QString absent = fixture.file(u"share/shop.data"_s);
    configure(u"ip"_s, absent);
    expectFailure(fixture, absent, u"unable to open database file"_s);
    QVERIFY(!baglantihazir());
    QVERIFY(allAnswered(fixture.boxes));
    QCOMPARE(ayaroku(u"ayar"_s, u"ip"_s, ayardosyasi()), absent);
}

void TestConnection::transcribesPathAndWords() {
    ShopFixture fixture;
    configure(u"ip"_s, u"/srv/%50/ma@a#1/^.data"_s);
    fixture.boxes.expect(u"Hata"_s,
                         u"Veritabanı açılamadı:\n/srv/Ğ50/maŞaş1/ü.data\n\nunable to open database file"_s,
                         MessageBoxAnswer::ok);
    baglantiac();
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::opensTheOlderName() {
    ShopFixture fixture;
    fixture.makeDatabase();
    QVERIFY(QFile::rename(fixture.databaseFile(), fixture.file(u"kovanix.mdb"_s)));
    QVERIFY(baglantihazir());
    QVERIFY(tablovar(baglanti(), u"satislar"_s));
    QVERIFY(!QFile::exists(fixture.databaseFile()));
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::opensTwice() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    kayit().open(u"select * from musteri"_s, baglanti());
    fixture.run(u"DROP TABLE urunler_hazir"_s);
    const QList<QVariantList> version = fixture.rows(u"PRAGMA schema_version"_s);
    baglantiac();
    QCOMPARE(baglantidurumu, 1);
    QVERIFY(baglanti().isOpen());
    QVERIFY(!kayit().isOpen());
    // The schema isn't looked at again.
    QVERIFY(semahazir);
    QVERIFY(!tablovar(baglanti(), u"urunler_hazir"_s));
    QCOMPARE(fixture.rows(u"PRAGMA schema_version"_s), version);
    semahazir = false;
    baglantiac();
    QVERIFY(tablovar(baglanti(), u"urunler_hazir"_s));
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::failedReopenCloses() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    QVERIFY(QFile::remove(fixture.databaseFile()));
    expectFailure(fixture, fixture.databaseFile(), u"unable to open database file"_s);
    baglantiac();
    QVERIFY(!baglanti().isOpen());
    QCOMPARE(baglantidurumu, 0);
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::readyReopens() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.makeDatabase(password);
    QVERIFY(baglantihazir());
    baglanti().close();
    QCOMPARE(baglantidurumu, 1);
    QVERIFY(baglantihazir());
    QVERIFY(baglanti().isOpen());
    QCOMPARE(baglantidurumu, 1);
    // An open connection stays as it is, with what is open on it.
    kayit().open(u"select * from musteri"_s, baglanti());
    QVERIFY(baglantihazir());
    QVERIFY(kayit().isOpen());
    baglantikapat();
    QVERIFY(baglantihazir());
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::readyAsksForTheStateToo() {
    ShopFixture fixture;
    fixture.openShop();
    kayit().open(u"select * from musteri"_s, baglanti());
    baglantidurumu = 0;
    QVERIFY(baglantihazir());
    QCOMPARE(baglantidurumu, 1);
    QVERIFY(!kayit().isOpen());  // opened anew
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::refreshesTheState() {
    ShopFixture fixture;
    baglantidurumu = 1;
    baglantidurumuyenile();
    QCOMPARE(baglantidurumu, 0);
    fixture.openShop();
    baglantidurumuyenile();
    QCOMPARE(baglantidurumu, 1);
    baglantidurumu = 0;
    baglantidurumuyenile();
    QCOMPARE(baglantidurumu, 0);
    baglantidurumu = 1;
    baglanti().close();
    baglantidurumuyenile();
    QCOMPARE(baglantidurumu, 0);
}

void TestConnection::closes() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    baglantikapat();
    QVERIFY(!baglanti().isOpen());
    QCOMPARE(baglantidurumu, 0);
    baglantidurumu = 1;
    baglantikapat();
    QCOMPARE(baglantidurumu, 0);

    QVERIFY(baglantihazir());
    baglantikapatsessiz();
    QVERIFY(!baglanti().isOpen());
    QCOMPARE(baglantidurumu, 0);
    baglantidurumu = 1;
    baglantikapatsessiz();
    QCOMPARE(baglantidurumu, 0);
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::closesTheSharedRecordset() {
    ShopFixture fixture;
    fixture.openShop();
    kayitkapat();
    QVERIFY(!kayit().isOpen());
    kayit().open(u"select * from musteri"_s, baglanti());
    QVERIFY(kayit().isOpen());
    kayitkapat();
    QVERIFY(!kayit().isOpen());
    QVERIFY(baglanti().isOpen());
}

void TestConnection::asksForTheFile_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("exists");
    QTest::newRow("present name") << u"kovanix.data"_s << QByteArray() << true;
    QTest::newRow("older name") << u"kovanix.mdb"_s << QByteArray() << true;
    QTest::newRow("no database at all") << u"kovanix.data"_s << "garbage"_ba << true;
    QTest::newRow("another name") << u"veri.data"_s << QByteArray() << false;
}

void TestConnection::asksForTheFile() {
    QFETCH(const QString, name);
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, exists);
    const ShopFixture fixture;
    QFile file(fixture.file(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
    file.close();
    QCOMPARE(veritabanivarmi(), exists);
    QCOMPARE(baglantimetni, baglantimetnial());
    QVERIFY(!baglanti().isOpen());
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::connectsAtStart() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.makeDatabase(password);
    ilkayarlar();
    baglantiyukle();
    QVERIFY(veritabanivarmi());
    QVERIFY(veritabaninibagla());
    QVERIFY(baglanti().isOpen());
    QCOMPARE(baglantidurumu, 1);
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::connectsNothingAtStart() {
    ShopFixture fixture;
    // A missing file is told by the first action that asks, not at the start.
    QVERIFY(!veritabanivarmi());
    QVERIFY(!veritabaninibagla());
    QVERIFY(allAnswered(fixture.boxes));
    QFile file(fixture.databaseFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(file.write(QByteArray(4096, 'x')) == 4096);
    file.close();
    expectFailure(fixture, fixture.databaseFile(), enginesWords(fixture.databaseFile(), {}));
    QVERIFY(!veritabaninibagla());
    QCOMPARE(baglantidurumu, 0);
    QVERIFY(allAnswered(fixture.boxes));
}

void TestConnection::keepsAccessPaths() {
    QFETCH(const QString, password);
    ShopFixture fixture;
    fixture.openShop(password);
    const auto plan = [&fixture](const QString& select) {
        return fixture.rows(u"EXPLAIN QUERY PLAN "_s + select).at(0).last().toString();
    };
    QVERIFY(plan(u"SELECT * FROM urunler WHERE barkod = '1'"_s).contains(u"kovanix_urunler_barkod"));
    QVERIFY(plan(u"SELECT * FROM satislar WHERE tarih BETWEEN 'a' AND 'b'"_s)
                .contains(u"kovanix_satislar_tarih"));
    // They are no constraint.
    fixture.addProduct(u"1"_s, u"a"_s, 1, 2);
    fixture.addProduct(u"1"_s, u"b"_s, 1, 2);
    QCOMPARE(fixture.rows(u"SELECT no FROM urunler WHERE barkod = '1'"_s).size(), 2);
    fixture.run(u"DROP INDEX kovanix_urunler_barkod"_s);
    baglantiac();
    QVERIFY(plan(u"SELECT * FROM urunler WHERE barkod = '1'"_s).contains(u"kovanix_urunler_barkod"));
}

void TestConnection::fileWithoutAccessPathsOpens() {
    ShopFixture fixture;
    fixture.makeDatabase();
    fixture.run(u"CREATE TABLE t (barkod TEXT(50))"_s);
    fixture.run(u"CREATE VIEW urunler AS SELECT * FROM t"_s);
    QVERIFY(baglantihazir());
    QCOMPARE(fixture.rows(u"SELECT name FROM sqlite_master WHERE name LIKE 'kovanix%'"_s),
             (QList<QVariantList>{{u"kovanix_satislar_tarih"_s}}));
    QVERIFY(allAnswered(fixture.boxes));
}

int main(int argc, char** argv) {
    return runTests<TestConnection>(argc, argv);
}
#include "test_connection.moc"
