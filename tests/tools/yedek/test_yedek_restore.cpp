#include <QTemporaryDir>

#include "app/ayarmodul.h"
#include "app/tekornek.h"
#include "desktop/folders.h"
#include "desktop/singleinstance.h"
#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "yedek/restore.h"
#include "yedek/takecopy.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

/// A shop and a copy that takes its place.
struct ShopRow {
    bool hasShop = true;  ///< else its disk has died
    bool hasConfig = true;
    QString password{};
    bool copyHasConfig = true;
    QString copyPassword{};
};

namespace {

const QString otherPassword = QString(quickPassword).replace(u'2', u'3');

/// What a till finds in the shop: a product's stock, and a setting.
QString shopNow() {
    if (!QFileInfo::exists(veritabaniyolu()))
        return u"none"_s;
    Connection till;
    QString found;
    try {
        till.open(baglantimetnial());
        RowWalk(till, u"SELECT stok FROM urunler WHERE barkod = '1'"_s).forEach([&](const RowWalk::Row& row) {
            found = QString::number(row.number(0).value_or(-1));
        });
    } catch (const RuntimeError& error) {
        return error.description();
    }
    return found + u'|' + ayar(u"tema"_s);
}

}  // namespace

class YedekRestoreTest : public QObject, BackupCase {
    Q_OBJECT

    QString m_copy;

    void makeShop(const QString& password, bool hasConfig, const QString& stock, const QString& theme) {
        putBack(m_shop->folder(), {});
        m_shop->openShop(password);
        baglanti().execute(u"INSERT INTO urunler (barkod, stok) VALUES ('1', %1)"_s.arg(stock));
        baglantikapat();
        semahazir = false;
        ayarla(u"tema"_s, theme);
        if (!hasConfig)
            QFile::remove(ayardosyasi());
    }
    /// Leaves the older state in a copy and the newer one in the shop.
    void prepare(const ShopRow& row) {
        makeShop(row.copyPassword, row.copyHasConfig, u"7"_s, u"copy"_s);
        m_copy = take().path;
        makeShop(row.password, row.hasConfig, u"99"_s, u"old"_s);
        if (!row.hasShop)
            putBack(m_shop->folder(), {});
    }
    Restored restore(Storage& storage) {
        return restoreCopy(Shop::current(), m_copy, storage, WorkProgress());
    }
    QString refusal() {
        return wordsOf([this] { restore(m_storage); });
    }
    static QString stateOf(bool is, bool hasConfig, const QString& stock, const QString& theme) {
        return is ? stock + u'|' + (hasConfig ? theme : QString()) : u"none"_s;
    }
    static void shopRows() {
        addRows<ShopRow>({
            {"plain", {}},
            {"password", {.password = quickPassword, .copyPassword = quickPassword}},
            {"another password", {.password = quickPassword, .copyPassword = otherPassword}},
            {"a password since", {.password = quickPassword}},
            {"no password since", {.copyPassword = quickPassword}},
            {"no configuration", {.hasConfig = false, .copyHasConfig = false}},
            {"a configuration since", {.password = quickPassword, .copyHasConfig = false}},
            {"the configuration has gone", {.hasConfig = false, .copyPassword = quickPassword}},
            {"the disk has died", {.hasShop = false, .copyPassword = quickPassword}},
        });
    }

private Q_SLOTS:
    void initTestCase() { isolateFromOtherTills(); }
    void init() { begin(); }
    void cleanup() { end(); }

    void theShopIsThatOfTheCopy_data() { shopRows(); }
    void theShopIsThatOfTheCopy() {
        QFETCH(const ShopRow, row);
        prepare(row);
        const auto before = shopFiles();
        const QString old = stateOf(row.hasShop, row.hasConfig, u"99"_s, u"old"_s);
        QCOMPARE(shopNow(), old);
        putBack(m_shop->folder(), before);
        const Restored restored = restore(m_storage);
        // Settings that the copy has none of stay as they are.
        const QString theme = row.copyHasConfig ? u"copy"_s : row.hasConfig ? u"old"_s : QString();
        QCOMPARE(shopNow(), u"7|"_s + theme);
        QCOMPARE(restored.data, m_shop->databaseFile());
        QCOMPARE(Shop::current().data, m_shop->databaseFile());
        // What was replaced lies beside it, and nothing else has come.
        auto after = shopFiles();
        const QString stamp = u".oncesi-2026-05-03-070509"_s;
        QCOMPARE(after.take(u"kovanix.data"_s + stamp), before.value(u"kovanix.data"_s));
        QCOMPARE(after.take(u"Kovanix.config"_s + stamp), before.value(u"Kovanix.config"_s));
        QCOMPARE(restored.keptData.isEmpty(), !row.hasShop);
        after.remove(u"Kovanix.config"_s);
        QCOMPARE(after.keys(), QStringList(u"kovanix.data"_s));
        QVERIFY(!QFileInfo::exists(m_shop->file(u".kovanix-yedek-gecici"_s)));
    }

