// Stores sales of five lines on the sales screen of a shop while kovanix-yedek takes copies of it, which
// stand still for each other hundred of sales: how long the cashier waits for F1 with and without a copy at
// work, under whatever else the machine does in the same minutes. The shop's file grows by what is sold.

#include <signal.h>

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <vector>

#include "app/frame.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "database/waiting.h"
#include "desktop/application.h"
#include "desktop/folders.h"
#include "figures.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

constexpr int lines = 5;
constexpr int warmUps = 5;
constexpr int betweenSales = 30;  // milliseconds: busier than any shop
constexpr int salesInARow = 100;  // with the copy at work, and then without
constexpr int afterASwitch = 5;   // sales that belong to neither

int waits = 0;

class Cashier : public QObject {
public:
    Cashier(Figures& figures, const QString& folder)
        : m_figures(figures), m_sales(openShop(folder)), m_copiesLeft(figures.quick() ? 1 : 3) {
        setWaitSign([] { ++waits; });
        m_step.setInterval(betweenSales);
        connect(&m_step, &QTimer::timeout, this, &Cashier::step);
        connect(&m_copy, &QProcess::finished, this, &Cashier::endCopy);
        m_step.start();
    }

private:
    void step() {
        if (!takesScans(m_sales))
            return;
        ++m_count;
        for (const QString& barcode : drawBarcodes(lines, static_cast<quint32>(m_count)))
            scan(m_sales, barcode);
        finishPosted();
        if (m_sales.ui.satisekrani1->rows() != lines + 2)
            giveUp("the ticket has another length");
        QElapsedTimer timer;
        timer.start();
        pressKey(m_sales, Qt::Key_F1, QString());
        const double taken = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        finishPosted();
        if (m_sales.ui.satisekrani1->rows() != 2)
            giveUp("the sale was not stored");
        baglanti().idle();  // as a till does between two customers
        if (m_count <= warmUps)
            return;
        if (m_copy.state() == QProcess::NotRunning) {
            // What a copy has left to be done by the disk belongs to it.
            if (m_behind-- > 0)
                m_beside.push_back(taken);
            else if (m_copiesLeft > 0)
                startCopy();
            else
                end();
            return;
        }
        if (++m_inARow > afterASwitch)
            (m_works ? m_beside : m_without).push_back(taken);
        if (m_inARow == salesInARow)
            switchCopy();
    }

    void startCopy() {
        m_works = true;
        m_inARow = 0;
        m_running.start();
        m_copy.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_copy.start(QString::fromStdString(neighbour("kovanix-yedek")),
                     {u"--folder"_s, applicationFolder(), u"--al"_s, u"--klasor"_s, m_place.path()});
    }

    /// Has the copy stand still, or go on.
    void switchCopy() {
        m_works = !m_works;
        m_inARow = 0;
        ::kill(static_cast<pid_t>(m_copy.processId()), m_works ? SIGCONT : SIGSTOP);
        if (m_works)
            m_running.start();
        else
            m_worked += m_running.elapsed();
    }

    void endCopy(int status) {
        if (status != 0 || m_beside.empty() || m_without.empty())
            giveUp("no copy was taken beside the sales");
        m_worked += m_running.elapsed();
        ++m_copies;
        --m_copiesLeft;
        m_behind = 2 * salesInARow;
    }

    void end() {
        m_step.stop();
        m_figures.tell("copy of the shop, proved", static_cast<double>(m_worked) / 1e3 / m_copies, "s");
        tell("without the copy", m_without);
        m_figures.tell("sale of 5 lines without the copy, longest", percentile(m_without, 1), "ms");
        tell("beside the copy", m_beside);
        m_figures.atMost(50, "sale of 5 lines beside the copy, longest", percentile(m_beside, 1), "ms");
        m_figures.atMost(0, "sales that waited for a lock", waits, "sales");
        closeShop();
        QCoreApplication::exit(m_figures.status());
    }

    void tell(const std::string& when, const std::vector<double>& times) {
        const std::string what = "sale of 5 lines " + when;
        m_figures.tell("sales " + when, static_cast<double>(times.size()), "sales");
        m_figures.tell(what + ", median", percentile(times, 0.5), "ms");
        m_figures.tell(what + ", 99th of 100", percentile(times, 0.99), "ms");
        m_figures.tell(what + ", 999th of 1000", percentile(times, 0.999), "ms");
        const auto tooLong = std::ranges::count_if(times, [](double time) { return time > 50; });
        m_figures.tell(what + ", longer than 50 ms", static_cast<double>(tooLong), "sales");
    }

    Figures& m_figures;
    satisekrani& m_sales;
    int m_copiesLeft;
    int m_copies = 0;
    int m_count = 0;
    bool m_works = false;  ///< the copy; else it stands still
    int m_inARow = 0;      ///< sales since it was switched
    int m_behind = 0;      ///< sales still to come right behind a copy's end
    qint64 m_worked = 0;   ///< milliseconds of all copies
    std::vector<double> m_without;
    std::vector<double> m_beside;
    QTemporaryDir m_place;
    QProcess m_copy;
    QElapsedTimer m_running;
    QTimer m_step;
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Cashier cashier(figures, QString::fromStdString(figures.option("folder")));
    return application.run([] {});
}
