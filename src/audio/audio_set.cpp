#include "audio/audio_set.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "audio/audio_layout.h"
#include "foundation/guard.h"
#include "huffman/dictionary.h"

namespace tessaro {
namespace {

constexpr const char* kStartMusicText = "Could not determine starting music chunk.";
/// What a list of offsets takes for a placeholder.
constexpr std::size_t kPlaceholder = 4;

}  // namespace

AudioSet AudioSet::Open(const Game& game, const Files& files) {
    AudioSet set;
    set.compressed = game.audioIsCompressed;
    set.sixteenColors = game.egaGraphics;
    Step("clsAudioT.LoadHuffman", [&] {
        if (!set.compressed)
            return;
        if (!files.Kind(game.audioDictFile))
            throw Failure(0, "Audio huffman dictionary file not found.");
        set.dictionary = ReadDictionary(files.Read(game.audioDictFile));
    });
    Step("clsAudioT.LoadHeader", [&] {
        set.header = DataFile::Read(files, game.audioHeaderFile);
        set.offsets = ReadAudioHeader(set.header.Bytes());
        const auto start = FindStartMusic(set.offsets, set.sixteenColors);
        if (!start)
            throw Failure(kStartMusicNotFound, kStartMusicText);
        set.startMusic = *start;
        set.count = Narrow<std::int32_t>(set.offsets.size() - 1);
        set.openedOffsets_ = set.offsets.size();
    });
    set.data = DataFile::Read(files, game.audioDataFile);
    set.dataBegin_ = set.dataEnd_ = set.data.Size();
    for (const std::int32_t offset : set.offsets)
        if (offset >= 0)
            set.dataBegin_ = std::min<std::int64_t>(set.dataBegin_, offset);
    if (set.offsets.back() != kSparseAudioOffset)
        set.dataEnd_ = std::min<std::int64_t>(set.dataEnd_, *std::ranges::max_element(set.offsets));
    return set;
}

void AudioSet::CheckChunk(std::int32_t chunk) const {
    if (chunk < 0 || chunk >= count)
        throw Failure(kSubscriptOutOfRange);
}

ByteSpan AudioSet::StoredBytes(std::int32_t chunk) const {
    if (!IsStored(chunk) || IsSparse(chunk))
        return {};
    const AudioRange range = RangeOf(chunk);
    return range.size == 0 ? ByteSpan() : data.At(range.offset, range.size);
}

ByteArray AudioSet::Bytes(std::int32_t chunk) const {
    CheckChunk(chunk);
    if (const auto edit = replaced.find(chunk); edit != replaced.end())
        return edit->second;
    if (IsSparse(chunk))
        throw Failure(0, "Tried to load sparse data at chunk " + std::to_string(chunk));
    const ByteSpan stored = StoredBytes(chunk);
    ByteArray bytes(stored.begin(), stored.end());
    return compressed ? ExpandAudioChunk(std::move(bytes), dictionary) : bytes;
}

void AudioSet::Resize(std::int32_t chunks) {
    if (IsStored(chunks)) {
        // The offset that now closes the list still has to end the chunk before it.
        const auto close = offsets.begin() + chunks;
        const auto end = std::find_if(
            close, offsets.end(), [](std::int32_t offset) { return offset != kSparseAudioOffset; });
        if (end != offsets.end())
            *close = *end;
        offsets.erase(close + 1, offsets.end());
    }
    replaced.erase(replaced.lower_bound(chunks), replaced.end());
    count = chunks;
}

ByteArray AudioSet::Coded(const ByteArray& bytes) const {
    return compressed ? CompressAudioChunk(bytes, dictionary) : bytes;
}

bool AudioSet::KeepsLayout() const {
    return offsets.size() == openedOffsets_ && std::cmp_equal(count + 1, offsets.size()) &&
           CanExchangeInPlace(offsets, data.Size(), replaced);
}

std::vector<NewFile> AudioSet::Write(const std::string& headerPath, const std::string& dataPath,
                                     const Progress& progress) const {
    const bool keepsLayout = KeepsLayout();
    std::map<std::int32_t, ByteArray> coded;
    std::vector<AudioPiece> pieces;
    for (std::int32_t chunk = 0, total = count; chunk < total; ++chunk) {
        progress.at(chunk);
        const auto edit = replaced.find(chunk);
        if (keepsLayout) {
            if (edit != replaced.end())
                coded.emplace(chunk, Coded(edit->second));
        } else if (edit != replaced.end()) {
            pieces.push_back({false, Coded(edit->second)});
        } else {
            const ByteSpan stored = StoredBytes(chunk);
            pieces.push_back({IsSparse(chunk), {stored.begin(), stored.end()}});
        }
        progress.done(chunk);
    }

    AudioLayout layout;
    if (keepsLayout) {
        layout = ExchangeInPlace(offsets, data.Bytes(), coded);
    } else {
        layout = LayInARow(pieces, FindStep(offsets), data.At(0, dataBegin_),
                           data.At(dataEnd_, data.Size() - dataEnd_));
    }
    return {{headerPath, WriteAudioHeader(layout.offsets)}, {dataPath, std::move(layout.data)}};
}

void AudioSet::RefuseCounts() const {
    const auto sizeWas = [&](std::int32_t chunk) {
        return IsStored(chunk) && !IsSparse(chunk) ? static_cast<std::size_t>(RangeOf(chunk).size)
                                                   : 0;
    };
    std::string blame = "The chunks";
    for (const auto& [chunk, bytes] : replaced) {
        const bool wasPlaceholder = sizeWas(chunk) <= kPlaceholder;
        const bool isPlaceholder = bytes.size() <= kPlaceholder;
        if (wasPlaceholder == isPlaceholder)
            continue;
        blame = "Chunk " + std::to_string(chunk) +
                (chunk >= startMusic ? " (a song of 4 bytes or fewer)"
                 : isPlaceholder     ? " (an effect of 4 bytes or fewer)"
                                     : " (a placeholder that got data)");
        break;
    }
    throw Failure(0, blame +
                         " would make the games look for the music elsewhere. Give effects "
                         "and songs more than 4 bytes, leave placeholders empty, and keep at "
                         "least two songs.");
}

void AudioSet::RequireSame(const AudioSet& reread) const {
    if (reread.startMusic != startMusic || reread.count != count)
        RefuseCounts();
    for (std::int32_t chunk = 0; chunk < count; ++chunk) {
        const auto edit = replaced.find(chunk);
        bool same = false;
        if (edit != replaced.end()) {
            same = !reread.IsSparse(chunk) && reread.Bytes(chunk) == edit->second;
        } else if (RangeOf(chunk).offset + RangeOf(chunk).size > data.Size()) {
            same = true;  // what cannot be read was not asked for
        } else {
            same = reread.IsSparse(chunk) == IsSparse(chunk) &&
                   std::ranges::equal(reread.StoredBytes(chunk), StoredBytes(chunk));
        }
        if (!same)
            throw Failure(0, "Chunk " + std::to_string(chunk) +
                                 " would not read back as it was given. " +
                                 (chunk + 1 == static_cast<std::int32_t>(FindStep(offsets))
                                      ? "The chunk before the one where the list of offsets steps "
                                        "back cannot hold data; leave it empty."
                                      : "Give it other data."));
    }
}

void AudioSet::Adopt(AudioSet&& reread) {
    header = std::move(reread.header);
    data = std::move(reread.data);
    offsets = std::move(reread.offsets);
    openedOffsets_ = reread.openedOffsets_;
    dataBegin_ = reread.dataBegin_;
    dataEnd_ = reread.dataEnd_;
}

}  // namespace tessaro
