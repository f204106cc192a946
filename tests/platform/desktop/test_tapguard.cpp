#include <QApplication>
#include <QCursor>
#include <QDialog>
#include <QElapsedTimer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QWindow>
#include <memory>

#include "desktop/tapguard.h"
#include "rows.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

struct TapRow {
    bool pressed = false;  ///< the window that goes was pressed before
    int distance = 0;      ///< pixels from that press
    bool waits = false;    ///< as long as taps are dropped
    bool dropped = false;
};

const QPoint place(50, 50);

void tap(QWidget& window, const QPoint& at = place) {
    QTest::mouseClick(&window, Qt::LeftButton, {}, at);
}

void waitFor(int milliseconds) {
    QElapsedTimer time;
    time.start();
    QTRY_VERIFY(time.hasExpired(milliseconds));
}

/// A window that goes, and a button as large as it behind.
struct Windows {
    TapGuard guard;
    QPushButton behind;
    std::unique_ptr<QWidget> front = std::make_unique<QWidget>();
    QSignalSpy clicks{&behind, &QPushButton::clicked};

    Windows() {
        for (QWidget* window : {static_cast<QWidget*>(&behind), front.get()})
            window->setGeometry(0, 0, 400, 300);
        behind.show();
        front->show();
    }
};

}  // namespace

Q_DECLARE_METATYPE(TapRow)

class TestTapGuard : public QObject {
    Q_OBJECT

    static int interval() { return QApplication::doubleClickInterval(); }

private Q_SLOTS:
    void initTestCase() { QApplication::setDoubleClickInterval(200); }

    void behindAWindowThatWent_data() {
        addRows<TapRow>({{"at the same place", {true, 0, false, true}},
                         {"near it", {true, 30, false, true}},
                         {"elsewhere", {true, 100, false, false}},
                         {"later", {true, 0, true, false}},
                         {"window closed by a key", {false, 0, false, false}}});
    }
    void behindAWindowThatWent() {
        QFETCH(const TapRow, row);
        Windows windows;
        if (row.pressed)
            tap(*windows.front);
        windows.front.reset();
        if (row.waits)
            waitFor(interval() + 20);
        tap(windows.behind, place + QPoint(row.distance, 0));
        QCOMPARE(windows.clicks.isEmpty(), row.dropped);
    }

    // Keys act when the finger is lifted, however long it was down.
    void aHeldTapCountsFromItsEnd() {
        Windows windows;
        QTest::mousePress(windows.front.get(), Qt::LeftButton, {}, place);
        waitFor(2 * interval());
        QTest::mouseRelease(windows.front.get(), Qt::LeftButton, {}, place);
        windows.front.reset();
        tap(windows.behind);
        QVERIFY(windows.clicks.isEmpty());
    }

    void whatATapHasOpened() {
        const TapGuard guard;
        QWidget opener;
        opener.setGeometry(0, 0, 400, 300);
        opener.show();
        tap(opener);
        QPushButton opened;  // a message box, a keyboard, the screen behind the login
        opened.setGeometry(0, 0, 400, 300);
        opened.show();
        const QSignalSpy clicks(&opened, &QPushButton::clicked);
        tap(opened);
        QCOMPARE(clicks.size(), 0);
        tap(opened, QPoint(200, 200));
        QCOMPARE(clicks.size(), 1);
    }

    void behindAPanelThatWent() {
        const TapGuard guard;
        QPushButton screen;
        screen.setGeometry(0, 0, 400, 300);
        QWidget panel(&screen);
        panel.setGeometry(0, 0, 200, 200);
        QPushButton close(&panel);
        close.setGeometry(0, 0, 100, 100);
        connect(&close, &QPushButton::clicked, &panel, &QWidget::hide);
        screen.show();
        const QSignalSpy clicks(&screen, &QPushButton::clicked);
        tap(close);
        tap(screen);
        QCOMPARE(clicks.size(), 0);
        tap(screen, QPoint(300, 200));
        QCOMPARE(clicks.size(), 1);
    }

    // However quick they come.
    void tapsOnOneControl() {
        Windows windows;
        windows.front.reset();
        for (int taps = 0; taps < 6; ++taps)
            tap(windows.behind);
        QCOMPARE(windows.clicks.size(), 6);
    }

