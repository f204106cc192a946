// A shop on a database server: its copy is a file as any till opens it, and so is what a restore leaves.

#include <QTemporaryDir>

#include "app/ayarmodul.h"
#include "database/filereader.h"
#include "programs.h"
#include "runtests.h"
#include "servercluster.h"
#include "yedek/packedcopy.h"
#include "yedek/restore.h"
#include "yedek/takecopy.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

constexpr int products = 3000;

/// What a till finds in the shop, wherever that is: a product's stock.
QString shopNow() {
    Connection till;
    till.open(baglantimetnial());
    QString found;
    RowWalk(till, u"SELECT stok FROM urunler WHERE barkod = '2999'"_s).forEach([&](const RowWalk::Row& row) {
        found = QString::number(row.number(0).value_or(-1));
    });
    return found;
}

}  // namespace

class YedekServerTest : public QObject, BackupCase {
    Q_OBJECT

    QString failure() {
        return wordsOf([this] { take(); });
    }
    /// What stands on the server, whatever the shop's settings lead to.
    QMap<QString, QList<QVariantList>> onServer() const { return m_shop->tables(); }

private Q_SLOTS:
    void initTestCase() {
        if (!ServerCluster::missing().isEmpty())
            QSKIP(qPrintable(ServerCluster::missing()));
        isolateFromOtherTills();
    }
    void init() {
        begin();
        m_shop->openShop();
        for (int i = 0; i < products; i += 1000)
            baglanti().execute(
                u"INSERT INTO urunler (barkod, urun, stok, alis) SELECT i::text, 'Ürün ' || i, 7, 0.1 FROM generate_series(%1, %2) i"_s
                    .arg(i)
                    .arg(i + 999));
        baglantikapat();
    }
    void cleanup() { end(); }

    void itsCopyIsAFileUnderItsPassword() {
        const auto before = onServer();
        const Copy copy = take();
        QCOMPARE(onServer(), before);
        QCOMPARE(filesOf(m_place->path()).keys(), QStringList(QFileInfo(copy.path).fileName()));
        QVERIFY(copy.manifest.hasPassword);
        QCOMPARE(copy.manifest.tables[0].name, u"urunler"_s);
        QCOMPARE(copy.manifest.tables[0].rows, products);
        QVERIFY(copy.manifest.tables[0].sums.contains(std::pair(u"alis"_s, u"300"_s)));
        const QTemporaryDir opened;
        unpackAndCheck(copy.path, opened.path(), WorkProgress());
        QVERIFY(!bytesOf(opened.filePath(dataName)).startsWith("SQLite format 3"));
        QCOMPARE(bytesOf(opened.filePath(configName)), m_shop->config());
        FileReader(opened.filePath(dataName), ServerCluster::password());
    }

    void aRestoreLeavesTheServerAlone() {
        const Copy copy = take();
        QVERIFY(baglantihazir());
        baglanti().execute(u"UPDATE urunler SET stok = 99"_s);
        baglantikapat();
        const auto server = onServer();
        const QByteArray pointer = bytesOf(m_shop->databaseFile());
        const QByteArray config = m_shop->config();
        writeBytes(m_shop->file(dataName), "of the days before the server");

        const Restored restored = restoreCopy(Shop::current(), copy.path, m_storage, WorkProgress());
        QVERIFY(restored.leftServer);
        QCOMPARE(restored.data, m_shop->file(dataName));
        QCOMPARE(veritabaniyolu(), m_shop->file(dataName));
        QCOMPARE(shopNow(), u"7"_s);
        QCOMPARE(onServer(), server);
        QCOMPARE(bytesOf(m_shop->databaseFile()), pointer);
        QCOMPARE(bytesOf(restored.keptData), QByteArray("of the days before the server"));
        // The settings of before lead to the server again.
        writeBytes(ayardosyasi(), bytesOf(restored.keptConfig));
        QCOMPARE(m_shop->config(), config);
        QCOMPARE(shopNow(), u"99"_s);
    }

    void theDiskEndsAtAnyStepOfARestore() {
        using End = CutStorage::End;
        const Copy copy = take();
        QVERIFY(baglantihazir());
        baglanti().execute(u"UPDATE urunler SET stok = 99"_s);
        baglantikapat();
        const auto before = shopFiles();
        CutStorage all(End::never, 0);
        restoreCopy(Shop::current(), copy.path, all, WorkProgress());
        int olds = 0;
        int news = 0;
        for (const End end : {End::cutBefore, End::cutBehind, End::fails}) {
            for (int step = 1; step <= all.steps().size(); ++step) {
                putBack(m_shop->folder(), before);
                CutStorage storage(end, step);
                try {
                    restoreCopy(Shop::current(), copy.path, storage, WorkProgress());
                } catch (const PowerCut&) {
                } catch (const RuntimeError&) {
                }
                const QString found = shopNow();
                QVERIFY2(found == u"7" || found == u"99", qPrintable(found));
                ++(found == u"99" ? olds : news);
            }
        }
        QVERIFY(olds > 0 && news > 0);
    }

    /// Nobody wants it any more while the mover is writing.
    void aCancelledCopyLeavesNothing() {
        struct Unwanted {};
        const Shop shop = Shop::current();
        const QDir place(m_place->path());
        QVERIFY_THROWS_EXCEPTION(Unwanted,
                                 copyShopData(shop, m_place->filePath(dataName), [&](qint64, qint64) {
                                     if (!place.isEmpty())
                                         throw Unwanted();
                                 }));
        QVERIFY(place.isEmpty());
    }

    void aServerThatIsAwayIsTold() {
        const QByteArray pointer = bytesOf(m_shop->databaseFile());
        writeBytes(m_shop->databaseFile(), "nothing that leads anywhere");
        QVERIFY(failure().startsWith(u"Sunucudaki dükkân kopyalanamadı: "_s));
        writeBytes(m_shop->databaseFile(), pointer);
        ayarla(u"dbpass"_s, u"wrong"_s);
        const QString words = failure();
        QVERIFY2(words.startsWith(u"Sunucudaki dükkân kopyalanamadı: "_s), qPrintable(words));
        QVERIFY(filesOf(m_place->path()).isEmpty());
    }
};

}  // namespace kovanix::yedek

int main(int argc, char** argv) {
    qputenv("KOVANIX_TEST_SERVER", "1");
    return kovanix::runTests<kovanix::yedek::YedekServerTest>(argc, argv);
}
#include "test_yedek_server.moc"
