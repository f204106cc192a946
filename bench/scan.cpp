// From Enter in `barkod` and from the press of a quick key to the painted line, with a ticket of 300 lines,
// in a small and in a large catalogue.

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTimer>

#include "app/ayarmodul.h"
#include "app/frame.h"
#include "desktop/application.h"
#include "figures.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

constexpr qsizetype ticketLines = 300;

class ScanRun : public QObject {
public:
    ScanRun(QStringList folders, int rounds, int scansARound)
        : m_folders(std::move(folders)),
          m_rounds(rounds),
          m_scansARound(scansARound),
          m_times(2),
          m_pressTimes(2) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &ScanRun::step);
        m_step.start();
    }

    const std::vector<double>& times(std::size_t shop) const { return m_times.at(shop); }
    const std::vector<double>& pressTimes(std::size_t shop) const { return m_pressTimes.at(shop); }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++m_paints;
        return false;
    }

private:
    /// One scan for each turn of the event loop.
    void step() {
        if (!m_sales) {
            // In turns, so that whatever else the machine does falls on both shops alike.
            if (m_turn == 2 * m_rounds) {
                m_step.stop();
                closeShop();
                QCoreApplication::exit(0);
                return;
            }
            m_sales = &openShop(m_folders.at(m_turn % 2));
            m_sales->ui.satisekrani1->viewport()->installEventFilter(this);
            m_others = drawBarcodes(2 * ticketLines, static_cast<quint32>(m_turn + 1));
            m_others.removeOne(ayar(u"1hizlibarkod0"_s));
            m_onTicket.clear();
            m_scans = 0;
            m_presses = 0;
        } else if (!takesScans(*m_sales)) {
            return;  // not active yet
        } else if (m_onTicket.size() < ticketLines) {
            scanNew();
            finishPosted();
        } else if (m_scans < m_scansARound) {
            measure();
        } else if (m_presses < m_scansARound / 2) {
            measurePress();
        } else {
            m_sales = nullptr;
            ++m_turn;
        }
    }

    void scanNew() {
        scan(*m_sales, m_others.constFirst());
        m_onTicket.append(m_others.takeFirst());
    }

    void measure() {
        VSFlexGrid& grid = *m_sales->ui.satisekrani1;
        const bool merge = m_random.bounded(2) == 0;
        const QString barcode = merge ? m_onTicket.at(m_random.bounded(static_cast<int>(m_onTicket.size())))
                                      : m_others.constFirst();
        typeText(*m_sales, barcode);
        finishPosted();
        const int paintsBefore = m_paints;
        QElapsedTimer timer;
        timer.start();
        pressKey(*m_sales, Qt::Key_Return, u"\r"_s);
        finishPosted();
        m_times[static_cast<std::size_t>(m_turn % 2)].push_back(static_cast<double>(timer.nsecsElapsed()) /
                                                                1e6);
        if (m_paints == paintsBefore)
            giveUp("a scan was not painted");
        if (grid.rows() != ticketLines + (merge ? 2 : 3))
            giveUp("a scan went to the wrong line");
        ++m_scans;
        if (merge)
            return;
        // The oldest line goes, and its product may come again.
        grid.removeItem(1);
        m_sales->toplamhesapla();
        m_others.append(m_onTicket.takeFirst());
        m_onTicket.append(m_others.takeFirst());
        finishPosted();
    }

    /// Presses the first quick key: every other time its product is on the ticket already.
    void measurePress() {
        VSFlexGrid& grid = *m_sales->ui.satisekrani1;
        const bool merge = m_presses % 2 == 1;
        const int paintsBefore = m_paints;
        QElapsedTimer timer;
        timer.start();
        pressOn(*m_sales->ui.kisayol_0);
        finishPosted();
        m_pressTimes[static_cast<std::size_t>(m_turn % 2)].push_back(
            static_cast<double>(timer.nsecsElapsed()) / 1e6);
        if (m_paints == paintsBefore)
            giveUp("the press of a quick key was not painted");
        if (grid.rows() != ticketLines + 3 || grid.textMatrix(ticketLines + 1, 3) != (merge ? u"2" : u"1"))
            giveUp("a quick key sold to the wrong line");
        ++m_presses;
        if (!merge)
            return;
        grid.removeItem(ticketLines + 1);
        m_sales->toplamhesapla();
        grid.setRow(grid.rows() - 1);
        grid.setCol(1);
        finishPosted();
    }

    QStringList m_folders;
    int m_rounds;
    int m_scansARound;
    QTimer m_step;
    satisekrani* m_sales = nullptr;
    int m_turn = 0;
    int m_scans = 0;
    int m_presses = 0;
    int m_paints = 0;
    QStringList m_onTicket;
    QStringList m_others;
    QRandomGenerator m_random{1};
    std::vector<std::vector<double>> m_times;
    std::vector<std::vector<double>> m_pressTimes;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const QStringList folders{QString::fromStdString(figures.option("small")),
                              QString::fromStdString(figures.option("large"))};
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    constexpr int rounds = 5;
    ScanRun run(folders, rounds, figures.quick() ? 200 : 2000);
    if (const int status = application.run([] {}); status != 0)
        return status;

    const std::string what = "Enter to the painted line, 300 lines, ";
    const double smallMedian = percentile(run.times(0), 0.5);
    const double smallTail = percentile(run.times(0), 0.99);
    const double largeMedian = percentile(run.times(1), 0.5);
    const double largeTail = percentile(run.times(1), 0.99);
    figures.tell(what + "1,000 products, median", smallMedian, "ms");
    figures.tell(what + "1,000 products, 99th percentile", smallTail, "ms");
    figures.tell(what + "1,000,000 products, median", largeMedian, "ms");
    figures.atMost(16, what + "1,000,000 products, 99th percentile", largeTail, "ms");
    figures.tell(what + "1,000,000 products, slowest", percentile(run.times(1), 1), "ms");
    figures.atMost(1.3, "Scan, 1,000,000 against 1,000 products, median", largeMedian / smallMedian, "×");
    figures.atMost(1.3, "Scan, 1,000,000 against 1,000 products, 99th percentile", largeTail / smallTail,
                   "×");
    const std::string press = "Quick key to the painted line, 300 lines, ";
    figures.tell(press + "1,000 products, median", percentile(run.pressTimes(0), 0.5), "ms");
    figures.tell(press + "1,000,000 products, median", percentile(run.pressTimes(1), 0.5), "ms");
    figures.atMost(16, press + "1,000,000 products, 99th percentile", percentile(run.pressTimes(1), 0.99),
                   "ms");
    return figures.status();
}
