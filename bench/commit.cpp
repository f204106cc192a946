// `kaydet` of 20 lines against the same statements through the engine's own interface.

#include <filesystem>
#include <sstream>

#include "child.h"
#include "figures.h"

namespace {

using namespace kovanix::bench;

/// Runs a program on a fresh copy of a shop. @return the median of the milliseconds that its sales took
double measure(const std::string& program, const std::string& shop, int sales) {
    namespace fs = std::filesystem;
    const fs::path copy = fs::path(shop + "-copy");
    fs::remove_all(copy);
    fs::create_directory(copy);
    // Without the configuration file, which names the shop that was copied.
    fs::copy_file(fs::path(shop) / "kovanix.data", copy / "kovanix.data");
    std::istringstream output(
        outputOf({neighbour(program), "--folder", copy, "--sales", std::to_string(sales)}));
    std::vector<double> times;
    for (double time = 0; output >> time;)
        times.push_back(time);
    if (times.size() != static_cast<std::size_t>(sales))
        giveUp(program + " has not stored every sale");
    fs::remove_all(copy);
    return percentile(times, 0.5);
}

}  // namespace

int main(int argc, char** argv) {
    Figures figures(argc, argv);
    // A disk that others write to is slow for seconds at a time: many short runs, each compared with the one
    // right behind it.
    const int rounds = figures.quick() ? 7 : 31;
    constexpr int sales = 12;
    for (const char* shop : {"small", "large"}) {
        std::vector<double> till;
        std::vector<double> raw;
        std::vector<double> ratios;
        for (int i = 0; i < rounds; ++i) {
            till.push_back(measure("bench_commit_till", figures.option(shop), sales));
            raw.push_back(measure("bench_commit_raw", figures.option(shop), sales));
            ratios.push_back(till.back() / raw.back());
        }
        const std::string products = shop == std::string("small") ? "1,000 products" : "1,000,000 products";
        figures.tell("Storing a sale of 20 lines, " + products, percentile(till, 0.5), "ms");
        figures.tell("The same statements through the C interface, " + products, percentile(raw, 0.5), "ms");
        figures.atMost(1.3, "Storing a sale, till against C interface, " + products, percentile(ratios, 0.5),
                       "×");
    }
    return figures.status();
}
