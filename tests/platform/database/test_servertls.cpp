// The three words of a pointer file for the way to the server: what is encrypted, and whose certificate is
// believed.

#include <QFile>
#include <QTest>
#include <algorithm>

#include "database/connection.h"
#include "databasefile.h"
#include "rows.h"
#include "servercertificates.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

enum class Root { none, right, other, missing };

struct TlsRow {
    QString tls;
    Root root = Root::none;
    QString host = u"127.0.0.1"_s;
    bool withTls = true;  ///< whether the server offers it
    QString encrypted;    ///< what the server says of the connection; empty for a refusal
    QString words = {};   ///< what stands in the refusal
};

const QString untrusted =
    u"Veritabanı sunucusuyla güvenli bağlantı (TLS) kurulamadı: kök sertifikayı (kok), sunucunun adresini ve bilgisayarın saatini denetleyin ("_s;

}  // namespace

Q_DECLARE_METATYPE(TlsRow)

class TestServerTls : public QObject {
    Q_OBJECT

    ServerCertificates m_certificates;
    ServerCluster m_encrypting;
    ServerCluster m_plain;
    QString m_encryptingShop;
    QString m_plainShop;
    QTemporaryDir m_folder;

    QString rootPath(Root root) const {
        switch (root) {
            case Root::right:
                return m_certificates.authority();
            case Root::other:
                return m_certificates.otherAuthority();
            case Root::missing:
                return m_folder.filePath(u"yok.crt"_s);
            case Root::none:
                break;
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase() {
        for (const QString& missing : {ServerCluster::missing(), ServerCertificates::missing()}) {
            if (!missing.isEmpty())
                QSKIP(qPrintable(missing));
        }
        constexpr uid_t serversUser = 65534;
        QVERIFY(m_certificates.make(serversUser));
        QVERIFY2(m_encrypting.start(m_certificates.settings()), m_encrypting.log().constData());
        QVERIFY2(m_plain.start(), m_plain.log().constData());
        m_encryptingShop = m_encrypting.createDatabase();
        m_plainShop = m_plain.createDatabase();
    }

    void opens_data() {
        const QString local = u"localhost"_s;
        const QString here = u"127.0.0.1"_s;
        addRows<TlsRow>({
            {"tam, the shop's authority", {u"tam"_s, Root::right, here, true, u"t"_s}},
            {"no word, the shop's authority", {{}, Root::right, here, true, u"t"_s}},
            {"tam, another authority", {u"tam"_s, Root::other, here, true, {}, untrusted}},
            {"tam, the machine's authorities", {u"tam"_s, Root::none, here, true, {}, untrusted}},
            {"tam, an authority that isn't there",
             {u"tam"_s, Root::missing, here, true, {}, u"Sunucu dosyasında \"kok\" anlaşılmıyor ("_s}},
            {"tam, another name", {u"tam"_s, Root::right, local, true, {}, untrusted}},
            {"tam, a server without", {u"tam"_s, Root::right, here, false, {}, untrusted}},
            {"var", {u"var"_s, Root::none, here, true, u"t"_s}},
            {"var, another name", {u"var"_s, Root::none, local, true, u"t"_s}},
            {"var, a server without", {u"var"_s, Root::none, here, false, {}, untrusted}},
            {"yok", {u"yok"_s, Root::none, here, true, u"f"_s}},
            {"yok, a server without", {u"yok"_s, Root::none, here, false, u"f"_s}},
        });
    }

    void opens() {
        QFETCH(const TlsRow, row);
        const ServerCluster& cluster = row.withTls ? m_encrypting : m_plain;
        const QString database = row.withTls ? m_encryptingShop : m_plainShop;
        // A failed open counts for a moment: each row has a pointer of its own.
        static int count = 0;
        QFile pointer(m_folder.filePath(u"p%1.sunucu"_s.arg(++count)));
        QVERIFY(pointer.open(QIODevice::WriteOnly));
        const QString tls = row.tls.isEmpty() ? QString() : u"tls="_s + row.tls + u'\n';
        pointer.write(u"[sunucu]\nadres=%1\nport=%2\nveritabani=%3\nkullanici=%4\n%5kok=%6\n"_s
                          .arg(row.host, QString::number(cluster.port()), database, ServerCluster::role(),
                               tls, rootPath(row.root))
                          .toLatin1());
        pointer.close();
        Connection connection;
        const auto error = errorOf([&] {
            connection.open(DatabaseFile::connectionString(pointer.fileName(), ServerCluster::password()));
        });
        QVERIFY2(error.has_value() == row.encrypted.isEmpty(),
                 error ? qPrintable(error->description()) : "it opened");
        if (error) {
            QVERIFY2(error->description().startsWith(row.words), qPrintable(error->description()));
            return;
        }
        QCOMPARE(
            cluster.rows(
                database,
                u"SELECT s.ssl FROM pg_stat_ssl s JOIN pg_stat_activity a USING (pid) WHERE a.usename = 'kasa'"_s),
            (QList<QStringList>{{row.encrypted}}));
    }
};

QTEST_GUILESS_MAIN(TestServerTls)
#include "test_servertls.moc"
