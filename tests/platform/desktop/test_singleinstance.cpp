#include <QApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QMessageBox>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>
#include <QWidget>
#include <future>

#include <signal.h>
#include <unistd.h>

#include "desktop/singleinstance.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 20000;  // milliseconds, for what another process does

/// A name that no other run of any test uses.
QString freshName() {
    return u"Global\\Kovanix.Test."_s + QUuid::createUuid().toString(QUuid::WithoutBraces);
}

/// A process of its own that holds a name or asks for its holder.
class Helper {
public:
    Helper(const QString& mode, const QString& name, const QString& token = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        environment.remove(u"DESKTOP_STARTUP_ID"_s);
        environment.remove(u"XDG_ACTIVATION_TOKEN"_s);
        if (!token.isEmpty())
            environment.insert(u"XDG_ACTIVATION_TOKEN"_s, token);
        process.setProcessEnvironment(environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.setProgram(QStringLiteral(INSTANCE_HELPER));
        process.setArguments({mode, name});
    }
    ~Helper() {
        process.kill();
        process.waitForFinished();
    }

    Helper& start() {
        process.start();
        return *this;
    }

    /// The next line of its output; empty when none comes in time.
    QByteArray line() {
        const QDeadlineTimer deadline(patience);
        while (!process.canReadLine() &&
               process.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
        }
        QByteArray text = process.readLine();
        return text.endsWith('\n') ? text.chopped(1) : text;
    }

    QProcess process;
};

/// A connection to the holder that may say anything.
class Client {
public:
    explicit Client(const QString& name) {
        socket.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
        socket.connectToServer(name);
    }

    QLocalSocket socket;
};

/// Asks from another thread, because the holder of this process must keep serving.
bool raisedMeanwhile(const QString& name, int timeout = patience) {
    std::future<bool> asked =
        std::async(std::launch::async, [&] { return SingleInstance(name).raiseFirst(timeout); });
    const bool served = QTest::qWaitFor(
        [&asked] { return asked.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }, patience);
    return asked.get() && served;
}

}  // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

    struct ARequestFromAnotherProcessRow {
        QString token;
        QByteArray said;
    };

