// Effects and songs as what they do to the chip: registers written at ticks.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "sound/chunks.h"
#include "sound/ym3812.h"

namespace tessaro::sound {

struct RegisterWrite {
    std::uint32_t tick = 0;
    std::uint8_t address = 0, value = 0;
};

struct RegisterSequence {
    std::uint32_t ticksPerSecond = 0;
    std::vector<RegisterWrite> writes;  ///< by tick
    std::uint64_t ticks = 0;            ///< how long it lasts
    std::uint64_t period = 0;           ///< when it begins again where it is repeated; 0: it is not
};

/// A song, whose events have a tick of 1/700 s in games with 256 colours and 1/560 s in those
/// with 16. It lasts the sum of its delays; repeated it begins one tick behind its last event,
/// whose delay then plays no part: meant, the games do so.
RegisterSequence SongSequence(const SongChunk& song, std::uint32_t ticksPerSecond);

/// An effect: the instrument on the first voice, then each 1/140 s a byte, 0 a key that goes up,
/// another a frequency with the key down (which strikes only where it was up). The last byte's key
/// goes up at once, so that the effect lasts one tick less than it has bytes; then its release
/// rings. The connection of the instrument is not used: meant, the games write 0.
RegisterSequence AdLibSequence(const AdLibChunk& effect);

/// Plays a sequence on a chip of its own, at the chip's rate.
class SequencePlayer {
public:
    /// `passes` of a sequence that can be repeated; 0: without end.
    SequencePlayer(RegisterSequence sequence, std::uint32_t passes);

    /// Ticks in all passes; the most there are for one without end.
    std::uint64_t Ticks() const { return ticks_; }

    /// Appends the next samples; behind the last tick those are what still rings.
    void Generate(std::size_t count, std::vector<std::int32_t>& output);

    /// The sample from which on all passes are over and nothing sounds; nothing as long as none of
    /// those made is.
    std::optional<std::uint64_t> SilentFrom() const { return silentFrom_; }

private:
    void BeginTick();
    bool Over() const;

    RegisterSequence sequence_;
    std::uint32_t passesLeft_;  ///< 0: without end
    Ym3812 chip_;
    std::uint64_t ticks_ = 0;
    std::uint64_t tick_ = 0;       ///< the next to begin
    std::uint64_t passBegan_ = 0;  ///< the tick
    std::size_t next_ = 0;         ///< the write
    std::uint64_t samples_ = 0;
    std::optional<std::uint64_t> silentFrom_;
};

}  // namespace tessaro::sound
