// The built program, as a shopkeeper and a timer start it.

#include <sys/stat.h>

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>
#include <csignal>
#include <random>

#include "app/ayarmodul.h"
#include "programs.h"
#include "readonlyshop.h"
#include "rows.h"
#include "runtests.h"
#include "yedek/copies.h"
#include "yedek/restore.h"
#include "yedekfixture.h"

namespace kovanix::yedek {

using namespace Qt::StringLiterals;

struct UsageRow {
    QStringList arguments;
    int status;
    QString words;  ///< among what is said
};

struct SignalRow {
    int signal;
    bool restores;
};

namespace {

const QString program = QStringLiteral(BACKUP_PROGRAM);

}  // namespace

class YedekProgramTest : public QObject, BackupCase {
    Q_OBJECT

    QProcessEnvironment m_environment = tillEnvironment();

    Outcome run(const QStringList& arguments) {
        return runProgram(QStringList{program, u"--folder"_s, m_shop->folder()} + arguments, m_environment);
    }
    Outcome take(const QString& place) { return run({u"--al"_s, u"--klasor"_s, place}); }
    Outcome take() { return take(m_place->path()); }
    QList<Copy> copies() { return copiesIn(m_place->path()); }
    void makeShop(int stock) {
        putBack(m_shop->folder(), {});
        m_shop->openShop();
        baglanti().execute(
            u"INSERT INTO urunler (barkod, stok, urun) WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 20000) SELECT i, %1, 'Ürün ' || i FROM n"_s
                .arg(stock));
        baglantikapat();
        semahazir = false;
        ayarla(u"tema"_s, QString::number(stock));
    }
    /// What a till finds: a stock, and a setting.
    static QString shopNow() {
        Connection till;
        till.open(baglantimetnial());
        QString found;
        RowWalk(till, u"SELECT stok FROM urunler WHERE barkod = '20000'"_s)
            .forEach([&](const RowWalk::Row& row) { found = QString::number(row.number(0).value_or(-1)); });
        return found + u'|' + ayar(u"tema"_s);
    }
    /// Puts a program of that name ahead of all others on the path.
    void shadow(const QString& name, const QByteArray& script) {
        const QString path = m_shop->file(name);
        writeBytes(path, script);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_environment.insert(u"PATH"_s, m_shop->folder() + u":/usr/bin:/bin");
        m_environment.insert(u"XDG_CONFIG_HOME"_s, m_shop->file(u"ayarlar"_s));
    }

private Q_SLOTS:
    void initTestCase() { isolateFromOtherTills(); }
    void init() {
        m_environment = tillEnvironment();
        begin();
        makeShop(7);
    }
    void cleanup() { end(); }

    void fromCopyToRestore() {
        const Outcome taken = take();
        QCOMPARE(taken.errors, QString());
        QCOMPARE(taken.status, 0);
        QCOMPARE(copies().size(), 1);
        const QString copy = copies().first().path;
        QVERIFY(taken.output.contains(copy));
        QVERIFY(
            run({u"--liste"_s, u"--klasor"_s, m_place->path()}).output.contains(QFileInfo(copy).fileName()));
        const Outcome checked = run({u"--denetle"_s, copy});
        QCOMPARE(checked.status, 0);
        QVERIFY(checked.output.contains(u"urunler: 20000 satır"_s));

        makeShop(99);
        for (const QStringList& toofew : {QStringList{}, QStringList{u"--evet"_s}}) {
            QCOMPARE(run(QStringList{u"--don"_s, copy} + toofew).status, 3);
            QCOMPARE(shopNow(), u"99|99"_s);
        }
        const Outcome restored = run({u"--don"_s, copy, u"--evet"_s, u"--evet"_s});
        QCOMPARE(restored.errors, QString());
        QCOMPARE(restored.status, 0);
        QCOMPARE(shopNow(), u"7|7"_s);
        QVERIFY(restored.output.contains(u"oncesi"_s));
    }

