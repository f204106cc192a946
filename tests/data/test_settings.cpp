#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "desktop/folders.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString head = u"Provider=Microsoft.Jet.OLEDB.4.0;Data Source="_s;
const QString tail = u";Persist Security Info=False"_s;

/// A shop's folder in which "%F" of a table stands for the folder itself.
class Shop : public ShopFixture {
public:
    QString filled(const QString& text) const { return QString(text).replace(u"%F"_s, folder()); }

    /// Makes empty files; a name that ends in "/" is a folder.
    void makeFiles(const QStringList& names) const {
        for (const QString& name : names) {
            QVERIFY(QDir().mkpath(QFileInfo(file(name)).path()));
            QFile made(file(name));
            if (!name.endsWith(u'/'))
                QVERIFY(made.open(QIODevice::WriteOnly));
        }
    }

    /// Writes a configuration of these lines below the heading; none is made for a null text.
    void configure(const QString& lines) const {
        if (!lines.isNull())
            writeConfig("[ayar]\r\n" + filled(lines).toLatin1().replace('\n', "\r\n"));
    }

    QString setting(const QString& key) const { return ayaroku(u"ayar"_s, key, ayardosyasi()); }

    /// Makes the configuration look old, so that a write shows.
    void age() const {
        QFile file(ayardosyasi());
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(longAgo, QFileDevice::FileModificationTime));
    }
    bool written() const { return QFileInfo(ayardosyasi()).lastModified() != longAgo; }

private:
    const QDateTime longAgo{QDate(2001, 1, 1), QTime(0, 0)};
};

const QString noConfiguration;

}  // namespace

class TestSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void configurationFile();
    void choosesTheFile_data();
    void choosesTheFile();
    void makesTheConnectionString_data();
    void makesTheConnectionString();
    void bringsIntoStep_data();
    void bringsIntoStep();
    void writesOnlyWhatDiffers_data();
    void writesOnlyWhatDiffers();
    void longStringIsWrittenEachTime();
    void startUp_data();
    void startUp();
    void withoutConfigurationNothingIsWritten();
    void loadsTheString();
    void givesTheString();
};

void TestSettings::configurationFile() {
    const Shop shop;
    QCOMPARE(ayardosyasi(), shop.file(u"Kovanix.config"_s));
}

void TestSettings::choosesTheFile_data() {
    QTest::addColumn<QString>("config");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("chosen");
    const QString data = u"kovanix.data"_s;
    const QString mdb = u"kovanix.mdb"_s;
    const QString share = u"share/shop.data"_s;
    const QString ip = u"ip=%F/share/shop.data\n"_s;
    const auto row = [](const char* name, const QString& config, const QStringList& files,
                        const QString& chosen) { QTest::newRow(name) << config << files << chosen; };
    row("no configuration, no file", noConfiguration, {}, data);
    row("no configuration, present name", noConfiguration, {data}, data);
    row("no configuration, older name", noConfiguration, {mdb}, mdb);
    row("no configuration, both: the present name wins", noConfiguration, {data, mdb}, data);
    row("empty ip, no file", u"ip=\n"_s, {}, data);
    row("empty ip, both", u"ip=\n"_s, {data, mdb}, data);
    row("ip of blanks, older name", u"ip=   \n"_s, {mdb}, mdb);
    row("no ip key, older name", u"tema=2\n"_s, {mdb}, mdb);
    row("ip exists, alone", ip, {share}, share);
    row("ip exists, local files too", ip, {share, data, mdb}, share);
    row("ip with blanks around", u"ip=   %F/share/shop.data   \n"_s, {share}, share);
    row("ip in other case of the key", u"IP=%F/share/shop.data\n"_s, {share}, share);
    row("ip absent, present name", ip, {data}, data);
    row("ip absent, older name", ip, {mdb}, mdb);
    row("ip absent, both", ip, {data, mdb}, data);
    row("ip absent, no file: the path that was found absent", ip, {}, share);
    row("ip is a folder", u"ip=%F/share\n"_s, {share, data}, data);
    row("ip is a folder, no file", u"ip=%F/share\n"_s, {share}, u"share"_s);
    row("a folder of the present name counts as absent", noConfiguration, {u"kovanix.data/"_s, mdb}, mdb);
}

