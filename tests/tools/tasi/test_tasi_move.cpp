// A shop's move to a server: every cell arrives or is told of, and tills find their way.

#include <sys/stat.h>

#include <QFileInfo>
#include <QTest>

#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "ordinaryuser.h"
#include "profile/profilefile.h"
#include "tasi/server.h"
#include "tasi/tables.h"
#include "tasifixture.h"

using namespace kovanix;
using namespace kovanix::tasi;
using namespace Qt::StringLiterals;

namespace {

/// A cell of a file and what the server holds of it.
struct CellRow {
    const char* name;
    QString column;  ///< of the table urunler
    QString before;  ///< in the engine's SQL
    QString test;    ///< a condition on the server
    Odd odd = Odd::none;
};

const QList<CellRow>& cellRows() {
    static const QList<CellRow> rows{
        {"Turkish letters", u"urun"_s, u"'İIıi ĞŞÖÇÜ ğşöçü'"_s, u"urun::text = 'İIıi ĞŞÖÇÜ ğşöçü'"_s},
        {"quotes", u"urun"_s, u"'a''b\"c`d'"_s, u"urun::text = 'a''b\"c`d'"_s},
        {"backslashes", u"urun"_s, u"'\\N \\\\ \\n \\.'"_s, u"urun::text = '\\N \\\\ \\n \\.'"_s},
        {"a null's sign", u"urun"_s, u"'\\N'"_s, u"urun::text = '\\N'"_s},
        {"line ends and tabs", u"urun"_s, u"char(9, 10, 13, 127, 1)"_s,
         u"urun::text = E'\\x09\\x0a\\x0d\\x7f\\x01'"_s},
        {"four bytes", u"urun"_s, u"char(0x1F35E)"_s, u"urun::text = U&'\\+01F35E'"_s},
        {"a byte order mark", u"urun"_s, u"char(0xFEFF) || 'a'"_s, u"urun::text = U&'\\FEFF' || 'a'"_s},
        {"long", u"urun"_s, u"replace(hex(zeroblob(1000000)), '00', 'şa')"_s,
         u"length(urun::text) = 2000000 AND md5(urun::text) = md5(repeat('şa', 1000000))"_s},
        {"empty", u"urun"_s, u"''"_s, u"urun = ''"_s},
        {"null", u"urun"_s, u"NULL"_s, u"urun IS NULL"_s},
        {"blanks", u"urun"_s, u"'  a  '"_s, u"urun::text = '  a  '"_s},
        {"the old code page", u"urun"_s, u"CAST(x'DE69FE65' AS TEXT)"_s, u"urun::text = 'Şişe'"_s,
         Odd::notUtf8},
        {"NUL", u"urun"_s, u"CAST(x'610062' AS TEXT)"_s, u"urun::text = 'ab'"_s, Odd::nulDropped},
        {"bytes", u"urun"_s, u"x'6162'"_s, u"urun::text = 'ab'"_s, Odd::bytesAsText},
        {"a large number", u"satis"_s, u"1e308"_s, u"satis = 1e308"_s},
        {"negative zero", u"satis"_s, u"-0.0"_s, u"satis = 0"_s},
        {"a tenth", u"satis"_s, u"0.1"_s, u"float8send(satis) = float8send(0.1::float8)"_s},
        {"the smallest", u"satis"_s, u"5e-324"_s, u"satis = 5e-324"_s},
        {"infinity", u"satis"_s, u"9e999"_s, u"satis = 'infinity'"_s},
        {"minus infinity", u"satis"_s, u"-9e999"_s, u"satis = '-infinity'"_s},
        {"a number null", u"satis"_s, u"NULL"_s, u"satis IS NULL"_s},
        {"a text as number", u"satis"_s, u"'1,5'"_s, u"satis = 1.5"_s, Odd::textAsNumber},
        {"no number", u"satis"_s, u"'beş'"_s, u"satis = 0"_s, Odd::textAsZero},
    };
    return rows;
}

struct RefusalRow {
    const char* name;
    QString onServer;
    ExitCode code;
};

/// A table of the shop's own that a server doesn't take as it is called.
struct NameRow {
    const char* name;
    QString create;
};

struct DatabaseRow {
    const char* name;
    QString options;
};

}  // namespace

