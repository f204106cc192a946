#include <QFile>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlRecord>
#include <QSqlResult>
#include <memory>

#include "database/driver/rowcursor.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString password = u"gizli"_s;

struct FormatRow {
    QStringList settings;
    QString rounds;
};

struct OpeningRow {
    QString key;
    QString options;
    QString words;  ///< of the refusal; nothing when the file opens
};

}  // namespace

Q_DECLARE_METATYPE(FormatRow)
Q_DECLARE_METATYPE(OpeningRow)

/// The driver by itself, in both its builds, as the toolkit uses it.
class TestDriver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void encryptsTheFile();
    void opensOlderFormats_data();
    void opensOlderFormats();
    void refusesToOpen_data();
    void refusesToOpen();
    void bindsByPosition_data() { DatabaseFile::bothKinds(); }
    void bindsByPosition();
    void bindsByName_data() { DatabaseFile::bothKinds(); }
    void bindsByName();
    void runsWithCells_data() { DatabaseFile::bothKinds(); }
    void runsWithCells();
    void countsBindings_data() { DatabaseFile::bothKinds(); }
    void countsBindings();
    void readsForwardOnly_data() { DatabaseFile::bothKinds(); }
    void readsForwardOnly();
    void readsInAnyDirection_data() { DatabaseFile::bothKinds(); }
    void readsInAnyDirection();
    void reportsErrors_data() { DatabaseFile::bothKinds(); }
    void reportsErrors();
    void runsTransactions_data() { DatabaseFile::bothKinds(); }
    void runsTransactions();
    void describesTables_data() { DatabaseFile::bothKinds(); }
    void describesTables();
    void quotesNames_data() { DatabaseFile::bothKinds(); }
    void quotesNames();
    void endsStatements_data() { DatabaseFile::bothKinds(); }
    void endsStatements();
};

void TestDriver::encryptsTheFile() {
    const DatabaseFile file(password);
    {
        RawDatabase raw(file.path(), password);
        QVERIFY(raw.run(u"CREATE TABLE t (a)"_s) && raw.run(u"INSERT INTO t VALUES ('ordinary words')"_s));
    }
    QFile bytes(file.path());
    QVERIFY(bytes.open(QIODevice::ReadOnly));
    const QByteArray content = bytes.readAll();
    QVERIFY(content.size() >= 1024);
    QVERIFY(!content.startsWith("SQLite"));
    QVERIFY(!content.contains("ordinary") && !content.contains("CREATE"));
}

void TestDriver::opensOlderFormats_data() {
    addRows<FormatRow>(
        {{"release 2", {{u"PRAGMA kdf_iter = 4000"_s}, u"4000"_s}},
         {"release 1", {{u"PRAGMA kdf_iter = 4000"_s, u"PRAGMA cipher_use_hmac = OFF"_s}, u"4000"_s}},
         {"default", {{}, u"64000"_s}}});
}

void TestDriver::opensOlderFormats() {
    QFETCH(const FormatRow, row);
    const DatabaseFile file(password);
    {
        RawDatabase old(file.path(), password);
        for (const QString& setting : row.settings) {
            QVERIFY(old.run(setting));
        }
        QVERIFY(old.run(u"CREATE TABLE t (a)"_s) && old.run(u"INSERT INTO t VALUES ('eski')"_s));
    }
    for (int i = 1; i <= 2; ++i) {
        // The file stays as it is: the second open finds the same format.
        RawDatabase raw(file.path(), password);
        QCOMPARE(raw.rows(u"PRAGMA kdf_iter"_s), QStringList{row.rounds});
        QCOMPARE(raw.rows(u"SELECT count(*) FROM t"_s), QStringList{QString::number(i)});
        QVERIFY(raw.run(u"INSERT INTO t VALUES ('yeni')"_s));
    }
    Connection connection;
    const auto error =
        errorOf([&] { connection.open(DatabaseFile::connectionString(file.path(), u"yanlış"_s)); });
    QVERIFY(error);
    QCOMPARE(enginesWords(error->description()), u"file is encrypted or is not a database"_s);
}

