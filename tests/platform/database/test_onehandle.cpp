#include <QFile>
#include <functional>

#include "database/press.h"
#include "database/recordset.h"
#include "databasefile.h"
#include "diskbarriers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Handle = Connection::Handle;

/// Connections of one process that have the engine's handle in common.
class TestOneHandle : public QObject {
    Q_OBJECT

    struct Shop {
        DatabaseFile file;
        Connection reading;
        Connection selling;

        Shop() {
            reading.open(file.connectionString(), Handle::shared);
            selling.open(file.connectionString(), Handle::shared);
            selling.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s);
        }
        void insert(Connection& connection, const QString& text) const {
            connection.execute(u"INSERT INTO t (a) VALUES ('%1')"_s.arg(text));
        }
        QStringList rows() const { return file.rows(u"SELECT a FROM t ORDER BY no"_s); }
    };

    /// Something that only the handle it was made on knows.
    static void mark(Connection& connection) { connection.execute(u"CREATE TEMP TABLE isaret (a TEXT)"_s); }
    static bool isMarked(Connection& connection) { return !connection.shape(u"isaret"_s).columns.isEmpty(); }
    static long barriersOf(const std::function<void()>& step) {
        const long before = diskBarriers();
        step();
        return diskBarriers() - before;
    }

private Q_SLOTS:
    void onlyWhoAsksForItSharesIt_data() { DatabaseFile::bothKinds(); }
    void onlyWhoAsksForItSharesIt() {
        Shop shop;
        Connection own;
        Connection patient(10s);
        own.open(shop.file.connectionString());
        patient.open(shop.file.connectionString(), Handle::shared);
        mark(shop.selling);
        QVERIFY(isMarked(shop.reading));
        QVERIFY(!isMarked(own));
        QVERIFY(!isMarked(patient));
        Connection later;
        later.open(shop.file.connectionString(), Handle::shared);
        QVERIFY(isMarked(later));
    }

    void eachClosesByItself_data() { DatabaseFile::bothKinds(); }
    void eachClosesByItself() {
        Shop shop;
        shop.insert(shop.selling, u"x"_s);
        Recordset read;
        Recordset sold;
        read.open(u"select * from t"_s, shop.reading);
        sold.open(u"select * from t"_s, shop.selling);
        mark(shop.selling);
        shop.selling.close();
        QVERIFY(!shop.selling.isOpen() && !sold.isOpen());
        QVERIFY(shop.reading.isOpen());
        QCOMPARE(read.field(u"a"_s), u"x"_s);
        QVERIFY(isMarked(shop.reading));
        shop.selling.open(shop.file.connectionString(), Handle::shared);
        QVERIFY(isMarked(shop.selling));
        shop.reading.close();
        shop.selling.close();
        shop.selling.open(shop.file.connectionString(), Handle::shared);
        QVERIFY(!isMarked(shop.selling));
    }

    void aMarkSeesTheOthersWrites_data() { DatabaseFile::bothKinds(); }
    void aMarkSeesTheOthersWrites() {
        Shop shop;
        const ChangeMark before = shop.reading.changeMark();
        QVERIFY(before == shop.selling.changeMark());
        shop.insert(shop.selling, u"x"_s);
        QVERIFY(!(before == shop.reading.changeMark()));
    }

    void aPressWithinTheOthers_data() { DatabaseFile::bothKinds(); }
    void aPressWithinTheOthers() {
        Shop shop;
        shop.insert(shop.selling, u"x"_s);
        Press outer(shop.selling);
        QCOMPARE(barriersOf([&] { shop.insert(shop.selling, u"y"_s); }), 0);
        Press inner(shop.reading);
        QCOMPARE(barriersOf([&] { shop.insert(shop.reading, u"z"_s); }), 0);
        QCOMPARE(barriersOf([&] { inner.finish(); }), 1);
        QCOMPARE(barriersOf([&] { shop.insert(shop.selling, u"w"_s); }), 0);
        QCOMPARE(barriersOf([&] { outer.finish(); }), 1);
        QCOMPARE(barriersOf([&] { shop.insert(shop.reading, u"v"_s); }), 1);
    }

    void closingOneEndsItsPressOnly_data() { DatabaseFile::bothKinds(); }
    void closingOneEndsItsPressOnly() {
        Shop shop;
        shop.insert(shop.selling, u"x"_s);
        Press selling(shop.selling);
        Press reading(shop.reading);
        shop.insert(shop.reading, u"y"_s);
        QCOMPARE(barriersOf([&] { shop.reading.close(); }), 1);
        QCOMPARE(barriersOf([&] { reading.finish(); }), 0);
        QCOMPARE(barriersOf([&] { shop.insert(shop.selling, u"z"_s); }), 0);
        QCOMPARE(barriersOf([&] { selling.finish(); }), 1);
    }

    void bothFollowTheFile_data() { DatabaseFile::bothKinds(); }
    void bothFollowTheFile() {
        Shop shop;
        const QString path = shop.file.path();
        shop.insert(shop.selling, u"old"_s);
        QVERIFY(QFile::rename(path, path + u".old"_s));
        QFile made(path);
        QVERIFY(made.open(QIODevice::WriteOnly));
        made.close();
        shop.file.execute({u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s});
        Press press(shop.selling);
        shop.insert(shop.selling, u"new"_s);
        press.finish();
        QCOMPARE(shop.rows(), QStringList{u"new"_s});
        Recordset set;
        set.open(u"select a from t"_s, shop.reading);
        QCOMPARE(set.field(u"a"_s), u"new"_s);
        mark(shop.reading);
        QVERIFY(isMarked(shop.selling));
        QCOMPARE(RawDatabase(path + u".old"_s, shop.file.password()).rows(u"SELECT a FROM t"_s),
                 QStringList{u"old"_s});
    }

    void aFileThatHasGoneIsNotShared_data() { DatabaseFile::bothKinds(); }
    void aFileThatHasGoneIsNotShared() {
        Shop shop;
        shop.selling.close();
        const QString path = shop.file.path();
        QVERIFY(QFile::rename(path, path + u".old"_s));
        QCOMPARE(wordsOf([&] { shop.selling.open(shop.file.connectionString(), Handle::shared); }),
                 u"unable to open database file"_s);
        QVERIFY(!shop.selling.isOpen());
    }
};

QTEST_GUILESS_MAIN(TestOneHandle)
#include "test_onehandle.moc"
