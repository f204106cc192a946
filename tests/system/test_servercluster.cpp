// The server that the tests run on: whoever asks it what the till has stored must be able to rely on it.

#include <QtTest>

#include "servercluster.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestServerCluster : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        QVERIFY2(m_cluster.start(), m_cluster.log().constData());
        m_database = m_cluster.createDatabase();
        QVERIFY(!m_database.isEmpty());
    }

    void aDatabaseIsInLocaleC() {
        QCOMPARE(m_cluster.rows(m_database,
                                u"SELECT 'AÇ'::citext = 'aÇ', 'Ç'::citext = 'ç', NULL, 'a' || chr(10)"_s),
                 QList<QStringList>({{u"t"_s, u"f"_s, QString(), u"a\n"_s}}));
    }

    void aCopyHasTheRowsOfItsOriginal() {
        const QString original = m_cluster.createDatabase();
        m_cluster.rows(original, u"CREATE TABLE t (n int); INSERT INTO t VALUES (1), (2)"_s);
        const QString copy = m_cluster.createDatabase(original);
        QCOMPARE(m_cluster.rows(copy, u"SELECT n FROM t ORDER BY n"_s),
                 QList<QStringList>({{u"1"_s}, {u"2"_s}}));
    }

    void whatWasStoredOutlivesAKilledServer() {
        m_cluster.rows(m_database, u"CREATE TABLE kept (n int); INSERT INTO kept VALUES (7)"_s);
        const int port = m_cluster.port();
        m_cluster.kill();
        QVERIFY(!m_cluster.isRunning());
        QVERIFY2(m_cluster.restart(), m_cluster.log().constData());
        QCOMPARE(m_cluster.port(), port);
        QCOMPARE(m_cluster.rows(m_database, u"SELECT n FROM kept"_s), QList<QStringList>({{u"7"_s}}));
    }

private:
    ServerCluster m_cluster;
    QString m_database;
};

QTEST_GUILESS_MAIN(TestServerCluster)
#include "test_servercluster.moc"
