#include <QTest>

#include "database/connection.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestConnectionString : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void knowsNetworkFileSystems_data();
    void knowsNetworkFileSystems();
};

void TestConnectionString::parses_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("dataSource");
    QTest::addColumn<QString>("password");
    const QString start = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s;
    const QString middle = u";Persist Security Info=False"_s;
    const QString key = u";Jet OLEDB:Database Password="_s;

    QTest::newRow("plain") << QString(start + u"/a/kovanix.data"_s + middle) << u"/a/kovanix.data"_s << u""_s;
    QTest::newRow("password") << QString(start + u"/a/b"_s + middle + key + u"gizli"_s) << u"/a/b"_s
                              << u"gizli"_s;
    QTest::newRow("lower case") << u"provider=microsoft.jet.oledb.4.0;data source=/a/b"_s << u"/a/b"_s
                                << u""_s;
    QTest::newRow("upper case, blanks around the keys")
        << u" PROVIDER = x; DATA SOURCE =/a/b; JET OLEDB:DATABASE PASSWORD =p"_s << u"/a/b"_s << u"p"_s;
    QTest::newRow("semicolon and equals sign in the path")
        << QString(start + u"/a;b=c/d;e"_s + middle) << u"/a;b=c/d;e"_s << u""_s;
    QTest::newRow("semicolon and equals sign in the password")
        << QString(start + u"/a"_s + middle + key + u"x;y=z;"_s) << u"/a"_s << u"x;y=z;"_s;
    QTest::newRow("known word in the path without a sign")
        << QString(start + u"/a;provider/b"_s + middle) << u"/a;provider/b"_s << u""_s;
    QTest::newRow("key in the password counts no second time")
        << QString(start + u"/a"_s + middle + key + u"x;Data Source=/b"_s) << u"/a"_s << u"x"_s;
    QTest::newRow("blanks in the path") << QString(start + u"/a b/c d"_s + middle) << u"/a b/c d"_s << u""_s;
    QTest::newRow("Turkish letters") << QString(start + u"/dükkân/İŞ"_s + key + u"ığüşöç"_s)
                                     << u"/dükkân/İŞ"_s << u"ığüşöç"_s;
    QTest::newRow("quotes are letters")
        << QString(start + u"\"/a\""_s + key + u"'p'"_s) << u"\"/a\""_s << u"'p'"_s;
    QTest::newRow("no path") << QString(start + middle) << u""_s << u""_s;
    QTest::newRow("unknown key first") << u"Mode=Read;Data Source=/a"_s << u"/a"_s << u""_s;
    QTest::newRow("no key") << u"/a/b"_s << u""_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s << u""_s;
}

void TestConnectionString::parses() {
    QFETCH(const QString, text);
    const ConnectionString parts = ConnectionString::parse(text);
    QTEST(parts.dataSource, "dataSource");
    QTEST(parts.password, "password");
}

void TestConnectionString::knowsNetworkFileSystems_data() {
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<bool>("network");
    for (const char* type :
         {"nfs", "nfs4", "cifs", "smb3", "CIFS", "9p", "fuse.sshfs", "fuse.gvfsd-fuse", "vboxsf"}) {
        QTest::newRow(type) << QByteArray(type) << true;
    }
    for (const char* type : {"ext4", "xfs", "btrfs", "tmpfs", "overlay", "vfat", "exfat", "ntfs3", "fuseblk",
                             "fuse.ntfs-3g", "nfsd", ""}) {
        QTest::newRow(*type ? type : "unknown") << QByteArray(type) << false;
    }
}

void TestConnectionString::knowsNetworkFileSystems() {
    QFETCH(const QByteArray, type);
    QTEST(isNetworkFileSystem(type), "network");
}

QTEST_GUILESS_MAIN(TestConnectionString)
#include "test_connectionstring.moc"
