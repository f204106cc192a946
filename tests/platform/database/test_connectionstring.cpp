#include <QTest>

#include "database/connection.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct PartsRow {
    QString text;
    QString dataSource;
    QString password;
};

struct FileSystemRow {
    QByteArray type;
    bool network;
};

}  // namespace

Q_DECLARE_METATYPE(PartsRow)
Q_DECLARE_METATYPE(FileSystemRow)

class TestConnectionString : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parses_data();
    void parses();
    void knowsNetworkFileSystems_data();
    void knowsNetworkFileSystems();
};

void TestConnectionString::parses_data() {
    const QString start = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s;
    const QString middle = u";Persist Security Info=False"_s;
    const QString key = u";Jet OLEDB:Database Password="_s;
    addRows<PartsRow>(
        {{"plain", {start + u"/a/kovanix.data"_s + middle, u"/a/kovanix.data"_s, u""_s}},
         {"password", {start + u"/a/b"_s + middle + key + u"gizli"_s, u"/a/b"_s, u"gizli"_s}},
         {"lower case", {u"provider=microsoft.jet.oledb.4.0;data source=/a/b"_s, u"/a/b"_s, u""_s}},
         {"upper case, blanks around the keys",
          {u" PROVIDER = x; DATA SOURCE =/a/b; JET OLEDB:DATABASE PASSWORD =p"_s, u"/a/b"_s, u"p"_s}},
         {"semicolon and equals sign in the path",
          {start + u"/a;b=c/d;e"_s + middle, u"/a;b=c/d;e"_s, u""_s}},
         {"semicolon and equals sign in the password",
          {start + u"/a"_s + middle + key + u"x;y=z;"_s, u"/a"_s, u"x;y=z;"_s}},
         {"known word in the path without a sign",
          {start + u"/a;provider/b"_s + middle, u"/a;provider/b"_s, u""_s}},
         {"key in the password counts no second time",
          {start + u"/a"_s + middle + key + u"x;Data Source=/b"_s, u"/a"_s, u"x"_s}},
         {"blanks in the path", {start + u"/a b/c d"_s + middle, u"/a b/c d"_s, u""_s}},
         {"Turkish letters", {start + u"/dükkân/İŞ"_s + key + u"ığüşöç"_s, u"/dükkân/İŞ"_s, u"ığüşöç"_s}},
         {"quotes are letters", {start + u"\"/a\""_s + key + u"'p'"_s, u"\"/a\""_s, u"'p'"_s}},
         {"no path", {start + middle, u""_s, u""_s}},
         {"unknown key first", {u"Mode=Read;Data Source=/a"_s, u"/a"_s, u""_s}},
         {"no key", {u"/a/b"_s, u""_s, u""_s}},
         {"empty", {u""_s, u""_s, u""_s}}});
}

void TestConnectionString::parses() {
    QFETCH(const PartsRow, row);
    const ConnectionString parts = ConnectionString::parse(row.text);
    QCOMPARE(parts.dataSource, row.dataSource);
    QCOMPARE(parts.password, row.password);
}

void TestConnectionString::knowsNetworkFileSystems_data() {
    QTest::addColumn<FileSystemRow>("row");
    for (const char* type :
         {"nfs", "nfs4", "cifs", "smb3", "CIFS", "9p", "fuse.sshfs", "fuse.gvfsd-fuse", "vboxsf"}) {
        QTest::newRow(type) << FileSystemRow{type, true};
    }
    for (const char* type : {"ext4", "xfs", "btrfs", "tmpfs", "overlay", "vfat", "exfat", "ntfs3", "fuseblk",
                             "fuse.ntfs-3g", "nfsd", ""}) {
        QTest::newRow(*type ? type : "unknown") << FileSystemRow{type, false};
    }
}

void TestConnectionString::knowsNetworkFileSystems() {
    QFETCH(const FileSystemRow, row);
    QCOMPARE(isNetworkFileSystem(row.type), row.network);
}

QTEST_GUILESS_MAIN(TestConnectionString)
#include "test_connectionstring.moc"
