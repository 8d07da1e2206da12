// The tables that the YM3812 holds in its ROMs, and those that its manual prints, by formula.
#pragma once

#include <array>
#include <cstdint>

namespace tessaro::sound {

/// One step of an attenuation is 6.02/32 = 0.188 dB; eight of a table's are one of those.
inline constexpr int kSilentAttenuation = 511;

struct Ym3812Tables {
    /// For each waveform and each of 1024 steps of a turn the attenuation in 256ths of an octave of
    /// level, with kNegative where the wave is below zero.
    ///
    ///     sine(x) = round(-256 log2 sin((x + 1/2) pi / 512))     for a quarter of a turn, x =
    ///     0..255
    ///
    /// mirrored for the other quarters. The waveforms are the sine, its positive half, its
    /// magnitude, and the rising quarters of the magnitude; where one is silent it holds kMuted.
    std::array<std::array<std::uint16_t, 1024>, 4> wave;

    /// The level that an attenuation in 256ths of an octave leaves of 4084:
    ///
    ///     level(a) = 2 (1024 + round(1024 (2^((255 - a mod 256) / 256) - 1))) >> (a / 256)
    std::array<std::int16_t, 8192> level;

    static constexpr std::uint16_t kNegative = 0x8000, kMuted = 0x1000;
};

/// Made at the first call, the same on every system.
const Ym3812Tables& TheYm3812Tables();

/// The formulae before they are rounded: of sine(x) and of 1024 (2^(x / 256) - 1), for x = 0..255.
/// None comes so near to a tie that the last bits of a system's logarithm could decide it.
double ExactLogSine(int x);
double ExactExponent(int x);

/// What the multiple of a frequency is, twice.
inline constexpr std::array<std::uint8_t, 16> kDoubledMultiple = {1,  2,  4,  6,  8,  10, 12, 14,
                                                                  16, 18, 20, 20, 24, 24, 30, 30};

/// Key scaling of the level by the upper four bits of the frequency, one octave above the
/// highest, at 6 dB an octave in steps of 0.75 dB: 64 + 8 log2(bits / 16), rounded up.
inline constexpr std::array<std::uint8_t, 16> kKeyScaleLevel = {0,  32, 40, 45, 48, 51, 53, 55,
                                                                56, 58, 59, 60, 61, 62, 63, 64};

}  // namespace tessaro::sound
