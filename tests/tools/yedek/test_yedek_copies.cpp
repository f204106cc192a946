#include <QTemporaryDir>
#include <random>

#include "app/ayarmodul.h"
#include "databasefile.h"
#include "ordinaryuser.h"
#include "rows.h"
#include "runtests.h"
#include "yedek/gzip.h"
#include "yedek/packedcopy.h"
#include "yedek/places.h"
#include "yedek/restore.h"
#include "yedek/tablesums.h"
#include "yedek/takecopy.h"
#include "yedek/workfolder.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

struct PasswordRow {
    QString password;
};

/// How a copy is harmed.
struct HarmRow {
    QByteArray (*harm)(QByteArray bytes, std::mt19937& random);
    int times;
};

namespace {

void stock(ShopFixture& shop) {
    for (int i = 0; i < 300; ++i)
        shop.addProduct(u"869000000%1"_s.arg(i, 4, 10, QChar(u'0')), u"Ürün şğı %1"_s.arg(i), 1.1 * i,
                        1.3 * i, i - 20);
}

qsizetype place(qsizetype size, std::mt19937& random) {
    return std::uniform_int_distribution<qsizetype>(0, size - 1)(random);
}

}  // namespace

class YedekCopiesTest : public QObject, BackupCase {
    Q_OBJECT

    void open(const QString& password = {}) { m_shop->openShop(password, stock); }

    /// Runs statements on a file by the bare engine. @return the last one's first value
    static QString run(const QString& file, const QStringList& statements) {
        RawDatabase database(file, {});
        QString value;
        for (const QString& statement : statements)
            value = database.rows(statement).value(0);
        return value;
    }

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void aCopyOfARunningShopCounts_data() {
        addRows<PasswordRow>({{"plain", {{}}}, {"password", {quickPassword}}});
    }
    void aCopyOfARunningShopCounts() {
        QFETCH(const PasswordRow, row);
        open(row.password);
        storeTogether([] { baglanti().execute(u"UPDATE urunler SET stok = 7 WHERE no = 1"_s); });
        const QByteArray data = bytesOf(m_shop->databaseFile());
        const QByteArray log = bytesOf(m_shop->databaseFile() + u"-wal");
        const QByteArray config = m_shop->config();
        QVERIFY(!log.isEmpty());
        const Copy copy = take();
        QCOMPARE(bytesOf(m_shop->databaseFile()), data);
        QCOMPARE(bytesOf(m_shop->databaseFile() + u"-wal"), log);
        QCOMPARE(m_shop->config(), config);

        QCOMPARE(QFileInfo(copy.path).fileName(),
                 u"kovanix-2026-05-03-070509-%1.yedek"_s.arg(Shop::current().id));
        QCOMPARE(filesOf(m_place->path()).keys(), QStringList(QFileInfo(copy.path).fileName()));
        QCOMPARE(copiesIn(m_place->path()).size(), 1);
        QCOMPARE(check(copy.path), QString());
        QCOMPARE(copy.manifest.hasPassword, !row.password.isEmpty());
        QCOMPARE(copy.manifest.tables[0].name, u"urunler"_s);
        QCOMPARE(copy.manifest.tables[0].rows, 300);
        // 0 + 1 + … + 299, 20 less each, and 7 in place of -20.
        const QList<std::pair<QString, QString>>& sums = copy.manifest.tables[0].sums;
        QVERIFY(sums.contains(std::pair(u"stok"_s, u"38877"_s)));
        QVERIFY(sums.contains(std::pair(u"alis"_s, u"49335"_s)));

        QTemporaryDir opened;
        unpackAndCheck(copy.path, opened.path(), WorkProgress());
        QCOMPARE(bytesOf(opened.filePath(dataName)).startsWith("SQLite format 3"), row.password.isEmpty());
        QCOMPARE(bytesOf(opened.filePath(configName)), config);
        QCOMPARE(m_shop->rows(u"SELECT stok FROM urunler WHERE no = 1"_s)[0][0].toInt(), 7);
    }

    void anyTarUnpacksIt() {
        open();
        const Copy copy = take();
        QTemporaryDir opened;
        QProcess tar;
        tar.start(u"tar"_s, {u"xzf"_s, copy.path, u"-C"_s, opened.path()});
        QVERIFY(tar.waitForFinished());
        QCOMPARE(tar.exitCode(), 0);
        QCOMPARE(tar.readAllStandardError(), QByteArray());
        QProcess sum;
        sum.setWorkingDirectory(opened.path());
        sum.start(u"sha256sum"_s, {u"-c"_s, u"manifest.json.sha256"_s});
        QVERIFY(sum.waitForFinished());
        QCOMPARE(sum.exitCode(), 0);
    }

