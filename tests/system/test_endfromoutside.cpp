// The till's end that nobody at it has asked for: its display goes away, or the session asks it to end.

#include <signal.h>

#include "programs.h"
#include "rows.h"
#include "runtests.h"
#include "virtualdisplay.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

constexpr int soon = 10000;  // milliseconds

const QString salesScreen = u"Kovanix Satis"_s;

/// What a cashier has done on a till that has a display of its own.
struct State {
    QString password;  ///< the database file's
    QStringList keys;  ///< pressed at the sales screen; "login" stands before it
    QString title;     ///< of the window that has the keyboard then, as xdotool prints it
    int stored = 0;    ///< rows of sales
};

}  // namespace

Q_DECLARE_METATYPE(State)

class EndFromOutsideTest : public QObject {
    Q_OBJECT

    struct RequestRow {
        int signal;
    };

private Q_SLOTS:
    void initTestCase() {
        QTRY_VERIFY2_WITH_TIMEOUT(!someTillAnswers(), "a till is open on this machine: close it", soon);
    }

    void theDisplayGoesAway_data() {
        addRows<State>(
            {{"at the login", {{}, {}, u"Kovanix"_s, 0}},
             {"at the login, password", {u"gizli"_s, {}, u"Kovanix"_s, 0}},
             {"at the sales screen", {{}, {u"Return"_s}, salesScreen, 0}},
             {"behind a sale", {{}, {u"Return"_s, shelf::bread, u"Return"_s, u"F1"_s}, salesScreen, 1}},
             {"behind a sale, password",
              {u"gizli"_s, {u"Return"_s, shelf::bread, u"Return"_s, u"F1"_s}, salesScreen, 1}},
             {"with a ticket open", {{}, {u"Return"_s, shelf::bread, u"Return"_s}, salesScreen, 0}},
             {"over a list", {{}, {u"Return"_s, u"F6"_s}, u"URUN LISTESI"_s, 0}},
             {"under a box", {{}, {u"Return"_s, u"F9"_s}, u"Program kapatma"_s, 0}}});
    }
    void theDisplayGoesAway() {
        QFETCH(const State, row);
        if (!displayTrouble().isEmpty())
            QSKIP(qPrintable(displayTrouble()));
        const ClosedShop shop(row.password);
        VirtualDisplay display;
        QProcessEnvironment environment = tillEnvironment();
        display.enter(environment);
        const auto title = [&environment] {
            return xdotool({u"getwindowfocus"_s, u"-f"_s, u"getwindowname"_s}, environment);
        };
        Program till(shop.till(), environment);
        QTRY_VERIFY_WITH_TIMEOUT(title().startsWith(u"Kovanix"), soon);
        for (const QString& key : row.keys) {
            if (key.size() > 10)
                xdotool({u"type"_s, key}, environment);
            else
                xdotool({u"key"_s, key}, environment);
            if (key == row.keys.first())
                QTRY_COMPARE_WITH_TIMEOUT(title(), salesScreen, soon);
        }
        if (!row.keys.isEmpty())
            QTRY_COMPARE_WITH_TIMEOUT(title(), row.title, soon);
        const auto stored = [&shop] { return shop.value(u"SELECT count(*) FROM satislar"_s).toInt(); };
        QTRY_COMPARE_WITH_TIMEOUT(stored(), row.stored, soon);
        QVERIFY(QFile::exists(shop.databaseFile() + u"-wal"));

        display.vanish();
        const Outcome outcome = till.finish();
        QVERIFY2(outcome.ended, qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 1);
        // The engine has folded its log into the file, which is what the last connection's close does.
        QVERIFY(!QFile::exists(shop.databaseFile() + u"-wal"));
        QCOMPARE(shop.value(u"PRAGMA integrity_check"_s).toString(), u"ok"_s);
        QCOMPARE(stored(), row.stored);
    }

    void theSessionAsks_data() {
        addRows<RequestRow>(
            {{"the session's end", {SIGHUP}}, {"the machine's end", {SIGTERM}}, {"Ctrl+C", {SIGINT}}});
    }
    void theSessionAsks() {
        QFETCH(const RequestRow, row);
        const ClosedShop shop;
        Program till(shop.till());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(shop.databaseFile() + u"-wal"), soon);
        QCOMPARE(::kill(static_cast<pid_t>(till.id()), row.signal), 0);
        const Outcome outcome = till.finish();
        QVERIFY2(outcome.ended, qPrintable(outcome.errors));
        QCOMPARE(outcome.status, 0);
        QCOMPARE(outcome.errors, QString());
        QVERIFY(!QFile::exists(shop.databaseFile() + u"-wal"));
    }
};

int main(int argc, char** argv) {
    isolateFromOtherTills();
    return runTests<EndFromOutsideTest>(argc, argv);
}

#include "test_endfromoutside.moc"