void TestDriver::refusesToOpen_data() {
    addRows<OpeningRow>(
        {{"no password", {{}, {}, u"A password is required"_s}},
         {"wrong password", {u"Gizli"_s, {}, u"file is encrypted or is not a database"_s}},
         {"unknown option", {password, u"QSQLITE_NO_SUCH"_s, u"QSQLITE_NO_SUCH"_s}},
         {"time-out that is no number", {password, u"QSQLITE_BUSY_TIMEOUT=x"_s, u"QSQLITE_BUSY_TIMEOUT=x"_s}},
         {"right",
          {password, u" QSQLITE_OPEN_READONLY; KOVANIX_EXCLUSIVE; QSQLITE_BUSY_TIMEOUT = 100 ;"_s, {}}}});
}

void TestDriver::refusesToOpen() {
    const DatabaseFile file(password);
    QVERIFY(RawDatabase(file.path(), password).run(u"CREATE TABLE t (a)"_s));
    const QString name = u"refuses"_s;
    {
        QFETCH(const OpeningRow, row);
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLCIPHER"_s, name);
        database.setDatabaseName(file.path());
        database.setPassword(row.key);
        database.setConnectOptions(row.options);
        QCOMPARE(database.open(), row.words.isEmpty());
        QCOMPARE(database.lastError().databaseText(), row.words);
        QCOMPARE(database.isOpen(), row.words.isEmpty());
        QSqlQuery query(database);
        QVERIFY(!query.exec(u"INSERT INTO t VALUES (1)"_s));
        QCOMPARE(query.lastError().databaseText(),
                 row.words.isEmpty() ? u"attempt to write a readonly database"_s : QString());
    }
    QSqlDatabase::removeDatabase(name);
}

void TestDriver::bindsByPosition() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QVERIFY(raw.run(u"CREATE TABLE t (a, b, c)"_s));
    QSqlQuery query(raw.database());
    QVERIFY(query.prepare(u"INSERT INTO t VALUES (?, ?, ?)"_s));
    for (int i = 1; i <= 3; ++i) {
        query.addBindValue(i);
        query.addBindValue(u"ş%1"_s.arg(i));
        query.addBindValue(i == 2 ? QVariant() : QVariant(i / 2.0));
        QVERIFY(query.exec());
        QCOMPARE(query.numRowsAffected(), 1);
        QCOMPARE(query.lastInsertId().toInt(), i);
    }
    QCOMPARE(raw.rows(u"SELECT * FROM t"_s), (QStringList{u"1|ş1|0.5"_s, u"2|ş2|NULL"_s, u"3|ş3|1.5"_s}));
    QVERIFY(query.exec(u"UPDATE t SET a = 0"_s));
    QCOMPARE(query.numRowsAffected(), 3);
    QVERIFY(!query.isSelect());
}

void TestDriver::bindsByName() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlQuery query(raw.database());
    QVERIFY(query.prepare(u"SELECT :b, ':x', :a, :b, [a?] FROM (SELECT 1 AS [a?])"_s));
    query.bindValue(u":a"_s, u"ilk"_s);
    query.bindValue(u":b"_s, 2);
    QVERIFY(query.exec() && query.next());
    QStringList values;
    for (int i = 0; i < 5; ++i) {
        values.append(query.value(i).toString());
    }
    QCOMPARE(values, (QStringList{u"2"_s, u":x"_s, u"ilk"_s, u"2"_s, u"1"_s}));
}

void TestDriver::runsWithCells() {
    using engine::Cell;
    using Type = Cell::Type;
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QVERIFY(raw.run(u"CREATE TABLE t (a, b UNIQUE)"_s));
    QSqlQuery insert(raw.database());
    insert.setForwardOnly(true);
    QVERIFY(insert.prepare(u"INSERT INTO t VALUES (?, ?)"_s));
    auto* const rows = insert.result()->handle().value<engine::RowCursor*>();
    const Cell real{.type = Type::real, .real = 0.1, .bytes = {}};
    QVERIFY(rows->runWith({{.type = Type::whole, .whole = 9007199254740993, .bytes = {}}, real}));
    // A text keeps every byte, a byte order mark too, and one without any is no null.
    const std::string text = "\xEF\xBB\xBF\xC5\x9F";
    QVERIFY(rows->runWith({{.type = Type::text, .bytes = text}, {.type = Type::bytes, .bytes = {"\0x", 2}}}));
    QVERIFY(rows->runWith({{}, {.type = Type::text, .bytes = {}}}));
    QVERIFY(!rows->runWith({{}}));
    QCOMPARE(insert.lastError().driverText(), u"Parameter count mismatch"_s);
    QVERIFY(!rows->runWith({{}, real}));
    QCOMPARE(insert.lastError().databaseText(), u"UNIQUE constraint failed: t.b"_s);
    QVERIFY(rows->runWith({{}, {}}));
    QCOMPARE(raw.rows(u"SELECT typeof(a), quote(a), typeof(b), quote(b) FROM t"_s),
             (QStringList{u"integer|9007199254740993|real|0.1"_s, u"text|'\uFEFFş'|blob|X'0078'"_s,
                          u"null|NULL|text|''"_s, u"null|NULL|null|NULL"_s}));
}

