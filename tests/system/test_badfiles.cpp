// Shops whose file can't be opened or written: the boxes that say so, the till that stays up, and the rows
// that stay.

#include <QDir>
#include <QElapsedTimer>
#include <QScopeGuard>
#include <functional>

#include "database/engineerror.h"
#include "databasefile.h"
#include "ownsurroundings.h"
#include "programs.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

const QString ok = u"answer Tamam"_s;
const QString waitForMending = u"pause"_s;
const QString waiting = u"waiting"_s;
const QString sayWaiting = u"say "_s + waiting;
const QString sell = u"key F1"_s;

QString scanOf(const QString& barcode) {
    return u"scan "_s + barcode;
}

using Kind = DatabaseError::Kind;

// What the engine's commonest failures are told with.
const QString locked = describeFailure(Kind::busy, u"database is locked"_s);
const QString readOnly = describeFailure(Kind::readOnly, u"attempt to write a readonly database"_s);
const QString full = describeFailure(Kind::full, u"database or disk is full"_s);
const QString damaged = describeFailure(Kind::damaged, u"database disk image is malformed"_s);
const QString noDatabase = describeFailure(Kind::notADatabase, u"file is not a database"_s);
const QString wrongPassword =
    describeFailure(Kind::wrongPassword, u"file is encrypted or is not a database"_s);

/// The box of a file that doesn't open, with what is said of the failure.
QString openBox(const QString& path, const QString& words) {
    return u"critical box Hata: Veritabanı açılamadı:\\n" + path + u"\\n\\n" + words;
}

// "baılantısı" is how the till spells it.
const QString screenBox = u"box Hata: Veritabanı baılantısı kurulamadı: "_s;
const QString notReadyBox = u"critical box Hata: Veritabanı baılantısı kurulamadı"_s;

QString commitBox(const QString& words, const QString& source = u"satislar"_s) {
    return u"critical box Hata: Satış kaydedilemedi: " + words + u" - " + source;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("can't write %s", qUtf8Printable(path));
}

QByteArray readFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("can't read %s", qUtf8Printable(path));
    return file.readAll();
}

/// A lock on a shop's file, held by this process.
class Lock {
public:
    Lock(const QString& file, const QStringList& statements) : m_database(file, QString()) {
        for (const QString& statement : statements)
            m_database.values(statement);
    }

private:
    RawDatabase m_database;
};

/// A small file system of its own, mounted below a folder.
class SmallDisk {
public:
    explicit SmallDisk(const QString& folder) : m_folder(folder) {
        QDir().mkpath(folder);
        m_mounted = mountSmallDisk(folder, 2);
    }
    ~SmallDisk() {
        if (m_mounted)
            unmountDisk(m_folder);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

    bool isMounted() const { return m_mounted; }
    QString folder() const { return m_folder; }

    void fill() const { fillDisk(m_folder); }
    void clear() const { clearDisk(m_folder); }

private:
    QString m_folder;
    bool m_mounted = false;
};

int storedRows(const ClosedShop& shop) {
    return shop.value(u"SELECT count(*) FROM satislar"_s).toInt();
}

/// Stores a sale of before, in a file that is still good.
void sellOnce(const ClosedShop& shop) {
    shop.run(
        u"INSERT INTO satislar (tarih, barkod, urun, adet, fiyat, alis, kar, toplam, satis) VALUES "
        u"('2026-05-02 10:00:00', 'eski', 'Eski Satış', 1, 10, 7, 3, 10, 3)"_s);
}

}  // namespace

class BadFilesTest : public QObject {
    Q_OBJECT

