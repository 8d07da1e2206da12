// Effects and songs as samples: how long, how high, how clean, and the same everywhere.
#include <cmath>
#include <complex>
#include <numbers>

#include "sound/resampler.h"
#include "sound/sequence.h"
#include "sound/speaker.h"
#include "support/support.h"
#include "tessaro/sound.h"

namespace tessaro::test {
namespace {

using namespace sound;
using Samples16 = std::vector<std::int16_t>;

/// How much of a frequency a sound has: 1 for a sine of full scale. A Blackman-Harris window keeps
/// its neighbours 92 dB down.
template <class Sample>
double Partial(const std::vector<Sample>& samples, double frequency, double rate,
               double full = 32768) {
    std::complex<double> sum;
    double weight = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double turn = 2 * std::numbers::pi * static_cast<double>(i);
        const double x = turn / static_cast<double>(samples.size());
        const double window =
            0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2 * x) - 0.01168 * std::cos(3 * x);
        sum += static_cast<double>(samples[i]) * window * std::polar(1.0, -turn * frequency / rate);
        weight += window;
    }
    return 2 * std::abs(sum) / weight / full;
}

double Decibels(double ratio) {
    return 20 * std::log10(ratio);
}

int Peak(const Samples16& samples, std::size_t from, std::size_t count) {
    int peak = 0;
    for (std::size_t i = from; i < from + count; ++i)
        peak = std::max(peak, std::abs(samples[i]));
    return peak;
}

std::uint32_t Hash(const Samples16& samples) {  // FNV-1a
    std::uint32_t hash = 2166136261U;
    for (const std::int16_t sample : samples)
        for (const int shift : {0, 8})
            hash = (hash ^ (static_cast<std::uint16_t>(sample) >> shift & 0xFF)) * 16777619U;
    return hash;
}

/// A song that uses all registers with values from a seed.
ByteArray WildSong() {
    std::uint32_t seed = 1;
    const auto random = [&seed](std::uint32_t below) {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 16) % below;
    };
    ByteArray song(2);
    for (int i = 0; i < 2000; ++i) {
        const std::uint32_t address = i % 4 == 0 ? 0xB0 + random(9) : 0x20 + random(0xD6);
        song.insert(song.end(), {static_cast<std::uint8_t>(address),
                                 static_cast<std::uint8_t>(random(256) | (i % 4 == 0 ? 0x20 : 0)),
                                 static_cast<std::uint8_t>(random(3)), 0});
    }
    song[0] = static_cast<std::uint8_t>(8000 & 0xFF);
    song[1] = 8000 >> 8;
    return song;
}

ByteArray SpeakerTone(std::uint8_t byte, std::uint8_t ticks) {
    ByteArray chunk = {ticks, 0, 0, 0, 1, 0};
    chunk.insert(chunk.end(), ticks, byte);
    chunk.push_back(0);
    return chunk;
}

/// An instrument of one sine, at once there and gone in a moment (release 15) or rather later.
ByteArray AdLibTone(std::uint8_t release, ByteArray steps) {
    ByteArray chunk = Hex("00000000 0900 0121 3F00 F0F0 000F 0000 00 0000000000 04");
    chunk[0] = static_cast<std::uint8_t>(steps.size());
    chunk[13] = release;
    chunk.insert(chunk.end(), steps.begin(), steps.end());
    const ByteArray name = Hex("00 53494E45 00");
    chunk.insert(chunk.end(), name.begin(), name.end());
    return chunk;
}

Samples16 Read(SoundStream& stream, std::size_t block) {
    Samples16 all, some(block);
    for (std::size_t read = block; read == block;) {
        read = stream.Read(some.data(), block);
        all.insert(all.end(), some.begin(), some.begin() + static_cast<std::ptrdiff_t>(read));
    }
    return all;
}

// The values were made by one build; that they hold on every system and for every compiler is the
// point.
TEST(Sound, IsTheSameOnEverySystem) {
    SoundOptions options;
    EXPECT_EQ(Hash(RenderSound(SoundKind::Song, WildSong(), options)), 891440869U);
    options.Rate = 48000;
    EXPECT_EQ(Hash(RenderSound(SoundKind::Song, WildSong(), options)), 999800279U);
    EXPECT_EQ(Hash(RenderSound(SoundKind::Speaker, SpeakerTone(21, 70), options)), 2909208450U);
    options.Rate = 22050;
    EXPECT_EQ(Hash(RenderSound(SoundKind::AdLib, AdLibTone(2, {90, 90, 120, 0, 200, 90}), options)),
              2053779101U);
}

