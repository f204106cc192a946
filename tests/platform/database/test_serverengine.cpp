#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>
#include <array>
#include <atomic>
#include <optional>
#include <thread>

#include "countingproxy.h"
#include "database/failedopens.h"
#include "database/press.h"
#include "database/recordset.h"
#include "database/rowset.h"
#include "database/rowwalk.h"
#include "database/serverengine.h"
#include "database/serversession.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Handle = Connection::Handle;
using Kind = DatabaseError::Kind;

namespace {

struct LocaleRow {
    QString made;     ///< how the database is made
    QString refused;  ///< what the refusal says of it; empty where it is none
};

struct ConflictRow {
    QString setting;   ///< of the database
    QString then;      ///< what the other till does as soon as this one waits
    QByteArray words;  ///< the server's, in its log
    QString found;     ///< in the end: product 0's stock, the least purchase price
};

std::optional<Kind> kindOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const DatabaseError& error) {
        return error.kind();
    }
    return std::nullopt;
}

QString descriptionOf(const std::function<void()>& step) {
    const std::optional<RuntimeError> error = errorOf(step);
    return error ? error->description() : u"no error"_s;
}

/// What a till does first. @return whether all is there then, and nothing else was told than that it was
bool beginShop(const QString& connectionString) {
    Connection connection;
    connection.open(connectionString);
    bool right = true;
    const auto make = [&](const QString& sql) {
        right =
            right && kindOf([&] { connection.execute(sql); }).value_or(Kind::statement) == Kind::statement;
    };
    for (const QString& table : {u"urunler"_s, u"satislar"_s, u"musteri"_s}) {
        make(u"CREATE TABLE %1 (no COUNTER, a TEXT(50), t DATETIME)"_s.arg(table));
        make(u"ALTER TABLE %1 ADD COLUMN b TEXT(30)"_s.arg(table));
        connection.keepIndex(table, u"a"_s);
        right = right && connection.shape(table).columns.size() == 4;
    }
    return right;
}

}  // namespace

Q_DECLARE_METATYPE(ConflictRow)
Q_DECLARE_METATYPE(LocaleRow)

/// What is special to a till that works on a server.
class TestServerEngine : public QObject {
    Q_OBJECT

    /// A till's connections to a shop, with a proxy in between.
    struct Till {
        DatabaseFile file{DatabaseFile::onServer()};
        CountingProxy proxy{testServer().port()};
        Connection reading;

        explicit Till(bool stocked = true) {
            point(proxy.port());
            reading.open(file.connectionString(), Handle::shared);
            if (!stocked)
                return;
            reading.execute(
                u"CREATE TABLE urunler (no COUNTER, barkod TEXT(50), alis DOUBLE, stok DOUBLE)"_s);
            reading.execute(
                u"CREATE TABLE satislar (no COUNTER, tarih DATETIME, barkod TEXT(50), adet DOUBLE)"_s);
            for (int i = 0; i < 20; ++i)
                reading.execute(u"INSERT INTO urunler (barkod, alis, stok) VALUES ('%1', 2, 100)"_s.arg(i));
            reading.keepIndex(u"urunler"_s, u"barkod"_s);
        }

