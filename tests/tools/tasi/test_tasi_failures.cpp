// Moves that are broken off: the file stays as it was and the server without the tables, or the next run
// finishes what was done.

#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

#include "tasifixture.h"

using namespace kovanix;
using namespace kovanix::tasi;
using namespace Qt::StringLiterals;
using Step = Progress::Step;

namespace {

constexpr int patience = 60000;  // milliseconds
// In which a server's sign of life is waited for, where it gives none.
constexpr std::chrono::milliseconds shortDeadline{2000};

QByteArray bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// This program once more, as a move that kills itself at a step.
/// @return whether the signal was its end
bool moveAndDie(const QString& what, Step step, const ToServer& order) {
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(),
                  {u"--ol"_s, what, QString::number(static_cast<int>(step)), order.file, order.pointer,
                   order.filePassword});
    return process.waitForFinished(patience) && process.exitStatus() == QProcess::CrashExit;
}

int dyingMove(const QStringList& arguments) {
    const auto step = static_cast<Step>(arguments[3].toInt());
    const AtStep dieAt(step, [] { ::raise(SIGKILL); });
    const QString password = ServerCluster::password();
    if (arguments[2] == u"sunucuya")
        moveToServer({arguments[4], arguments[5], {}, arguments.value(6), password, {}}, dieAt);
    else
        copyToFile({arguments[5], arguments[4], password, arguments.value(6), {}}, dieAt);
    return 0;
}

/// As on a disk that is full: no file of this process grows beyond that many bytes.
int moveOnAFullDisk(const QStringList& arguments) {
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{300'000, 300'000};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    return static_cast<int>(codeOf([&] {
        copyToFile({arguments[3], arguments[2], ServerCluster::password(), {}, {}}, {});
    }));
}

struct StepRow {
    const char* name;
    Step step;
    bool committed;
};

const QList<StepRow>& stepRows() {
    static const QList<StepRow> rows{
        {"copying", Step::copying, false},         {"indexing", Step::indexing, false},
        {"comparing", Step::comparing, false},     {"committing", Step::committing, false},
        {"committed", Step::committed, true},      {"pointer written", Step::pointerWritten, true},
        {"settings done", Step::folderDone, true},
    };
    return rows;
}

}  // namespace

Q_DECLARE_METATYPE(StepRow)

class TestTasiFailures : public TasiTest {
    Q_OBJECT

private:
    static void stepData(bool committed) {
        QTest::addColumn<StepRow>("row");
        for (const StepRow& row : stepRows()) {
            if (row.committed == committed)
                QTest::newRow(row.name) << row;
        }
    }

    /// Waits until no connection of the role is left on the server: the one of a killed move goes by itself.
    static bool waitForRollback(const MovingShop& shop) {
        return QTest::qWaitFor([&shop] {
            return shop
                .serverRows(
                    u"SELECT 1 FROM pg_stat_activity WHERE usename = '%1'"_s.arg(ServerCluster::role()))
                .isEmpty();
        });
    }

private Q_SLOTS:
    void aKilledServerLeavesNothing_data() { stepData(false); }
    void aKilledServerLeavesNothing() {
        QFETCH(StepRow, row);
        const MovingShop shop;
        shop.fill();
        const QByteArray before = bytes(shop.file());
        const AtStep kill(row.step, [] { sharedCluster()->kill(); });
        const ExitCode code = codeOf([&] { moveToServer(shop.toServer(), kill); });
        QVERIFY(kill.hasHappened());
        // Killed ahead of the commit's answer, nobody can tell.
        QCOMPARE(code, row.step == Step::committing ? ExitCode::uncertain : ExitCode::failed);
        QCOMPARE(bytes(shop.file()), before);
        QVERIFY(sharedCluster()->restart());
        QVERIFY(shop.serverTables().isEmpty());
        QCOMPARE(moveToServer(shop.toServer()).rows, 30001);
    }

