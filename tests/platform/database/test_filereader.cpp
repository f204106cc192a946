#include <QFile>
#include <QFileInfo>

#include "database/connection.h"
#include "database/databaseerror.h"
#include "database/filereader.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct FormatRow {
    QStringList settings;
};
Q_DECLARE_METATYPE(FormatRow)

/// A file that is copied and looked at while a till has it.
class TestFileReader : public QObject {
    Q_OBJECT

    static constexpr int rows = 20000;

    static QByteArray bytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void fill(Connection& till, const DatabaseFile& file) {
        till.open(file.connectionString());
        till.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE)"_s);
        till.execute(
            u"INSERT INTO t (a, b) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < %1) SELECT 'ürün ' || i, i / 7.0 FROM n"_s
                .arg(rows));
    }
    static QStringList content(const QString& path, const QString& password) {
        return RawDatabase(path, password).rows(u"SELECT * FROM t ORDER BY no"_s);
    }
    static std::optional<DatabaseError::Kind> kindOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const DatabaseError& error) {
            return error.kind();
        }
        return std::nullopt;
    }

private Q_SLOTS:
    void cleanup() { setNetworkFileTest({}); }

    void aCopyHoldsTheFileAndItsLog_data() { DatabaseFile::bothKinds(); }
    void aCopyHoldsTheFileAndItsLog() {
        const DatabaseFile file;
        Connection till;
        fill(till, file);
        const QByteArray before = bytes(file.path());
        const QByteArray log = bytes(file.path() + u"-wal");
        QVERIFY(!log.isEmpty());
        const QString copy = file.folder() + u"/copy";
        qint64 done = 0;
        qint64 total = -1;
        FileReader(file.path(), file.password()).copyTo(copy, [&](qint64 now, qint64 all) {
            done = now;
            total = all;
        });
        QVERIFY(total > 0);
        QCOMPARE(done, total);
        QCOMPARE(bytes(file.path()), before);
        QCOMPARE(bytes(file.path() + u"-wal"), log);
        const QStringList copied = content(copy, file.password());
        QCOMPARE(copied.size(), rows);
        QCOMPARE(copied, content(file.path(), file.password()));
        QVERIFY(FileReader(copy, file.password()).faults().isEmpty());
        QCOMPARE(bytes(copy).startsWith("SQLite"), file.password().isEmpty());
    }

    void aFileThatNobodyHasOpenStaysAsItIs_data() { DatabaseFile::bothKinds(); }
    void aFileThatNobodyHasOpenStaysAsItIs() {
        const DatabaseFile file;
        {
            Connection till;
            fill(till, file);
        }
        const QByteArray before = bytes(file.path());
        FileReader(file.path(), file.password()).copyTo(file.folder() + u"/copy");
        QCOMPARE(bytes(file.path()), before);
        QCOMPARE(content(file.folder() + u"/copy", file.password()).size(), rows);
    }

    void aDeadTillsLogIsReadAndLeftAlone_data() { DatabaseFile::bothKinds(); }
    void aDeadTillsLogIsReadAndLeftAlone() {
        const DatabaseFile file;
        const QString dead = file.folder() + u"/dead.data";
        {
            Connection till;
            fill(till, file);
            QVERIFY(QFile::copy(file.path(), dead));
            QVERIFY(QFile::copy(file.path() + u"-wal", dead + u"-wal"));
        }
        const QByteArray before = bytes(dead);
        const QByteArray log = bytes(dead + u"-wal");
        FileReader(dead, file.password()).copyTo(file.folder() + u"/copy");
        QCOMPARE(bytes(dead), before);
        QCOMPARE(bytes(dead + u"-wal"), log);
        QCOMPARE(content(file.folder() + u"/copy", file.password()).size(), rows);
    }

    void whatIsSoldMeanwhileWaitsForNothing_data() { DatabaseFile::bothKinds(); }
    void whatIsSoldMeanwhileWaitsForNothing() {
        const DatabaseFile file;
        Connection till(0ms);  // fails where it would have to wait
        fill(till, file);
        const QString copy = file.folder() + u"/copy";
        int sold = 0;
        FileReader(file.path(), file.password()).copyTo(copy, [&](qint64, qint64) {
            till.execute(u"INSERT INTO t (a) VALUES ('sold')"_s);
            ++sold;
        });
        QVERIFY(sold > 2);
        QCOMPARE(content(copy, file.password()).size(), rows);
        QCOMPARE(content(file.path(), file.password()).size(), rows + sold);
    }

    void aRollbackJournalsFileIsBegunAnewWhenItChanges_data() { DatabaseFile::bothKinds(); }
    void aRollbackJournalsFileIsBegunAnewWhenItChanges() {
        const DatabaseFile file;
        setNetworkFileTest([](const QString&) { return true; });
        Connection till(0ms);
        fill(till, file);
        const QByteArray journal =
            RawDatabase(file.path(), file.password()).rows(u"PRAGMA journal_mode"_s)[0].toUtf8();
        QCOMPARE(journal, QByteArray("delete"));
        const QString copy = file.folder() + u"/copy";
        int sold = 0;
        FileReader(file.path(), file.password())
            .copyTo(copy,
                    [&](qint64 done, qint64 total) {
                        // The first steps are shorter than the file on any machine; what comes behind the
                        // last page belongs to the next copy.
                        if (done > 0 && done < total && sold < 3) {
                            till.execute(u"INSERT INTO t (a) VALUES ('sold')"_s);
                            ++sold;
                        }
                    },
                    {.step = 0ms, .pause = 1ms});
        QCOMPARE(sold, 3);
        QCOMPARE(content(copy, file.password()), content(file.path(), file.password()));
    }

    void aFileThatChangesAllTheTimeIsGivenUp() {
        const DatabaseFile file{QString()};
        setNetworkFileTest([](const QString&) { return true; });
        Connection till;
        fill(till, file);
        FileReader reader(file.path(), {});
        QCOMPARE(kindOf([&] { reader.copyTo(file.folder() + u"/copy", {}, {.patience = 0min}); }),
                 DatabaseError::Kind::busy);
    }

    void aCopyThatIsCancelledLocksNothing() {
        const DatabaseFile file{QString()};
        Connection till(0ms);
        fill(till, file);
        FileReader reader(file.path(), {});
        struct Cancelled {};
        QVERIFY_THROWS_EXCEPTION(
            Cancelled, reader.copyTo(file.folder() + u"/copy", [](qint64, qint64) { throw Cancelled(); }));
        till.execute(u"INSERT INTO t (a) VALUES ('sold')"_s);
        till.idle();
        reader.copyTo(file.folder() + u"/again");
        QCOMPARE(content(file.folder() + u"/again", {}).size(), rows + 1);
    }

    void anotherMachinesLogIsLeftAlone() {
        const DatabaseFile file{QString()};
        Connection till;
        fill(till, file);
        setNetworkFileTest([](const QString&) { return true; });
        QVERIFY(kindOf([&] { FileReader(file.path(), {}); }).has_value());
        setNetworkFileTest({});
        till.execute(u"INSERT INTO t (a) VALUES ('sold')"_s);
        QCOMPARE(content(file.path(), {}).size(), rows + 1);
    }

    void damageIsFound() {
        const DatabaseFile file{QString()};
        {
            Connection till;
            fill(till, file);
        }
        file.damage();
        FileReader reader(file.path(), {});
        QStringList faults;
        try {
            faults = reader.faults();
        } catch (const DatabaseError& error) {
            faults << error.description();
        }
        QVERIFY(!faults.isEmpty());
    }

    void aWrongPasswordIsRefused() {
        const DatabaseFile file(u"doğru"_s);
        {
            Connection till;
            fill(till, file);
        }
        QCOMPARE(kindOf([&] { FileReader(file.path(), u"yanlış"_s); }), DatabaseError::Kind::wrongPassword);
    }

    void anOlderFormatIsKept_data() {
        addRows<FormatRow>(
            {{"release 2", {{u"PRAGMA kdf_iter = 4000"_s}}},
             {"release 1", {{u"PRAGMA kdf_iter = 4000"_s, u"PRAGMA cipher_use_hmac = OFF"_s}}}});
    }
    void anOlderFormatIsKept() {
        QFETCH(const FormatRow, row);
        const DatabaseFile file(u"eski"_s);
        {
            RawDatabase old(file.path(), file.password());
            for (const QString& setting : row.settings)
                QVERIFY(old.run(setting));
            QVERIFY(old.run(u"CREATE TABLE t (no, a)"_s) && old.run(u"INSERT INTO t VALUES (1, 'eski')"_s));
        }
        const QString copy = file.folder() + u"/copy";
        FileReader(file.path(), file.password()).copyTo(copy);
        QCOMPARE(content(copy, file.password()), QStringList(u"1|eski"_s));
        QCOMPARE(RawDatabase(copy, file.password()).rows(u"PRAGMA kdf_iter"_s), QStringList(u"4000"_s));
    }

    void rowsAndColumnsAreRead_data() { DatabaseFile::bothKinds(); }
    void rowsAndColumnsAreRead() {
        const DatabaseFile file;
        Connection till;
        fill(till, file);
        FileReader reader(file.path(), file.password());
        QCOMPARE(reader.tables(), QStringList(u"t"_s));
        QCOMPARE(reader.columns(u"T"_s), (QStringList{u"no"_s, u"a"_s, u"b"_s}));
        qint64 sum = 0;
        reader.forEachRow(u"SELECT no, a FROM t"_s,
                          [&](const engine::RowCursor& row) { sum += row.cell(0).whole; });
        QCOMPARE(sum, qint64{rows} * (rows + 1) / 2);
    }

    void aFileInUseIsntSettled_data() { DatabaseFile::bothKinds(); }
    void aFileInUseIsntSettled() {
        const DatabaseFile file;
        {
            Connection till;
            fill(till, file);
            QCOMPARE(kindOf([&] { settleFile(file.path(), file.password()); }), DatabaseError::Kind::busy);
            till.execute(u"INSERT INTO t (a) VALUES ('sold')"_s);
        }
        settleFile(file.path(), file.password());
        QVERIFY(!QFileInfo::exists(file.path() + u"-wal"));
        QCOMPARE(content(file.path(), file.password()).size(), rows + 1);
    }
};

QTEST_GUILESS_MAIN(TestFileReader)
#include "test_filereader.moc"
