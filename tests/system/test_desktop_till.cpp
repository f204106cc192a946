// The built till on a display with a window manager, driven through the display's keyboard alone.

#include <QWidget>

#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "virtualdisplay.h"

using namespace kovanix;

namespace {

constexpr int soon = 10000;  // milliseconds

const QString question = QStringLiteral("Program kapatma");

/// The process whose window the display's keyboard goes to; 0 when there is none.
qint64 activeProcess() {
    return xdotool({QStringLiteral("getwindowfocus"), QStringLiteral("-f"), QStringLiteral("getwindowpid")})
        .toLongLong();
}

/// The title of the window that the display's keyboard goes to.
QString activeTitle() {
    return xdotool({QStringLiteral("getwindowfocus"), QStringLiteral("-f"), QStringLiteral("getwindowname")});
}

/// How many windows of a process stand on the display.
qsizetype visibleWindows(const Program& program) {
    const QString found = xdotool({QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                                   QStringLiteral("--pid"), QString::number(program.id())});
    return found.isEmpty() ? 0 : found.count(u'\n') + 1;
}

QProcessEnvironment displayEnvironment() {
    QProcessEnvironment environment = tillEnvironment();
    for (const char* variable : {"DISPLAY", "QT_QPA_PLATFORM"})
        environment.insert(QString::fromLatin1(variable), qEnvironmentVariable(variable));
    return environment;
}

/// A till on the display that has the keyboard, its first user logged in.
class ShownTill : public Program {
public:
    explicit ShownTill(const ClosedShop& shop) : Program(shop.till(), displayEnvironment()) {
        if (!QTest::qWaitFor([this] { return activeProcess() == id(); }, soon))
            qFatal("the till (%lld, %s) doesn't become active: the keyboard is with \"%s\" (%lld)", id(),
                   isRunning() ? "running" : "ended", qPrintable(activeTitle()), activeProcess());
        pressKeys({QStringLiteral("Return")});
        if (!QTest::qWaitFor([] { return activeTitle() == QStringLiteral("Kovanix Satis"); }, soon))
            qFatal("no login: the keyboard is with \"%s\"", qPrintable(activeTitle()));
    }
};

int storedRows(const ClosedShop& shop) {
    return shop.value(QStringLiteral("SELECT count(*) FROM satislar")).toInt();
}

}  // namespace

class DesktopTillTest : public QObject {
    Q_OBJECT

    struct TheQuestionAtTheEndRow {
        QString ask;
        QStringList answer;
        bool ends;
    };

private Q_SLOTS:
    void initTestCase() {
        if (!displayTrouble().isEmpty())
            QSKIP(qPrintable(displayTrouble()));
        QTRY_VERIFY2_WITH_TIMEOUT(!someTillAnswers(), "a till is open on this machine: close it", soon);
    }

    void theFirstScanIsSold() {
        const ClosedShop shop;
        ShownTill till(shop);
        typeKeys(shelf::bread + u'\n');
        pressKeys({QStringLiteral("F1")});
        QTRY_COMPARE_WITH_TIMEOUT(storedRows(shop), 1, soon);
    }

    void theNextStartBringsBackAMinimisedTill() {
        const ClosedShop shop;
        ShownTill till(shop);
        pressKeys({QStringLiteral("F10")});
        QTRY_COMPARE_WITH_TIMEOUT(visibleWindows(till), 0, soon);

        const Outcome next = runProgram(shop.till(), displayEnvironment());
        QCOMPARE(next.status, 0);
        QCOMPARE(next.output + next.errors, QString());
        QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), till.id(), soon);
        QCOMPARE(visibleWindows(till), 1);
        // And it sells at once.
        typeKeys(shelf::bread + u'\n');
        pressKeys({QStringLiteral("F1")});
        QTRY_COMPARE_WITH_TIMEOUT(storedRows(shop), 1, soon);
    }

    void theNextStartBringsACoveredTillToTheFront_data() {
        QTest::addColumn<bool>("asking");
        QTest::newRow("the sales screen") << false;
        QTest::newRow("the box that stands over it") << true;
    }

    void theNextStartBringsACoveredTillToTheFront() {
        QFETCH(bool, asking);
        const ClosedShop shop;
        ShownTill till(shop);
        if (asking) {
            pressKeys({QStringLiteral("F9")});
            QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == question, soon);
        }
        const QString title = activeTitle();
        QWidget cover;
        cover.resize(1000, 700);
        cover.show();
        cover.activateWindow();
        QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), QCoreApplication::applicationPid(), soon);

        QCOMPARE(runProgram(shop.till(), displayEnvironment()).status, 0);
        QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), till.id(), soon);
        QCOMPARE(activeTitle(), title);
    }

    void theQuestionAtTheEnd_data() {
        const QStringList yes{QStringLiteral("Left"), QStringLiteral("space")};
        const QStringList no{QStringLiteral("Return")};
        const QStringList escape{QStringLiteral("Escape")};
        addRows<TheQuestionAtTheEndRow>(
            {{"F9 and Yes", {QStringLiteral("F9"), yes, true}},
             {"F9 and No", {QStringLiteral("F9"), no, false}},
             {"F9 and Escape", {QStringLiteral("F9"), escape, false}},
             {"the close request and Yes", {QStringLiteral("alt+F4"), yes, true}},
             {"the close request and No", {QStringLiteral("alt+F4"), no, true}},
             {"the close request and Escape", {QStringLiteral("alt+F4"), escape, true}}});
    }

    void theQuestionAtTheEnd() {
        QFETCH(const TheQuestionAtTheEndRow, row);
        const ClosedShop shop;
        ShownTill till(shop);
        typeKeys(shelf::bread + u'\n');
        pressKeys({row.ask});
        QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == question, soon);
        QCOMPARE(activeProcess(), till.id());
        QCOMPARE(visibleWindows(till), 2);
        pressKeys(row.answer);
        if (!row.ends) {
            QTRY_COMPARE_WITH_TIMEOUT(visibleWindows(till), 1, soon);
            QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), till.id(), soon);
            pressKeys({QStringLiteral("F1")});
            QTRY_COMPARE_WITH_TIMEOUT(storedRows(shop), 1, soon);
            return;
        }
        const Outcome outcome = till.finish();
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(storedRows(shop), 0);
    }

    void anUncaughtFailure() {
        const ClosedShop shop;
        ShownTill till(shop);
        typeKeys(QStringLiteral("2700012\n"));
        QTRY_COMPARE_WITH_TIMEOUT(visibleWindows(till), 2, soon);
        QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == QStringLiteral("Kovanix"), soon);
        QVERIFY(till.isRunning());
        pressKeys({QStringLiteral("Return")});
        const Outcome outcome = till.finish();
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.errors, QStringLiteral("13: Type mismatch\n"));
    }
};

int main(int argc, char** argv) {
    if (displayTrouble().isEmpty() && !isOnVirtualDisplay())
        return runOnVirtualDisplay(argc, argv);
    isolateFromOtherTills();
    return runTests<DesktopTillTest>(argc, argv);
}

#include "test_desktop_till.moc"
