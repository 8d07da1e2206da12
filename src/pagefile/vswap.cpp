#include "tessaro/vswap.h"

#include <algorithm>
#include <optional>

#include "foundation/guard.h"
#include "foundation/store.h"
#include "images/wav_image.h"
#include "pagefile/column_images.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/vswap_self.h"
#include "platform/system.h"
#include "saving/recovery.h"
#include "saving/save_set.h"

namespace tessaro {
namespace {

constexpr std::int32_t kMostChunks = 32767;
constexpr std::size_t kHiResChunk = 16384;
constexpr std::int32_t kLargestSpriteSide = 128;

/// A count only grows the items of its kind: those beyond a lower one stay.
void SetCount(std::int32_t& count, std::vector<PageItem>& items, std::int32_t value) {
    if (value < 0)
        throw Failure(kInvalidProcedureCall);
    if (value > kMostChunks)
        throw Failure(kOverflow);
    count = value;
    if (std::cmp_greater(value, items.size()))
        items.resize(static_cast<std::size_t>(value));
}

/// A BMP image back to a sprite chunk; nothing where it is not 8 bits per pixel.
std::optional<ByteArray> FixSpriteData(ByteSpan image, enmVSWAPCompression compression) {
    const ColumnsOfImage stripped = StripToColumns(image);
    if (stripped.bitsPerPixel != 8)
        return std::nullopt;
    // Looking for shared pixels takes far more than twice the time for twice the pixels.
    if (std::max(stripped.width, stripped.height) > kLargestSpriteSide)
        throw Failure(kInvalidProcedureCall, "The BMP has " + std::to_string(stripped.width) +
                                                 " x " + std::to_string(stripped.height) +
                                                 " pixels. A sprite has at most 128 x 128.");
    return CompileSprite(stripped.columns, stripped.height, compression);
}

}  // namespace

bool FixWallData(ByteSpan image, ByteArray& chunk, ImageSize& size) {
    ColumnsOfImage stripped = StripToColumns(image);
    size = {stripped.width, stripped.height};
    if (stripped.bitsPerPixel != 8)
        return false;
    chunk = std::move(stripped.columns);
    return true;
}

PageIndex& clsVSwap::Self::Opened() {
    if (game)
        index.Reopen(*game->files);
    return index;
}

void clsVSwap::Self::Serve(PageIndex&& fresh) {
    index = std::move(fresh);
    hiResInput = index.IsHiRes();
    wallSize = spriteSize = hiResInput ? 128 : 64;
    finding = game->Take([mus = index.extra.Path(), isLong = index.HasLongLengths()](Game& found) {
        found.audioMusFile = mus;
        found.readSoundLengthsAsLong = isLong;
    });
}

void clsVSwap::Self::TakeOver() {
    numberOfWalls = index.walls;
    numberOfSprites = index.sprites;
    numberOfSounds = index.soundCount;
    walls.assign(static_cast<std::size_t>(numberOfWalls), {});
    sprites.assign(static_cast<std::size_t>(numberOfSprites), {});
    sounds.assign(static_cast<std::size_t>(numberOfSounds), {});
}

PageItem& clsVSwap::Self::ItemAt(std::vector<PageItem>& items, std::int32_t number) {
    if (number < 0 || std::cmp_greater_equal(number, items.size()))
        throw Failure(kSubscriptOutOfRange);
    return items[static_cast<std::size_t>(number)];
}

clsVSwap::clsVSwap() : self_(std::make_unique<Self>()) {}
clsVSwap::~clsVSwap() = default;

bool clsVSwap::Initialize() {
    return Guarded("clsVSwap.Initialize", [&] {
        self_->saving.RefuseChange();
        *self_ = Self();
        const std::shared_ptr<Game> game = SharedStore().game;
        self_->outputPageSize = game->hiResOutput ? 16384 : 4096;
        if (game->vswapFile.empty())
            return false;
        std::vector<std::string> notices;
        PageIndex index = Step("clsVSwap.LoadSwapFile", [&] {
            return ReadSet(*game->files, {game->vswapFile}, notices,
                           [&](const Files& files) { return PageIndex::Open(*game, files); });
        });
        self_->game = game;
        self_->Serve(std::move(index));
        self_->TakeOver();
        ShowNotices(notices);
        if (self_->index.soundsFailed)
            CurrentUserInterface().MsgBox("Unable to load digital sounds", mbInformation,
                                          "Error loading digital sounds", "", 0);
        return true;
    });
}

void clsVSwap::CloseFile() {
    self_->index.Close();
}

std::int32_t clsVSwap::NumberOfWalls() const {
    return self_->numberOfWalls;
}

void clsVSwap::NumberOfWalls(std::int32_t NewValue) {
    Guarded("clsVSwap.NumberOfWalls", [&] {
        self_->saving.RefuseChange();
        SetCount(self_->numberOfWalls, self_->walls, NewValue);
    });
}

std::int32_t clsVSwap::NumberOfSounds() const {
    return self_->numberOfSounds;
}

void clsVSwap::NumberOfSounds(std::int32_t NewValue) {
    Guarded("clsVSwap.NumberOfSounds", [&] {
        self_->saving.RefuseChange();
        SetCount(self_->numberOfSounds, self_->sounds, NewValue);
    });
}

std::int32_t clsVSwap::NumberOfSprites() const {
    return self_->numberOfSprites;
}

void clsVSwap::NumberOfSprites(std::int32_t NewValue) {
    Guarded("clsVSwap.NumberOfSprites", [&] {
        self_->saving.RefuseChange();
        SetCount(self_->numberOfSprites, self_->sprites, NewValue);
    });
}

bool clsVSwap::HiResInput() const {
    return self_->hiResInput;
}

std::int32_t clsVSwap::NumberOfChunks() const {
    return static_cast<std::int32_t>(self_->index.offsets.size());
}

void clsVSwap::LoadChunk(std::int32_t ChunkNum, ByteArray& Data) {
    Guarded("clsVSwap.LoadChunk", [&] {
        ByteArray bytes = self_->Opened().Read(ChunkNum);
        if (bytes.empty())
            bytes = kNoData;
        Data = std::move(bytes);
    });
}

bool clsVSwap::LoadWall(std::int32_t WallNum, ByteArray& Data) {
    return Guarded("clsVSwap.LoadWall", [&] {
        PageItem& wall = self_->ItemAt(self_->walls, WallNum);
        if (wall.from == PageItem::From::File) {
            ByteArray image = kNoData;
            // Walls that the host added have no chunk.
            if (WallNum < self_->index.walls) {
                const ByteArray chunk = self_->Opened().Read(WallNum);
                if (!chunk.empty()) {
                    self_->wallSize = chunk.size() == kHiResChunk ? 128 : 64;
                    image = ImageOfColumns(chunk, self_->wallSize);
                }
            }
            wall = {PageItem::From::Cache, std::move(image)};
        }
        Data = wall.image;
        return true;
    });
}

bool clsVSwap::LoadSprite(std::int32_t SpriteNum, ByteArray& Data) {
    return Guarded("clsVSwap.LoadSprite", [&] {
        PageItem& sprite = self_->ItemAt(self_->sprites, SpriteNum);
        if (sprite.from == PageItem::From::File) {
            ByteArray image = kNoData;
            if (SpriteNum < self_->index.sprites) {
                const ByteArray chunk = self_->Opened().Read(self_->index.walls + SpriteNum);
                if (!chunk.empty())
                    image =
                        ImageOfColumns(DecodeSprite(chunk, self_->spriteSize), self_->spriteSize);
            }
            sprite = {PageItem::From::Cache, std::move(image)};
        }
        Data = sprite.image;
        return true;
    });
}

bool clsVSwap::LoadSound(std::int32_t SoundNum, ByteArray& Data, std::int32_t& Length) {
    return Guarded("clsVSwap.LoadSound", [&] {
        PageItem& sound = self_->ItemAt(self_->sounds, SoundNum);
        if (sound.from == PageItem::From::File) {
            const auto chunk = self_->index.SoundChunk(static_cast<std::size_t>(SoundNum));
            ByteArray image = chunk ? self_->Opened().Read(*chunk) : ByteArray();
            const auto samples = static_cast<std::int32_t>(image.size());
            if (samples > 0)
                modAddWAVHeader::AddWaveHeader(samples, image);
            else
                image = kNoData;
            sound = {PageItem::From::Cache, std::move(image), samples};
        }
        Data = sound.image;
        Length = sound.samples;
        return true;
    });
}

std::int32_t clsVSwap::GetSpriteCompressedSize(const ByteArray& Data,
                                               enmVSWAPCompression Compression) {
    return Guarded(
        "clsVSwap.GetSpriteCompressedSize",
        [&] {
            if (Data.size() <= 1)
                return 1;
            const auto chunk = FixSpriteData(Data, Compression);
            return chunk ? Narrow<std::int32_t>(chunk->size()) : -1;
        },
        -1);
}

void clsVSwap::SetChunkData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsVSwap.SetChunkData", [&] {
        self_->saving.RefuseChange();
        const std::int32_t walls = self_->numberOfWalls;
        PageItem& item = Chunk < walls ? self_->ItemAt(self_->walls, Chunk)
                                       : self_->ItemAt(self_->sprites, Chunk - walls);
        item = {PageItem::From::Host, Data};
    });
}

void clsVSwap::SetSoundData(std::int32_t SoundNum, const ByteArray& Data) {
    Guarded("clsVSwap.SetSoundData", [&] {
        self_->saving.RefuseChange();
        PageItem& item = self_->ItemAt(self_->sounds, SoundNum);
        PageItem sound{PageItem::From::Host, Data};
        if (sound.HasData()) {
            ByteArray samples;
            std::int32_t rate = 0;
            std::int16_t bits = 0;
            std::int16_t channels = 0;
            modAddWAVHeader::RemoveWaveHeader(Data, samples, rate, bits, channels);
            sound.samples = Narrow<std::int32_t>(samples.size());
        }
        item = std::move(sound);
    });
}

}  // namespace tessaro
