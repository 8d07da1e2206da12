#include <algorithm>
#include <limits>
#include <optional>
#include <variant>

#include "sound/resampler.h"
#include "sound/sequence.h"
#include "sound/speaker.h"
#include "sound/wave_file.h"
#include "tessaro/sound.h"

namespace tessaro {

using namespace sound;

namespace {

constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();
constexpr std::size_t kBlock = 2048;
constexpr std::int32_t kGain = 2;  // the chip's two outputs, which are the same, added up
constexpr std::int32_t kFade = 250, kEffectTail = 2000, kLongestTail = 600'000;

std::uint64_t DividedUp(std::uint64_t value, std::uint64_t by) {
    return (value + by - 1) / by;
}

SoundOptions Within(SoundKind kind, SoundOptions options) {
    options.Rate = std::clamp(options.Rate, 4000, 192'000);
    options.SongTicks = std::clamp(options.SongTicks, 1, 4000);
    options.Loops = std::max(options.Loops, 0);
    if (options.Tail < 0)
        options.Tail = kind == SoundKind::AdLib ? kEffectTail : 0;
    options.Tail = std::min(options.Tail, kLongestTail);
    return options;
}

/// Nothing where the chunk holds no sound; `why` tells the reason then.
std::optional<RegisterSequence> SequenceOf(SoundKind kind, ByteSpan chunk, std::int32_t songTicks,
                                           std::string& why) {
    if (kind == SoundKind::Song) {
        const SongChunk song = ReadSongChunk(chunk);
        if (!song.events.empty())
            return SongSequence(song, static_cast<std::uint32_t>(songTicks));
        why = "There is no song.";
        return std::nullopt;
    }
    const std::optional<AdLibChunk> effect = ReadAdLibChunk(chunk);
    if (effect && IsGoodInstrument(effect->instrument))
        return AdLibSequence(*effect);
    why = effect ? "Its instrument has no sustain: the games refuse it." : "There is no effect.";
    return std::nullopt;
}

}  // namespace

SoundInfo DescribeSound(SoundKind Kind, const ByteArray& Chunk, std::int32_t SongTicks) {
    SoundInfo info;
    info.TicksPerSecond = kEffectTicksPerSecond;
    if (Kind == SoundKind::Speaker) {
        if (const auto effect = ReadSpeakerChunk(Chunk)) {
            info.Priority = effect->priority;
            info.Ticks = static_cast<std::int64_t>(effect->steps.size());
            info.Sounds = true;
        } else {
            info.Why = "There is no effect.";
        }
    } else {
        if (Kind == SoundKind::Song) {
            const SongChunk song = ReadSongChunk(Chunk);
            info.Title = song.title;
            info.Source = song.source;
            info.TicksPerSecond = std::clamp(SongTicks, 1, 4000);
        } else if (const auto effect = ReadAdLibChunk(Chunk)) {
            info.Title = effect->name;
            info.Priority = effect->priority;
        }
        if (const auto sequence = SequenceOf(Kind, Chunk, info.TicksPerSecond, info.Why)) {
            info.Ticks = static_cast<std::int64_t>(sequence->ticks);
            info.LoopTicks = static_cast<std::int64_t>(sequence->period);
            info.Sounds = true;
        }
    }
    info.Seconds = static_cast<double>(info.Ticks) / info.TicksPerSecond;
    return info;
}

struct SoundStream::Self {
    struct Card {
        SequencePlayer player;
        Resampler resampler;
    };

    std::variant<std::monostate, SpeakerPlayer, Card> source;
    std::uint32_t rate = 0;
    std::uint64_t body = 0;  ///< samples without a tail
    std::uint64_t end = 0;   ///< with it; kEndless
    std::uint64_t fadeFrom = kEndless, fadeEnd = kEndless;
    std::uint64_t position = 0;

    std::vector<std::int32_t> ready;  ///< computed, from `taken` on not yet handed out
    std::size_t taken = 0;
    std::vector<std::int32_t> chip;  ///< scratch