        /// Has the pointer name another port.
        void point(int port) const { write(file.path(), port); }
        /// The connection string of another till, which has a line of its own.
        QString other() const {
            const QString path = file.folder() + u"/baska.sunucu"_s;
            write(path, testServer().port());
            return DatabaseFile::connectionString(path, ServerCluster::password());
        }
        void write(const QString& path, int port) const {
            QFile pointer(path);
            if (!pointer.open(QIODevice::WriteOnly) ||
                pointer.write(u"[sunucu]\nadres=127.0.0.1\nport=%1\nveritabani=%2\nkullanici=%3\ntls=yok\n"_s
                                  .arg(QString::number(port), file.database(), ServerCluster::role())
                                  .toLatin1()) < 0)
                qFatal("no pointer");
        }
        double price(int barcode) {
            Recordset product;
            product.open(u"SELECT alis FROM urunler WHERE barkod='%1'"_s.arg(barcode), reading);
            return product.field(u"alis"_s).toDouble();
        }
        void sellLine(Connection& connection, int barcode) const {
            connection.execute(
                u"INSERT INTO satislar (tarih, barkod, adet) VALUES (#5/3/2021 07:05:09#, '%1', 2)"_s.arg(
                    barcode));
        }
        QStringList rows(const QString& sql) const { return file.rows(sql); }
    };

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
    }
    void cleanup() {
        ServerEngine::restLength = 10s;
        FailedOpens::moment = 2s;
    }

    void asksOncePerStep();
    void aSaleOfTwentyLines();
    void aReadOpensAgain_data();
    void aReadOpensAgain();
    void aWriteIsNeverSentTwice();
    void aWriteThatWaitsGoesWithItsTill();
    void whatAPressWroteIsNotForgotten();
    void afterRestTheServerIsAskedFirst();
    void aFailedOpenIsRemembered();
    void conflictsAreRetried();
    void conflictsOfTwoTills_data();
    void conflictsOfTwoTills();
    void waitsForARowNoLongerThanAsked();
    void refusesAnotherLocale_data();
    void refusesAnotherLocale();
    void tellsWhatIsWrong();
    void twoTillsOnAnEmptyDatabase();
    void anotherTillChangesATable();
    void aWriteIsDurableBehindItsPress();
    void closesAtTheSecondTry();
    void givesTruthAsNumbers();
};

void TestServerEngine::asksOncePerStep() {
    Till till;
    till.proxy.setDelay(5000);  // sends that don't wait for an answer in between come together
    till.price(1);
    till.proxy.takeTrips();
    QCOMPARE(till.price(2), 2.0);
    QCOMPARE(till.proxy.takeTrips(), 1);
    // The first list of a connection asks for the server's number of a type as well.
    RowSet list;
    list.read(till.reading, u"select * from satislar"_s);
    till.proxy.takeTrips();
    list.read(till.reading, u"select * from urunler"_s);
    QCOMPARE(till.proxy.takeTrips(), 2);  // the mark and the rows
    QVERIFY(!list.read(till.reading, u"select * from urunler"_s));
    QCOMPARE(till.proxy.takeTrips(), 1);
    QVERIFY(till.reading.shape(u"urunler"_s).indexOf(u"stok"_s) > 0);
    QCOMPARE(till.proxy.takeTrips(), 0);
}

void TestServerEngine::aSaleOfTwentyLines() {
    Till till;
    Connection selling;
    selling.open(till.file.connectionString(), Handle::shared);
    till.proxy.setDelay(5000);
    int trips = 0;
    for (int sale = 0; sale < 2; ++sale) {
        till.proxy.takeTrips();
        Press press(selling);
        for (int line = 0; line < 20; ++line) {
            till.price(line);
            till.sellLine(selling, line);
        }
        for (int line = 0; line < 20; ++line)
            selling.execute(
                u"UPDATE urunler SET stok = IIF(stok IS NULL, 0, stok) - 2 WHERE barkod='%1'"_s.arg(line));
        press.finish();
        trips = till.proxy.takeTrips();
    }
    QVERIFY2(trips <= 62, qPrintable(QString::number(trips)));
    QCOMPARE(till.rows(u"SELECT sum(stok), count(*) FROM urunler"_s), QStringList{u"1920|20"_s});
    QCOMPARE(till.rows(u"SELECT sum(adet), count(*) FROM satislar"_s), QStringList{u"80|40"_s});
}

void TestServerEngine::aReadOpensAgain_data() {
    QTest::addColumn<int>("reading");
    QTest::newRow("a look-up") << 0;
    QTest::newRow("a list") << 1;
    QTest::newRow("a walk") << 2;
    QTest::newRow("a recordset that was open") << 3;
}

