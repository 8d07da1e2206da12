// Saving: everything is converted and laid out in memory first, so that the old files are read
// whole before any of them moves.
#include "foundation/guard.h"
#include "foundation/store.h"
#include "images/wav_image.h"
#include "pagefile/column_images.h"
#include "pagefile/sprite_chunk.h"
#include "pagefile/vswap_self.h"
#include "saving/replace_files.h"

namespace tessaro {
namespace {

constexpr std::int32_t kWallNotIndexed = 1512;
constexpr std::int32_t kSpriteNotIndexed = 1513;
constexpr std::int32_t kSpriteTooBig = 1514;
constexpr std::int32_t kSoundFormat = 1515;
constexpr std::int32_t kSoundTooBig = 1516;

constexpr std::size_t kLongestSound = 65535;
constexpr std::size_t kHiResChunkSize = 16384;

/// Under this name, spelled so, users find the failures of a save in the log.
constexpr std::string_view kProcedure = "clsVSWAP.SaveVSwap";

}  // namespace

/// One save of one object.
class PageFileSave {
public:
    PageFileSave(clsVSwap& owner, enmVSWAPCompression compression)
        : owner_(owner),
          self_(*owner.self_),
          compression_(compression),
          pageFile_(compression == vcOriginal ? 512 : 1) {}

    bool Run();

private:
    std::vector<NewFile> Build();
    template <class Save>
    void SaveAll(enmChunkType kind, const std::vector<PageItem>& items, Save&& save);
    void SaveWall();
    void SaveSprite(std::int32_t side);
    void SaveSound();
    ByteArray SamplesOf(const PageItem& sound);
    void SaveReplacedSound();
    void StoreSound(bool inExtraFile, const StoredSound& sound);
    void PassSoundsThrough();

    PageItem& Item(std::vector<PageItem>& items) { return self_.ItemAt(items, number_); }
    std::string Headline() const;
    void RefuseOtherSprite(std::int32_t width, std::int32_t height, std::int32_t side);
    [[noreturn]] void Refuse(std::int32_t code, const std::string& reason,
                             const std::string& solutions);
    Failure Named(Failure failure) const;
    void RaiseComplete(bool success);
    void Reload();

    clsVSwap& owner_;
    clsVSwap::Self& self_;
    const enmVSWAPCompression compression_;
    PageFileImage pageFile_;
    std::optional<ExtraFileImage> extraFile_;
    std::vector<SoundEntry> list_;  ///< of the page file

    // Where the save stands, for the events and the texts.
    enmChunkType kind_ = ctWall;
    std::int32_t number_ = 0;
    bool converting_ = false;
    bool explained_ = false;
};

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
        if (owner_.SaveStatus)
            owner_.SaveStatus(static_cast<std::int32_t>(before + i) + 1,
                              static_cast<std::int32_t>(total));
    }
    converting_ = false;
}

void PageFileSave::SaveWall() {
    const PageItem& wall = Item(self_.walls);
    if (wall.from != PageItem::From::Host) {
        pageFile_.AddChunk(number_ < self_.index.walls ? self_.index.Read(number_) : ByteArray());
        return;
    }
    if (!wall.HasData()) {
        pageFile_.AddChunk({});
        return;
    }
    ByteArray chunk;
    ImageSize size;
    if (!FixWallData(wall.image, chunk, size))
        Refuse(kWallNotIndexed, "BMP was not 256 colors.", "1) Convert the BMP to 256 colors.");
    if (size.width != size.height || (size.width != 64 && size.width != 128))
        Refuse(kInvalidProcedureCall,
               "The BMP has " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                   " pixels. A wall has 64 x 64 or 128 x 128.",
               "1) Change the size of the BMP.");
    pageFile_.AddChunk(chunk);
}

void PageFileSave::RefuseOtherSprite(std::int32_t width, std::int32_t height, std::int32_t side) {
    if (width != side || height != side)
        Refuse(kInvalidProcedureCall,
               "The BMP has " + std::to_string(width) + " x " + std::to_string(height) +
                   " pixels. The sprites of this set have " + std::to_string(side) + " x " +
                   std::to_string(side) + ", as its first wall.",
               "1) Change the size of the BMP.");
}

