// The way back: a shop's server into a new file, as the till's own engine writes it.

#include <sys/stat.h>

#include <QFileInfo>
#include <QTest>

#include "profile/profilefile.h"
#include "tasifixture.h"

using namespace kovanix;
using namespace kovanix::tasi;
using namespace Qt::StringLiterals;

namespace {

/// Texts and numbers that some step on the way might take for something else.
const QStringList hostileShop{
    u"INSERT INTO urunler (no, barkod, urun, alis, satis, stok) VALUES "
    "(3, '8690', 'İğne \"x\" ''y'' \\N \\\\', 0.1, 1e308, -0.0), (4, '', char(9, 10, 13, 1), NULL, 9e999, "
    "-9e999), "
    "(10, NULL, char(0x1F35E, 0x130, 0x131), 5e-324, 1.7976931348623157e308, 0.30000000000000004), "
    "(12, char(0xFEFF) || 'a', char(0xFEFF), 1, 1, 1), "
    "(11, '\\.', replace(hex(zeroblob(300000)), '00', 'ğ'), 123456789012345678, 1, 2)"_s,
    u"INSERT INTO satislar (tarih, urun, adet) VALUES ('2026-05-03 07:05:09', 'a', 1.5), (NULL, '', NULL)"_s,
    u"INSERT INTO kullanici (id, personeladi) VALUES (900, 'Ayşe')"_s,
    u"DELETE FROM kullanici"_s,
    u"CREATE TABLE ek (tam INTEGER, resim BLOB, yazi TEXT(7), not_ TEXT, an DATETIME)"_s,
    u"INSERT INTO ek VALUES (9007199254740993, x'00FF27', 'ş', '', '2026-01-01 00:00:00'), (NULL, NULL, "
    u"NULL, "
    "NULL, NULL)"_s,
    u"ALTER TABLE musteri ADD COLUMN renk TEXT(20)"_s,
};

struct OddRow {
    const char* name;
    QString insert;
    Odd odd;
    QString expected;  ///< the cell in the file
};

}  // namespace

Q_DECLARE_METATYPE(OddRow)

class TestTasiBack : public TasiTest {
    Q_OBJECT

private Q_SLOTS:
    void comesBackCellByCell_data() { DatabaseFile::bothKinds(); }
    void comesBackCellByCell() {
        QFETCH(QString, password);
        const MovingShop shop(password);
        shop.run(hostileShop);
        const QMap<QString, QStringList> before = shop.cells(shop.file());
        moveToServer(shop.toServer());
        const QString back = shop.path(u"geri.data"_s);
        const MoveResult result = copyToFile(shop.toFile(back));
        QCOMPARE(result.settledCells, 0);
        QCOMPARE(result.rows, 9);
        QMap<QString, QStringList> after = shop.cells(back);
        QCOMPARE(after.keys(), before.keys());
        for (const QString& table : before.keys()) {
            // The engine has its own order there.
            if (table == u"sqlite_sequence") {
                QStringList one = before[table];
                QStringList other = after[table];
                one.sort();
                other.sort();
                QCOMPARE(other, one);
            } else {
                QCOMPARE(after[table], before[table]);
            }
        }
        QCOMPARE(QDir(shop.folder()).entryList({u"geri*"_s}, QDir::Files), QStringList{u"geri.data"_s});
        struct stat found {};
        QCOMPARE(::stat(qPrintable(back), &found), 0);
        QCOMPARE(found.st_mode & 07777U, 0600U);
    }

