#include <memory>

#include "database/databaseerror.h"
#include "database/recordset.h"
#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = DatabaseError::Kind;

namespace {

const QString noCurrentRow = u"Either BOF or EOF is True, or the current record has been deleted."_s;
const QString rowGone =
    u"Row cannot be located for updating. Some values may have been changed since it was last read."_s;
const QString notUpdatable = u"Current Recordset does not support updating."_s;

}  // namespace

/// Changing and deleting the current row of a recordset. The table holds a1 … a5 in the rows 1 … 5.
class TestEditing : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void changesTheCurrentRow_data() { DatabaseFile::allKinds(); }
    void changesTheCurrentRow();
    void changesOneOfTwoRowsAlike_data() { DatabaseFile::allKinds(); }
    void changesOneOfTwoRowsAlike();
    void aMoveStoresWhatWasSet_data() { DatabaseFile::allKinds(); }
    void aMoveStoresWhatWasSet();
    void aFailedChangeCanBeRepeated_data() { DatabaseFile::bothKinds(); }
    void aFailedChangeCanBeRepeated();
    void deletesTheCurrentRow_data() { DatabaseFile::allKinds(); }
    void deletesTheCurrentRow();
    void deletesWhileWalking_data() { DatabaseFile::allKinds(); }
    void deletesWhileWalking();
    void failsOnARowThatIsGone_data() { DatabaseFile::allKinds(); }
    void failsOnARowThatIsGone();
    void deletingDropsANewRow_data() { DatabaseFile::allKinds(); }
    void deletingDropsANewRow();
    void refusesWhereRowsHaveNoIdentity_data() { DatabaseFile::bothKinds(); }
    void refusesWhereRowsHaveNoIdentity();

private:
    QStringList rows() const { return m_file->rows(u"SELECT no, a FROM t ORDER BY no"_s); }

    std::unique_ptr<DatabaseFile> m_file;
    std::unique_ptr<Connection> m_connection;
    std::unique_ptr<Recordset> m_set;
};

void TestEditing::init() {
    m_file = std::make_unique<DatabaseFile>();
    m_connection = std::make_unique<Connection>(50ms);
    m_connection->open(m_file->connectionString());
    m_connection->execute(u"CREATE TABLE t (no COUNTER, a TEXT(50), b DOUBLE, c DATETIME)"_s);
    m_connection->execute(
        u"INSERT INTO t (a) WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5) "
        "SELECT 'a' || i FROM n"_s);
    m_set = std::make_unique<Recordset>();
    m_set->open(u" select * from t"_s, *m_connection);
}

void TestEditing::cleanup() {
    m_set.reset();
    m_connection.reset();
    m_file.reset();
}

void TestEditing::changesTheCurrentRow() {
    m_set->moveNext();
    m_set->setField(u"A"_s, u"O'Neil"_s);
    m_set->setField(u"b"_s, 1);
    m_set->setField(u"b"_s, 2.5);
    m_set->setField(u"c"_s, QDateTime(QDate(2026, 5, 3), QTime(7, 5, 9)));
    QCOMPARE(rows().at(1), u"2|a2"_s);
    m_set->update();
    QCOMPARE(m_file->rows(u"SELECT * FROM t WHERE b IS NOT NULL"_s),
             QStringList{u"2|O'Neil|2.5|2026-05-03 07:05:09"_s});
    QCOMPARE(m_set->field(u"no"_s), QVariant(2LL));
    QCOMPARE(m_set->field(u"a"_s), QVariant(u"O'Neil"_s));
    QCOMPARE(wordsOf([&] { m_set->update(); }), u"Operation is not allowed in this context."_s);
    m_set->moveNext();
    QCOMPARE(m_set->field(u"a"_s), QVariant(u"a3"_s));
}

void TestEditing::changesOneOfTwoRowsAlike() {
    m_connection->execute(u"UPDATE t SET a = 'x' WHERE no > 3"_s);
    Recordset alike;
    alike.open(u"select * from t where a = 'X' order by no desc"_s, *m_connection);
    alike.setField(u"a"_s, u"y"_s);
    alike.update();
    QCOMPARE(rows().mid(3), (QStringList{u"4|x"_s, u"5|y"_s}));
}

void TestEditing::aMoveStoresWhatWasSet() {
    m_set->setField(u"a"_s, u"bir"_s);
    m_set->moveNext();
    m_set->setField(u"a"_s, u"iki"_s);
    QVERIFY(m_set->find(u"no = '4'"_s));
    m_set->setField(u"a"_s, u"dört"_s);
    m_set->setFilter(u"no = '5'"_s);
    m_set->setField(u"a"_s, u"beş"_s);
    m_set->addNew();
    m_set->setField(u"a"_s, u"altı"_s);
    m_set->moveFirst();
    QCOMPARE(rows(), (QStringList{u"1|bir"_s, u"2|iki"_s, u"3|a3"_s, u"4|dört"_s, u"5|beş"_s, u"6|altı"_s}));
    m_set->setField(u"a"_s, u"unutulan"_s);
    m_set->close();
    QCOMPARE(rows().at(4), u"5|beş"_s);
}

