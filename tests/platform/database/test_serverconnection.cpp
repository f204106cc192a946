#include <signal.h>

#include <QElapsedTimer>
#include <QtTest>
#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include "countingproxy.h"
#include "rows.h"
#include "serverclient.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct TripRow {
    int trips;
    std::function<bool(QSqlDatabase&, QSqlQuery& kept)> step;
};

struct LossRow {
    std::function<void(CountingProxy&)> before;  ///< ahead of the statement
    QString sql = u"SELECT 1"_s;
};

struct GivenUpRow {
    enum class Kind { text, prepared, late };
    Kind kind;
    QString sql;
};

struct OrderRow {
    std::function<void(std::unique_ptr<ServerClient>&, std::unique_ptr<QSqlQuery>&)> end;
};

}  // namespace

Q_DECLARE_METATYPE(TripRow)
Q_DECLARE_METATYPE(LossRow)
Q_DECLARE_METATYPE(GivenUpRow)
Q_DECLARE_METATYPE(OrderRow)

/// What a connection to a database server costs, and how it ends.
class TestServerConnection : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init() { QVERIFY(openWithTable(m_client, m_database)); }
    void cleanupTestCase() { m_client.reset(); }

    void countsRoundTrips_data();
    void countsRoundTrips();
    void freesStatements();
    void freesStatementsOfFailedTransactions();

    void noticesLoss_data();
    void noticesLoss();
    void givesUpStandingServer_data();
    void givesUpStandingServer();
    void whatWasGivenUpIsNotCarriedOut_data();
    void whatWasGivenUpIsNotCarriedOut();
    void whatCameTooLateIsSentAgain();
    void waitsForLivingServer_data();
    void waitsForLivingServer();
    void refusesCopies();
    void endsInAnyOrder_data();
    void endsInAnyOrder();

private:
    QString m_database;
    std::unique_ptr<ServerClient> m_client;  ///< open
};

void TestServerConnection::initTestCase() {
    if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
        QSKIP(qPrintable(missing));
    QVERIFY(cluster().start({u"log_connections=on"_s, u"restart_after_crash=on"_s}));
    m_database = cluster().createDatabase();
    QVERIFY(!m_database.isEmpty());
    // Ends the server's process that runs it, in mid-statement.
    cluster().rows(m_database,
                   u"CREATE FUNCTION crash() RETURNS text LANGUAGE plpgsql SECURITY DEFINER AS "
                   "$$BEGIN COPY (SELECT 1) TO PROGRAM 'kill -9 $PPID'; RETURN 'alive'; END$$"_s);
}

void TestServerConnection::countsRoundTrips_data() {
    const auto run = [](QSqlDatabase& database, const QString& sql) { return QSqlQuery(database).exec(sql); };
    addRows<TripRow>({
        {"text", {1, [run](QSqlDatabase& database, QSqlQuery&) { return run(database, u"SELECT 1"_s); }}},
        {"kept", {1, [](QSqlDatabase&, QSqlQuery& kept) { return kept.exec() && kept.next(); }}},
        {"prepared and run",
         {2,
          [](QSqlDatabase& database, QSqlQuery&) {
              QSqlQuery query(database);
              return query.prepare(u"SELECT ad FROM t WHERE no = 1"_s) && query.exec();
          }}},
        {"prepared late",
         {1,
          [](QSqlDatabase& database, QSqlQuery&) {
              QSqlQuery query(database);
              prepareLate(query);
              return query.prepare(u"SELECT ad FROM t WHERE no = 1"_s) && query.exec();
          }}},
        {"freed before another",
         {1,
          [run](QSqlDatabase& database, QSqlQuery& kept) {
              kept = QSqlQuery(database);
              return run(database, u"SELECT 1"_s);
          }}},
        {"transaction",
         {3,
          [run](QSqlDatabase& database, QSqlQuery&) {
              return database.transaction() && run(database, u"INSERT INTO t (ad) VALUES ('b')"_s) &&
                     database.commit();
          }}},
        {"number of another kind, which stays",
         {3,
          [](QSqlDatabase&, QSqlQuery& kept) {
              for (int i = 0; i < 2; ++i) {
                  kept.bindValue(0, 1.5);
                  if (!kept.exec())
                      return false;
              }
              return true;
          }}},
    });
}

