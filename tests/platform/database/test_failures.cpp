#include <QFile>

#include "database/databaseerror.h"
#include "database/engineerror.h"
#include "database/failuretext.h"
#include "database/recordset.h"
#include "databasefile.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Kind = DatabaseError::Kind;

namespace {

/// A step on an open connection to a file with the table t (no, a) of one row; it ends in a failure.
struct FailureRow {
    Kind kind;
    std::function<void(Connection&, const DatabaseFile&)> step;
};

struct DriverRow {
    QString driver;
    QString text;
};

struct DescriptionRow {
    Kind kind;
    QString description;
};

/// The kind of the error that a step throws; nothing when it doesn't, or throws another error.
std::optional<Kind> kindOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const DatabaseError& error) {
        return error.kind();
    } catch (const RuntimeError&) {
        return std::nullopt;
    }
    return std::nullopt;
}

void executeStatement(Connection& connection, const QString& sql) {
    connection.execute(sql);
}

}  // namespace

Q_DECLARE_METATYPE(FailureRow)
Q_DECLARE_METATYPE(DescriptionRow)
Q_DECLARE_METATYPE(DriverRow)

class TestFailures : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void describesTheKind_data();
    void describesTheKind();
    void describesNothingWithoutWords();
    void namesThePackageOfADriver_data();
    void namesThePackageOfADriver();
    void namesTheKind_data();
    void namesTheKind();
    void namesWhatKeepsAFileFromOpening_data() { DatabaseFile::bothKinds(); }
    void namesWhatKeepsAFileFromOpening();
    void tellsDamageWhileReading_data() { DatabaseFile::bothKinds(); }
    void tellsDamageWhileReading();
};

void TestFailures::describesTheKind_data() {
    addRows<DescriptionRow>(
        {{"locked",
          {Kind::busy, u"Veritabanı şu anda başka bir kasa ya da program tarafından kullanılıyor (words)"_s}},
         {"read-only",
          {Kind::readOnly,
           u"Veritabanına yazılamıyor: dosyaya ve bulunduğu klasöre yazma izni verin (words)"_s}},
         {"full", {Kind::full, u"Diskte yer kalmadı: yer açın (words)"_s}},
         {"damaged", {Kind::damaged, u"Veritabanı dosyası bozuk (words)"_s}},
         {"not a database", {Kind::notADatabase, u"Dosya bir veritabanı değil ya da parolalı (words)"_s}},
         {"password", {Kind::wrongPassword, u"Veritabanı parolası yanlış ya da dosya bozuk (words)"_s}},
         {"missing",
          {Kind::missing,
           u"Veritabanı dosyası bulunamadı ya da açılamıyor: yerini, dosyaya ve klasöre yazma iznini denetleyin (words)"_s}},
         {"table", {Kind::noSuchTable, u"Veritabanında gereken bir tablo yok (words)"_s}},
         {"column", {Kind::noSuchColumn, u"Veritabanında gereken bir sütun yok (words)"_s}},
         {"value", {Kind::value, u"Veritabanı bu kaydı kabul etmiyor (words)"_s}},
         {"disk or network",
          {Kind::lost,
           u"Veritabanı dosyası okunamıyor ya da yazılamıyor: diski ve ağ bağlantısını denetleyin (words)"_s}},
         {"row", {Kind::noRow, u"Kayıt bulunamadı: başka bir kasa ya da program silmiş olabilir (words)"_s}},
         {"closed",
          {Kind::closed,
           u"Veritabanı dosyası değişti ya da bağlantısı kapandı: pencereyi kapatıp yeniden açın (words)"_s}},
         {"statement", {Kind::statement, u"words"_s}},
         {"other", {Kind::other, u"words"_s}}});
}

void TestFailures::describesTheKind() {
    QFETCH(const DescriptionRow, row);
    QCOMPARE(describeFailure(row.kind, u"words"_s), row.description);
}

void TestFailures::describesNothingWithoutWords() {
    QCOMPARE(describeFailure(Kind::value, u"  "_s), u"  "_s);
}

void TestFailures::namesThePackageOfADriver_data() {
    addRows<DriverRow>(
        {{"server",
          {u"KOVANIXPSQL"_s,
           u"Veritabanı sunucusunun sürücüsü kurulu değil: kovanix-sunucu paketini kurun (KOVANIXPSQL)"_s}},
         {"password file",
          {u"QSQLCIPHER"_s,
           u"Parolalı veritabanı dosyalarının sürücüsü kurulu değil: kovanix paketini yeniden kurun (QSQLCIPHER)"_s}},
         {"plain file",
          {u"KOVANIXSQLITE"_s,
           u"Veritabanı dosyalarının sürücüsü kurulu değil: kovanix paketini yeniden kurun (KOVANIXSQLITE)"_s}}});
}

void TestFailures::namesThePackageOfADriver() {
    QFETCH(const DriverRow, row);
    QCOMPARE(missingDriverText(row.driver), row.text);
}

