#include "figures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace kovanix::bench {

namespace {

constexpr double noise = 1.05;

std::string written(double value, const std::string& unit) {
    const bool counted = unit == "scans" || unit == "lines" || unit == "barriers";
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", counted || std::abs(value) >= 100 ? 0 : 2, value);
    return text;
}

void print(const std::string& what, double value, const std::string& unit, const std::string& target) {
    std::printf("%s\t%s\t%s\t%s\n", what.c_str(), written(value, unit).c_str(), unit.c_str(), target.c_str());
    std::fflush(stdout);
}

}  // namespace

void giveUp(const std::string& why) {
    std::fprintf(stderr, "%s\n", why.c_str());
    std::fflush(nullptr);
    std::_Exit(2);
}

Figures::Figures(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--check") {
            m_check = true;
        } else if (argument == "--quick") {
            m_quick = true;
        } else if (argument.starts_with("--") && i + 1 < argc) {
            m_options[argument.substr(2)] = argv[++i];
        } else {
            giveUp("not understood: " + argument);
        }
    }
    m_targetScale = std::stod(option("target-scale", "1"));
}

std::string Figures::option(const std::string& name) const {
    const auto found = m_options.find(name);
    if (found == m_options.end())
        giveUp("--" + name + " is needed");
    return found->second;
}

std::string Figures::option(const std::string& name, const std::string& fallback) const {
    const auto found = m_options.find(name);
    return found == m_options.end() ? fallback : found->second;
}

void Figures::tell(const std::string& what, double value, const std::string& unit) const {
    print(what, value, unit, "");
}

void Figures::atMost(double limit, const std::string& what, double value, const std::string& unit) {
    const double target = limit * m_targetScale;
    print(what, value, unit, written(target, unit));
    // Not ">": a figure that is no number has missed its target too.
    if (!(value <= target * noise)) {
        m_missed = true;
        std::fprintf(stderr, "MISSED: %s\n", what.c_str());
    }
}

int Figures::status() const {
    return m_check && m_missed ? 1 : 0;
}

double percentile(std::vector<double> sample, double share) {
    std::sort(sample.begin(), sample.end());
    const double place = std::ceil(share * static_cast<double>(sample.size())) - 1;
    return sample.at(static_cast<std::size_t>(std::max(0.0, place)));
}

}  // namespace kovanix::bench
