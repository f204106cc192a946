// A database server that is named instead of given by its address, and a name server that says nothing.

#include <dlfcn.h>
#include <netdb.h>

#include <QElapsedTimer>
#include <QtTest>
#include <condition_variable>
#include <mutex>
#include <string_view>

#include "serverclient.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

// Longer than any wait here may take; the cases end it.
constexpr std::chrono::seconds nameServersPatience{20};

/// What stands for the name servers: it knows one name, and may say nothing.
class NameServer {
public:
    void setSilent(bool silent) {
        {
            const std::scoped_lock lock(m_mutex);
            m_silent = silent;
        }
        m_changed.notify_all();
    }
    /// @return whether it answers at last
    bool wait() {
        std::unique_lock lock(m_mutex);
        ++m_asked;
        return m_changed.wait_for(lock, nameServersPatience, [this] { return !m_silent; });
    }
    int asked() {
        const std::scoped_lock lock(m_mutex);
        return m_asked;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_silent = false;
    int m_asked = 0;
};

NameServer& nameServer() {
    static NameServer server;
    return server;
}

}  // namespace

/// In place of the system's own, for the driver and its library, too.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* node, const char* service,
                                                                  const addrinfo* hints, addrinfo** result) {
    static const auto real = reinterpret_cast<decltype(&::getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    const bool named =
        node && std::string_view(node).ends_with(".ornek") && !(hints && (hints->ai_flags & AI_NUMERICHOST));
    if (!named)
        return real(node, service, hints, result);
    const bool known = nameServer().wait() && std::string_view(node).starts_with("kasa");
    return known ? real("127.0.0.1", service, hints, result) : EAI_NONAME;
}

class TestServerHosts : public QObject {
    Q_OBJECT

    QString m_database;

    struct Opening {
        bool open;
        qint64 waited;  ///< milliseconds
        QSqlError error;
    };
    static Opening open(ServerClient& client) {
        QElapsedTimer timer;
        timer.start();
        const bool open = client->open();
        return {open, timer.elapsed(), client->lastError()};
    }
    void name(ServerClient& client, const QString& host) const {
        client->setHostName(host);
        client->setConnectOptions(u"connect_timeout=2;KOVANIX_DEADLINE=%1"_s.arg(serverDeadline));
    }

private Q_SLOTS:
    void initTestCase() {
        if (const QString missing = ServerCluster::missing(); !missing.isEmpty())
            QSKIP(qPrintable(missing));
        QVERIFY2(cluster().start(), cluster().log().constData());
        m_database = cluster().createDatabase();
    }
    void cleanup() { nameServer().setSilent(false); }

    void aSilentNameServerEndsTheOpen() {
        nameServer().setSilent(true);
        ServerClient client(m_database);
        name(client, u"kasa-ilk.ornek"_s);
        for (int times = 0; times < 2; ++times) {
            const Opening opening = open(client);
            QVERIFY(!opening.open);
            QVERIFY2(opening.waited < 3000, qPrintable(QString::number(opening.waited)));
            QCOMPARE(opening.error.nativeErrorCode(), u"08001"_s);
            QCOMPARE(opening.error.databaseText(), u"kasa-ilk.ornek adının adresi bulunamıyor"_s);
        }
        QCOMPARE(nameServer().asked(), 1);  // the second open waits for the same look-up
        nameServer().setSilent(false);
        QVERIFY(open(client).open);
    }

    void anUnknownNameIsToldAtOnce() {
        ServerClient client(m_database);
        name(client, u"yok.ornek"_s);
        const Opening opening = open(client);
        QVERIFY(!opening.open);
        QVERIFY(opening.waited < 1000);
        QCOMPARE(opening.error.databaseText(), u"yok.ornek adının adresi bulunamıyor"_s);
    }

    void theNextHostIsTried() {
        nameServer().setSilent(true);
        ServerClient client(m_database);
        name(client, u"kasa-oteki.ornek,127.0.0.1"_s);
        QVERIFY(open(client).open);
    }

    void anAddressIsRemembered() {
        ServerClient client(m_database);
        name(client, u"kasa.ornek"_s);
        QVERIFY(open(client).open);
        client->close();
        nameServer().setSilent(true);
        const Opening opening = open(client);
        QVERIFY2(opening.open, qPrintable(opening.error.text()));
        QVERIFY2(opening.waited < 1900, qPrintable(QString::number(opening.waited)));
    }

    void aServerThatStandsStillIsGivenUpInTime() {
        ServerClient client(m_database);
        name(client, u"kasa.ornek"_s);
        QVERIFY(open(client).open);
        nameServer().setSilent(true);
        cluster().pause();
        QElapsedTimer timer;
        timer.start();
        const QVariant answer = client.value(u"SELECT 1"_s);
        const qint64 waited = timer.elapsed();
        cluster().resume();
        QCOMPARE(answer, QVariant(u"08007"_s));
        QVERIFY2(waited < serverDeadline + 500, qPrintable(QString::number(waited)));
    }

    void aServerThatWorksIsWaitedFor() {
        ServerClient client(m_database);
        name(client, u"kasa.ornek"_s);
        QVERIFY(open(client).open);
        nameServer().setSilent(true);
        QCOMPARE(client.value(u"SELECT 7 FROM pg_sleep(%1)"_s.arg(serverDeadline * 0.0015)), QVariant(7LL));
    }
};

QTEST_GUILESS_MAIN(TestServerHosts)
#include "test_serverhosts.moc"
