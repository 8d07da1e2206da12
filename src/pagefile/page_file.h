// The page file: the tables, then the chunks they point to.
//
//  offset    width     field
//  0         2         C: number of chunks, the sound list included (signed)
//  2         2         number of the first sprite chunk: the walls come before it
//  4         2         number of the first sound page
//  6         4 x C     offset of each chunk from the start of the file; 0: no data
//  6 + 4C    2 x C     length of each chunk (unsigned)
//  then                chunks: walls, sprites, sound pages, the sound list
#pragma once

#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

struct PageTable {
    std::int32_t spriteStart = 0;
    std::int32_t soundStart = 0;
    std::vector<std::int32_t> offsets;
    std::vector<std::int32_t> lengths;

    /// Bytes of the tables of so many chunks.
    static constexpr std::size_t Size(std::size_t chunks) { return 6 + 6 * chunks; }
    /// The number of chunks, from the first two bytes; a file without any fails (number 9).
    static std::size_t ChunksIn(ByteReader& in);
    static PageTable ReadFrom(ByteReader& in);
    void WriteTo(ByteWriter& out) const;
};

/// All pages of a sound but the last are this long.
inline constexpr std::size_t kSoundPageSize = 4096;

/// A page file in the making: the chunks in their order, then the tables that fit them.
class PageFileImage {
public:
    /// With `alignment` above 1 every chunk starts on a multiple of it; the gaps are zeros.
    explicit PageFileImage(std::size_t alignment) : alignment_(alignment) {}

    std::int32_t Count() const { return static_cast<std::int32_t>(chunks_.size()); }
    std::size_t LengthOf(std::size_t chunk) const { return chunks_.at(chunk).length; }
    /// Without bytes it is a chunk without data: offset 0, length 0.
    void AddChunk(ByteSpan bytes);
    /// Adds the pages of a sound; one without bytes has one page without data.
    void AddSound(ByteSpan bytes);
    /// More chunks than the signed count holds fail with number 6.
    ByteArray Assemble(std::int32_t spriteStart, std::int32_t soundStart) const;

private:
    std::size_t Aligned(std::size_t offset) const {
        return (offset + alignment_ - 1) / alignment_ * alignment_;
    }

    struct Chunk {
        std::size_t offset;  ///< in body_
        std::size_t length;
    };
    std::size_t alignment_;
    ByteWriter body_;
    std::vector<Chunk> chunks_;
};

}  // namespace tessaro