    void theDiskEndsAtAnyStep_data() { shopRows(); }
    void theDiskEndsAtAnyStep() {
        QFETCH(const ShopRow, row);
        using End = CutStorage::End;
        prepare(row);
        const auto before = shopFiles();
        const QString old = shopNow();
        putBack(m_shop->folder(), before);
        CutStorage all(End::never, 0);
        restore(all);
        const QString now = shopNow();
        QVERIFY(now != old);
        // At most one name at a time isn't durable yet: to end between any two steps is all that a cut can
        // do.
        QStringList steps = all.steps();
        steps.removeAll(u"nothing"_s);
        for (qsizetype i = 0; i < steps.size(); ++i) {
            if (steps[i] == u"name"_s)
                QCOMPARE(steps.value(i + 1), u"folder"_s);
        }
        QVERIFY(steps.indexOf(u"sync kovanix.data"_s) < steps.indexOf(u"name"_s));
        int olds = 0;
        int news = 0;
        for (const End end : {End::cutBefore, End::cutBehind, End::fails}) {
            for (int step = 1; step <= all.steps().size(); ++step) {
                putBack(m_shop->folder(), before);
                CutStorage storage(end, step);
                try {
                    restore(storage);
                } catch (const PowerCut&) {
                } catch (const RuntimeError&) {
                }
                QVERIFY(storage.hasStruck());
                const QString found = shopNow();
                QVERIFY2(found == old || found == now, qPrintable(u"step %1: %2"_s.arg(step).arg(found)));
                ++(found == old ? olds : news);
                // Once more, from wherever the cut has left it.
                restore(m_storage);
                QCOMPARE(shopNow(), now);
            }
        }
        QVERIFY(olds > 0 && news > 0);
    }

    void aRunningTillIsntRestoredUnder() {
        prepare({});
        const auto before = shopFiles();
        {
            const SingleInstance till(tekornekadi());
            QVERIFY(till.isFirst());
            QVERIFY(refusal().contains(u"kasa açık"_s));
        }
        QCOMPARE(shopFiles(), before);
        {
            // One of another machine, or another program.
            QVERIFY(baglantihazir());
            const auto open = shopFiles();
            QVERIFY(refusal().contains(u"kullanımda"_s));
            QCOMPARE(shopFiles(), open);
            baglantikapat();
        }
        QCOMPARE(refusal(), QString());
    }

    void noTillStartsMeanwhile() {
        prepare({});
        bool first = true;
        restoreCopy(Shop::current(), m_copy, m_storage, WorkProgress([&](const QString&, qint64, qint64) {
                        first = SingleInstance(tekornekadi()).isFirst();
                    }));
        QVERIFY(!first);
        QVERIFY(SingleInstance(tekornekadi()).isFirst());
    }

    void aHarmedCopyChangesNothing() {
        prepare({});
        const auto before = shopFiles();
        QByteArray bytes = bytesOf(m_copy);
        bytes[bytes.size() / 2] ^= 1;
        writeBytes(m_copy, bytes);
        QVERIFY(refusal().contains(u"bozuk"_s));
        QCOMPARE(shopFiles(), before);
    }

    void aDamagedShopIsPutAsideAsItIs() {
        prepare({.password = quickPassword, .copyPassword = quickPassword});
        writeBytes(m_shop->databaseFile(), QByteArray(10000, 'x'));
        writeBytes(m_shop->databaseFile() + u"-wal", "log");
        QCOMPARE(refusal(), QString());
        QCOMPARE(shopNow(), u"7|copy"_s);
        const QString kept = m_shop->databaseFile() + u".oncesi-2026-05-03-070509";
        QCOMPARE(bytesOf(kept), QByteArray(10000, 'x'));
        QCOMPARE(bytesOf(kept + u"-wal"), QByteArray("log"));
    }

    void whatADeadTillHasLeftInItsLogIsKept() {
        prepare({});
        QVERIFY(baglantihazir());
        storeTogether([] { baglanti().execute(u"UPDATE urunler SET stok = 55"_s); });
        const QByteArray data = bytesOf(m_shop->databaseFile());
        const QByteArray log = bytesOf(m_shop->databaseFile() + u"-wal");
        baglantikapat();
        writeBytes(m_shop->databaseFile(), data);
        writeBytes(m_shop->databaseFile() + u"-wal", log);
        const Restored restored = restore(m_storage);
        QCOMPARE(shopNow(), u"7|copy"_s);
        Connection kept;
        kept.open(baglantimetniyap(restored.keptData));
        double stock = 0;
        RowWalk(kept, u"SELECT stok FROM urunler WHERE barkod = '1'"_s).forEach([&](const RowWalk::Row& row) {
            stock = row.number(0).value_or(0);
        });
        QCOMPARE(stock, 55);
    }

    void aFileElsewhereIsReplacedWhereItLies() {
        prepare({});
        const QTemporaryDir elsewhere;
        const QString data = elsewhere.filePath(u"Şube dükkânı.data"_s);
        QVERIFY(QFile::rename(m_shop->databaseFile(), data));
        ayarla(u"ip"_s, data);
        QCOMPARE(shopNow(), u"99|old"_s);
        QCOMPARE(restore(m_storage).data, data);
        QCOMPARE(ayar(u"ip"_s), data);
        QCOMPARE(shopNow(), u"7|copy"_s);
        QVERIFY(!QFileInfo::exists(m_shop->databaseFile()));
        QVERIFY(shopFiles().keys().filter(u"geri"_s).isEmpty());
    }

    void aPathThatTheConfigurationCantHoldIsRefused() {
        prepare({});
        const QString folder = m_shop->file(u"日本"_s);
        QVERIFY(QDir().mkdir(folder));
        QVERIFY(QFile::rename(m_shop->databaseFile(), folder + u"/kovanix.data"));
        QVERIFY(QFile::rename(ayardosyasi(), folder + u"/Kovanix.config"));
        setApplicationFolder(folder);
        QVERIFY(refusal().contains(u"yolu"_s));
        QCOMPARE(shopNow(), u"99|old"_s);
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::ShopRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekRestoreTest>(argc, argv);
}
#include "test_yedek_restore.moc"
