#include <QApplication>
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

/// A window that goes, and a button as large as it behind.
struct Windows {
    QPushButton behind;
    std::unique_ptr<QWidget> front = std::make_unique<QWidget>();
    const TapGuard* guard = new TapGuard(*front);

    Windows() {
        for (QWidget* window : {static_cast<QWidget*>(&behind), front.get()})
            window->setGeometry(0, 0, 400, 300);
        behind.show();
        front->show();
    }

    void close() {
        guard->windowCloses();
        front.reset();
    }
};

/// Whether taps are dropped still.
bool dropping() {
    return qApp->findChild<QObject*>(u"tapDropper"_s);
}

}  // namespace

Q_DECLARE_METATYPE(TapRow)

class TestTapGuard : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QApplication::setDoubleClickInterval(100); }

    void taps_data() {
        addRows<TapRow>({{"at the same place", {true, 0, false, true}},
                         {"near it", {true, 30, false, true}},
                         {"elsewhere", {true, 100, false, false}},
                         {"later", {true, 0, true, false}},
                         {"window closed by a key", {false, 0, false, false}}});
    }
    void taps() {
        QFETCH(const TapRow, row);
        Windows windows;
        const QSignalSpy clicks(&windows.behind, &QPushButton::clicked);
        const QPoint place(50, 50);
        if (row.pressed)
            QTest::mouseClick(windows.front.get(), Qt::LeftButton, {}, place);
        windows.close();
        if (row.waits)
            QTRY_VERIFY(!dropping());
        QTest::mouseClick(&windows.behind, Qt::LeftButton, {}, place + QPoint(row.distance, 0));
        QCOMPARE(clicks.isEmpty(), row.dropped);
    }

    void whatOpensLaterTakesTaps() {
        Windows windows;
        QTest::mouseClick(windows.front.get(), Qt::LeftButton, {}, QPoint(50, 50));
        windows.close();
        QPushButton later;
        later.setGeometry(0, 0, 400, 300);
        later.show();
        const QSignalSpy clicks(&later, &QPushButton::clicked);
        QTest::mouseClick(&later, Qt::LeftButton, {}, QPoint(50, 50));
        QCOMPARE(clicks.size(), 1);
    }

    // Keys act when the finger is lifted, however long it was down.
    void aHeldTapCountsFromItsEnd() {
        Windows windows;
        const QSignalSpy clicks(&windows.behind, &QPushButton::clicked);
        QTest::mousePress(windows.front.get(), Qt::LeftButton, {}, QPoint(50, 50));
        QElapsedTimer held;
        held.start();
        QTRY_VERIFY(held.hasExpired(2 * QApplication::doubleClickInterval()));
        QTest::mouseRelease(windows.front.get(), Qt::LeftButton, {}, QPoint(50, 50));
        windows.close();
        QTest::mouseClick(&windows.behind, Qt::LeftButton, {}, QPoint(50, 50));
        QVERIFY(clicks.isEmpty());
    }

    void aSecondTapDoesntReachWhatTheFirstHasOpened() {
        Windows windows;
        QTest::mouseClick(windows.front.get(), Qt::LeftButton, {}, QPoint(50, 50));
        QPushButton opened;
        opened.setGeometry(0, 0, 400, 300);
        windows.guard->windowOpens(opened);
        opened.show();
        const QSignalSpy clicks(&opened, &QPushButton::clicked);
        QTest::mouseClick(&opened, Qt::LeftButton, {}, QPoint(50, 50));
        QVERIFY(clicks.isEmpty());
        QTest::mouseClick(&opened, Qt::LeftButton, {}, QPoint(200, 200));
        QCOMPARE(clicks.size(), 1);
    }

    void theDesktopClosesOneWindowAtATime() {
        Windows windows;
        QVERIFY(QTest::qWaitForWindowExposed(&windows.behind));
        windows.guard->windowCloses(true);
        windows.front.reset();
        windows.behind.windowHandle()->close();  // as the desktop asks for it
        QVERIFY(windows.behind.isVisible());
        QTRY_VERIFY(!dropping());
        windows.behind.windowHandle()->close();
        QVERIFY(!windows.behind.isVisible());
    }

    void everyTapDroppedWaitsAnew() {
        Windows windows;
        const QSignalSpy clicks(&windows.behind, &QPushButton::clicked);
        QTest::mouseClick(windows.front.get(), Qt::LeftButton, {}, QPoint(50, 50));
        windows.close();
        QElapsedTimer time;
        for (time.start(); time.elapsed() < 3 * QApplication::doubleClickInterval();) {
            QTest::mouseClick(&windows.behind, Qt::LeftButton, {}, QPoint(50, 50));
            QCoreApplication::processEvents();
        }
        QVERIFY(clicks.isEmpty());
        QTRY_VERIFY(!dropping());
        QTest::mouseClick(&windows.behind, Qt::LeftButton, {}, QPoint(50, 50));
        QCOMPARE(clicks.size(), 1);
    }
};

QTEST_MAIN(TestTapGuard)
#include "test_tapguard.moc"