    void tapsOnNeighbours() {
        const TapGuard guard;
        QWidget board;
        board.setGeometry(0, 0, 400, 300);
        QPushButton one(&board), other(&board);
        one.setGeometry(0, 0, 30, 30);
        other.setGeometry(30, 0, 30, 30);
        board.show();
        const QSignalSpy clicks(&other, &QPushButton::clicked);
        tap(one, QPoint(28, 10));
        tap(other, QPoint(2, 10));
        QCOMPARE(clicks.size(), 1);
    }

    // A press that a control leaves to its parent is one press.
    void whatAControlLeavesToItsParent() {
        const TapGuard guard;
        QPushButton screen;
        screen.setGeometry(0, 0, 400, 300);
        QWidget label(&screen);
        label.setGeometry(0, 0, 200, 200);
        screen.show();
        const QSignalSpy presses(&screen, &QPushButton::pressed);
        QTest::mousePress(&label, Qt::LeftButton, {}, place);
        QCOMPARE(presses.size(), 1);
    }

    void steadyTappingGetsThrough() {
        Windows windows;
        tap(*windows.front);
        windows.front.reset();
        for (int taps = 0; taps < 3 && windows.clicks.isEmpty(); ++taps) {
            waitFor(interval() * 8 / 10);
            tap(windows.behind);
        }
        QCOMPARE(windows.clicks.size(), 1);
        tap(windows.behind);
        QCOMPARE(windows.clicks.size(), 2);
    }

    void theDesktopClosesOneWindowAtATime() {
        Windows windows;
        QVERIFY(QTest::qWaitForWindowExposed(&windows.behind));
        windows.front->windowHandle()->close();  // as the desktop asks for it
        QCoreApplication::processEvents();
        windows.front.reset();
        // However often somebody goes on: behind the last window is the end of the program.
        for (int presses = 0; presses < 4; ++presses) {
            windows.behind.windowHandle()->close();
            QVERIFY(windows.behind.isVisible());
            waitFor(interval() * 7 / 10);
        }
        waitFor(interval() + 20);
        windows.behind.windowHandle()->close();
        QVERIFY(!windows.behind.isVisible());
    }

    void aDroppedPressMovesNoFocus() {
        Windows windows;
        QPushButton focused(&windows.behind), other(&windows.behind);
        other.setGeometry(0, 0, 100, 100);
        focused.setGeometry(200, 0, 100, 100);
        for (QWidget* shown : {&focused, &other})
            shown->show();
        QVERIFY(QTest::qWaitForWindowExposed(&windows.behind));
        windows.behind.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&windows.behind));
        focused.setFocus();
        const QSignalSpy clicks(&other, &QPushButton::clicked);
        QWindow* window = windows.behind.windowHandle();
        tap(*windows.front);
        windows.front.reset();
        QTest::mouseClick(window, Qt::LeftButton, {}, place);  // as it comes from the display
        QVERIFY(focused.hasFocus());
        QVERIFY(clicks.isEmpty());
        waitFor(interval() + 20);
        QTest::mouseClick(window, Qt::LeftButton, {}, place);
        QCOMPARE(clicks.size(), 1);
        QVERIFY(other.hasFocus());
    }

    // The second press of a double click on a window's X.
    void pressesBehindAnX() {
        Windows windows;
        QVERIFY(QTest::qWaitForWindowExposed(&windows.behind));
        QCursor::setPos(windows.behind.mapToGlobal(place));
        windows.front->windowHandle()->close();
        tap(windows.behind);
        QVERIFY(windows.clicks.isEmpty());
    }

    void whatClosesAlongWithAWindow() {
        Windows windows;
        QWidget belonging;
        belonging.show();
        QVERIFY(QTest::qWaitForWindowExposed(&belonging));
        windows.front->windowHandle()->close();
        belonging.close();
        QVERIFY(!belonging.isVisible());
    }

    void messageBoxesCloseByTheirAnswers() {
        const TapGuard guard;
        for (int answers = 0; answers < 2; ++answers) {
            QDialog box;
            box.show();
            QVERIFY(QTest::qWaitForWindowExposed(&box));
            box.accept();
            QCoreApplication::processEvents();
            QVERIFY(!box.isVisible());
        }
    }
};

QTEST_MAIN(TestTapGuard)
#include "test_tapguard.moc"
