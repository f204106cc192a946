#include <malloc.h>

#include <QPointer>
#include <QScreen>
#include <functional>
#include <optional>

#include "../platform/widgets/paintcounter.h"
#include "appearance/saatt.h"
#include "desktop/focus.h"
#include "dialpixels.h"
#include "runtests.h"
#include "salesfixture.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

namespace {

double scaleFactor() {
    return qEnvironmentVariable("QT_SCALE_FACTOR", u"1"_s).toDouble();
}

}  // namespace

class TestClock : public QObject {
    Q_OBJECT

    std::optional<ShopFixture> m_shop;

    /// The clock, open, its timers held still so that a case ticks them itself.
    saatt& openStill() {
        saatt& clock = screen<saatt>();
        clock.Timer1.setInterval(0);
        clock.Timer2.setInterval(0);
        showInFront(clock);
        if (!QTest::qWaitForWindowExposed(&clock))
            qFatal("the clock doesn't show");
        return clock;
    }
    void tickAt(saatt& clock, int hour, int minute) {
        m_shop->setNow(QDateTime(QDate(2026, 5, 3), QTime(hour, minute)));
        Q_EMIT clock.Timer1.tick();
    }

private Q_SLOTS:
    void init() { m_shop.emplace(); }
    void cleanup() { m_shop.reset(); }

    void load() {
        m_shop->setNow(QDateTime(QDate(2026, 5, 3), QTime(13, 5, 9)));
        const saatt& clock = screen<saatt>();
        QCOMPARE(clock.Timer1.interval(), 1000);
        QCOMPARE(clock.Timer2.interval(), 10);
        QCOMPARE(clock.windowTitle(), u"Saat"_s);
        QCOMPARE(clock.sizeHint(), QSize(280, 280));
        QCOMPARE(clock.accessibleName(), u"13:05"_s);
        // The hands stand at once; nothing is old yet.
        const auto hands = clock.hands().hands();
        QCOMPARE(hands[2].end, handEnd(minuteAngle(5), 18));
        QCOMPARE(hands[3].end, handEnd(hourAngle(13), 12));
        QCOMPARE(hands[0].end, QPointF());
        QVERIFY(clock.windowFlags() & Qt::WindowDoesNotAcceptFocus);
        QCOMPARE(clock.hands().c(), 0);
    }

    void timersTick() {
        m_shop->setNow(QDateTime(QDate(2026, 5, 3), QTime(3, 15)));
        saatt& clock = screen<saatt>();
        showInFront(clock);
        QTRY_VERIFY(clock.hands().c() >= 3);
        QCOMPARE(clock.hands().hands()[0].end, QPointF());
        QTRY_COMPARE(clock.hands().hands()[0].end, QPointF(18, 0));
    }

    void ticksTellTheTime() {
        saatt& clock = openStill();
        tickAt(clock, 0, 0);
        QCOMPARE(clock.accessibleName(), u"00:00"_s);
        tickAt(clock, 23, 59);
        QCOMPARE(clock.accessibleName(), u"23:59"_s);
    }

    void screenShowsTheHands() {
        saatt& clock = openStill();
        clock.resize(280, 280);
        tickAt(clock, 9, 58);
        tickAt(clock, 10, 2);
        Q_EMIT clock.Timer2.tick();
        const QImage image = clock.grab().toImage();
        QCOMPARE(image.devicePixelRatio(), scaleFactor());
        QCOMPARE(image.size(), (QSizeF(280, 280) * scaleFactor()).toSize());
        for (const HandLine& line : clock.hands().hands())
            QVERIFY(endsThere(image, clock.dial(), line));
        QVERIFY(endsThere(image, clock.dial(), clock.hands().sweep()[1]));
    }

    void sweepPaintsTheMiddleOnly() {
        saatt& clock = openStill();
        tickAt(clock, 9, 58);
        QCoreApplication::processEvents();
        PaintCounter paintings(clock);
        Q_EMIT clock.Timer2.tick();
        QTRY_COMPARE(paintings.count(), 1);
        const QRect middle = paintings.region().boundingRect();
        for (int c = 0; c < 360; ++c) {
            const QPointF tip = clock.dial().at(handEnd(sweepAngle(c), 3));
            QVERIFY(QRectF(middle).contains(QRectF(tip - QPointF(1, 1), QSizeF(2, 2))));
        }
        QVERIFY(middle.width() * middle.height() * 25 < clock.width() * clock.height());

        paintings.reset();
        tickAt(clock, 9, 59);
        QTRY_COMPARE(paintings.count(), 1);
        const QRect hands = paintings.region().boundingRect();
        for (int minute = 0; minute < 60; ++minute)
            QVERIFY(QRectF(hands).contains(clock.dial().at(handEnd(minuteAngle(minute), 18))));
    }

    void ticksLeaveNothingBehind() {
        saatt& clock = openStill();
        const auto leavesNothing = [&clock] {
            QCoreApplication::processEvents();
            QScreen& display = *clock.QWidget::screen();
            const QImage byTicks = display.grabWindow(clock.winId(), 0, 0, clock.width(), clock.height())
                                       .toImage()
                                       .convertToFormat(QImage::Format_RGB32);
            // On a display of double density the headless platform gives a quarter of the window, with the
            // centre at its corner.
            const QImage whole =
                clock.grab().toImage().copy(byTicks.rect()).convertToFormat(QImage::Format_RGB32);
            return byTicks.width() >= 240 && byTicks == whole;
        };
        for (int tick = 0; tick < 130; ++tick) {
            Q_EMIT clock.Timer2.tick();
            QCoreApplication::processEvents();
        }
        QVERIFY(leavesNothing());
        for (int minute = 0; minute < 60; minute += 7) {
            tickAt(clock, minute / 3, minute);
            QVERIFY(leavesNothing());
        }
    }

