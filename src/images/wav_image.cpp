#include "images/wav_image.h"

#include <algorithm>

#include "foundation/guard.h"

namespace tessaro::modAddWAVHeader {
namespace {

constexpr std::int32_t kSampleRate = 7042;  // the games play every digitised sound at this rate

}  // namespace

ByteArray WriteWave(std::int32_t sampleLength, ByteSpan samples) {
    ByteWriter out;
    out.Text("RIFF");
    out.I32(Narrow<std::int32_t>(std::int64_t{sampleLength} + 36));
    out.Text("WAVEfmt ");
    out.U32(16);
    out.U16(1);
    out.U16(1);
    out.I32(kSampleRate);
    out.I32(kSampleRate);
    out.U16(1);
    out.U16(8);
    out.Text("data");
    out.I32(sampleLength);
    out.Bytes(samples);
    return out.Release();
}

Wave ReadWave(ByteSpan image) {
    Wave wave;
    bool formatFound = false;
    // Sizes that point beyond the end stop there: what follows is not in the image.
    const auto skip = [](ByteReader& in, std::size_t count) {
        in.Skip(std::min(count, in.Remaining()));
    };
    ByteReader in(image);
    while (in.Remaining() >= 4) {
        const std::size_t start = in.Position();
        const std::string mark = in.Text(4);
        if (mark == "RIFF") {
            skip(in, 4);
        } else if (mark == "WAVE") {
            continue;
        } else if (mark == "fmt " && !formatFound) {
            const std::uint32_t size = in.U32();
            ByteReader format = in;
            format.Skip(2);
            wave.channels = format.I16();
            wave.sampleRate = format.I32();
            format.Skip(6);
            wave.bitsPerSample = format.I16();
            formatFound = true;
            skip(in, size);
        } else if (mark == "data") {
            const std::size_t size = in.U32();
            const ByteSpan samples = in.Take(std::min(size, in.Remaining()));
            wave.samples.assign(samples.begin(), samples.end());
            break;
        } else {
            in.Seek(start + 1);
        }
    }
    return wave;
}

void AddWaveHeader(std::int32_t sampleLength, ByteArray& data) {
    Guarded("modAddWAVHeader.AddWaveHeader", [&] { data = WriteWave(sampleLength, data); });
}

void RemoveWaveHeader(const ByteArray& image, ByteArray& samples, std::int32_t& sampleRate,
                      std::int16_t& bitsPerSample, std::int16_t& channels) {
    Wave wave = Guarded(
        "modAddWAVHeader.RemoveWaveHeader", [&] { return ReadWave(image); }, Wave{});
    samples = std::move(wave.samples);
    sampleRate = wave.sampleRate;
    bitsPerSample = wave.bitsPerSample;
    channels = wave.channels;
}

}  // namespace tessaro::modAddWAVHeader