void TestServerConnection::countsRoundTrips() {
    QFETCH(const TripRow, row);
    CountingProxy proxy(cluster().port());
    ServerClient client(m_database);
    client->setPort(proxy.port());
    QVERIFY(client->open());
    QVERIFY(client.value(u"INSERT INTO t (ad) VALUES ('a') RETURNING 1"_s) == 1);
    QSqlQuery kept(*client);
    QVERIFY(kept.prepare(u"SELECT ad FROM t WHERE no = ?"_s));
    kept.addBindValue(1);
    QVERIFY(kept.exec());
    proxy.setDelay(5000);  // two sends that don't wait for an answer in between come together
    proxy.takeTrips();
    QVERIFY(row.step(*client, kept));
    QCOMPARE(proxy.takeTrips(), row.trips);
}

void TestServerConnection::freesStatements() {
    const QString count = u"SELECT count(*) FROM pg_prepared_statements"_s;
    {
        std::vector<QSqlQuery> queries;
        for (int i = 0; i < 3; ++i) {
            queries.emplace_back(**m_client);
            QVERIFY(queries.back().prepare(u"SELECT ?::int"_s));
        }
        QVERIFY(queries[1].prepare(u"SELECT ?::text"_s));
        QCOMPARE(m_client->value(count), QVariant(3LL));
        QVERIFY(queries[2].exec(u"SELECT 1"_s));
        QCOMPARE(m_client->value(count), QVariant(2LL));
    }
    // Stands by itself: this one doesn't run in a transaction with others.
    QVERIFY(QSqlQuery(**m_client).exec(u"VACUUM t"_s));
    QCOMPARE(m_client->value(count), QVariant(0LL));
}

void TestServerConnection::freesStatementsOfFailedTransactions() {
    ServerClient& client = *m_client;
    QVERIFY(client->transaction());
    {
        QSqlQuery query(*client);
        QVERIFY(query.prepare(u"SELECT ?::int"_s));
        QCOMPARE(client.value(u"SELECT yok"_s), QVariant(u"42703"_s));
    }
    QCOMPARE(client.value(u"SELECT 1"_s), QVariant(u"25P02"_s));
    QVERIFY(client->rollback());
    QCOMPARE(client.value(u"SELECT count(*) FROM pg_prepared_statements"_s), QVariant(0LL));
}

void TestServerConnection::noticesLoss_data() {
    const QString database = m_database;
    addRows<LossRow>({
        {"network cut", {[](CountingProxy& proxy) { proxy.cut(); }}},
        {"network cut before the answer", {[](CountingProxy& proxy) { proxy.cutNextAnswer(); }}},
        {"connection ended by the server", {[database](CountingProxy&) {
             cluster().rows(database,
                            u"SELECT pg_terminate_backend(pid) FROM pg_stat_activity "
                            "WHERE usename = 'kasa'"_s);
         }}},
        {"ended in mid-statement",
         {[](CountingProxy&) {}, u"SELECT pg_terminate_backend(pg_backend_pid()), pg_sleep(30)"_s}},
        {"killed in mid-statement", {[](CountingProxy&) {}, u"SELECT crash()"_s}},
        {"server killed", {[](CountingProxy&) { cluster().kill(); }}},
        {"server stopped", {[](CountingProxy&) { cluster().stop(); }}},
    });
}