    void followsTheSize() {
        saatt& clock = openStill();
        tickAt(clock, 10, 2);
        tickAt(clock, 10, 2);
        for (const QSize size : {QSize(120, 120), QSize(300, 200), QSize(480, 480)}) {
            clock.resize(size);
            QCOMPARE(clock.size(), size);
            const QImage image = clock.grab().toImage();
            const QPointF tip =
                QPointF(size.width(), size.height()) / 2 +
                QPointF(0.2079, -0.9781) * (17.6 / 64 * std::min(size.width(), size.height()));
            QVERIFY(shows(image, tip, red));
        }
        clock.resize(10, 10);
        QCOMPARE(clock.size(), QSize(120, 120));
    }

    void ticksDontGrow() {
        saatt& clock = openStill();
        const auto ticks = [&](int count) {
            for (int tick = 0; tick < count; ++tick) {
                Q_EMIT clock.Timer2.tick();
                if (tick % 100 == 0)
                    tickAt(clock, tick / 500 % 24, tick / 100 % 60);
                QCoreApplication::processEvents();
            }
        };
        ticks(1000);
        const qint64 picture = clock.dial().picture().cacheKey();
        const auto children = clock.children().size();
        const size_t held = mallinfo2().uordblks;
        ticks(10'000);
        QCOMPARE(clock.hands().c(), 11'000 % 360);
        QCOMPARE(clock.dial().picture().cacheKey(), picture);
        QCOMPARE(clock.children().size(), children);
        if (held == 0)
            QSKIP("this build's allocator doesn't say what it holds");
        const size_t holds = mallinfo2().uordblks;
        QVERIFY2(holds < held + 16 * 1024, qPrintable(u"%1 bytes more"_s.arg(holds - held)));
    }

    void closes_data() {
        QTest::addColumn<std::function<void(saatt&)>>("close");
        const auto row = [](const char* name, const std::function<void(saatt&)>& close) {
            QTest::newRow(name) << close;
        };
        row("click on the dial", [](saatt& clock) { QTest::mouseClick(&clock, Qt::LeftButton); });
        row("click on its rim",
            [](saatt& clock) { QTest::mouseClick(&clock, Qt::LeftButton, {}, QPoint(140, 4)); });
        row("close button", [](saatt& clock) { clock.close(); });
    }
    void closes() {
        QFETCH(const std::function<void(saatt&)>, close);
        saatt& clock = screen<saatt>();
        const QPointer<saatt> alive = &clock;
        showInFront(clock);
        QVERIFY(QTest::qWaitForWindowExposed(&clock));
        QTRY_VERIFY(clock.hands().c() > 0);
        close(clock);
        QVERIFY(!loaded<saatt>());
        QVERIFY(!loaded<satisekrani>());  // asked for, never loaded
        QVERIFY(alive);
        QVERIFY(!clock.isVisible());
        QCOMPARE(clock.Timer1.interval(), 0);
        QCOMPARE(clock.Timer2.interval(), 0);
        QTRY_VERIFY(!alive);
        QCOMPARE(screen<saatt>().hands().c(), 0);
        QCOMPARE(screen<saatt>().Timer2.interval(), 10);
    }

    void staysOpen_data() {
        QTest::addColumn<std::function<void(saatt&)>>("act");
        const auto row = [](const char* name, const std::function<void(saatt&)>& act) {
            QTest::newRow(name) << act;
        };
        row("the release of the press that opened it",
            [](saatt& clock) { QTest::mouseRelease(&clock, Qt::LeftButton); });
        row("press alone", [](saatt& clock) { QTest::mousePress(&clock, Qt::LeftButton); });
        row("right button", [](saatt& clock) { QTest::mouseClick(&clock, Qt::RightButton); });
        row("released outside", [](saatt& clock) {
            QTest::mousePress(&clock, Qt::LeftButton);
            QTest::mouseRelease(&clock, Qt::LeftButton, {}, QPoint(-5, 20));
        });
        row("another key", [](saatt& clock) { QTest::keyClick(&clock, Qt::Key_1); });
    }
    void staysOpen() {
        QFETCH(const std::function<void(saatt&)>, act);
        saatt& clock = screen<saatt>();
        showInFront(clock);
        QVERIFY(QTest::qWaitForWindowExposed(&clock));
        act(clock);
        QVERIFY(loaded<saatt>());
        QVERIFY(clock.isVisible());
        QCOMPARE(clock.Timer1.interval(), 1000);
        QCOMPARE(clock.Timer2.interval(), 10);
    }

    void givesTheFocusBack_data() { closes_data(); }
    void givesTheFocusBack() {
        QFETCH(const std::function<void(saatt&)>, close);
        m_shop.reset();
        const SalesFixture shop;
        shop.ui().adet->setFocus();
        saatt& clock = screen<saatt>();
        showInFront(clock);
        QVERIFY(QTest::qWaitForWindowExposed(&clock));
        close(clock);
        QTRY_VERIFY(shop.ui().barkod->hasFocus());
        QVERIFY(shop.sales().isActiveWindow());
        shop.scan(goods::bread);
        QCOMPARE(shop.lines(), 1);
        QVERIFY(allAnswered(shop.boxes));
    }
};

int main(int argc, char** argv) {
    return runTests<TestClock>(argc, argv);
}
#include "test_saatt.moc"
