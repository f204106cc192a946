// The charts over a million sold lines, of a plain file and of one with a password: from the press to all
// figures, and to the picture; against a loop in C that does no more than read the same cells.

#include <QElapsedTimer>
#include <sstream>
#include <vector>

#include "app/frame.h"
#include "app/shopfolder.h"
#include "child.h"
#include "data/baglanmamodulu.h"
#include "database/connection.h"
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

/// The milliseconds that the loop in C takes for the shop in a folder.
double rawReading(const std::string& folder, const std::string& password, qint64 lines) {
    const std::string program = password.empty() ? "bench_grafik_raw" : "bench_grafik_raw_locked";
    const std::string output = outputOf({neighbour(program), "--folder", folder, "--password", password});
    double taken = 0;
    qint64 read = 0;
    if (!(std::istringstream(output) >> taken >> read) || read != lines)
        giveUp("the loop in C reads other lines");
    return taken;
}

void measure(Figures& figures, const std::string& folder, const std::string& ofWhat) {
    findShopFolder(QString::fromStdString(folder));
    const std::string password = ConnectionString::parse(baglantimetnial()).password.toStdString();
    std::vector<double> reading;
    std::vector<double> raw;
    std::vector<double> drawing;
    SalesPicture picture;
    const int rounds = figures.quick() ? 2 : 9;
    for (int round = 0; round < rounds; ++round) {
        reading.push_back(milliseconds([&] { picture = readShop(anyDay(), WorkProgress()); }));
        raw.push_back(rawReading(folder, password, picture.total.lines));
        drawing.push_back(milliseconds([&] { drawnImage(picture, Division::product); }));
    }
    constexpr double limit = 2000;
    const double taken = percentile(reading, 0.5);
    const double least = percentile(raw, 0.5);
    figures.atMost(
        limit,
        "Charts: " + std::to_string(picture.total.lines) + " sold lines by day, hour and product" + ofWhat,
        taken, "ms");
    figures.tell("Reading the same cells through the C interface" + ofWhat, least, "ms");
    figures.tell("Charts, against the C interface" + ofWhat, taken / least, "×");
    figures.tell("Charts: the picture of them" + ofWhat, percentile(drawing, 0.5), "ms");
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    int none = 1;
    const Application application(none, argv);
    prepareApplication();
    measure(figures, figures.option("sales"), "");
    measure(figures, figures.option("locked"), ", file with a password");
    return figures.status();
}