    void harmedCopiesAreRefused_data() {
        addRows<HarmRow>({
            {"one byte",
             {[](QByteArray bytes, std::mt19937& random) {
                  bytes[place(bytes.size(), random)] ^= char(1 + place(255, random));
                  return bytes;
              },
              150}},
            {"one bit of its head or tail",
             {[](QByteArray bytes, std::mt19937& random) {
                  const qsizetype near = place(120, random);
                  bytes[place(2, random) ? near : bytes.size() - 1 - near] ^= char(1 << place(8, random));
                  return bytes;
              },
              100}},
            {"cut",
             {[](QByteArray bytes, std::mt19937& random) { return bytes.first(place(bytes.size(), random)); },
              50}},
            {"its last byte cut", {[](QByteArray bytes, std::mt19937&) { return bytes.chopped(1); }, 1}},
            {"longer", {[](QByteArray bytes, std::mt19937&) { return bytes.append('\0'); }, 1}},
            {"emptied", {[](QByteArray, std::mt19937&) { return QByteArray(); }, 1}},
            {"zeros", {[](QByteArray bytes, std::mt19937&) { return QByteArray(bytes.size(), '\0'); }, 1}},
            {"a hole",
             {[](QByteArray bytes, std::mt19937& random) {
                  constexpr qsizetype block = 512;
                  const qsizetype from = place(bytes.size() - block, random);
                  return bytes.replace(from, block, QByteArray(block, '\0'));
              },
              30}},
            {"two blocks swapped",
             {[](QByteArray bytes, std::mt19937& random) {
                  constexpr qsizetype block = 512;
                  const qsizetype blocks = bytes.size() / block;
                  const qsizetype one = place(blocks - 1, random);
                  const qsizetype other = one + 1 + place(blocks - one - 1, random);
                  const QByteArray kept = bytes.sliced(one * block, block);
                  bytes.replace(one * block, block, bytes.sliced(other * block, block));
                  return bytes.replace(other * block, block, kept);
              },
              30}},
        });
    }
    void harmedCopiesAreRefused() {
        QFETCH(const HarmRow, row);
        open();
        const Copy copy = take();
        const QByteArray whole = bytesOf(copy.path);
        std::mt19937 random(20261122);
        for (int i = 0; i < row.times; ++i) {
            const QByteArray harmed = row.harm(whole, random);
            QVERIFY(harmed != whole);
            writeBytes(copy.path, harmed);
            QVERIFY2(!check(copy.path).isEmpty(), qPrintable(QString::number(i)));
        }
        writeBytes(copy.path, whole);
        QCOMPARE(check(copy.path), QString());
    }

    /// Copies put together anew from the parts of sound ones, with all outer sums right.
    void partsOfTwoCopiesAreRefused() {
        open();
        ayarla(u"tema"_s, u"1"_s);
        const Copy first = take();
        storeTogether([] { baglanti().execute(u"UPDATE urunler SET stok = 8 WHERE no = 1"_s); });
        m_shop->setNow(QDateTime(QDate(2026, 5, 4), QTime(7, 5, 9)));
        const Copy second = take();
        QTemporaryDir parts;
        unpackAndCheck(first.path, parts.path(), WorkProgress());
        const auto repacked = [&](const Manifest& manifest) {
            const QString path = parts.filePath(u"p.yedek"_s);
            QFile::remove(path);
            pack(parts.path(), manifest, path, WorkProgress());
            return check(path);
        };
        QCOMPARE(repacked(first.manifest), QString());
        QVERIFY(!repacked(second.manifest).isEmpty());
        const QByteArray config = bytesOf(parts.filePath(configName));
        writeBytes(parts.filePath(configName), config.chopped(1) + '#');
        QVERIFY(repacked(first.manifest).contains(u"parça"_s));
        writeBytes(parts.filePath(configName), config);
        Manifest changed = first.manifest;
        changed.tables[0].rows += 1;
        QVERIFY(repacked(changed).contains(u"satır"_s));
        changed = first.manifest;
        changed.tables[0].sums[0].second += u'1';
        QVERIFY(repacked(changed).contains(u"toplam"_s));
        changed = first.manifest;
        changed.hasPassword = true;
        QVERIFY(repacked(changed).contains(u"parola"_s));
        // A sound part in the manifest's own words that is no sound database.
        QByteArray data = bytesOf(parts.filePath(dataName));
        data.replace(data.size() / 3, 4096 * 3, QByteArray(4096 * 3, 'x'));
        writeBytes(parts.filePath(dataName), data);
        changed = first.manifest;
        changed.parts[0].sha256 = sha256Of(parts.filePath(dataName), WorkProgress(), {});
        QVERIFY(repacked(changed).contains(u"veritabanı"_s));
    }

