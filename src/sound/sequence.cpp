#include "sound/sequence.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "sound/speaker.h"

namespace tessaro::sound {
namespace {

constexpr std::uint8_t kTest = 0x01, kWaveformsAllowed = 0x20;
constexpr std::uint8_t kFrequency = 0xA0, kKey = 0xB0, kConnection = 0xC0, kKeyDown = 0x20;

}  // namespace

RegisterSequence SongSequence(const SongChunk& song, std::uint32_t ticksPerSecond) {
    RegisterSequence sequence;
    sequence.ticksPerSecond = ticksPerSecond;
    sequence.writes.push_back({0, kTest, kWaveformsAllowed});
    ByteReader in(song.events);
    while (!in.AtEnd()) {
        RegisterWrite write{static_cast<std::uint32_t>(sequence.ticks)};
        write.address = in.U8();
        write.value = in.U8();
        sequence.writes.push_back(write);
        sequence.period = sequence.ticks + 1;
        sequence.ticks += in.U16();
    }
    return sequence;
}

RegisterSequence AdLibSequence(const AdLibChunk& effect) {
    RegisterSequence sequence;
    sequence.ticksPerSecond = kEffectTicksPerSecond;
    std::uint32_t tick = 0;
    const auto write = [&](std::uint8_t address, std::uint8_t value) {
        sequence.writes.push_back({tick, address, value});
    };
    write(kTest, kWaveformsAllowed);
    write(kKey, 0);
    constexpr std::array<std::uint8_t, 10> kRegisters = {0x20, 0x23, 0x40, 0x43, 0x60,
                                                         0x63, 0x80, 0x83, 0xE0, 0xE3};
    for (std::size_t i = 0; i < kRegisters.size(); ++i)
        write(kRegisters[i], effect.instrument[i]);
    write(kConnection, 0);
    for (const std::uint8_t step : effect.steps) {
        if (step == 0) {
            write(kKey, 0);
        } else {
            write(kFrequency, step);
            write(kKey, static_cast<std::uint8_t>((effect.octave & 7) << 2 | kKeyDown));
        }
        ++tick;
    }
    --tick;
    write(kKey, 0);
    sequence.ticks = tick;
    return sequence;
}

SequencePlayer::SequencePlayer(RegisterSequence sequence, std::uint32_t passes)
    : sequence_(std::move(sequence)), passesLeft_(passes) {
    if (sequence_.period == 0)
        ticks_ = sequence_.ticks;
    else if (passes == 0)
        ticks_ = std::numeric_limits<std::uint64_t>::max();
    else
        ticks_ = (passes - 1) * sequence_.period + sequence_.ticks;
}

bool SequencePlayer::Over() const {
    return tick_ >= ticks_ && next_ == sequence_.writes.size() && chip_.Silent();
}

void SequencePlayer::BeginTick() {
    const auto& writes = sequence_.writes;
    if (tick_ - passBegan_ == sequence_.period && sequence_.period != 0 && passesLeft_ != 1) {
        passBegan_ = tick_;
        next_ = 0;
        if (passesLeft_ != 0)
            --passesLeft_;
    }
    for (; next_ < writes.size() && passBegan_ + writes[next_].tick <= tick_; ++next_)
        chip_.Write(writes[next_].address, writes[next_].value);
    ++tick_;
}

void SequencePlayer::Generate(std::size_t count, std::vector<std::int32_t>& output) {
    std::array<std::int16_t, 64> block;
    while (count > 0) {
        // A tick is seen by the first sample that does not lie before it.
        std::size_t run = std::min(count, block.size());
        if (next_ < sequence_.writes.size() || tick_ < ticks_) {
            while (tick_ * kYm3812Rate <= samples_ * sequence_.ticksPerSecond)
                BeginTick();
            const std::uint64_t begins =
                (tick_ * kYm3812Rate + sequence_.ticksPerSecond - 1) / sequence_.ticksPerSecond;
            run = static_cast<std::size_t>(std::min<std::uint64_t>(run, begins - samples_));
        }
        const std::span samples = std::span(block).first(run);
        chip_.Generate(samples);
        output.insert(output.end(), samples.begin(), samples.end());
        samples_ += run;
        count -= run;
        if (!silentFrom_ && Over())
            silentFrom_ = samples_;
    }
}

}  // namespace tessaro::sound
