#include <QGuiApplication>
#include <QScreen>
#include <QTest>

#include "desktop/screensize.h"

using namespace kovanix;

class ScreenSizeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { setScreenMetricsSource({}); }

    void thePrimaryScreenIsTheSource() {
        const QScreen* screen = QGuiApplication::primaryScreen();
        QVERIFY(screen);
        const ScreenMetrics metrics = screenMetrics();
        QCOMPARE(metrics.pixels, screen->geometry().size());
        QVERIFY(!metrics.pixels.isEmpty());
        QCOMPARE(metrics.twipsPerPixelX * screen->logicalDotsPerInchX(), 1440.0);
        QCOMPARE(metrics.twipsPerPixelY * screen->logicalDotsPerInchY(), 1440.0);
    }

    void theSourceIsReplaced() {
        setScreenMetricsSource([] { return ScreenMetrics{QSize(1366, 768), 12.0, 11.0}; });
        const ScreenMetrics metrics = screenMetrics();
        QCOMPARE(metrics.pixels, QSize(1366, 768));
        QCOMPARE(metrics.twipsPerPixelX, 12.0);
        QCOMPARE(metrics.twipsPerPixelY, 11.0);
    }

    void anEmptySourceBringsTheScreenBack() {
        const QSize real = screenMetrics().pixels;
        setScreenMetricsSource([] { return ScreenMetrics{QSize(1, 1), 1.0, 1.0}; });
        setScreenMetricsSource({});
        QCOMPARE(screenMetrics().pixels, real);
    }
};

QTEST_MAIN(ScreenSizeTest)
#include "test_screensize.moc"
