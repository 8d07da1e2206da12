// The chip beside another emulation of it, where that is installed (Debian: libadplug-dev): what
// both make of the songs and effects of a real game, and of seeded streams of registers that use
// what those do not. Compared are loudness and correlation, since emulations differ in the last
// bits, and noise in which bit of it a drum takes.
#include <cmath>
#include <random>

#include "sound/sequence.h"
#include "support/support.h"
#include "tessaro/audio_t.h"
#include "tessaro/sound.h"
#include "tessaro/version.h"

#ifdef TESSARO_ORACLE
extern "C" {
#include <adplug/nukedopl.h>
}
#endif

namespace tessaro::test {
namespace {

using namespace sound;

struct TimedWrite {
    std::size_t sample = 0;
    std::uint8_t address = 0, value = 0;
};

struct Likeness {
    double loudness = 0, correlation = 0;
};

#ifdef TESSARO_ORACLE

constexpr const char* kSkip = nullptr;

Likeness Compare(const std::vector<TimedWrite>& writes, std::size_t count) {
    Ym3812 ours;
    opl3_chip theirs;
    OPL3_Reset(&theirs, kYm3812Rate);
    double squares = 0, theirSquares = 0, products = 0;
    std::int16_t before = 0;  // the other one's right output comes a sample later
    auto write = writes.begin();
    for (std::size_t i = 0; i < count; ++i) {
        for (; write != writes.end() && write->sample <= i; ++write) {
            ours.Write(write->address, write->value);
            OPL3_WriteReg(&theirs, write->address, write->value);
        }
        std::int16_t sample = 0, outputs[4] = {};
        OPL3_Generate(&theirs, outputs);
        squares += double{1} * before * before;
        theirSquares += double{1} * outputs[1] * outputs[1];
        products += double{1} * before * outputs[1];
        ours.Generate(std::span(&sample, 1));
        before = sample;
    }
    if (theirSquares == 0)
        return {squares == 0 ? 1.0 : 0.0, 1};
    return {std::sqrt(squares / theirSquares), products / std::sqrt(squares * theirSquares)};
}

#else

constexpr const char* kSkip = "libadplug-dev is not installed";

Likeness Compare(const std::vector<TimedWrite>&, std::size_t) {
    return {};
}

#endif

#define TESSARO_NEEDS_THE_ORACLE() \
    if (kSkip != nullptr)          \
    GTEST_SKIP() << kSkip

/// The sequence's writes at the chip's rate. A key that goes up and down again within a tick gets a
/// sample between, without which the other emulation would not see it.
std::vector<TimedWrite> Timed(const RegisterSequence& sequence) {
    std::vector<TimedWrite> writes;
    std::array<std::size_t, 9> up{};
    up.fill(~std::size_t{0});
    std::size_t last = 0;
    for (const RegisterWrite& write : sequence.writes) {
        const std::uint64_t per = sequence.ticksPerSecond;
        std::size_t sample = (std::uint64_t{write.tick} * kYm3812Rate + per - 1) / per;
        sample = std::max(sample, last);
        if (const unsigned voice = write.address - 0xB0U; voice < up.size()) {
            if ((write.value & 0x20) == 0)
                up[voice] = sample;
            else if (up[voice] == sample)
                ++sample;
        }
        last = sample;
        writes.push_back({sample, write.address, write.value});
    }
    return writes;
}

/// A stream of notes in which every register of a note's voice is drawn anew.
class Stream {
public:
    explicit Stream(unsigned seed) : random_(seed) { Put(0x01, 0x20); }

    void Put(int address, int value) {
        writes_.push_back(
            {at_, static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(value)});
    }
    int Draw(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }
    void Wait(int most) { at_ += 2 + static_cast<std::size_t>(Draw(most)); }

    void DrawVoice(int voice) {
        const int slot = voice / 3 * 8 + voice % 3;
        for (const int op : {slot, slot + 3}) {
            Put(0x20 + op, Draw(256));
            Put(0x40 + op, Draw(256) & 0xCF);
            Put(0x60 + op, Draw(256) | 0x40);
            Put(0x80 + op, Draw(256));
            Put(0xE0 + op, Draw(4));
        }
        Put(0xC0 + voice, Draw(16));
        Put(0xA0 + voice, Draw(256));
    }

