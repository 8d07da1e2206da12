// clsAudioT: sound effects and music of one game.
#pragma once

#include <cstdint>
#include <memory>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// The audio header file and the audio data file (docs/audio-files.md draws both): three groups of
/// equally many effects (PC speaker, AdLib, digitised placeholders), then the music. Configure
/// clsVersion first, then call InitializeMusic. Chunk numbers count from 0. Every operation reports
/// its own failure and returns its failure value.
class TESSARO_API clsAudioT {
public:
    clsAudioT();
    ~clsAudioT();
    clsAudioT(const clsAudioT&) = delete;
    clsAudioT& operator=(const clsAudioT&) = delete;

    /// Loads the dictionary of a compressed set, reads the header and opens the data file.
    /// @return False when a file is missing or the music's start cannot be found.
    bool InitializeMusic();
    /// Closes the data file, which is opened again on demand. Replaced chunks stay.
    void CloseFile();

    /// Hands out a chunk, expanded where the set is compressed, and the number of its bytes in
    /// `SIZE`. A chunk without bytes is an empty array with SIZE 0; a sparse one fails.
    bool LoadChunk(std::int32_t Chunk, ByteArray& Data, std::int32_t& SIZE);
    /// Replaces a chunk in memory by its expanded bytes; SaveAudioT writes it.
    void SetChunkData(std::int32_t Chunk, const ByteArray& Data);
    /// Writes both files anew into OutputFolder. Chunks nobody replaced keep their stored bytes.
    /// Refused while no set is loaded.
    /// Files that are replaced move to BackupFolder first; a failure brings them back.
    bool SaveAudioT();
    /// From a handler of SaveStatus alone: ends the save, which then fails with "The save was
    /// stopped." Anywhere else it fails with number 5.
    void StopSave();

    std::int32_t NumberOfChunks() const;
    /// Grows or shrinks the set, up to 65535 chunks; new ones are empty until set.
    void NumberOfChunks(std::int32_t NewValue);
    /// Number of the first music chunk; -1 while none is loaded.
    std::int32_t StartMusic() const;
    /// NumberOfChunks - StartMusic.
    std::int32_t NumberOfSongs() const;
    /// StartMusic / 3: effects per group.
    std::int32_t NumberOfSounds() const;

    SaveStatusEvent SaveStatus;
    SaveErrorEvent SaveError;
    SaveCompleteEvent SaveComplete;

private:
    friend class AudioSave;
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
