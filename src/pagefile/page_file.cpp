#include "pagefile/page_file.h"

#include <algorithm>

namespace tessaro {

std::size_t PageTable::ChunksIn(ByteReader& in) {
    const std::int16_t chunks = in.I16();
    if (chunks < 1)
        throw Failure(kSubscriptOutOfRange);
    return static_cast<std::size_t>(chunks);
}

PageTable PageTable::ReadFrom(ByteReader& in) {
    PageTable table;
    const std::size_t chunks = ChunksIn(in);
    table.spriteStart = in.I16();
    table.soundStart = in.I16();
    for (std::size_t i = 0; i < chunks; ++i)
        table.offsets.push_back(in.I32());
    for (std::size_t i = 0; i < chunks; ++i)
        table.lengths.push_back(in.U16());
    return table;
}

void PageTable::WriteTo(ByteWriter& out) const {
    if (!std::in_range<std::int16_t>(offsets.size()))
        throw Failure(kOverflow, "A page file holds at most 32767 chunks.");
    out.I16(static_cast<std::int16_t>(offsets.size()));
    out.I16(Narrow<std::int16_t>(spriteStart));
    out.I16(Narrow<std::int16_t>(soundStart));
    for (const std::int32_t offset : offsets)
        out.I32(offset);
    for (const std::int32_t length : lengths)
        out.U16(Narrow<std::uint16_t>(length));
}

void PageFileImage::AddChunk(ByteSpan bytes) {
    if (!bytes.empty())
        body_.Fill(Aligned(body_.Position()) - body_.Position(), 0);
    chunks_.push_back({body_.Position(), bytes.size()});
    body_.Bytes(bytes);
}

void PageFileImage::AddSound(ByteSpan bytes) {
    // Only the first page may be moved to a border: one read takes all pages of a sound.
    static_assert(kSoundPageSize % 512 == 0);
    do {
        const std::size_t size = std::min(bytes.size(), kSoundPageSize);
        AddChunk(bytes.first(size));
        bytes = bytes.subspan(size);
    } while (!bytes.empty());
}

ByteArray PageFileImage::Assemble(std::int32_t spriteStart, std::int32_t soundStart) const {
    const std::size_t start = Aligned(PageTable::Size(chunks_.size()));
    PageTable table{spriteStart, soundStart, {}, {}};
    for (const Chunk& chunk : chunks_) {
        table.offsets.push_back(chunk.length == 0 ? 0 : Narrow<std::int32_t>(start + chunk.offset));
        table.lengths.push_back(Narrow<std::int32_t>(chunk.length));
    }
    ByteWriter out;
    table.WriteTo(out);
    out.Fill(start - out.Position(), 0);
    out.Bytes(body_.View());
    return out.Release();
}

}  // namespace tessaro
