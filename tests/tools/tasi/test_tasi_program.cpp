// The program as a technician runs it: its words, its exit codes, where its passwords come from.

#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <array>
#include <vector>

#include "profile/profilefile.h"
#include "tasifixture.h"

using namespace kovanix;
using namespace kovanix::tasi;
using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60000;  // milliseconds

struct Outcome {
    int status = -1;
    QString output;
    QString errors;
};

QProcessEnvironment environmentWith(const QMap<QString, QString>& variables) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : {u"KOVANIX_DOSYA_PAROLA"_s, u"KOVANIX_SUNUCU_PAROLA"_s, u"PGPASSWORD"_s})
        environment.remove(name);
    for (auto it = variables.begin(); it != variables.end(); ++it)
        environment.insert(it.key(), it.value());
    return environment;
}

Outcome runProgram(const QStringList& arguments, const QMap<QString, QString>& variables = {}) {
    QProcess process;
    process.setProcessEnvironment(environmentWith(variables));
    // A session of its own has no terminal to ask at.
    process.setChildProcessModifier([] { ::setsid(); });
    process.start(u"" TASI_PROGRAM ""_s, arguments);
    if (!process.waitForFinished(patience))
        return {};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

const QMap<QString, QString>& serverPassword() {
    static const QMap<QString, QString> variables{{u"KOVANIX_SUNUCU_PAROLA"_s, ServerCluster::password()}};
    return variables;
}

/// A shop on the server that takes a while to copy, with a view, which no copy holds.
void fillServer(const MovingShop& shop) {
    moveToServer(shop.toServer());
    shop.serverRows(
        u"INSERT INTO urunler (urun, stok) SELECT 'a' || n, n FROM generate_series(1, 200000) n"_s);
    shop.serverRows(u"CREATE VIEW gorunum AS SELECT * FROM urunler"_s);
}

QSet<QString> filesOf(const MovingShop& shop) {
    const QStringList names = QDir(shop.folder()).entryList(QDir::Files);
    return {names.begin(), names.end()};
}

struct UsageRow {
    const char* name;
    QStringList arguments;
};

}  // namespace

Q_DECLARE_METATYPE(UsageRow)

class TestTasiProgram : public TasiTest {
    Q_OBJECT

private Q_SLOTS:
    void refusesCommandLines_data() {
        QTest::addColumn<UsageRow>("row");
        const QStringList address{u"--adres"_s, u"a"_s, u"--veritabani"_s, u"d"_s, u"--kullanici"_s, u"k"_s};
        const QStringList move{u"--sunucuya"_s, u"a.data"_s, u"yok.sunucu"_s};
        const QList<UsageRow> rows{
            {"nothing", {}},
            {"two commands", {u"--sunucuya"_s, u"--dosyaya"_s, u"a"_s, u"b"_s}},
            {"one name", {u"--sunucuya"_s, u"a.data"_s}},
            {"three names", {u"--dosyaya"_s, u"a"_s, u"b"_s, u"c"_s}},
            {"an unknown option", {u"--tasi"_s}},
            {"a password in sight", {u"--sunucuya"_s, u"a"_s, u"b.sunucu"_s, u"--parola=gizli"_s}},
            {"no pointer's name", QStringList{u"--sunucuya"_s, u"a.data"_s, u"b.txt"_s} + address},
            {"no pointer and no address", move},
            {"half an address", move + QStringList{u"--adres"_s, u"a"_s}},
            {"no port", move + address + QStringList{u"--port"_s, u"kapı"_s}},
            {"no kind of TLS", move + address + QStringList{u"--tls"_s, u"belki"_s}},
            {"a root that isn't there", move + address + QStringList{u"--kok"_s, u"/yok.pem"_s}},
            {"a question without a terminal", move + address + QStringList{u"--parola"_s}},
            {"a copy for a folder", {u"--kopya"_s, u"b.sunucu"_s, u"c"_s, u"--klasor"_s, u"d"_s}},
            {"joining nothing", {u"--bagla"_s, u"b.sunucu"_s}},
        };
        for (const UsageRow& row : rows)
            QTest::newRow(row.name) << row;
    }
    void refusesCommandLines() {
        QFETCH(UsageRow, row);
        const Outcome outcome = runProgram(row.arguments);
        QCOMPARE(outcome.status, static_cast<int>(ExitCode::usage));
        QVERIFY(outcome.errors.startsWith(u"kovanix-tasi: "));
        QVERIFY(outcome.output.isEmpty());
    }

    void tellsOfItself() {
        QVERIFY(runProgram({u"--version"_s}).output.startsWith(u"kovanix-tasi "));
        const Outcome help = runProgram({u"--yardim"_s});
        QCOMPARE(help.status, 0);
        for (int code = 0; code <= static_cast<int>(ExitCode::stopped); ++code)
            QVERIFY(help.output.contains(u"\n  %1  "_s.arg(code)));
    }