TEST(Sound, ComesOutAlikeHoweverItIsPulled) {
    SoundOptions options;
    options.Tail = 300;
    const ByteArray effect = AdLibTone(4, {90, 90, 120, 0, 200, 90});
    for (const auto& [kind, chunk] : {std::pair{SoundKind::Song, WildSong()},
                                      {SoundKind::AdLib, effect},
                                      {SoundKind::Speaker, SpeakerTone(3, 140)}}) {
        const Samples16 whole = RenderSound(kind, chunk, options);
        for (const std::size_t block : {std::size_t{1000}, std::size_t{44100}, std::size_t{17}}) {
            SoundStream stream(kind, chunk, options);
            EXPECT_EQ(Read(stream, block), whole);
            EXPECT_EQ(stream.Position(), static_cast<std::int64_t>(whole.size()));
        }
    }
}

TEST(Sound, LastsAsLongAsInTheGames) {
    // A delay of 3 ticks, one of 0, a last one of 7.
    const ByteArray song = Hex("0C00 B0200300 B0000000 B0200700 0100 54554E45");
    const SoundInfo info = DescribeSound(SoundKind::Song, song, 560);
    EXPECT_TRUE(info.Sounds);
    EXPECT_EQ(info.Ticks, 10);
    EXPECT_EQ(info.LoopTicks, 4) << "one tick behind the last event";
    EXPECT_EQ(info.Seconds, 10 / 560.0);
    SoundOptions options;
    EXPECT_EQ(RenderSound(SoundKind::Song, song, options).size(), 630U);
    options.Loops = 3;
    EXPECT_EQ(RenderSound(SoundKind::Song, song, options).size(), (2 * 4 + 10) * 63U);
    options.SongTicks = 560;
    EXPECT_EQ(RenderSound(SoundKind::Song, song, options).size(), 1418U) << "18 * 78.75, up";
    options.Loops = 0;
    SoundStream endless(SoundKind::Song, song, options);
    EXPECT_EQ(endless.Length(), -1);
    Samples16 some(100'000);
    EXPECT_EQ(endless.Read(some.data(), some.size()), some.size());

    options = {};
    EXPECT_EQ(RenderSound(SoundKind::Speaker, SpeakerTone(9, 7), options).size(), 7 * 315U);
    options.Tail = 0;
    const SoundInfo effect = DescribeSound(SoundKind::AdLib, AdLibTone(15, {90, 90, 90}));
    EXPECT_EQ(effect.Title, "SINE");
    EXPECT_EQ(effect.Priority, 9);
    EXPECT_EQ(effect.Ticks, 2) << "the last byte is not heard";
    EXPECT_EQ(RenderSound(SoundKind::AdLib, AdLibTone(15, {90, 90, 90}), options).size(), 2 * 315U);
    // A fast release ends the tail, a slow one is cut at the cap, faded out.
    options.Tail = 1000;
    EXPECT_LT(RenderSound(SoundKind::AdLib, AdLibTone(15, {90, 90, 90}), options).size(), 1000U);
    const Samples16 slow = RenderSound(SoundKind::AdLib, AdLibTone(1, {90, 90, 90}), options);
    ASSERT_EQ(slow.size(), 630U + 44100U);
    EXPECT_GT(Peak(slow, slow.size() - 22'050, 11'025), 4000);
    EXPECT_LT(Peak(slow, slow.size() - 100, 100), 100);
}

TEST(Sound, IsNotInChunksWithoutAny) {
    const ByteArray none[] = {{},
                              Hex("21494421"),
                              ByteArray(88),
                              Hex("0400 B02000"),
                              Hex("FF000000 0100 0102"),
                              Hex("00000000 0100 01"),
                              ByteArray(24)};
    for (const ByteArray& chunk : none)
        for (const SoundKind kind : {SoundKind::Speaker, SoundKind::AdLib, SoundKind::Song}) {
            const SoundInfo info = DescribeSound(kind, chunk);
            EXPECT_FALSE(info.Sounds);
            EXPECT_NE(info.Why, "");
            EXPECT_TRUE(RenderSound(kind, chunk).empty());
        }
    ByteArray bad = AdLibTone(0, {90});  // no sustain in either operator
    EXPECT_FALSE(DescribeSound(SoundKind::AdLib, bad).Sounds);
    // The names of a song that is not there are its whole chunk.
    ByteArray absent(88);
    std::ranges::copy(Ascii("DUNGEON"), absent.begin() + 2);
    EXPECT_EQ(DescribeSound(SoundKind::Song, absent).Title, "DUNGEON");
}

TEST(Speaker, IsAToneWithoutAliases) {
    SoundOptions options;
    const double frequency =
        1193182.0 / (60 * 3);  // its third harmonic is at 19.9 kHz, others fold
    const Samples16 tone = RenderSound(SoundKind::Speaker, SpeakerTone(3, 200), options);
    EXPECT_NEAR(Partial(tone, frequency, 44100), 0.25 * 4 / std::numbers::pi, 0.003);
    const double aliases[] = {std::abs(44100 - 5 * frequency), std::abs(44100 - 7 * frequency),
                              std::abs(88200 - 11 * frequency), std::abs(88200 - 15 * frequency)};
    for (const double alias : aliases)
        EXPECT_LT(Decibels(Partial(tone, alias, 44100)), -60) << alias;
    // 255 comes before the first byte, so that it is silent there and there alone.
    const auto begin = [](const char* bytes) {
        return RenderSound(SoundKind::Speaker, Hex(std::string("04000000 0000") + bytes));
    };
    const auto peak = [](const Samples16& samples) { return Peak(samples, 0, samples.size()); };
    EXPECT_EQ(peak(begin("FFFFFFFF")), 0);
    EXPECT_GT(peak(begin("00FFFF00")), 7000);
    EXPECT_EQ(peak(begin("00000064")), 0) << "off again as soon as it is set";
}

TEST(Resampler, KeepsWhatFitsAndStopsTheRest) {
    const auto sine = [](double frequency, double rate) {
        std::vector<std::int32_t> samples;
        for (int i = 0; i < 20'000; ++i)
            samples.push_back(static_cast<std::int32_t>(
                std::lround(4e6 * std::sin(2 * std::numbers::pi * frequency * i / rate))));
        return samples;
    };
    struct Case {
        std::uint32_t from, to;
        double in, alias;  ///< a frequency that stays, and where one that cannot would fold to
        double out;        ///< that one
    };
    for (const Case& row : {Case{49716, 44100, 18'000, 21'100, 23'000},
                            {44100, 7042, 3000, 3042, 4000},
                            {8000, 48000, 3000, 5000, 3000},
                            {22050, 191'999, 9000, 13'050, 9000}}) {
        const auto run = [&row](const std::vector<std::int32_t>& input) {
            Resampler resampler(row.from, row.to);
            std::vector<std::int32_t> output;
            resampler.Process(std::span(input).first(7777), output);
            resampler.Process(std::span(input).subspan(7777), output);
            resampler.Finish(output);
            EXPECT_EQ(output.size(), (20'000ULL * row.to + row.from - 1) / row.from);
            return output;
        };
        const auto kept = run(sine(row.in, row.from));
        EXPECT_NEAR(Decibels(Partial(kept, row.in, row.to, 4e6)), 0, 0.1) << row.from;
        EXPECT_LT(Decibels(Partial(run(sine(row.out, row.from)), row.alias, row.to, 4e6)), -90)
            << row.from;
    }
    // As the chip's tables: nothing that rounding could change.
    for (const auto& [zeros, beta] :
         {std::pair{kResamplingZeros, kResamplingBeta}, {kSpeakerZeros, kSpeakerBeta}})
        for (int step = 0; step <= zeros * WindowedSinc::kStepsPerZero; ++step) {
            const double value = ExactWindowedSinc(step, zeros, beta);
            EXPECT_GT(std::abs(value - std::floor(value) - 0.5), 1e-6) << zeros << " " << step;
        }
}

}  // namespace
}  // namespace tessaro::test