    /// Rows and sums are right, but an index leads elsewhere.
    void theEngineHasToFindADatabaseSound() {
        open();
        const Copy copy = take();
        QTemporaryDir parts;
        Manifest manifest = unpackAndCheck(copy.path, parts.path(), WorkProgress());
        const QString data = parts.filePath(dataName);
        const QString whereIndex = u" FROM sqlite_master WHERE name = 'kovanix_urunler_barkod'"_s;
        const QString index = run(data, {u"SELECT rootpage"_s + whereIndex});
        const QString sql = run(data, {u"SELECT sql"_s + whereIndex});
        const QString writable = u"PRAGMA writable_schema = ON"_s;
        run(data, {writable, u"DELETE"_s + whereIndex});
        run(data, {u"UPDATE urunler SET barkod = 'elsewhere' WHERE no = 1"_s});
        run(data,
            {writable,
             u"INSERT INTO sqlite_master VALUES ('index', 'kovanix_urunler_barkod', 'urunler', %1, '%2')"_s
                 .arg(index, sql)});
        for (const QString& end : {u"-wal"_s, u"-shm"_s})
            QFile::remove(data + end);
        manifest.parts[0].size = QFileInfo(data).size();
        manifest.parts[0].sha256 = sha256Of(data, WorkProgress(), {});
        const QString path = parts.filePath(u"p.yedek"_s);
        pack(parts.path(), manifest, path, WorkProgress());
        QVERIFY(check(path).contains(u"veritabanı bozuk"_s));
    }

    void copiesWithSwappedNamesAreRefused() {
        open();
        const Copy first = take();
        m_shop->setNow(QDateTime(QDate(2026, 5, 4), QTime(7, 5, 9)));
        const Copy second = take();
        const QByteArray bytes = bytesOf(first.path);
        writeBytes(first.path, bytesOf(second.path));
        writeBytes(second.path, bytes);
        QVERIFY(check(first.path).contains(u"tarih"_s));
        QVERIFY(check(second.path).contains(u"tarih"_s));
        QCOMPARE(copiesIn(m_place->path()).size(), 0);
    }

    void whatItSaysToUnpackIsBounded() {
        open();
        const Copy copy = take();
        QTemporaryDir parts;
        Manifest manifest = unpackAndCheck(copy.path, parts.path(), WorkProgress());
        manifest.parts[0].size = qint64{1} << 50;
        const QString path = parts.filePath(u"p.yedek"_s);
        pack(parts.path(), manifest, path, WorkProgress());
        QVERIFY(check(path).contains(u"yer kalmadı"_s));
    }

    void theDiskEndsAtAnyStep_data() {
        addRows<PasswordRow>({{"plain", {{}}}, {"password", {quickPassword}}});
    }
    void theDiskEndsAtAnyStep() {
        QFETCH(const PasswordRow, row);
        using End = CutStorage::End;
        open(row.password);
        const Copy before = take();
        CutStorage all(End::never, 0);
        m_shop->setNow(QDateTime(QDate(2026, 5, 4), QTime(7, 5, 9)));
        const Copy good = take(all);
        // What a name leads to is durable ahead of the name, and the name ahead of the next.
        QCOMPARE(all.steps().first(3), (QStringList{u"sync kopya"_s, u"name"_s, u"folder"_s}));
        m_storage.remove(good.path);
        const QByteArray shop = bytesOf(m_shop->databaseFile());
        for (const End end : {End::cutBefore, End::cutBehind, End::fails}) {
            for (int step = 1; step <= all.steps().size(); ++step) {
                CutStorage storage(end, step);
                bool ended = false;
                try {
                    take(storage);
                } catch (const PowerCut&) {
                    ended = true;
                } catch (const RuntimeError&) {
                    ended = true;
                }
                QVERIFY(storage.hasStruck());
                QVERIFY(ended || end == End::fails);
                const QList<Copy> copies = copiesIn(m_place->path());
                QVERIFY(!copies.isEmpty());
                QCOMPARE(copies.last().path, before.path);
                for (const Copy& copy : copies) {
                    QCOMPARE(check(copy.path), QString());
                    if (copy.path != before.path)
                        m_storage.remove(copy.path);
                }
                QCOMPARE(bytesOf(m_shop->databaseFile()), shop);
            }
        }
    }