    using Step = std::function<void(const ClosedShop&)>;
    struct AFileThatDoesNotOpenRow {
        QString password;
        Step spoil, mend;
        QString words;
        bool found;
    };

private Q_SLOTS:
    void aFileThatDoesNotOpen_data() {
        QTest::addColumn<AFileThatDoesNotOpenRow>("row");

        static QByteArray good;
        const auto database = [](const ClosedShop& shop) { return shop.databaseFile(); };
        const Step restore = [database](const ClosedShop& shop) { writeFile(database(shop), good); };

        QTest::newRow("a wrong password") << AFileThatDoesNotOpenRow{
            u"gizli"_s, Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\ndbpass=baska\r\n"); }),
            Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\ndbpass=gizli\r\n"); }),
            wrongPassword, true};
        QTest::newRow("a password that is missing") << AFileThatDoesNotOpenRow{
            u"gizli"_s, Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\n"); }),
            Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\nmdbparola=gizli\r\n"); }),
            noDatabase, true};
        QTest::newRow("a password for a plain file") << AFileThatDoesNotOpenRow{
            QString(), Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\ndbpass=gizli\r\n"); }),
            Step([](const ClosedShop& shop) { shop.writeConfig("[ayar]\r\n"); }), wrongPassword, true};
        QTest::newRow("a damaged file")
            << AFileThatDoesNotOpenRow{QString(), Step([database](const ClosedShop& shop) {
                                           good = readFile(database(shop));
                                           writeFile(database(shop), QByteArray(good.size(), '#'));
                                       }),
                                       restore, noDatabase, true};
        QTest::newRow("a damaged file with a password")
            << AFileThatDoesNotOpenRow{u"gizli"_s, Step([database](const ClosedShop& shop) {
                                           good = readFile(database(shop));
                                           QByteArray bad = good;
                                           bad.replace(100, 50, QByteArray(50, '#'));
                                           writeFile(database(shop), bad);
                                       }),
                                       restore, wrongPassword, true};
        QTest::newRow("a damaged catalogue") << AFileThatDoesNotOpenRow{
            QString(), Step([database](const ClosedShop& shop) {
                good = readFile(database(shop));
                QByteArray bad = good;
                bad.replace(100, 3000, QByteArray(3000, '#'));  // the first page behind the file's header
                writeFile(database(shop), bad);
            }),
            restore, damaged, true};
        QTest::newRow("a missing file") << AFileThatDoesNotOpenRow{
            QString(), Step([database](const ClosedShop& shop) {
                QFile::rename(database(shop), shop.file(u"elsewhere"_s));
            }),
            Step([database](const ClosedShop& shop) {
                QVERIFY2(QFile::rename(shop.file(u"elsewhere"_s), database(shop)),
                         "the till has made a file of its own");
            }),
            describeFailure(Kind::missing, u"unable to open database file"_s), false};
    }

    void aFileThatDoesNotOpen() {
        QFETCH(const AFileThatDoesNotOpenRow, row);
        const ClosedShop shop(row.password);
        sellOnce(shop);
        row.spoil(shop);

        const QString open = openBox(shop.databaseFile(), row.words);
        // A file that is there is tried before the screen, then by the screen, then by each scan.
        QStringList expected{open, screenBox, waiting, open, notReadyBox, waiting};
        if (row.found)
            expected.prepend(open);
        const qsizetype atStart = row.found ? 3 : 2;
        const QStringList steps = QStringList(atStart, ok) + QStringList{sayWaiting,
                                                                         ok,
                                                                         ok,
                                                                         scanOf(shelf::bread),
                                                                         u"expect barkod "_s + shelf::bread,
                                                                         sayWaiting,
                                                                         waitForMending,
                                                                         u"key Return"_s,
                                                                         u"expect toplam 10,00"_s,
                                                                         u"cell 1 1 "_s + shelf::bread,
                                                                         sell};
        Program till(shop.replay(steps));
        QVERIFY2(till.waitForLine(waiting, 2), qPrintable(till.lines().join(u'\n')));
        QCOMPARE(till.lines(), expected);

        row.mend(shop);
        till.goOn();
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(till.lines(), expected);
        QCOMPARE(storedRows(shop), 2);
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
    }

    void aFileThatIsDamagedBehindItsCatalogue() {
        const ClosedShop shop;
        sellOnce(shop);
        const QByteArray good = readFile(shop.databaseFile());
        const int pageSize = shop.value(u"PRAGMA page_size"_s).toInt();
        QByteArray bad = good;
        for (qsizetype at = pageSize; at < bad.size(); at += pageSize)
            bad.replace(at, 100, QByteArray(100, '#'));
        writeFile(shop.databaseFile(), bad);

        Program till(
            shop.replay({ok, scanOf(shelf::bread), sayWaiting, waitForMending, scanOf(shelf::bread), sell}));
        QVERIFY(till.waitForLine(waiting));
        QCOMPARE(till.lines(), (QStringList{notReadyBox + u": " + damaged, waiting}));
        till.killHard();

        // Nothing was written over what is left.
        QCOMPARE(readFile(shop.databaseFile()), bad);
    }

