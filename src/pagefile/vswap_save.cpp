// Saving: everything is converted and laid out in memory first, so that the old files are read
// whole before any of them moves.
#include <algorithm>

#include "foundation/guard.h"
#include "foundation/store.h"
#include "images/wav_image.h"
#include "pagefile/column_images.h"
#include "pagefile/page_file_save.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/vswap_save.h"
#include "saving/recovery.h"

namespace tessaro {
namespace {

constexpr std::int32_t kWallNotIndexed = 1512;
constexpr std::int32_t kSpriteNotIndexed = 1513;
constexpr std::int32_t kSpriteTooBig = 1514;
constexpr std::int32_t kSoundFormat = 1515;
constexpr std::int32_t kSoundTooBig = 1516;

constexpr std::size_t kLongestSound = 65535;
constexpr std::size_t kHiResChunkSize = 16384;

}  // namespace

std::string PageFileSave::Headline() const {
    const std::string text = kind_ == ctWall     ? "Error at wall chunk #"
                             : kind_ == ctSprite ? "Error at sprite chunk #"
                                                 : "Error at sound #";
    return text + std::to_string(number_) + "\r\n\r\nReason:\r\n";
}

void PageFileSave::Refuse(std::int32_t code, const std::string& reason,
                          const std::string& solutions) {
    explained_ = true;
    throw Failure(code, Headline() + reason + "\r\n\r\nSolutions: \r\n" + solutions);
}

/// What failed while an item was being converted names that item.
Failure PageFileSave::Named(Failure failure) const {
    if (converting_ && !explained_)
        failure.Description = Headline() + failure.Description;
    return failure;
}

/// Each item of a kind in turn, and the event after it.
template <class Save>
void PageFileSave::SaveAll(enmChunkType kind, const std::vector<PageItem>& items, Save&& save) {
    const std::size_t total = self_.walls.size() + self_.sprites.size() + self_.sounds.size();
    const std::size_t before = kind == ctWall     ? 0
                               : kind == ctSprite ? self_.walls.size()
                                                  : self_.walls.size() + self_.sprites.size();
    kind_ = kind;
    converting_ = true;
    for (std::size_t i = 0; i < items.size(); ++i) {
        number_ = static_cast<std::int32_t>(i);
        save();
        Flag().Status([&] {
            if (owner_.SaveStatus)
                owner_.SaveStatus(static_cast<std::int32_t>(before + i) + 1,
                                  static_cast<std::int32_t>(total));
        });
    }
    converting_ = false;
}

/// A wall as it will be stored; no bytes where it has no data.
ByteArray PageFileSave::WallChunk() {
    const PageItem& wall = Item(self_.walls);
    if (wall.from != PageItem::From::Host)
        return number_ < self_.index.walls ? self_.index.Read(number_) : ByteArray();
    if (!wall.HasData())
        return {};
    ByteArray chunk;
    ImageSize size;
    std::string reason = "BMP was not 256 colors.";
    bool fixed = false;
    try {
        fixed = FixWallData(wall.image, chunk, size);
    } catch (const Failure& failure) {  // the image is damaged
        reason = failure.Description;
    }
    if (!fixed)
        Refuse(kWallNotIndexed, reason, "1) Convert the BMP to 256 colors.");
    if (size.width != size.height || (size.width != 64 && size.width != 128))
        Refuse(kInvalidProcedureCall,
               "The BMP has " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                   " pixels. A wall has 64 x 64 or 128 x 128.",
               "1) Change the size of the BMP.");
    return chunk;
}

void PageFileSave::RefuseOtherSprite(std::int32_t width, std::int32_t height) {
    if (width != side_ || height != side_)
        Refuse(kInvalidProcedureCall,
               "The BMP has " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels. The sprites of this set have " + std::to_string(side_) + " x " +
                   std::to_string(side_) + ", as its first wall.",
               "1) Change the size of the BMP.");
}

/// A sprite's pixels, column by column; none where it has no data.
ByteArray PageFileSave::SpritePixels() {
    const PageItem& sprite = Item(self_.sprites);
    if (sprite.from == PageItem::From::Host) {
        if (!sprite.HasData())
            return {};
        ColumnsOfImage image = StripToColumns(sprite.image);
        if (image.bitsPerPixel != 8)
            Refuse(kSpriteNotIndexed, "BMP was not 256 colors.",
                   "1) Convert the BMP to 256 colors.");
        RefuseOtherSprite(image.width, image.height);
        return std::move(image.columns);
    }
    if (number_ >= self_.index.sprites)
        return {};
    const ByteArray stored = self_.index.Read(self_.index.walls + number_);
    if (stored.empty())
        return {};
    RefuseOtherSprite(self_.spriteSize, self_.spriteSize);
    return DecodeSprite(stored, side_);
}

void PageFileSave::SaveSprite() {
    ByteArray pixels = SpritePixels();
    const ByteArray chunk =
        pixels.empty() ? ByteArray() : CompileSprite(pixels, side_, compression_);
    if (std::cmp_greater(chunk.size(), self_.outputPageSize))
        Refuse(kSpriteTooBig,
               "Compressed sprite data too big (" + std::to_string(chunk.size()) +
                   ", MAX: " + std::to_string(self_.outputPageSize) + ").",
               "1) Reduce the amount of transparent areas.\r\n2) Reduce the sprite's size.");
    pageFile_.AddChunk(chunk);
    sprites_.push_back(std::move(pixels));
}

/// The samples of a sound that the host set.
ByteArray PageFileSave::SamplesOf(const PageItem& sound) {
    ByteArray samples;
    if (!sound.HasData())
        return samples;
    std::int32_t rate = 0;
    std::int16_t bits = 0;
    std::int16_t channels = 0;
    modAddWAVHeader::RemoveWaveHeader(sound.image, samples, rate, bits, channels);
    if (rate != 7042 || bits != 8 || channels != 1)
        Refuse(kSoundFormat,
               "The WAV file's format is: " + std::to_string(rate) + "Hz " + std::to_string(bits) +
                   "-bit" + (channels == 1 ? ", Mono" : ", Stereo") +
                   ".\r\nThe format needs to be: 7042Hz 8-bit, Mono.",
               "1) Convert the WAV file to the proper format.\r\n2) Use a different WAV file.");
    return samples;
}

void PageFileSave::SaveSound() {
    const bool inExtraFile = extraFile_ && number_ >= self_.index.firstExtraSound;
    const PageItem& sound = Item(self_.sounds);
    StoredSound stored;
    if (sound.from == PageItem::From::Host) {
        stored.bytes = SamplesOf(sound);
        stored.listLength = Narrow<std::int32_t>(stored.bytes.size());
    } else {
        stored = self_.index.ReadServedSound(static_cast<std::size_t>(number_));
    }
    const bool anyLength = inExtraFile && self_.index.HasLongLengths();
    if (stored.bytes.size() > kLongestSound && !anyLength)
        Refuse(kSoundTooBig,
               "Sound data too big (" + std::to_string(stored.bytes.size()) +
                   ", MAX: " + std::to_string(kLongestSound) + ").",
               "1) Shorten the sound.\r\n2) Use a different WAV file.");
    StoreSound(inExtraFile, stored);
    sounds_.push_back(std::move(stored));
}

/// Nobody hears the sound whose place the extra file's list took, and nobody can replace it: it is
/// kept as far as it is there.
void PageFileSave::SaveReplacedSound() {
    kind_ = ctSound;
    number_ = 0;
    converting_ = true;
    StoreSound(false, self_.index.ReadReplacedSound());
    converting_ = false;
}

void PageFileSave::StoreSound(bool inExtraFile, const StoredSound& sound) {
    if (inExtraFile) {
        extraFile_->AddSound(sound.bytes, sound.listLength);
    } else {
        const auto pages = static_cast<std::int32_t>(self_.walls.size() + self_.sprites.size());
        list_.push_back({pageFile_.Count() - pages, sound.listLength});
        pageFile_.AddSound(sound.bytes);
    }
}

std::vector<NewFile> PageFileSave::Write() {
    if (!self_.index.page.WasRead())
        throw Failure(kBadFileNameOrNumber);
    try {
        return Build();
    } catch (...) {
        throw Named(CurrentFailure());
    }
}

std::vector<NewFile> PageFileSave::Build() {
    PageIndex& index = self_.Opened();
    Game& settings = Settings();
    const bool hasExtra = index.extra.WasRead();
    std::vector<NewFile> files{{settings.OutputPath(index.page.Path()), {}}};
    inPlace_ = IsInPlace(*settings.files, files[0].path, index.page);
    if (hasExtra) {
        files.push_back({settings.OutputPath(index.extra.Path()), {}});
        inPlace_ = inPlace_ && IsInPlace(*settings.files, files[1].path, index.extra);
    }
    settings.vswapFile = files[0].path;
    if (!inPlace_) {  // where whoever opens the new set looks for the extra file
        settings.dataPath = settings.outputFolder;
        settings.dataExtension = settings.compileExtension;
    }

    SaveAll(ctWall, self_.walls, [&] {
        walls_.push_back(WallChunk());
        pageFile_.AddChunk(walls_.back());
    });
    // The first wall tells the size of the sprites to whoever reads the file.
    const bool hiRes =
        self_.walls.empty() ? self_.hiResInput : pageFile_.LengthOf(0) == kHiResChunkSize;
    side_ = hiRes ? 128 : 64;
    SaveAll(ctSprite, self_.sprites, [&] { SaveSprite(); });

    const auto spriteStart = static_cast<std::int32_t>(self_.walls.size());
    const std::int32_t soundStart = pageFile_.Count();
    if (index.soundsFailed) {
        PassSoundsThrough();
        if (hasExtra)
            files[1].content.assign(index.extra.Bytes().begin(), index.extra.Bytes().end());
    } else {
        if (index.HasExtraFile())
            extraFile_.emplace();
        if (index.replacedSound)
            SaveReplacedSound();
        SaveAll(ctSound, self_.sounds, [&] { SaveSound(); });
        if (index.hasSoundList || !list_.empty())
            pageFile_.AddChunk(WriteSoundList(list_, SoundListForm::Short));
        if (extraFile_)
            files[1].content = extraFile_->Assemble(index.extraForm);
    }
    files[0].content = pageFile_.Assemble(spriteStart, soundStart);
    return files;
}

/// Sounds that could not be found are kept as they are stored.
void PageFileSave::PassSoundsThrough() {
    SaveAll(ctSound, self_.sounds, [&] {
        if (Item(self_.sounds).from == PageItem::From::Host)
            Refuse(kInvalidProcedureCall, "The sounds of this set could not be loaded.",
                   "1) Save without changing sounds.");
    });
    PageIndex& index = self_.index;
    for (std::int32_t chunk = index.soundStart; chunk < index.fileChunks; ++chunk) {
        const std::int32_t length = index.storedLengths[static_cast<std::size_t>(chunk)];
        pageFile_.AddChunk(index.ReadWhatIsThere(chunk, length));
    }
}

void PageFileSave::RefuseProof(enmChunkType kind, std::size_t number) {
    kind_ = kind;
    number_ = static_cast<std::int32_t>(number);
    Refuse(0, "It would not read back as it was given.", "1) Use other data.");
}

void PageFileSave::Prove(const Files& files) {
    reread_ = PageIndex::Open(AtStart(), files);
    const PageIndex& index = self_.index;
    if (std::cmp_not_equal(reread_.walls, walls_.size()) ||
        std::cmp_not_equal(reread_.sprites, sprites_.size()) ||
        reread_.soundsFailed != index.soundsFailed ||
        (!index.soundsFailed && std::cmp_not_equal(reread_.soundCount, sounds_.size())))
        throw Failure(0,
                      "The page file would be read with other numbers of walls, sprites or "
                      "sounds than it has. Give the last sound data, or take it out.");
    for (std::size_t i = 0; i < walls_.size(); ++i) {
        if (reread_.Read(static_cast<std::int32_t>(i)) != walls_[i])
            RefuseProof(ctWall, i);
    }
    for (std::size_t i = 0; i < sprites_.size(); ++i) {
        const auto isTransparent = [](std::uint8_t pixel) { return pixel == kTransparent; };
        const ByteArray chunk = reread_.Read(reread_.walls + static_cast<std::int32_t>(i));
        const ByteArray pixels = chunk.empty() ? ByteArray() : DecodeSprite(chunk, side_);
        if (pixels != sprites_[i] && !(std::ranges::all_of(pixels, isTransparent) &&
                                       std::ranges::all_of(sprites_[i], isTransparent)))
            RefuseProof(ctSprite, i);
    }
    // The bytes of the pages count: a sound whose length says that it is empty has them, too.
    for (std::size_t i = 0; i < sounds_.size(); ++i) {
        const auto chunk = reread_.SoundChunk(i);
        const StoredSound there =
            chunk ? reread_.ReadSound(*chunk, reread_.sounds[i].length) : StoredSound();
        if (there.bytes != sounds_[i].bytes)
            RefuseProof(ctSound, i);
    }
}

std::vector<DataFile*> PageFileSave::Read() {
    if (!inPlace_)
        return {};
    std::vector<DataFile*> read{&self_.index.page};
    if (self_.index.extra.WasRead())
        read.push_back(&self_.index.extra);
    return read;
}

std::vector<std::string> PageFileSave::Changed() const {
    std::vector<std::string> items;
    const auto add = [&](const char* kind, const std::vector<PageItem>& all) {
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (all[i].from == PageItem::From::Host)
                items.push_back(kind + std::to_string(i));
        }
    };
    add("wall ", self_.walls);
    add("sprite ", self_.sprites);
    add("sound ", self_.sounds);
    return items;
}

/// The container serves what it served before; only that its files can be read still is tried.
void PageFileSave::PutBack() {
    if (!self_.game)
        return;
    try {
        std::vector<std::string> notices;
        ReadSet(*self_.game->files, {self_.index.page.Path()}, notices,
                [&](const Files& files) { return DataFile::Read(files, self_.index.page.Path()); });
    } catch (...) {
        Report(kPageFileSave, Failure(0,
                                      "Error reloading original VSWAP.\r\n"
                                      "Please shutdown and restart the program."));
    }
}

bool clsVSwap::SaveVSwap(enmVSWAPCompression Compression) {
    PageFileSave save(*this, Compression);
    return SaveSet(save);
}

std::unique_ptr<SetSave> MakeSave(clsVSwap& pages, enmVSWAPCompression compression) {
    return std::make_unique<PageFileSave>(pages, compression);
}

void clsVSwap::StopSave() {
    Guarded("clsVSwap.StopSave", [&] { self_->saving.AskToStop(); });
}

}  // namespace tessaro
