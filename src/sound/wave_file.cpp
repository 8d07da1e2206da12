#include "sound/wave_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>

namespace tessaro::sound {
namespace {

constexpr int kPcm = 1, kFloat = 3, kExtensible = 0xFFFE;
constexpr std::uint32_t kHighestRate = 1'000'000;

struct Format {
    int kind = 0, channels = 0, bits = 0;
    std::uint32_t rate = 0;
};

[[noreturn]] void Refuse(const char* description) {
    throw Failure(kInvalidProcedureCall, description);
}

Format ReadFormat(ByteReader in) {
    Format format;
    format.kind = in.U16();
    format.channels = in.U16();
    format.rate = in.U32();
    in.Skip(6);
    format.bits = in.U16();
    if (format.kind == kExtensible) {
        in.Skip(8);
        format.kind = in.U16();
    }
    return format;
}

void Check(const Format& format) {
    const int bits = format.bits;
    const bool pcm = format.kind == kPcm && (bits == 8 || bits == 16 || bits == 24 || bits == 32);
    const bool floating = format.kind == kFloat && (bits == 32 || bits == 64);
    if (!pcm && !floating)
        Refuse("The WAV file is neither PCM of 8, 16, 24 or 32 bits nor floating point.");
    if (format.channels == 0 || format.rate == 0 || format.rate > kHighestRate)
        Refuse("The WAV file's format makes no sense.");
}

std::int32_t FromFloat(double value) {
    constexpr double kFull = 1 << 23;
    if (!(value >= -1))  // what is no number, too
        return value < -1 ? -(1 << 23) : 0;
    return static_cast<std::int32_t>(std::lround(std::min(value * kFull, kFull - 1)));
}

/// One sample as 24 bits.
std::int32_t ReadSample(ByteReader& in, const Format& format) {
    if (format.kind == kFloat) {
        const std::uint32_t low = in.U32();
        if (format.bits == 32)
            return FromFloat(std::bit_cast<float>(low));
        return FromFloat(std::bit_cast<double>(std::uint64_t{in.U32()} << 32 | low));
    }
    switch (format.bits) {
        case 8:
            return (in.U8() - 128) * (1 << 16);
        case 16:
            return in.I16() * (1 << 8);
        case 24:
            return static_cast<std::int32_t>(in.U24() << 8) >> 8;
        default:
            return in.I32() >> 8;
    }
}

}  // namespace

WaveSound ReadWaveFile(ByteSpan file) {
    ByteReader in(file, PastEnd::ReadsZero);
    const std::string riff = in.Text(4);
    in.Skip(4);
    if (riff != "RIFF" || in.Text(4) != "WAVE")
        Refuse("This is not a WAV file.");
    std::optional<Format> format;
    while (in.Remaining() >= 8) {
        const std::string name = in.Text(4);
        const std::uint32_t size = in.U32();
        const ByteSpan content = in.Take(size);
        in.Skip(size % 2);
        if (name == "fmt ") {
            format = ReadFormat(ByteReader(content, PastEnd::ReadsZero));
        } else if (name == "data" && format) {
            Check(*format);
            const auto channels = static_cast<std::size_t>(format->channels);
            const std::size_t frame = channels * static_cast<std::size_t>(format->bits) / 8;
            WaveSound sound{format->rate, {}, format->bits == 8 && channels == 1};
            ByteReader frames(content);
            sound.samples.reserve(content.size() / frame);
            while (frames.Remaining() >= frame) {
                std::int64_t sum = 0;
                for (std::size_t i = 0; i < channels; ++i)
                    sum += ReadSample(frames, *format);
                sound.samples.push_back(
                    static_cast<std::int32_t>(sum / static_cast<std::int64_t>(channels)));
            }
            return sound;
        }
    }
    Refuse(format ? "The WAV file has no samples." : "The WAV file does not tell its format.");
}

ByteArray WriteWaveFile(std::span<const std::int16_t> samples, std::uint32_t rate) {
    constexpr std::uint32_t kHeader = 36, kSampleBytes = 2;
    const auto bytes = Narrow<std::uint32_t>(samples.size() * kSampleBytes);
    ByteWriter out;
    out.Reserve(kHeader + 8 + bytes);
    out.Text("RIFF");
    out.U32(Narrow<std::uint32_t>(std::uint64_t{bytes} + kHeader));
    out.Text("WAVEfmt ");
    out.U32(16);
    out.U16(kPcm);
    out.U16(1);
    out.U32(rate);
    out.U32(rate * kSampleBytes);
    out.U16(kSampleBytes);
    out.U16(8 * kSampleBytes);
    out.Text("data");
    out.U32(bytes);
    for (const std::int16_t sample : samples)
        out.I16(sample);
    return out.Release();
}

}  // namespace tessaro::sound