    void whatARunThatDiedHasLeftIsClearedAway() {
        open();
        QDir place(m_place->path());
        QVERIFY(place.mkpath(u".kovanix-yedek-gecici/parcalar"_s));
        // It was about to write down whose lock it is.
        writeBytes(place.filePath(u".kovanix-yedek.kilit"_s), {});
        writeBytes(place.filePath(u".kovanix-yedek-gecici/kopya"_s), "x");
        writeBytes(place.filePath(u".kovanix-yedek-gecici/parcalar/kovanix.data"_s), "x");
        take();
        QVERIFY(!QFileInfo::exists(place.filePath(u".kovanix-yedek-gecici"_s)));
        QCOMPARE(copiesIn(m_place->path()).size(), 1);
        QCOMPARE(filesOf(m_place->path()).size(), 1);
    }

    void placesThatAreNotThereYetHaveNothingInCommon() {
        const WorkFolder one(m_place->filePath(u"a/yeni"_s));
        const WorkFolder other(m_place->filePath(u"b/yeni"_s));
        QVERIFY(one.makeFleetingFolder(u"parcalar"_s, 1) != other.makeFleetingFolder(u"parcalar"_s, 1));
    }

    void whatIsOnlyInBetweenLiesInMemory() {
        QString inMemory;
        {
            const WorkFolder work(m_place->path());
            inMemory = work.makeFleetingFolder(u"a"_s, 1 << 20);
            QVERIFY2(inMemory.startsWith(u"/dev/shm/"_s), qPrintable(inMemory));
            const auto others = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
            QCOMPARE(QFileInfo(QFileInfo(inMemory).path()).permissions() & others, QFile::Permissions());
            // As much as nobody has, and nobody knows how much.
            for (const qint64 bytes : {qint64{1} << 60, qint64{0}})
                QCOMPARE(work.makeFleetingFolder(u"b"_s, bytes), work.file(u"b"_s));
        }
        const QString whole = QFileInfo(inMemory).path();
        QVERIFY(!QFileInfo::exists(whole));
        QVERIFY(QDir().mkdir(whole, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        writeBytes(whole + u"/left", "by a run that died");
        { const WorkFolder work(m_place->path()); }
        QVERIFY(!QFileInfo::exists(whole));
        // Whoever has taken the name: another's folder is neither used nor emptied.
        QTemporaryDir other;
        writeBytes(other.filePath(u"letter"_s), "x");
        QVERIFY(QFile::link(other.path(), whole));
        {
            const WorkFolder work(m_place->path());
            QCOMPARE(work.makeFleetingFolder(u"a"_s, 1), work.file(u"a"_s));
        }
        QVERIFY(QFile::exists(other.filePath(u"letter"_s)));
        QFile::remove(whole);
    }

    void manyOfOneSecond() {
        open();
        QDateTime last;
        for (int i = 0; i < 4; ++i) {
            const Copy copy = take();
            QVERIFY(!last.isValid() || copy.manifest.moment == last.addSecs(1));
            last = copy.manifest.moment;
            // Of one day the newest is kept.
            QCOMPARE(copiesIn(m_place->path()).size(), 1);
            QCOMPARE(check(copy.path), QString());
        }
    }

    void anOldCopyGoesBehindTheNewOnesName() {
        open();
        take();
        CutStorage all(CutStorage::End::never, 0);
        take(all);
        QCOMPARE(all.steps(), (QStringList{u"sync kopya"_s, u"name"_s, u"folder"_s, u"name"_s, u"folder"_s}));
    }

    /// The machine has been told another time zone since.
    void aCopyOfAnotherTimeZone() {
        open();
        const Copy copy = take();
        QTemporaryDir parts;
        Manifest manifest = unpackAndCheck(copy.path, parts.path(), WorkProgress());
        manifest.moment = QDateTime(QDate(2026, 5, 2), QTime(23, 30), Qt::OffsetFromUTC, -5 * 3600);
        const QString path = m_place->filePath(u"kovanix-2026-05-02-233000.yedek"_s);
        pack(parts.path(), manifest, path, WorkProgress());
        QCOMPARE(check(path), QString());
        QVERIFY(std::ranges::any_of(copiesIn(m_place->path()),
                                    [&path](const Copy& each) { return each.path == path; }));
    }

    void oneRunAtATime() {
        open();
        QString second;
        takeCopy(Shop::current(), m_place->path(), m_storage,
                 WorkProgress([&](const QString&, qint64, qint64) {
                     if (second.isEmpty())
                         second = wordsOf([this] { take(); });
                 }));
        QVERIFY(second.contains(u"başka bir yedekleme"_s));
        QCOMPARE(copiesIn(m_place->path()).size(), 1);
    }

    void aCancelledRunLeavesNothing() {
        open();
        int signs = 0;
        const auto count = [&](int cancelAt) {
            const auto cancel = std::make_shared<std::atomic<bool>>(false);
            signs = 0;
            try {
                takeCopy(Shop::current(), m_place->path(), m_storage,
                         WorkProgress(
                             [&](const QString&, qint64, qint64) {
                                 if (++signs == cancelAt)
                                     *cancel = true;
                             },
                             cancel));
            } catch (const WorkProgress::Cancelled&) {
                return true;
            }
            return false;
        };
        QVERIFY(!count(0));
        const int all = signs;
        QVERIFY(all > 5);
        const auto before = filesOf(m_place->path());
        for (int i = 1; i < all; ++i) {
            QVERIFY(count(i));
            QCOMPARE(filesOf(m_place->path()), before);
        }
    }

    void aFolderThatCantBeWritten() {
        open();
        const QString closed = m_place->filePath(u"kapali"_s);
        QVERIFY(QDir().mkdir(closed, QFile::ReadOwner | QFile::ExeOwner));
        QFile::setPermissions(m_place->path(), QFile::ReadOther | QFile::ExeOther | QFile::ReadOwner |
                                                   QFile::WriteOwner | QFile::ExeOwner);
        const Shop shop = Shop::current();
        const OrdinaryUser user;
        QVERIFY(!user.failed());
        QVERIFY(!wordsOf([&] { takeCopy(shop, closed, m_storage, WorkProgress()); }).isEmpty());
    }

    /// Told in our words, and of the engine's one line.
    void aDamagedShopIsntCountedAsACopy() {
        open();
        baglantikapat();
        const QByteArray whole = bytesOf(m_shop->databaseFile());
        const auto wordsFor = [&](qsizetype place, qsizetype size) {
            QByteArray data = whole;
            writeBytes(m_shop->databaseFile(), data.replace(place, size, QByteArray(size, 7)));
            return wordsOf([this] { take(); });
        };
        const QString unreadable = wordsFor(whole.size() / 2, whole.size() / 5);
        QVERIFY2(unreadable.startsWith(u"Veritabanı dosyası bozuk ("_s), qPrintable(unreadable));
        constexpr qsizetype countOfFreePages = 39;
        const QString faulty = wordsFor(countOfFreePages, 1);
        QVERIFY2(
            faulty.startsWith(
                u"Dükkânın veritabanı bozuk, yedeği alınmadı. Önceki yedekler duruyor. (Main freelist"_s),
            qPrintable(faulty));
        QVERIFY(!faulty.contains(u'\n'));
        QVERIFY(filesOf(m_place->path()).isEmpty());
    }

    void noShopNoCopy() {
        QVERIFY(wordsOf([this] { take(); }).contains(u"bulunamadı"_s));
    }

    void whatADiskHasSpoiltDoesntCount() {
        struct SpoilingStorage : Storage {
            void sync(const QString& file) override {
                QByteArray bytes = bytesOf(file);
                bytes[bytes.size() / 2] ^= 1;
                writeBytes(file, bytes);
            }
        } spoiling;
        open();
        const Copy copy = take();
        const auto before = filesOf(m_place->path());
        QVERIFY(wordsOf([&] { take(spoiling); }).contains(u"bozuk"_s));
        QCOMPARE(filesOf(m_place->path()), before);
        const QTemporaryDir stick;
        const QString words = wordsOf([&] { repeatCopy(copy, stick.path(), spoiling, WorkProgress()); });
        QVERIFY(words.contains(u"bozuk"_s));
        QVERIFY(filesOf(stick.path()).isEmpty());
    }

    void theFolderIsTheShopsChoice() {
        open();
        const Shop shop = Shop::current();
        QVERIFY(copyFolder(shop).endsWith(u"Kovanix yedek"_s));
        chooseCopyFolder(shop, u"/yedek/Şube ı"_s);
        QCOMPARE(copyFolder(shop), u"/yedek/Şube ı"_s);
        QVERIFY(!wordsOf([&] { chooseCopyFolder(shop, u"/yedek/日本"_s); }).isEmpty());
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::PasswordRow)
Q_DECLARE_METATYPE(kovanix::yedek::HarmRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekCopiesTest>(argc, argv);
}
#include "test_yedek_copies.moc"