void TestSettings::choosesTheFile() {
    QFETCH(const QString, config);
    QFETCH(const QStringList, files);
    QFETCH(const QString, chosen);
    const Shop shop;
    shop.configure(config);
    shop.makeFiles(files);
    QCOMPARE(veritabaniyolu(), shop.file(chosen));
}

void TestSettings::makesTheConnectionString_data() {
    QTest::addColumn<QString>("config");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("text");
    const QString path = u"/srv/shop.data"_s;
    const QString key = u";Jet OLEDB:Database Password="_s;
    QTest::newRow("no configuration") << noConfiguration << path << QString(head + path + tail);
    QTest::newRow("no password") << u"tema=2\n"_s << path << QString(head + path + tail);
    QTest::newRow("dbpass") << u"dbpass=gizli\n"_s << path << QString(head + path + tail + key + u"gizli"_s);
    QTest::newRow("mdbparola") << u"mdbparola=eski\n"_s << path
                               << QString(head + path + tail + key + u"eski"_s);
    QTest::newRow("dbpass wins") << u"mdbparola=eski\ndbpass=gizli\n"_s << path
                                 << QString(head + path + tail + key + u"gizli"_s);
    QTest::newRow("empty dbpass") << u"dbpass=\nmdbparola=eski\n"_s << path
                                  << QString(head + path + tail + key + u"eski"_s);
    QTest::newRow("dbpass of blanks")
        << u"dbpass=\"   \"\nmdbparola=eski\n"_s << path << QString(head + path + tail + key + u"eski"_s);
    QTest::newRow("blanks around a quoted password")
        << u"dbpass=\"  gizli \"\n"_s << path << QString(head + path + tail + key + u"gizli"_s);
    QTest::newRow("mdbparola of blanks") << u"mdbparola=\"   \"\n"_s << path << QString(head + path + tail);
    QTest::newRow("nothing is quoted") << u"dbpass=a;b=c'\n"_s << u"/srv/a;b=c d'.data"_s
                                       << QString(head + u"/srv/a;b=c d'.data"_s + tail + key + u"a;b=c'"_s);
    QTest::newRow("empty path") << noConfiguration << QString() << QString(head + tail);
}

void TestSettings::makesTheConnectionString() {
    QFETCH(const QString, config);
    QFETCH(const QString, path);
    QFETCH(const QString, text);
    const Shop shop;
    shop.configure(config);
    QCOMPARE(baglantimetniyap(path), text);
}

void TestSettings::bringsIntoStep_data() {
    QTest::addColumn<QString>("config");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("text");
    const QString data = u"kovanix.data"_s;
    const QString mdb = u"kovanix.mdb"_s;
    const QString local = head + u"%F/kovanix.data"_s + tail;
    const QString older = head + u"%F/kovanix.mdb"_s + tail;
    const QString share = head + u"%F/share/shop.data"_s + tail;
    QTest::newRow("no ip, present name")
        << u"tema=2\n"_s << QStringList{data} << u"%F/kovanix.data"_s << local;
    QTest::newRow("no ip, older name") << u"tema=2\n"_s << QStringList{mdb} << u"%F/kovanix.mdb"_s << older;
    QTest::newRow("no ip, both") << u"tema=2\n"_s << QStringList{data, mdb} << u"%F/kovanix.data"_s << local;
    QTest::newRow("no ip, no file") << u"tema=2\n"_s << QStringList{} << QString() << local;
    QTest::newRow("ip exists") << u"ip=%F/share/shop.data\n"_s << QStringList{data, u"share/shop.data"_s}
                               << u"%F/share/shop.data"_s << share;
    QTest::newRow("ip absent, local file: ip stays")
        << u"ip=%F/share/shop.data\n"_s << QStringList{data} << u"%F/share/shop.data"_s << local;
    QTest::newRow("ip absent, local file: strings are rewritten")
        << QString(u"ip=%F/share/shop.data\nConnectionString="_s + share + u"\ncon="_s + share + u'\n')
        << QStringList{data} << u"%F/share/shop.data"_s << local;
    QTest::newRow("ip absent, no file")
        << u"ip=%F/share/shop.data\n"_s << QStringList{} << u"%F/share/shop.data"_s << share;
    QTest::newRow("password") << u"dbpass=gizli\n"_s << QStringList{data} << u"%F/kovanix.data"_s
                              << QString(local + u";Jet OLEDB:Database Password=gizli"_s);
    QTest::newRow("old string") << u"ConnectionString=eski\ncon=eski\n"_s << QStringList{data}
                                << u"%F/kovanix.data"_s << local;
}