void TestEditing::aFailedChangeCanBeRepeated() {
    RawDatabase other(m_file->path(), m_file->password());
    m_set->setField(u"a"_s, u"x"_s);
    QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
    QCOMPARE(wordsOf([&] { m_set->update(); }), u"database is locked"_s);
    QCOMPARE(wordsOf([&] { m_set->moveNext(); }), u"database is locked"_s);
    QVERIFY(other.run(u"COMMIT"_s));
    m_set->update();
    QCOMPARE(rows().constFirst(), u"1|x"_s);
}

void TestEditing::deletesTheCurrentRow() {
    m_set->moveNext();
    m_set->deleteCurrent();
    QCOMPARE(rows(), (QStringList{u"1|a1"_s, u"3|a3"_s, u"4|a4"_s, u"5|a5"_s}));
    QCOMPARE(m_set->recordCount(), 4);
    // The place is where the row was, and the second step of a deletion finds nothing to do.
    QVERIFY(!m_set->atEnd());
    m_set->update();
    QCOMPARE(wordsOf([&] { m_set->field(u"a"_s); }), noCurrentRow);
    QCOMPARE(wordsOf([&] { m_set->setField(u"a"_s, 1); }), noCurrentRow);
    QCOMPARE(wordsOf([&] { m_set->deleteCurrent(); }), noCurrentRow);
    m_set->moveNext();
    QCOMPARE(m_set->field(u"a"_s), QVariant(u"a3"_s));
    QCOMPARE(wordsOf([&] { m_set->update(); }), u"Operation is not allowed in this context."_s);
}

void TestEditing::deletesWhileWalking() {
    for (; !m_set->atEnd(); m_set->moveNext()) {
        if (m_set->field(u"no"_s).toInt() != 2)
            m_set->deleteCurrent();
    }
    QCOMPARE(rows(), QStringList{u"2|a2"_s});
    Recordset ordered;
    ordered.open(u"select * from t order by a"_s, *m_connection);
    ordered.deleteCurrent();
    ordered.moveNext();
    QVERIFY(ordered.atEnd());
    QCOMPARE(ordered.recordCount(), 0);
    QCOMPARE(rows(), QStringList());
}

void TestEditing::failsOnARowThatIsGone() {
    RawDatabase other(m_file->path(), m_file->password());
    QCOMPARE(m_set->field(u"no"_s), QVariant(1LL));
    m_set->setField(u"a"_s, u"x"_s);
    QVERIFY(other.run(u"DELETE FROM t WHERE no = 1"_s));
    const auto kindOf = [](const std::function<void()>& step) {
        try {
            step();
        } catch (const DatabaseError& error) {
            return error.kind();
        }
        return Kind::other;
    };
    QCOMPARE(kindOf([&] { m_set->update(); }), Kind::noRow);
    QCOMPARE(wordsOf([&] { m_set->deleteCurrent(); }), rowGone);
    m_set->setField(u"a"_s, u"x"_s);
    QCOMPARE(wordsOf([&] { m_set->moveNext(); }), rowGone);
    m_set->moveNext();
    m_set->deleteCurrent();
    QCOMPARE(rows(), (QStringList{u"3|a3"_s, u"4|a4"_s, u"5|a5"_s}));
}

void TestEditing::deletingDropsANewRow() {
    m_set->addNew();
    m_set->setField(u"a"_s, u"yeni"_s);
    m_set->deleteCurrent();
    QCOMPARE(rows().size(), 5);
    QCOMPARE(wordsOf([&] { m_set->update(); }), u"Operation is not allowed in this context."_s);
}

void TestEditing::refusesWhereRowsHaveNoIdentity() {
    m_connection->execute(u"CREATE VIEW v AS SELECT a FROM t"_s);
    m_connection->execute(u"CREATE TABLE w (a TEXT(50) PRIMARY KEY) WITHOUT ROWID"_s);
    m_connection->execute(u"INSERT INTO w VALUES ('x')"_s);
    for (const QString& sql : {u"select * from v"_s, u"select * from w"_s, u"select max(a) as a from t"_s,
                               u"select distinct a from t"_s}) {
        Recordset set;
        set.open(sql, *m_connection);
        QCOMPARE(wordsOf([&] { set.setField(u"a"_s, u"x"_s); }), notUpdatable);
        QCOMPARE(wordsOf([&] { set.deleteCurrent(); }), notUpdatable);
    }
}

QTEST_GUILESS_MAIN(TestEditing)
#include "test_editing.moc"
