// What lies in a copy's way on its disk: links, a disk that fills, copies that were harmed.

#include <sys/stat.h>

#include <QScopeGuard>
#include <QTemporaryDir>
#include <cerrno>

#include "app/ayarmodul.h"
#include "rows.h"
#include "runtests.h"
#include "yedek/places.h"
#include "yedek/restore.h"
#include "yedek/takecopy.h"
#include "yedek/workfolder.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

/// At which of the steps that a copy tells of the disk fills.
struct FullRow {
    QString step;
};

struct ErrorRow {
    int error;
    QString words;
};

class YedekDiskTest : public QObject, BackupCase {
    Q_OBJECT

    /// A folder that isn't ours, with something in it.
    struct Foreign {
        QTemporaryDir folder;
        Foreign() {
            QDir(folder.path()).mkdir(u"alt"_s);
            writeBytes(folder.filePath(u"mektup"_s), "x");
            writeBytes(folder.filePath(u"alt/mektup"_s), "y");
        }
        bool isWhole() const {
            return bytesOf(folder.filePath(u"mektup"_s)) == "x" &&
                   bytesOf(folder.filePath(u"alt/mektup"_s)) == "y";
        }
    };

    static void fill(const QString& folder) {
        QFile ballast(QDir(folder).filePath(u"dolgu"_s));
        if (!ballast.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
            return;
        for (qsizetype size = 1 << 20; size > 0;) {
            if (ballast.write(QByteArray(size, 'x')) != size)
                size /= 2;
        }
    }

private Q_SLOTS:
    void init() {
        begin();
        m_shop->openShop();
    }
    void cleanup() { end(); }

    void aLinkInPlaceOfTheWorkFolderLeadsNowhere() {
        const Foreign foreign;
        const QString work = m_place->filePath(u".kovanix-yedek-gecici"_s);
        QVERIFY(QFile::link(foreign.folder.path(), work));
        QCOMPARE(check(take().path), QString());
        QVERIFY(foreign.isWhole());
        QVERIFY(!QFileInfo::exists(work) && !QFileInfo(work).isSymLink());
    }

    void aLinkWithinWhatIsClearedAwayLeadsNowhere() {
        const Foreign foreign;
        QDir place(m_place->path());
        QVERIFY(place.mkpath(u".kovanix-yedek-gecici/parcalar"_s));
        QVERIFY(QFile::link(foreign.folder.path(), place.filePath(u".kovanix-yedek-gecici/parcalar/x"_s)));
        { const WorkFolder work(m_place->path()); }
        QVERIFY(foreign.isWhole());
        QVERIFY(!place.exists(u".kovanix-yedek-gecici"_s));
    }

    void theWorkFolderIsItsOwnersAlone() {
        QVERIFY(QDir(m_place->path()).mkdir(u".kovanix-yedek-gecici"_s));
        const WorkFolder work(m_place->path());
        struct stat found {};
        QCOMPARE(::lstat(QFile::encodeName(work.path()).constData(), &found), 0);
        QCOMPARE(found.st_mode & 0777, mode_t{0700});
    }

    void aLinkInPlaceOfTheLockIsTold() {
        const QString file = m_place->filePath(u"elsewhere"_s);
        QVERIFY(QFile::link(file, m_place->filePath(u".kovanix-yedek.kilit"_s)));
        QVERIFY(wordsOf([this] { take(); }).contains(u"bağlantı"_s));
        QVERIFY(!QFileInfo::exists(file));
    }

    void aDiskThatFillsIsToldOf_data() {
        addRows<FullRow>({{"before the copy", {u"Dükkân kopyalanıyor"_s}},
                          {"before the configuration", {u"Okunuyor"_s}},
                          {"before packing", {u"Sıkıştırılıyor"_s}},
                          {"before the proof", {u"Yedek okunuyor"_s}}});
    }
    void aDiskThatFillsIsToldOf() {
        QFETCH(const FullRow, row);
        SmallDisk small("size=96m");
        if (!small.isThere())
            QSKIP("only the administrator may make a disk");
        ayarla(u"tema"_s, u"1"_s);
        const QString folder = small.path();
        // Nothing in memory: as where there is little of it.
        const QString inMemory = QFileInfo(WorkFolder(folder).makeFleetingFolder(u"a"_s, 1 << 20)).path();
        QVERIFY(inMemory.startsWith(u"/dev/shm/"_s));
        QVERIFY(QFile::link(m_place->path(), inMemory));
        const auto unlink = qScopeGuard([&] { QFile::remove(inMemory); });
        const QString words = wordsOf([&] {
            takeCopy(Shop::current(), folder, m_storage,
                     WorkProgress([&](const QString& what, qint64, qint64) {
                         if (what.startsWith(row.step))
                             fill(folder);
                     }));
        });
        QVERIFY2(words.contains(u"yer kalmadı"_s), qPrintable(words));
        QFile::remove(QDir(folder).filePath(u"dolgu"_s));
        QVERIFY(filesOf(folder).isEmpty());
    }

    void aHarmedCopyHasNoOtherGo() {
        for (int day = 1; day <= 10; ++day) {
            m_shop->setNow(QDateTime(QDate(2026, 5, day), QTime(10, 0)));
            const Copy copy = take();
            if (day != 3)
                continue;
            QByteArray bytes = bytesOf(copy.path);
            bytes[bytes.size() / 2] ^= 1;
            writeBytes(copy.path, bytes);
        }
        // Seven days, and of the week before the newest sound one beside the harmed one.
        QStringList days;
        for (const Copy& copy : copiesIn(m_place->path()))
            days << copy.manifest.moment.toString(u"d"_s);
        QCOMPARE(days.join(u' '), u"10 9 8 7 6 5 4 3 2"_s);
    }

    void errorsInWords_data() {
        addRows<ErrorRow>({{"full", {ENOSPC, u"Diskte yer kalmadı"_s}},
                           {"too large a file", {EFBIG, u"çok büyük"_s}},
                           {"a file among folders", {ENOTDIR, u"klasör değil"_s}}});
    }
    void errorsInWords() {
        QFETCH(const ErrorRow, row);
        QVERIFY2(systemWords(u"/a"_s, row.error).contains(row.words),
                 qPrintable(systemWords(u"/a"_s, row.error)));
    }

    void aFolderThatFindsNoRoomIsToldOf() {
        const SmallDisk small("size=1m,nr_inodes=2");
        if (!small.isThere())
            QSKIP("only the administrator may make a disk");
        QVERIFY(QDir(small.path()).mkdir(u"a"_s));
        const QString words = wordsOf([&] { makeOwnFolder(QDir(small.path()).filePath(u"b"_s)); });
        QVERIFY2(words.contains(u"yer kalmadı"_s), qPrintable(words));
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::FullRow)
Q_DECLARE_METATYPE(kovanix::yedek::ErrorRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekDiskTest>(argc, argv);
}
#include "test_yedek_disk.moc"
