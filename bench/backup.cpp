// Stores sales of five lines on the sales screen of a shop, first by itself and then while kovanix-yedek
// takes a copy of it: how long the cashier waits for F1. The shop's file grows by what is sold.

#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
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

int waits = 0;

class Cashier : public QObject {
public:
    Cashier(Figures& figures, const QString& folder)
        : m_figures(figures), m_sales(openShop(folder)), m_alone(figures.quick() ? 50 : 1000) {
        setWaitSign([] { ++waits; });
        m_step.setInterval(betweenSales);
        connect(&m_step, &QTimer::timeout, this, &Cashier::step);
        connect(&m_copy, &QProcess::finished, this, &Cashier::end);
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
        const bool beside = m_copy.state() == QProcess::Running;
        QElapsedTimer timer;
        timer.start();
        pressKey(m_sales, Qt::Key_F1, QString());
        const double taken = static_cast<double>(timer.nsecsElapsed()) / 1e6;
        finishPosted();
        if (m_sales.ui.satisekrani1->rows() != 2)
            giveUp("the sale was not stored");
        if (m_count > warmUps)
            (beside ? m_beside : m_before).push_back(taken);
        baglanti().idle();  // as a till does between two customers
        if (m_count == warmUps + m_alone) {
            waits = 0;
            m_running.start();
            m_copy.setProcessChannelMode(QProcess::ForwardedErrorChannel);
            m_copy.start(QString::fromStdString(neighbour("kovanix-yedek")),
                         {u"--folder"_s, applicationFolder(), u"--al"_s, u"--klasor"_s, m_place.path()});
        }
    }

    void end(int status) {
        m_step.stop();
        if (status != 0 || m_beside.empty())
            giveUp("no copy was taken beside the sales");
        m_figures.tell("copy of the shop, proved", static_cast<double>(m_running.elapsed()) / 1e3, "s");
        const auto tell = [this](const std::string& when, const std::vector<double>& times) {
            m_figures.tell("sale of 5 lines " + when + ", median", percentile(times, 0.5), "ms");
            m_figures.tell("sale of 5 lines " + when + ", 99th of 100", percentile(times, 0.99), "ms");
        };
        tell("alone", m_before);
        m_figures.tell("sale of 5 lines alone, longest", percentile(m_before, 1), "ms");
        tell("beside the copy", m_beside);
        m_figures.tell("sales beside the copy", static_cast<double>(m_beside.size()), "sales");
        m_figures.atMost(50, "sale of 5 lines beside the copy, longest", percentile(m_beside, 1), "ms");
        m_figures.atMost(0, "sales that waited for a lock", waits, "sales");
        closeShop();
        QCoreApplication::exit(m_figures.status());
    }

    Figures& m_figures;
    satisekrani& m_sales;
    int m_alone;
    int m_count = 0;
    std::vector<double> m_before;
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
