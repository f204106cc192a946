#include <sys/stat.h>

#include <QDir>
#include <QFile>

#include "app/shopfolder.h"
#include "data/baglanmamodulu.h"
#include "data/schema.h"
#include "desktop/folders.h"
#include "rows.h"
#include "runtests.h"
#include "shopfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "unreadable"_ba;
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

QStringList entriesOf(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Name);
}

mode_t modeOf(const QString& path) {
    struct stat status {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0;
}

const QStringList delivered{u"Kovanix.config"_s, u"kovanix.data"_s};

}  // namespace

class TestShopFolder : public QObject {
    Q_OBJECT

    struct DeliversAMissingFolderRow {
        QString from, name;
    };

    struct ExportFolderRow {
        QString shop;     ///< below the fixture's folder
        QString drive;    ///< the same
        QString present;  ///< folder that is there already
        bool made;
    };

    QTemporaryDir m_driveC;

private Q_SLOTS:
    void init() {
        qunsetenv("KOVANIX_FOLDER");
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(m_driveC.path()));
        QDir(m_driveC.filePath(u"kovanix"_s)).removeRecursively();
    }

    void deliversAMissingFolder_data() {
        addRows<DeliversAMissingFolderRow>(
            {{"command line", {u"command line"_s, u"shop"_s}},
             {"trailing separator", {u"command line"_s, u"shop/"_s}},
             {"folders above are missing too", {u"command line"_s, u"a/b/shop"_s}},
             {"blanks and letters in the name", {u"command line"_s, u"Ayşe Market 50%"_s}},
             {"variable", {u"variable"_s, u"shop"_s}},
             {"user's data folder", {u"data folder"_s, u"kovanix"_s}}});
    }
    void deliversAMissingFolder() {
        QFETCH(const DeliversAMissingFolderRow, row);
        const ShopFixture fixture;
        const QString wanted = QDir::cleanPath(fixture.file(row.name));
        const QByteArray dataHome = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(fixture.folder()));
        if (row.from == u"variable")
            qputenv("KOVANIX_FOLDER", QFile::encodeName(fixture.file(row.name)));
        prepareShopFolder(row.from == u"command line" ? fixture.file(row.name) : QString());
        if (dataHome.isEmpty())
            qunsetenv("XDG_DATA_HOME");
        else
            qputenv("XDG_DATA_HOME", dataHome);

        QCOMPARE(applicationFolder(), wanted);
        QCOMPARE(entriesOf(wanted), delivered);
        const QDir folder(wanted);
        QCOMPARE(bytesOf(folder.filePath(u"kovanix.data"_s)), QByteArray());
        QCOMPARE(bytesOf(folder.filePath(u"Kovanix.config"_s)).replace("\r\n", "\n"),
                 "[ayar]\nensonkikisayol=1\n"_ba);
        QCOMPARE(modeOf(wanted), 0700U);
        for (const QString& name : delivered)
            QCOMPARE(modeOf(folder.filePath(name)), 0600U);
        const QDir exports(m_driveC.filePath(u"kovanix"_s));
        QVERIFY(exports.exists());
        QVERIFY(exports.isEmpty());
    }

    void deliveredShopOpens() {
        const ShopFixture fixture;
        prepareShopFolder(fixture.file(u"shop"_s));
        ilkayarlar();
        QVERIFY(veritabaninibagla());
        QVERIFY(tablovar(baglanti(), u"satislar"_s));
        QVERIFY(allAnswered(fixture.boxes));
    }

    void leavesAnExistingFolderAlone_data() {
        QTest::addColumn<QStringList>("present");
        QTest::newRow("empty folder") << QStringList{};
        QTest::newRow("configuration only") << QStringList{u"Kovanix.config"_s};
        QTest::newRow("database only") << QStringList{u"kovanix.data"_s};
        QTest::newRow("older database only") << QStringList{u"kovanix.mdb"_s};
        QTest::newRow("all") << QStringList{u"Kovanix.config"_s, u"kovanix.data"_s, u"kovanix.mdb"_s};
    }
    void leavesAnExistingFolderAlone() {
        QFETCH(const QStringList, present);
        const ShopFixture fixture;
        for (const QString& name : present)
            write(fixture.file(name), "what the shop has: " + name.toUtf8());
        QCOMPARE(::chmod(qPrintable(fixture.folder()), 0755), 0);
        for (const QString& name : present)
            QCOMPARE(::chmod(qPrintable(fixture.file(name)), 0644), 0);
        prepareShopFolder(fixture.folder());
        QCOMPARE(applicationFolder(), fixture.folder());
        QCOMPARE(entriesOf(fixture.folder()), present);
        QCOMPARE(modeOf(fixture.folder()), 0755U);
        for (const QString& name : present) {
            QCOMPARE(bytesOf(fixture.file(name)), "what the shop has: " + name.toUtf8());
            QCOMPARE(modeOf(fixture.file(name)), 0644U);
        }
    }

    void makesTheExportFolder_data() {
        addRows<ExportFolderRow>({{"new shop, no drive", {u"shop"_s, u"a/drive"_s, {}, true}},
                                  {"old shop, no drive", {{}, u"a/drive"_s, {}, true}},
                                  {"old shop, empty drive", {{}, u"drive"_s, u"drive"_s, true}},
                                  {"there already", {{}, u"drive"_s, u"drive/kovanix"_s, true}},
                                  {"where it can't be made", {{}, u"file/drive"_s, {}, false}}});
    }
    void makesTheExportFolder() {
        QFETCH(const ExportFolderRow, row);
        const ShopFixture fixture;
        write(fixture.file(u"file"_s), "x");
        if (!row.present.isEmpty())
            QVERIFY(QDir().mkpath(fixture.file(row.present)));
        qputenv("KOVANIX_DRIVE_C", QFile::encodeName(fixture.file(row.drive)));
        prepareShopFolder(fixture.file(row.shop));
        QCOMPARE(QFileInfo(fixture.file(row.drive + u"/kovanix")).isDir(), row.made);
        QVERIFY(QFileInfo(applicationFolder()).isDir());
    }

    void whereNoFolderCanBeMade() {
        const ShopFixture fixture;
        write(fixture.file(u"file"_s), "x");
        prepareShopFolder(fixture.file(u"file/shop"_s));
        QCOMPARE(applicationFolder(), fixture.file(u"file/shop"_s));
        QVERIFY(!QFileInfo::exists(fixture.file(u"file/shop"_s)));
        QCOMPARE(bytesOf(fixture.file(u"file"_s)), "x"_ba);
        QVERIFY(!veritabanivarmi());
    }
};

int main(int argc, char** argv) {
    return runTests<TestShopFolder>(argc, argv);
}
#include "test_shopfolder.moc"