    /// A file whose columns another program has declared, in words that no till uses.
    void keepsTextsInColumnsOfAnyType_data() { DatabaseFile::bothKinds(); }
    void keepsTextsInColumnsOfAnyType() {
        QFETCH(QString, password);
        const MovingShop shop(password);
        shop.run(
            {u"DROP TABLE urunler"_s, u"DROP TABLE kullanici"_s,
             u"CREATE TABLE urunler (no INTEGER PRIMARY KEY, barkod STRING, urun MEMO, satis CURRENCY, raf "
             "STRING)"_s,
             u"INSERT INTO urunler VALUES (3, 'A869', 'Ekmek', 12.5, 'R1'), (4, '', 'Süt 1,5', NULL, NULL)"_s,
             u"CREATE TABLE kullanici (id INTEGER PRIMARY KEY, personeladi STRING, sifre STRING, yetki "
             "STRING)"_s,
             u"INSERT INTO kullanici VALUES (1, 'Ayşe', 'x9f', 'Yönetici'), (2, 'Can', '', 'Personel')"_s,
             u"CREATE TABLE notlar (aciklama MEMO, ad STRING, kod INT, acik BOOLEAN, pay \"\", tutar DOUBLE)"_s,
             u"INSERT INTO notlar VALUES ('iki\nsatır', 'Veli', 'A12', 'evet', '1,5', '5 TL')"_s});
        const QMap<QString, QStringList> before = shop.cells(shop.file());
        QCOMPARE(moveToServer(shop.toServer()).settledCells, 0);
        QCOMPARE(
            shop.serverRows(u"SELECT personeladi, sifre, yetki FROM kullanici ORDER BY id"_s),
            (QList<QStringList>{{u"Ayşe"_s, u"x9f"_s, u"Yönetici"_s}, {u"Can"_s, u""_s, u"Personel"_s}}));
        const QString back = shop.path(u"geri.data"_s);
        QCOMPARE(copyToFile(shop.toFile(back)).settledCells, 0);
        const QMap<QString, QStringList> after = shop.cells(back);
        for (const QString& table : {u"urunler"_s, u"kullanici"_s, u"notlar"_s})
            QCOMPARE(after[table], before[table]);
    }

    void makesTheFileThatTheTillMakes() {
        const MovingShop shop;
        const auto schema = [](const QString& path) {
            return RawDatabase(path, {}, DatabaseFile::driver({}))
                .rows(
                    u"SELECT name, sql FROM sqlite_master WHERE sql IS NOT NULL AND name NOT LIKE 'kovanix_%' ORDER BY name"_s);
        };
        QStringList before = schema(shop.file());
        moveToServer(shop.toServer());
        copyToFile(shop.toFile(shop.path(u"geri.data"_s)));
        QStringList after = schema(shop.path(u"geri.data"_s));
        // Names between quotes are the same names.
        after.replaceInStrings(u"\""_s, u""_s);
        QCOMPARE(after, before);
    }

    void canGoThereAgain() {
        const MovingShop shop;
        shop.run(hostileShop);
        const QMap<QString, QStringList> before = shop.cells(shop.file());
        moveToServer(shop.toServer());
        copyToFile(shop.toFile(shop.file()));
        shop.serverRows(u"DROP OWNED BY %1"_s.arg(ServerCluster::role()));
        shop.serverRows(u"GRANT ALL ON SCHEMA public TO %1"_s.arg(ServerCluster::role()));
        const MoveResult again = moveToServer(shop.toServer());
        QVERIFY(!again.finishedEarlier);
        QCOMPARE(again.renamed, QStringList{shop.movedFile() + u"-2"_s});
        QCOMPARE(shop.cells(again.renamed[0])[u"urunler"_s], before[u"urunler"_s]);
    }

