// clsVSwap: walls, sprites and digitised sounds of one game.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

enum enmChunkType : std::int32_t { ctWall = 0, ctSprite = 1, ctSound = 2 };

/// How far the posts of a compiled sprite share their pixels.
enum enmVSWAPCompression : std::int32_t {
    vcNone = 0,      ///< every post has its own
    vcOriginal = 1,  ///< a post whose pixels stand in the pool already reuses them
    vcGood = 2,      ///< posts contained in or overlapping others share too; never larger
};

/// The page file, and the extra sound file where the game has one (docs/page-file.md draws both,
/// and the compiled sprite). Configure clsVersion first, then call Initialize. Walls and sprites
/// cross the interface as 256-colour BMP images, sounds as WAV images of 7042 Hz, 8 bits, mono.
/// Numbers count from 0 within each kind. Every operation reports its own failure and returns its
/// failure value.
class TESSARO_API clsVSwap {
public:
    clsVSwap();
    ~clsVSwap();
    clsVSwap(const clsVSwap&) = delete;
    clsVSwap& operator=(const clsVSwap&) = delete;

    /// Opens and indexes the page file. Sounds that cannot be indexed show a message box and leave
    /// the set without them.
    bool Initialize();
    void CloseFile();

    /// Counts of the set. Setting a higher one grows the set by items without data; a lower one
    /// does not drop any. One below 0 fails with number 5, one above 32767 with number 6.
    std::int32_t NumberOfWalls() const;
    void NumberOfWalls(std::int32_t NewValue);
    std::int32_t NumberOfSounds() const;
    void NumberOfSounds(std::int32_t NewValue);
    std::int32_t NumberOfSprites() const;
    void NumberOfSprites(std::int32_t NewValue);
    /// Whether the loaded file holds 128 x 128 walls and sprites.
    bool HiResInput() const;
    /// All chunks of the files, sound pages and sound lists included.
    std::int32_t NumberOfChunks() const;

    /// A chunk's stored bytes; a one-byte array for a chunk without data. The first page of a sound
    /// gives the whole sound, or one byte where the sound list says 65535, which marks it as empty.
    void LoadChunk(std::int32_t ChunkNum, ByteArray& Data);
    /// The BMP image of a wall or a sprite. One without data is a one-byte array, and True.
    bool LoadWall(std::int32_t WallNum, ByteArray& Data);
    bool LoadSprite(std::int32_t SpriteNum, ByteArray& Data);
    /// The WAV image of a sound and the number of its samples. One without data is a one-byte
    /// array, and True.
    bool LoadSound(std::int32_t SoundNum, ByteArray& Data, std::int32_t& Length);

    /// The compiled size in bytes of a BMP image of at most 128 x 128 pixels; 1 for an image of 0
    /// or 1 bytes. Every failure gives -1, and so does a depth other than 8 bits per pixel.
    std::int32_t GetSpriteCompressedSize(const ByteArray& Data, enmVSWAPCompression Compression);

    /// Replaces wall `Chunk`, or sprite `Chunk` - NumberOfWalls, in memory by a BMP image.
    void SetChunkData(std::int32_t Chunk, const ByteArray& Data);
    /// Replaces a sound in memory by a WAV image.
    void SetSoundData(std::int32_t SoundNum, const ByteArray& Data);

    /// Writes the page file, and the extra sound file, anew into OutputFolder, compiling every
    /// sprite with `Compression`. Files that are replaced move to BackupFolder first.
    /// @return False after a failure: the old files are back and the edits are kept. SaveError
    ///         named the item, or, where the failure lay outside any, the one where the save
    ///         stood; it is not raised when a file could not be backed up.
    bool SaveVSwap(enmVSWAPCompression Compression);
    /// From a handler of SaveStatus alone: ends the save, which then fails with "The save was
    /// stopped." Anywhere else it fails with number 5.
    void StopSave();

    SaveStatusEvent SaveStatus;
    /// The item that cannot be written, or where the save stood, within its kind.
    std::function<void(std::int32_t Chunk, enmChunkType ErrorChunkType)> SaveError;
    SaveCompleteEvent SaveComplete;

private:
    friend class PageFileSave;
    struct Self;
    std::unique_ptr<Self> self_;
};

}  // namespace tessaro