private Q_SLOTS:
    void oneHolderInAProcess() {
        const QString name = freshName();
        auto first = std::make_unique<SingleInstance>(name);
        QVERIFY(first->isFirst());
        const SingleInstance second(name);
        QVERIFY(!second.isFirst());
        first.reset();
        QVERIFY(SingleInstance(name).isFirst());
    }

    void otherNamesAreFree() {
        const QString name = freshName();
        const SingleInstance first(name);
        const SingleInstance longer(name + u"x"_s);
        QVERIFY(first.isFirst());
        QVERIFY(longer.isFirst());
    }

    void theNameIsNoFile() {
        QTemporaryDir dir;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(dir.path()));
        const QString name = freshName();
        {
            const SingleInstance first(name);
            QVERIFY(first.isFirst());
            QVERIFY(QDir(dir.path()).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
            QFile sockets(u"/proc/net/unix"_s);
            QVERIFY(sockets.open(QIODevice::ReadOnly));
            QVERIFY(sockets.readAll().contains(name.toLatin1().prepend('@')));
        }
        QVERIFY(QDir::setCurrent(before));
    }

    void aFileOfThatNameStays() {
        QTemporaryDir dir;
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(dir.path()));
        const QString name = freshName();
        QFile file(name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        {
            const SingleInstance first(name);
            QVERIFY(first.isFirst());
        }
        QVERIFY(file.exists());
        QVERIFY(QDir::setCurrent(before));
    }

    void aNameThatTheMachineRefuses() {
        const SingleInstance instance(QString(500, QLatin1Char('x')));
        QVERIFY(!instance.isFirst());
        QVERIFY(!instance.raiseFirst(100));
    }

    void nobodyToRaise() { QVERIFY(!SingleInstance(QString()).raiseFirst(100)); }

    void twoProcesses() {
        const QString name = freshName();
        Helper first(u"hold"_s, name);
        QCOMPARE(first.start().line(), QByteArray("first"));
        Helper second(u"hold"_s, name);
        QCOMPARE(second.start().line(), QByteArray("second"));
        QVERIFY(!SingleInstance(name).isFirst());
    }

    void aKilledHolderFreesTheName() {
        const QString name = freshName();
        Helper first(u"hold"_s, name);
        QCOMPARE(first.start().line(), QByteArray("first"));
        QCOMPARE(::kill(static_cast<pid_t>(first.process.processId()), SIGKILL), 0);
        QVERIFY(first.process.waitForFinished(patience));
        QVERIFY(SingleInstance(name).isFirst());
    }

    void anotherUserIsSecondToo() {
        if (geteuid() != 0)
            QSKIP("only the superuser can start a process of another user");
        const QString name = freshName();
        const SingleInstance first(name);
        QVERIFY(first.isFirst());
        // Its own copy: the build folder may be closed to other users.
        QTemporaryDir dir;
        QVERIFY(QFile::setPermissions(dir.path(), QFile::Permissions(0x7755)));
        const QString program = dir.filePath(u"helper"_s);
        QVERIFY(QFile::copy(QStringLiteral(INSTANCE_HELPER), program));
        QVERIFY(QFile::setPermissions(program, QFile::Permissions(0x7755)));

        const auto asNobody = [&program](Helper& helper) -> Helper& {
            helper.process.setProgram(program);
            helper.process.setWorkingDirectory(u"/"_s);
            helper.process.setChildProcessModifier([] {
                constexpr unsigned nobody = 65534;
                if (setgid(nobody) != 0 || setuid(nobody) != 0)
                    _exit(99);
            });
            return helper.start();
        };
        Helper second(u"hold"_s, name);
        QCOMPARE(asNobody(second).line(), QByteArray("second"));

        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        Helper raiser(u"raise"_s, name);
        asNobody(raiser);
        QTRY_COMPARE_WITH_TIMEOUT(raised.count(), 1, patience);
        QCOMPARE(raiser.line(), QByteArray("taken"));
    }

    void aRequestArrives() {
        const QString name = freshName();
        const SingleInstance first(name);
        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        QVERIFY(raisedMeanwhile(name));
        QTRY_COMPARE(raised.count(), 1);
        QVERIFY(raisedMeanwhile(name));
        QTRY_COMPARE(raised.count(), 2);
    }

    void aRequestFromAnotherProcess_data() {
        addRows<ARequestFromAnotherProcessRow>(
            {{"without a token", {"", QByteArray("raised ")}},
             {"with a token", {"kwin_42-TIME7", QByteArray("raised kwin_42-TIME7")}},
             {"a token with a blank is none", {"a b", QByteArray("raised ")}},
             {"a token that is too long is none", {QString(600, QLatin1Char('t')), QByteArray("raised ")}}});
    }

    void aRequestFromAnotherProcess() {
        QFETCH(const ARequestFromAnotherProcessRow, row);
        const QString name = freshName();
        Helper first(u"hold"_s, name);
        QCOMPARE(first.start().line(), QByteArray("first"));
        Helper raiser(u"raise"_s, name, row.token);
        QCOMPARE(raiser.start().line(), QByteArray("taken"));
        QCOMPARE(first.line(), row.said);
    }

    void theTokenIsForgottenAfterwards() {
        const QString name = freshName();
        const SingleInstance first(name);
        QByteArray during;
        connect(&first, &SingleInstance::raiseRequested, this,
                [&during] { during = qgetenv("XDG_ACTIVATION_TOKEN"); });
        Helper raiser(u"raise"_s, name, u"token1"_s);
        raiser.start();
        QTRY_COMPARE_WITH_TIMEOUT(during, QByteArray("token1"), patience);
        QVERIFY(!qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
    }

    void aBusyHolderIsWaitedForOnlySoLong() {
        const QString name = freshName();
        const SingleInstance first(name);
        // This thread serves nobody meanwhile.
        QElapsedTimer clock;
        clock.start();
        QVERIFY(!SingleInstance(name).raiseFirst(200));
        QVERIFY2(clock.elapsed() < 5000, qPrintable(QString::number(clock.elapsed())));
    }

    void strangeClients_data() {
        QTest::addColumn<QByteArray>("said");
        QTest::newRow("another word") << QByteArray("hello\n");
        QTest::newRow("a longer word") << QByteArray("raised\n");
        QTest::newRow("nothing but a break") << QByteArray("\n");
        QTest::newRow("no break at all") << QByteArray(5000, 'x');
        QTest::newRow("a flood") << QByteArray(4 * 1024 * 1024, 'x');
        QTest::newRow("binary") << QByteArray("\0\xff\xfe\0\n", 5);
    }

    void strangeClients() {
        QFETCH(QByteArray, said);
        const QString name = freshName();
        const SingleInstance first(name);
        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        Client silent(name);
        QVERIFY(silent.socket.waitForConnected(patience));
        Client client(name);
        QVERIFY(client.socket.waitForConnected(patience));
        client.socket.write(said);
        QTRY_COMPARE_WITH_TIMEOUT(client.socket.state(), QLocalSocket::UnconnectedState, patience);
        // It went for what it said, not for being slow: the one that said nothing is still there.
        QCOMPARE(silent.socket.state(), QLocalSocket::ConnectedState);
        QCOMPARE(raised.count(), 0);
        QVERIFY(raisedMeanwhile(name));
        QTRY_COMPARE(raised.count(), 1);
    }

    void aClientThatGoesAwayInTheMiddle() {
        const QString name = freshName();
        const SingleInstance first(name);
        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        {
            Client client(name);
            QVERIFY(client.socket.waitForConnected(patience));
            client.socket.write("rai");
            client.socket.flush();
        }
        QVERIFY(raisedMeanwhile(name));
        QTRY_COMPARE(raised.count(), 1);
    }

    void aLineInPieces() {
        const QString name = freshName();
        const SingleInstance first(name);
        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        Client client(name);
        QVERIFY(client.socket.waitForConnected(patience));
        for (const char* piece : {"ra", "ise", "\n"}) {
            client.socket.write(piece);
            QVERIFY(client.socket.flush());
            // Another's whole request in between: the holder has seen the piece by then.
            QVERIFY(raisedMeanwhile(name));
        }
        QTRY_COMPARE(raised.count(), 4);
    }

    void silentClientsAreDropped() {
        const QString name = freshName();
        const SingleInstance first(name);
        std::vector<std::unique_ptr<Client>> silent;
        for (int i = 0; i < 40; ++i) {
            silent.push_back(std::make_unique<Client>(name));
            QVERIFY(QTest::qWaitFor(
                [&] { return silent.back()->socket.state() != QLocalSocket::ConnectingState; }));
        }
        for (const auto& client : silent)
            QTRY_COMPARE_WITH_TIMEOUT(client->socket.state(), QLocalSocket::UnconnectedState, patience);
        QSignalSpy raised(&first, &SingleInstance::raiseRequested);
        QVERIFY(raisedMeanwhile(name));
        QTRY_COMPARE(raised.count(), 1);
    }

    void raisingWithoutAWindow() { raiseApplication(); }

    void theActiveWindowIsRaised() {
        QWidget behind;
        QWidget front;
        show(behind);
        show(front);
        QVERIFY(front.isActiveWindow());
        raiseApplication();
        QVERIFY(front.isActiveWindow());
    }

    void aMinimisedWindowComesBack() {
        QWidget window;
        show(window);
        window.showMinimized();
        QTRY_VERIFY(window.isMinimized());
        raiseApplication();
        QVERIFY(!window.isMinimized());
        QVERIFY(window.isVisible());
    }

    void anOpenBoxComesFirst() {
        QWidget window;
        show(window);
        QMessageBox box(&window);
        box.open();
        QVERIFY(QTest::qWaitForWindowExposed(&box));
        QWidget other;
        show(other);
        raiseApplication();
        QTRY_VERIFY(box.isActiveWindow());
    }

private:
    static void show(QWidget& window) {
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
    }
};

QTEST_MAIN(SingleInstanceTest)
#include "test_singleinstance.moc"
