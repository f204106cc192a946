// Files that are read where nothing can be written.

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

#include "database/databaseengine.h"
#include "database/filereader.h"
#include "database/readingway.h"
#include "database/rowwalk.h"
#include "databasefile.h"
#include "ordinaryuser.h"
#include "ownsurroundings.h"

using namespace kovanix;
using namespace Qt::StringLiterals;
using Kind = DatabaseError::Kind;

namespace {

QString troubleOfSurroundings;

/// What lies beside the file.
enum class Left { nothing, emptyLog, log, logAndMemory, rollbackFile, hotJournal };

/// Who can write what.
enum class Place { folder, closedFile, openFile, disk, lookAtDisk };

struct WayRow {
    Left left;
    Place place;
    ReadingWay way;
};

struct DiskRow {
    int flags;    ///< with which it is mounted
    bool asLook;  ///< and with which it is looked at from another folder
    bool isReadOnly;
};

/// Holds a file as a till of another process does until it is told to end.
int holdFile(const QString& path, const QString& password) {
    Connection till;
    till.open(u"Data Source=%1;Jet OLEDB:Database Password=%2"_s.arg(path, password));
    till.execute(u"INSERT INTO t VALUES ('sold')"_s);
    QTextStream(stdout) << "held\n" << Qt::flush;
    QTextStream(stdin).readLine();
    return 0;
}

}  // namespace

Q_DECLARE_METATYPE(WayRow)
Q_DECLARE_METATYPE(DiskRow)

class TestReadingWay : public QObject {
    Q_OBJECT

    /// A file whose last row lies where the case says, in a place that nobody can write.
    struct Closed {
        QTemporaryDir folder;
        QTemporaryDir looked;
        QString path;
        std::unique_ptr<OrdinaryUser> user;

