#include <QFile>
#include <QProcess>
#include <atomic>
#include <chrono>
#include <thread>

#include "database/press.h"
#include "database/recordset.h"
#include "databasefile.h"
#include "runtime/attempt.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString noFile = u"unable to open database file"_s;

}  // namespace

/// A file that changes under its connections, noticed at the next press.
class TestFileFollowing : public QObject {
    Q_OBJECT

    struct Shop {
        DatabaseFile file;
        QString backup = file.folder() + u"/backup.data"_s;
        QString elsewhere = file.folder() + u"/elsewhere.data"_s;
        Connection reading;
        Connection selling;

        Shop() {
            make(backup, u"backup"_s);
            make(file.path(), u"own"_s);
            reading.open(file.connectionString());
            selling.open(file.connectionString());
        }

        void make(const QString& path, const QString& row) const {
            if (QFile made(path); !made.open(QIODevice::WriteOnly))
                qFatal("no file");
            Connection connection;
            connection.open(DatabaseFile::connectionString(path, file.password()));
            connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
            connection.execute(u"INSERT INTO t VALUES ('%1')"_s.arg(row));
        }

        void sell(const QString& row) {
            Press press(selling);
            selling.execute(u"INSERT INTO t VALUES ('%1')"_s.arg(row));
            press.finish();
        }

        /// As a till that nobody uses for a moment.
        void rest() { reading.idle(); }

        static QStringList rows(Connection& connection) {
            Recordset set;
            set.open(u"select a from t"_s, connection);
            QStringList found;
            for (; !set.atEnd(); set.moveNext())
                found << set.field(u"a"_s).toString();
            return found;
        }
        QStringList rowsAt(const QString& path) const {
            return RawDatabase(path, file.password()).rows(u"SELECT a FROM t"_s);
        }
        void moveAway() const { move(file.path(), elsewhere); }
        static void move(const QString& from, const QString& to) {
            if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0)
                qFatal("not moved");
        }
        /// By another process: to close a file that is open in this one drops the engine's locks.
        static void copy(const QString& from, const QString& to) {
            if (QProcess::execute(u"cp"_s, {from, to}) != 0)
                qFatal("not copied");
        }
        bool isWhole() const {
            return RawDatabase(file.path(), file.password()).rows(u"PRAGMA integrity_check"_s) ==
                   QStringList{u"ok"_s};
        }
    };

