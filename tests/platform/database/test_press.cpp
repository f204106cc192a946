#include <QFileInfo>
#include <QScopeGuard>

#include "database/press.h"
#include "database/waiting.h"
#include "databasefile.h"
#include "diskbarriers.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct StatementsRow {
    QStringList sql;
    bool writes = true;  ///< whether the engine puts anything on the disk for them
};

QString insert(int value) {
    return u"INSERT INTO t VALUES (%1, 'x')"_s.arg(value);
}

}  // namespace

Q_DECLARE_METATYPE(StatementsRow)

/// When what a press has written is on the disk, and what that costs.
class TestPress : public QObject {
    Q_OBJECT

    static long barriersOf(const std::function<void()>& step) {
        const long before = diskBarriers();
        step();
        return diskBarriers() - before;
    }

    /// A file whose log has begun, and a connection that has synced it: both cost a barrier of their own.
    static void begin(Connection& connection, const DatabaseFile& file) {
        connection.open(file.connectionString());
        connection.execute(u"CREATE TABLE t (a DOUBLE, b TEXT(50))"_s);
        connection.execute(insert(0));
    }

private Q_SLOTS:
    void cleanup() { setNetworkFileTest({}); }

    void oneBarrierForAll_data() {
        QTest::addColumn<QString>("password");
        QTest::addColumn<StatementsRow>("row");
        const QString nothingFound = u"UPDATE t SET a = a - 1 WHERE b = 'yok'"_s;
        const QString nothingChanged = u"UPDATE t SET a = a - 0"_s;
        const std::vector<std::pair<const char*, StatementsRow>> rows{
            {"one statement", {{insert(1)}}},
            {"forty", {QStringList(40, insert(1))}},
            {"the last finds no row", {{insert(1), nothingFound}}},
            {"the last changes nothing", {{insert(1), nothingChanged}}},
            {"none finds a row", {{nothingFound, nothingFound}}},
            {"1,500 pages", {QStringList(60, u"INSERT INTO t VALUES (1, hex(zeroblob(50000)))"_s)}},
            {"no statement", {{}, false}},
        };
        for (const auto& [name, row] : rows) {
            QTest::addRow("%s, plain", name) << QString() << row;
            QTest::addRow("%s, password", name) << u"gizli"_s << row;
        }
    }
    void oneBarrierForAll() {
        QFETCH(const StatementsRow, row);
        const DatabaseFile file;
        Connection connection;
        begin(connection, file);
        Press press(connection);
        QCOMPARE(barriersOf([&] {
                     for (const QString& sql : row.sql)
                         connection.execute(sql);
                 }),
                 0);
        QCOMPARE(barriersOf([&] { press.finish(); }), row.writes ? 1 : 0);
        QCOMPARE(barriersOf([&] { press.finish(); }), 0);
        // Outside a press each statement is on the disk when it returns.
        QCOMPARE(barriersOf([&] { connection.execute(insert(3)); }), 1);
    }

    void alsoWhereItFails_data() { DatabaseFile::bothKinds(); }
    void alsoWhereItFails() {
        const DatabaseFile file;
        Connection connection;
        begin(connection, file);
        QCOMPARE(barriersOf([&] {
                     QVERIFY(errorOf([&] {
                         const Press press(connection);
                         connection.execute(insert(1));
                         connection.execute(u"INSERT INTO yok VALUES (1)"_s);
                     }));
                 }),
                 1);
        QCOMPARE(barriersOf([&] { connection.execute(insert(3)); }), 1);
    }

    void theInnerLeavesItToTheOuter_data() { DatabaseFile::bothKinds(); }
    void theInnerLeavesItToTheOuter() {
        const DatabaseFile file;
        Connection connection;
        begin(connection, file);
        Press outer(connection);
        QCOMPARE(barriersOf([&] {
                     Press inner(connection);
                     connection.execute(insert(1));
                     inner.finish();
                 }),
                 0);
        QCOMPARE(barriersOf([&] { outer.finish(); }), 1);
    }

    void closingEndsIt_data() { DatabaseFile::bothKinds(); }
    void closingEndsIt() {
        const DatabaseFile file;
        Connection connection;
        begin(connection, file);
        Connection other;
        other.open(file.connectionString());
        Press press(connection);
        connection.execute(insert(1));
        QCOMPARE(barriersOf([&] { connection.close(); }), 1);
        QCOMPARE(barriersOf([&] { press.finish(); }), 0);
    }

