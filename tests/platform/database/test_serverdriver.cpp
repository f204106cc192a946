#include <QSqlDriver>
#include <QSqlField>
#include <QSqlRecord>
#include <QTcpServer>
#include <QtTest>
#include <limits>
#include <memory>

#include "rows.h"
#include "serverclient.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct ConnectRow {
    QString hosts = ServerCluster::host();
    QString options = {};
    QString password = ServerCluster::password();
    QString database = {};  ///< empty for the test's own
    QString code = {};      ///< of the refusal; nothing when it connects
    QString words = {};     ///< of the refusal
    QString asked = {};     ///< a statement for the connection
    QString answer = {};    ///< what that gives
    int longest = 10000;    ///< milliseconds that it may take
};

struct CellRow {
    QString expression;
    QVariant value;
};

struct BindRow {
    QString sql;
    QVariant value;
    QVariant answer;
};

struct PlacesRow {
    QString sql;
    int count;
    QString answer;  ///< with 7, 8 … in the places
};

struct ErrorRow {
    QString sql;
    bool atPrepare;  ///< or not before it runs
    QString code;
    QString words;
};

}  // namespace

Q_DECLARE_METATYPE(ConnectRow)
Q_DECLARE_METATYPE(CellRow)
Q_DECLARE_METATYPE(BindRow)
Q_DECLARE_METATYPE(PlacesRow)
Q_DECLARE_METATYPE(ErrorRow)

/// The driver for a database server by itself, as the toolkit uses it.
class TestServerDriver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QVERIFY(openWithTable(m_client, m_database)); }
    void cleanupTestCase() { m_client.reset(); }

    void connects_data();
    void connects();
    void readsCells_data();
    void readsCells();
    void bindsValues_data();
    void bindsValues();
    void refusesValues();
    void numbersPlaces_data();
    void numbersPlaces();
    void reportsErrors_data();
    void reportsErrors();
    void describesRows();
    void goesInAnyDirection();
    void runsTransactions();
    void carriesMuch();
    void followsTables();
    void keepsNoticesToItself();

private:
    QString m_database;
    std::unique_ptr<ServerClient> m_client;  ///< open
};

void TestServerDriver::initTestCase() {
    if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
        QSKIP(qPrintable(missing));
    QVERIFY(cluster().start());
    m_database = cluster().createDatabase();
    QVERIFY(!m_database.isEmpty());
    cluster().rows(m_database, u"CREATE DATABASE yalnizoku OWNER kasa"_s);
    cluster().rows(m_database, u"ALTER DATABASE yalnizoku SET default_transaction_read_only = on"_s);
}

