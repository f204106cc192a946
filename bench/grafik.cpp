// The charts over a million sold lines: from the press to all figures, and to the picture.

#include <QElapsedTimer>
#include <vector>

#include "app/frame.h"
#include "app/shopfolder.h"
#include "desktop/application.h"
#include "figures.h"
#include "grafik/figuresheet.h"
#include "grafik/salesreading.h"

namespace {

using namespace kovanix;
using namespace kovanix::bench;

template <class Step>
double milliseconds(Step&& step) {
    QElapsedTimer timer;
    timer.start();
    step();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    int none = 1;
    const Application application(none, argv);
    prepareApplication();
    findShopFolder(QString::fromStdString(figures.option("sales")));
    std::vector<double> reading;
    std::vector<double> drawing;
    SalesPicture picture;
    const int rounds = figures.quick() ? 2 : 9;
    for (int round = 0; round < rounds; ++round) {
        reading.push_back(milliseconds([&] { picture = readShop(anyDay(), WorkProgress()); }));
        drawing.push_back(milliseconds([&] { drawnImage(picture, Division::product); }));
    }
    if (picture.total.lines == 0)
        giveUp("nothing was sold");
    constexpr double limit = 2000;
    figures.atMost(limit,
                   "Charts: " + std::to_string(picture.total.lines) + " sold lines by day, hour and product",
                   percentile(reading, 0.5), "ms");
    figures.tell("Charts: the picture of them", percentile(drawing, 0.5), "ms");
    return figures.status();
}
