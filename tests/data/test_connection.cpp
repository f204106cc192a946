#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "app/modTurkce.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "database/engineerror.h"
#include "desktop/messagebox.h"
#include "rows.h"
#include "runtests.h"
#include "runtime/attempt.h"
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

const QString unableToOpen = describeFailure(DatabaseError::Kind::missing, u"unable to open database file"_s);

/// What is said when a file is opened with a password that may be empty.
QString wordsAtOpening(const QString& path, const QString& password) {
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

    struct TellsOfFailuresRow {
        QString password, configured, state;
    };
    struct AsksForTheFileRow {
        QString name;
        QByteArray bytes;
        bool exists;
    };

private Q_SLOTS:
    void opens_data() { bothKinds(); }
    void opens() {
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

    void tellsOfFailures_data() {
        const QString wrong = u"yanlış"_s;
        addRows<TellsOfFailuresRow>({{"missing, plain", {QString(), QString(), u"missing"_s}},
                                     {"missing, password", {hidden, hidden, u"missing"_s}},
                                     {"damaged, plain", {QString(), QString(), u"damaged"_s}},
                                     {"damaged, password", {hidden, hidden, u"damaged"_s}},
                                     {"folder, plain", {QString(), QString(), u"folder"_s}},
                                     {"wrong password", {hidden, wrong, u"whole"_s}},
                                     {"password in other case", {hidden, hidden.toUpper(), u"whole"_s}},
                                     {"no password for a password file", {hidden, QString(), u"whole"_s}},
                                     {"password for a plain file", {QString(), hidden, u"whole"_s}}});
    }
    void tellsOfFailures() {
        QFETCH(const TellsOfFailuresRow, row);
        ShopFixture fixture;
        fixture.openShop(row.password);
        baglantikapat();
        configure(u"dbpass"_s, row.configured);
        const QString path = fixture.databaseFile();
        if (row.state == u"missing" || row.state == u"folder")
            QVERIFY(QFile::remove(path));
        if (row.state == u"folder")
            QVERIFY(QDir().mkdir(path));
        if (row.state == u"damaged") {
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            const QByteArray noise(file.size(), 'x');
            QCOMPARE(file.write(noise), noise.size());
        }
        const QString words = wordsAtOpening(path, row.configured);
        QVERIFY(!words.isEmpty());

        baglantidurumu = 1;
        expectFailure(fixture, path, words);
        baglantiac();
        QCOMPARE(baglantidurumu, 0);
        QVERIFY(!baglanti().isOpen());
        expectFailure(fixture, path, words);
        QVERIFY(!baglantihazir());
        QVERIFY(allAnswered(fixture.boxes));
        QCOMPARE(QFileInfo::exists(path), row.state != u"missing");
    }

    void aLockedFileShowsTheWaitCursor() {
        ShopFixture fixture;
        fixture.openShop();
        Connection connection(std::chrono::milliseconds(200));
        connection.open(baglantiyazisi());
        const auto insert = [&] {
            return attempt([&] { connection.execute(u"INSERT INTO musteri (adi) VALUES ('Ali')"_s); });
        };
        QVERIFY(!insert());
        QVERIFY(!QGuiApplication::overrideCursor());
        {
            const auto lock = fixture.lockFile();
            // Two waits before the till listens again.
            QVERIFY(insert());
            QVERIFY(insert());
        }
        QVERIFY(QGuiApplication::overrideCursor());
        QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::WaitCursor);
        QTRY_VERIFY(!QGuiApplication::overrideCursor());
    }

    void tellsTheAbsentPathOfIp() {
        ShopFixture fixture;
        const QString absent = fixture.file(u"share/shop.data"_s);
        configure(u"ip"_s, absent);
        expectFailure(fixture, absent, unableToOpen);
        QVERIFY(!baglantihazir());
        QVERIFY(allAnswered(fixture.boxes));
        QCOMPARE(ayaroku(u"ayar"_s, u"ip"_s, ayardosyasi()), absent);
    }

    void transcribesPathAndWords() {
        ShopFixture fixture;
        configure(u"ip"_s, u"/srv/%50/ma@a#1/^.data"_s);
        fixture.boxes.expect(u"Hata"_s, u"Veritabanı açılamadı:\n/srv/Ğ50/maŞaş1/ü.data\n\n"_s + unableToOpen,
                             MessageBoxAnswer::ok);
        baglantiac();
        QVERIFY(allAnswered(fixture.boxes));
    }

    void opensTheOlderName() {
        ShopFixture fixture;
        fixture.makeDatabase();
        QVERIFY(QFile::rename(fixture.databaseFile(), fixture.file(u"kovanix.mdb"_s)));
        QVERIFY(baglantihazir());
        QVERIFY(tablovar(baglanti(), u"satislar"_s));
        QVERIFY(!QFile::exists(fixture.databaseFile()));
        QVERIFY(allAnswered(fixture.boxes));
    }

    void opensTwice_data() { bothKinds(); }
    void opensTwice() {
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

    void failedReopenCloses_data() { bothKinds(); }
    void failedReopenCloses() {
        QFETCH(const QString, password);
        ShopFixture fixture;
        fixture.openShop(password);
        QVERIFY(QFile::remove(fixture.databaseFile()));
        expectFailure(fixture, fixture.databaseFile(), unableToOpen);
        baglantiac();
        QVERIFY(!baglanti().isOpen());
        QCOMPARE(baglantidurumu, 0);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void readyReopens_data() { bothKinds(); }
    void readyReopens() {
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

    void readyAsksForTheStateToo() {
        ShopFixture fixture;
        fixture.openShop();
        kayit().open(u"select * from musteri"_s, baglanti());
        baglantidurumu = 0;
        QVERIFY(baglantihazir());
        QCOMPARE(baglantidurumu, 1);
        QVERIFY(!kayit().isOpen());  // opened anew
        QVERIFY(allAnswered(fixture.boxes));
    }

    void refreshesTheState() {
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

    void closes_data() { bothKinds(); }
    void closes() {
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

    void closesTheSharedRecordset() {
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

    void asksForTheFile_data() {
        addRows<AsksForTheFileRow>({{"present name", {u"kovanix.data"_s, QByteArray(), true}},
                                    {"older name", {u"kovanix.mdb"_s, QByteArray(), true}},
                                    {"no database at all", {u"kovanix.data"_s, "garbage"_ba, true}},
                                    {"another name", {u"veri.data"_s, QByteArray(), false}}});
    }
    void asksForTheFile() {
        QFETCH(const AsksForTheFileRow, row);
        const ShopFixture fixture;
        QFile file(fixture.file(row.name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(row.bytes), row.bytes.size());
        file.close();
        QCOMPARE(veritabanivarmi(), row.exists);
        QCOMPARE(baglantimetni, baglantimetnial());
        QVERIFY(!baglanti().isOpen());
        QVERIFY(allAnswered(fixture.boxes));
    }

    void connectsAtStart_data() { bothKinds(); }
    void connectsAtStart() {
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

    void connectsNothingAtStart() {
        ShopFixture fixture;
        // A missing file is told by the first action that asks, not at the start.
        QVERIFY(!veritabanivarmi());
        QVERIFY(!veritabaninibagla());
        QVERIFY(allAnswered(fixture.boxes));
        QFile file(fixture.databaseFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QVERIFY(file.write(QByteArray(4096, 'x')) == 4096);
        file.close();
        expectFailure(fixture, fixture.databaseFile(), wordsAtOpening(fixture.databaseFile(), {}));
        QVERIFY(!veritabaninibagla());
        QCOMPARE(baglantidurumu, 0);
        QVERIFY(allAnswered(fixture.boxes));
    }

    void keepsAccessPaths_data() { bothKinds(); }
    void keepsAccessPaths() {
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

    void whatIsStoredTogetherIsInACopy_data() { bothKinds(); }
    void whatIsStoredTogetherIsInACopy() {
        QFETCH(const QString, password);
        ShopFixture fixture;
        fixture.openShop(password);
        const QString copy = fixture.file(u"copy.data"_s);
        const auto copied = [&] {
            QFile::remove(copy);  // of the file alone, without its log
            Connection connection;
            Recordset rows;
            if (!QFile::copy(fixture.databaseFile(), copy))
                qFatal("no copy");
            connection.open(baglantimetniyap(copy));
            rows.open(u"select adi from musteri"_s, connection);
            QStringList names;
            for (; !rows.atEnd(); rows.moveNext())
                names << rows.field(u"adi"_s).toString();
            return names;
        };
        storeTogether([] {
            baglanti().execute(u"INSERT INTO musteri (adi) VALUES ('Ali')"_s);
            baglanti().execute(u"INSERT INTO musteri (adi) VALUES ('Veli')"_s);
        });
        QTRY_COMPARE(copied(), (QStringList{u"Ali"_s, u"Veli"_s}));
        // Statements that have run stay, whatever comes behind them.
        const auto failure = attempt([] {
            storeTogether([] {
                baglanti().execute(u"INSERT INTO musteri (adi) VALUES ('Can')"_s);
                baglanti().execute(u"INSERT INTO yok (adi) VALUES ('Cem')"_s);
            });
        });
        QVERIFY(failure);
        QCOMPARE(failure->description(),
                 describeFailure(DatabaseError::Kind::noSuchTable, u"no such table: yok"_s));
        QCOMPARE(fixture.rows(u"SELECT count(*) FROM musteri"_s).at(0).at(0), 3);
        QTRY_COMPARE(copied().size(), 3);
    }

    void fileWithoutAccessPathsOpens() {
        ShopFixture fixture;
        fixture.makeDatabase();
        fixture.run(u"CREATE TABLE t (barkod TEXT(50))"_s);
        fixture.run(u"CREATE VIEW urunler AS SELECT * FROM t"_s);
        QVERIFY(baglantihazir());
        QCOMPARE(fixture.rows(u"SELECT name FROM sqlite_master WHERE name LIKE 'kovanix%'"_s),
                 (QList<QVariantList>{{u"kovanix_satislar_tarih"_s}}));
        QVERIFY(allAnswered(fixture.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<TestConnection>(argc, argv);
}
#include "test_connection.moc"