void TestServerEngine::aReadOpensAgain() {
    QFETCH(const int, reading);
    Till till;
    till.price(1);
    Recordset open;
    open.open(u"select * from urunler"_s, till.reading);
    const int connections = till.proxy.connections();
    till.proxy.cut();
    int rows = 0;
    if (reading == 0) {
        QCOMPARE(till.price(2), 2.0);
    } else if (reading == 1) {
        RowSet list;
        list.read(till.reading, u"select * from urunler"_s);
        QCOMPARE(list.recordCount(), 20);
    } else if (reading == 2) {
        RowWalk(till.reading, u"select no from urunler"_s).forEach([&](const RowWalk::Row&) { ++rows; });
        QCOMPARE(rows, 20);
    } else {
        QCOMPARE(open.field(u"barkod"_s), u"0"_s);
    }
    QCOMPARE(till.proxy.connections(), connections + 1);
    QVERIFY(till.reading.isOpen());
}

void TestServerEngine::aWriteIsNeverSentTwice() {
    Till till;
    till.sellLine(till.reading, 1);
    till.proxy.cutNextAnswer();
    QCOMPARE(kindOf([&] { till.sellLine(till.reading, 2); }), Kind::lost);
    QTRY_COMPARE(till.rows(u"SELECT barkod FROM satislar ORDER BY no"_s), (QStringList{u"1"_s, u"2"_s}));
    QVERIFY(!till.reading.isOpen());
    till.reading.open(till.file.connectionString(), Handle::shared);
    till.sellLine(till.reading, 3);
    QCOMPARE(till.rows(u"SELECT barkod FROM satislar ORDER BY no"_s), (QStringList{u"1"_s, u"2"_s, u"3"_s}));
}

void TestServerEngine::aWriteThatWaitsGoesWithItsTill() {
    Till till;
    RawDatabase raw(till.file.path(), till.file.password());
    QVERIFY(raw.run(u"BEGIN"_s) && raw.run(u"UPDATE urunler SET stok = 1 WHERE barkod = '1'"_s));
    const auto isWaiting = [&] {
        return !testServer()
                    .rows(till.file.database(), u"SELECT 1 FROM pg_locks WHERE NOT granted"_s)
                    .isEmpty();
    };
    {
        const std::jthread cut([&] {
            while (!isWaiting()) {
            }
            till.proxy.cut();
        });
        QCOMPARE(kindOf([&] { till.reading.execute(u"UPDATE urunler SET stok = 2 WHERE barkod = '1'"_s); }),
                 Kind::lost);
    }
    // Before its wait for the row would have an end.
    QTRY_VERIFY_WITH_TIMEOUT(!isWaiting(), 3000);
    QVERIFY(raw.run(u"ROLLBACK"_s));
    QCOMPARE(till.rows(u"SELECT stok FROM urunler WHERE barkod = '1'"_s), QStringList{u"100"_s});
}

/// A server that falls in the middle of a sale may lose its first lines: they aren't on the disk yet. Going
/// on with the last ones would tell the cashier that the sale is stored.
void TestServerEngine::whatAPressWroteIsNotForgotten() {
    Till till;
    till.price(1);
    Press press(till.reading);
    till.sellLine(till.reading, 1);
    till.proxy.cut();
    QCOMPARE(kindOf([&] { till.price(2); }), Kind::lost);
    QVERIFY(kindOf([&] { till.sellLine(till.reading, 2); }));
    QVERIFY(kindOf([&] { press.finish(); }));
}

void TestServerEngine::afterRestTheServerIsAskedFirst() {
    Till till;
    till.price(1);
    ServerEngine::restLength = -1ms;
    till.proxy.takeTrips();
    till.price(2);
    const int asked = till.proxy.takeTrips();
    QVERIFY(asked > 1);
    const int connections = till.proxy.connections();
    till.proxy.cut();
    till.sellLine(till.reading, 1);
    QCOMPARE(till.proxy.connections(), connections + 1);
    till.proxy.cut();
    Press press(till.reading);
    till.sellLine(till.reading, 2);
    press.finish();
    QCOMPARE(till.rows(u"SELECT barkod FROM satislar"_s), (QStringList{u"1"_s, u"2"_s}));
}

