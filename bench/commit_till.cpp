// Stores sales of 20 lines on the sales screen. Writes a line for each: the milliseconds that F1 took, and
// the disk barriers from there until the screen had been painted.

#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>

#include "app/frame.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "diskbarriers.h"
#include "figures.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

constexpr int lines = 20;
constexpr int warmUps = 3;

qint64 storedRows() {
    Recordset rows;
    rows.open(u"select count(*) as n from satislar"_s, baglanti());
    return rows.field(u"n"_s).toLongLong();
}

class Cashier : public QObject {
public:
    Cashier(const QString& folder, int sales) : m_sales(openShop(folder)), m_left(warmUps + sales) {
        m_step.setInterval(0);
        connect(&m_step, &QTimer::timeout, this, &Cashier::step);
        m_step.start();
    }

private:
    void step() {
        if (!takesScans(m_sales))
            return;
        if (m_left == 0) {
            m_step.stop();
            closeShop();
            QCoreApplication::exit(0);
            return;
        }
        for (const QString& barcode : drawBarcodes(lines, static_cast<quint32>(m_left)))
            scan(m_sales, barcode);
        finishPosted();
        if (m_sales.ui.satisekrani1->rows() != lines + 2)
            giveUp("the ticket has another length");
        const qint64 before = storedRows();
        const long barriers = diskBarriers();
        QElapsedTimer timer;
        timer.start();
        pressKey(m_sales, Qt::Key_F1, QString());
        const qint64 taken = timer.nsecsElapsed();
        finishPosted();
        const long needed = diskBarriers() - barriers;
        if (m_sales.ui.satisekrani1->rows() != 2 || storedRows() != before + lines)
            giveUp("the sale was not stored");
        if (m_left-- <= m_measured)
            std::printf("%.4f %ld\n", static_cast<double>(taken) / 1e6, needed);
        baglanti().idle();  // as a till does between two customers
    }

    satisekrani& m_sales;
    int m_left;
    int m_measured = m_left - warmUps;
    QTimer m_step;
};

}  // namespace

int main(int argc, char** argv) {
    const Figures figures(argc, argv);
    delayDiskBarriers(std::chrono::milliseconds(std::stoi(figures.option("sync-delay", "0"))));
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Cashier cashier(QString::fromStdString(figures.option("folder")), std::stoi(figures.option("sales")));
    return application.run([] {});
}