Q_DECLARE_METATYPE(CellRow)
Q_DECLARE_METATYPE(RefusalRow)
Q_DECLARE_METATYPE(NameRow)
Q_DECLARE_METATYPE(DatabaseRow)

class TestTasiMove : public TasiTest {
    Q_OBJECT

private Q_SLOTS:
    void movesCells_data() {
        QTest::addColumn<CellRow>("row");
        for (const CellRow& row : cellRows())
            QTest::newRow(row.name) << row;
    }
    void movesCells() {
        QFETCH(CellRow, row);
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (no, %1) VALUES (7, %2)"_s.arg(row.column, row.before)});
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(u"SELECT no FROM urunler WHERE "_s + row.test),
                 QList<QStringList>{{u"7"_s}});
        QCOMPARE(result.settled.value(row.odd, 0), row.odd == Odd::none ? 0 : 1);
        QCOMPARE(result.settledCells, row.odd == Odd::none ? 0 : 1);
        QCOMPARE(result.report.isEmpty(), row.odd == Odd::none);
        if (row.odd == Odd::none)
            return;
        const QStringList lines = contents(result.report).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 2);
        const QStringList fields = lines[1].split(u'\t');
        QCOMPARE(fields.mid(0, 3), (QStringList{u"urunler"_s, u"7"_s, row.column}));
        QVERIFY(!fields[3].isEmpty() && !fields[4].isEmpty() && fields[3] != fields[4]);
        QCOMPARE(fields[5], oddWords(row.odd));
    }

    void tellsBytesThatWereNoText() {
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (urun) VALUES (CAST(x'DE0009' AS TEXT))"_s});
        const MoveResult result = moveToServer(shop.toServer());
        QVERIFY(contents(result.report).contains(u"\tx'de0009'\t'Ş\\t'\t"_s));
    }

    void keepsOrderNumbersAndCounters_data() { DatabaseFile::bothKinds(); }
    void keepsOrderNumbersAndCounters() {
        QFETCH(QString, password);
        const MovingShop shop(password);
        shop.run({u"INSERT INTO urunler (no, urun) VALUES (9, 'c'), (2, 'a'), (5, 'b'), (3000000000, 'd')"_s,
                  u"INSERT INTO musteri (no, adi) VALUES (40, 'x')"_s, u"DELETE FROM musteri"_s});
        moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(u"SELECT string_agg(no || urun, ' ' ORDER BY ctid) FROM urunler"_s),
                 (QList<QStringList>{{u"2a 5b 9c 3000000000d"_s}}));
        const QString next = u"INSERT INTO %1 DEFAULT VALUES RETURNING %2"_s;
        QCOMPARE(shop.serverRows(next.arg(u"urunler"_s, u"no"_s)), (QList<QStringList>{{u"3000000001"_s}}));
        QCOMPARE(shop.serverRows(next.arg(u"musteri"_s, u"no"_s)), (QList<QStringList>{{u"41"_s}}));
        QCOMPARE(shop.serverRows(next.arg(u"kullanici"_s, u"id"_s)), (QList<QStringList>{{u"1"_s}}));
    }

    void makesTablesAsTillsDo() {
        const MovingShop shop;
        moveToServer(shop.toServer());
        const QString columns =
            u"SELECT string_agg(column_name || ' ' || coalesce(domain_name, data_type), ', ' ORDER BY "
            "ordinal_position) FROM information_schema.columns WHERE table_name = '%1'"_s;
        QCOMPARE(shop.serverRows(columns.arg(u"satislar"_s)).constFirst().constFirst(),
                 u"no bigint, tarih kovanix_an, barkod kovanix_metin50, urun kovanix_metin50, adet double "
                 "precision, fiyat double precision, alis double precision, kar double precision, toplam "
                 "double precision, satis double precision"_s);
        const QList<QStringList> indexes =
            shop.serverRows(u"SELECT indexname FROM pg_indexes WHERE indexname LIKE 'kovanix%' ORDER BY 1"_s);
        QCOMPARE(indexes, (QList<QStringList>{{u"kovanix_satislar_tarih"_s}, {u"kovanix_urunler_barkod"_s}}));
        QCOMPARE(
            shop.serverRows(u"SELECT count(*) FROM pg_class WHERE relname = 'urunler' AND reltuples >= 0"_s),
            (QList<QStringList>{{u"1"_s}}));
    }

    void carriesWhatItDoesNotKnow() {
        const MovingShop shop;
        shop.run({u"CREATE TABLE \"Ek Tablo\" (\"Büyük Ad\" INTEGER, resim BLOB, \"a\"\"b\" TEXT)"_s,
                  u"INSERT INTO \"Ek Tablo\" VALUES (9007199254740993, x'00FF', 'x'), (NULL, NULL, NULL)"_s,
                  u"ALTER TABLE urunler ADD COLUMN renk TEXT(20)"_s,
                  u"INSERT INTO urunler (urun, renk) VALUES ('a', 'mavi')"_s,
                  u"CREATE VIEW pahali AS SELECT * FROM urunler"_s});
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(
                     u"SELECT \"büyük ad\", resim, \"a\"\"b\", kovanix_sira FROM \"ek tablo\" ORDER BY 4"_s),
                 (QList<QStringList>{{u"9007199254740993"_s, u"\\x00ff"_s, u"x"_s, u"1"_s},
                                     {u""_s, u""_s, u""_s, u"2"_s}}));
        QCOMPARE(shop.serverRows(u"SELECT renk FROM urunler"_s), (QList<QStringList>{{u"mavi"_s}}));
        QCOMPARE(result.settledCells, 0);
        QCOMPARE(result.notices, 3);
        QVERIFY(contents(result.report).contains(u"pahali"));
    }

    void carriesTheValuesOfComputedColumns() {
        const MovingShop shop;
        shop.run(
            {u"CREATE TABLE fis (tutar REAL, kdv REAL GENERATED ALWAYS AS (tutar / 4) STORED, kod AS "
             "('F' || tutar) VIRTUAL)"_s,
             u"INSERT INTO fis VALUES (10)"_s});
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(u"SELECT tutar, kdv, kod FROM fis"_s),
                 (QList<QStringList>{{u"10"_s, u"2.5"_s, u"F10.0"_s}}));
        QCOMPARE(result.notices, 3);
    }

    void carriesCountersOfOtherNames() {
        const MovingShop shop;
        shop.run({u"DROP TABLE urunler"_s, u"DROP TABLE musteri"_s,
                  u"CREATE TABLE urunler (Sira INTEGER PRIMARY KEY, urun TEXT(50))"_s,
                  u"CREATE TABLE musteri (adi TEXT(50))"_s, u"INSERT INTO urunler VALUES (12, 'a')"_s,
                  u"INSERT INTO musteri VALUES ('x'), ('y')"_s, u"DELETE FROM musteri WHERE adi = 'x'"_s});
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(u"INSERT INTO urunler (urun) VALUES ('b') RETURNING sira"_s),
                 (QList<QStringList>{{u"13"_s}}));
        QCOMPARE(shop.serverRows(u"INSERT INTO musteri (adi) VALUES ('z') RETURNING kovanix_sira"_s),
                 (QList<QStringList>{{u"2"_s}}));
        QVERIFY(contents(result.report).contains(u"Sira"));
        QVERIFY(contents(result.report).contains(u"sayacı yok"));
    }

    void putsTheFileAway_data() { DatabaseFile::bothKinds(); }
    void putsTheFileAway() {
        QFETCH(QString, password);
        const MovingShop shop(password);
        shop.run({u"INSERT INTO urunler (urun) VALUES ('a')"_s});
        const QMap<QString, QStringList> before = shop.cells(shop.file());
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(result.renamed, QStringList{shop.movedFile()});
        const QStringList left = QDir(shop.folder()).entryList({u"kovanix*"_s}, QDir::Files | QDir::Hidden);
        QCOMPARE(left, QStringList{u"kovanix.data.tasindi"_s});
        QCOMPARE(shop.cells(shop.movedFile()), before);
    }

    /// The last sales of a till that died stand in the log beside the file.
    void takesWhatADeadTillLeft_data() { DatabaseFile::bothKinds(); }
    void takesWhatADeadTillLeft() {
        QFETCH(QString, password);
        const MovingShop shop(password);
        const QString file = shop.path(u"olu.data"_s);
        {
            Connection till;
            till.open(DatabaseFile::connectionString(shop.file(), password));
            till.execute(u"INSERT INTO urunler (urun) VALUES ('son')"_s);
            for (const QString& ending : {u""_s, u"-wal"_s, u"-shm"_s})
                QVERIFY(QFile::copy(shop.file() + ending, file + ending));
        }
        QVERIFY(QFileInfo(file + u"-wal"_s).size() > 0);
        ToServer order = shop.toServer();
        order.file = file;
        QCOMPARE(moveToServer(order).rows, 1);
        QCOMPARE(shop.serverRows(u"SELECT urun FROM urunler"_s), (QList<QStringList>{{u"son"_s}}));
        QCOMPARE(QDir(shop.folder()).entryList({u"olu*"_s}, QDir::Files), QStringList{u"olu.data.tasindi"_s});
        QCOMPARE(shop.cells(file + u".tasindi"_s)[u"urunler"_s].size(), 1);
    }

    void putsTheFileBehindALinkAway() {
        const MovingShop shop;
        const QString link = shop.path(u"bag.data"_s);
        QVERIFY(QFile::link(shop.file(), link));
        ToServer order = shop.toServer();
        order.file = link;
        QCOMPARE(moveToServer(order).renamed, QStringList{shop.movedFile()});
        QVERIFY(!QFileInfo::exists(link));
    }

    void renamesOverNothing() {
        const MovingShop shop;
        QFile earlier(shop.movedFile());
        QVERIFY(earlier.open(QIODevice::WriteOnly));
        const MoveResult result = moveToServer(shop.toServer());
        QCOMPARE(result.renamed, QStringList{shop.movedFile() + u"-2"_s});
        QCOMPARE(QFileInfo(shop.movedFile()).size(), 0);
    }

    void bringsTheSettingsIntoStep() {
        const MovingShop shop(u"eski"_s);
        QVERIFY(QDir(shop.folder()).mkpath(u"kasa"_s));
        const QString settings = shop.path(u"kasa/Kovanix.config"_s);
        const auto value = [](const QString& file, const QString& key) {
            return ProfileFile::value(file, u"ayar"_s, key);
        };
        ProfileFile::setValue(settings, u"ayar"_s, u"ip"_s, shop.file());
        ProfileFile::setValue(settings, u"ayar"_s, u"dbpass"_s, u"eski"_s);
        for (const QString& name :
             {u"kasa/kovanix.data"_s, u"kasa/kovanix.mdb"_s, u"kasa/kovanix.data-wal"_s}) {
            QFile local(shop.path(name));
            QVERIFY(local.open(QIODevice::WriteOnly));
        }
        ToServer order = shop.toServer();
        order.folders = {shop.path(u"kasa"_s)};
        const MoveResult result = moveToServer(order);
        QCOMPARE(value(settings, u"ip"_s), shop.pointer());
        QCOMPARE(value(settings, u"dbpass"_s), ServerCluster::password());
        QCOMPARE(value(settings + u".tasindi", u"dbpass"_s), u"eski"_s);
        QCOMPARE(result.settings, QStringList{settings});
        QCOMPARE(QDir(shop.path(u"kasa"_s)).entryList(QDir::Files),
                 (QStringList{u"Kovanix.config"_s, u"Kovanix.config.tasindi"_s, u"kovanix.data.tasindi"_s,
                              u"kovanix.data.tasindi-wal"_s, u"kovanix.mdb.tasindi"_s}));
    }

    /// A shop whose file lies in the application folder: the older file there would be taken without a word.
    void renamesTheOlderFileBeside() {
        const MovingShop shop;
        for (const QString& name : {u"Kovanix.config"_s, u"kovanix.mdb"_s}) {
            QFile file(shop.path(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        moveToServer(shop.toServer());
        QVERIFY(!QFileInfo::exists(shop.path(u"kovanix.mdb"_s)));
        QVERIFY(QFileInfo::exists(shop.path(u"kovanix.mdb.tasindi"_s)));
    }

    void writesThePointer() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.address = ServerAddress::read(shop.pointer());
        order.pointer = shop.path(u"yeni.Sunucu"_s);
        moveToServer(order);
        struct stat found {};
        QCOMPARE(::stat(qPrintable(order.pointer), &found), 0);
        QCOMPARE(found.st_mode & 07777U, 0600U);
        const ServerAddress written = ServerAddress::read(order.pointer);
        QCOMPARE(written.hosts, order.address->hosts);
        QCOMPARE(written.port, order.address->port);
        QCOMPARE(written.database, shop.database());
        QCOMPARE(written.user, ServerCluster::role());
        QCOMPARE(written.tls, ServerAddress::Tls::off);
    }

    void keepsAPointerThatFits() {
        const MovingShop shop;
        const QString before = contents(shop.pointer());
        ToServer order = shop.toServer();
        order.address = ServerAddress::read(shop.pointer());
        moveToServer(order);
        QCOMPARE(contents(shop.pointer()), before);
        struct stat found {};
        QCOMPARE(::stat(qPrintable(shop.pointer()), &found), 0);
        QCOMPARE(found.st_mode & 07777U, 0600U);
    }

    void givesThePointerToItsFoldersOwner() {
        if (::geteuid() != 0)
            QSKIP("only the administrator gives files away");
        const MovingShop shop;
        constexpr uid_t other = 65534;
        QVERIFY(QDir(shop.folder()).mkpath(u"kasa"_s));
        QCOMPARE(::chown(qPrintable(shop.path(u"kasa"_s)), other, other), 0);
        ToServer order = shop.toServer();
        order.address = ServerAddress::read(shop.pointer());
        order.pointer = shop.path(u"kasa/dukkan.sunucu"_s);
        moveToServer(order);
        struct stat found {};
        QCOMPARE(::stat(qPrintable(order.pointer), &found), 0);
        QCOMPARE(found.st_uid, other);
        QCOMPARE(found.st_mode & 07777U, 0600U);
    }

    void refusesADatabase_data() {
        QTest::addColumn<RefusalRow>("row");
        const QList<RefusalRow> rows{
            {"the till's table", u"CREATE TABLE satislar (no bigint)"_s, ExitCode::serverUnfit},
            {"another table of the file", u"CREATE TABLE notlar (a text)"_s, ExitCode::serverUnfit},
            {"a view of that name", u"CREATE VIEW urunler AS SELECT 1 AS no"_s, ExitCode::serverUnfit},
            {"a table of somebody else's", u"CREATE TABLE defter (a text)"_s, ExitCode::done},
        };
        for (const RefusalRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void refusesADatabase() {
        QFETCH(RefusalRow, row);
        const MovingShop shop;
        shop.run({u"CREATE TABLE Notlar (a TEXT)"_s});
        shop.serverRows(row.onServer);
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), row.code);
        QCOMPARE(QFileInfo::exists(shop.file()), row.code != ExitCode::done);
    }

    void refusesNamesOfTheServers_data() {
        QTest::addColumn<NameRow>("row");
        const QList<NameRow> rows{
            {"a table of the server's", u"CREATE TABLE PG_Class (a TEXT)"_s},
            {"the move's own table", u"CREATE TABLE kovanix_tasima (a TEXT)"_s},
            {"the place of a row", u"CREATE TABLE ek (Kovanix_Sira INTEGER, a TEXT)"_s},
            {"the place beside a counter",
             u"CREATE TABLE ek (no INTEGER PRIMARY KEY, kovanix_sira INTEGER)"_s},
            {"a column of the server's", u"CREATE TABLE ek (XMIN INTEGER)"_s},
        };
        for (const NameRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void refusesNamesOfTheServers() {
        QFETCH(NameRow, row);
        const MovingShop shop;
        shop.run({row.create});
        QString words;
        try {
            moveToServer(shop.toServer());
        } catch (const Failure& failure) {
            QCOMPARE(failure.code(), ExitCode::fileUnfit);
            words = failure.description();
        }
        QVERIFY2(words.startsWith(u"Bu adı sunucu kendisi kullanıyor"), qPrintable(words));
        QVERIFY(shop.serverTables().isEmpty());
        QVERIFY(QFileInfo::exists(shop.file()));
    }

    /// Statistics of other people's tables are their owners' business, and refused with a line in the log.
    void analysesItsOwnTablesOnly() {
        const MovingShop shop;
        shop.serverRows(u"CREATE TABLE defter AS SELECT 1 AS a"_s);
        shop.serverRows(u"ALTER TABLE defter OWNER TO "_s + ServerCluster::role());
        moveToServer(shop.toServer());
        QCOMPARE(shop.serverRows(u"SELECT relname, reltuples >= 0 FROM pg_class WHERE relname IN ('defter', "
                                 "'musteri') ORDER BY 1"_s),
                 (QList<QStringList>{{u"defter"_s, u"f"_s}, {u"musteri"_s, u"t"_s}}));
    }

    void refusesAnotherLocale_data() {
        QTest::addColumn<DatabaseRow>("row");
        const QList<DatabaseRow> rows{{"a language's letters", u"ENCODING 'UTF8' LOCALE 'C.UTF-8'"_s},
                                      {"no encoding", u"ENCODING 'SQL_ASCII' LOCALE 'C'"_s},
                                      {"one letter, one byte", u"ENCODING 'LATIN5' LOCALE 'C'"_s}};
        for (const DatabaseRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void refusesAnotherLocale() {
        QFETCH(DatabaseRow, row);
        const MovingShop shop;
        const QString name = u"baska"_s;
        sharedCluster()->rows(u"postgres"_s, u"CREATE DATABASE %1 OWNER %2 TEMPLATE template0 %3"_s.arg(
                                                 name, ServerCluster::role(), row.options));
        ToServer order = shop.toServer();
        order.pointer = sharedCluster()->writePointer(shop.folder(), name);
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::serverUnfit);
        QVERIFY(QFileInfo::exists(shop.file()));
        sharedCluster()->dropDatabase(name);
    }

    void refusesAWrongPassword() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.serverPassword = u"yanlış"_s;
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::serverUnfit);
        QVERIFY(QFileInfo::exists(shop.file()));
    }

    void refusesAPasswordThatTheSettingsCannotHold() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.serverPassword = u"  boşluklu "_s;
        order.folders = {shop.folder()};
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::usage);
    }

    void refusesAPointerToAnotherPlace() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.address = ServerAddress::read(shop.pointer());
        order.address->database = u"baska"_s;
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::usage);
    }

    /// What a till finds there: its own tables, and nothing to be added to them.
    void tillsGoOnOnTheServer() {
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (no, barkod, urun, satis) VALUES (3, '869', 'İğne', 0.1)"_s,
                  u"INSERT INTO satislar (tarih, urun) VALUES ('2026-05-03 07:05:09', 'İğne')"_s});
        const auto read = [](Connection& till) {
            QStringList seen;
            for (const QString& table : tillTables()) {
                for (const TableColumn& column : till.shape(table).columns)
                    seen.append(u"%1.%2 %3 %4"_s.arg(table, column.name,
                                                     QString::number(static_cast<int>(column.type)),
                                                     QString::number(column.width)));
                RowWalk(till, u"SELECT * FROM "_s + table).forEach([&](const RowWalk::Row& row) {
                    for (int i = 0; i < till.shape(table).columns.size(); ++i)
                        seen.append(row.value(i).toString());
                });
            }
            return seen;
        };
        Connection onFile;
        onFile.open(DatabaseFile::connectionString(shop.file(), {}));
        const QStringList before = read(onFile);
        onFile.close();
        moveToServer(shop.toServer());
        const QString relations =
            u"SELECT relname, relfilenode FROM pg_class WHERE relnamespace = "
            "'public'::regnamespace ORDER BY 1"_s;
        const QList<QStringList> made = shop.serverRows(relations);
        Connection onServer;
        onServer.open(DatabaseFile::connectionString(shop.pointer(), ServerCluster::password()));
        QCOMPARE(read(onServer), before);
        semahazir = false;
        semakontrol(onServer);
        QVERIFY(semahazir);
        keepAccessPaths(onServer);
        QCOMPARE(shop.serverRows(relations), made);
        onServer.execute(u"INSERT INTO urunler (urun) VALUES ('yeni')"_s);
        QCOMPARE(shop.serverRows(u"SELECT no FROM urunler WHERE urun = 'YENI'"_s),
                 (QList<QStringList>{{u"4"_s}}));
    }

    /// Another till makes the tables of an empty database at this moment.
    void waitsForATillThatMakesTables() {
        const MovingShop shop;
        Server till(ServerAddress::read(shop.pointer()), ServerCluster::password());
        till.execute(u"SELECT pg_advisory_lock(4937304)"_s);
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::serverUnfit);
        QVERIFY(shop.serverTables().isEmpty());
        till.execute(u"SELECT pg_advisory_unlock(4937304)"_s);
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::done);
    }

    void refusesALocalFileInUse() {
        const MovingShop shop;
        // The locks are those of another process: one that this process holds would be let go by the look.
        const QString kept = shop.path(u"kovanix.mdb"_s);
        QVERIFY(QFile::copy(shop.file(), kept));
        QFile(shop.path(u"Kovanix.config"_s)).open(QIODevice::WriteOnly);
        const QString holder =
            u"import fcntl,sys,time\nf=open(sys.argv[1],'r+b')\nfcntl.lockf(f,fcntl.LOCK_SH,1,0x40000002)\n"
            "print('held',flush=True)\ntime.sleep(60)\n"_s;
        QProcess process;
        process.start(u"python3"_s, {u"-c"_s, holder, kept});
        if (!process.waitForStarted())
            QSKIP("no python3 to hold a lock with");
        QVERIFY(process.waitForReadyRead());
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::fileUnfit);
        process.kill();
        QVERIFY(process.waitForFinished());
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::done);
    }

    void makesTheExtensionWhereItIsMissing() {
        const MovingShop shop;
        shop.serverRows(u"DROP EXTENSION citext"_s);
        moveToServer(shop.toServer());
        QVERIFY(!shop.serverRows(u"SELECT 1 FROM pg_extension WHERE extname = 'citext'"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTasiMove)
#include "test_tasi_move.moc"
