#include "databasefile.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

/// A table or view as a connection sees it: "name type(width)", and the identity of its rows.
struct ShapeRow {
    QString create;
    QStringList columns;
    QString identity;
};

QStringList described(const TableShape& shape) {
    QStringList columns;
    for (const TableColumn& column : shape.columns) {
        const QStringList types{u"counter"_s, u"text"_s, u"number"_s, u"moment"_s};
        QString text = column.name + u' ' + types[static_cast<int>(column.type)];
        if (column.width > 0)
            text += u'(' + QString::number(column.width) + u')';
        columns.append(text);
    }
    return columns;
}

}  // namespace

Q_DECLARE_METATYPE(ShapeRow)

class TestSchemaCache : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knowsColumnsAndIdentity_data();
    void knowsColumnsAndIdentity();
    void findsTablesInAnyCase_data() { DatabaseFile::allKinds(); }
    void findsTablesInAnyCase();
    void noticesItsOwnChanges_data() { DatabaseFile::bothKinds(); }
    void noticesItsOwnChanges();
    void noticesTheChangesOfOthers_data() { DatabaseFile::bothKinds(); }
    void noticesTheChangesOfOthers();
};

void TestSchemaCache::knowsColumnsAndIdentity_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<ShapeRow>("row");
    const auto row = [](const char* name, const ShapeRow& shape) {
        QTest::addRow("%s, plain", name) << QString() << shape;
        QTest::addRow("%s, password", name) << u"gizli"_s << shape;
    };
    row("every type", {u"CREATE TABLE x (no COUNTER, a TEXT(50), b TEXT, c DOUBLE, d DATETIME)"_s,
                       {u"no counter"_s, u"a text(50)"_s, u"b text"_s, u"c number"_s, u"d moment"_s},
                       u"rowid"_s});
    row("types of other programs",
        {u"CREATE TABLE x (a VARCHAR ( 20 ), b NUMERIC(10,2), c INTEGER, d DATE, e, f TIMESTAMP)"_s,
         {u"a text(20)"_s, u"b number"_s, u"c number"_s, u"d moment"_s, u"e text"_s, u"f moment"_s},
         u"rowid"_s});
    row("a key that is no counter",
        {u"CREATE TABLE x (a TEXT(5) PRIMARY KEY)"_s, {u"a text(5)"_s}, u"rowid"_s});
    row("a key of two columns", {u"CREATE TABLE x (a INTEGER, b INTEGER, PRIMARY KEY (a, b))"_s,
                                 {u"a number"_s, u"b number"_s},
                                 u"rowid"_s});
    row("no row ids", {u"CREATE TABLE x (a INTEGER PRIMARY KEY) WITHOUT ROWID"_s, {u"a number"_s}, {}});
    row("columns named as identities", {u"CREATE TABLE x (ROWID TEXT(5), _rowid_ DOUBLE)"_s,
                                        {u"ROWID text(5)"_s, u"_rowid_ number"_s},
                                        u"oid"_s});
    row("view", {u"CREATE VIEW x AS SELECT 1 AS n"_s, {u"n text"_s}, {}});
    row("another table", {u"CREATE TABLE y (a DOUBLE)"_s, {}, {}});
}

void TestSchemaCache::knowsColumnsAndIdentity() {
    QFETCH(const ShapeRow, row);
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(row.create);
    const TableShape shape = connection.shape(u"x"_s);
    QCOMPARE(described(shape), row.columns);
    QCOMPARE(shape.identity, row.identity);
}

void TestSchemaCache::findsTablesInAnyCase() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE satislar (TARIH DATETIME, [ad soyad] TEXT(50))"_s);
    connection.execute(u"CREATE TABLE [a'b\"c] (x DOUBLE)"_s);
    QCOMPARE(connection.shape(u"SATISLAR"_s).indexOf(u"tarih"_s), 0);
    QCOMPARE(connection.shape(u"satislar"_s).indexOf(u"AD SOYAD"_s), 1);
    QCOMPARE(connection.shape(u"satislar"_s).indexOf(u"satis"_s), -1);
    QCOMPARE(connection.shape(u"a'b\"c"_s).indexOf(u"x"_s), 0);
}

void TestSchemaCache::noticesItsOwnChanges() {
    const DatabaseFile file;
    Connection connection;
    connection.open(file.connectionString());
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 0);
    connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 1);
    QCOMPARE(connection.tables().size(), 2);
    connection.execute(u"ALTER TABLE t ADD COLUMN b DOUBLE"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 2);
    connection.execute(u"ALTER TABLE t ADD COLUMN no COUNTER"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.last().type, ColumnType::counter);
    connection.execute(u"CREATE TEMP TABLE t (z DOUBLE)"_s);
    QCOMPARE(described(connection.shape(u"t"_s)), QStringList{u"z number"_s});
    connection.execute(u"DROP TABLE temp.t"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 3);
    connection.execute(u"DROP TABLE t"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 0);
    // Another file, opened by the same connection.
    connection.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 1);
    const DatabaseFile second;
    second.execute({u"CREATE TABLE a (x DOUBLE)"_s, u"DROP TABLE a"_s});
    connection.close();
    connection.open(second.connectionString());
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 0);
}

void TestSchemaCache::noticesTheChangesOfOthers() {
    const DatabaseFile file;
    Connection connection;
    Connection other;
    connection.open(file.connectionString());
    other.open(file.connectionString());
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 0);
    QCOMPARE(connection.tables().size(), 1);
    other.execute(u"CREATE TABLE t (a TEXT(50))"_s);
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 1);
    QCOMPARE(connection.tables().size(), 2);
    RawDatabase raw(file.path(), file.password());
    QVERIFY(raw.run(u"ALTER TABLE t ADD COLUMN b DOUBLE"_s));
    QCOMPARE(connection.shape(u"t"_s).columns.size(), 2);
    QVERIFY(raw.run(u"DROP TABLE t"_s));
    QVERIFY(raw.run(u"CREATE TABLE t (x TEXT PRIMARY KEY) WITHOUT ROWID"_s));
    QCOMPARE(connection.shape(u"t"_s).identity, QString());
}

QTEST_GUILESS_MAIN(TestSchemaCache)
#include "test_schemacache.moc"
