#include "sounds/music.h"

#include <algorithm>
#include <array>

namespace tessaro::cli {

namespace {

constexpr std::size_t kLengthField = 2, kEvent = 4;

/// The bytes of the whole events that are there.
std::size_t EventBytes(const ByteArray& chunk) {
    if (chunk.size() < kLengthField)
        return 0;
    const std::size_t stored = chunk[0] | std::size_t{chunk[1]} << 8;
    return std::min(stored, chunk.size() - kLengthField) / kEvent * kEvent;
}

}  // namespace

int CountNotes(const ByteArray& chunk) {
    // Register B0 + voice holds the key in bit 5.
    constexpr std::uint8_t kFirstKey = 0xB0, kVoices = 9, kKeyDown = 0x20;
    std::array<bool, kVoices> down{};
    int notes = 0;
    const std::size_t end = kLengthField + EventBytes(chunk);
    for (std::size_t at = kLengthField; at < end; at += kEvent) {
        const std::uint8_t voice = static_cast<std::uint8_t>(chunk[at] - kFirstKey);
        if (voice >= kVoices)
            continue;
        const bool key = (chunk[at + 1] & kKeyDown) != 0;
        notes += key && !down[voice];
        down[voice] = key;
    }
    return notes;
}

ByteArray MusicFile(const ByteArray& chunk) {
    const std::size_t bytes = EventBytes(chunk);
    if (bytes == 0)
        return {};
    ByteArray file = {static_cast<std::uint8_t>(bytes), static_cast<std::uint8_t>(bytes >> 8)};
    const auto events = chunk.begin() + kLengthField;
    file.insert(file.end(), events, events + static_cast<std::ptrdiff_t>(bytes));
    return file;
}

}  // namespace tessaro::cli
