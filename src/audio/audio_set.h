// An audio set as it was opened: header and data file, and what the host changed since.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <vector>

#include "audio/audio_file.h"
#include "foundation/data_file.h"
#include "foundation/game.h"
#include "saving/new_file.h"

namespace tessaro {

struct AudioSet {
    DataFile header, data;
    bool compressed = false;
    bool sixteenColors = false;
    HuffDictionary dictionary{};
    std::vector<std::int32_t> offsets;  ///< of the stored chunks, and the end of the last
    std::int32_t count = 0;             ///< chunks beyond the stored ones are empty
    std::int32_t startMusic = -1;
    std::map<std::int32_t, ByteArray> replaced;

    /// Reads the set that is configured.
    static AudioSet Open(const Game& game, const Files& files);

    /// Called with each chunk that is written, and before it with the chunk that is in work.
    struct Progress {
        std::function<void(std::int32_t chunk)> at, done;
    };
    /// Header and data file under these names, and what the list will be.
    std::vector<NewFile> Write(const std::string& headerPath, const std::string& dataPath,
                               const Progress& progress) const;
    /// Whether `reread` serves what this set was asked to write. Throws naming the chunk.
    void RequireSame(const AudioSet& reread) const;
    /// Says which chunk is to blame for a list that would be taken for another set.
    [[noreturn]] void RefuseCounts() const;
    /// Takes over the files just written; edits stay.
    void Adopt(AudioSet&& reread);

    void CheckChunk(std::int32_t chunk) const;
    bool IsStored(std::int32_t chunk) const {
        return static_cast<std::size_t>(chunk) + 1 < offsets.size();
    }
    bool IsSparse(std::int32_t chunk) const {
        return IsStored(chunk) && offsets[static_cast<std::size_t>(chunk)] == kSparseAudioOffset;
    }
    AudioRange RangeOf(std::int32_t chunk) const {
        return FindAudioRange(offsets, static_cast<std::size_t>(chunk), data.Size());
    }
    /// The bytes of a chunk as the data file holds them; none for a chunk that it does not hold.
    ByteSpan StoredBytes(std::int32_t chunk) const;
    /// The bytes of a chunk as callers get them. A sparse one fails.
    ByteArray Bytes(std::int32_t chunk) const;

    /// Gives up the chunks from `chunks` on, or adds empty ones.
    void Resize(std::int32_t chunks);

private:
    /// A replaced chunk as the data file will hold it.
    ByteArray Coded(const ByteArray& bytes) const;
    bool KeepsLayout() const;

    // As the set was opened.
    std::size_t openedOffsets_ = 0;
    /// Where the chunks begin and end in the data file: what lies outside is no chunk's.
    std::int64_t dataBegin_ = 0, dataEnd_ = 0;
};

}  // namespace tessaro