    void usage_data() {
        addRows<UsageRow>({
            {"two tasks", {{u"--al"_s, u"--liste"_s}, 2, u"tek bir iş"_s}},
            {"a window for a list", {{u"--liste"_s, u"--pencere"_s}, 2, u"tek bir iş"_s}},
            {"a word too many", {{u"--al"_s, u"bugün"_s}, 2, u"tek bir iş"_s}},
            {"no such copy", {{u"--denetle"_s, u"/yok.yedek"_s}, 3, u"Bulunamadı"_s}},
            {"no copy at all", {{u"--denetle"_s, u"/etc/passwd"_s}, 3, u"bozuk"_s}},
            {"a folder", {{u"--denetle"_s, u"/etc"_s}, 3, QString()}},
            {"a folder that can't be", {{u"--al"_s, u"--klasor"_s, u"/dev/null/x"_s}, 1, u"açılamıyor"_s}},
        });
    }
    void usage() {
        QFETCH(const UsageRow, row);
        const Outcome outcome = run(row.arguments);
        QCOMPARE(outcome.status, row.status);
        QVERIFY2(outcome.errors.contains(row.words), qPrintable(outcome.errors));
        QVERIFY(outcome.output.isEmpty());
    }

    /// The menu's action.
    void aCopyIsTakenInTheWindow() {
        Program window({program, u"--folder"_s, m_shop->folder(), u"--al"_s, u"--pencere"_s, u"--klasor"_s,
                        m_place->path()},
                       m_environment);
        QTRY_COMPARE_WITH_TIMEOUT(copies().size(), 1, patience);
        QVERIFY(window.isRunning());
        QVERIFY(bytesOf(QStringLiteral(PACKAGING_FOLDER "/kovanix-yedek.desktop"))
                    .contains("\nExec=kovanix-yedek --al --pencere\n"));
    }

    void noShop() {
        const QTemporaryDir none;
        shadow(u"systemctl"_s, "#!/bin/sh\n");
        for (const QString& task : {u"--al"_s, u"--zamanla"_s}) {
            const Outcome outcome = runProgram({program, u"--folder"_s, none.path(), task}, m_environment);
            QCOMPARE(outcome.status, 1);
            QVERIFY(outcome.errors.contains(u"dükkân yok"_s));
            QVERIFY(QDir(none.path()).isEmpty());
            QVERIFY(!QFileInfo::exists(m_shop->file(u"ayarlar/systemd"_s)));
        }
    }

    /// The mover of shops on a server comes with a package of its own.
    void aServersShopWithoutItsProgram() {
        const QString pointer = m_shop->file(u"dukkan.sunucu"_s);
        writeBytes(pointer, "x");
        ayarla(u"ip"_s, pointer);
        const QTemporaryDir bare;
        const QString alone = bare.filePath(QFileInfo(program).fileName());
        QVERIFY(QFile::copy(program, alone));
        m_environment.insert(u"PATH"_s, u"/nowhere"_s);
        const Outcome refused =
            runProgram({alone, u"--folder"_s, m_shop->folder(), u"--al"_s, u"--klasor"_s, m_place->path()},
                       m_environment);
        QCOMPARE(refused.status, 3);
        QVERIFY2(refused.errors.contains(u"kovanix-sunucu"_s), qPrintable(refused.errors));
        QVERIFY(filesOf(m_place->path()).isEmpty());
    }

    void aTillThatRunsIsntRestoredUnder() {
        QCOMPARE(take().status, 0);
        makeShop(99);
        Program till({kovanixProgram(), u"--folder"_s, m_shop->folder()});
        QTRY_VERIFY_WITH_TIMEOUT(someTillAnswers(), patience);
        const Outcome refused = run({u"--don"_s, copies().first().path, u"--evet"_s, u"--evet"_s});
        QCOMPARE(refused.status, 3);
        QVERIFY(refused.errors.contains(u"kasa açık"_s));
        // A copy is another matter.
        QCOMPARE(take().status, 0);
        till.killHard();
        QCOMPARE(shopNow(), u"99|99"_s);
        QCOMPARE(run({u"--don"_s, copies().last().path, u"--evet"_s, u"--evet"_s}).status, 0);
    }

