#include <QDateTime>
#include <QDir>
#include <QFile>
#include <cstdio>

#include "database/logrequest.h"
#include "database/press.h"
#include "database/recordset.h"
#include "database/waiting.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// One file, opened on its own machine and over a network.
class TestNetwork : public QObject {
    Q_OBJECT

    static void overNetwork(bool network) {
        setNetworkFileTest([network](const QString&) { return network; });
    }
    static QString journal(const DatabaseFile& file) {
        return RawDatabase(file.path(), file.password()).rows(u"PRAGMA journal_mode"_s).value(0);
    }
    static void fill(const DatabaseFile& file) {
        overNetwork(false);
        Connection connection;
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE t (a DOUBLE)"_s);
    }

private Q_SLOTS:
    void cleanup() { setNetworkFileTest({}); }

    void aLocalFileLogsAhead_data() { DatabaseFile::bothKinds(); }
    void aLocalFileLogsAhead() {
        const DatabaseFile file;
        fill(file);
        QCOMPARE(journal(file), u"wal"_s);
    }

    void aSharedFileRollsBackOnEveryMachine_data() { DatabaseFile::bothKinds(); }
    void aSharedFileRollsBackOnEveryMachine() {
        const DatabaseFile file;
        fill(file);
        overNetwork(true);
        {
            Connection connection;
            connection.open(file.connectionString());
            connection.execute(u"INSERT INTO t VALUES (1)"_s);
        }
        QCOMPARE(journal(file), u"delete"_s);
        overNetwork(false);
        Connection local;
        local.open(file.connectionString());
        local.execute(u"INSERT INTO t VALUES (2)"_s);
        QCOMPARE(journal(file), u"delete"_s);
    }

    void aLogInUseIsRefusedOverTheNetwork_data() { DatabaseFile::bothKinds(); }
    void aLogInUseIsRefusedOverTheNetwork() {
        const DatabaseFile file;
        fill(file);
        Connection local;
        local.open(file.connectionString());
        overNetwork(true);
        Connection remote(100ms);
        bool waits = false;
        setWaitSign([&waits] { waits = true; });
        QVERIFY_THROWS_EXCEPTION(RuntimeError, remote.open(file.connectionString()));
        setWaitSign({});
        QVERIFY(waits);
        QVERIFY(!remote.isOpen());
        local.execute(u"INSERT INTO t VALUES (1)"_s);  // goes on undisturbed
        local.close();
        remote.open(file.connectionString());
        remote.execute(u"INSERT INTO t VALUES (2)"_s);
        QCOMPARE(RawDatabase(file.path(), file.password()).rows(u"SELECT count(*) FROM t"_s),
                 QStringList{u"2"_s});
    }

    void aLogIsLeftForWhoAsks_data() { DatabaseFile::bothKinds(); }
    void aLogIsLeftForWhoAsks() {
        const DatabaseFile file;
        fill(file);
        Connection local;
        Connection beside;
        local.open(file.connectionString());
        beside.open(file.connectionString());
        local.execute(u"INSERT INTO t VALUES (1)"_s);
        Recordset rows;
        rows.open(u"SELECT * FROM t"_s, beside);
        {
            LogRequest request(file.path());
            local.leaveLogIfAsked();  // nobody has asked yet
            QCOMPARE(journal(file), u"wal"_s);
            request.renew();
            local.leaveLogIfAsked();
        }
        QVERIFY(!LogRequest::isPending(file.path()));
        QCOMPARE(journal(file), u"delete"_s);
        QVERIFY(rows.isOpen());
        QCOMPARE(rows.field(u"a"_s).toInt(), 1);
        local.execute(u"INSERT INTO t VALUES (2)"_s);
        beside.execute(u"INSERT INTO t VALUES (3)"_s);
        overNetwork(true);
        Connection remote;
        remote.open(file.connectionString());
        remote.execute(u"INSERT INTO t VALUES (4)"_s);
        QCOMPARE(RawDatabase(file.path(), file.password()).rows(u"SELECT sum(a) FROM t"_s),
                 QStringList{u"10"_s});
    }

    void aPressLeavesTheLogFirst() {
        const DatabaseFile file(QString{});
        fill(file);
        Connection local;
        local.open(file.connectionString());
        LogRequest request(file.path());
        request.renew();
        Press press(local);
        QCOMPARE(journal(file), u"delete"_s);
        local.execute(u"INSERT INTO t VALUES (1)"_s);
        press.finish();
        QCOMPARE(file.rows(u"SELECT count(*) FROM t"_s), QStringList{u"1"_s});
    }

    void aRequestThatWasLeftBehindAsksNothing() {
        const DatabaseFile file(QString{});
        fill(file);
        Connection local;
        local.open(file.connectionString());
        QFile request(file.path() + u"-network"_s);
        QVERIFY(request.open(QIODevice::WriteOnly));
        QVERIFY(request.setFileTime(QDateTime::currentDateTime().addSecs(-11), QFile::FileModificationTime));
        request.close();
        local.leaveLogIfAsked();
        QCOMPARE(journal(file), u"wal"_s);
        QVERIFY(!request.exists());
    }

