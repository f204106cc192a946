#include <QProcess>
#include <QScopeGuard>
#include <memory>
#include <thread>

#include "database/press.h"
#include "database/recordset.h"
#include "database/waiting.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What connections of one process have to do with one another, and the marks that prove a read.
class TestSharing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void aMarkProvesThatNothingChanged_data() { DatabaseFile::allKinds(); }
    void aMarkProvesThatNothingChanged();
    void whatCantBeProvedIsUnequal_data() { DatabaseFile::allKinds(); }
    void whatCantBeProvedIsUnequal();
    void threadsHaveNothingInCommon_data() { DatabaseFile::bothKinds(); }
    void threadsHaveNothingInCommon();
    void onlyTheApplicationsThreadGivesTheWaitSign();
    void findsAnOpenConnection_data() { DatabaseFile::allKinds(); }
    void findsAnOpenConnection();
    void keepsAnIndex_data() { DatabaseFile::bothKinds(); }
    void keepsAnIndex();
    void aPressIsNoTransaction_data() { DatabaseFile::allKinds(); }
    void aPressIsNoTransaction();
};

void TestSharing::aMarkProvesThatNothingChanged() {
    const DatabaseFile file;
    Connection reading;
    Connection writing;
    reading.open(file.connectionString());
    writing.open(file.connectionString());
    RawDatabase raw(file.path(), file.password());
    reading.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s);
    reading.execute(u"INSERT INTO t (a) VALUES ('x')"_s);
    ChangeMark mark = reading.changeMark();
    const auto changed = [&] {
        const ChangeMark before = std::exchange(mark, reading.changeMark());
        return !(before == mark);
    };
    QVERIFY(!changed());
    const auto read = [](Connection& connection) {
        Recordset set;
        set.open(u"select * from t"_s, connection);
        return set.field(u"a"_s);
    };
    read(reading);
    read(writing);
    reading.shape(u"t"_s);
    reading.idle();
    QVERIFY(raw.rows(u"SELECT * FROM t"_s).size() == 1);
    QVERIFY(!changed());

    reading.execute(u"UPDATE t SET a = 'y'"_s);
    QVERIFY(changed());
    writing.execute(u"UPDATE t SET a = 'z'"_s);
    QVERIFY(changed());
    QVERIFY(raw.run(u"UPDATE t SET a = 'w'"_s));
    QVERIFY(changed());
    QVERIFY(raw.run(u"BEGIN"_s) && raw.run(u"UPDATE t SET a = 'v'"_s));
    QVERIFY(!changed());
    QVERIFY(raw.run(u"COMMIT"_s));
    QVERIFY(changed());
    reading.execute(u"CREATE TABLE u (a TEXT(50))"_s);
    QVERIFY(changed());
    writing.execute(u"ALTER TABLE u ADD COLUMN no COUNTER"_s);
    QVERIFY(changed());
    QVERIFY(raw.run(u"DROP TABLE u"_s));
    QVERIFY(changed());

    Recordset set;
    set.open(u"select * from t"_s, reading);
    set.addNew();
    set.setField(u"a"_s, u"yeni"_s);
    QVERIFY(!changed());
    set.update();
    QVERIFY(changed());
    set.setField(u"a"_s, u"u"_s);
    set.update();
    QVERIFY(changed());
    set.deleteCurrent();
    QVERIFY(changed());
    QVERIFY(!changed());
}

void TestSharing::whatCantBeProvedIsUnequal() {
    const DatabaseFile file;
    Connection connection;
    Connection other;
    connection.open(file.connectionString());
    other.open(file.connectionString());
    const ChangeMark none;
    QVERIFY(!(none == none));
    const ChangeMark mark = connection.changeMark();
    QVERIFY(mark == connection.changeMark());
    QVERIFY(!(mark == none));
    QVERIFY(!(mark == other.changeMark()));
    connection.close();
    const ChangeMark closed = connection.changeMark();
    QVERIFY(!(closed == closed));
    connection.open(file.connectionString());
    QVERIFY(!(mark == connection.changeMark()));
}

