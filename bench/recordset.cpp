// Opening a recordset to add a product, in a catalogue of none and of a million, and reaching one row of a
// million.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>

#include "data/baglanmamodulu.h"
#include "database/connection.h"
#include "database/recordset.h"
#include "figures.h"
#include "runtime/process.h"
#include "runtime/runtimeerror.h"

namespace {

using namespace kovanix;
using namespace Qt::StringLiterals;

struct Times {
    std::vector<double> open;
    std::vector<double> addNew;
};

double microseconds(const QElapsedTimer& timer) {
    constexpr double nanosecondsAMicrosecond = 1000;
    return static_cast<double>(timer.nsecsElapsed()) / nanosecondsAMicrosecond;
}

void measure(Connection& connection, Times& times) {
    Recordset products;
    QElapsedTimer timer;
    timer.start();
    products.open(u" select * from urunler"_s, connection);
    const double opened = microseconds(timer);
    products.addNew();
    times.addNew.push_back(microseconds(timer));
    times.open.push_back(opened);
}

/// As the list of products comes to the row that it deletes.
double findTime(Connection& connection, const QString& number) {
    QElapsedTimer timer;
    timer.start();
    Recordset products;
    products.open(u" select * from urunler"_s, connection);
    if (!products.find(u"no like '" + number + u'\''))
        bench::giveUp("the product isn't there");
    return microseconds(timer);
}

double lookUpTime(Connection& connection, const QString& number) {
    QElapsedTimer timer;
    timer.start();
    Recordset product;
    product.open(u"select * from urunler where no=" + number, connection);
    if (product.atEnd())
        bench::giveUp("the product isn't there");
    return microseconds(timer);
}

}  // namespace

int main(int argc, char** argv) {
    using namespace kovanix::bench;
    Figures figures(argc, argv);
    const auto file = [&figures](const char* shop) {
        return baglantimetniyap(QString::fromStdString(figures.option(shop) + "/kovanix.data"));
    };
    hashInNarrowRegisters();
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
        std::vector<double> finds;
        std::vector<double> lookUps;
        for (int i = 0; i < runs; ++i) {
            const QString number = QString::number(1 + qint64{i} * 7919 % 1000000);
            lookUps.push_back(lookUpTime(large, number));
            finds.push_back(findTime(large, number));
        }
        const double find = percentile(finds, 0.5);
        const double lookUp = percentile(lookUps, 0.5);
        figures.tell("Opening the product list and finding one of 1,000,000", find, "µs");
        figures.tell("Selecting that one by its number", lookUp, "µs");
        figures.atMost(2, "Finding a product against selecting it", find / lookUp, "×");
    } catch (const RuntimeError& error) {
        giveUp(error.what());
    }
    return figures.status();
}
