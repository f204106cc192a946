// `kaydet` of 20 lines against the same statements through the engine's own interface.

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <utility>

#include "child.h"
#include "figures.h"

namespace {

using namespace kovanix::bench;

constexpr int sales = 12;

struct Stored {
    double milliseconds = 0;  ///< the median of what the sales took
    double barriers = 0;      ///< the most that one of them needed
};

/// Runs a program on a fresh copy of a shop.
/// @param delay  milliseconds that each disk barrier takes longer
Stored measure(const std::string& program, const std::string& shop, int delay) {
    namespace fs = std::filesystem;
    const fs::path copy = fs::path(shop + "-copy");
    fs::remove_all(copy);
    fs::create_directory(copy);
    // Without the configuration file, which names the shop that was copied.
    fs::copy_file(fs::path(shop) / "kovanix.data", copy / "kovanix.data");
    std::istringstream output(outputOf({neighbour(program), "--folder", copy, "--sales",
                                        std::to_string(sales), "--sync-delay", std::to_string(delay)}));
    std::vector<double> times;
    Stored stored;
    double barriers = 0;
    for (double time = 0; output >> time >> barriers;) {
        times.push_back(time);
        stored.barriers = std::max(stored.barriers, barriers);
    }
    if (times.size() != static_cast<std::size_t>(sales))
        giveUp(program + " has not stored every sale");
    fs::remove_all(copy);
    stored.milliseconds = percentile(times, 0.5);
    return stored;
}

void compare(Figures& figures, const std::string& shop, int delay, const std::string& where) {
    // A disk that others write to is slow for seconds at a time: many short runs, each compared with the one
    // right behind it.
    const int rounds = figures.quick() || delay > 0 ? 7 : 31;
    std::vector<double> till;
    std::vector<double> raw;
    std::vector<double> ratios;
    double barriers = 0;
    for (int i = 0; i < rounds; ++i) {
        const Stored ours = measure("bench_commit_till", shop, delay);
        till.push_back(ours.milliseconds);
        barriers = std::max(barriers, ours.barriers);
        raw.push_back(measure("bench_commit_raw", shop, delay).milliseconds);
        ratios.push_back(till.back() / raw.back());
    }
    figures.tell("Storing a sale of 20 lines, " + where, percentile(till, 0.5), "ms");
    figures.tell("The same statements through the C interface, each synced, " + where, percentile(raw, 0.5),
                 "ms");
    figures.atMost(0.6, "Storing a sale, till against C interface, " + where, percentile(ratios, 0.5), "×");
    figures.atMost(2, "Disk barriers of a sale until the screen is free, " + where, barriers, "barriers");
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    const std::string small = "1,000 products";
    compare(figures, figures.option("small"), 0, small);
    compare(figures, figures.option("large"), 0, "1,000,000 products");
    compare(figures, figures.option("small"), 4, small + ", each disk barrier 4 ms slower");
    return figures.status();
}
