// Opening a recordset to add a product, in a catalogue of none and of a million.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "database/recordset.h"
#include "figures.h"
#include "runtime/runtimeerror.h"

namespace {

using namespace kovanix;

struct Times {
    std::vector<double> open;
    std::vector<double> addNew;
};

void measure(Connection& connection, Times& times) {
    constexpr double nanosecondsAMicrosecond = 1000;
    Recordset products;
    QElapsedTimer timer;
    timer.start();
    products.open(QStringLiteral(" select * from urunler"), connection);
    const qint64 opened = timer.nsecsElapsed();
    products.addNew();
    const qint64 added = timer.nsecsElapsed();
    times.open.push_back(static_cast<double>(opened) / nanosecondsAMicrosecond);
    times.addNew.push_back(static_cast<double>(added) / nanosecondsAMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kovanix::bench;
    Figures figures(argc, argv);
    const auto file = [&figures](const char* shop) {
        return baglantimetniyap(QString::fromStdString(figures.option(shop) + "/kovanix.data"));
    };
    int none = 1;
    const QCoreApplication application(none, argv);
    Connection empty;
    Connection large;
    try {
        empty.open(file("empty"));
        large.open(file("large"));
        Times emptyTimes;
        Times largeTimes;
        measure(empty, emptyTimes);
        measure(large, largeTimes);
        emptyTimes = {};
        largeTimes = {};
        const int runs = figures.quick() ? 500 : 5000;
        for (int i = 0; i < runs; ++i) {
            measure(empty, emptyTimes);
            measure(large, largeTimes);
        }
        const double emptyOpen = percentile(emptyTimes.open, 0.5);
        const double largeOpen = percentile(largeTimes.open, 0.5);
        const double emptyAdd = percentile(emptyTimes.addNew, 0.5);
        const double largeAdd = percentile(largeTimes.addNew, 0.5);
        figures.tell("Opening the product list to add to it, no products", emptyOpen, "µs");
        figures.tell("Opening the product list to add to it, 1,000,000 products", largeOpen, "µs");
        figures.atMost(1.2, "Opening, 1,000,000 products against none", largeOpen / emptyOpen, "×");
        figures.tell("Opening and starting the new row, no products", emptyAdd, "µs");
        figures.tell("Opening and starting the new row, 1,000,000 products", largeAdd, "µs");
        figures.atMost(1.2, "Opening and new row, 1,000,000 products against none", largeAdd / emptyAdd, "×");
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
    return figures.status();
}