    void movesAndComesBack() {
        const MovingShop shop(u"dosya şifresi"_s);
        shop.run({u"INSERT INTO urunler (urun, satis) VALUES ('a', '1,5')"_s});
        ProfileFile::setValue(shop.path(u"Kovanix.config"_s), u"ayar"_s, u"dbpass"_s, shop.password());
        const QMap<QString, QString> variables = serverPassword();
        // The file's password stands in the settings that are brought into step.
        const Outcome there = runProgram(
            {u"--sunucuya"_s, shop.file(), shop.pointer(), u"--klasor"_s, shop.folder()}, variables);
        QVERIFY2(there.status == 0, qPrintable(there.errors));
        QVERIFY(there.output.contains(u"1 değer düzeltildi"));
        QVERIFY(!there.output.contains(u"geri okundu, aynı") && !there.output.contains(u"DİKKAT"));
        QVERIFY(there.output.contains(u"tasima-raporu.tsv"));
        QVERIFY(there.output.contains(shop.movedFile()));
        QVERIFY(!there.output.contains(ServerCluster::password()));
        QVERIFY(QFileInfo::exists(shop.movedFile()));

        QMap<QString, QString> back = variables;
        back.insert(u"KOVANIX_DOSYA_PAROLA"_s, shop.password());
        const QString file = shop.path(u"yedek.data"_s);
        const Outcome returned = runProgram({u"--dosyaya"_s, shop.pointer(), file}, back);
        QVERIFY2(returned.status == 0, qPrintable(returned.errors));
        QCOMPARE(shop.cells(file)[u"urunler"_s].size(), 1);
        QCOMPARE(runProgram({u"--dosyaya"_s, shop.pointer(), file}, back).status,
                 static_cast<int>(ExitCode::fileUnfit));
    }

    void tellsOfTextsThatBecameZero() {
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (urun, satis) VALUES ('a', 'beş lira')"_s});
        const Outcome told = runProgram({u"--sunucuya"_s, shop.file(), shop.pointer()}, serverPassword());
        QVERIFY2(told.status == 0, qPrintable(told.errors));
        QVERIFY(told.output.contains(u"  1 × "_s + oddWords(Odd::textAsZero) + u'\n'));
        QVERIFY(told.output.contains(u"\nDİKKAT: "));
        QVERIFY(!told.output.contains(u"geri okundu, aynı"));
        QVERIFY(contents(shop.path(shop.database() + u"-tasima-raporu.tsv"_s))
                    .contains(u"\tsatis\t'beş lira'\t0\t"));
    }

    void tellsThatEveryValueIsTheSame() {
        const MovingShop shop;
        shop.run({u"INSERT INTO urunler (urun, satis) VALUES ('a', 1.5)"_s});
        const Outcome told = runProgram({u"--sunucuya"_s, shop.file(), shop.pointer()}, serverPassword());
        QVERIFY2(told.status == 0, qPrintable(told.errors));
        QVERIFY(told.output.contains(u"Her değer geri okundu, aynı.\n"));
    }

