// From the start of the process to a login screen that is painted and takes a password.

#include <algorithm>

#include "child.h"
#include "figures.h"

int main(int argc, char** argv) {
    using namespace kovanix::bench;
    Figures figures(argc, argv);
    const std::string platform = " (" + figures.option("platform") + ")";
    const std::vector<std::string> bare{neighbour("bench_start_bare")};
    const std::vector<std::string> small{neighbour("bench_start_till"), "--folder", figures.option("small")};
    const std::vector<std::string> large{neighbour("bench_start_till"), "--folder", figures.option("large")};
    constexpr int warmUps = 3;
    const int runs = figures.quick() ? 5 : 30;

    // In turns, so that whatever else the machine does falls on all three alike.
    std::vector<double> bareTimes;
    std::vector<double> smallTimes;
    std::vector<double> largeTimes;
    for (int i = 0; i < warmUps + runs; ++i) {
        const double bareTime = millisecondsToReady(bare);
        const double smallTime = millisecondsToReady(small);
        const double largeTime = millisecondsToReady(large);
        if (i < warmUps)
            continue;
        bareTimes.push_back(bareTime);
        smallTimes.push_back(smallTime);
        largeTimes.push_back(largeTime);
    }
    const double bareMedian = percentile(bareTimes, 0.5);
    const double smallMedian = percentile(smallTimes, 0.5);
    const double largeMedian = percentile(largeTimes, 0.5);
    figures.tell("Start, bare window with one button" + platform, bareMedian, "ms");
    figures.tell("Start to ready for a password, 1,000 products" + platform, smallMedian, "ms");
    figures.tell("Start to ready for a password, 1,000,000 products" + platform, largeMedian, "ms");
    const double growth = largeMedian / smallMedian;
    const double share = std::max(smallMedian, largeMedian) / bareMedian;
    // Where a shop's kind of display is at hand, its figures count and the others are told beside them.
    if (figures.option("counts", "yes") != "yes") {
        figures.tell("Start, 1,000,000 against 1,000 products" + platform, growth, "×");
        figures.tell("Start, till against bare window" + platform, share, "×");
        return figures.status();
    }
    figures.atMost(1.2, "Start, 1,000,000 against 1,000 products" + platform, growth, "×");
    figures.atMost(2.0, "Start, till against bare window" + platform, share, "×");
    return figures.status();
}