    void tellsWhatAFileCannotHold_data() {
        QTest::addColumn<OddRow>("row");
        const QList<OddRow> rows{
            {"not a number", u"INSERT INTO urunler (no, satis) VALUES (7, 'nan')"_s, Odd::notANumber,
             u"null"_s},
            {"a number for a moment", u"INSERT INTO satislar (no, tarih) VALUES (7, '44319')"_s,
             Odd::momentKept, u"whole 44319"_s},
        };
        for (const OddRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void tellsWhatAFileCannotHold() {
        QFETCH(OddRow, row);
        const MovingShop shop;
        moveToServer(shop.toServer());
        shop.serverRows(row.insert);
        const MoveResult result = copyToFile(shop.toFile(shop.path(u"geri.data"_s)));
        QCOMPARE(result.settled.value(row.odd), 1);
        QCOMPARE(result.settledCells, 1);
        const QStringList lines = contents(result.report).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        QCOMPARE(lines[1].split(u'\t')[1], u"7"_s);
        const QMap<QString, QStringList> cells = shop.cells(shop.path(u"geri.data"_s));
        QVERIFY(cells[u"urunler"_s].join(u' ').contains(row.expected) ||
                cells[u"satislar"_s].join(u' ').contains(row.expected));
    }

    void takesANameWithoutAFolder() {
        const MovingShop shop;
        moveToServer(shop.toServer());
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(shop.folder()));
        const ExitCode code = codeOf([&] { copyToFile(shop.toFile(u"geri #1?.data"_s)); });
        QVERIFY(QDir::setCurrent(before));
        QCOMPARE(code, ExitCode::done);
        QVERIFY(QFileInfo::exists(shop.path(u"geri #1?.data"_s)));
    }

    /// A column of the shop's own that somebody has made on the server.
    void bringsTruthAsNumbers() {
        const MovingShop shop;
        moveToServer(shop.toServer());
        shop.serverRows(u"ALTER TABLE musteri ADD COLUMN iyi bool"_s);
        shop.serverRows(u"INSERT INTO musteri (iyi) VALUES (true), (false), (NULL)"_s);
        QCOMPARE(copyToFile(shop.toFile(shop.path(u"geri.data"_s))).settledCells, 0);
        QStringList ends;
        const QStringList rows = shop.cells(shop.path(u"geri.data"_s))[u"musteri"_s];
        for (const QString& row : rows)
            ends << row.section(u", "_s, -1);
        QCOMPARE(ends, (QStringList{u"whole 1"_s, u"whole 0"_s, u"null"_s}));
    }

    /// Tills store while the file is written: it holds one moment of the shop, whole.
    void readsOneMomentOfTheShop() {
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (urun, stok) VALUES ('a', 10)"_s});
        moveToServer(shop.toServer());
        bool sold = false;
        copyToFile(shop.toFile(shop.path(u"geri.data"_s)), [&](const Progress& progress) {
            if (progress.step != Progress::Step::indexing)
                return;
            shop.serverRows(u"INSERT INTO satislar (urun) VALUES ('a')"_s);
            shop.serverRows(u"UPDATE urunler SET stok = 9"_s);
            sold = true;
        });
        QVERIFY(sold);
        const QMap<QString, QStringList> cells = shop.cells(shop.path(u"geri.data"_s));
        QCOMPARE(cells[u"satislar"_s].size(), 0);
        QVERIFY(cells[u"urunler"_s][0].endsWith(u"real 10"));
    }

    void bringsTheSettingsIntoStep() {
        const MovingShop shop(u"yeni şifre"_s);
        moveToServer(shop.toServer());
        const QString settings = shop.path(u"Kovanix.config"_s);
        for (const QString& key : {u"ConnectionString"_s, u"con"_s})
            ProfileFile::setValue(settings, u"ayar"_s, key, ServerCluster::password());
        ToFile order = shop.toFile(shop.path(u"geri.data"_s));
        order.folders = {shop.folder()};
        copyToFile(order);
        const auto value = [&settings](const QString& key) {
            return ProfileFile::value(settings, u"ayar"_s, key);
        };
        QVERIFY(!contents(settings).contains(ServerCluster::password()));
        QCOMPARE(value(u"ip"_s), shop.path(u"geri.data"_s));
        QCOMPARE(value(u"dbpass"_s), u"yeni şifre"_s);
    }

    void refuses_data() {
        QTest::addColumn<QString>("kind");
        for (const char* kind :
             {"a file that is there", "a pointer's name", "an empty database", "no folder"})
            QTest::newRow(kind) << QString::fromLatin1(kind);
    }
    void refuses() {
        QFETCH(QString, kind);
        const MovingShop shop;
        if (kind != u"an empty database")
            moveToServer(shop.toServer());
        ToFile order = shop.toFile(shop.path(u"geri.data"_s));
        ExitCode code = ExitCode::fileUnfit;
        if (kind == u"a file that is there") {
            order.file = shop.movedFile();
        } else if (kind == u"a pointer's name") {
            order.file = shop.path(u"geri.sunucu"_s);
            code = ExitCode::usage;
        } else if (kind == u"an empty database") {
            code = ExitCode::serverUnfit;
        } else {
            order.file = shop.path(u"yok/geri.data"_s);
            code = ExitCode::failed;
        }
        QCOMPARE(codeOf([&] { copyToFile(order); }), code);
        QVERIFY(QDir(shop.folder()).entryList({u"*geri*"_s}, QDir::Files).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTasiBack)
#include "test_tasi_back.moc"