    void copiesForAnotherProgram() {
        const MovingShop shop(u"dosya şifresi"_s);
        fillServer(shop);
        QMap<QString, QString> variables = serverPassword();
        variables.insert(u"KOVANIX_DOSYA_PAROLA"_s, shop.password());
        QSet<QString> wanted = filesOf(shop);
        const QString file = shop.path(u"kopya.data"_s);
        const Outcome outcome = runProgram({u"--kopya"_s, shop.pointer(), file}, variables);
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QStringList lines = outcome.output.split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.takeLast(), u"bitti 200000 0 1"_s);
        QVERIFY(!lines.isEmpty());
        qint64 passed = 0;
        for (const QString& line : std::as_const(lines)) {
            const QStringList words = line.split(u' ');
            QCOMPARE(words.size(), 3);
            QCOMPARE(words[0], u"ilerleme"_s);
            QVERIFY(words[1].toLongLong() > passed);
            passed = words[1].toLongLong();
            QCOMPARE(words[2], u"400000"_s);
        }
        QVERIFY(passed <= 400000);
        QCOMPARE(shop.cells(file)[u"urunler"_s].size(), 200000);
        wanted.insert(u"kopya.data"_s);
        QCOMPARE(filesOf(shop), wanted);
    }

    void stopsOnRequest_data() {
        QTest::addColumn<bool>("standing");
        QTest::newRow("while rows come") << false;
        QTest::newRow("while the server stands still") << true;
    }
    void stopsOnRequest() {
        QFETCH(bool, standing);
        const MovingShop shop;
        fillServer(shop);
        const QSet<QString> before = filesOf(shop);
        QProcess process;
        process.setProcessEnvironment(environmentWith(serverPassword()));
        process.start(u"" TASI_PROGRAM ""_s, {u"--kopya"_s, shop.pointer(), shop.path(u"kopya.data"_s)});
        QVERIFY(process.waitForReadyRead(patience));
        if (standing)
            sharedCluster()->pause();
        QElapsedTimer timer;
        timer.start();
        process.terminate();
        const bool ended = process.waitForFinished(patience);
        sharedCluster()->resume();
        QVERIFY(ended);
        // Well before the server is given up.
        QVERIFY2(timer.elapsed() < usualDeadline.count() / 2, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), static_cast<int>(ExitCode::stopped));
        QCOMPARE(process.readAllStandardError(), "kovanix-tasi: Durduruldu; hiçbir şey değişmedi.\n");
        QCOMPARE(filesOf(shop), before);
    }

    void stopsWhenNobodyReads() {
        const MovingShop shop;
        fillServer(shop);
        const QSet<QString> before = filesOf(shop);
        QProcess shell;
        shell.setProcessEnvironment(environmentWith(serverPassword()));
        shell.start(u"sh"_s,
                    {u"-c"_s, u"exec 3>&1; { \"$@\"; echo $? >&3; } | head -n 1 >&2"_s, u"sh"_s,
                     u"" TASI_PROGRAM ""_s, u"--kopya"_s, shop.pointer(), shop.path(u"kopya.data"_s)});
        QVERIFY(shell.waitForFinished(patience));
        QCOMPARE(shell.readAllStandardOutput().trimmed().toInt(), static_cast<int>(ExitCode::stopped));
        QCOMPARE(filesOf(shop), before);
    }

    /// A till of this process has the file open, as on the same machine.
    void isRefusedWhileATillSells() {
        const MovingShop shop;
        Connection till;
        till.open(DatabaseFile::connectionString(shop.file(), {}));
        const QStringList arguments{u"--sunucuya"_s, shop.file(), shop.pointer()};
        const Outcome refused = runProgram(arguments, serverPassword());
        QCOMPARE(refused.status, static_cast<int>(ExitCode::fileUnfit));
        QVERIFY(refused.errors.contains(u"kullanımda"));
        till.execute(u"INSERT INTO urunler (urun) VALUES ('a')"_s);
        till.close();
        QCOMPARE(runProgram(arguments, serverPassword()).status, 0);
        QCOMPARE(shop.serverRows(u"SELECT urun FROM urunler"_s), (QList<QStringList>{{u"a"_s}}));
    }

    void needsTheServersPassword() {
        const MovingShop shop;
        const Outcome outcome = runProgram({u"--sunucuya"_s, shop.file(), shop.pointer()});
        QCOMPARE(outcome.status, static_cast<int>(ExitCode::serverUnfit));
        QVERIFY(QFileInfo::exists(shop.file()));
    }

    void asksAtTheTerminalWithoutEcho() {
        const MovingShop shop;
        const std::array<QByteArray, 5> words{TASI_PROGRAM, "--sunucuya", shop.file().toUtf8(),
                                              shop.pointer().toUtf8(), "--sunucu-parola"};
        int terminal = -1;
        const pid_t program = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (program == 0) {
            std::vector<char*> arguments;
            for (const QByteArray& word : words)
                arguments.push_back(const_cast<char*>(word.constData()));
            arguments.push_back(nullptr);
            ::execv(arguments[0], arguments.data());
            ::_exit(127);
        }
        QVERIFY(program > 0);
        QByteArray shown;
        bool answered = false;
        std::array<char, 4096> bytes{};
        for (ssize_t size = 0; (size = ::read(terminal, bytes.data(), bytes.size())) > 0;) {
            shown.append(bytes.data(), size);
            if (answered || !shown.contains(": "))
                continue;
            answered = true;
            const QByteArray line = ServerCluster::password().toUtf8() + '\n';
            QCOMPARE(::write(terminal, line.constData(), static_cast<std::size_t>(line.size())), line.size());
        }
        ::close(terminal);
        int status = -1;
        QCOMPARE(::waitpid(program, &status, 0), program);
        QVERIFY2(WIFEXITED(status) && WEXITSTATUS(status) == 0, shown.constData());
        QVERIFY(shown.startsWith("Sunucu parolası: "));
        QVERIFY(!shown.contains(ServerCluster::password().toUtf8()));
    }

    void joinsASecondTill() {
        const MovingShop shop;
        QVERIFY(QDir(shop.folder()).mkpath(u"kasa2"_s));
        const QString folder = shop.path(u"kasa2"_s);
        QVERIFY(QFile::copy(shop.file(), folder + u"/kovanix.data"));
        const QStringList arguments{u"--bagla"_s, shop.pointer(), u"--klasor"_s, folder};
        QCOMPARE(runProgram(arguments, serverPassword()).status, static_cast<int>(ExitCode::serverUnfit));
        QVERIFY(QFileInfo::exists(folder + u"/kovanix.data"));
        moveToServer(shop.toServer());
        const Outcome outcome = runProgram(arguments, serverPassword());
        QVERIFY2(outcome.status == 0, qPrintable(outcome.errors));
        QCOMPARE(ProfileFile::value(folder + u"/Kovanix.config", u"ayar"_s, u"ip"_s), shop.pointer());
        QVERIFY(QFileInfo::exists(folder + u"/kovanix.data.tasindi"));
        QVERIFY(!QFileInfo::exists(folder + u"/kovanix.data"));
    }
};

QTEST_GUILESS_MAIN(TestTasiProgram)
#include "test_tasi_program.moc"