void TestFailures::namesTheKind_data() {
    QTest::addColumn<QString>("password");
    QTest::addColumn<FailureRow>("row");
    const auto row = [](const char* name, Kind kind, const auto& step) {
        QTest::addRow("%s, plain", name) << QString() << FailureRow{kind, step};
        QTest::addRow("%s, password", name) << u"gizli"_s << FailureRow{kind, step};
    };
    const auto statement = [&row](const char* name, Kind kind, const QString& sql) {
        row(name, kind,
            [sql](Connection& connection, const DatabaseFile&) { executeStatement(connection, sql); });
    };
    const auto select = [&row](const char* name, Kind kind, const QString& sql, const auto& step) {
        row(name, kind, [sql, step](Connection& connection, const DatabaseFile&) {
            Recordset set;
            set.open(sql, connection);
            step(set);
        });
    };
    const auto nothing = [](Recordset&) {};
    row("another writer", Kind::busy, [](Connection& connection, const DatabaseFile& file) {
        RawDatabase other(file.path(), file.password());
        QVERIFY(other.run(u"BEGIN IMMEDIATE"_s));
        connection.execute(u"INSERT INTO t (a) VALUES ('y')"_s);
    });
    row("no writing", Kind::readOnly, [](Connection& connection, const DatabaseFile&) {
        connection.execute(u"PRAGMA query_only = ON"_s);
        connection.execute(u"INSERT INTO t (a) VALUES ('y')"_s);
    });
    row("no room", Kind::full, [](Connection& connection, const DatabaseFile&) {
        connection.execute(u"PRAGMA max_page_count = 3"_s);
        connection.execute(u"INSERT INTO t (a) VALUES (zeroblob(100000))"_s);
    });
    statement("no table to write", Kind::noSuchTable, u"DELETE FROM yok"_s);
    select("no table to read", Kind::noSuchTable, u"select * from yok"_s, nothing);
    statement("no table to add a counter to", Kind::noSuchTable, u"ALTER TABLE yok ADD COLUMN no COUNTER"_s);
    statement("key taken", Kind::value, u"INSERT INTO t (no) VALUES (1)"_s);
    statement("null forbidden", Kind::value, u"INSERT INTO t (no, a) VALUES (2, NULL)"_s);
    statement("text for a counter", Kind::value, u"INSERT INTO t (no) VALUES ('x')"_s);
    statement("no date", Kind::value, u"DELETE FROM t WHERE a = #2/30/2021#"_s);
    select("no date to read", Kind::value, u"select * from t where a = #2/30/2021#"_s, nothing);
    select("no field", Kind::value, u"select * from t"_s, [](Recordset& set) { set.field(u"yok"_s); });
    select("no field to set", Kind::value, u"select * from t"_s,
           [](Recordset& set) { set.setField(u"yok"_s, 1); });
    select("no row", Kind::noRow, u"select * from t where no = 2"_s,
           [](Recordset& set) { set.field(u"a"_s); });
    select("no row to change", Kind::noRow, u"select * from t where no = 2"_s,
           [](Recordset& set) { set.setField(u"a"_s, u"y"_s); });
    select("no row to delete", Kind::noRow, u"select * from t where no = 2"_s,
           [](Recordset& set) { set.deleteCurrent(); });
    statement("no column to add to", Kind::noSuchColumn, u"INSERT INTO t (yok) VALUES (1)"_s);
    statement("syntax", Kind::statement, u"DELETE t"_s);
    statement("no column", Kind::noSuchColumn, u"UPDATE t SET yok = 1"_s);
    select("not to be changed", Kind::statement, u"select count(*) as n from t"_s,
           [](Recordset& set) { set.setField(u"n"_s, 1); });
    row("closed", Kind::closed, [](Connection& connection, const DatabaseFile&) {
        connection.close();
        connection.execute(u"DELETE FROM t"_s);
    });
}

void TestFailures::namesTheKind() {
    QFETCH(const FailureRow, row);
    const DatabaseFile file;
    Connection connection(50ms);
    connection.open(file.connectionString());
    connection.execute(u"CREATE TABLE t (no COUNTER, a TEXT(50) NOT NULL)"_s);
    connection.execute(u"INSERT INTO t (a) VALUES ('x')"_s);
    const std::optional<Kind> kind = kindOf([&] { row.step(connection, file); });
    QVERIFY(kind);
    QCOMPARE(*kind, row.kind);
}

void TestFailures::namesWhatKeepsAFileFromOpening() {
    const DatabaseFile file;
    file.execute({u"CREATE TABLE t (a TEXT(50))"_s});
    const auto opening = [&](const QString& path, const QString& password) {
        return kindOf([&] { Connection(50ms).open(DatabaseFile::connectionString(path, password)); });
    };
    QVERIFY(opening(file.path() + u"x"_s, file.password()) == Kind::missing);
    QVERIFY(opening(file.folder(), file.password()) == Kind::missing);
    // Nothing tells a file with a password from one that is none.
    const Kind unreadable = file.password().isEmpty() ? Kind::notADatabase : Kind::wrongPassword;
    QVERIFY(opening(file.path(), u"yanlış"_s) == Kind::wrongPassword);
    const QString noise = file.folder() + u"/noise.data"_s;
    QFile made(noise);
    QVERIFY(made.open(QIODevice::WriteOnly));
    made.write(QByteArray(8192, 'x'));
    made.close();
    QVERIFY(opening(noise, file.password()) == unreadable);
    RawDatabase other(file.path(), file.password());
    QVERIFY(other.run(u"PRAGMA journal_mode = DELETE"_s));
    QVERIFY(other.run(u"BEGIN EXCLUSIVE"_s));
    QVERIFY(opening(file.path(), file.password()) == Kind::busy);
}

void TestFailures::tellsDamageWhileReading() {
    const DatabaseFile file;
    file.execute(
        {u"CREATE TABLE t (no COUNTER, a TEXT(50))"_s,
         u"INSERT INTO t (a) WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 500) "
         "SELECT hex(zeroblob(200)) FROM n"_s});
    file.damage();
    Connection connection;
    connection.open(file.connectionString());
    Recordset set;
    set.open(u"select * from t order by a"_s, connection);
    QVERIFY(kindOf([&] { set.atEnd(); }) == Kind::damaged);
}

QTEST_GUILESS_MAIN(TestFailures)
#include "test_failures.moc"