    void aFileThatIsLockedAtTheStart() {
        const ClosedShop shop;
        sellOnce(shop);
        QElapsedTimer clock;
        QStringList boxes;
        {
            const Lock lock(shop.databaseFile(), {u"PRAGMA journal_mode=DELETE"_s, u"BEGIN EXCLUSIVE"_s});
            clock.start();
            Program till(shop.replay({ok, ok, ok, sayWaiting}));
            QVERIFY(till.waitForLine(waiting));
            boxes = till.lines();
        }
        const QString open = openBox(shop.databaseFile(), locked);
        QCOMPARE(boxes, (QStringList{open, open, screenBox, waiting}));
        QVERIFY2(clock.elapsed() >= 2 * 4500, "the till didn't wait for the lock");
        QCOMPARE(storedRows(shop), 1);
    }

    void aFileThatIsLockedAtTheCommit() {
        const ClosedShop shop;
        Program till(shop.replay({scanOf(shelf::bread), scanOf(shelf::milk), sayWaiting, waitForMending, ok,
                                  sell, u"expect toplam 42,50"_s, sayWaiting, waitForMending, sell,
                                  u"expect toplam 0,00"_s, scanOf(shelf::milk), sell}));
        QVERIFY(till.waitForLine(waiting));
        QElapsedTimer clock;
        {
            const Lock lock(shop.databaseFile(), {u"BEGIN IMMEDIATE"_s});
            clock.start();
            till.goOn();
            QVERIFY(till.waitForLine(waiting, 2));
            QVERIFY2(clock.elapsed() >= 4500, "the till didn't wait for the lock");
        }
        QCOMPARE(till.lines(), (QStringList{waiting, commitBox(locked), waiting}));
        QCOMPARE(storedRows(shop), 0);
        till.goOn();
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(till.lines().size(), 3);
        QCOMPARE(storedRows(shop), 3);
        QCOMPARE(shop.stock(shelf::milk), shelf::startStock - 2);
    }

    void aLockThatIsGivenBackInTime() {
        const ClosedShop shop;
        Program till(shop.replay({scanOf(shelf::bread), sayWaiting, waitForMending, sayWaiting, sell}));
        QVERIFY(till.waitForLine(waiting));
        {
            const Lock lock(shop.databaseFile(), {u"BEGIN IMMEDIATE"_s});
            till.goOn();
            QVERIFY(till.waitForLine(waiting, 2));
        }
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(till.lines(), (QStringList{waiting, waiting}));
        QCOMPARE(storedRows(shop), 1);
    }

    void aFolderThatCanOnlyBeRead_data() {
        QTest::addColumn<QString>("journal");
        QTest::newRow("with a rollback journal") << u"DELETE"_s;
        QTest::newRow("with a write-ahead log") << u"WAL"_s;
    }