    Self(SoundKind kind, ByteSpan chunk, const SoundOptions& options)
        : rate(static_cast<std::uint32_t>(options.Rate)) {
        if (kind == SoundKind::Speaker) {
            if (const auto effect = ReadSpeakerChunk(chunk)) {
                source.emplace<SpeakerPlayer>(effect->steps, rate);
                body = end = std::get<SpeakerPlayer>(source).Length();
            }
            return;
        }
        std::string why;
        auto sequence = SequenceOf(kind, chunk, options.SongTicks, why);
        if (!sequence)
            return;
        const std::uint32_t ticksPerSecond = sequence->ticksPerSecond;
        source =
            Card{SequencePlayer(std::move(*sequence), static_cast<std::uint32_t>(options.Loops)),
                 Resampler(kYm3812Rate, rate)};
        const std::uint64_t ticks = std::get<Card>(source).player.Ticks();
        if (ticks == kEndless) {
            body = end = kEndless;
            return;
        }
        body = DividedUp(ticks * rate, ticksPerSecond);
        end = body + InSamples(options.Tail);
        if (options.Tail > 0) {
            fadeFrom = end - InSamples(std::min(options.Tail, kFade));
            fadeEnd = end;
        }
    }

    std::uint64_t InSamples(std::int32_t milliseconds) const {
        return static_cast<std::uint64_t>(milliseconds) * rate / 1000;
    }

    /// Computes more samples.
    void Compute() {
        ready.clear();
        taken = 0;
        if (auto* const speaker = std::get_if<SpeakerPlayer>(&source)) {
            speaker->Generate(
                static_cast<std::size_t>(std::min<std::uint64_t>(kBlock, end - position)), ready);
            return;
        }
        auto& [player, resampler] = std::get<Card>(source);
        while (ready.empty()) {
            chip.clear();
            player.Generate(kBlock, chip);
            for (std::int32_t& sample : chip)
                sample *= kGain;
            resampler.Process(chip, ready);
        }
        if (const auto silent = player.SilentFrom())
            end = std::min(end, std::max(body, DividedUp(*silent * rate, kYm3812Rate)));
    }

    std::int16_t Faded(std::int32_t sample, std::uint64_t at) const {
        if (at >= fadeFrom)
            sample = static_cast<std::int32_t>(std::int64_t{sample} *
                                               static_cast<std::int64_t>(fadeEnd - at) /
                                               static_cast<std::int64_t>(fadeEnd - fadeFrom));
        return static_cast<std::int16_t>(std::clamp(sample, -32768, 32767));
    }
};

SoundStream::SoundStream(SoundKind Kind, const ByteArray& Chunk, const SoundOptions& Options)
    : self_(std::make_unique<Self>(Kind, Chunk, Within(Kind, Options))) {}
SoundStream::~SoundStream() = default;
SoundStream::SoundStream(SoundStream&& Other) noexcept = default;
SoundStream& SoundStream::operator=(SoundStream&& Other) noexcept = default;

std::size_t SoundStream::Read(std::int16_t* Samples, std::size_t Count) {
    std::size_t done = 0;
    while (done < Count && self_->position < self_->end) {
        if (self_->taken == self_->ready.size()) {
            self_->Compute();
            continue;  // which may have found the end
        }
        Samples[done++] = self_->Faded(self_->ready[self_->taken++], self_->position);
        ++self_->position;
    }
    return done;
}

std::int64_t SoundStream::Position() const {
    return static_cast<std::int64_t>(self_->position);
}

std::int64_t SoundStream::Length() const {
    return self_->end == kEndless ? -1 : static_cast<std::int64_t>(self_->end);
}

std::int32_t SoundStream::Rate() const {
    return static_cast<std::int32_t>(self_->rate);
}

std::vector<std::int16_t> RenderSound(SoundKind Kind, const ByteArray& Chunk,
                                      const SoundOptions& Options) {
    SoundOptions once = Options;
    if (once.Loops <= 0)
        once.Loops = 1;
    SoundStream stream(Kind, Chunk, once);
    std::vector<std::int16_t> samples;
    for (std::size_t read = kBlock; read == kBlock;) {
        const std::size_t before = samples.size();
        samples.resize(before + kBlock);
        read = stream.Read(samples.data() + before, kBlock);
        samples.resize(before + read);
    }
    return samples;
}

ByteArray MakeWaveFile(const std::vector<std::int16_t>& Samples, std::int32_t Rate) {
    return WriteWaveFile(Samples, static_cast<std::uint32_t>(Rate));
}

}  // namespace tessaro