void TestDriver::countsBindings() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlQuery query(raw.database());
    QVERIFY(query.prepare(u"SELECT ?, ?"_s));
    query.addBindValue(1);
    QVERIFY(!query.exec());
    QCOMPARE(query.lastError().driverText(), u"Parameter count mismatch"_s);
}

void TestDriver::readsForwardOnly() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlQuery query(raw.database());
    query.setForwardOnly(true);
    QVERIFY(query.exec(
        u"SELECT 1 AS a UNION ALL SELECT 'x' UNION ALL SELECT NULL UNION ALL SELECT 2.5 UNION ALL SELECT x'00ff'"_s));
    QVERIFY(query.isSelect() && query.isActive());
    QCOMPARE(query.size(), -1);
    QVERIFY(!query.value(0).isValid());
    QVERIFY(query.next());
    QCOMPARE(query.value(u"a"_s), QVariant(1LL));
    QCOMPARE(query.record().fieldName(0), u"a"_s);
    QVERIFY(query.next());
    QCOMPARE(query.value(0), QVariant(u"x"_s));
    QVERIFY(!query.previous());
    QVERIFY(query.next() && query.isNull(0) && query.next());
    QCOMPARE(query.value(0), QVariant(2.5));
    QVERIFY(query.next());
    QCOMPARE(query.value(0), QVariant(QByteArray("\0\xff", 2)));
    QVERIFY(!query.next());
    QVERIFY(!query.next());
    QCOMPARE(query.at(), int(QSql::AfterLastRow));
    QVERIFY(query.exec(u"SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 3"_s));
    QVERIFY(query.last());
    QCOMPARE(query.value(0).toInt(), 3);
}

void TestDriver::readsInAnyDirection() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlQuery query(raw.database());
    QVERIFY(query.exec(u"SELECT 1 UNION ALL SELECT 2 UNION ALL SELECT 3"_s));
    const auto number = [&query] { return query.value(0).toInt(); };
    QVERIFY(query.next() && query.next());
    QCOMPARE(number(), 2);
    QVERIFY(query.previous());
    QCOMPARE(number(), 1);
    QVERIFY(!query.previous());
    QVERIFY(query.last());
    QCOMPARE(number(), 3);
    QVERIFY(!query.next());
    QVERIFY(query.first());
    QCOMPARE(number(), 1);
    QVERIFY(query.seek(2));
    QCOMPARE(number(), 3);
    QVERIFY(!query.seek(3));
    QVERIFY(query.last() && query.previous());
    QCOMPARE(number(), 2);
    QVERIFY(query.exec(u"SELECT 1 WHERE 0"_s));
    QVERIFY(!query.first() && !query.last() && !query.next());
}