void TestServerEngine::aFailedOpenIsRemembered() {
    Till till;
    till.reading.close();
    till.point(1);  // where nobody listens
    const QString first = descriptionOf([&] { till.reading.open(till.file.connectionString()); });
    QVERIFY2(first.startsWith(u"Veritabanı sunucusuna ulaşılamıyor"_s), qPrintable(first));
    till.point(till.proxy.port());
    const int connections = till.proxy.connections();
    QCOMPARE(descriptionOf([&] { till.reading.open(till.file.connectionString()); }), first);
    QCOMPARE(till.proxy.connections(), connections);
    QVERIFY(!till.reading.isOpen());
    // While somebody reads what a box says of it, one that took long isn't forgotten.
    FailedOpens::moment = 50ms;
    const DatabaseError error(Kind::lost, u"yok"_s, u"PostgreSQL"_s);
    FailedOpens::remember(u"slow"_s, error, 5s);
    FailedOpens::remember(u"quick"_s, error, 1ms);
    {
        const FailedOpens::Hold box;
        { const FailedOpens::Hold another; }
        QElapsedTimer reading;
        reading.start();
        QTRY_VERIFY(reading.elapsed() > 60);
        QVERIFY(FailedOpens::recent(u"slow"_s));
        QVERIFY(!FailedOpens::recent(u"quick"_s));
    }
    QVERIFY(FailedOpens::recent(u"slow"_s));
    QTRY_VERIFY(till.reading.isOpen() || !errorOf([&] { till.reading.open(till.file.connectionString()); }));
}

void TestServerEngine::conflictsAreRetried() {
    Till till;
    RawDatabase raw(till.file.path(), till.file.password());
    QVERIFY(raw.run(u"CREATE SEQUENCE denemeler MINVALUE -9 START 1"_s));
    QVERIFY(raw.run(
        u"CREATE FUNCTION cakis() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN IF nextval('denemeler') < 4 "
        "THEN RAISE EXCEPTION 'cakisti' USING ERRCODE = '40P01'; END IF; RETURN NEW; END $$"_s));
    QVERIFY(
        raw.run(u"CREATE TRIGGER cakis BEFORE INSERT ON satislar FOR EACH ROW EXECUTE FUNCTION cakis()"_s));
    till.sellLine(till.reading, 1);
    QCOMPARE(till.rows(u"SELECT last_value FROM denemeler"_s), QStringList{u"4"_s});
    QCOMPARE(till.rows(u"SELECT count(*) FROM satislar"_s), QStringList{u"1"_s});
    QVERIFY(raw.run(u"ALTER SEQUENCE denemeler RESTART WITH -9"_s));
    QCOMPARE(kindOf([&] { till.sellLine(till.reading, 2); }), Kind::busy);
    QCOMPARE(till.rows(u"SELECT last_value FROM denemeler"_s), QStringList{u"-6"_s});
}

void TestServerEngine::conflictsOfTwoTills_data() {
    // The other till has product 20 when this one comes to it, and then ends or wants product 1.
    addRows<ConflictRow>(
        {{"a deadlock",
          {u"SET deadlock_timeout = '500ms'"_s, u"UPDATE urunler SET stok = 5 WHERE barkod = '0'"_s,
           "deadlock detected", u"5|7"_s}},
         {"a row that changed since the statement began",
          {u"SET default_transaction_isolation = 'repeatable read'"_s, u"SELECT 1"_s,
           "could not serialize access due to concurrent update", u"100|7"_s}}});
}

