#include "database/stagedrows.h"

#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct ChangeRow {
    const char* name;
    QString meanwhile;  ///< what somebody stores between the laying ready and the storing
    bool stored;
};

}  // namespace

Q_DECLARE_METATYPE(ChangeRow)

/// Three rows of a table: number 1 and 2 are there, 3 is deleted.
class TestStagedRows : public QObject {
    Q_OBJECT

    std::optional<DatabaseFile> m_file;
    std::optional<Connection> m_connection;

    void open() {
        if (!m_file)
            m_file.emplace();
        m_connection.emplace(50ms);
        m_connection->open(m_file->connectionString());
        m_connection->execute(u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE, [c d] TEXT(50))"_s);
        m_connection->execute(u"INSERT INTO t (a, b, [c d]) VALUES ('x', 1.5, 'u')"_s);
        m_connection->execute(u"INSERT INTO t (a, b, [c d]) VALUES ('y', 2.5, 'v')"_s);
    }
    StagedRows stage() { return StagedRows(*m_connection, u"t"_s, {u"a"_s, u"b"_s, u"c d"_s}); }
    QStringList rows() const { return m_file->rows(u"SELECT * FROM t ORDER BY no"_s); }

private Q_SLOTS:
    void cleanup() {
        m_connection.reset();
        m_file.reset();
    }

    void storesNewAndChangedRows_data() { DatabaseFile::allKinds(); }
    void storesNewAndChangedRows() {
        open();
        StagedRows staged = stage();
        staged.add({u"O'Neil"_s, QVariant(), QString()});
        staged.change(1, {u"X"_s, 3.5, QVariant()});
        staged.change(2, {u"y"_s, QVariant(), u"w"_s});
        staged.add({u"ş"_s, -0.25, u"z"_s});
        QCOMPARE(rows(), (QStringList{u"1|x|1.5|u"_s, u"2|y|2.5|v"_s}));
        QVERIFY(staged.store(2));
        QCOMPARE(rows(),
                 (QStringList{u"1|x|3.5|u"_s, u"2|y|2.5|w"_s, u"3|O'Neil|NULL|"_s, u"4|ş|-0.25|z"_s}));
    }

    /// More than a statement takes, and more than a slice: in their order, whichever way they come.
    void storesManyRows_data() { DatabaseFile::allKinds(); }
    void storesManyRows() {
        constexpr int many = 12'345;
        open();
        QList<qint64> told;
        const auto tell = [&](qint64 done) { told.append(done); };
        {
            StagedRows staged = stage();
            for (int row = 0; row < many; ++row)
                staged.add({QString::number(many - row), 0.5 * row, u"n"_s});
            QVERIFY(staged.store(2, tell));
        }
        QCOMPARE(told, (QList<qint64>{0, 10'000, many}));
        StagedRows changes = stage();
        for (int row = 0; row < many; ++row)
            changes.change(row + 3, {QString::number(many - row), QVariant(), u"k"_s});
        QVERIFY(changes.store(many + 2));
        QCOMPARE(
            m_file->rows(u"SELECT COUNT(*), SUM(b), MIN(no), MAX(no) FROM t WHERE \"c d\" = 'k'"_s),
            QStringList{u"%1|%2|3|%3"_s.arg(many).arg(0.5 * many * (many - 1) / 2, 0, 'f', 0).arg(many + 2)});
        QCOMPARE(m_file->rows(u"SELECT a FROM t WHERE no = 3"_s), QStringList{QString::number(many)});
    }

    void leavesATableThatHasChanged_data() {
        QTest::addColumn<ChangeRow>("row");
        for (const ChangeRow& row : QList<ChangeRow>{
                 {"nothing", {}, true},
                 {"another cell", u"UPDATE t SET b = 9 WHERE no = 1"_s, true},
                 {"the key's letter case", u"UPDATE t SET a = 'X' WHERE no = 1"_s, true},
                 {"another key", u"UPDATE t SET a = 'xx' WHERE no = 1"_s, false},
                 {"a row is gone", u"DELETE FROM t WHERE no = 1"_s, false},
                 {"a further row", u"INSERT INTO t (a) VALUES ('w')"_s, false},
             })
            QTest::newRow(row.name) << row;
    }
    void leavesATableThatHasChanged() {
        QFETCH(const ChangeRow, row);
        m_file.emplace(QString());
        open();
        StagedRows staged = stage();
        staged.change(1, {u"x"_s, QVariant(), u"k"_s});
        staged.add({u"z"_s, 1.0, u"n"_s});
        if (!row.meanwhile.isEmpty())
            QVERIFY(RawDatabase(m_file->path(), {}).run(row.meanwhile));
        const QStringList before = rows();
        QCOMPARE(staged.store(2), row.stored);
        QCOMPARE(rows() == before, !row.stored);
    }

    /// Nobody waits before, a reader never, and what is thrown while they wait takes all back.
    void othersWaitForTheStoringAlone() {
        m_file.emplace(QString());
        open();
        StagedRows staged = stage();
        staged.add({u"z"_s, 1.0, u"n"_s});
        RawDatabase other(m_file->path(), {});
        QVERIFY(other.run(u"UPDATE t SET b = 7 WHERE no = 2"_s));
        bool waited = false;
        const auto stop = [&](qint64) {
            waited = !other.run(u"UPDATE t SET b = 8 WHERE no = 2"_s);
            throw std::runtime_error("stopped");
        };
        QVERIFY_THROWS_EXCEPTION(std::runtime_error, staged.store(2, stop));
        QVERIFY(waited);
        QCOMPARE(rows(), (QStringList{u"1|x|1.5|u"_s, u"2|y|7|v"_s}));
        QVERIFY(staged.store(2));
        QCOMPARE(rows().size(), 3);
        QVERIFY(other.run(u"UPDATE t SET b = 8 WHERE no = 2"_s));
    }

    void fails_data() { DatabaseFile::bothKinds(); }
    void fails() {
        open();
        QVERIFY(errorOf([&] { StagedRows(*m_connection, u"yok"_s, {u"a"_s, u"b"_s}); }));
        m_connection->execute(u"CREATE UNIQUE INDEX einmal ON t (a)"_s);
        StagedRows staged = stage();
        staged.add({u"w"_s, 1.0, u"n"_s});
        staged.add({u"X"_s, 1.0, u"n"_s});
        QCOMPARE(wordsOf([&] { staged.store(2); }), u"UNIQUE constraint failed: t.a"_s);
        QCOMPARE(rows().size(), 2);
        RawDatabase other(m_file->path(), m_file->password());
        QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
        QCOMPARE(wordsOf([&] { staged.store(2); }), u"database is locked"_s);
        QVERIFY(other.run(u"COMMIT"_s));
    }
};

QTEST_GUILESS_MAIN(TestStagedRows)
#include "test_stagedrows.moc"