void TestServerDriver::connects_data() {
    const QString here = ServerCluster::host();
    const QString wrong = u"yanlış"_s;
    const QString readOnly = u"yalnizoku"_s;
    const auto option = [](const QString& text, const QString& code, const QString& words) {
        return ConnectRow{.options = text, .code = code, .words = words};
    };
    const auto asking = [](const QString& options, const QString& setting, const QString& answer) {
        return ConnectRow{.options = options, .asked = u"SHOW "_s + setting, .answer = answer};
    };
    addRows<ConnectRow>({
        {"right", {}},
        {"wrong password",
         {.password = wrong,
          .code = u"28P01"_s,
          .words = u"password authentication failed for user \"kasa\""_s}},
        {"no such database",
         {.database = u"yok"_s, .code = u"3D000"_s, .words = u"database \"yok\" does not exist"_s}},
        {"a server that isn't there", {.hosts = u"127.0.0.2"_s, .code = u"08001"_s}},
        {"the first of two isn't there", {.hosts = u"127.0.0.2, "_s + here}},
        {"the first stands still", {.hosts = u"127.0.0.3,"_s + here, .options = u"connect_timeout=0.2"_s}},
        {"only one, which stands still",
         {.hosts = u"127.0.0.3"_s,
          .options = u"connect_timeout=0.2"_s,
          .code = u"08001"_s,
          .words = u"sunucu yanıt vermiyor"_s}},
        {"three that stand still, within the deadline",
         {.hosts = u"127.0.0.3,127.0.0.3,127.0.0.3"_s,
          .options = u"connect_timeout=2;KOVANIX_DEADLINE=2000"_s,
          .code = u"08001"_s,
          .longest = 4000}},
        {"a refusal before one that isn't there",
         {.hosts = here + u",127.0.0.2"_s, .password = wrong, .code = u"28P01"_s}},
        {"a refusal behind one that isn't there",
         {.hosts = u"127.0.0.2,"_s + here, .password = wrong, .code = u"28P01"_s}},
        {"takes no writes", {.database = readOnly, .code = u"08001"_s}},
        {"takes no writes, which is wanted",
         {.options = u"target_session_attrs=any"_s, .database = readOnly}},
        {"unknown option", option(u"yok=1"_s, u"08001"_s, u"invalid connection option \"yok\""_s)},
        {"option without a value", option(u"sslmode"_s, {}, u"sslmode"_s)},
        {"no deadline", option(u"KOVANIX_DEADLINE=0"_s, {}, u"KOVANIX_DEADLINE=0"_s)},
        {"deadline that is no number", option(u"KOVANIX_DEADLINE=x"_s, {}, u"KOVANIX_DEADLINE=x"_s)},
        {"semicolon in an option",
         asking(u"; application_name=a\\;b=c ;"_s, u"application_name"_s, u"a;b=c "_s)},
        {"settings", asking(u"options=-c lock_timeout=4321 -c jit=off;sslmode=disable"_s, u"lock_timeout"_s,
                            u"4321ms"_s)},
        {"name", asking({}, u"application_name"_s, u"kovanix"_s)},
        {"encoding", asking({}, u"client_encoding"_s, u"UTF8"_s)},
    });
}

