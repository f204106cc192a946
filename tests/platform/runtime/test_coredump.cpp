#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <functional>

#include "runtime/process.h"

using namespace kovanix;

namespace {

/// Runs a procedure in a process of its own, in that folder, with core files allowed as far as the machine
/// lets it.
/// @return how it ended, as waitpid tells
int inChild(const QString& folder, const std::function<void()>& procedure) {
    const QByteArray path = folder.toLocal8Bit();
    const pid_t child = ::fork();
    if (child == 0) {
        std::signal(SIGABRT, SIG_DFL);  // the test program's own handler would tell of it
        rlimit limit{};
        ::getrlimit(RLIMIT_CORE, &limit);
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_CORE, &limit);
        if (::chdir(path.constData()) != 0)
            ::_exit(99);
        procedure();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

}  // namespace

class TestCoreDump : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theMarksOfTheProcess() {
        const QTemporaryDir folder;
        const int status = inChild(folder.path(), [] {
            if (::prctl(PR_GET_DUMPABLE) != 1)
                ::_exit(1);
            forbidCoreDumps();
            rlimit limit{1, 1};
            ::getrlimit(RLIMIT_CORE, &limit);
            ::_exit(limit.rlim_cur == 0 && limit.rlim_max == 0 && ::prctl(PR_GET_DUMPABLE) == 0 ? 0 : 2);
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
    }

    void aCrash() {
        const QTemporaryDir folder;
        const int allowed = inChild(folder.path(), [] { std::abort(); });
        QVERIFY(WIFSIGNALED(allowed));
        if (!WCOREDUMP(allowed))
            QSKIP("this machine writes no core for any process");
        const int forbidden = inChild(folder.path(), [] {
            forbidCoreDumps();
            std::abort();
        });
        QVERIFY(WIFSIGNALED(forbidden));
        QCOMPARE(WTERMSIG(forbidden), SIGABRT);
        QVERIFY(!WCOREDUMP(forbidden));
    }

    void whatItForksWritesNoneEither() {
        const QTemporaryDir folder;
        const int status = inChild(folder.path(), [] {
            forbidCoreDumps();
            std::signal(SIGABRT, SIG_DFL);
            if (::fork() == 0)
                std::abort();
            int inner = 0;
            ::wait(&inner);
            ::_exit(WIFSIGNALED(inner) && !WCOREDUMP(inner) ? 0 : 1);
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 0);
        QVERIFY(QDir(folder.path()).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestCoreDump)
#include "test_coredump.moc"
