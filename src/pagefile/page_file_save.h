// One save of a page file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/store.h"
#include "pagefile/vswap_self.h"
#include "saving/save_set.h"

namespace tessaro {

/// Under this name, spelled so, users find the failures of a save in the log.
inline constexpr std::string_view kPageFileSave = "clsVSWAP.SaveVSwap";

/// One save of one object.
class PageFileSave final : public SetSave {
public:
    PageFileSave(clsVSwap& owner, enmVSWAPCompression compression)
        : SetSave(kPageFileSave, owner.self_->game ? owner.self_->game : SharedStore().game,
                  owner.self_->saving),
          owner_(owner),
          self_(*owner.self_),
          compression_(compression),
          pageFile_(compression == vcOriginal ? 512 : 1) {}

    std::vector<NewFile> Write() override;
    void Prove(const Files& files) override;
    std::vector<DataFile*> Read() override;
    std::vector<std::string> Changed() const override;
    void Adopt() override {
        if (inPlace_)
            self_.Serve(std::move(reread_));
    }
    void PutBack() override;
    void RaiseError(const Failure&) override {
        if (owner_.SaveError)
            owner_.SaveError(number_, kind_);
    }
    void RaiseComplete(bool success) override {
        if (owner_.SaveComplete)
            owner_.SaveComplete(success);
    }

private:
    std::vector<NewFile> Build();
    template <class Save>
    void SaveAll(enmChunkType kind, const std::vector<PageItem>& items, Save&& save);
    ByteArray WallChunk();
    ByteArray SpritePixels();
    void SaveSprite();
    void SaveSound();
    ByteArray SamplesOf(const PageItem& sound);
    void SaveReplacedSound();
    void StoreSound(bool inExtraFile, const StoredSound& sound);
    void PassSoundsThrough();
    [[noreturn]] void RefuseProof(enmChunkType kind, std::size_t number);

    PageItem& Item(std::vector<PageItem>& items) { return self_.ItemAt(items, number_); }
    std::string Headline() const;
    void RefuseOtherSprite(std::int32_t width, std::int32_t height);
    [[noreturn]] void Refuse(std::int32_t code, const std::string& reason,
                             const std::string& solutions);
    Failure Named(Failure failure) const;

    clsVSwap& owner_;
    clsVSwap::Self& self_;
    const enmVSWAPCompression compression_;
    PageFileImage pageFile_;
    std::optional<ExtraFileImage> extraFile_;
    std::vector<SoundEntry> list_;  ///< of the page file
    std::int32_t side_ = 64;        ///< of the sprites written
    bool inPlace_ = false;

    // What has to be read back: chunks of walls, pixels of sprites (none: no data), sounds.
    std::vector<ByteArray> walls_, sprites_;
    std::vector<StoredSound> sounds_;
    PageIndex reread_;

    // Where the save stands, for the events and the texts.
    enmChunkType kind_ = ctWall;
    std::int32_t number_ = 0;
    bool converting_ = false;
    bool explained_ = false;
};

}  // namespace tessaro