    Likeness Compared() const { return Compare(writes_, at_ + 5000); }

private:
    std::mt19937 random_;
    std::size_t at_ = 0;
    std::vector<TimedWrite> writes_;
};

class RealGame : public InFolder {
protected:
    void Check(SoundKind kind, int first, int count, double correlation) {
        clsVersion version;
        ASSERT_TRUE(version.LoadDataPath(*GameFolder()));
        clsAudioT audio;
        ASSERT_TRUE(audio.InitializeMusic());
        int compared = 0;
        for (int chunk = first; chunk < first + count; ++chunk) {
            ByteArray data;
            std::int32_t size = 0;
            ASSERT_TRUE(audio.LoadChunk(chunk, data, size));
            if (!DescribeSound(kind, data).Sounds)
                continue;
            const RegisterSequence sequence = kind == SoundKind::Song
                                                  ? SongSequence(ReadSongChunk(data), 700)
                                                  : AdLibSequence(*ReadAdLibChunk(data));
            const std::uint64_t ticks = sequence.ticks + (kind == SoundKind::Song ? 0 : 70);
            const Likeness like =
                Compare(Timed(sequence), ticks * kYm3812Rate / sequence.ticksPerSecond);
            EXPECT_NEAR(like.loudness, 1, 0.001) << chunk;
            EXPECT_GE(like.correlation, correlation) << chunk;
            ++compared;
        }
        RecordProperty("compared", compared);
        EXPECT_EQ(compared, kind == SoundKind::Song ? 11 : 87);
    }
};

TEST_F(RealGame, SongsAreWhatTheOracleMakesOfThem) {
    TESSARO_NEEDS_THE_ORACLE();
    TESSARO_NEEDS_GAME_DATA();
    Check(SoundKind::Song, 261, 27, 0.9995);
}

TEST_F(RealGame, EffectsAreWhatTheOracleMakesOfThem) {
    TESSARO_NEEDS_THE_ORACLE();
    TESSARO_NEEDS_GAME_DATA();
    Check(SoundKind::AdLib, 87, 87, 0.999);
}

// Waveforms, vibrato, tremolo, key scaling of both kinds, feedback, additive voices, note select.
TEST(SeededStream, OfNotes) {
    TESSARO_NEEDS_THE_ORACLE();
    for (unsigned seed = 1; seed <= 6; ++seed) {
        Stream stream(seed);
        for (int note = 0; note < 300; ++note) {
            const int voice = stream.Draw(9);
            stream.DrawVoice(voice);
            if (note % 40 == 0) {
                stream.Put(0xBD, stream.Draw(4) << 6);
                stream.Put(0x08, stream.Draw(2) << 6);
            }
            stream.Put(0xB0 + voice, 0x20 | stream.Draw(32));
            stream.Wait(600);
            if (note % 3 != 0)
                stream.Put(0xB0 + voice, stream.Draw(32));
            stream.Wait(300);
        }
        const Likeness like = stream.Compared();
        EXPECT_NEAR(like.loudness, 1, 0.005) << seed;
        EXPECT_GE(like.correlation, 0.9975) << seed;
    }
}

struct Drum {
    const char* name;
    int bit;
    double correlation;  ///< 0 where there is noise in it
    double loudness;     ///< how far it may be from the other's
};

TEST(SeededStream, OfPercussion) {
    TESSARO_NEEDS_THE_ORACLE();
    for (const Drum& drum : {Drum{"bass drum", 4, 0.999, 0.005},
                             {"tom-tom", 2, 0.999, 0.005},
                             {"snare drum", 3, 0, 0.1},
                             {"cymbal", 1, 0.7, 0.02},
                             {"hi-hat", 0, 0, 0.1}}) {
        Stream stream(7);
        stream.Put(0xBD, 0x20);
        for (const int voice : {6, 7, 8})
            stream.Put(0xB0 + voice, 0x0E);
        for (int note = 0; note < 300; ++note) {
            const int voice = 6 + stream.Draw(3);
            stream.DrawVoice(voice);
            stream.Put(0xB0 + voice, stream.Draw(32));
            stream.Put(0xBD, 0x20 | 1 << drum.bit);
            stream.Wait(400);
            stream.Put(0xBD, 0x20);
            stream.Wait(200);
        }
        const Likeness like = stream.Compared();
        EXPECT_NEAR(like.loudness, 1, drum.loudness) << drum.name;
        EXPECT_GE(like.correlation, drum.correlation - 0.1 * (drum.correlation == 0)) << drum.name;
    }
}

}  // namespace
}  // namespace tessaro::test