void TestServerEngine::conflictsOfTwoTills() {
    QFETCH(const ConflictRow, row);
    Till till;
    testServer().rows(u"postgres"_s, u"ALTER DATABASE %1 %2"_s.arg(till.file.database(), row.setting));
    // The database's settings count from the next connection on.
    till.proxy.cut();
    QCOMPARE(till.price(1), 2.0);
    std::atomic<bool> holds = false;
    std::jthread other([&] {
        RawDatabase raw(till.file.path(), till.file.password());
        raw.run(u"SET deadlock_timeout = '1min'"_s);
        raw.run(u"BEGIN ISOLATION LEVEL READ COMMITTED"_s);
        raw.run(u"UPDATE urunler SET stok = 50 WHERE barkod = '19'"_s);
        holds = true;
        while (raw.rows(u"SELECT 1 FROM pg_locks WHERE NOT granted"_s).isEmpty()) {
        }
        raw.run(row.then);
        raw.run(u"COMMIT"_s);
    });
    QTRY_VERIFY(holds);
    till.reading.execute(u"UPDATE urunler SET alis = 7"_s);
    other.join();
    QCOMPARE(till.rows(u"SELECT (SELECT stok FROM urunler WHERE barkod = '0'), min(alis) FROM urunler"_s),
             QStringList{row.found});
    QCOMPARE(till.rows(u"SELECT stok FROM urunler WHERE barkod = '19'"_s), QStringList{u"50"_s});
    QVERIFY(testServer().log().contains(row.words));
}

void TestServerEngine::waitsForARowNoLongerThanAsked() {
    Till till;
    Connection impatient(50ms);
    impatient.open(till.other());
    RawDatabase raw(till.file.path(), till.file.password());
    QVERIFY(raw.run(u"BEGIN"_s) && raw.run(u"UPDATE urunler SET stok = 1 WHERE barkod = '1'"_s));
    QCOMPARE(kindOf([&] { impatient.execute(u"UPDATE urunler SET stok = 2 WHERE barkod = '1'"_s); }),
             Kind::busy);
    QVERIFY(raw.run(u"ROLLBACK"_s));
}

void TestServerEngine::refusesAnotherLocale_data() {
    addRows<LocaleRow>(
        {{"C", {u"ENCODING 'UTF8' LOCALE 'C'"_s, {}}},
         {"C with the letters of all languages",
          {u"ENCODING 'UTF8' LC_COLLATE 'C' LC_CTYPE 'C.UTF-8'"_s, u"UTF8, C, C.UTF-8"_s}},
         {"another order", {u"ENCODING 'UTF8' LC_COLLATE 'C.UTF-8' LC_CTYPE 'C'"_s, u"UTF8, C.UTF-8, C"_s}},
         {"another encoding", {u"ENCODING 'LATIN5' LOCALE 'C'"_s, u"LATIN5, C"_s}},
         {"rules of another library",
          {u"ENCODING 'UTF8' LOCALE 'C' LOCALE_PROVIDER icu ICU_LOCALE 'tr-TR'"_s, u"UTF8, C, ICU"_s}}});
}

void TestServerEngine::refusesAnotherLocale() {
    QFETCH(const LocaleRow, row);
    const DatabaseFile file(DatabaseFile::onServer());
    const QString name = u"baska"_s;
    testServer().rows(u"postgres"_s, u"DROP DATABASE IF EXISTS "_s + name);
    testServer().rows(u"postgres"_s, u"CREATE DATABASE %1 OWNER %2 TEMPLATE template0 %3"_s.arg(
                                         name, ServerCluster::role(), row.made));
    const QString pointer = testServer().writePointer(file.folder(), name);
    Connection connection;
    const auto error =
        errorOf([&] { connection.open(DatabaseFile::connectionString(pointer, ServerCluster::password())); });
    QCOMPARE(connection.isOpen(), row.refused.isEmpty());
    if (error)
        QCOMPARE(
            error->description(),
            u"Sunucudaki veritabanı kasaya uygun değil: UTF8 ve C diliyle (LOCALE 'C') oluşturulmalı, şimdi "_s +
                row.refused);
}