void TestDriver::reportsErrors() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QVERIFY(raw.run(u"CREATE TABLE t (a UNIQUE)"_s) && raw.run(u"INSERT INTO t VALUES (1)"_s));
    QSqlQuery query(raw.database());
    QVERIFY(!query.prepare(u"SELECT yok FROM t"_s));
    QCOMPARE(query.lastError().databaseText(), u"no such column: yok"_s);
    QCOMPARE(query.lastError().nativeErrorCode(), u"1"_s);
    QVERIFY(!query.exec(u"INSERT INTO t VALUES (1)"_s));
    QCOMPARE(query.lastError().databaseText(), u"UNIQUE constraint failed: t.a"_s);
    QCOMPARE(query.lastError().nativeErrorCode(), u"2067"_s);
    QVERIFY(!query.exec(u"SELECT 1; SELECT 2"_s));
    QVERIFY(query.exec(u"SELECT abs(-9223372036854775807 - a) FROM (SELECT 0 AS a UNION ALL SELECT 1)"_s));
    QVERIFY(query.next());
    QVERIFY(!query.next());
    QCOMPARE(query.lastError().databaseText(), u"integer overflow"_s);
    QVERIFY(query.exec(u"SELECT 1;  "_s) && query.next());
    QVERIFY(!query.lastError().isValid());
}

void TestDriver::runsTransactions() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlDatabase& database = raw.database();
    QVERIFY(database.driver()->hasFeature(QSqlDriver::Transactions));
    QVERIFY(raw.run(u"CREATE TABLE t (a)"_s));
    QVERIFY(database.transaction() && raw.run(u"INSERT INTO t VALUES (1)"_s) && database.rollback());
    QVERIFY(database.transaction() && raw.run(u"INSERT INTO t VALUES (2)"_s) && database.commit());
    QCOMPARE(raw.rows(u"SELECT a FROM t"_s), QStringList{u"2"_s});
    QVERIFY(!database.commit());
    QVERIFY(!database.lastError().databaseText().isEmpty());
}

void TestDriver::describesTables() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QVERIFY(raw.run(
        u"CREATE TABLE [t\"1] (no INTEGER PRIMARY KEY AUTOINCREMENT, a TEXT(50) NOT NULL, b DOUBLE DEFAULT 3)"_s));
    QVERIFY(raw.run(u"CREATE VIEW v AS SELECT 1"_s));
    QSqlDatabase& database = raw.database();
    QCOMPARE(database.tables(), QStringList{u"t\"1"_s});
    QCOMPARE(database.tables(QSql::Views), QStringList{u"v"_s});
    QCOMPARE(database.tables(QSql::SystemTables), QStringList{u"sqlite_master"_s});
    const QSqlRecord record = database.record(u"t\"1"_s);
    QCOMPARE(record.count(), 3);
    QCOMPARE(record.field(0).metaType(), QMetaType(QMetaType::LongLong));
    QVERIFY(record.field(0).isAutoValue());
    QCOMPARE(record.field(1).name(), u"a"_s);
    QCOMPARE(record.field(1).metaType(), QMetaType(QMetaType::QString));
    QCOMPARE(record.field(1).requiredStatus(), QSqlField::Required);
    QCOMPARE(record.field(2).metaType(), QMetaType(QMetaType::Double));
    QCOMPARE(record.field(2).defaultValue().toString(), u"3"_s);
    QCOMPARE(database.primaryIndex(u"t\"1"_s).count(), 1);
    QCOMPARE(database.primaryIndex(u"t\"1"_s).fieldName(0), u"no"_s);
}

void TestDriver::quotesNames() {
    const DatabaseFile file;
    RawDatabase raw(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QCOMPARE(raw.database().driver()->escapeIdentifier(u"a\"b"_s, QSqlDriver::FieldName), u"\"a\"\"b\""_s);
}

void TestDriver::endsStatements() {
    const DatabaseFile file;
    auto raw =
        std::make_unique<RawDatabase>(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QVERIFY(raw->run(u"CREATE TABLE t (a)"_s) && raw->run(u"INSERT INTO t VALUES (1)"_s) &&
            raw->run(u"INSERT INTO t VALUES (2)"_s));
    RawDatabase other(file.path(), file.password(), DatabaseFile::driver(file.password()));
    QSqlQuery query(raw->database());
    query.setForwardOnly(true);
    QVERIFY(query.exec(u"SELECT a FROM t"_s) && query.next());
    QVERIFY(!other.run(u"BEGIN EXCLUSIVE"_s));
    query.finish();
    QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s) && other.run(u"COMMIT"_s));
    QVERIFY(query.exec() && query.next());
    raw->database().close();
    QVERIFY(!query.next());
    QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
    query = QSqlQuery();
    raw.reset();
}

QTEST_GUILESS_MAIN(TestDriver)
#include "test_driver.moc"