void TestServerConnection::noticesLoss() {
    QFETCH(const LossRow, row);
    CountingProxy proxy(cluster().port());
    ServerClient client(m_database);
    client->setPort(proxy.port());
    QVERIFY(client->open());
    QSqlQuery kept(*client);
    QVERIFY(kept.prepare(u"SELECT generate_series(1, 2)"_s) && kept.exec() && kept.next());
    row.before(proxy);
    QSqlQuery query(*client);
    QVERIFY(!query.exec(row.sql));
    QCOMPARE(query.lastError().nativeErrorCode(), u"08006"_s);
    QCOMPARE(query.lastError().databaseText(), u"bağlantı kesildi"_s);
    QVERIFY(!client->isOpen());
    // What has been read is still there.
    QVERIFY(kept.next() && kept.value(0) == 2 && !kept.next());
    QVERIFY(!kept.exec());
    QCOMPARE(kept.lastError().nativeErrorCode(), u"08006"_s);
    QVERIFY(!client->transaction());
    QCOMPARE(client->lastError().nativeErrorCode(), u"08006"_s);
    if (!cluster().isRunning())
        QVERIFY(cluster().restart());
    QCOMPARE(proxy.connections(), 1);
    QTRY_VERIFY(client->open());
    QVERIFY(kept.exec() && kept.next() && kept.value(0) == 1);
}

void TestServerConnection::givesUpStandingServer_data() {
    addRows<QString>({{"that has all of the statement", u"SELECT 1"_s},
                      {"that hasn't", u"SELECT '"_s + u"x"_s.repeated(16'000'000) + u"'"_s}});
}

void TestServerConnection::givesUpStandingServer() {
    QFETCH(const QString, row);
    cluster().pause();
    QElapsedTimer timer;
    timer.start();
    QSqlQuery query(**m_client);
    QVERIFY(!query.exec(row));
    const qint64 passed = timer.elapsed();
    cluster().resume();
    QCOMPARE(query.lastError().nativeErrorCode(), u"08007"_s);
    QCOMPARE(query.lastError().databaseText(), u"sunucu yanıt vermiyor"_s);
    QVERIFY(!(*m_client)->isOpen());
    QVERIFY2(passed >= serverDeadline * 9 / 10 && passed < serverDeadline * 2,
             qPrintable(QString::number(passed)));
}

void TestServerConnection::whatWasGivenUpIsNotCarriedOut_data() {
    using Kind = GivenUpRow::Kind;
    addRows<GivenUpRow>({{"a text", {Kind::text, u" insert into t (adet) values (2)"_s}},
                         {"prepared", {Kind::prepared, u"UPDATE t SET adet = 2"_s}},
                         {"prepared late", {Kind::late, u"DELETE FROM t"_s}}});
}

/// What a standing server holds it gets to when it goes on.
void TestServerConnection::whatWasGivenUpIsNotCarriedOut() {
    QFETCH(const GivenUpRow, row);
    ServerClient& client = *m_client;
    QVERIFY(QSqlQuery(*client).exec(u"INSERT INTO t (adet) VALUES (1)"_s));
    const QVariant process = client.value(u"SELECT pg_backend_pid()"_s);
    QSqlQuery query(*client);
    if (row.kind == GivenUpRow::Kind::late)
        prepareLate(query);
    if (row.kind != GivenUpRow::Kind::text)
        QVERIFY(query.prepare(row.sql));
    cluster().pause();
    const bool done = row.kind == GivenUpRow::Kind::text ? query.exec(row.sql) : query.exec();
    cluster().resume();
    QVERIFY(!done);
    QTRY_VERIFY(client->open());
    QTRY_COMPARE(client.value(u"SELECT count(*) FROM pg_stat_activity WHERE pid = %1"_s.arg(process.toInt())),
                 QVariant(0LL));
    QCOMPARE(client.value(u"SELECT string_agg(adet::text, ' ') FROM t"_s), QVariant(u"1"_s));
}

/// The server's other processes answer meanwhile.
void TestServerConnection::whatCameTooLateIsSentAgain() {
    ServerClient& client = *m_client;
    QVERIFY(QSqlQuery(*client).exec(u"INSERT INTO t (adet) VALUES (1)"_s));
    const auto process = static_cast<pid_t>(client.value(u"SELECT pg_backend_pid()"_s).toInt());
    QCOMPARE(::kill(process, SIGSTOP), 0);
    std::jthread goesOn([process] {
        std::this_thread::sleep_for(std::chrono::milliseconds(serverDeadline * 5 / 8));
        ::kill(process, SIGCONT);
    });
    QVERIFY(QSqlQuery(*client).exec(u"INSERT INTO t (adet) VALUES (2)"_s));
    QCOMPARE(client.value(u"SELECT string_agg(adet::text, ' ') FROM t"_s), QVariant(u"1 2"_s));
    QVERIFY(cluster().log().contains("The statement came too late."));
}