void TestServerEngine::tellsWhatIsWrong() {
    Till till;
    const auto opening = [&](const QString& database, const QString& password) {
        const QString pointer = testServer().writePointer(till.file.folder(), database);
        Connection connection;
        return descriptionOf([&] { connection.open(DatabaseFile::connectionString(pointer, password)); });
    };
    QVERIFY(opening(till.file.database(), u"yanlış"_s)
                .startsWith(u"Veritabanı sunucusu kullanıcıyı ya da parolayı kabul etmiyor ("_s));
    QVERIFY(opening(u"yok"_s, ServerCluster::password()).startsWith(u"Veritabanı sunucuda yok"_s));
    till.point(till.proxy.port());
    RawDatabase raw(till.file.path(), till.file.password());
    QVERIFY(raw.run(u"ALTER TABLE satislar ADD CHECK (adet > 0)"_s));
    const auto error = errorOf([&] { till.reading.execute(u"INSERT INTO satislar (adet) VALUES (-1)"_s); });
    QVERIFY(error);
    QCOMPARE(error->source(), u"PostgreSQL"_s);
    QCOMPARE(
        error->description(),
        u"Veritabanı bu kaydı kabul etmiyor (new row for relation \"satislar\" violates check constraint \"satislar_adet_check\")"_s);
}

void TestServerEngine::twoTillsOnAnEmptyDatabase() {
    for (int round = 0; round < 5; ++round) {
        const DatabaseFile file(DatabaseFile::onServer());
        // Both begin at once, behind a third one that is at it.
        RawDatabase third(file.path(), file.password());
        QVERIFY(third.run(u"BEGIN"_s));
        QVERIFY(third.run(u"SELECT pg_advisory_xact_lock(%1)"_s.arg(serverTableLock)));
        std::array<QProcess, 2> tills;
        for (QProcess& till : tills)
            till.start(QCoreApplication::applicationFilePath(), {u"--begin"_s, file.connectionString()});
        const QString waiting =
            u"SELECT count(*) FROM pg_locks WHERE locktype = 'advisory' AND NOT granted"_s;
        QTRY_COMPARE(third.rows(waiting), QStringList{u"2"_s});
        QVERIFY(third.run(u"COMMIT"_s));
        for (QProcess& till : tills) {
            QVERIFY(till.waitForFinished());
            QCOMPARE(till.exitCode(), 0);
        }
        QCOMPARE(
            file.rows(
                u"SELECT count(*) FROM pg_class WHERE relkind = 'r' AND relnamespace = 'public'::regnamespace"_s),
            QStringList{u"3"_s});
        QCOMPARE(
            file.rows(u"SELECT count(*) FROM pg_class WHERE relkind = 'i' AND relname LIKE 'kovanix%'"_s),
            QStringList{u"3"_s});
    }
}

void TestServerEngine::anotherTillChangesATable() {
    Till till;
    Connection other;
    other.open(till.other());
    till.price(1);
    other.execute(u"ALTER TABLE urunler ADD COLUMN raf TEXT(30)"_s);
    other.execute(u"UPDATE urunler SET raf = 'A'"_s);
    Recordset set;
    set.open(u"select * from urunler where barkod='1'"_s, till.reading);
    QCOMPARE(set.field(u"raf"_s), u"A"_s);
    other.execute(u"DROP TABLE urunler"_s);
    QCOMPARE(kindOf([&] { till.price(1); }), Kind::noSuchTable);
}