private Q_SLOTS:
    void anotherInItsPlace_data() { DatabaseFile::bothKinds(); }
    void anotherInItsPlace() {
        Shop shop;
        shop.sell(u"before"_s);  // is in the log only
        Shop::move(shop.backup, shop.file.path());
        shop.sell(u"after"_s);
        const QStringList restored{u"backup"_s, u"after"_s};
        QCOMPARE(Shop::rows(shop.selling), restored);
        QCOMPARE(Shop::rows(shop.reading), restored);
        QCOMPARE(shop.rowsAt(shop.file.path()), restored);
        QVERIFY(shop.isWhole());
    }

    void theOldOneStaysWhole_data() { DatabaseFile::bothKinds(); }
    void theOldOneStaysWhole() {
        Shop shop;
        shop.sell(u"before"_s);
        shop.moveAway();
        Shop::move(shop.backup, shop.file.path());
        shop.sell(u"after"_s);
        QCOMPARE(shop.rowsAt(shop.elsewhere), (QStringList{u"own"_s, u"before"_s}));
    }

    void aCopyOverIt_data() { DatabaseFile::bothKinds(); }
    void aCopyOverIt() {
        Shop shop;
        for (int i = 0; i < 20; ++i)
            shop.sell(QString(50, u'x'));
        shop.rest();
        Shop::copy(shop.backup, shop.file.path());
        shop.sell(u"after"_s);
        const QStringList restored{u"backup"_s, u"after"_s};
        QCOMPARE(Shop::rows(shop.selling), restored);
        QCOMPARE(Shop::rows(shop.reading), restored);
        shop.rest();
        QCOMPARE(shop.rowsAt(shop.file.path()), restored);
        QVERIFY(shop.isWhole());
    }

    void noneInItsPlace_data() { DatabaseFile::bothKinds(); }
    void noneInItsPlace() {
        Shop shop;
        shop.sell(u"before"_s);
        shop.moveAway();
        for (int again = 0; again < 2; ++again) {
            const auto failure = errorOf([&] { shop.sell(u"lost"_s); });
            QVERIFY(failure);
            QCOMPARE(enginesWords(failure->description()), noFile);
            QCOMPARE(failure->source(), shop.file.source());
            QVERIFY(!QFile::exists(shop.file.path()));
        }
        QCOMPARE(Shop::rows(shop.reading), (QStringList{u"own"_s, u"before"_s}));
        Shop::move(shop.elsewhere, shop.file.path());
        shop.sell(u"after"_s);
        QCOMPARE(shop.rowsAt(shop.file.path()), (QStringList{u"own"_s, u"before"_s, u"after"_s}));
    }

    void removedThenRestored_data() { DatabaseFile::bothKinds(); }
    void removedThenRestored() {
        Shop shop;
        shop.sell(u"before"_s);
        QVERIFY(QFile::remove(shop.file.path()));
        QCOMPARE(enginesWords(wordsOf([&] { shop.sell(u"lost"_s); })), noFile);
        Shop::copy(shop.backup, shop.file.path());
        shop.sell(u"after"_s);
        QCOMPARE(shop.rowsAt(shop.file.path()), (QStringList{u"backup"_s, u"after"_s}));
    }

    void oneThatCantBeOpened_data() { DatabaseFile::bothKinds(); }
    void oneThatCantBeOpened() {
        Shop shop;
        shop.sell(u"before"_s);
        QFile damaged(shop.elsewhere);
        QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write(QByteArray(8192, '#')) > 0);
        damaged.close();
        Shop::move(shop.elsewhere, shop.file.path());
        QVERIFY(errorOf([&] { shop.sell(u"lost"_s); }));
        QVERIFY(!shop.selling.isOpen() && !shop.reading.isOpen());
        Shop::move(shop.backup, shop.file.path());
        shop.selling.open(shop.file.connectionString());
        QCOMPARE(Shop::rows(shop.selling), QStringList{u"backup"_s});
    }

    void aLinkThatLeadsElsewhere() {
        const DatabaseFile file(QString{});
        const QString link = file.folder() + u"/link.data"_s;
        const QString other = file.folder() + u"/other.data"_s;
        file.execute({u"CREATE TABLE t (a TEXT(50))"_s});
        Shop::copy(file.path(), other);
        QVERIFY(QFile::link(file.path(), link));
        Connection connection;
        connection.open(DatabaseFile::connectionString(link, {}));
        QVERIFY(QFile::remove(link) && QFile::link(other, link));
        {
            const Press press(connection);
            connection.execute(u"INSERT INTO t VALUES ('after')"_s);
        }
        QCOMPARE(file.rows(u"SELECT count(*) FROM t"_s), QStringList{u"0"_s});
        QCOMPARE(RawDatabase(other, {}).rows(u"SELECT a FROM t"_s), QStringList{u"after"_s});
    }

    void openRecordsetsClose() {
        Shop shop;
        Recordset set;
        set.open(u"select * from t"_s, shop.reading);
        QCOMPARE(set.recordCount(), 1);
        Shop::move(shop.backup, shop.file.path());
        shop.sell(u"after"_s);
        QVERIFY(!set.isOpen());
        // A row of the same number may be another one in the file that is there now.
        const auto failure = errorOf([&] { set.deleteCurrent(); });
        QVERIFY(failure);
        QVERIFY(failure->description().startsWith(u"Veritabanı dosyası değişti"_s));
        QCOMPARE(Shop::rows(shop.reading).size(), 2);
    }
    void openRecordsetsClose_data() { DatabaseFile::bothKinds(); }

    void whoOpensItBringsTheOthersAlong_data() { DatabaseFile::bothKinds(); }
    void whoOpensItBringsTheOthersAlong() {
        Shop shop;
        shop.sell(u"before"_s);
        Shop::move(shop.backup, shop.file.path());
        Connection third;
        third.open(shop.file.connectionString());
        for (Connection* connection : {&third, &shop.reading, &shop.selling})
            QCOMPARE(Shop::rows(*connection), QStringList{u"backup"_s});
    }

    void theNextStartFindsNoForeignLog_data() { DatabaseFile::bothKinds(); }
    void theNextStartFindsNoForeignLog() {
        Shop shop;
        shop.sell(u"before"_s);
        Shop::move(shop.backup, shop.file.path());
        shop.selling.close();
        shop.reading.close();
        QCOMPARE(shop.rowsAt(shop.file.path()), QStringList{u"backup"_s});
        QVERIFY(shop.isWhole());
    }

    void whatTheEngineWritesIsNoChange_data() { DatabaseFile::bothKinds(); }
    void whatTheEngineWritesIsNoChange() {
        Shop shop;
        Recordset set;
        set.open(u"select * from t"_s, shop.reading);
        const auto another = [&shop](const QString& sql) {
            RawDatabase raw(shop.file.path(), shop.file.password());
            return raw.run(sql) && raw.run(u"PRAGMA wal_checkpoint(PASSIVE)"_s);
        };
        shop.rest();
        shop.sell(u"1"_s);
        shop.sell(u"2"_s);
        shop.rest();
        shop.sell(u"3"_s);
        shop.selling.idle();
        QVERIFY(another(u"INSERT INTO t VALUES ('4')"_s));
        shop.sell(u"5"_s);
        shop.rest();
        shop.reading.execute(u"INSERT INTO t VALUES ('6')"_s);
        shop.sell(u"7"_s);
        QVERIFY(set.isOpen());
        QCOMPARE(Shop::rows(shop.reading).size(), 8);
    }

    /// At whatever moment of this till's rest another one writes; it rests itself before the next sale here.
    void norWhatAnotherTillWritesMeanwhile() {
        Shop shop;
        Recordset set;
        set.open(u"select * from t"_s, shop.reading);
        RawDatabase raw(shop.file.path(), shop.file.password(), {}, 5s);
        QVERIFY(raw.run(u"PRAGMA synchronous=OFF"_s));
        for (int rests = 0; rests < 2000; ++rests) {
            std::atomic<bool> resting = false;
            std::thread other([&] {
                while (!resting) {
                }
                const auto start = std::chrono::steady_clock::now() + rests % 500 * 1us;
                while (std::chrono::steady_clock::now() < start) {
                }
                raw.run(u"UPDATE t SET a = 'other %1'"_s.arg(rests));
            });
            resting = true;
            attempt([&] { shop.rest(); });
            other.join();
            QVERIFY(raw.run(u"PRAGMA wal_checkpoint(PASSIVE)"_s));
            const Press look(shop.selling);
            QVERIFY2(set.isOpen(), qPrintable(u"after %1"_s.arg(rests)));
        }
    }
    void norWhatAnotherTillWritesMeanwhile_data() { DatabaseFile::bothKinds(); }
};

QTEST_GUILESS_MAIN(TestFileFollowing)
#include "test_filefollowing.moc"