void TestSettings::bringsIntoStep() {
    QFETCH(const QString, config);
    QFETCH(const QStringList, files);
    QFETCH(const QString, ip);
    QFETCH(const QString, text);
    const Shop shop;
    shop.configure(config);
    shop.makeFiles(files);
    ayarlaribaglantiyaesitle();
    QCOMPARE(shop.setting(u"ip"_s), shop.filled(ip));
    // Long temporary folders would have the strings cut on reading.
    QVERIFY(shop.filled(text).size() <= 254);
    QCOMPARE(shop.setting(u"ConnectionString"_s), shop.filled(text));
    QCOMPARE(shop.setting(u"con"_s), shop.filled(text));
    QVERIFY(!shop.config().contains("ana_program"));
}

void TestSettings::writesOnlyWhatDiffers_data() {
    QTest::addColumn<QString>("config");
    QTest::addColumn<bool>("written");
    const QString local = head + u"%F/kovanix.data"_s + tail;
    const QString ip = u"ip=%F/kovanix.data\n"_s;
    const auto row = [](const char* name, const QString& config, bool written) {
        QTest::newRow(name) << config << written;
    };
    const auto strings = [](const QString& one, const QString& other) {
        return QString(u"ConnectionString="_s + one + u"\ncon="_s + other + u'\n');
    };
    row("all in step", ip + strings(local, local), false);
    row("in step but for the case",
        ip + strings(local.toUpper().replace(u"%F/KOVANIX.DATA"_s, u"%F/KOVANIX.data"_s), local), false);
    row("in step but for blanks", ip + strings(u"   "_s + local + u"   "_s, local), false);
    row("ConnectionString differs", ip + strings(u"x"_s + local, local), true);
    row("con differs", ip + strings(local, u"x"_s + local), true);
    row("con absent", QString(ip + u"ConnectionString="_s + local + u'\n'), true);
    row("ip empty", strings(local, local), true);
}

void TestSettings::writesOnlyWhatDiffers() {
    QFETCH(const QString, config);
    QFETCH(const bool, written);
    const Shop shop;
    shop.configure(config);
    shop.makeFiles({u"kovanix.data"_s});
    shop.age();
    const QByteArray before = shop.config();
    ayarlaribaglantiyaesitle();
    QCOMPARE(shop.written(), written);
    QCOMPARE(shop.config() != before, written);
    shop.age();
    ayarlaribaglantiyaesitle();
    QVERIFY(!shop.written());
}

void TestSettings::longStringIsWrittenEachTime() {
    const Shop shop;
    const QString deep = QString(110, u'a') + u'/' + QString(110, u'b') + u'/' + QString(110, u'c');
    shop.makeFiles({deep});
    setApplicationFolder(shop.file(deep.section(u'/', 0, 1)));
    QFile config(ayardosyasi());
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.close();
    QFile database(joinStored(applicationFolder(), u"\\kovanix.data"_s));
    QVERIFY(database.open(QIODevice::WriteOnly));

    ayarlaribaglantiyaesitle();
    const QString text = head + database.fileName() + tail;
    QVERIFY(text.size() > 254);
    QCOMPARE(shop.setting(u"ConnectionString"_s), text.left(254));
    QCOMPARE(shop.setting(u"con"_s), text.left(254));
    QCOMPARE(baglantimetnial(), text);
    // The start of the string is all that is ever read, so it differs from the whole one each time.
    ayaryaz(u"ayar"_s, u"con"_s, text.left(254) + u"xxxx"_s, ayardosyasi());
    ayarlaribaglantiyaesitle();
    QFile file(ayardosyasi());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains(QString(u"con="_s + text).toLatin1()));
}

