// Copies in a folder that several shops use, above all on a stick.

#include <QTemporaryDir>
#include <memory>

#include "runtests.h"
#include "yedek/packedcopy.h"
#include "yedek/takecopy.h"
#include "yedek/workfolder.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

namespace {

const QString anotherShop = u"a07e4a07e4a0"_s;

}  // namespace

class YedekSticksTest : public QObject, BackupCase {
    Q_OBJECT

    void open() { m_shop->openShop(); }

private Q_SLOTS:
    void init() { begin(); }
    void cleanup() { end(); }

    void onlyThisShopsCopiesGo() {
        open();
        // Twelve days of this shop, and of another one in the same folder.
        QTemporaryDir parts;
        for (int day = 1; day <= 12; ++day) {
            m_shop->setNow(QDateTime(QDate(2026, 5, day), QTime(10, 0)));
            const Copy copy = take();
            QFile::remove(parts.filePath(dataName));
            QFile::remove(parts.filePath(configName));
            Manifest other = unpackAndCheck(copy.path, parts.path(), WorkProgress());
            other.shop = anotherShop;
            pack(parts.path(), other, m_place->filePath(CopyName::of(other).text()), WorkProgress());
        }
        writeBytes(m_place->filePath(u"kovanix-2020-01-01-100000.yedek"_s), "not ours");
        writeBytes(m_place->filePath(u"mektup.txt"_s), "letter");
        m_shop->setNow(QDateTime(QDate(2026, 5, 13), QTime(10, 0)));
        take();
        int own = 0;
        int others = 0;
        for (const Copy& copy : copiesIn(m_place->path()))
            ++(copy.manifest.shop == anotherShop ? others : own);
        QCOMPARE(others, 12);
        QCOMPARE(own, 8);  // seven days, and the newest of the week before
        QCOMPARE(bytesOf(m_place->filePath(u"kovanix-2020-01-01-100000.yedek"_s)), QByteArray("not ours"));
        QCOMPARE(bytesOf(m_place->filePath(u"mektup.txt"_s)), QByteArray("letter"));
    }

    /// Sticks from before names told of the shop.
    void copiesInTheOlderForm() {
        open();
        for (int day = 1; day <= 12; ++day) {
            m_shop->setNow(QDateTime(QDate(2026, 5, day), QTime(10, 0)));
            const Copy copy = take();
            QVERIFY(QFile::rename(copy.path, m_place->filePath(CopyName{copy.manifest.moment, {}}.text())));
        }
        // They are told, proved, and go as ever.
        const QList<Copy> older = copiesIn(m_place->path());
        QCOMPARE(older.size(), 8);
        QCOMPARE(check(older.first().path), QString());
        // One of the same second counts as a second later.
        QCOMPARE(take().manifest.moment, QDateTime(QDate(2026, 5, 12), QTime(10, 0, 1)));
        QCOMPARE(copiesIn(m_place->path()).size(), 8);
    }

    /// At the same second, each from a folder of its own.
    void twoShopsOfOneStick() {
        open();
        const QTemporaryDir stick;
        const QTemporaryDir otherPlace;
        const Shop shop = Shop::current();
        Shop other = shop;
        other.id = anotherShop;
        QList<QByteArray> first;
        for (int day = 1; day <= 12; ++day) {
            m_shop->setNow(QDateTime(QDate(2026, 5, day), QTime(10, 0)));
            const Copy own = take();
            const Copy others = takeCopy(other, otherPlace.path(), m_storage, WorkProgress());
            QCOMPARE(own.manifest.moment, others.manifest.moment);
            for (const Copy& copy : {own, others}) {
                repeatCopy(copy, stick.path(), m_storage, WorkProgress());
                QCOMPARE(bytesOf(stick.filePath(QFileInfo(copy.path).fileName())), bytesOf(copy.path));
            }
        }
        QMap<QString, int> counts;
        for (const Copy& copy : copiesIn(stick.path()))
            ++counts[copy.manifest.shop];
        QCOMPARE(counts, (QMap<QString, int>{{shop.id, 8}, {anotherShop, 8}}));
        // The folder too may be one for both.
        const Copy own = take();
        const Copy others = takeCopy(other, m_place->path(), m_storage, WorkProgress());
        QCOMPARE(own.manifest.moment.addSecs(-1), others.manifest.moment);
    }

    /// While another shop's run has it.
    void aStickIsWaitedFor() {
        open();
        const Copy copy = take();
        const QTemporaryDir stick;
        auto lock = std::make_unique<FolderLock>(stick.path());
        QStringList said;
        repeatCopy(copy, stick.path(), m_storage, WorkProgress([&](const QString& what, qint64, qint64) {
                       said << what;
                       lock.reset();
                   }));
        QCOMPARE(said.first(), u"USB bellek bekleniyor"_s);
        QCOMPARE(copiesIn(stick.path()).size(), 1);
        // Until nobody wants to wait any more.
        lock = std::make_unique<FolderLock>(stick.path());
        QVERIFY_THROWS_EXCEPTION(
            WorkProgress::Cancelled,
            repeatCopy(copy, stick.path(), m_storage, WorkProgress([](const QString&, qint64, qint64) {
                           throw WorkProgress::Cancelled();
                       })));
        QCOMPARE(copiesIn(stick.path()).size(), 1);
    }

    void aStickGetsTheSameBytes() {
        open();
        const Copy copy = take();
        QTemporaryDir stick;
        repeatCopy(copy, stick.path(), m_storage, WorkProgress());
        QCOMPARE(filesOf(stick.path()), filesOf(m_place->path()));
        // Pulled out on the way: what was there stands.
        const auto before = filesOf(stick.path());
        m_shop->setNow(QDateTime(QDate(2026, 5, 4), QTime(7, 5, 9)));
        const Copy next = take();
        for (int step = 1; step <= 2; ++step) {
            CutStorage pulled(CutStorage::End::fails, step);
            QVERIFY(!wordsOf([&] { repeatCopy(next, stick.path(), pulled, WorkProgress()); }).isEmpty());
            QCOMPARE(filesOf(stick.path()), before);
        }
        QCOMPARE(check(next.path), QString());
    }

    void aStickThatIsFullOrGoes() {
        open();
        const Copy copy = take();
        const auto before = filesOf(m_place->path());
        SmallDisk small("size=1m");
        if (!small.isThere())
            QSKIP("only the administrator may make a disk");
        QVERIFY(wordsOf([&] {
                    repeatCopy(copy, small.path(), m_storage, WorkProgress());
                }).contains(u"yer kalmadı"_s));
        QVERIFY(filesOf(small.path()).isEmpty());
        SmallDisk pulled("size=200m");
        const QString words = wordsOf([&] {
            repeatCopy(copy, pulled.path(), m_storage,
                       WorkProgress([&](const QString&, qint64, qint64) { pulled.pullOut(); }));
        });
        QVERIFY2(words.contains(u"çıkarılmış"_s), qPrintable(words));
        QVERIFY(filesOf(pulled.path()).isEmpty());
        QCOMPARE(filesOf(m_place->path()), before);
    }
};

}  // namespace kovanix::yedek

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekSticksTest>(argc, argv);
}
#include "test_yedek_sticks.moc"
