// The chip by what its manual promises; tests/oracle holds it against another emulation.
#include <cmath>

#include "sound/ym3812.h"
#include "support/support.h"

namespace tessaro::test {
namespace {

using namespace sound;

std::vector<std::int16_t> Samples(Ym3812& chip, std::size_t count) {
    std::vector<std::int16_t> samples(count);
    chip.Generate(samples);
    return samples;
}

/// A steady sine on the first voice: F-number 580 of block 4, 440.0 Hz, at full level.
void PlaySine(Ym3812& chip) {
    for (const auto& [address, value] : {std::pair{0x20, 0x21},
                                         {0x40, 0x3F},
                                         {0x60, 0x00},
                                         {0x80, 0x00},
                                         {0x23, 0x21},
                                         {0x43, 0x00},
                                         {0x63, 0xF0},
                                         {0x83, 0x0F},
                                         {0xC0, 0x01},
                                         {0xA0, 0x44},
                                         {0xB0, 0x32}})
        chip.Write(static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value));
}

int Peak(const std::vector<std::int16_t>& samples) {
    int peak = 0;
    for (const int sample : samples)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

int Rises(const std::vector<std::int16_t>& samples) {
    int rises = 0;
    for (std::size_t i = 1; i < samples.size(); ++i)
        rises += samples[i - 1] < 0 && samples[i] >= 0;
    return rises;
}

// What makes the samples the same on every system: a logarithm that is off by a millionth of a step
// still rounds to the same table.
TEST(Ym3812Tables, AreFarFromWhatRoundingCouldChange) {
    const auto clear = [](double value) {
        return std::abs(value - std::floor(value) - 0.5) > 1e-4;
    };
    for (int x = 0; x < 256; ++x) {
        EXPECT_TRUE(clear(ExactLogSine(x))) << x;
        EXPECT_TRUE(clear(ExactExponent(x))) << x;
    }
    const Ym3812Tables& tables = TheYm3812Tables();
    EXPECT_EQ(tables.wave[0][0], 2137);
    EXPECT_EQ(tables.wave[0][255], 0);
    EXPECT_EQ(tables.wave[0][1023], 2137 | Ym3812Tables::kNegative);
    EXPECT_EQ(tables.level[0], 4084);
    EXPECT_EQ(tables.level[256], 2042);
    EXPECT_EQ(tables.level[12 * 256], 0);
}

TEST(Ym3812, PlaysAFrequencyAtALevel) {
    Ym3812 chip;
    PlaySine(chip);
    const auto second = Samples(chip, kYm3812Rate);
    EXPECT_EQ(Rises(second), 439);
    EXPECT_NEAR(Peak(second), 4085, 1);
    chip.Write(0x43, 0x08);  // 6 dB down
    EXPECT_NEAR(Peak(Samples(chip, 5000)), 2043, 1);
    chip.Write(0x23, 0x22);  // twice the frequency
    EXPECT_NEAR(Rises(Samples(chip, kYm3812Rate)), 880, 1);
    chip.Write(0xB0, 0x12);  // the key is up, the release fast
    Samples(chip, 500);
    EXPECT_TRUE(chip.Silent());
    EXPECT_EQ(Peak(Samples(chip, 500)), 0);
}

TEST(Ym3812, SeesAKeyThatGoesUpAndDownBetweenTwoSamples) {
    Ym3812 chip;
    PlaySine(chip);
    chip.Write(0x63, 0xF8);  // falls while the key is down
    Samples(chip, 20'000);
    const int fallen = Peak(Samples(chip, 500));
    chip.Write(0xB0, 0x32);
    EXPECT_LE(Peak(Samples(chip, 500)), fallen) << "a key that was down is no new note";
    chip.Write(0xB0, 0x12);
    chip.Write(0xB0, 0x32);
    EXPECT_GT(Peak(Samples(chip, 500)), 4000);
}

TEST(Ym3812, KnowsWhichRegistersItHas) {
    Ym3812 chip;
    PlaySine(chip);
    chip.Write(0xE3, 0x03);  // other waveforms are not allowed yet
    EXPECT_NEAR(Rises(Samples(chip, kYm3812Rate)), 440, 1);
    for (const int address : {0x36, 0x56, 0x46, 0x4E, 0xA9, 0xBF, 0xCF, 0xF6, 0x02, 0xD3})
        chip.Write(static_cast<std::uint8_t>(address), 0xFF);
    EXPECT_NEAR(Rises(Samples(chip, kYm3812Rate)), 440, 1);
    chip.Write(0x01, 0x20);
    chip.Write(0xE3, 0x01);  // the positive half of a sine
    const auto half = Samples(chip, 5000);
    EXPECT_GE(*std::min_element(half.begin(), half.end()), -1);
    chip.Reset();
    EXPECT_EQ(Peak(Samples(chip, 5000)), 0);
}

}  // namespace
}  // namespace tessaro::test