void TestServerDriver::connects() {
    QFETCH(const ConnectRow, row);
    // Connections to it are taken by the system, but nobody reads them.
    QTcpServer standing;
    QVERIFY(standing.listen(QHostAddress(u"127.0.0.3"_s), static_cast<quint16>(cluster().port())));
    ServerClient client(row.database.isEmpty() ? m_database : row.database);
    client->setHostName(row.hosts);
    client->setPassword(row.password);
    client->setConnectOptions(row.options);
    const bool opens = row.code.isEmpty() && row.words.isEmpty();
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(client->open(), opens);
    QVERIFY2(timer.elapsed() < row.longest, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(client->isOpen(), opens);
    QCOMPARE(client->lastError().nativeErrorCode(), row.code);
    QVERIFY(opens || !client->lastError().databaseText().isEmpty());
    if (!row.words.isEmpty())
        QCOMPARE(client->lastError().databaseText(), row.words);
    if (!row.asked.isEmpty())
        QCOMPARE(client.value(row.asked).toString(), row.answer);
}

void TestServerDriver::readsCells_data() {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    addRows<CellRow>({
        {"int2", {u"(-32768)::int2"_s, -32768LL}},
        {"int4", {u"(-2147483648)::int4"_s, -2147483648LL}},
        {"int8", {u"9223372036854775807"_s, 9223372036854775807LL}},
        {"oid", {u"4294967295::oid"_s, 4294967295LL}},
        {"true", {u"true"_s, 1LL}},
        {"false", {u"false"_s, 0LL}},
        {"float8", {u"0.1::float8 + 0.2::float8"_s, 0.1 + 0.2}},
        {"largest float8", {u"1.7976931348623157e308::float8"_s, 1.7976931348623157e308}},
        {"smallest float8", {u"'5e-324'::float8"_s, 5e-324}},
        {"infinite", {u"'-Infinity'::float8"_s, -infinity}},
        {"float4", {u"0.1::float4"_s, 0.1}},
        {"numeric", {u"-12.50::numeric"_s, -12.5}},
        {"sum of whole numbers", {u"(SELECT sum(i) FROM generate_series(1, 3::int8) i)"_s, 6.0}},
        {"text", {u"'şĞı € 😀'::text"_s, u"şĞı € 😀"_s}},
        {"empty text", {u"''::text"_s, u""_s}},
        {"citext", {u"'İstanbul'::citext"_s, u"İstanbul"_s}},
        {"varchar", {u"'a'::varchar(5)"_s, u"a"_s}},
        {"char", {u"'a'::char(3)"_s, u"a  "_s}},
        {"name", {u"'a'::name"_s, u"a"_s}},
        {"literal", {u"'a'"_s, u"a"_s}},
        {"date", {u"'2026-01-02'::date"_s, u"2026-01-02"_s}},
        {"moment", {u"'2026-03-29 03:30:00'::timestamp"_s, u"2026-03-29 03:30:00"_s}},
        {"bytes", {u"'\\x00ff'::bytea"_s, u"\\x00ff"_s}},
        {"list", {u"ARRAY[1, NULL]"_s, u"{1,NULL}"_s}},
        {"no number", {u"NULL::int8"_s, {}}},
        {"no text", {u"NULL::citext"_s, {}}},
    });
}

void TestServerDriver::readsCells() {
    QFETCH(const CellRow, row);
    // Rows of a prepared statement, and many, come in the server's own form where all of their columns can.
    enum class Manner { text, prepared, many };
    for (const char* others : {"", ", 1.5::numeric"}) {
        for (const Manner manner : {Manner::text, Manner::prepared, Manner::many}) {
            QSqlQuery query(**m_client);
            const QString sql = u"SELECT "_s + row.expression + QLatin1StringView(others);
            if (manner == Manner::many) {
                prepareLate(query);
                query.result()->handle().value<engine::RowCursor*>()->expectManyRows();
            }
            QVERIFY(manner == Manner::text ? query.exec(sql) : query.prepare(sql) && query.exec());
            QVERIFY(query.next());
            QCOMPARE(query.value(0), row.value);
            QCOMPARE(query.isNull(0), !row.value.isValid());
        }
    }
}

void TestServerDriver::bindsValues_data() {
    const QDateTime moment(QDate(2026, 1, 2), QTime(3, 4, 5));
    addRows<BindRow>({
        {"whole into a whole", {u"SELECT ?::int4"_s, 5, 5LL}},
        {"whole into a text", {u"SELECT ?::citext"_s, 5, u"5"_s}},
        {"whole into a real", {u"SELECT ?::float8"_s, 5, 5.0}},
        {"whole beyond its neighbour", {u"SELECT ? - 1"_s, 5000000000LL, 4999999999LL}},
        {"fraction with a whole neighbour", {u"SELECT (? + 1)::float8"_s, 1.5, 2.5}},
        {"whole double with a whole neighbour", {u"SELECT ? + 1"_s, 2.0, 3LL}},
        {"large double with a whole neighbour", {u"SELECT (? + 1)::float8"_s, 1e300, 1e300}},
        {"fraction into a text", {u"SELECT length(?::text)"_s, 1.25, 4LL}},
        {"every bit of a double", {u"SELECT ?::float8"_s, 0.1 + 0.2, 0.1 + 0.2}},
        {"yes", {u"SELECT ?::int4"_s, true, 1LL}},
        {"text", {u"SELECT ?::citext"_s, u"çok 'ucuz' \\ 😀"_s, u"çok 'ucuz' \\ 😀"_s}},
        {"text that ignores case", {u"SELECT 'SÜt'::citext = ?"_s, u"sÜT"_s, 1LL}},
        {"empty text", {u"SELECT ?::citext IS NULL"_s, u""_s, 0LL}},
        {"null", {u"SELECT ?::int4 IS NULL"_s, {}, 1LL}},
        {"null text", {u"SELECT ?::citext IS NULL"_s, QString(), 1LL}},
        {"half a sign", {u"SELECT length(?)"_s, QString(QChar(0xd83d)), 1LL}},
        {"bytes", {u"SELECT length(?::bytea)"_s, QByteArray("\0\xff", 2), 2LL}},
        {"moment", {u"SELECT ?::text"_s, moment, u"2026-01-02T03:04:05.000"_s}},
    });
}

void TestServerDriver::bindsValues() {
    QFETCH(const BindRow, row);
    for (const bool late : {false, true}) {
        QSqlQuery query(**m_client);
        if (late)
            prepareLate(query);
        QVERIFY2(query.prepare(row.sql), qPrintable(query.lastError().text()));
        for (int i = 0; i < 2; ++i) {
            query.addBindValue(row.value);
            QVERIFY2(query.exec() && query.next(), qPrintable(query.lastError().text()));
            QCOMPARE(query.value(0), row.answer);
        }
    }
}

void TestServerDriver::refusesValues() {
    QSqlQuery query(**m_client);
    QVERIFY(query.prepare(u"INSERT INTO t (ad) VALUES (?)"_s));
    QVERIFY(!query.exec());
    QCOMPARE(query.lastError().driverText(), u"Parameter count mismatch"_s);
    query.addBindValue(QString(u"a\0b"_s));
    QVERIFY(!query.exec());
    QCOMPARE(query.lastError().nativeErrorCode(), u"22021"_s);
    QVERIFY(!query.exec(u"SELECT 1 -- \0"_s));
    QVERIFY(!query.prepare(u"SELECT '\0'"_s));
    QCOMPARE(query.lastError().nativeErrorCode(), u"22021"_s);
    QVERIFY(!query.prepare(u"SELECT 1 IN (?"_s + u",?"_s.repeated(65535) + u")"_s));
    QCOMPARE(query.lastError().nativeErrorCode(), u"54023"_s);
    QCOMPARE(m_client->value(u"SELECT count(*) FROM t"_s), QVariant(0LL));
}

void TestServerDriver::numbersPlaces_data() {
    addRows<PlacesRow>({
        {"two", {u"SELECT ?::int + 10*?::int"_s, 2, u"87"_s}},
        {"literal", {u"SELECT '?'||?"_s, 1, u"?7"_s}},
        {"literal with a quote", {u"SELECT 'a''?'||?"_s, 1, u"a'?7"_s}},
        {"backslash in a literal", {u"SELECT '\\'||?||'?'"_s, 1, u"\\7?"_s}},
        {"escaped literal", {u"SELECT E'\\'?\\\\'||?||e'?'"_s, 1, u"'?\\7?"_s}},
        {"name that ends in e", {u"SELECT true AND/**/FALSE::text='?'OR ?='7'"_s, 1, u"1"_s}},
        {"quoted name", {u"SELECT \"?\"\"?\"||? FROM (SELECT 'x' AS \"?\"\"?\") q"_s, 1, u"x7"_s}},
        {"comment to the line's end", {u"SELECT -- '?\n ?"_s, 1, u"7"_s}},
        {"comments in each other", {u"SELECT /* ? /* ' */ ? */ ?"_s, 1, u"7"_s}},
        {"dollar quote", {u"SELECT $$:a ' ?$$||?"_s, 1, u":a ' ?7"_s}},
        {"dollar quote with a tag", {u"SELECT $ş1$ $$ ? $ş1$||?"_s, 1, u" $$ ? 7"_s}},
        {"dollar in a name", {u"SELECT a$b$||?||a$b$ FROM (SELECT 'x' AS a$b$) q"_s, 1, u"x7x"_s}},
        {"cast and name", {u"SELECT 'a:b'::text||?::text"_s, 1, u"a:b7"_s}},
        {"literal that is never closed", {u"SELECT ? || '?"_s, 1, {}}},
        {"comment that is never closed", {u"SELECT ? /* ?"_s, 1, {}}},
        {"escape at the end", {u"SELECT ? || E'\\"_s, 1, {}}},
        {"dollar at the end", {u"SELECT ? || $"_s, 1, {}}},
    });
}

void TestServerDriver::numbersPlaces() {
    QFETCH(const PlacesRow, row);
    QSqlQuery query(**m_client);
    QCOMPARE(query.prepare(row.sql), !row.answer.isEmpty());
    if (row.answer.isEmpty())
        return;
    for (int place = 0; place < row.count; ++place)
        query.addBindValue(QString::number(7 + place));
    QVERIFY2(query.exec() && query.next(), qPrintable(query.lastError().text()));
    QCOMPARE(query.value(0).toString(), row.answer);
}

void TestServerDriver::reportsErrors_data() {
    addRows<ErrorRow>({
        {"no such table", {u"SELECT * FROM yok"_s, true, u"42P01"_s, u"relation \"yok\" does not exist"_s}},
        {"no such column", {u"SELECT yok FROM t"_s, true, u"42703"_s, u"column \"yok\" does not exist"_s}},
        {"syntax", {u"SELEC 1"_s, true, u"42601"_s, u"syntax error at or near \"SELEC\""_s}},
        {"two statements",
         {u"SELECT 1; DROP TABLE t"_s, true, u"42601"_s,
          u"cannot insert multiple commands into a prepared statement"_s}},
        {"twice the same",
         {u"INSERT INTO t (ad) VALUES ('SÜT'), ('sÜt')"_s, false, u"23505"_s,
          u"duplicate key value violates unique constraint \"t_ad_key\""_s}},
        {"in the middle of the rows",
         {u"SELECT 1 / (3 - i) FROM generate_series(1, 5) i"_s, false, u"22012"_s, u"division by zero"_s}},
        {"more lines than one",
         {u"DO $$BEGIN RAISE EXCEPTION E'bir\\niki' USING ERRCODE = 'KV001'; END$$"_s, false, u"KV001"_s,
          u"bir"_s}},
    });
}

void TestServerDriver::reportsErrors() {
    QFETCH(const ErrorRow, row);
    QSqlQuery query(**m_client);
    const auto isReported = [&] {
        return query.lastError().nativeErrorCode() == row.code &&
               query.lastError().databaseText() == row.words && !query.isActive();
    };
    QVERIFY(!query.exec(row.sql));
    QVERIFY2(isReported(), qPrintable(query.lastError().text()));
    QCOMPARE(query.prepare(row.sql), !row.atPrepare);
    QVERIFY(!row.atPrepare || isReported());
    QVERIFY(!query.exec());
    QVERIFY(isReported());
    prepareLate(query);
    QVERIFY(query.prepare(row.sql) && !query.exec());
    QVERIFY(isReported());
    QCOMPARE(m_client->value(u"SELECT count(*) FROM t"_s), QVariant(0LL));
}

void TestServerDriver::describesRows() {
    QSqlQuery query(**m_client);
    QVERIFY(query.exec(u"INSERT INTO t (ad, fiyat) VALUES ('a', 1), ('b', 2), ('c', NULL) RETURNING no"_s));
    QVERIFY(query.isSelect());
    QCOMPARE(query.numRowsAffected(), 3);
    QCOMPARE(query.size(), 3);
    QVERIFY(query.exec(u"UPDATE t SET adet = 1 WHERE fiyat > 0"_s));
    QVERIFY(!query.isSelect() && !query.next());
    QCOMPARE(query.numRowsAffected(), 2);
    QCOMPARE(query.record().count(), 0);
    QVERIFY(query.exec(u"SELECT no, ad AS \"Ürün\", fiyat FROM t"_s));
    const QSqlRecord record = query.record();
    QCOMPARE(record.count(), 3);
    QCOMPARE(record.field(0).metaType(), QMetaType(QMetaType::LongLong));
    QCOMPARE(record.field(1).metaType(), QMetaType(QMetaType::QString));
    QCOMPARE(record.field(2).metaType(), QMetaType(QMetaType::Double));
    QCOMPARE(record.fieldName(1), u"Ürün"_s);
    QCOMPARE((*m_client)->driver()->escapeIdentifier(u"a\"b"_s, QSqlDriver::FieldName), u"\"a\"\"b\""_s);
}

void TestServerDriver::goesInAnyDirection() {
    QSqlQuery query(**m_client);
    QVERIFY(query.exec(u"SELECT generate_series(1, 3)"_s));
    const auto number = [&query] { return query.value(0).toInt(); };
    QVERIFY(query.last() && number() == 3);
    QVERIFY(!query.next() && !query.next());
    QVERIFY(query.previous() && number() == 3);
    QVERIFY(query.first() && number() == 1);
    QVERIFY(query.seek(1) && number() == 2);
    QVERIFY(!query.seek(3));
    QVERIFY(query.exec(u"SELECT 1 WHERE false"_s));
    QVERIFY(!query.first() && !query.last() && !query.next());
    query.setForwardOnly(true);
    QVERIFY(query.exec(u"SELECT generate_series(1, 2), 'a'"_s));
    auto& cursor = *query.result()->handle().value<engine::RowCursor*>();
    QVERIFY(cursor.nextRow() && cursor.nextRow());
    QCOMPARE(cursor.cell(0).whole, 2);
    QCOMPARE(cursor.cell(1).bytes, "a");
    QCOMPARE(cursor.cell(2).type, engine::Cell::Type::null);
    QVERIFY(!cursor.nextRow());
    query.finish();
    QVERIFY(!cursor.nextRow());
}

void TestServerDriver::runsTransactions() {
    ServerClient& client = *m_client;
    const QString insert = u"INSERT INTO t (ad) VALUES ('a') RETURNING 1"_s;
    QVERIFY(client->transaction() && client.value(insert) == 1 && client->rollback());
    QVERIFY(client->transaction() && client.value(insert) == 1 && client->commit());
    QVERIFY(client->transaction());
    QCOMPARE(client.value(insert), QVariant(u"23505"_s));
    QCOMPARE(client.value(u"SELECT 1"_s), QVariant(u"25P02"_s));
    // The server takes the end of a transaction that has failed for a success.
    QVERIFY(!client->commit());
    QCOMPARE(client->lastError().nativeErrorCode(), u"25P02"_s);
    QCOMPARE(client.value(u"SELECT count(*) FROM t"_s), QVariant(1LL));
}

void TestServerDriver::carriesMuch() {
    // More than both sides' buffers hold.
    QSqlQuery query(**m_client);
    const QString much = u"ş"_s.repeated(8'000'000);
    QVERIFY(query.prepare(u"SELECT ?::text, generate_series(1, 2)"_s));
    query.addBindValue(much);
    QVERIFY(query.exec() && query.next() && query.next());
    QVERIFY(query.value(0) == much);
}

void TestServerDriver::followsTables() {
    ServerClient& client = *m_client;
    QVERIFY(client.value(u"INSERT INTO t (ad) VALUES ('a') RETURNING 1"_s) == 1);
    QSqlQuery query(*client);
    QVERIFY(query.prepare(u"SELECT * FROM t WHERE no = ?"_s));
    const auto columns = [&query] {
        query.addBindValue(1);
        return query.exec() ? query.record().count() : -1;
    };
    QCOMPARE(columns(), 4);
    client.value(u"ALTER TABLE t ADD COLUMN yeni text"_s);
    QCOMPARE(columns(), 5);
    client.value(u"ALTER TABLE t ADD COLUMN baska text"_s);
    QVERIFY(client->transaction());
    QCOMPARE(columns(), -1);
    QCOMPARE(query.lastError().nativeErrorCode(), u"0A000"_s);
    QVERIFY(client->rollback());
    QCOMPARE(columns(), 6);
}

void TestServerDriver::keepsNoticesToItself() {
    QTemporaryFile file;
    QVERIFY(file.open());
    const int errors = ::dup(STDERR_FILENO);
    ::dup2(file.handle(), STDERR_FILENO);
    const QVariant answer = m_client->value(u"DROP TABLE IF EXISTS hic"_s);
    ::dup2(errors, STDERR_FILENO);
    ::close(errors);
    QCOMPARE(answer, QVariant(QString()));
    QCOMPARE(file.size(), 0);
}

QTEST_GUILESS_MAIN(TestServerDriver)
#include "test_serverdriver.moc"
