#pragma once
// Random draws that a seed reproduces on every platform: std::mt19937's output is fixed by
// the standard, the standard distributions are not, so ranges are mapped here.

#include <QtGlobal>
#include <random>

namespace veldra::plantool {

class Random {
public:
    explicit Random(quint32 seed) : engine_(seed) {}

    // An integer in [lo, hi]; lo when hi < lo.
    int integer(int lo, int hi) {
        if (hi <= lo)
            return lo;
        const auto span = static_cast<quint64>(static_cast<qint64>(hi) - lo + 1);
        return static_cast<int>(lo + static_cast<qint64>((span * engine_()) >> 32));
    }

    // A real in [lo, hi).
    double real(double lo, double hi) { return lo + (hi - lo) * (engine_() / 4294967296.0); }

    bool chance(double p) { return real(0, 1) < p; }

private:
    std::mt19937 engine_;
};

} // namespace veldra::plantool
