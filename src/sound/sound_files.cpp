#include "tessaro/sound_files.h"

#include <algorithm>
#include <utility>

#include "sound/music_events.h"
#include "sound/notes.h"
#include "sound/pitch.h"
#include "sound/resampler.h"
#include "sound/speaker.h"
#include "sound/wave_file.h"

namespace tessaro {

using namespace sound;

namespace {

constexpr std::uint32_t kDigitisedRate = 7042;

/// The bodies of the operations: what fails inside comes out as False and a reason.
template <class Body>
bool Explained(std::string& why, Body&& body) {
    try {
        body();
        return true;
    } catch (const Failure& failure) {
        why = failure.Description;
        return false;
    }
}

std::uint16_t PriorityOf(std::int32_t priority) {
    return static_cast<std::uint16_t>(std::clamp(priority, 0, 0xFFFF));
}

std::uint32_t TicksOf(std::int32_t ticks) {
    return static_cast<std::uint32_t>(std::clamp(ticks, 1, 4000));
}

std::vector<std::int32_t> ResampledTo(std::uint32_t rate, const WaveSound& wave) {
    std::vector<std::int32_t> samples;
    Resampler resampler(wave.rate, rate);
    resampler.Process(wave.samples, samples);
    resampler.Finish(samples);
    return samples;
}

void Warn(const Music& music, ImportedMusic& imported) {
    const auto any = [&music](auto&& is) {
        return std::ranges::any_of(music.events, std::forward<decltype(is)>(is));
    };
    if (any([](const MusicEvent& event) {
            return event.address == 0xB0 && (event.value & 0x20) != 0;
        }))
        imported.Warnings.emplace_back("It plays voice 0, which the games' effects take from it.");
    if (any([](const MusicEvent& event) {
            return event.address == 0xBD && (event.value & 0x20) != 0;
        }))
        imported.Warnings.emplace_back("It plays percussion, which no song of the games does.");
}

/// From 24 bits to 8, 128 at rest. The noise is the sum of two even ones of half a step's height
/// each way, from a generator that begins alike every time.
ByteArray Rounded(const std::vector<std::int32_t>& samples, bool dither) {
    constexpr int kBits = 16, kHalf = 1 << (kBits - 1);
    std::uint32_t seed = 1;
    const auto noise = [&seed] {
        seed = seed * 1664525U + 1013904223U;
        return static_cast<std::int32_t>(seed >> 16) - kHalf;
    };
    ByteArray bytes;
    bytes.reserve(samples.size());
    for (std::int32_t sample : samples) {
        if (dither) {
            sample += noise();
            sample += noise();
        }
        bytes.push_back(
            static_cast<std::uint8_t>(std::clamp(((sample + kHalf) >> kBits) + 128, 0, 255)));
    }
    return bytes;
}

}  // namespace

bool ExportMusic(const ByteArray& Chunk, std::int32_t SongTicks, MusicFormat Format,
                 ByteArray& File, std::string& Why) {
    return Explained(Why, [&] {
        const Music music = MusicOf(ReadSongChunk(Chunk), TicksOf(SongTicks));
        if (music.events.empty())
            throw Failure(kInvalidProcedureCall, "There is no song.");
        if (Format == MusicFormat::Vgm)
            File = WriteVgm(music);
        else
            File = WriteImf(Rescaled(
                music, Format == MusicFormat::Imf ? kSongTicks16Colors : kSongTicks256Colors));
    });
}

bool ImportMusic(const ByteArray& File, const MusicImport& Options, ImportedMusic& Music,
                 std::string& Why) {
    return Explained(Why, [&] {
        const std::uint32_t ticks = TicksOf(Options.SongTicks);
        const std::uint32_t fileTicks = Options.FileTicks > 0 ? TicksOf(Options.FileTicks) : ticks;
        sound::Music music =
            Rescaled(IsVgm(File) ? ReadVgm(File) : ReadImf(File, fileTicks), ticks);
        const ByteArray events = PackEvents(music);
        ImportedMusic imported;
        ByteWriter chunk;
        chunk.U16(Narrow<std::uint16_t>(events.size()));
        chunk.Bytes(events);
        if (music.title.empty())
            music.title = Options.Title;
        chunk.Bytes(music.nameBlock.empty()
                        ? WriteNameBlock(music.title, music.source, events.size())
                        : music.nameBlock);
        imported.Chunk = chunk.Release();
        Warn(music, imported);
        Music = std::move(imported);
    });
}

bool SpeakerEffectFromWave(const ByteArray& Wave, std::int32_t Priority, ByteArray& Chunk,
                           std::string& Why) {
    return Explained(Why, [&] {
        ByteArray steps;
        for (const double pitch : FollowPitch(ResampledTo(kPitchRate, ReadWaveFile(Wave)))) {
            const double divisor = pitch > 0 ? kSpeakerClock / (kSpeakerDivisor * pitch) + 0.5 : 0;
            steps.push_back(
                static_cast<std::uint8_t>(pitch > 0 ? std::clamp(divisor, 1.0, 255.0) : 0));
        }
        if (std::ranges::all_of(steps, [](std::uint8_t step) { return step == 0; }))
            throw Failure(kInvalidProcedureCall, "The WAV file is silent.");
        steps.push_back(0);  // the last byte is not heard
        Chunk = WriteSpeakerChunk(PriorityOf(Priority), steps);
    });
}

bool AdLibEffectFromNotes(const ByteArray& Instrument, const std::string& Notes,
                          std::int32_t Priority, ByteArray& Chunk, std::string& Why) {
    return Explained(Why, [&] {
        const InstrumentFile file = ReadInstrumentFile(Instrument);
        const PlayedNotes played = PlayNotes(ReadNotes(Notes));
        AdLibChunk effect;
        effect.priority = PriorityOf(Priority);
        effect.instrument = file.instrument;
        effect.octave = played.octave;
        effect.steps = played.steps;
        effect.name = file.name;
        Chunk = WriteAdLibChunk(effect);
    });
}

bool DigitisedSoundFromWave(const ByteArray& Wave, bool Dither, ByteArray& Samples,
                            std::string& Why) {
    return Explained(Why, [&] {
        const WaveSound wave = ReadWaveFile(Wave);
        const bool asItIs = wave.isByteMono && wave.rate == kDigitisedRate;
        Samples = Rounded(ResampledTo(kDigitisedRate, wave), Dither && !asItIs);
    });
}

}  // namespace tessaro