void TestServerConnection::waitsForLivingServer_data() {
    addRows<QString>({{"that takes another connection", u"ALTER ROLE kasa CONNECTION LIMIT -1"_s},
                      {"that takes no further connection", u"ALTER ROLE kasa CONNECTION LIMIT 1"_s}});
}

void TestServerConnection::waitsForLivingServer() {
    QFETCH(const QString, row);
    QSignalSpy signs((*m_client)->driver(), &QSqlDriver::notification);
    QCOMPARE(m_client->value(u"SELECT 1"_s), QVariant(1LL));
    QCOMPARE(signs.size(), 0);
    cluster().rows(m_database, row);
    const auto connections = [] { return cluster().log().count("connection received"); };
    const qsizetype before = connections();
    // Half as long again as it takes until the server is asked.
    const QVariant answer = m_client->value(u"SELECT 1 FROM pg_sleep(%1)"_s.arg(serverDeadline * 0.0005625));
    const qsizetype after = connections();
    cluster().rows(m_database, u"ALTER ROLE kasa CONNECTION LIMIT -1"_s);
    QCOMPARE(answer, QVariant(1LL));
    QCOMPARE(after, before + 1);
    // At the wait's beginning, and when the server was asked.
    QVERIFY(signs.size() >= 1 && signs.size() <= 2);
}

void TestServerConnection::refusesCopies() {
    QSqlQuery query(**m_client);
    QVERIFY(!query.exec(u"COPY t FROM STDIN"_s));
    QCOMPARE(query.lastError().databaseText(), u"Rows can't be copied through this driver."_s);
    QVERIFY(!(*m_client)->isOpen());
}

void TestServerConnection::endsInAnyOrder_data() {
    using ClientPointer = std::unique_ptr<ServerClient>;
    using QueryPointer = std::unique_ptr<QSqlQuery>;
    addRows<OrderRow>({
        {"query first", {[](ClientPointer& client, QueryPointer& query) {
             query.reset();
             client.reset();
         }}},
        {"connection first", {[](ClientPointer& client, QueryPointer& query) {
             client.reset();
             QVERIFY(!query->exec());
             query.reset();
         }}},
        {"closed, used, then the query", {[](ClientPointer& client, QueryPointer& query) {
             (*client)->close();
             QVERIFY(query->next() && !query->next() && !query->exec());
             QCOMPARE(query->lastError().nativeErrorCode(), u"08006"_s);
             query.reset();
         }}},
        {"closed and opened", {[](ClientPointer& client, QueryPointer& query) {
             (*client)->close();
             QVERIFY((*client)->open());
             QVERIFY(query->exec() && query->next());
             QCOMPARE(client->value(u"SELECT count(*) FROM pg_prepared_statements"_s), QVariant(1LL));
         }}},
        {"with the process", {[](ClientPointer& client, QueryPointer& query) {
             static ClientPointer lastClient;
             static QueryPointer lastQuery;
             lastClient = std::move(client);
             lastQuery = std::move(query);
         }}},
        {"with the process, the query last", {[](ClientPointer& client, QueryPointer& query) {
             static QueryPointer lastQuery;
             static ClientPointer lastClient;
             lastQuery = std::move(query);
             lastClient = std::move(client);
         }}},
    });
}

void TestServerConnection::endsInAnyOrder() {
    QFETCH(const OrderRow, row);
    auto client = std::make_unique<ServerClient>(m_database);
    QVERIFY((*client)->open());
    auto query = std::make_unique<QSqlQuery>(**client);
    QVERIFY(query->prepare(u"SELECT generate_series(1, 2)"_s) && query->exec() && query->next());
    row.end(client, query);
}

QTEST_GUILESS_MAIN(TestServerConnection)
#include "test_serverconnection.moc"
