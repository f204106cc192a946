#include "appearance/mdlMonitors.h"
#include "desktop/screensize.h"
#include "rows.h"
#include "runtests.h"

using namespace kovanix;
using namespace Qt::StringLiterals;

class TestMonitors : public QObject {
    Q_OBJECT

    struct ReadsTheScreenRow {
        QSize pixels;
        double scaleX, scaleY;
        QSize read;
        QString text;
    };

private Q_SLOTS:
    void init() { Monitors.clear(); }
    void cleanup() { setScreenMetricsSource({}); }
    void readsTheScreen_data() {
        addRows<ReadsTheScreenRow>(
            {{"96 dots an inch", {{1024, 768}, 15, 15, {1024, 768}, u"1024 x 768"_s}},
             {"small screen", {{800, 600}, 15, 15, {800, 600}, u"800 x 600"_s}},
             {"wide screen", {{1366, 768}, 15, 15, {1366, 768}, u"1366 x 768"_s}},
             {"144 dots an inch", {{1920, 1080}, 10, 10, {1920, 1080}, u"1920 x 1080"_s}},
             {"portrait", {{768, 1024}, 15, 15, {768, 1024}, u"768 x 1024"_s}},
             {"100 dots an inch: twips by a scale of 14",
              {{1000, 700}, 14.4, 14.4, {1029, 720}, u"1029 x 720"_s}},
             {"scale rounded up", {{1000, 700}, 14.6, 14.6, {973, 681}, u"973 x 681"_s}},
             {"each direction has its own scale", {{1000, 700}, 14.4, 15, {1029, 700}, u"1029 x 700"_s}},
             {"no screen", {{0, 0}, 15, 15, {0, 0}, u"0 x 0"_s}}});
    }
    void readsTheScreen() {
        QFETCH(const ReadsTheScreenRow, row);
        setScreenMetricsSource([=] { return ScreenMetrics{row.pixels, row.scaleX, row.scaleY}; });
        QVERIFY(Monitors.empty());
        monitorlerioku();
        QCOMPARE(Monitors.size(), size_t{1});
        const Monitor& entry = Monitors.front();
        QCOMPARE(QSize(entry.width, entry.height), row.read);
        QCOMPARE(entry.size, row.text);
        QCOMPARE(entry.workSize, row.text);
        QCOMPARE(entry.handle, 0);
        QVERIFY(entry.flags);
    }

    void twoReadsAreEqual() {
        setScreenMetricsSource([] { return ScreenMetrics{QSize(1366, 768), 14.4, 14.4}; });
        monitorlerioku();
        const Monitor first = Monitors.front();
        monitorlerioku();
        QCOMPARE(Monitors.size(), size_t{1});
        const Monitor& second = Monitors.front();
        QCOMPARE(second.width, first.width);
        QCOMPARE(second.height, first.height);
        QCOMPARE(second.size, first.size);
        QCOMPARE(second.workSize, first.workSize);
    }

    void followsTheScreen() {
        setScreenMetricsSource([] { return ScreenMetrics{QSize(800, 600), 15, 15}; });
        monitorlerioku();
        setScreenMetricsSource([] { return ScreenMetrics{QSize(1920, 1080), 15, 15}; });
        QCOMPARE(Monitors.front().width, 800);
        monitorlerioku();
        QCOMPARE(Monitors.size(), size_t{1});
        QCOMPARE(Monitors.front().size, u"1920 x 1080"_s);
    }

    void readsTheRealScreen() {
        setScreenMetricsSource({});
        monitorlerioku();
        const ScreenMetrics metrics = screenMetrics();
        QCOMPARE(Monitors.size(), size_t{1});
        // The scale in whole twips is less than four parts in a hundred off the real one.
        QVERIFY(std::abs(Monitors.front().width - metrics.pixels.width()) * 25 <= metrics.pixels.width());
        QVERIFY(Monitors.front().width > 0);
    }
};

int main(int argc, char** argv) {
    return runTests<TestMonitors>(argc, argv);
}
#include "test_mdlmonitors.moc"