void TestSettings::startUp_data() {
    QTest::addColumn<QString>("config");
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QByteArray>("anaProgram");
    const QString data = u"kovanix.data"_s;
    QTest::newRow("nothing in the file")
        << u""_s << QStringList{data} << u"%F/kovanix.data"_s << data << "ana_program="_ba;
    QTest::newRow("ana_program stands already") << u"ana_program=x.exe\n"_s << QStringList{data}
                                                << u"%F/kovanix.data"_s << data << "ana_program=x.exe"_ba;
    QTest::newRow("older name") << u"tema=2\n"_s << QStringList{u"kovanix.mdb"_s} << u"%F/kovanix.mdb"_s
                                << u"kovanix.mdb"_s << "ana_program="_ba;
    QTest::newRow("no file") << u"tema=2\n"_s << QStringList{} << QString() << data << "ana_program="_ba;
    QTest::newRow("ip is kept") << u"ip=%F/share/shop.data\n"_s << QStringList{data}
                                << u"%F/share/shop.data"_s << data << "ana_program="_ba;
}

void TestSettings::startUp() {
    QFETCH(const QString, config);
    QFETCH(const QStringList, files);
    QFETCH(const QString, ip);
    QFETCH(const QString, path);
    QFETCH(const QByteArray, anaProgram);
    const Shop shop;
    shop.configure(config);
    shop.makeFiles(files);
    ilkayarlar();
    QCOMPARE(shop.setting(u"ip"_s), shop.filled(ip));
    QCOMPARE(shop.setting(u"ConnectionString"_s), QString(head + shop.file(path) + tail));
    QCOMPARE(shop.setting(u"con"_s), QString(head + shop.file(path) + tail));
    QVERIFY(shop.config().replace("\r\n", "\n").split('\n').contains(anaProgram));
    const QByteArray once = shop.config();
    ilkayarlar();
    QCOMPARE(shop.config(), once);
}

void TestSettings::withoutConfigurationNothingIsWritten() {
    const Shop shop;
    shop.makeFiles({u"kovanix.data"_s});
    ilkayarlar();
    ayarlaribaglantiyaesitle();
    baglantiyukle();
    QVERIFY(baglantihazir());
    QVERIFY(!QFile::exists(ayardosyasi()));
    // The first setting that a screen saves makes the file.
    ayaryaz(u"ayar"_s, u"tema"_s, u"2"_s, ayardosyasi());
    QCOMPARE(shop.config().replace("\r\n", "\n"), "[ayar]\ntema=2\n"_ba);
    QVERIFY(allAnswered(shop.boxes));
}

void TestSettings::loadsTheString() {
    const Shop shop;
    shop.configure(u"tema=2\n"_s);
    shop.makeFiles({u"kovanix.mdb"_s});
    baglantimetni = u"eski"_s;
    baglantiyukle();
    const QString text = head + shop.file(u"kovanix.mdb"_s) + tail;
    QCOMPARE(baglantimetni, text);
    QCOMPARE(baglantimetnial(), text);
    QCOMPARE(shop.setting(u"ip"_s), shop.file(u"kovanix.mdb"_s));
    QCOMPARE(shop.setting(u"con"_s), text);
}

void TestSettings::givesTheString() {
    const Shop shop;
    shop.configure(u"dbpass=gizli\n"_s);
    const QString local =
        head + shop.file(u"kovanix.data"_s) + tail + u";Jet OLEDB:Database Password=gizli"_s;
    QCOMPARE(baglantiyazisi(), local);
    QCOMPARE(baglantimetni, local);
    QCOMPARE(shop.setting(u"con"_s), local);
    // Computed afresh each time.
    shop.makeFiles({u"kovanix.mdb"_s});
    QCOMPARE(baglantiyazisi(), QString(local).replace(u"kovanix.data"_s, u"kovanix.mdb"_s));
    baglantimetni = u"abc"_s;
    QCOMPARE(baglantiyazisi(), QString(local).replace(u"kovanix.data"_s, u"kovanix.mdb"_s));
}

int main(int argc, char** argv) {
    return runTests<TestSettings>(argc, argv);
}
#include "test_settings.moc"
