#include "sounds/wav.h"

#include <algorithm>
#include <string_view>

#include "report.h"

namespace tessaro::cli {

namespace {

constexpr std::size_t kChunkHeader = 8, kFirstChunk = 12;

bool Says(const ByteArray& file, std::size_t at, std::string_view text) {
    return file.size() >= at + text.size() &&
           std::equal(text.begin(), text.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
}

std::uint32_t Number(const ByteArray& file, std::size_t at, int bytes) {
    std::uint32_t value = 0;
    for (int i = 0; i < bytes; ++i)
        value |= std::uint32_t{file[at + static_cast<std::size_t>(i)]} << 8 * i;
    return value;
}

void Append(ByteArray& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

}  // namespace

Wav ReadWav(const ByteArray& file) {
    if (!Says(file, 0, "RIFF") || !Says(file, 8, "WAVE"))
        throw CommandError("not a WAV file");
    Wav wav;
    std::size_t at = kFirstChunk;
    while (file.size() - at >= kChunkHeader) {
        const std::size_t start = at + kChunkHeader;
        const std::size_t size =
            std::min<std::size_t>(Number(file, at + 4, 4), file.size() - start);
        if (Says(file, at, "fmt ") && size >= 16) {
            if (Number(file, start, 2) != 1)
                throw CommandError("only PCM WAV files are read");
            wav.channels = static_cast<int>(Number(file, start + 2, 2));
            wav.rate = Number(file, start + 4, 4);
            wav.bits = static_cast<int>(Number(file, start + 14, 2));
        } else if (Says(file, at, "data")) {
            wav.samples.assign(file.begin() + static_cast<std::ptrdiff_t>(start),
                               file.begin() + static_cast<std::ptrdiff_t>(start + size));
            return wav;
        }
        at = std::min(file.size(), start + size + size % 2);
    }
    throw CommandError("the WAV file has no samples");
}

ByteArray WriteWav(const ByteArray& samples) {
    const auto size = static_cast<std::uint32_t>(samples.size());
    ByteArray out = {'R', 'I', 'F', 'F'};
    Append(out, size + 36, 4);
    for (const char c : std::string_view("WAVEfmt "))
        out.push_back(static_cast<std::uint8_t>(c));
    Append(out, 16, 4);
    Append(out, 1 | 1 << 16, 4);  // PCM, mono
    Append(out, kSoundRate, 4);
    Append(out, kSoundRate, 4);
    Append(out, 1 | 8 << 16, 4);  // a byte a sample, 8 bits
    for (const char c : std::string_view("data"))
        out.push_back(static_cast<std::uint8_t>(c));
    Append(out, size, 4);
    out.insert(out.end(), samples.begin(), samples.end());
    return out;
}

}  // namespace tessaro::cli