    /// Somebody who isn't a till has the log in use and doesn't let go.
    void aLogThatOthersHoldStaysInUse() {
        const DatabaseFile file(QString{});
        fill(file);
        Connection local;
        local.open(file.connectionString());
        RawDatabase other(file.path(), {});
        QCOMPARE(other.rows(u"SELECT count(*) FROM t"_s), QStringList{u"0"_s});
        LogRequest request(file.path());
        request.renew();
        local.leaveLogIfAsked();
        QCOMPARE(journal(file), u"wal"_s);
        local.execute(u"INSERT INTO t VALUES (1)"_s);
        QCOMPARE(other.rows(u"SELECT count(*) FROM t"_s), QStringList{u"1"_s});
    }

    /// Its log lies beside the path still, and whoever opened another file there would read it as that
    /// file's.
    void aFileThatHasGoneIsLeftToTheNextPress_data() { DatabaseFile::bothKinds(); }
    void aFileThatHasGoneIsLeftToTheNextPress() {
        const DatabaseFile file;
        fill(file);
        const QString elsewhere = file.folder() + u"/elsewhere.data"_s;
        Connection local;
        local.open(file.connectionString());
        local.execute(u"INSERT INTO t VALUES (1)"_s);
        LogRequest request(file.path());
        request.renew();
        QVERIFY(QFile::rename(file.path(), elsewhere));
        local.leaveLogIfAsked();
        QVERIFY(local.isOpen());
        QCOMPARE(wordsOf([&] { const Press press(local); }), u"unable to open database file"_s);
    }

    void anotherFileInItsPlaceGetsNoForeignLog_data() { DatabaseFile::bothKinds(); }
    void anotherFileInItsPlaceGetsNoForeignLog() {
        const DatabaseFile file;
        fill(file);
        const QString backup = file.folder() + u"/backup.data"_s;
        QVERIFY(QFile::copy(file.path(), backup));
        Connection local;
        local.open(file.connectionString());
        local.execute(u"INSERT INTO t VALUES (1)"_s);  // is in the log only
        LogRequest request(file.path());
        request.renew();
        QCOMPARE(
            std::rename(QFile::encodeName(backup).constData(), QFile::encodeName(file.path()).constData()),
            0);
        local.leaveLogIfAsked();
        {
            Press press(local);
            local.execute(u"INSERT INTO t VALUES (2)"_s);
            press.finish();
        }
        // The press has opened the file that is there now; its log is left at the next look.
        local.leaveLogIfAsked();
        QCOMPARE(journal(file), u"delete"_s);
        QCOMPARE(file.rows(u"SELECT count(*), sum(a) = 2 FROM t"_s), QStringList{u"1|1"_s});
        QCOMPARE(file.rows(u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    }

    /// A log's shared memory is of one machine: over a network nobody makes it, not for a first look either.
    void noSharedMemoryOverTheNetwork_data() { DatabaseFile::bothKinds(); }
    void noSharedMemoryOverTheNetwork() {
        const DatabaseFile file;
        fill(file);
        QVERIFY(QDir().mkdir(file.path() + u"-shm"_s));
        overNetwork(true);
        Connection remote(100ms);
        remote.open(file.connectionString());
        remote.execute(u"INSERT INTO t VALUES (1)"_s);
        QCOMPARE(journal(file), u"delete"_s);
    }

    void severalOverTheNetworkWriteInTurn_data() { DatabaseFile::bothKinds(); }
    void severalOverTheNetworkWriteInTurn() {
        const DatabaseFile file;
        fill(file);
        overNetwork(true);
        Connection one;
        Connection other;
        one.open(file.connectionString());
        other.open(file.connectionString());
        for (int sale = 0; sale < 5; ++sale) {
            one.execute(u"INSERT INTO t VALUES (1)"_s);
            other.execute(u"INSERT INTO t VALUES (2)"_s);
        }
        QCOMPARE(RawDatabase(file.path(), file.password()).rows(u"SELECT count(*) FROM t"_s),
                 QStringList{u"10"_s});
    }

    void aLinkIsFollowed() {
        const DatabaseFile file(QString{});
        const QString link = file.folder() + u"/link.data"_s;
        QVERIFY(QFile::link(file.path(), link));
        QString asked;
        setNetworkFileTest([&asked](const QString& path) {
            asked = path;
            return false;
        });
        Connection connection;
        connection.open(DatabaseFile::connectionString(link, {}));
        QCOMPARE(asked, QFileInfo(file.path()).canonicalFilePath());
    }
};

QTEST_GUILESS_MAIN(TestNetwork)
#include "test_network.moc"
