// Compressing, and writing a set anew.
#include <algorithm>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "graphics/chunk_expander.h"
#include "graphics/vga_graph_self.h"
#include "huffman/huffman.h"
#include "huffman/mod_huffman.h"
#include "saving/replace_files.h"

namespace tessaro {
namespace {

/// Whether two dictionaries hold the same codes; entry 255 has no part in them.
bool SameCodes(const HuffDictionary& a, const HuffDictionary& b) {
    return std::equal(a.begin(), a.end() - 1, b.begin());
}

/// Expanded bytes in their stored form. A chunk with a length field can hold any number of them.
ByteArray Compress(ByteSpan bytes, bool bare, const HuffDictionary& dictionary) {
    if (!CanCompress(bytes, dictionary))
        throw Failure(kInvalidProcedureCall,
                      "The data hold a byte value that the dictionary has no code for.");
    if (bytes.empty() && !bare)
        return ByteArray(4);
    ByteWriter out;
    if (!bare)
        out.I32(Narrow<std::int32_t>(bytes.size()));
    out.Bytes(CompressStream(bytes, dictionary));
    return out.Release();
}

}  // namespace

std::int32_t clsVGAGraph::GetByteHuffLength(std::uint8_t Value) {
    return modHuffmanExpand::DetermineHuffLength(Value, ConfiguredGame().compileDictionary);
}

std::int32_t clsVGAGraph::GetCompressedSize(const ByteArray& Data) {
    ByteArray compressed;
    if (!modHuffmanExpand::HuffCompress(Data, compressed, ConfiguredGame().compileDictionary))
        return -1;
    return static_cast<std::int32_t>(compressed.size());
}

bool clsVGAGraph::BuildVGADICT(const std::vector<std::int32_t>& Counts) {
    return Guarded("clsVGAGraph.BuildVGADICT", [&] {
        std::array<std::int32_t, 256> counts{};
        if (Counts.size() < counts.size())
            throw Failure(kSubscriptOutOfRange);
        std::copy_n(Counts.begin(), counts.size(), counts.begin());
        if (!modHuffmanize::Huffmanize(counts))
            return false;
        const Game& store = ConfiguredGame();
        if (!ReplaceFiles({{ConfiguredGame().OutputPath(store.vgaDictFile),
                            WriteDictionary(SharedStore().builtDictionary)}}))
            throw Failure(kPathFileAccess, "The old dictionary could not be backed up.");
        return true;
    });
}

std::optional<ByteArray> clsVGAGraph::Self::Encode(std::int32_t chunk,
                                                   const HuffDictionary& dictionary) {
    const Slot& slot = SlotOf(chunk);
    if (slot.replaced) {
        const ByteArray& data = *slot.data;
        const bool bare = set.HasNoLengthField(chunk);
        return IsText(set.TypeOf(chunk))
                   ? Compress(modCodePage::BytesToDosCodePage(data), bare, dictionary)
                   : Compress(data, bare, dictionary);
    }
    if (FindChunk(offsets, dataSize, set.Index(chunk)).sparse)
        return std::nullopt;
    // What is glued behind a stream, or too short to be one, is in the stored bytes alone.
    ByteArray stored = ReadStored(chunk);
    if (SameCodes(dictionary, set.dictionary) || stored.size() < 5)
        return stored;
    // Only when it is expanded is it known for sure whether it has a length field.
    const ByteArray bytes = ExpandWhole(set, ConfiguredGame().egaGraphics, chunk, stored);
    return Compress(bytes, set.HasNoLengthField(chunk), dictionary);
}

void clsVGAGraph::Self::Adopt(const std::vector<std::uint32_t>& newOffsets, std::size_t newSize,
                              const HuffDictionary& dictionary) {
    offsets = newOffsets;
    dataSize = static_cast<std::int64_t>(newSize);
    set.dictionary = dictionary;
    ConfiguredGame().expandDictionary = dictionary;
    storedPictures = set.pictures;
    storedFonts = fonts;
    for (Slot& slot : slots) {
        slot.replaced = false;
        slot.inFile = true;
    }
}

/// The bytes of the whole data file with the place of every chunk. What lies before the first chunk
/// or behind the last one is kept.
clsVGAGraph::Self::NewData clsVGAGraph::Self::EncodeAll(const HuffDictionary& dictionary,
                                                        const SaveStatusEvent& status,
                                                        std::int32_t& chunk) {
    NewData out;
    const ByteArray old = ReadWholeFile(dataPath);
    const auto keep = [&](std::size_t from, std::size_t to) {
        from = std::min(from, old.size());
        to = std::min(to, old.size());
        if (from < to)
            out.data.insert(out.data.end(), old.begin() + static_cast<std::ptrdiff_t>(from),
                            old.begin() + static_cast<std::ptrdiff_t>(to));
    };
    const auto first = std::ranges::min_element(offsets);
    keep(0, *first == kSparseOffset ? 0 : *first);
    for (chunk = 0; chunk < set.Count(); ++chunk) {
        const std::optional<ByteArray> stored = Encode(chunk, dictionary);
        out.offsets.push_back(stored ? static_cast<std::uint32_t>(out.data.size()) : kSparseOffset);
        if (stored)
            out.data.insert(out.data.end(), stored->begin(), stored->end());
        if (out.data.size() >= kSparseOffset)
            throw Failure(kOverflow, "The graphics file would reach 16777215 bytes.");
        if (status)
            status(chunk + 1, set.Count());
    }
    out.offsets.push_back(static_cast<std::uint32_t>(out.data.size()));
    keep(offsets.back() == kSparseOffset ? old.size() : offsets.back(), old.size());
    if (out.data.size() >= kSparseOffset)
        throw Failure(kOverflow, "The graphics file would reach 16777215 bytes.");
    return out;
}

/// Everything is complete in memory before the first file moves.
bool clsVGAGraph::Self::Save(const SaveStatusEvent& status, const SaveErrorEvent& error) {
    const Game& store = ConfiguredGame();
    if (!store.canCompileVGAGraph)
        throw Failure(kInvalidProcedureCall, "The graphics of this game cannot be saved.");
    if (set.Count() == 0)
        throw Failure(kInvalidProcedureCall, "No graphics are loaded.");
    std::int32_t chunk = 0;
    try {
        const HuffDictionary dictionary =
            store.compileDictionaryLoaded ? store.compileDictionary : set.dictionary;
        const std::string target = ConfiguredGame().OutputPath(store.vgaGraphFile);
        const bool inPlace = SameFile(target, dataPath);
        const SavingFlag::Scope scope(saving);
        NewData out = EncodeAll(dictionary, status, chunk);
        const std::size_t size = out.data.size();
        const std::vector<NewFile> files{
            {ConfiguredGame().OutputPath(store.vgaHeaderFile),
             WriteGraphicsHeader(out.offsets, store.graphicsHeaderEntrySize)},
            {target, std::move(out.data)},
            {ConfiguredGame().OutputPath(store.vgaDictFile), WriteDictionary(dictionary)}};
        file.Release();
        if (!ReplaceFiles(files))
            throw Failure(kPathFileAccess, "The old graphics files could not be backed up.");
        if (inPlace)
            Adopt(out.offsets, size, dictionary);
        return true;
    } catch (...) {
        const Failure failure = CurrentFailure();
        if (error)
            error(std::min(chunk, set.Count() - 1), failure.Description);
        throw failure;
    }
}

bool clsVGAGraph::SaveVGAGraph() {
    constexpr const char* kName = "clsVGAGraph.SaveVGAGraph";
    const auto mayBegin = [&] {
        self_->saving.RefuseChange();
        return true;
    };
    if (!Guarded(kName, mayBegin))
        return false;
    const bool saved = Guarded(kName, [&] { return self_->Save(SaveStatus, SaveError); });
    Guarded(kName, [&] {
        if (SaveComplete)
            SaveComplete(saved);
    });
    return saved;
}

}  // namespace tessaro
