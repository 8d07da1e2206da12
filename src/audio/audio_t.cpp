#include "tessaro/audio_t.h"

#include <algorithm>
#include <utility>

#include "audio/audio_save.h"
#include "audio/audio_set.h"
#include "foundation/guard.h"
#include "foundation/store.h"
#include "saving/recovery.h"
#include "saving/save_set.h"

namespace tessaro {
namespace {

constexpr std::int32_t kMostChunks = 65535;

}  // namespace

struct clsAudioT::Self {
    std::shared_ptr<Game> game;
    AudioSet set;
    SavingFlag saving;

    /// The set with its bytes at hand.
    AudioSet& Opened() {
        if (set.data.WasRead())
            set.data.Reopen(*game->files);
        return set;
    }
};

/// One save of one object.
class AudioSave final : public SetSave {
public:
    explicit AudioSave(clsAudioT& owner)
        : SetSave("clsAudioT.SaveAudioT",
                  owner.self_->game ? owner.self_->game : SharedStore().game, owner.self_->saving),
          owner_(owner),
          self_(*owner.self_) {}

    std::vector<NewFile> Write() override {
        if (!self_.game)  // else the game's own files would make way for empty ones
            throw Failure(kInvalidProcedureCall, "No audio is loaded.");
        Game& settings = Settings();
        settings.audioHeaderFile = settings.OutputPath(settings.audioHeaderFile);
        settings.audioDataFile = settings.OutputPath(settings.audioDataFile);
        settings.audioIsCompressed = self_.set.compressed;
        settings.egaGraphics = self_.set.sixteenColors;
        const AudioSet& set = self_.Opened();
        inPlace_ = IsInPlace(*settings.files, settings.audioDataFile, set.data) &&
                   IsInPlace(*settings.files, settings.audioHeaderFile, set.header);
        return set.Write(settings.audioHeaderFile, settings.audioDataFile,
                         {[&](std::int32_t chunk) { chunk_ = chunk; },
                          [&](std::int32_t chunk) {
                              Flag().Status([&] {
                                  if (owner_.SaveStatus)
                                      owner_.SaveStatus(chunk + 1, set.count);
                              });
                          }});
    }

    void Prove(const Files& files) override {
        try {
            reread_ = AudioSet::Open(AtStart(), files);
        } catch (const Failure& failure) {
            if (failure.Number == kStartMusicNotFound)
                self_.set.RefuseCounts();
            throw;
        }
        self_.set.RequireSame(reread_);
    }

    std::vector<DataFile*> Read() override {
        return inPlace_ ? std::vector{&self_.set.header, &self_.set.data}
                        : std::vector<DataFile*>();
    }

    std::vector<std::string> Changed() const override {
        std::vector<std::string> items;
        for (const auto& [chunk, bytes] : self_.set.replaced)
            items.push_back("audio " + std::to_string(chunk));
        return items;
    }

    void Adopt() override {
        if (inPlace_)
            self_.set.Adopt(std::move(reread_));
    }

    void RaiseError(const Failure& failure) override {
        if (owner_.SaveError)
            owner_.SaveError(chunk_, failure.Description);
    }
    void RaiseComplete(bool success) override {
        if (owner_.SaveComplete)
            owner_.SaveComplete(success);
    }

private:
    clsAudioT& owner_;
    clsAudioT::Self& self_;
    AudioSet reread_;
    bool inPlace_ = false;
    std::int32_t chunk_ = 0;
};

clsAudioT::clsAudioT() : self_(std::make_unique<Self>()) {}
clsAudioT::~clsAudioT() = default;

bool clsAudioT::InitializeMusic() {
    return Guarded("clsAudioT.InitializeMusic", [&] {
        self_->saving.RefuseChange();
        *self_ = Self();
        const std::shared_ptr<Game> game = SharedStore().game;
        std::vector<std::string> notices;
        AudioSet set = ReadSet(*game->files, {game->audioHeaderFile, game->audioDataFile}, notices,
                               [&](const Files& files) { return AudioSet::Open(*game, files); });
        self_->game = game;
        self_->set = std::move(set);
        ShowNotices(notices);
        return true;
    });
}

void clsAudioT::CloseFile() {
    self_->set.data.Close();
}

bool clsAudioT::LoadChunk(std::int32_t Chunk, ByteArray& Data, std::int32_t& SIZE) {
    return Guarded("clsAudioT.LoadChunk", [&] {
        ByteArray bytes = self_->Opened().Bytes(Chunk);
        SIZE = Narrow<std::int32_t>(bytes.size());
        Data = std::move(bytes);
        return true;
    });
}

void clsAudioT::SetChunkData(std::int32_t Chunk, const ByteArray& Data) {
    Guarded("clsAudioT.SetChunkData", [&] {
        self_->saving.RefuseChange();
        self_->set.CheckChunk(Chunk);
        self_->set.replaced[Chunk] = Data;
    });
}

bool clsAudioT::SaveAudioT() {
    AudioSave save(*this);
    return SaveSet(save);
}

std::unique_ptr<SetSave> MakeSave(clsAudioT& audio) {
    return std::make_unique<AudioSave>(audio);
}

void clsAudioT::StopSave() {
    Guarded("clsAudioT.StopSave", [&] { self_->saving.AskToStop(); });
}

std::int32_t clsAudioT::NumberOfChunks() const {
    return self_->set.count;
}

void clsAudioT::NumberOfChunks(std::int32_t NewValue) {
    Guarded("clsAudioT.NumberOfChunks", [&] {
        self_->saving.RefuseChange();
        if (NewValue < 0 || NewValue > kMostChunks)
            throw Failure(kSubscriptOutOfRange);
        self_->set.Resize(NewValue);
    });
}

std::int32_t clsAudioT::StartMusic() const {
    return self_->set.startMusic;
}

std::int32_t clsAudioT::NumberOfSongs() const {
    return StartMusic() < 0 ? 0 : self_->set.count - StartMusic();
}

std::int32_t clsAudioT::NumberOfSounds() const {
    return StartMusic() < 0 ? 0 : StartMusic() / 3;
}

}  // namespace tessaro
