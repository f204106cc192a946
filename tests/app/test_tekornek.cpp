#include <sched.h>

#include <QProcess>
#include <QWidget>

#include "app/tekornek.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int isFirst = 10;
constexpr int isNotFirst = 11;
const QString askOption = u"--ask"_s;

/// What a second process does: asks, and brings the first to the front where it isn't the first itself.
int ask(int argc, char** argv) {
    const Application application(argc, argv);
    if (tekorneksorgu())
        return isFirst;
    tekornekoneal();
    return isNotFirst;
}

/// Runs this program as a second process and gives its status; events go on meanwhile.
int askedStatus() {
    QProcess second;
    second.start(QCoreApplication::applicationFilePath(), {askOption});
    if (!QTest::qWaitFor([&second] { return second.state() == QProcess::NotRunning; }, 20000))
        return -1;
    return second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
}

}  // namespace

class TestTekornek : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void oneInstanceOnTheMachine() {
        QWidget window;
        window.showMinimized();

        // A process that has ended holds nothing.
        QCOMPARE(askedStatus(), isFirst);
        QVERIFY(tekorneksorgu());
        QVERIFY(tekorneksorgu());
        QVERIFY(window.isMinimized());

        QCOMPARE(askedStatus(), isNotFirst);
        QTRY_VERIFY(!window.isMinimized());
        QCOMPARE(askedStatus(), isNotFirst);
        QVERIFY(tekorneksorgu());
    }
};

int main(int argc, char** argv) {
    if (argc > 1 && QString::fromLocal8Bit(argv[1]) == askOption)
        return ask(argc, argv);
    // The name counts for the whole machine, so for a network of this test's own where the system grants one:
    // a till that runs beside the test then keeps its name.
    static_cast<void>(unshare(CLONE_NEWNET));
    return runTests<TestTekornek>(argc, argv);
}
#include "test_tekornek.moc"