    /// Its connections stay open, as those of a machine that hangs.
    void aStandingServerIsGivenUp_data() { stepData(false); }
    void aStandingServerIsGivenUp() {
        QFETCH(StepRow, row);
        const MovingShop shop;
        shop.fill();
        const QByteArray before = bytes(shop.file());
        ToServer order = shop.toServer();
        order.deadline = shortDeadline;
        const AtStep pause(row.step, [] { sharedCluster()->pause(); });
        QElapsedTimer timer;
        timer.start();
        const ExitCode code = codeOf([&] { moveToServer(order, pause); });
        sharedCluster()->resume();
        QVERIFY(pause.hasHappened());
        QVERIFY(timer.elapsed() > shortDeadline.count() && timer.elapsed() < patience / 2);
        // What it was sent it does when it goes on: a commit, too.
        QCOMPARE(code, row.step == Step::committing ? ExitCode::uncertain : ExitCode::failed);
        QCOMPARE(bytes(shop.file()), before);
        QVERIFY(waitForRollback(shop));
        QCOMPARE(shop.serverTables().isEmpty(), row.step != Step::committing);
        QCOMPARE(moveToServer(shop.toServer()).rows, 30001);
    }

    void aStandingServerIsNotWaitedForAtTheStart() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.deadline = shortDeadline;
        sharedCluster()->pause();
        QElapsedTimer timer;
        timer.start();
        const ExitCode code = codeOf([&] { moveToServer(order); });
        sharedCluster()->resume();
        QCOMPARE(code, ExitCode::serverUnfit);
        QVERIFY(timer.elapsed() < patience / 2);
    }

    void aKilledMoveLeavesNothing_data() { stepData(false); }
    void aKilledMoveLeavesNothing() {
        QFETCH(StepRow, row);
        const MovingShop shop;
        shop.fill();
        const QByteArray before = bytes(shop.file());
        QVERIFY(moveAndDie(u"sunucuya"_s, row.step, shop.toServer()));
        QCOMPARE(bytes(shop.file()), before);
        QVERIFY(waitForRollback(shop));
        QVERIFY(shop.serverTables().isEmpty());
        const MoveResult result = moveToServer(shop.toServer());
        QVERIFY(!result.finishedEarlier);
        QCOMPARE(result.rows, 30001);
    }

    void theNextRunFinishes_data() { stepData(true); }
    void theNextRunFinishes() {
        QFETCH(StepRow, row);
        const MovingShop shop(u"gizli"_s);
        shop.fill();
        QVERIFY(moveAndDie(u"sunucuya"_s, row.step, shop.toServer()));
        QVERIFY(QFileInfo::exists(shop.file()));
        // A till that has found the pointer sells already.
        shop.serverRows(u"INSERT INTO satislar (urun) VALUES ('b')"_s);
        const MoveResult result = moveToServer(shop.toServer());
        QVERIFY(result.finishedEarlier);
        QCOMPARE(result.renamed, QStringList{shop.movedFile()});
        QVERIFY(!QFileInfo::exists(shop.file()));
        QCOMPARE(shop.serverRows(u"SELECT count(*) FROM satislar"_s), (QList<QStringList>{{u"30001"_s}}));
    }

    void aRunAfterTheLastStepFindsAllDone() {
        const MovingShop shop;
        moveToServer(shop.toServer());
        const MoveResult result = moveToServer(shop.toServer());
        QVERIFY(result.finishedEarlier);
        QVERIFY(result.renamed.isEmpty());
        QVERIFY(QFileInfo::exists(shop.movedFile()));
    }

    /// A till that sold into the file after the broken move: the server lacks that sale.
    void theNextRunRefusesAFileThatHasChanged() {
        const MovingShop shop;
        shop.fill();
        QVERIFY(moveAndDie(u"sunucuya"_s, Step::committed, shop.toServer()));
        shop.run({u"INSERT INTO satislar (urun) VALUES ('geç')"_s});
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::serverUnfit);
        QVERIFY(QFileInfo::exists(shop.file()));
    }

    void theNextRunRefusesAnotherShop() {
        const MovingShop shop;
        moveToServer(shop.toServer());
        const MovingShop other;
        other.run({u"INSERT INTO satislar (urun) VALUES ('başka')"_s});
        ToServer order = other.toServer();
        order.pointer = shop.pointer();
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::serverUnfit);
        QVERIFY(QFileInfo::exists(other.file()));
    }

    /// What the server keeps differs from what it was sent: a trigger stands for a fault of any kind.
    void aDifferenceLeavesNothing_data() {
        QTest::addColumn<QString>("fault");
        QTest::newRow("a value")
            << u"NEW.adet = NEW.adet + CASE WHEN NEW.no = 20000 THEN 1e-9 ELSE 0 END; RETURN NEW"_s;
        QTest::newRow("a letter")
            << u"IF NEW.no = 30000 THEN NEW.urun = upper(NEW.urun); END IF; RETURN NEW"_s;
        QTest::newRow("a row") << u"IF NEW.no = 15000 THEN RETURN NULL; END IF; RETURN NEW"_s;
    }
    void aDifferenceLeavesNothing() {
        QFETCH(QString, fault);
        const MovingShop shop;
        shop.fill();
        // Made with the table, by the server itself.
        shop.serverRows(
            u"CREATE FUNCTION bozuk() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN %1; END $$"_s.arg(fault));
        shop.serverRows(
            u"CREATE FUNCTION bozan() RETURNS event_trigger LANGUAGE plpgsql SECURITY DEFINER AS $$ BEGIN "
            "IF to_regclass('satislar') IS NOT NULL AND NOT EXISTS (SELECT 1 FROM pg_trigger WHERE tgname = "
            "'bozuk') THEN CREATE TRIGGER bozuk BEFORE INSERT ON satislar FOR EACH ROW EXECUTE FUNCTION "
            "bozuk(); END IF; END $$"_s);
        shop.serverRows(
            u"CREATE EVENT TRIGGER bozan ON ddl_command_end WHEN TAG IN ('CREATE TABLE') EXECUTE FUNCTION bozan()"_s);
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::differs);
        QVERIFY(shop.serverTables().isEmpty());
        QVERIFY(QFileInfo::exists(shop.file()));
        QVERIFY(QDir(shop.folder()).entryList({u"*.tsv"_s}).isEmpty());
    }

    void whatCannotBeFinishedIsTold() {
        const MovingShop shop;
        ToServer order = shop.toServer();
        order.address = ServerAddress::read(shop.pointer());
        // A folder in the place of the half-written pointer stands for a disk that takes nothing more.
        order.pointer = shop.path(u"yeni.sunucu"_s);
        QVERIFY(QDir(shop.folder()).mkpath(u"yeni.sunucu.yarim/dolu"_s));
        QCOMPARE(codeOf([&] { moveToServer(order); }), ExitCode::unfinished);
        QVERIFY(QFileInfo::exists(shop.file()));
        QVERIFY(QDir(order.pointer + u".yarim"_s).removeRecursively());
        QVERIFY(moveToServer(order).finishedEarlier);
        QVERIFY(!QFileInfo::exists(shop.file()));
    }

    void aFullServerDiskLeavesNothing() {
        const QTemporaryDir place;
        const auto mount = [&place](const QString& options) {
            return QProcess::execute(u"mount"_s,
                                     {u"-t"_s, u"tmpfs"_s, u"-o"_s, options, u"tmpfs"_s, place.path()}) == 0;
        };
        constexpr uid_t serversUser = 65534;
        if (::geteuid() != 0 || !mount(u"size=11m"_s))
            QSKIP("mounting a small disk is refused here");
        const auto unmount = qScopeGuard([&place] {
            QProcess::execute(u"umount"_s, {u"-l"_s, place.path()});
        });
        QCOMPARE(::chown(qPrintable(place.path()), serversUser, serversUser), 0);
        const MovingShop shop;
        shop.fill();
        sharedCluster()->rows(u"postgres"_s, u"CREATE TABLESPACE kucuk LOCATION '%1'"_s.arg(place.path()));
        sharedCluster()->rows(u"postgres"_s,
                              u"ALTER DATABASE %1 SET TABLESPACE kucuk"_s.arg(shop.database()));
        const QByteArray before = bytes(shop.file());
        QCOMPARE(codeOf([&] { moveToServer(shop.toServer()); }), ExitCode::failed);
        QCOMPARE(bytes(shop.file()), before);
        QVERIFY(shop.serverTables().isEmpty());
        QVERIFY(mount(u"remount,size=64m"_s));
        QCOMPARE(moveToServer(shop.toServer()).rows, 30001);
        sharedCluster()->dropDatabase(shop.database());
        sharedCluster()->rows(u"postgres"_s, u"DROP TABLESPACE kucuk"_s);
    }

    void theReportGoesWithAFailedMove() {
        const MovingShop shop;
        shop.fill();
        QCOMPARE(codeOf([&] {
                     moveToServer(shop.toServer(), [](const Progress& progress) {
                         if (progress.step == Step::comparing)
                             throw Failure(ExitCode::failed, u"dur"_s);
                     });
                 }),
                 ExitCode::failed);
        QVERIFY(QDir(shop.folder()).entryList({u"*.tsv"_s}).isEmpty());
        QVERIFY(shop.serverTables().isEmpty());
    }

    void theWayBackLeavesNoHalfFile_data() {
        QTest::addColumn<StepRow>("row");
        for (const Step step : {Step::copying, Step::indexing, Step::comparing, Step::committing})
            QTest::newRow(qPrintable(QString::number(static_cast<int>(step)))) << StepRow{"", step, false};
    }
    void theWayBackLeavesNoHalfFile() {
        QFETCH(StepRow, row);
        const MovingShop shop;
        shop.fill();
        moveToServer(shop.toServer());
        ToServer order = shop.toServer();
        order.file = shop.path(u"geri.data"_s);
        QVERIFY(moveAndDie(u"dosyaya"_s, row.step, order));
        QVERIFY(!QFileInfo::exists(order.file));
        QCOMPARE(copyToFile(shop.toFile(order.file)).rows, 30001);
        QCOMPARE(QDir(shop.folder()).entryList({u"geri*"_s}, QDir::Files), QStringList{u"geri.data"_s});
    }

    void aServerThatGoesLeavesNoHalfFile() {
        const MovingShop shop;
        shop.fill();
        moveToServer(shop.toServer());
        const AtStep kill(Step::copying, [] { sharedCluster()->kill(); });
        QCOMPARE(codeOf([&] { copyToFile(shop.toFile(shop.path(u"geri.data"_s)), kill); }), ExitCode::failed);
        QVERIFY(kill.hasHappened());
        QVERIFY(sharedCluster()->restart());
        QVERIFY(QDir(shop.folder()).entryList({u"geri*"_s}, QDir::Files).isEmpty());
    }

    void aServerThatStandsLeavesNoHalfFile_data() {
        QTest::addColumn<StepRow>("row");
        for (const StepRow& row :
             {StepRow{"copying", Step::copying, false}, StepRow{"comparing", Step::comparing, false}})
            QTest::newRow(row.name) << row;
    }
    void aServerThatStandsLeavesNoHalfFile() {
        QFETCH(StepRow, row);
        const MovingShop shop;
        shop.fill();
        moveToServer(shop.toServer());
        // More than the ways between the two hold.
        shop.serverRows(u"UPDATE satislar SET barkod = repeat('1', 400)"_s);
        ToFile order = shop.toFile(shop.path(u"geri.data"_s));
        order.deadline = shortDeadline;
        const AtStep pause(row.step, [] { sharedCluster()->pause(); });
        const ExitCode code = codeOf([&] { copyToFile(order, pause); });
        sharedCluster()->resume();
        QVERIFY(pause.hasHappened());
        QCOMPARE(code, ExitCode::failed);
        QVERIFY(QDir(shop.folder()).entryList({u"geri*"_s}, QDir::Files).isEmpty());
        QCOMPARE(copyToFile(shop.toFile(order.file)).rows, 30001);
    }

    void aFullDiskLeavesNoHalfFile() {
        const MovingShop shop;
        shop.fill();
        moveToServer(shop.toServer());
        QProcess process;
        process.start(QCoreApplication::applicationFilePath(),
                      {u"--dolu"_s, shop.path(u"geri.data"_s), shop.pointer()});
        QVERIFY(process.waitForFinished(patience));
        QCOMPARE(process.exitCode(), static_cast<int>(ExitCode::failed));
        QVERIFY(QDir(shop.folder()).entryList({u"geri*"_s}, QDir::Files).isEmpty());
    }
};

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--ol")
        return dyingMove(arguments);
    if (arguments.value(1) == u"--dolu")
        return moveOnAFullDisk(arguments);
    TestTasiFailures tests;
    return QTest::qExec(&tests, argc, argv);
}

#include "test_tasi_failures.moc"
