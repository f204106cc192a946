#pragma once

#include <map>
#include <string>
#include <vector>

namespace kovanix::bench {

/// What a benchmark was asked for and what it found: the options of its command line, and one line of output
/// for each figure ("what", value, unit and target, with tabs between).
///
/// Options are "--name value" pairs, but for the two switches --check (a missed target ends in status 1) and
/// --quick (fewer repetitions). "--target-scale X" multiplies every target by X, to see a check fail.
class Figures {
public:
    Figures(int argc, char** argv);

    bool quick() const { return m_quick; }
    /// The value of an option; ends the program with status 2 where it isn't given and has no fallback.
    std::string option(const std::string& name) const;
    std::string option(const std::string& name, const std::string& fallback) const;

    /// A figure without a target.
    void tell(const std::string& what, double value, const std::string& unit) const;
    /// A figure with a target that it must not exceed; 5 % above it still pass a check, as noise.
    void atMost(double limit, const std::string& what, double value, const std::string& unit);

    /// The program's exit status.
    int status() const;

private:
    std::map<std::string, std::string> m_options;
    bool m_quick = false;
    bool m_check = false;
    bool m_missed = false;
    double m_targetScale = 1;
};

/// How often the sums of a range are measured behind one another, by the till and through the C interface.
inline constexpr int timesAddedUp = 5;

/// The value below which that share of the sample lies (0.5: the median). The sample isn't empty.
double percentile(std::vector<double> sample, double share);

/// Says what went wrong and ends the program with status 2: no figure is better than a wrong one.
[[noreturn]] void giveUp(const std::string& why);

}  // namespace kovanix::bench
