#include "desktop/windowplace.h"

#include <QTest>
#include <QWindow>

#include "desktop/screensize.h"
#include "rows.h"

using namespace kovanix;

namespace {

struct OwnerRow {
    Qt::WindowStates states;
    QPoint middle;  ///< of what is placed above it
};

}  // namespace

class WindowPlaceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void inTheMiddleOfItsOwner_data() {
        setScreenMetricsSource([] { return ScreenMetrics{{800, 600}, 15, 15}; });
        const QPoint display = screenArea(nullptr).center();
        setScreenMetricsSource({});
        addRows<OwnerRow>({{"an ordinary one", {{}, {349, 279}}},
                           {"maximised, not there yet", {Qt::WindowMaximized, display}},
                           {"filling the display, not there yet", {Qt::WindowFullScreen, display}}});
    }
    void inTheMiddleOfItsOwner() {
        QFETCH(const OwnerRow, row);
        setScreenMetricsSource([] { return ScreenMetrics{{800, 600}, 15, 15}; });
        QWindow owner;
        owner.setGeometry(100, 100, 500, 360);
        owner.setWindowStates(row.states);
        const QPoint middle = placeFor({201, 101}, &owner).center();
        setScreenMetricsSource({});
        QCOMPARE(middle, row.middle);
    }
};

QTEST_MAIN(WindowPlaceTest)
#include "test_windowplace.moc"
