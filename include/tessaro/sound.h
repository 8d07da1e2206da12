// Effects and songs as sound: bytes of a chunk in, samples out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// What a chunk of clsAudioT holds. With S = NumberOfSounds chunks 0 to S - 1 are speaker effects,
/// S to 2 S - 1 AdLib effects, StartMusic and what follows songs.
enum class SoundKind : std::int32_t {
    Speaker = 0,  ///< an effect of the PC speaker
    AdLib = 1,    ///< the same effect on the AdLib card, a YM3812
    Song = 2,     ///< music for the AdLib card
};

/// Ticks of a song in a second: games with 256 colours have the first, those with 16 the second
/// (clsVersion::EGAGraphics tells which).
inline constexpr std::int32_t kSongTicks256Colors = 700;
inline constexpr std::int32_t kSongTicks16Colors = 560;

struct SoundOptions {
    /// Samples a second, 4000 to 192000.
    std::int32_t Rate = 44100;
    /// Ticks of a song in a second, 1 to 4000. Effects of both kinds have 140, whatever this says.
    std::int32_t SongTicks = kSongTicks256Colors;
    /// How often a song is played; 0: without end. Effects are played once.
    std::int32_t Loops = 1;
    /// How long, in milliseconds, what is played on the AdLib card may ring on behind its end, with
    /// a fade over the last 250 of them. It ends sooner where nothing rings any more. -1: 2000 for
    /// an effect, 0 for a song. A speaker effect has nothing that rings.
    std::int32_t Tail = -1;
};

/// What can be told of a chunk without playing it.
struct SoundInfo {
    bool Sounds = false;  ///< there is something to play
    std::string Why;      ///< otherwise the reason, one short sentence
    std::string Title;    ///< of an AdLib effect its instrument's, of a song its own; often empty
    std::string Source;   ///< a song's, often the name of the composer's file
    std::int32_t Priority = 0;        ///< of an effect
    std::int32_t TicksPerSecond = 0;  ///< of this sound
    std::int64_t Ticks = 0;           ///< played once, without a tail
    std::int64_t LoopTicks = 0;  ///< of a song: from one beginning to the next where it repeats
    double Seconds = 0;          ///< Ticks / TicksPerSecond
};

/// Reads a chunk as clsAudioT::LoadChunk hands it out. A chunk that holds no sound (nothing at all,
/// a place without a song, a length beyond its end, four stray bytes) says so; nothing fails.
TESSARO_API SoundInfo DescribeSound(SoundKind Kind, const ByteArray& Chunk,
                                    std::int32_t SongTicks = kSongTicks256Colors);

/// A sound that is played while it is computed: pull as many samples as are wanted, whenever they
/// are. They are 16-bit mono, the same ones on every system, however they are pulled. What several
/// sounds have in loudness is as the games have it: the AdLib card's both outputs added up, the
/// speaker at a quarter of full scale.
///
/// A stream is independent of everything else in the library (no game, no file, no report of
/// failures) and may be used from one thread at a time. A chunk that holds no sound is a stream
/// without samples.
class TESSARO_API SoundStream {
public:
    /// The chunk is copied. Options outside their ranges take the nearest value within.
    SoundStream(SoundKind Kind, const ByteArray& Chunk, const SoundOptions& Options = {});
    ~SoundStream();
    SoundStream(SoundStream&& Other) noexcept;
    SoundStream& operator=(SoundStream&& Other) noexcept;

    /// The next samples. @return how many there were: fewer than `Count` only at the end.
    std::size_t Read(std::int16_t* Samples, std::size_t Count);

    /// Samples that Read has handed out.
    std::int64_t Position() const;
    /// Samples there will be at most: a tail may end sooner. -1 for a song without end.
    std::int64_t Length() const;
    /// Samples a second.
    std::int32_t Rate() const;

private:
    struct Self;
    std::unique_ptr<Self> self_;
};

/// All samples at once. A song without end (Loops 0) is played once instead.
TESSARO_API std::vector<std::int16_t> RenderSound(SoundKind Kind, const ByteArray& Chunk,
                                                  const SoundOptions& Options = {});

/// A WAV file of 16-bit mono samples.
TESSARO_API ByteArray MakeWaveFile(const std::vector<std::int16_t>& Samples, std::int32_t Rate);

}  // namespace tessaro
