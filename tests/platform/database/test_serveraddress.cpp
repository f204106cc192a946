#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "database/databaseerror.h"
#include "database/serveraddress.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct NameRow {
    QString path;
    bool pointer;
};

struct AddressRow {
    QByteArray lines;
    QString read;  ///< what was read, by "|"; the words of a refusal up to the colon ahead of the file's path
};

QString tlsName(ServerAddress::Tls tls) {
    return tls == ServerAddress::Tls::full ? u"full"_s : tls == ServerAddress::Tls::on ? u"on"_s : u"off"_s;
}

QString describe(const ServerAddress& address) {
    return QStringList{address.hosts.join(u'+'), QString::number(address.port),
                       address.database,         address.user,
                       tlsName(address.tls),     address.rootCertificate}
        .join(u'|');
}

}  // namespace

Q_DECLARE_METATYPE(NameRow)
Q_DECLARE_METATYPE(AddressRow)

class TestServerAddress : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void knowsAPointerByItsName_data();
    void knowsAPointerByItsName();
    void reads_data();
    void reads();
    void readsARootCertificate();
    void refusesAFileThatIsNotThere();

private:
    QTemporaryDir m_folder;
};

void TestServerAddress::knowsAPointerByItsName_data() {
    addRows<NameRow>({{"a pointer", {u"/home/kasa/dükkan.sunucu"_s, true}},
                      {"capitals", {u"C:\\KASA\\DUKKAN.SUNUCU"_s, true}},
                      {"nothing but the ending", {u".sunucu"_s, true}},
                      {"a database file", {u"/home/kasa/kovanix.data"_s, false}},
                      {"a folder of that name", {u"/home/x.sunucu/kovanix.data"_s, false}},
                      {"a further ending", {u"x.sunucu.bak"_s, false}},
                      {"a letter that only looks so in capitals", {u"x.ſunucu"_s, false}},
                      {"none", {u""_s, false}}});
}

void TestServerAddress::knowsAPointerByItsName() {
    QFETCH(const NameRow, row);
    QCOMPARE(ServerAddress::isPointer(row.path), row.pointer);
}

void TestServerAddress::reads_data() {
    const QByteArray least = "adres=10.0.0.5\r\nveritabani=dukkan\r\nkullanici=kasa1\r\n";
    const auto unclear = [](const QString& key, const QString& text) {
        return u"Sunucu dosyasında \"%1\" anlaşılmıyor (%2)"_s.arg(key, text);
    };
    const auto missing = [](const QString& key) {
        return u"Sunucu dosyasında \"%1\" yazılı değil"_s.arg(key);
    };
    addRows<AddressRow>(
        {{"the least", {least, u"10.0.0.5|5432|dukkan|kasa1|full|"_s}},
         {"all", {least + "port = 5433\r\ntls=VAR\r\n", u"10.0.0.5|5433|dukkan|kasa1|on|"_s}},
         {"unencrypted", {least + "tls=yok\n", u"10.0.0.5|5432|dukkan|kasa1|off|"_s}},
         {"TLS in full", {least + "tls=tam\n", u"10.0.0.5|5432|dukkan|kasa1|full|"_s}},
         {"two addresses",
          {"adres=depo , ::1\nveritabani=d\xFC\nkullanici=a b\n", u"depo+::1|5432|dü|a b|full|"_s}},
         {"no address", {"veritabani=d\nkullanici=k\n", missing(u"adres"_s)}},
         {"no database", {"adres=a\nkullanici=k\n", missing(u"veritabani"_s)}},
         {"no role", {"adres=a\nveritabani=d\nkullanici=\n", missing(u"kullanici"_s)}},
         {"an empty address among others",
          {"adres=a,,b\nveritabani=d\nkullanici=k\n", unclear(u"adres"_s, u"a,,b"_s)}},
         {"a path for an address",
          {"adres=/tmp\nveritabani=d\nkullanici=k\n", unclear(u"adres"_s, u"/tmp"_s)}},
         {"a port of letters", {least + "port=x\n", unclear(u"port"_s, u"x"_s)}},
         {"a port of 0", {least + "port=0\n", unclear(u"port"_s, u"0"_s)}},
         {"a port too high", {least + "port=65536\n", unclear(u"port"_s, u"65536"_s)}},
         {"another TLS", {least + "tls=evet\n", unclear(u"tls"_s, u"evet"_s)}},
         {"a root that isn't there", {least + "kok=/yok/kok.crt\n", unclear(u"kok"_s, u"/yok/kok.crt"_s)}}});
}

void TestServerAddress::reads() {
    QFETCH(const AddressRow, row);
    QFile file(m_folder.filePath(u"dukkan.sunucu"_s));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[sunucu]\r\n" + row.lines) > 0);
    file.close();
    QString read;
    try {
        read = describe(ServerAddress::read(file.fileName()));
    } catch (const DatabaseError& error) {
        QCOMPARE(error.kind(), DatabaseError::Kind::other);
        read = error.description();
        QVERIFY(read.endsWith(u": "_s + file.fileName()));
        read.chop(file.fileName().size() + 2);
    }
    QCOMPARE(read, row.read);
}

void TestServerAddress::readsARootCertificate() {
    QFile file(m_folder.filePath(u"kok.sunucu"_s));
    const QByteArray path = QFile::encodeName(file.fileName());
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.write("[sunucu]\nadres=a\nveritabani=d\nkullanici=k\nkok=" + path + "\n") > 0);
    file.close();
    QCOMPARE(ServerAddress::read(file.fileName()).rootCertificate, file.fileName());
}

void TestServerAddress::refusesAFileThatIsNotThere() {
    const QString path = m_folder.filePath(u"yok.sunucu"_s);
    try {
        ServerAddress::read(path);
        QFAIL("read a file that isn't there");
    } catch (const DatabaseError& error) {
        QCOMPARE(error.kind(), DatabaseError::Kind::missing);
        QCOMPARE(error.description(), u"Sunucu dosyası bulunamadı ya da okunamıyor: "_s + path);
    }
}

QTEST_GUILESS_MAIN(TestServerAddress)

#include "test_serveraddress.moc"