void TestSharing::threadsHaveNothingInCommon() {
    const DatabaseFile file;
    const QString text = file.connectionString();
    Connection here;
    here.open(text, Connection::Handle::shared);
    here.execute(u"CREATE TEMP TABLE gecici (no INT)"_s);
    bool found = true;
    QString seen;
    std::thread beside([&] {
        found = !Connection::findOpen(text).expired();
        Connection there;
        there.open(text, Connection::Handle::shared);
        seen = wordsOf([&] { there.execute(u"INSERT INTO gecici VALUES (1)"_s); });
    });
    beside.join();
    QVERIFY(!found);
    QCOMPARE(seen, u"no such table: gecici"_s);
}

void TestSharing::onlyTheApplicationsThreadGivesTheWaitSign() {
    int signs = 0;
    setWaitSign([&] { ++signs; });
    const auto silent = qScopeGuard([] { setWaitSign({}); });
    std::thread(giveWaitSign).join();
    QCOMPARE(signs, 0);
    giveWaitSign();
    QCOMPARE(signs, 1);
}

void TestSharing::findsAnOpenConnection() {
    const DatabaseFile file;
    const QString text = file.connectionString();
    QVERIFY(Connection::findOpen(text).expired());
    auto first = std::make_unique<Connection>();
    Connection second;
    first->open(text);
    second.open(text);
    const std::weak_ptr<Connection> found = Connection::findOpen(text);
    QCOMPARE(found.lock().get(), first.get());
    QVERIFY(Connection::findOpen(text.toUpper()).expired());
    QVERIFY(Connection::findOpen({}).expired());
    first->close();
    QVERIFY(found.expired());
    QCOMPARE(Connection::findOpen(text).lock().get(), &second);
    first->open(text);
    QVERIFY(found.expired());
    QCOMPARE(Connection::findOpen(text).lock().get(), &second);
    const std::weak_ptr<Connection> again = Connection::findOpen(text);
    second.close();
    QVERIFY(again.expired());
    QCOMPARE(Connection::findOpen(text).lock().get(), first.get());
    first.reset();
    QVERIFY(Connection::findOpen(text).expired());
    Connection failed;
    QVERIFY(errorOf([&] { failed.open(DatabaseFile::connectionString(file.folder(), file.password())); }));
    QVERIFY(Connection::findOpen(DatabaseFile::connectionString(file.folder(), file.password())).expired());
}

void TestSharing::keepsAnIndex() {
    const DatabaseFile file;
    Connection connection(50ms);
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s);
    const auto indexes = [&] {
        return file.rows(u"SELECT name, tbl_name FROM sqlite_master WHERE type = 'index'"_s);
    };
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    connection.keepIndex(u"t"_s, u"a"_s);
    QVERIFY(other.run(u"COMMIT"_s));
    QCOMPARE(indexes(), QStringList());
    connection.keepIndex(u"t"_s, u"yok"_s);
    connection.keepIndex(u"yok"_s, u"a"_s);
    connection.keepIndex(u"t"_s, u"a"_s);
    connection.keepIndex(u"t"_s, u"a"_s);
    QCOMPARE(indexes(), QStringList{u"kovanix_t_a|t"_s});
    connection.close();
    QCOMPARE(wordsOf([&] { connection.keepIndex(u"t"_s, u"a"_s); }),
             u"Operation is not allowed when the object is closed."_s);
}

void TestSharing::aPressIsNoTransaction() {
    const DatabaseFile file;
    Connection connection(50ms);
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    RawDatabase other(file.path(), file.password());
    const auto rows = [&] { return other.rows(u"SELECT a FROM t"_s); };
    {
        Press press(connection);
        connection.execute(u"INSERT INTO t VALUES ('x')"_s);
        QCOMPARE(rows(), QStringList{u"x"_s});
        QVERIFY(other.run(u"INSERT INTO t VALUES ('y')"_s));
        Press inner(connection);
        inner.finish();
        inner.finish();
        connection.execute(u"INSERT INTO t VALUES ('z')"_s);
        press.finish();
    }
    QVERIFY(errorOf([&] {
        const Press press(connection);
        connection.execute(u"INSERT INTO t VALUES ('w')"_s);
        connection.execute(u"INSERT INTO yok VALUES ('w')"_s);
    }));
    QCOMPARE(rows(), (QStringList{u"x"_s, u"y"_s, u"z"_s, u"w"_s}));
    const Press late(connection);
    connection.close();
}

QTEST_GUILESS_MAIN(TestSharing)
#include "test_sharing.moc"
