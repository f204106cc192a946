// The built till on a display with a window manager, driven through the display's keyboard alone.

#include <QWidget>

#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "virtualdisplay.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int soon = 10000;  // milliseconds

const QString question = u"Program kapatma"_s;

/// The process whose window the display's keyboard goes to; 0 when there is none.
qint64 activeProcess() {
    return xdotool({u"getwindowfocus"_s, u"-f"_s, u"getwindowpid"_s}).toLongLong();
}

/// The title of the window that the display's keyboard goes to.
QString activeTitle() {
    return xdotool({u"getwindowfocus"_s, u"-f"_s, u"getwindowname"_s});
}

/// How many windows of a process stand on the display.
qsizetype visibleWindows(const Program& program) {
    const QString found =
        xdotool({u"search"_s, u"--onlyvisible"_s, u"--pid"_s, QString::number(program.id())});
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
        pressKeys({u"Return"_s});
        if (!QTest::qWaitFor([] { return activeTitle() == u"Kovanix Satis"_s; }, soon))
            qFatal("no login: the keyboard is with \"%s\"", qPrintable(activeTitle()));
    }
};

int storedRows(const ClosedShop& shop) {
    return shop.value(u"SELECT count(*) FROM satislar"_s).toInt();
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
        pressKeys({u"F1"_s});
        QTRY_COMPARE_WITH_TIMEOUT(storedRows(shop), 1, soon);
    }

    void theNextStartBringsBackAMinimisedTill() {
        const ClosedShop shop;
        ShownTill till(shop);
        pressKeys({u"F10"_s});
        QTRY_COMPARE_WITH_TIMEOUT(visibleWindows(till), 0, soon);

        const Outcome next = runProgram(shop.till(), displayEnvironment());
        QCOMPARE(next.status, 0);
        QCOMPARE(next.output + next.errors, QString());
        QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), till.id(), soon);
        QCOMPARE(visibleWindows(till), 1);
        // And it sells at once.
        typeKeys(shelf::bread + u'\n');
        pressKeys({u"F1"_s});
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
            pressKeys({u"F9"_s});
            QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == question, soon);
        }
        const QString title = activeTitle();
        QWidget cover;
        cover.resize(1000, 700);
        cover.show();
        // Asked for again: the till may be activating its own window still.
        const auto covers = [&cover] {
            cover.activateWindow();
            return activeProcess() == QCoreApplication::applicationPid();
        };
        QTRY_VERIFY_WITH_TIMEOUT(covers(), soon);

        QCOMPARE(runProgram(shop.till(), displayEnvironment()).status, 0);
        QTRY_COMPARE_WITH_TIMEOUT(activeProcess(), till.id(), soon);
        QCOMPARE(activeTitle(), title);
    }

    void theQuestionAtTheEnd_data() {
        const QStringList yes{u"Left"_s, u"space"_s};
        const QStringList no{u"Return"_s};
        const QStringList escape{u"Escape"_s};
        addRows<TheQuestionAtTheEndRow>({{"F9 and Yes", {u"F9"_s, yes, true}},
                                         {"F9 and No", {u"F9"_s, no, false}},
                                         {"F9 and Escape", {u"F9"_s, escape, false}},
                                         {"the close request and Yes", {u"alt+F4"_s, yes, true}},
                                         {"the close request and No", {u"alt+F4"_s, no, true}},
                                         {"the close request and Escape", {u"alt+F4"_s, escape, true}}});
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
            pressKeys({u"F1"_s});
            QTRY_COMPARE_WITH_TIMEOUT(storedRows(shop), 1, soon);
            return;
        }
        const Outcome outcome = till.finish();
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
        QCOMPARE(storedRows(shop), 0);
    }

    // Whatever stands open when the sales screen goes stays, and the process ends with the last of it.
    void theCloseRequestAndNoUnderAnotherScreen() {
        const ClosedShop shop;
        ShownTill till(shop);
        const QString sales = xdotool({u"getwindowfocus"_s, u"-f"_s});
        pressKeys({u"F8"_s});
        QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Kovanix"_s, soon);
        xdotool({u"windowactivate"_s, sales});
        QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Kovanix Satis"_s, soon);
        pressKeys({u"alt+F4"_s});
        QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == question, soon);
        pressKeys({u"Return"_s});
        QTRY_COMPARE_WITH_TIMEOUT(activeTitle(), u"Kovanix"_s, soon);
        QCOMPARE(visibleWindows(till), 1);
        QVERIFY(till.isRunning());
        pressKeys({u"Escape"_s});
        const Outcome outcome = till.finish();
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
    }

    void anUncaughtFailure() {
        const ClosedShop shop;
        ShownTill till(shop);
        typeKeys(u"2700012\n"_s);
        QTRY_COMPARE_WITH_TIMEOUT(visibleWindows(till), 2, soon);
        QTRY_VERIFY_WITH_TIMEOUT(activeTitle() == u"Kovanix"_s, soon);
        QVERIFY(till.isRunning());
        pressKeys({u"Return"_s});
        const Outcome outcome = till.finish();
        QVERIFY(outcome.ended);
        QCOMPARE(outcome.status, 1);
        QCOMPARE(outcome.errors, u"13: Type mismatch\n"_s);
    }
};

int main(int argc, char** argv) {
    if (displayTrouble().isEmpty() && !isOnVirtualDisplay())
        return runOnVirtualDisplay(argc, argv);
    isolateFromOtherTills();
    return runTests<DesktopTillTest>(argc, argv);
}

#include "test_desktop_till.moc"
