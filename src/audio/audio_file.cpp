#include "audio/audio_file.h"

#include <algorithm>

#include "huffman/huffman.h"

namespace tessaro {
namespace {

/// The most bytes of a chunk that is stored as it stands, and of a placeholder: behind the last
/// placeholder of a group four stray bytes can follow.
constexpr std::int64_t kMaxPlain = 4;
constexpr std::int32_t kMaxExpanded = 65535;

}  // namespace

std::vector<std::int32_t> ReadAudioHeader(ByteSpan file) {
    ByteReader in(file);
    std::vector<std::int32_t> offsets;
    offsets.reserve(file.size() / 4);
    while (in.Remaining() >= 4)
        offsets.push_back(in.I32());
    return offsets;
}

ByteArray WriteAudioHeader(const std::vector<std::int32_t>& offsets) {
    ByteWriter out;
    for (std::int32_t offset : offsets)
        out.I32(offset);
    return out.Release();
}

// A run of placeholders opens with the first small distance between offsets and stays open while
// they stay small: only a chunk of real size, or one that goes backwards, closes it. The chunk that
// does is the first song.
std::optional<std::int32_t> FindStartMusic(const std::vector<std::int32_t>& offsets,
                                           bool sixteenColors) {
    const std::size_t chunks = offsets.empty() ? 0 : offsets.size() - 1;
    bool open = false;
    for (std::size_t i = 1; i < chunks; ++i) {
        const std::int64_t size = std::int64_t{offsets[i]} - offsets[i - 1];
        if (size >= 0 && size <= kMaxPlain) {
            open = true;
            continue;
        }
        if (!open)
            continue;
        std::size_t start = i - 1;
        if (start % 3 == 2 && sixteenColors)
            start = i;
        if (offsets[i - 1] < offsets[i - 2])
            --start;
        return static_cast<std::int32_t>(start);
    }
    if (chunks == 4)
        return 3;
    return std::nullopt;
}

AudioRange FindAudioRange(const std::vector<std::int32_t>& offsets, std::size_t chunk,
                          std::int64_t fileSize) {
    const auto next = offsets.begin() + static_cast<std::ptrdiff_t>(chunk) + 1;
    const auto end = std::find_if(next, offsets.end(),
                                  [](std::int32_t offset) { return offset != kSparseAudioOffset; });
    const std::int64_t offset = offsets.at(chunk);
    const std::int64_t stop = end == offsets.end() ? fileSize : std::int64_t{*end};
    return {offset, std::max<std::int64_t>(stop - offset, 0)};
}

ByteArray ExpandAudioChunk(ByteArray stored, const HuffDictionary& dictionary) {
    if (stored.size() <= kMaxPlain)
        return stored;
    const std::int32_t length = ByteReader(stored).I32();
    if (length <= 0 || length > kMaxExpanded)
        return stored;
    return ExpandStream(ByteSpan(stored).subspan(4), length, dictionary);
}

ByteArray CompressAudioChunk(const ByteArray& bytes, const HuffDictionary& dictionary) {
    if (bytes.size() < kMaxPlain)  // the coded form would drop them
        return bytes;
    if (bytes.size() > static_cast<std::size_t>(kMaxExpanded))
        throw Failure(kOverflow, "A chunk of a compressed set holds at most 65535 bytes.");
    if (!CanCompress(bytes, dictionary))
        throw Failure(kInvalidProcedureCall,
                      "The audio dictionary has no code for a byte of the chunk.");
    return HuffCompress(bytes, dictionary);
}

}  // namespace tessaro
