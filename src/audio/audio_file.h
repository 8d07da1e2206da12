// The audio header file and the chunks of the audio data file; docs/audio-files.md draws both.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "foundation/bytes.h"
#include "foundation/huff_dictionary.h"

namespace tessaro {

/// The failure of a list that does not tell where the music starts.
inline constexpr std::int32_t kStartMusicNotFound = 20170330;
/// The offset of a chunk that has no place in the data file.
inline constexpr std::int32_t kSparseAudioOffset = -1;

//  offset   width    field
//  0        4 each   offset of each chunk in the data file; -1: sparse
//  then     4        the data file's length, which ends the last chunk
/// Bytes behind the last whole offset play no part.
std::vector<std::int32_t> ReadAudioHeader(ByteSpan file);
ByteArray WriteAudioHeader(const std::vector<std::int32_t>& offsets);

/// The first chunk behind the placeholders that close the sound effects; nothing where no run of
/// placeholders tells. `sixteenColors` allows for the placeholder that those games have too many.
std::optional<std::int32_t> FindStartMusic(const std::vector<std::int32_t>& offsets,
                                           bool sixteenColors);

/// Where a chunk that is not sparse lies. It ends where the next one begins that is not sparse
/// either, at the last with the data file; an end before its own offset makes it empty.
struct AudioRange {
    std::int64_t offset = 0;
    std::int64_t size = 0;
};
AudioRange FindAudioRange(const std::vector<std::int32_t>& offsets, std::size_t chunk,
                          std::int64_t fileSize);

/// The bytes of a chunk as a compressed set stores it: at most 4 bytes, or such whose length field
/// is not between 1 and 65535, stand for themselves.
ByteArray ExpandAudioChunk(ByteArray stored, const HuffDictionary& dictionary);

/// The stored form that ExpandAudioChunk gives back exactly. Fails for more than 65535 bytes and
/// for a byte value that the dictionary has no code for.
ByteArray CompressAudioChunk(const ByteArray& bytes, const HuffDictionary& dictionary);

}  // namespace tessaro
