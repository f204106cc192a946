#include <QDir>
#include <QFile>

#include "app/ayarmodul.h"
#include "data/baglanmamodulu.h"
#include "desktop/folders.h"
#include "rows.h"
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

    struct ChoosesTheFileRow {
        QString config;
        QStringList files;
        QString chosen;
    };
    struct MakesTheConnectionStringRow {
        QString config, path, text;
    };
    struct BringsIntoStepRow {
        QString config;
        QStringList files;
        QString ip, text;
    };
    struct WritesOnlyWhatDiffersRow {
        QString config;
        bool written;
    };
    struct StartUpRow {
        QString config;
        QStringList files;
        QString ip, path;
        QByteArray anaProgram;
    };

private Q_SLOTS:
    void configurationFile() {
        const Shop shop;
        QCOMPARE(ayardosyasi(), shop.file(u"Kovanix.config"_s));
    }

    void choosesTheFile_data() {
        const QString data = u"kovanix.data"_s;
        const QString mdb = u"kovanix.mdb"_s;
        const QString share = u"share/shop.data"_s;
        const QString ip = u"ip=%F/share/shop.data\n"_s;
        addRows<ChoosesTheFileRow>(
            {{"no configuration, no file", {noConfiguration, {}, data}},
             {"no configuration, present name", {noConfiguration, {data}, data}},
             {"no configuration, older name", {noConfiguration, {mdb}, mdb}},
             {"no configuration, both: the present name wins", {noConfiguration, {data, mdb}, data}},
             {"empty ip, no file", {u"ip=\n"_s, {}, data}},
             {"empty ip, both", {u"ip=\n"_s, {data, mdb}, data}},
             {"ip of blanks, older name", {u"ip=   \n"_s, {mdb}, mdb}},
             {"no ip key, older name", {u"tema=2\n"_s, {mdb}, mdb}},
             {"ip exists, alone", {ip, {share}, share}},
             {"ip exists, local files too", {ip, {share, data, mdb}, share}},
             {"ip with blanks around", {u"ip=   %F/share/shop.data   \n"_s, {share}, share}},
             {"ip in other case of the key", {u"IP=%F/share/shop.data\n"_s, {share}, share}},
             {"ip absent, present name", {ip, {data}, data}},
             {"ip absent, older name", {ip, {mdb}, mdb}},
             {"ip absent, both", {ip, {data, mdb}, data}},
             {"ip absent, no file: the path that was found absent", {ip, {}, share}},
             {"ip is a folder", {u"ip=%F/share\n"_s, {share, data}, data}},
             {"ip is a folder, no file", {u"ip=%F/share\n"_s, {share}, u"share"_s}},
             {"a folder of the present name counts as absent",
              {noConfiguration, {u"kovanix.data/"_s, mdb}, mdb}}});
    }
    void choosesTheFile() {
        QFETCH(const ChoosesTheFileRow, row);
        const Shop shop;
        shop.configure(row.config);
        shop.makeFiles(row.files);
        QCOMPARE(veritabaniyolu(), shop.file(row.chosen));
    }

    void makesTheConnectionString_data() {
        const QString path = u"/srv/shop.data"_s;
        const QString key = u";Jet OLEDB:Database Password="_s;
        addRows<MakesTheConnectionStringRow>(
            {{"no configuration", {noConfiguration, path, QString(head + path + tail)}},
             {"no password", {u"tema=2\n"_s, path, QString(head + path + tail)}},
             {"dbpass", {u"dbpass=gizli\n"_s, path, QString(head + path + tail + key + u"gizli"_s)}},
             {"mdbparola", {u"mdbparola=eski\n"_s, path, QString(head + path + tail + key + u"eski"_s)}},
             {"dbpass wins",
              {u"mdbparola=eski\ndbpass=gizli\n"_s, path, QString(head + path + tail + key + u"gizli"_s)}},
             {"empty dbpass",
              {u"dbpass=\nmdbparola=eski\n"_s, path, QString(head + path + tail + key + u"eski"_s)}},
             {"dbpass of blanks",
              {u"dbpass=\"   \"\nmdbparola=eski\n"_s, path, QString(head + path + tail + key + u"eski"_s)}},
             {"blanks around a quoted password",
              {u"dbpass=\"  gizli \"\n"_s, path, QString(head + path + tail + key + u"gizli"_s)}},
             {"mdbparola of blanks", {u"mdbparola=\"   \"\n"_s, path, QString(head + path + tail)}},
             {"nothing is quoted",
              {u"dbpass=a;b=c'\n"_s, u"/srv/a;b=c d'.data"_s,
               QString(head + u"/srv/a;b=c d'.data"_s + tail + key + u"a;b=c'"_s)}},
             {"empty path", {noConfiguration, QString(), QString(head + tail)}}});
    }
    void makesTheConnectionString() {
        QFETCH(const MakesTheConnectionStringRow, row);
        const Shop shop;
        shop.configure(row.config);
        QCOMPARE(baglantimetniyap(row.path), row.text);
    }

    void bringsIntoStep_data() {
        const QString data = u"kovanix.data"_s;
        const QString mdb = u"kovanix.mdb"_s;
        const QString local = head + u"%F/kovanix.data"_s + tail;
        const QString older = head + u"%F/kovanix.mdb"_s + tail;
        const QString share = head + u"%F/share/shop.data"_s + tail;
        addRows<BringsIntoStepRow>(
            {{"no ip, present name", {u"tema=2\n"_s, QStringList{data}, u"%F/kovanix.data"_s, local}},
             {"no ip, older name", {u"tema=2\n"_s, QStringList{mdb}, u"%F/kovanix.mdb"_s, older}},
             {"no ip, both", {u"tema=2\n"_s, QStringList{data, mdb}, u"%F/kovanix.data"_s, local}},
             {"no ip, no file", {u"tema=2\n"_s, QStringList{}, QString(), local}},
             {"ip exists",
              {u"ip=%F/share/shop.data\n"_s, QStringList{data, u"share/shop.data"_s}, u"%F/share/shop.data"_s,
               share}},
             {"ip absent, local file: ip stays",
              {u"ip=%F/share/shop.data\n"_s, QStringList{data}, u"%F/share/shop.data"_s, local}},
             {"ip absent, local file: strings are rewritten",
              {QString(u"ip=%F/share/shop.data\nConnectionString="_s + share + u"\ncon="_s + share + u'\n'),
               QStringList{data}, u"%F/share/shop.data"_s, local}},
             {"ip absent, no file",
              {u"ip=%F/share/shop.data\n"_s, QStringList{}, u"%F/share/shop.data"_s, share}},
             {"password",
              {u"dbpass=gizli\n"_s, QStringList{data}, u"%F/kovanix.data"_s,
               QString(local + u";Jet OLEDB:Database Password=gizli"_s)}},
             {"old string",
              {u"ConnectionString=eski\ncon=eski\n"_s, QStringList{data}, u"%F/kovanix.data"_s, local}}});
    }
    void bringsIntoStep() {
        QFETCH(const BringsIntoStepRow, row);
        const Shop shop;
        shop.configure(row.config);
        shop.makeFiles(row.files);
        ayarlaribaglantiyaesitle();
        QCOMPARE(shop.setting(u"ip"_s), shop.filled(row.ip));
        // Long temporary folders would have the strings cut on reading.
        QVERIFY(shop.filled(row.text).size() <= 254);
        QCOMPARE(shop.setting(u"ConnectionString"_s), shop.filled(row.text));
        QCOMPARE(shop.setting(u"con"_s), shop.filled(row.text));
        QVERIFY(!shop.config().contains("ana_program"));
    }

    void writesOnlyWhatDiffers_data() {
        const QString local = head + u"%F/kovanix.data"_s + tail;
        const QString ip = u"ip=%F/kovanix.data\n"_s;
        const auto strings = [](const QString& one, const QString& other) {
            return QString(u"ConnectionString="_s + one + u"\ncon="_s + other + u'\n');
        };
        addRows<WritesOnlyWhatDiffersRow>(
            {{"all in step", {ip + strings(local, local), false}},
             {"in step but for the case",
              {ip + strings(local.toUpper().replace(u"%F/KOVANIX.DATA"_s, u"%F/KOVANIX.data"_s), local),
               false}},
             {"in step but for blanks", {ip + strings(u"   "_s + local + u"   "_s, local), false}},
             {"ConnectionString differs", {ip + strings(u"x"_s + local, local), true}},
             {"con differs", {ip + strings(local, u"x"_s + local), true}},
             {"con absent", {QString(ip + u"ConnectionString="_s + local + u'\n'), true}},
             {"ip empty", {strings(local, local), true}}});
    }
    void writesOnlyWhatDiffers() {
        QFETCH(const WritesOnlyWhatDiffersRow, row);
        const Shop shop;
        shop.configure(row.config);
        shop.makeFiles({u"kovanix.data"_s});
        shop.age();
        const QByteArray before = shop.config();
        ayarlaribaglantiyaesitle();
        QCOMPARE(shop.written(), row.written);
        QCOMPARE(shop.config() != before, row.written);
        shop.age();
        ayarlaribaglantiyaesitle();
        QVERIFY(!shop.written());
    }

    void longStringIsWrittenEachTime() {
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

    void startUp_data() {
        const QString data = u"kovanix.data"_s;
        addRows<StartUpRow>({{"nothing in the file",
                              {u""_s, QStringList{data}, u"%F/kovanix.data"_s, data, "ana_program="_ba}},
                             {"ana_program stands already",
                              {u"ana_program=x.exe\n"_s, QStringList{data}, u"%F/kovanix.data"_s, data,
                               "ana_program=x.exe"_ba}},
                             {"older name",
                              {u"tema=2\n"_s, QStringList{u"kovanix.mdb"_s}, u"%F/kovanix.mdb"_s,
                               u"kovanix.mdb"_s, "ana_program="_ba}},
                             {"no file", {u"tema=2\n"_s, QStringList{}, QString(), data, "ana_program="_ba}},
                             {"ip is kept",
                              {u"ip=%F/share/shop.data\n"_s, QStringList{data}, u"%F/share/shop.data"_s, data,
                               "ana_program="_ba}}});
    }
    void startUp() {
        QFETCH(const StartUpRow, row);
        const Shop shop;
        shop.configure(row.config);
        shop.makeFiles(row.files);
        ilkayarlar();
        QCOMPARE(shop.setting(u"ip"_s), shop.filled(row.ip));
        QCOMPARE(shop.setting(u"ConnectionString"_s), QString(head + shop.file(row.path) + tail));
        QCOMPARE(shop.setting(u"con"_s), QString(head + shop.file(row.path) + tail));
        QVERIFY(shop.config().replace("\r\n", "\n").split('\n').contains(row.anaProgram));
        const QByteArray once = shop.config();
        ilkayarlar();
        QCOMPARE(shop.config(), once);
    }

    void withoutConfigurationNothingIsWritten() {
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

    void loadsTheString() {
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

    void givesTheString() {
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
};

int main(int argc, char** argv) {
    return runTests<TestSettings>(argc, argv);
}
#include "test_settings.moc"