void TestServerEngine::aWriteIsDurableBehindItsPress() {
    Till till;
    const QString flushed = u"SELECT pg_current_wal_insert_lsn() = pg_current_wal_flush_lsn()"_s;
    // Nobody else is there to flush; the writer of the log comes by five times a second.
    testServer().rows(u"postgres"_s, u"ALTER SYSTEM SET wal_writer_delay = '10s'"_s);
    testServer().rows(u"postgres"_s, u"SELECT pg_reload_conf()"_s);
    const auto asBefore = qScopeGuard([] {
        testServer().rows(u"postgres"_s, u"ALTER SYSTEM RESET wal_writer_delay"_s);
        testServer().rows(u"postgres"_s, u"SELECT pg_reload_conf()"_s);
    });
    till.sellLine(till.reading, 1);
    QCOMPARE(till.rows(flushed), QStringList{u"1"_s});
    Press press(till.reading);
    till.sellLine(till.reading, 2);
    till.reading.execute(u"UPDATE urunler SET stok = 1 WHERE barkod = 'yok'"_s);
    press.finish();
    QCOMPARE(till.rows(flushed), QStringList{u"1"_s});
}

void TestServerEngine::closesAtTheSecondTry() {
    Till till;
    Connection selling;
    selling.open(till.file.connectionString(), Handle::shared);
    till.point(1);
    till.proxy.cut();
    QVERIFY(kindOf([&] { till.sellLine(selling, 1); }));
    QVERIFY(!selling.isOpen() && !till.reading.isOpen());
    QVERIFY(Connection::findOpen(till.file.connectionString()).expired());
    till.point(till.proxy.port());
    selling.open(till.file.connectionString(), Handle::shared);
    till.reading.open(till.file.connectionString(), Handle::shared);
    till.sellLine(selling, 1);
    QCOMPARE(till.price(1), 2.0);
}

/// A column of the shop's own. The modules know no such type.
void TestServerEngine::givesTruthAsNumbers() {
    const DatabaseFile file(DatabaseFile::onServer());
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s);
    testServer().rows(file.database(), u"ALTER TABLE t ADD COLUMN dogru bool"_s);
    testServer().rows(file.database(),
                      u"INSERT INTO t (a, dogru) VALUES ('x', true), ('y', false), ('z', NULL)"_s);
    QCOMPARE(connection.shape(u"t"_s).columns[2].type, ColumnType::number);
    const QString all = u"select * from t"_s;
    const QVariantList wanted{1LL, 0LL, {}};
    QVariantList found;
    Recordset set;
    for (set.open(all, connection); !set.atEnd(); set.moveNext())
        found << set.field(u"dogru"_s);
    QCOMPARE(found, wanted);
    found.clear();
    RowWalk(connection, all).forEach([&](const RowWalk::Row& row) { found << row.value(2); });
    QCOMPARE(found, wanted);
    RowSet rows;
    rows.read(connection, all);
    QStringList texts;
    for (qsizetype place = 0; place < rows.recordCount(); ++place)
        texts << rows.text(place, 2);
    QCOMPARE(texts, (QStringList{u"1"_s, u"0"_s, u""_s}));
    // And back.
    connection.execute(u"UPDATE t SET dogru = 1 WHERE a = 'y'"_s);
    connection.execute(u"INSERT INTO t (a, dogru) VALUES ('u', 0)"_s);
    QCOMPARE(file.rows(u"SELECT a, dogru::int4 FROM t ORDER BY no"_s),
             (QStringList{u"x|1"_s, u"y|1"_s, u"z|NULL"_s, u"u|0"_s}));
    // A file takes any number; here it says no more than yes or no.
    for (const QVariant& value : {QVariant(5), QVariant(0.0), QVariant(u"2.5"_s), QVariant(u"0"_s)}) {
        set.close();
        set.open(all, connection);
        set.setField(u"dogru"_s, value);
        set.update();
        QCOMPARE(file.rows(u"SELECT dogru::int4 FROM t ORDER BY no LIMIT 1"_s),
                 QStringList{QString::number(int{value.toDouble() != 0})});
    }
}

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    if (argc == 3 && QByteArrayView(argv[1]) == "--begin")
        return beginShop(QString::fromUtf8(argv[2])) ? 0 : 1;
    TestServerEngine test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_serverengine.moc"
