#include "sound/ym3812_tables.h"

#include <cmath>
#include <numbers>

namespace tessaro::sound {
namespace {

Ym3812Tables MakeTables() {
    Ym3812Tables tables{};
    for (std::uint16_t step = 0; step < 1024; ++step) {
        const int within = step & 255, quarter = step >> 8;
        const auto magnitude = static_cast<std::uint16_t>(
            std::lround(ExactLogSine(quarter % 2 == 0 ? within : 255 - within)));
        const bool negative = quarter >= 2;
        tables.wave[0][step] =
            static_cast<std::uint16_t>(magnitude | (negative ? Ym3812Tables::kNegative : 0));
        tables.wave[1][step] = negative ? Ym3812Tables::kMuted : magnitude;
        tables.wave[2][step] = magnitude;
        tables.wave[3][step] = quarter % 2 == 1 ? Ym3812Tables::kMuted : magnitude;
    }
    for (std::size_t a = 0; a < tables.level.size(); ++a) {
        const auto exponent = std::lround(ExactExponent(255 - static_cast<int>(a % 256)));
        tables.level[a] = static_cast<std::int16_t>(2 * (1024 + exponent) >> (a / 256));
    }
    return tables;
}

}  // namespace

double ExactLogSine(int x) {
    return -256 * std::log2(std::sin((x + 0.5) * std::numbers::pi / 512));
}

double ExactExponent(int x) {
    return 1024 * (std::exp2(x / 256.0) - 1);
}

const Ym3812Tables& TheYm3812Tables() {
    static const Ym3812Tables tables = MakeTables();
    return tables;
}

}  // namespace tessaro::sound
