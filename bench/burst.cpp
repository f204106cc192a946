// Twenty scans a second for a minute: none may be lost, none may go to the wrong line.

#include <QElapsedTimer>
#include <QHash>
#include <QKeyEvent>
#include <QRandomGenerator>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <cmath>

#include "app/frame.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "figures.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

constexpr int scansASecond = 20;
constexpr qsizetype products = 400;

class Burst : public QObject {
public:
    Burst(const QString& folder, int scans) : m_scans(scans), m_sales(openShop(folder)) {
        m_barcodes = drawBarcodes(products, 1);
        m_tick.setTimerType(Qt::PreciseTimer);
        m_tick.setInterval(1000 / scansASecond);
        connect(&m_tick, &QTimer::timeout, this, &Burst::tick);
        m_tick.start();
    }

    int sent() const { return m_sent; }
    /// Scans that no line holds.
    double lost() const { return m_sent - m_counted; }
    /// Lines with another quantity than was scanned, and products with several lines.
    int wrongLines() const { return m_wrongLines; }
    double secondsTaken() const { return static_cast<double>(m_clock.elapsed()) / 1000; }

private:
    void tick() {
        if (m_sent == 0) {
            if (!takesScans(m_sales))
                return;
            m_clock.start();
        }
        if (m_sent == m_scans) {
            // One tick later: the last scan has had its turn.
            m_tick.stop();
            compare();
            closeShop();
            QCoreApplication::exit(0);
            return;
        }
        const QString& barcode = m_barcodes.at(m_random.bounded(static_cast<int>(m_barcodes.size())));
        for (const QChar digit : barcode)
            postKey(static_cast<Qt::Key>(digit.unicode()), digit);
        postKey(Qt::Key_Return, u"\r"_s);
        ++m_expected[barcode];
        ++m_sent;
    }

    void postKey(Qt::Key key, const QString& text) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(m_sales.windowHandle(),
                                        new QKeyEvent(type, key, Qt::NoModifier, text));
    }

    void compare() {
        const VSFlexGrid& grid = *m_sales.ui.satisekrani1;
        QHash<QString, int> missing = m_expected;
        for (int row = 1; row <= grid.rows() - 2; ++row) {
            const QString barcode = grid.textMatrix(row, 1);
            const double quantity = sayicevir(grid.textMatrix(row, 3));
            m_counted += quantity;
            if (missing.take(barcode) != quantity)
                ++m_wrongLines;
        }
        m_wrongLines += static_cast<int>(missing.size());
    }

    int m_scans;
    satisekrani& m_sales;
    QTimer m_tick;
    QElapsedTimer m_clock;
    QStringList m_barcodes;
    QRandomGenerator m_random{7};
    QHash<QString, int> m_expected;
    int m_sent = 0;
    double m_counted = 0;
    int m_wrongLines = 0;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QString folder = QString::fromStdString(figures.option("large"));
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Burst burst(folder, scansASecond * (figures.quick() ? 5 : 60));
    if (const int status = application.run([] {}); status != 0)
        return status;
    const double seconds = burst.secondsTaken();
    figures.tell("Burst of scans, 1,000,000 products", burst.sent() / seconds, "scans/s");
    figures.tell("Burst, scans sent", burst.sent(), "scans");
    figures.atMost(0, "Burst, scans lost", std::abs(burst.lost()), "scans");
    figures.atMost(0, "Burst, lines merged wrongly", burst.wrongLines(), "lines");
    return figures.status();
}
