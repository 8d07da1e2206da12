// Where the chunks of the page file and of the extra sound file lie: what the container knows of
// its files.
#pragma once

#include <optional>
#include <vector>

#include "foundation/data_file.h"
#include "foundation/game.h"
#include "pagefile/extra_sounds.h"
#include "pagefile/page_file.h"

namespace tessaro {

/// What stands for an item without data: callers see one byte.
inline const ByteArray kNoData{0};

/// A stored sound and the length that the list tells of it.
struct StoredSound {
    ByteArray bytes;
    std::int32_t listLength = 0;
};

struct PageIndex {
    DataFile page;
    DataFile extra;  ///< never read where there is no extra sound file

    std::int32_t walls = 0;    ///< chunks from 0
    std::int32_t sprites = 0;  ///< chunks from `walls`
    std::int32_t soundStart = 0;
    std::int32_t fileChunks = 0;       ///< in the page file
    std::int32_t firstExtraChunk = 0;  ///< in the extra sound file; 0: there is none
    std::int32_t firstExtraSound = 0;
    SoundListForm extraForm = SoundListForm::Short;
    std::vector<std::int32_t> offsets;
    std::vector<std::int32_t> lengths;  ///< the first page of a sound has the whole sound's
    std::vector<std::int32_t> storedLengths;
    bool hasSoundList = false;
    std::vector<SoundEntry> sounds;
    std::int32_t soundCount = 0;
    /// The page file's only sound, where the extra file's list took its place.
    std::optional<SoundEntry> replacedSound;
    /// Sounds that cannot be indexed leave a set of walls and sprites.
    bool soundsFailed = false;

    /// Reads the page file that is configured, and the extra sound file beside the game where it
    /// has one.
    static PageIndex Open(const Game& game, const Files& files);
    void Close();
    /// Reads closed files again; fails where they are no longer what was read.
    void Reopen(const Files& files);

    bool HasLongLengths() const { return extraForm == SoundListForm::Long; }

    bool IsHiRes() const { return storedLengths[0] == 16384; }
    bool HasExtraFile() const { return firstExtraChunk > 0; }
    bool HasData(std::int32_t chunk) const;
    /// Offset 0 means no data in the page file alone: in the extra one it is the first page.
    bool HasPlace(std::int32_t chunk) const;
    /// The bytes of a chunk; no bytes where it has no data.
    ByteArray Read(std::int32_t chunk) const;
    /// The first chunk of a sound; nothing where it has none.
    std::optional<std::int32_t> SoundChunk(std::size_t sound) const;
    /// Everything stored of a sound, also of one that reads as empty. The length is the one of its
    /// own entry: another entry may name the same first page.
    StoredSound ReadSound(std::int32_t chunk, std::int32_t listLength) const;
    /// A sound as callers get it: where two entries name one first page, the later one's length
    /// counts for both. One that reads as empty has what is stored of it all the same.
    StoredSound ReadServedSound(std::size_t sound) const;
    /// The same of `replacedSound`, as far as the file holds it.
    StoredSound ReadReplacedSound() const;
    /// So many bytes from the start of a chunk of the page file, as far as the file holds them.
    ByteArray ReadWhatIsThere(std::int32_t chunk, std::int32_t length) const;

private:
    void IndexPages();
    void IndexSounds(const Files& files, const std::string& extraPath);
    void IndexExtraFile();
    void WalkSounds(std::vector<SoundEntry>& entries, std::int32_t firstChunk, SoundListForm form);
    /// Fails with number 9 where there is no such chunk.
    void Check(std::int32_t chunk) const;
    bool MarksEmpty(std::int32_t chunk, std::int32_t listLength) const;
    std::int32_t StoredLength(std::int32_t chunk, std::int32_t listLength) const;
    ByteArray ReadBytes(std::int32_t chunk, std::int32_t length) const;
};

}  // namespace tessaro
