// The Z report over a million sales and the stock report over a million products, against loops through the
// engine's C interface that round and add the same way.

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <sstream>

#include "app/frame.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "desktop/application.h"
#include "figures.h"
#include "reports/stokraporu.h"
#include "reports/zparogu.h"
#include "runtime/screenregistry.h"
#include "till.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;
using namespace kovanix::bench;

struct Raw {
    double milliseconds = 0;
    double sum = 0;
};

/// The second of two runs of bench_sums_raw.
Raw rawSum(const std::string& folder, const std::string& of) {
    std::istringstream output(
        outputOf({neighbour("bench_sums_raw"), "--folder", folder, "--of", of, "--runs", "2"}));
    Raw first;
    Raw second;
    if (!(output >> first.milliseconds >> first.sum >> second.milliseconds >> second.sum))
        giveUp("bench_sums_raw has added nothing up");
    return second;
}

template <class Step>
double milliseconds(Step&& step) {
    QElapsedTimer timer;
    timer.start();
    step();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

struct Times {
    std::vector<double> till;
    std::vector<double> raw;
    std::vector<double> ratios;

    /// @param shown  the figure of the screen
    void add(double taken, const Raw& loop, const QString& shown) {
        till.push_back(taken);
        raw.push_back(loop.milliseconds);
        ratios.push_back(taken / loop.milliseconds);
        constexpr double halfACent = 0.005;
        if (std::abs(sayicevir(shown) - loop.sum) > halfACent)
            giveUp("the sums differ: " + shown.toStdString() + ", " + std::to_string(loop.sum));
    }

    void tell(Figures& figures, const std::string& what) const {
        figures.tell(what, percentile(till, 0.5), "ms");
        figures.tell("The same loop through the C interface", percentile(raw, 0.5), "ms");
        figures.atMost(2, what + ", against that loop", percentile(ratios, 0.5), "×");
    }
};

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const std::string sales = figures.option("sales");
    const std::string products = figures.option("products");
    const int rounds = figures.quick() ? 2 : 9;
    int none = 1;
    Application application(none, argv);
    prepareApplication();
    Times z;
    Times stock;
    double day = 0;
    std::string sold;
    std::string kept;
    QTimer::singleShot(0, [&] {
        openShop(QString::fromStdString(sales));
        sold = rowsOf(u"satislar"_s);
        Ui::zparogu& ui = screen<zparogu>().ui;
        for (int round = 0; round < rounds; ++round) {
            ui.tarih1->setDate({2000, 1, 1});
            ui.Tarih2->setDate({2099, 12, 31});
            const double taken = milliseconds([&] { ui.Command3->click(); });
            z.add(taken, rawSum(sales, "sales"), ui.toplam->text());
            for (DTPicker* picker : {ui.tarih1, ui.Tarih2})
                picker->setDate({2025, 6, 2});
            day = milliseconds([&] { ui.Command3->click(); });
            if (ui.ilk->text().isEmpty())
                giveUp("nothing was sold on a day");
        }
        openShop(QString::fromStdString(products));
        kept = rowsOf(u"urunler"_s);
        for (int round = 0; round < rounds; ++round) {
            QString shown;
            const double taken = milliseconds([&] { shown = screen<stokraporu>().ui.stokkar->text(); });
            stock.add(taken, rawSum(products, "stock"), shown);
            unload<stokraporu>();
        }
        closeShop();
        QCoreApplication::exit(0);
    });
    if (const int status = application.run([] {}); status != 0)
        return status;
    z.tell(figures, "Z report of " + sold + " sales, press to figures");
    figures.tell("Z report of one day of them", day, "ms");
    stock.tell(figures, "Stock report of " + kept + " products, opening");
    return figures.status();
}
