#pragma once

#include <QtGlobal>
#include <cstddef>
#include <random>

namespace kovanix::demoshop {

/// Numbers by chance that come out the same on every machine. The engine is fixed by the language's standard;
/// its distributions are not, so they are made here.
class Random {
public:
    explicit Random(quint64 seed) : engine(seed) {}

    /// A whole number from 0 to limit - 1. The limit is above 0.
    quint64 below(quint64 limit) {
        const quint64 rest = (~quint64{0} % limit + 1) % limit;
        quint64 value = engine();
        while (value > ~quint64{0} - rest)
            value = engine();
        return value % limit;
    }

    /// A whole number from first to last, both included.
    int between(int first, int last) { return first + int(below(quint64(last - first) + 1)); }

    /// A number from 0 up to, not including, 1.
    double unit() { return double(engine() >> 11) * 0x1p-53; }

    /// True as often as the probability says (0 to 1).
    bool chance(double probability) { return unit() < probability; }

private:
    std::mt19937_64 engine;
};

}  // namespace kovanix::demoshop
