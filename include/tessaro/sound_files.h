// Songs and effects to and from the files of other programs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/sound.h"
#include "tessaro/types.h"

namespace tessaro {

// Every operation below is independent of games and files on the disk, reports nothing anywhere
// and, where it returns False, says why in `Why` and leaves its results as they were.

/// The files that music goes to and comes from; docs/sound.md draws them.
enum class MusicFormat : std::int32_t {
    Wlf = 0,  ///< registers with delays, taken by players to have 700 ticks a second
    Imf = 1,  ///< the same with 560
    Vgm = 2,  ///< a log of the chip's registers, in 1/44100 s
};

/// Writes a song as a file that players accept: .wlf and .imf with a tag of title and source, .vgm
/// with its description and a loop over all of it. Where the format has other ticks than the song,
/// delays are rounded to them.
/// @return False where the chunk holds no song.
TESSARO_API bool ExportMusic(const ByteArray& Chunk, std::int32_t SongTicks, MusicFormat Format,
                             ByteArray& File, std::string& Why);

struct MusicImport {
    /// Ticks a second of the game that the song is for.
    std::int32_t SongTicks = kSongTicks256Colors;
    /// Those of an .imf or .wlf file, which does not tell; 0: the game's. A .vgm file has its own.
    std::int32_t FileTicks = 0;
    /// The title where the file has none.
    std::string Title;
};

struct ImportedMusic {
    ByteArray Chunk;                    ///< for clsAudioT::SetChunkData
    std::vector<std::string> Warnings;  ///< what a listener may notice, a sentence each
};

/// Makes a song's chunk of an .imf or .wlf file (with a length in front or without, with the header
/// "ADLIB", a tag, a block of names, a last delay that is cut off) or of a .vgm file for the
/// YM3812. A block of names is kept, otherwise one is made. Delays too long for one event are
/// split.
/// @return False for a file of another kind, one without events, and one of more than 65532 bytes
/// of
///         events, which no chunk can hold.
TESSARO_API bool ImportMusic(const ByteArray& File, const MusicImport& Options,
                             ImportedMusic& Music, std::string& Why);

/// Makes a speaker effect of a WAV file of any kind: its pitch is followed, a byte each 1/140 s;
/// what is soft becomes silence, noise a pitch as rough as it is. Lowest is 78 Hz.
TESSARO_API bool SpeakerEffectFromWave(const ByteArray& Wave, std::int32_t Priority,
                                       ByteArray& Chunk, std::string& Why);

/// Makes an AdLib effect of an instrument file (.sbi) and notes: "C4 E4:20 -:10 G#4", a letter with
/// # or b, an octave (A4 is 440 Hz) and, behind a colon, the ticks of 1/140 s it lasts, 14 where
/// they are not told; "-" is a rest. An effect has one octave for all of its notes and a byte for
/// each: the lower a note is below the highest, the rougher its pitch; one too low is refused.
TESSARO_API bool AdLibEffectFromNotes(const ByteArray& Instrument, const std::string& Notes,
                                      std::int32_t Priority, ByteArray& Chunk, std::string& Why);

/// Makes the samples of a digitised sound (7042 a second, 8 bits, 128 at rest) of a WAV file of any
/// kind: mixed down to one channel, resampled, rounded. One of that very kind keeps its samples.
/// Dither adds noise of triangular spread before rounding, which turns distortion of soft sounds
/// into hiss; the same noise every time.
TESSARO_API bool DigitisedSoundFromWave(const ByteArray& Wave, bool Dither, ByteArray& Samples,
                                        std::string& Why);

}  // namespace tessaro