        Closed(const QString& password, Left left, Place place) {
            const bool isDisk = place == Place::disk || place == Place::lookAtDisk;
            if (isDisk && !mountSmallDisk(folder.path(), 64))
                qFatal("no disk");
            path = folder.filePath(u"shop.data"_s);
            make(password, left);
            const mode_t mode = place == Place::openFile ? 0666 : 0444;
            for (const QString& name : QDir(folder.path()).entryList(QDir::Files))
                ::chmod(qPrintable(folder.filePath(name)), mode);
            ::chmod(qPrintable(folder.path()), place == Place::closedFile ? 01777 : 0555);
            if (place == Place::disk)
                ::mount("tmpfs", qPrintable(folder.path()), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=64m");
            if (place == Place::lookAtDisk) {
                ::mount(qPrintable(folder.path()), qPrintable(looked.path()), nullptr, MS_BIND, nullptr);
                ::mount(nullptr, qPrintable(looked.path()), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY,
                        nullptr);
                path = looked.filePath(u"shop.data"_s);
            }
            if (!isDisk)
                user = std::make_unique<OrdinaryUser>();
        }
        ~Closed() {
            user.reset();
            unmountDisk(looked.path());
            unmountDisk(folder.path());
            ::chmod(qPrintable(folder.path()), 0755);
        }

        void make(const QString& password, Left left) const {
            const QTemporaryDir elsewhere;
            const QString made = elsewhere.filePath(u"shop.data"_s);
            const bool rolls = left == Left::rollbackFile || left == Left::hotJournal;
            const auto keep = [&](const QStringList& ends) {
                for (const QString& end : ends) {
                    if (!QFile::copy(made + end, path + end))
                        qFatal("nothing to keep: %s", qPrintable(end));
                }
            };
            RawDatabase maker(made, password);
            for (
                const QString& sql :
                {rolls ? u"PRAGMA journal_mode=DELETE"_s : u"PRAGMA journal_mode=WAL"_s,
                 u"CREATE TABLE t (a)"_s,
                 u"INSERT INTO t WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 4999) SELECT 'row ' || i FROM n"_s,
                 rolls ? u"SELECT 1"_s : u"PRAGMA wal_checkpoint(TRUNCATE)"_s,
                 u"INSERT INTO t VALUES ('the last')"_s})
                maker.rows(sql);
            switch (left) {
                case Left::log:
                    return keep({{}, u"-wal"_s});
                case Left::logAndMemory:
                    return keep({{}, u"-wal"_s, u"-shm"_s});
                case Left::nothing:
                case Left::emptyLog:
                    maker.rows(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
                    return keep(left == Left::nothing ? QStringList{QString()} : QStringList{{}, u"-wal"_s});
                case Left::rollbackFile:
                    return keep({QString()});
                case Left::hotJournal:
                    // More than its memory takes: half of it lies in the file already.
                    maker.rows(u"PRAGMA cache_size=2"_s);
                    maker.rows(u"BEGIN"_s);
                    maker.rows(u"UPDATE t SET a = 'never sold'"_s);
                    return keep({QString(), u"-journal"_s});
            }
        }
        QMap<QString, QByteArray> files() const {
            QMap<QString, QByteArray> found;
            for (const QString& name : QDir(folder.path()).entryList(QDir::Files | QDir::Hidden)) {
                QFile file(folder.filePath(name));
                found[name] = file.open(QIODevice::ReadOnly) ? file.readAll() : "unread";
            }
            return found;
        }
    };

    /// Engines from before 3.22 don't read a log without writing into the memory beside it.
    static bool readsLogsUnwritten(const QString& password) {
        const QTemporaryDir folder;
        RawDatabase any(folder.filePath(u"any"_s), password);
        const QStringList version = any.rows(u"SELECT sqlite_version()"_s).first().split(u'.');
        constexpr int first = 22;
        return version[0].toInt() > 3 || version[1].toInt() >= first;
    }
    static QString connectionString(const QString& path, const QString& password) {
        return u"Data Source=%1;Jet OLEDB:Database Password=%2"_s.arg(path, password);
    }
    /// What is read: how many rows, and the last one.
    static QString through(Connection& connection) {
        QString found;
        RowWalk(connection, u"select a from t"_s).forEach([&](const RowWalk::Row& row) {
            found = row.value(0).toString();
        });
        qsizetype rows = 0;
        RowWalk(connection, u"select a from t order by a"_s).forEach([&](const RowWalk::Row&) { ++rows; });
        return QString::number(rows) + u' ' + found;
    }
    static ReadingWay wayOf(const QString& path, const QString& password, const CopyProgress& progress = {}) {
        const auto removed = qScopeGuard([] { QSqlDatabase::removeDatabase(u"way"_s); });
        QSqlDatabase database =
            QSqlDatabase::addDatabase(password.isEmpty() ? u"KOVANIXSQLITE"_s : u"QSQLCIPHER"_s, u"way"_s);
        const auto closed = qScopeGuard([&database] { database.close(); });
        database.setPassword(password);
        return openToRead(database, path, !password.isEmpty(), u"engine"_s, std::chrono::seconds(1),
                          progress);
    }
    static std::optional<DatabaseError> errorOf(const std::function<void()>& step) {
        try {
            step();
        } catch (const DatabaseError& error) {
            return error;
        }
        return std::nullopt;
    }
    QStringList temporaryFiles() const {
        QStringList found;
        for (const QString& place : {m_temporary->path(), u"/dev/shm"_s}) {
            QDirIterator files(place, {u"kovanix-*"_s},
                               QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
            while (files.hasNext())
                found << files.next();
        }
        return found;
    }

    std::optional<QTemporaryDir> m_temporary;

private Q_SLOTS:
    void initTestCase() {
        if (!troubleOfSurroundings.isEmpty())
            QSKIP(qPrintable(troubleOfSurroundings));
        if (::geteuid() != 0)
            QSKIP("only the administrator may make disks and be somebody else");
        // Nobody else's memory: some cases fill it.
        QVERIFY(mountSmallDisk(u"/dev/shm"_s, 64));
        ::chmod("/dev/shm", 01777);
        QVERIFY(findDriver(u"KOVANIXSQLITE"_s) && findDriver(u"QSQLCIPHER"_s));
    }
    void init() {
        m_temporary.emplace();
        QVERIFY(mountSmallDisk(m_temporary->path(), 64));
        ::chmod(qPrintable(m_temporary->path()), 01777);
        qputenv("TMPDIR", QFile::encodeName(m_temporary->path()));
    }
    void cleanup() {
        setNetworkFileTest({});
        qunsetenv("TMPDIR");
        clearDisk(u"/dev/shm"_s);
        unmountDisk(m_temporary->path());
        m_temporary.reset();
    }

    void aFileThatCanOnlyBeRead_data() {
        using enum Left;
        using enum Place;
        using enum ReadingWay;
        const QList<std::pair<const char*, WayRow>> rows{
            {"at rest, folder", {nothing, folder, copied}},
            {"at rest, file in an open folder", {nothing, closedFile, copied}},
            {"at rest, open file in a folder", {nothing, openFile, copied}},
            {"at rest, disk", {nothing, disk, still}},
            {"at rest, a look at a disk that others write", {nothing, lookAtDisk, copied}},
            {"empty log, folder", {emptyLog, folder, copied}},
            {"empty log, disk", {emptyLog, disk, still}},
            {"log, folder", {log, folder, copied}},
            {"log, file in an open folder", {log, closedFile, copied}},
            {"log, disk", {log, disk, copied}},
            {"log and memory, folder", {logAndMemory, folder, shared}},
            {"log and memory, file in an open folder", {logAndMemory, closedFile, shared}},
            {"log and memory, disk", {logAndMemory, disk, shared}},
            {"rollback journal's, folder", {rollbackFile, folder, shared}},
            {"rollback journal's, file in an open folder", {rollbackFile, closedFile, copied}},
            {"rollback journal's, disk", {rollbackFile, disk, shared}},
            {"journal, folder", {hotJournal, folder, copied}},
            {"journal, disk", {hotJournal, disk, copied}},
        };
        QTest::addColumn<QString>("password");
        QTest::addColumn<WayRow>("row");
        for (const auto& [name, row] : rows) {
            QTest::addRow("%s", name) << QString() << row;
            QTest::addRow("%s, password", name) << u"gizli"_s << row;
        }
    }
    void aFileThatCanOnlyBeRead() {
        QFETCH(const QString, password);
        QFETCH(const WayRow, row);
        const Closed closed(password, row.left, row.place);
        const auto before = closed.files();
        const bool isCopied = row.left == Left::logAndMemory && !readsLogsUnwritten(password);
        QCOMPARE(wayOf(closed.path, password), isCopied ? ReadingWay::copied : row.way);
        Connection connection;
        connection.openToRead(connectionString(closed.path, password));
        // It has no name any more.
        QCOMPARE(temporaryFiles(), QStringList());
        QCOMPARE(through(connection), u"5000 the last"_s);
        QVERIFY(errorOf([&] { connection.execute(u"INSERT INTO t VALUES ('x')"_s); }));
        connection.close();
        const QTemporaryDir target;
        const QString copy = target.filePath(u"copy"_s);
        FileReader(closed.path, password).copyTo(copy);
        Connection copied;
        copied.open(connectionString(copy, password));
        QCOMPARE(through(copied), u"5000 the last"_s);
        QCOMPARE(closed.files(), before);
        QCOMPARE(temporaryFiles(), QStringList());
    }

    void aDiskThatNobodyCanWrite_data() {
        QTest::addColumn<DiskRow>("row");
        QTest::newRow("open") << DiskRow{0, false, false};
        QTest::newRow("closed") << DiskRow{MS_RDONLY, false, true};
        QTest::newRow("open, looked at to be read") << DiskRow{0, true, false};
    }
    void aDiskThatNobodyCanWrite() {
        QFETCH(const DiskRow, row);
        const QTemporaryDir disk;
        const QTemporaryDir look;
        const QString path = row.asLook ? look.path() : disk.path();
        QCOMPARE(
            ::mount("tmpfs", qPrintable(disk.path()), "tmpfs", static_cast<unsigned long>(row.flags), ""), 0);
        if (row.asLook) {
            QCOMPARE(::mount(qPrintable(disk.path()), qPrintable(look.path()), nullptr, MS_BIND, nullptr), 0);
            QCOMPARE(
                ::mount(nullptr, qPrintable(look.path()), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr),
                0);
        }
        QCOMPARE(liesOnReadOnlyDisk(path), row.isReadOnly);
        unmountDisk(look.path());
        unmountDisk(disk.path());
        QVERIFY(!liesOnReadOnlyDisk(u"/nowhere"_s));
    }

    /// A till on another user's account is at work.
    void aTillThatWritesIsReadWith_data() { DatabaseFile::bothKinds(); }
    void aTillThatWritesIsReadWith() {
        const DatabaseFile file;
        file.execute({u"CREATE TABLE t (a TEXT(50))"_s});
        ::chmod(qPrintable(file.path()), 0644);
        QProcess till;
        till.start(QCoreApplication::applicationFilePath(), {u"hold"_s, file.path(), file.password()});
        QVERIFY(till.waitForReadyRead());
        ::chmod(qPrintable(file.folder()), 0555);
        if (readsLogsUnwritten(file.password())) {
            const OrdinaryUser user;
            QCOMPARE(wayOf(file.path(), file.password()), ReadingWay::shared);
            Connection connection;
            connection.openToRead(file.connectionString());
            QCOMPARE(through(connection), u"1 sold"_s);
        }
        // Without what its users share nobody could tell what it is doing.
        ::chmod(qPrintable(file.path() + u"-shm"), 0600);
        {
            const OrdinaryUser user;
            const auto error = errorOf([&] { wayOf(file.path(), file.password()); });
            QVERIFY(error);
            QCOMPARE(error->kind(), Kind::busy);
            QVERIFY(error->description().contains(u"başka bir kasa"_s));
        }
        QCOMPARE(temporaryFiles(), QStringList());
        till.write("\n");
        QVERIFY(till.waitForFinished());
        ::chmod(qPrintable(file.folder()), 0755);
    }

    void aShareIsNeitherStillNorCopied_data() { DatabaseFile::bothKinds(); }
    void aShareIsNeitherStillNorCopied() {
        QFETCH(const QString, password);
        for (const Place place : {Place::folder, Place::disk}) {
            const Closed closed(password, Left::nothing, place);
            setNetworkFileTest([](const QString&) { return true; });
            QVERIFY(errorOf([&] { wayOf(closed.path, password); }));
            QVERIFY(errorOf([&] { FileReader(closed.path, password); }));
            Connection connection;
            QVERIFY(errorOf([&] { connection.openToRead(connectionString(closed.path, password)); }));
            setNetworkFileTest({});
        }
    }

    void whatIsWrittenMeanwhileIsNoticed() {
        const Closed closed({}, Left::log, Place::openFile);
        for (const QString& end : {QString(), u"-wal"_s}) {
            const auto error = errorOf([&] {
                wayOf(closed.path, {}, [&](qint64, qint64) {
                    QFile file(closed.path + end);
                    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
                        file.write("x");
                });
            });
            QVERIFY(error);
            QCOMPARE(error->kind(), Kind::busy);
        }
        QCOMPARE(temporaryFiles(), QStringList());
    }

    void theCopyIsItsOwnersAlone() {
        const Closed closed({}, Left::log, Place::folder);
        QStringList seen;
        qint64 all = 0;
        qint64 last = 0;
        wayOf(closed.path, {}, [&](qint64 done, qint64 total) {
            seen = temporaryFiles();
            all = total;
            last = done;
            struct stat found {};
            QCOMPARE(::stat(qPrintable(seen.first()), &found), 0);
            QCOMPARE(found.st_mode & 07777, mode_t{0700});
            QCOMPARE(::stat(qPrintable(seen.first() + u"/kovanix.data"), &found), 0);
            QCOMPARE(found.st_mode & 07777, mode_t{0600});
        });
        QCOMPARE(seen.size(), 1);
        QVERIFY(all > 0);
        QCOMPARE(last, all);
        QCOMPARE(temporaryFiles(), QStringList());
    }

    void nobodyWaitsForACopyAnyMore() {
        struct Cancelled {};
        const Closed closed({}, Left::log, Place::folder);
        const CopyProgress cancel = [](qint64, qint64) { throw Cancelled(); };
        QVERIFY_THROWS_EXCEPTION(Cancelled, wayOf(closed.path, {}, cancel));
        QVERIFY_THROWS_EXCEPTION(Cancelled, FileReader(closed.path, {}, cancel));
        Connection connection;
        QVERIFY_THROWS_EXCEPTION(Cancelled, connection.openToRead(connectionString(closed.path, {}), cancel));
        QVERIFY(!connection.isOpen());
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
        QCOMPARE(temporaryFiles(), QStringList());
    }

    /// On the only disk that there is nothing can be written.
    void theCopyLiesInMemoryWhereTheDiskIsFull() {
        const Closed closed({}, Left::log, Place::disk);
        fillDisk(m_temporary->path());
        QStringList seen;
        wayOf(closed.path, {}, [&](qint64, qint64) { seen = temporaryFiles(); });
        QCOMPARE(seen.size(), 1);
        QVERIFY(seen.first().startsWith(u"/dev/shm/"_s));
        fillDisk(u"/dev/shm"_s);
        const auto error = errorOf([&] { wayOf(closed.path, {}); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::full);
        QVERIFY2(error->description().startsWith(u"Diskte yer kalmadı"_s), qPrintable(error->description()));
        QVERIFY(error->description().contains(m_temporary->path()));
        QCOMPARE(temporaryFiles(), QStringList());
    }

    void aDiskThatFillsMeanwhile() {
        const Closed closed({}, Left::log, Place::disk);
        const auto error =
            errorOf([&] { wayOf(closed.path, {}, [&](qint64, qint64) { fillDisk(m_temporary->path()); }); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::full);
        QCOMPARE(temporaryFiles(), QStringList());
    }

    void aWrongPasswordIsTold() {
        const Closed closed(u"gizli"_s, Left::nothing, Place::disk);
        const auto wrong = errorOf([&] { wayOf(closed.path, u"baska"_s); });
        QVERIFY(wrong);
        QCOMPARE(wrong->kind(), Kind::wrongPassword);
    }

    void aFileThatMayNotBeRead() {
        const DatabaseFile file((QString()));
        file.execute({u"CREATE TABLE t (a TEXT(50))"_s});
        ::chmod(qPrintable(file.path()), 0200);
        ::chmod(qPrintable(file.folder()), 0555);
        const auto back = qScopeGuard([&] { ::chmod(qPrintable(file.folder()), 0755); });
        const OrdinaryUser user;
        const auto error = errorOf([&] { wayOf(file.path(), {}); });
        QVERIFY(error);
        QCOMPARE(error->kind(), Kind::missing);
    }
};

int main(int argc, char** argv) {
    if (argc > 3 && QByteArrayView(argv[1]) == "hold") {
        QCoreApplication application(argc, argv);
        return holdFile(QFile::decodeName(argv[2]), QString::fromUtf8(argv[3]));
    }
    troubleOfSurroundings = enterOwnSurroundings();
    QCoreApplication application(argc, argv);
    TestReadingWay test;
    return QTest::qExec(&test, argc, argv);
}
#include "test_readingway.moc"
