// The sound lists, and the extra sound file that some games have beside the page file.
//
//  where                    width     field
//  from 0                   4096 each sound pages; the last page of a sound may be shorter, the
//                                     next sound starts on the next multiple of 4096
//  page n - 1                         the sound list
//  last 4096 bytes          4 x n     offset of each page, the list included
//  then                     2 x n     length of each page
//
// Nothing ends the offsets: the first two lengths, read as one number, are not below the file's
// length. Chunk numbers go on after those of the page file, start pages count from page 0.
#pragma once

#include <span>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

struct SoundEntry {
    std::int32_t startPage = 0;  ///< from the first sound page of its file; below 0: none
    std::int32_t length = 0;     ///< in bytes
    bool operator==(const SoundEntry&) const = default;
};

/// A list entry is a 16-bit page and a 16-bit length, or, in the extra file alone, two 32-bit
/// numbers. The long form shows itself by a first entry whose length, read short, is 0.
enum class SoundListForm { Short, Long };

std::vector<SoundEntry> ReadSoundList(ByteSpan list, SoundListForm form);
/// Numbers that the form does not hold fail with number 6.
ByteArray WriteSoundList(std::span<const SoundEntry> sounds, SoundListForm form);

struct ExtraTable {
    std::vector<std::int32_t> offsets;
    std::vector<std::int32_t> lengths;

    /// From the last 4096 bytes of a file of `fileSize` bytes.
    static ExtraTable ReadFrom(ByteReader& in, std::int64_t fileSize);
};

/// An extra sound file in the making.
class ExtraFileImage {
public:
    /// `length` is the one that the list tells.
    void AddSound(ByteSpan bytes, std::int32_t length);
    /// A list of the short form whose first sound has no length becomes a long one: it would be
    /// read as one. More pages than one table holds fail.
    ByteArray Assemble(SoundListForm form) const;

private:
    ByteArray Laid(SoundListForm form, std::size_t fillers) const;

    ByteArray pages_;  ///< each sound from a multiple of 4096 on
    std::vector<std::size_t> lengths_;
    std::vector<SoundEntry> sounds_;
};

}  // namespace tessaro