    void killedAtAnyMomentOfACopy() {
        QCOMPARE(take().status, 0);
        const Copy good = copies().first();
        const QByteArray shop = bytesOf(m_shop->databaseFile());
        std::mt19937 random(15);
        int killed = 0;
        for (int i = 0; i < 25; ++i) {
            Program backup(
                {program, u"--folder"_s, m_shop->folder(), u"--al"_s, u"--klasor"_s, m_place->path()},
                m_environment);
            QThread::usleep(std::uniform_int_distribution<unsigned long>(10'000, 500'000)(random));
            killed += backup.isRunning() ? 1 : 0;
            backup.killHard();
            QCOMPARE(bytesOf(m_shop->databaseFile()), shop);
            QVERIFY(!copies().isEmpty());
            for (const Copy& copy : copies())
                QCOMPARE(check(copy.path), QString());
        }
        QVERIFY(killed > 5);
        QCOMPARE(take().status, 0);
        QVERIFY(!QFileInfo::exists(m_place->filePath(u".kovanix-yedek-gecici"_s)));
        // Of one day the newest is kept.
        QCOMPARE(copies().size(), 1);
        QVERIFY(copies().first().manifest.moment > good.manifest.moment);
    }

    void killedAtAnyMomentOfARestore() {
        QCOMPARE(take().status, 0);
        const QString copy = copies().first().path;
        std::mt19937 random(16);
        int olds = 0;
        for (int i = 0; i < 25; ++i) {
            makeShop(99);
            Program restore(
                {program, u"--folder"_s, m_shop->folder(), u"--don"_s, copy, u"--evet"_s, u"--evet"_s},
                m_environment);
            QThread::usleep(std::uniform_int_distribution<unsigned long>(10'000, 500'000)(random));
            restore.killHard();
            const QString found = shopNow();
            QVERIFY2(found == u"7|7" || found == u"99|99", qPrintable(found));
            olds += found == u"99|99" ? 1 : 0;
        }
        QVERIFY(olds > 0);
        QCOMPARE(run({u"--don"_s, copy, u"--evet"_s, u"--evet"_s}).status, 0);
        QCOMPARE(shopNow(), u"7|7"_s);
    }

    void aDiskThatIsFullOrReadOnly() {
        {
            const SmallDisk small("size=1m");
            if (!small.isThere())
                QSKIP("only the administrator may make a disk");
            const Outcome outcome = take(small.path());
            QCOMPARE(outcome.status, 1);
            QVERIFY2(outcome.errors.contains(u"yer kalmadı"_s), qPrintable(outcome.errors));
            QCOMPARE(filesOf(small.path()).size(), 0);
        }
        const SmallDisk closed("ro");
        QVERIFY(closed.isThere());
        const Outcome outcome = take(closed.path());
        QCOMPARE(outcome.status, 1);
        QVERIFY(!outcome.errors.isEmpty());
    }