    void aFolderThatCanOnlyBeRead() {
        QFETCH(QString, journal);
        if (!ordinaryUserTrouble().isEmpty())
            QSKIP(qPrintable(ordinaryUserTrouble()));
        const ClosedShop shop;
        sellOnce(shop);
        shop.run(u"PRAGMA journal_mode=" + journal);
        const bool opens = journal == u"DELETE";
        const QString open = openBox(shop.databaseFile(), readOnly);
        const QString failure = commitBox(readOnly);
        const QStringList steps =
            opens ? QStringList{scanOf(shelf::bread),     ok,        sell, u"expect toplam 10,00"_s, ok, sell,
                                u"expect toplam 10,00"_s, sayWaiting}
                  : QStringList{ok, ok, ok, ok, ok, scanOf(shelf::bread), sayWaiting};
        const QStringList command = asOrdinaryUser() + shop.replay(steps);
        const QStringList expected = opens ? QStringList{failure, failure, waiting}
                                           : QStringList{open, open, screenBox, open, notReadyBox, waiting};

        shop.openToEveryone();
        const QFile::Permissions read = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
        QFile::setPermissions(shop.databaseFile(), read);
        QFile::setPermissions(shop.folder(), read | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
        const auto giveBack = qScopeGuard([&] {
            QFile::setPermissions(shop.folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            QFile::setPermissions(shop.databaseFile(), QFile::ReadOwner | QFile::WriteOwner);
        });
        const QByteArray before = readFile(shop.databaseFile());
        Program till(command);
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(till.lines(), expected);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(readFile(shop.databaseFile()), before);
    }

    void aFullDisk_data() {
        QTest::addColumn<QString>("password");
        QTest::newRow("a plain file") << QString();
        QTest::newRow("a file with a password") << u"gizli"_s;
    }

    void aFullDisk() {
        QFETCH(QString, password);
        const QString stays = u"expect toplam 10,00"_s;
        const ClosedShop shop(password);
        sellOnce(shop);
        const SmallDisk disk(shop.file(u"disk"_s));
        if (!disk.isMounted())
            QSKIP("mounting a small disk is refused here");
        const QString folder = disk.folder();
        const QString database = folder + u"/kovanix.data";
        const QString passwordLine = password.isEmpty() ? QString() : u"dbpass=" + password + u"\r\n";
        writeFile(folder + u"/Kovanix.config", (u"[ayar]\r\n" + passwordLine).toUtf8());
        QVERIFY(QFile::copy(shop.databaseFile(), database));

        // Nothing has been written since the start: the log has no room of its own yet to write into.
        Program till(shop.replay(
            {scanOf(shelf::bread), sayWaiting, waitForMending, ok, sell, stays, ok, sell, stays, sayWaiting,
             waitForMending, sell, u"expect toplam 0,00"_s, scanOf(shelf::milk), sell},
            folder));
        QVERIFY(till.waitForLine(waiting));
        disk.fill();
        till.goOn();
        QVERIFY(till.waitForLine(waiting, 2));
        const QStringList failures = till.lines().mid(1, 2);
        QCOMPARE(till.lines(), (QStringList{waiting, failures.value(0), failures.value(1), waiting}));
        for (const QString& failure : failures)
            QVERIFY2(failure == commitBox(full) || failure == commitBox(full, u"stokguncelle"_s),
                     qPrintable(failure));
        disk.clear();
        till.goOn();
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QCOMPARE(till.lines().size(), 4);

        QVERIFY(QFile::remove(shop.databaseFile()) && QFile::copy(database, shop.databaseFile()));
        QVERIFY(!QFile::exists(database + u"-wal"));
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(storedRows(shop), 3);
        QCOMPARE(shop.stock(shelf::bread), shelf::startStock - 1);
        QCOMPARE(shop.stock(shelf::milk), shelf::startStock - 1);
    }

    void aDiskThatIsFullAtTheStart() {
        const ClosedShop shop;
        sellOnce(shop);
        const SmallDisk disk(shop.file(u"disk"_s));
        if (!disk.isMounted())
            QSKIP("mounting a small disk is refused here");
        const QString folder = disk.folder();
        const QString config = folder + u"/Kovanix.config";
        const QByteArray settings = "[ayar]\r\nanahtar=deger\r\n";
        writeFile(config, settings);
        QVERIFY(QFile::copy(shop.databaseFile(), folder + u"/kovanix.data"));
        disk.fill();
        const QByteArray before = readFile(folder + u"/kovanix.data");

        Program till(
            shop.replay({ok, ok, ok, sayWaiting, waitForMending, scanOf(shelf::bread), sell}, folder));
        QVERIFY(till.waitForLine(waiting));
        // Which of its two words the engine has depends on what it finds no room for first.
        const QString noRoom = openBox(folder + u"/kovanix.data", full);
        const QString failed =
            openBox(folder + u"/kovanix.data", describeFailure(Kind::lost, u"disk I/O error"_s));
        const QString open = till.lines().value(0) == noRoom ? noRoom : failed;
        QCOMPARE(till.lines(), (QStringList{open, open, screenBox, waiting}));
        QCOMPARE(readFile(config), settings);
        QCOMPARE(readFile(folder + u"/kovanix.data"), before);
        disk.clear();
        till.goOn();
        const Outcome outcome = till.finish();
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(outcome.status, 0);
        QVERIFY(readFile(config).startsWith(settings));
        QVERIFY(QFile::remove(shop.databaseFile()) &&
                QFile::copy(folder + u"/kovanix.data", shop.databaseFile()));
        QCOMPARE(storedRows(shop), 2);
    }
};

int main(int argc, char** argv) {
    return runTests<BadFilesTest>(argc, argv);
}

#include "test_badfiles.moc"
