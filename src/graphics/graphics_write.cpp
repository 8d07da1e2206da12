// Writing a graphics set anew, and comparing what was written with what was asked for.
#include <algorithm>
#include <array>
#include <utility>

#include "foundation/code_page.h"
#include "graphics/graphics_header.h"
#include "graphics/graphics_set.h"
#include "huffman/huffman.h"

namespace tessaro {
namespace {

/// Whether two dictionaries hold the same codes; entry 255 has no part in them.
bool SameCodes(const HuffDictionary& a, const HuffDictionary& b) {
    return std::equal(a.begin(), a.end() - 1, b.begin());
}

/// Expanded bytes in their stored form. A chunk with a length field can hold any number of them.
ByteArray Compress(std::int32_t chunk, ByteSpan bytes, bool bare,
                   const HuffDictionary& dictionary) {
    if (!CanCompress(bytes, dictionary))
        throw Failure(kInvalidProcedureCall,
                      "Chunk " + std::to_string(chunk) +
                          " holds a byte value that the dictionary has no code for. Build a "
                          "dictionary that has one (BuildVGADICT) and load it "
                          "(LoadCompileVGADictFile).");
    if (bytes.empty() && !bare)
        return ByteArray(4);
    ByteWriter out;
    if (!bare)
        out.I32(Narrow<std::int32_t>(bytes.size()));
    out.Bytes(CompressStream(bytes, dictionary));
    return out.Release();
}

std::string KindName(enmVGRAGRAPHTypes type) {
    static constexpr std::array<const char*, 21> kNames{"a chunk without data",
                                                        "the table of masked pictures",
                                                        "the sprite table",
                                                        "the picture table",
                                                        "a chunk of no known kind",
                                                        "a font",
                                                        "a picture",
                                                        "the 8 x 8 tiles",
                                                        "an end screen",
                                                        "a palette",
                                                        "a demo",
                                                        "an article",
                                                        "a masked picture",
                                                        "a sprite",
                                                        "masked 8 x 8 tiles",
                                                        "a 16 x 16 tile",
                                                        "a masked 16 x 16 tile",
                                                        "packed data",
                                                        "area names",
                                                        "other data",
                                                        "an end screen without its head"};
    static_assert(vgTrucEndScreen - vgSparse + 1 == kNames.size());
    return kNames[static_cast<std::size_t>(type - vgSparse)];
}

}  // namespace

/// A chunk in the form in which a save stores it; nothing where it is sparse.
std::optional<ByteArray> GraphicsSet::Encode(std::int32_t chunk,
                                             const HuffDictionary& codes) const {
    const Slot& slot = SlotOf(chunk);
    if (slot.replaced) {
        const bool bare = catalog.HasNoLengthField(chunk);
        return IsText(catalog.TypeOf(chunk))
                   ? Compress(chunk, modCodePage::BytesToDosCodePage(*slot.data), bare, codes)
                   : Compress(chunk, *slot.data, bare, codes);
    }
    if (FindChunk(offsets, data.Size(), catalog.Index(chunk)).sparse)
        return std::nullopt;
    // What is glued behind a stream, or too short to be one, is in the stored bytes alone.
    const ByteSpan stored = StoredBytes(chunk);
    if (SameCodes(codes, dictionary) || stored.size() < 5)
        return ByteArray(stored.begin(), stored.end());
    const ChunkForm form = FormOf(opened, dictionary, chunk, stored);
    return Compress(chunk, ExpandWhole(form, opened.ega, stored, dictionary),
                    form.coding != ChunkForm::Length, codes);
}

/// The chunks in a row; what lies before the first one or behind the last one is kept.
std::vector<NewFile> GraphicsSet::Write(const GraphicsPaths& paths, const HuffDictionary& codes,
                                        const Progress& progress) const {
    ByteWriter out;
    out.Reserve(static_cast<std::size_t>(data.Size()));
    const auto keep = [&](std::int64_t from, std::int64_t to) {
        if (from < std::min(to, data.Size()))
            out.Bytes(data.At(from, std::min(to, data.Size()) - from));
    };
    const auto requireRoom = [&] {
        if (out.Position() >= kSparseOffset)
            throw Failure(kOverflow, "The graphics file would reach 16777215 bytes.");
    };
    std::vector<std::uint32_t> newOffsets;
    const auto first = std::ranges::min_element(offsets);
    keep(0, *first == kSparseOffset ? 0 : *first);
    for (std::int32_t chunk = 0, count = Count(); chunk < count; ++chunk) {
        progress.at(chunk);
        const std::optional<ByteArray> stored = Encode(chunk, codes);
        newOffsets.push_back(stored ? static_cast<std::uint32_t>(out.Position()) : kSparseOffset);
        if (stored)
            out.Bytes(*stored);
        requireRoom();
        progress.done(chunk);
    }
    newOffsets.push_back(static_cast<std::uint32_t>(out.Position()));
    keep(offsets.back() == kSparseOffset ? data.Size() : offsets.back(), data.Size());
    requireRoom();

    const ByteSpan read = dictionaryFile.Bytes();
    return {{paths.header, WriteGraphicsHeader(newOffsets, catalog.j98 ? 4 : 3)},
            {paths.data, out.Release()},
            {paths.dictionary,
             codes == dictionary ? ByteArray(read.begin(), read.end()) : WriteDictionary(codes)}};
}

/// What a chunk was asked to be: a type that the host noted for a chunk which it did not replace
/// is in no file.
enmVGRAGRAPHTypes GraphicsSet::WantedType(std::int32_t chunk) const {
    return SlotOf(chunk).replaced ? catalog.TypeOf(chunk) : opened.TypeOf(chunk);
}

bool GraphicsSet::SameBytes(std::int32_t chunk, const GraphicsSet& reread) const {
    const Slot& slot = SlotOf(chunk);
    const ByteSpan now = reread.StoredBytes(chunk);
    ByteArray wanted;
    if (slot.replaced) {
        wanted = IsText(catalog.TypeOf(chunk)) ? modCodePage::BytesToDosCodePage(*slot.data)
                                               : *slot.data;
    } else {
        const ByteSpan before = StoredBytes(chunk);
        if (std::ranges::equal(before, now))
            return true;
        wanted =
            ExpandWhole(FormOf(opened, dictionary, chunk, before), opened.ega, before, dictionary);
    }
    const ChunkForm form = FormOf(reread.opened, reread.dictionary, chunk, now);
    const ByteArray bytes = ExpandWhole(form, reread.opened.ega, now, reread.dictionary);
    // The tile chunk does not say how long it is.
    return form.type == vgTile8 && bytes.size() > wanted.size()
               ? std::equal(wanted.begin(), wanted.end(), bytes.begin())
               : bytes == wanted;
}

void GraphicsSet::RequireSame(const GraphicsSet& reread) const {
    if (reread.Count() != Count())
        throw Failure(0, "The set would have " + std::to_string(reread.Count()) +
                             " chunks instead of " + std::to_string(Count()) + ".");
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk) {
        const enmVGRAGRAPHTypes wanted = WantedType(chunk);
        const enmVGRAGRAPHTypes found = reread.opened.TypeOf(chunk);
        const std::string name = "Chunk " + std::to_string(chunk);
        if (found != wanted && wanted != vgUnknown)
            throw Failure(0, name + " would be taken for " + KindName(found) + " instead of " +
                                 KindName(wanted) +
                                 (SlotOf(chunk).replaced
                                      ? ". Give it other data, or set its type to what it holds."
                                      : ". Undo what was changed before it."));
        if (found != vgSparse && !SameBytes(chunk, reread))
            throw Failure(0, name + " would not read back as it was given. Give it other data.");
    }
}

void GraphicsSet::Adopt(GraphicsSet&& reread) {
    header = std::move(reread.header);
    data = std::move(reread.data);
    dictionaryFile = std::move(reread.dictionaryFile);
    dictionary = reread.dictionary;
    offsets = std::move(reread.offsets);
    opened = std::move(reread.opened);
    for (std::int32_t chunk = 0; chunk < Count(); ++chunk)
        if (catalog.TypeOf(chunk) == vgUnknown)
            catalog.Retype(chunk, opened.TypeOf(chunk));
    fonts = reread.openedFonts;
    openedFonts = std::move(reread.openedFonts);
    for (Slot& slot : slots) {
        slot.replaced = false;
        slot.inFile = true;
    }
}

}  // namespace tessaro