    /// The log's name in the folder outlasts a power cut by whichever connection writes first.
    void theFirstBarrierOfEachSyncsTheFolder_data() { DatabaseFile::bothKinds(); }
    void theFirstBarrierOfEachSyncsTheFolder() {
        const DatabaseFile file;
        Connection maker;
        begin(maker, file);
        Connection other;
        other.open(file.connectionString());
        QCOMPARE(barriersOf([&] { other.execute(insert(1)); }), 2);
        QCOMPARE(barriersOf([&] { other.execute(insert(2)); }), 1);
    }

    /// Whoever only looks at a file leaves it as it is.
    void openingWritesNothing_data() { DatabaseFile::bothKinds(); }
    void openingWritesNothing() {
        const DatabaseFile file;
        {
            Connection connection;
            begin(connection, file);
        }
        QCOMPARE(barriersOf([&] {
                     Connection connection;
                     connection.open(file.connectionString());
                     QCOMPARE(connection.tables().size(), 2);
                 }),
                 0);
    }

    void othersMayWriteMeanwhile_data() { DatabaseFile::bothKinds(); }
    void othersMayWriteMeanwhile() {
        const DatabaseFile file;
        Connection connection(50ms);
        begin(connection, file);
        Connection other;
        other.open(file.connectionString());
        other.execute(insert(0));
        Press press(connection);
        connection.execute(insert(1));
        // The other one's own barrier is one of the whole log.
        QCOMPARE(barriersOf([&] { other.execute(insert(2)); }), 1);
        other.idle();
        connection.execute(insert(3));
        QCOMPARE(barriersOf([&] { press.finish(); }), 1);
        QCOMPARE(file.rows(u"SELECT sum(a), count(*) FROM t"_s), QStringList{u"6|5"_s});
    }

    void aWriterThatStaysInTheWay_data() { DatabaseFile::bothKinds(); }
    void aWriterThatStaysInTheWay() {
        const DatabaseFile file;
        Connection connection(50ms);
        begin(connection, file);
        RawDatabase other(file.path(), file.password());
        Press press(connection);
        connection.execute(insert(1));
        QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
        // Two: of the log, and of the file that it is moved into.
        QCOMPARE(barriersOf([&] { press.finish(); }), 2);
        Press second(connection);
        QCOMPARE(wordsOf([&] { connection.execute(insert(2)); }), u"database is locked"_s);
        QVERIFY(other.run(u"ROLLBACK"_s));
    }

    // Whoever has waited for the file once need not wait for it again, with nothing to sync.
    void whatFoundTheFileLockedWaitsOnce_data() { DatabaseFile::bothKinds(); }
    void whatFoundTheFileLockedWaitsOnce() {
        const DatabaseFile file;
        Connection connection(50ms);
        begin(connection, file);
        RawDatabase other(file.path(), file.password());
        QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
        int waits = 0;
        setWaitSign([&waits] { ++waits; });
        const auto silent = qScopeGuard([] { setWaitSign({}); });
        QVERIFY(errorOf([&] {
            const Press press(connection);
            connection.execute(insert(1));
        }));
        QCOMPARE(waits, 1);
        QVERIFY(other.run(u"ROLLBACK"_s));
    }

    void aRollbackJournalSyncsEveryStatement_data() { DatabaseFile::bothKinds(); }
    void aRollbackJournalSyncsEveryStatement() {
        const DatabaseFile file;
        setNetworkFileTest([](const QString&) { return true; });
        Connection connection;
        begin(connection, file);
        const long single = barriersOf([&] { connection.execute(insert(1)); });
        QVERIFY(single >= 2);
        Press press(connection);
        QCOMPARE(barriersOf([&] {
                     for (int i = 0; i < 5; ++i)
                         connection.execute(insert(2));
                 }),
                 5 * single);
        QCOMPARE(barriersOf([&] { press.finish(); }), 0);
    }

    void theLogIsBounded_data() { DatabaseFile::bothKinds(); }
    void theLogIsBounded() {
        const DatabaseFile file;
        Connection connection;
        begin(connection, file);
        Press press(connection);
        for (int i = 0; i < 60; ++i)
            connection.execute(u"INSERT INTO t VALUES (1, hex(zeroblob(500000)))"_s);
        press.finish();
        const qint64 log = QFileInfo(file.path() + u"-wal"_s).size();
        QVERIFY2(log < 20'000'000, qPrintable(QString::number(log)));
    }
};

QTEST_GUILESS_MAIN(TestPress)
#include "test_press.moc"