    /// --denetle works among what everybody may write.
    void aLinkAmongTemporaryFilesLeadsNowhere() {
        QCOMPARE(take().status, 0);
        const QTemporaryDir foreign;
        const QTemporaryDir temporary;
        writeBytes(foreign.filePath(u"mektup"_s), "x");
        for (const QString& name : {u".kovanix-yedek-gecici"_s, u".kovanix-yedek.kilit"_s})
            QVERIFY(QFile::link(foreign.path(), temporary.filePath(name)));
        m_environment.insert(u"TMPDIR"_s, temporary.path());
        const Outcome checked = run({u"--denetle"_s, copies().first().path});
        QCOMPARE(checked.errors, QString());
        QCOMPARE(checked.status, 0);
        QCOMPARE(bytesOf(foreign.filePath(u"mektup"_s)), QByteArray("x"));
        QCOMPARE(
            QDir(temporary.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
            2);
    }

    void aSignalEndsIt_data() {
        addRows<SignalRow>({{"terminated", {SIGTERM, false}},
                            {"interrupted", {SIGINT, false}},
                            {"hung up", {SIGHUP, false}},
                            {"in a restore", {SIGTERM, true}}});
    }
    void aSignalEndsIt() {
        QFETCH(const SignalRow, row);
        QCOMPARE(take().status, 0);
        const QString copy = copies().first().path;
        const auto kept = filesOf(m_place->path());
        const QString place = row.restores ? m_shop->folder() : m_place->path();
        const QStringList what = row.restores ? QStringList{u"--don"_s, copy, u"--evet"_s, u"--evet"_s}
                                              : QStringList{u"--al"_s, u"--klasor"_s, m_place->path()};
        QProcess backup;
        backup.setProcessEnvironment(m_environment);
        backup.start(program, QStringList{u"--folder"_s, m_shop->folder()} + what);
        const QString work = QDir(place).filePath(u".kovanix-yedek-gecici"_s);
        QVERIFY(backup.waitForStarted());
        // It works for some tens of milliseconds.
        const QDeadlineTimer deadline(patience);
        while (!QFileInfo::exists(work) && !deadline.hasExpired())
            QThread::usleep(500);
        ::kill(static_cast<pid_t>(backup.processId()), row.signal);
        QVERIFY(backup.waitForFinished());
        QCOMPARE(backup.exitStatus(), QProcess::NormalExit);
        QCOMPARE(backup.exitCode(), 4);
        QVERIFY(QString::fromUtf8(backup.readAllStandardError()).contains(u"Vazgeçildi"_s));
        QVERIFY(!QFileInfo::exists(work));
        QCOMPARE(filesOf(m_place->path()), kept);
        QCOMPARE(shopNow(), u"7|7"_s);
    }

    /// By what the copies say of themselves: reading them whole is another task.
    void theListIsThereAtOnce() {
        QCOMPARE(take().status, 0);
        const QString copy = copies().first().path;
        const qint64 size = QFileInfo(copy).size();
        QVERIFY(QFile::resize(copy, qint64{64} << 30));
        QElapsedTimer timer;
        timer.start();
        const Outcome listed = run({u"--liste"_s, u"--klasor"_s, m_place->path()});
        QCOMPARE(listed.status, 0);
        QVERIFY2(listed.output.contains(u": 1 yedek"_s), qPrintable(listed.output));
        QVERIFY(listed.output.contains(u"64,0 GB"_s));
        QVERIFY(!listed.output.contains(u"başka bir dükkânın"_s));
        QVERIFY(timer.elapsed() < 10'000);
        const QTemporaryDir other;
        QVERIFY(
            runProgram({program, u"--folder"_s, other.path(), u"--liste"_s, u"--klasor"_s, m_place->path()},
                       m_environment)
                .output.contains(u"başka bir dükkânın"_s));
        QVERIFY(QFile::resize(copy, size / 2));
        QCOMPARE(run({u"--denetle"_s, copy}).status, 3);
    }

    void aShopThatCanOnlyBeRead_data() { addReadOnlyRows(quickPassword); }
    void aShopThatCanOnlyBeRead() {
        QFETCH(const ReadOnlyRow, row);
        begin();
        m_shop->openShop(row.password);
        m_shop->addProduct(u"1"_s, u"Süt"_s, 1, 2);
        baglantikapat();
        const ReadOnlyShop closed(*m_shop, row, u"UPDATE urunler SET stok = 4711"_s);
        if (!closed.trouble().isEmpty())
            QSKIP(qPrintable(closed.trouble()));
        m_environment = tillEnvironment();
        const auto before = filesOf(closed.folder());
        ::chmod(qPrintable(m_place->path()), 0777);
        Outcome taken;
        {
            const auto user = closed.enter();
            taken = runProgram(
                {program, u"--folder"_s, closed.folder(), u"--al"_s, u"--klasor"_s, m_place->path()},
                m_environment);
        }
        QCOMPARE(taken.errors, QString());
        QCOMPARE(taken.status, 0);
        QVERIFY(closed.leftNothing());
        QCOMPARE(filesOf(closed.folder()), before);
        QCOMPARE(copies().size(), 1);
        QCOMPARE(check(copies().first().path), QString());
        const QList<std::pair<QString, QString>> sums = copies().first().manifest.tables.first().sums;
        QVERIFY(sums.contains(std::pair(u"stok"_s, u"4711"_s)));
    }

    /// The timer's service must not begin anew for that: the shop's folder has its copy.
    void aStickThatTakesNoCopyHasAStatusOfItsOwn() {
        const QString script =
            u"mount -t tmpfs -o size=1m none /media && mkdir -p \"/media/$(id -un)/BEYAZ/Kovanix yedek\" && "
            "mount -t tmpfs -o size=1m none \"/media/$(id -un)/BEYAZ\" && "
            "mkdir \"/media/$(id -un)/BEYAZ/Kovanix yedek\" && exec \"$@\""_s;
        const QStringList inItsOwnMounts{u"unshare"_s, u"--mount"_s, u"sh"_s, u"-c"_s, script, u"sh"_s};
        if (runProgram(inItsOwnMounts + QStringList{u"true"_s}, m_environment).status != 0)
            QSKIP("only the administrator may make a disk");
        const Outcome taken =
            runProgram(inItsOwnMounts + QStringList{program, u"--folder"_s, m_shop->folder(), u"--al"_s,
                                                    u"--klasor"_s, m_place->path()},
                       m_environment);
        QVERIFY2(taken.errors.contains(u"klasördeki yedek sağlam"_s), qPrintable(taken.errors));
        QCOMPARE(taken.status, 5);
        QCOMPARE(copies().size(), 1);
        const QByteArray service = bytesOf(QStringLiteral(PACKAGING_FOLDER "/kovanix-yedek.service"));
        QVERIFY(service.contains("\nRestartPreventExitStatus=2 3 4 5\n"));
    }

    void theTimerIsSwitched() {
        shadow(u"systemctl"_s, "#!/bin/sh\necho \"$@\" >>\"$(dirname \"$0\")/calls\"\n");
        QCOMPARE(run({u"--zamanla"_s}).status, 0);
        QCOMPARE(bytesOf(m_shop->file(u"calls"_s)),
                 QByteArray("--user daemon-reload\n--user enable --now kovanix-yedek.timer\n"));
        const QString dropIn =
            m_shop->file(u"ayarlar/systemd/user/kovanix-yedek.service.d/kovanix-folder.conf"_s);
        QCOMPARE(bytesOf(dropIn),
                 "[Service]\nEnvironment=\"KOVANIX_FOLDER=" + m_shop->folder().toUtf8() + "\"\n");
        QCOMPARE(run({u"--zamanlama-kapat"_s}).status, 0);
        QVERIFY(bytesOf(m_shop->file(u"calls"_s)).endsWith("--user disable --now kovanix-yedek.timer\n"));
        QVERIFY(!QFileInfo::exists(dropIn));
    }

    void noSystemdIsTold() {
        shadow(u"systemctl"_s, "#!/bin/sh\necho Failed to connect to bus >&2\necho More of it >&2\nexit 1\n");
        const Outcome failed = run({u"--zamanla"_s});
        QCOMPARE(failed.status, 1);
        QCOMPARE(
            failed.errors,
            u"Zamanlayıcı (systemd) yok ya da çalışmıyor: yedeği elle alın. (Failed to connect to bus)\n"_s);
        // Nothing is left of it.
        const QString units = m_shop->file(u"ayarlar/systemd/user"_s);
        QVERIFY(!QFileInfo::exists(units + u"/kovanix-yedek.service.d"));
        // What was set up before stands.
        const QString dropIn = units + u"/kovanix-yedek.service.d/kovanix-folder.conf";
        QVERIFY(QDir().mkpath(QFileInfo(dropIn).path()));
        writeBytes(dropIn, "before");
        QCOMPARE(run({u"--zamanla"_s}).status, 1);
        QCOMPARE(bytesOf(dropIn), QByteArray("before"));
        m_environment.insert(u"PATH"_s, u"/nowhere"_s);
        QVERIFY(run({u"--zamanla"_s}).errors.contains(u"systemd"_s));
    }
};

}  // namespace kovanix::yedek

Q_DECLARE_METATYPE(kovanix::yedek::SignalRow)
Q_DECLARE_METATYPE(kovanix::yedek::UsageRow)

int main(int argc, char** argv) {
    return kovanix::runTests<kovanix::yedek::YedekProgramTest>(argc, argv);
}
#include "test_yedek_program.moc"