void PageFileSave::SaveSprite(std::int32_t side) {
    const PageItem& sprite = Item(self_.sprites);
    const bool set = sprite.from == PageItem::From::Host;
    ByteArray chunk;
    if (set && sprite.HasData()) {
        const ColumnsOfImage image = StripToColumns(sprite.image);
        if (image.bitsPerPixel != 8)
            Refuse(kSpriteNotIndexed, "BMP was not 256 colors.",
                   "1) Convert the BMP to 256 colors.");
        RefuseOtherSprite(image.width, image.height, side);
        chunk = CompileSprite(image.columns, side, compression_);
    } else if (!set && number_ < self_.index.sprites) {
        const ByteArray stored = self_.index.Read(self_.index.walls + number_);
        if (!stored.empty()) {
            RefuseOtherSprite(self_.spriteSize, self_.spriteSize, side);
            chunk = CompileSprite(DecodeSprite(stored, side), side, compression_);
        }
    }
    if (std::cmp_greater(chunk.size(), self_.outputPageSize))
        Refuse(kSpriteTooBig,
               "Compressed sprite data too big (" + std::to_string(chunk.size()) +
                   ", MAX: " + std::to_string(self_.outputPageSize) + ").",
               "1) Reduce the amount of transparent areas.\r\n2) Reduce the sprite's size.");
    pageFile_.AddChunk(chunk);
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
        const auto i = static_cast<std::size_t>(number_);
        if (const auto chunk = self_.index.SoundChunk(i))
            stored = self_.index.ReadSound(*chunk, self_.index.sounds[i].length);
    }
    const bool anyLength = inExtraFile && ConfiguredGame().readSoundLengthsAsLong;
    if (stored.bytes.size() > kLongestSound && !anyLength)
        Refuse(kSoundTooBig,
               "Sound data too big (" + std::to_string(stored.bytes.size()) +
                   ", MAX: " + std::to_string(kLongestSound) + ").",
               "1) Shorten the sound.\r\n2) Use a different WAV file.");
    StoreSound(inExtraFile, stored);
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

std::vector<NewFile> PageFileSave::Build() {
    const SavingFlag::Scope scope(self_.saving);
    PageIndex& index = self_.index;
    std::vector<NewFile> files{{ConfiguredGame().OutputPath(index.path), {}}};
    if (!index.extraPath.empty())
        files.push_back({ConfiguredGame().OutputPath(index.extraPath), {}});

    SaveAll(ctWall, self_.walls, [&] { SaveWall(); });
    // The first wall tells the size of the sprites to whoever reads the file.
    const bool hiRes =
        self_.walls.empty() ? self_.hiResInput : pageFile_.LengthOf(0) == kHiResChunkSize;
    SaveAll(ctSprite, self_.sprites, [&] { SaveSprite(hiRes ? 128 : 64); });

    const auto spriteStart = static_cast<std::int32_t>(self_.walls.size());
    const std::int32_t soundStart = pageFile_.Count();
    if (index.soundsFailed) {
        PassSoundsThrough();
        if (!index.extraPath.empty())
            files[1].content = ReadWholeFile(index.extraPath);
    } else {
        if (index.HasExtraFile())
            extraFile_.emplace();
        if (index.replacedSound)
            SaveReplacedSound();
        SaveAll(ctSound, self_.sounds, [&] { SaveSound(); });
        if (index.hasSoundList || !list_.empty())
            pageFile_.AddChunk(WriteSoundList(list_, SoundListForm::Short));
        if (extraFile_)
            files[1].content = extraFile_->Assemble(ConfiguredGame().readSoundLengthsAsLong
                                                        ? SoundListForm::Long
                                                        : SoundListForm::Short);
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

/// A handler that throws is reported and changes nothing about the save's end.
void PageFileSave::RaiseComplete(bool success) {
    Guarded(kProcedure, [&] {
        if (owner_.SaveComplete)
            owner_.SaveComplete(success);
    });
}

/// The items and their counts stay as the host has them.
void PageFileSave::Reload() {
    if (self_.LoadSwapFile(std::string(self_.index.path)))
        return;
    modGlobal::SetErrorState(Failure(0,
                                     "Error reloading original VSWAP.\r\n"
                                     "Please shutdown and restart the program."));
    modGlobal::ReportError(kProcedure);
}

bool PageFileSave::Run() {
    if (self_.index.path.empty())
        throw Failure(kBadFileNameOrNumber);
    try {
        const std::vector<NewFile> files = Build();
        self_.index.Close();
        if (!ReplaceFiles(files)) {
            RaiseComplete(false);
            Reload();
            return false;
        }
    } catch (...) {
        const Failure failure = Named(CurrentFailure());
        Guarded(kProcedure, [&] {
            if (owner_.SaveError)
                owner_.SaveError(number_, kind_);
        });
        RaiseComplete(false);
        Reload();
        throw failure;
    }
    self_.LoadSwapFile(std::string(self_.index.path));
    RaiseComplete(true);
    return true;
}

bool clsVSwap::SaveVSwap(enmVSWAPCompression Compression) {
    return Guarded(kProcedure, [&] {
        self_->saving.RefuseChange();
        return PageFileSave(*this, Compression).Run();
    });
}

}  // namespace tessaro
