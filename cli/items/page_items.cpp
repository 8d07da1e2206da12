// Walls, sprites and digitised sounds.
#include "items/item.h"
#include "report.h"
#include "sounds/wav.h"

namespace tessaro::cli {

namespace {

/// Walls and sprites. Canonical bytes: the palette indices, row by row.
class PageImageKind : public ItemKind {
public:
    using Loader = bool (clsVSwap::*)(std::int32_t, ByteArray&);
    using Counter = std::int32_t (clsVSwap::*)() const;

    PageImageKind(const char* name, Loader load, Counter count, std::optional<std::uint8_t> hole)
        : name_(name), load_(load), count_(count), hole_(hole) {}

    std::string Name() const override { return name_; }
    bool In(Game& game) const override { return game.HasPages(); }
    std::vector<int> Numbers(Game& game) const override {
        return CountedFrom0((game.Pages().*count_)());
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        ByteArray bmp;
        if (!(game.Pages().*load_)(number, bmp))
            Fail(name_ + " " + std::to_string(number));
        item.empty = HasNoData(bmp);
        if (item.empty)
            return item;
        item.image = FromBmp(bmp);
        item.image->hole = hole_;
        item.width = item.image->width;
        item.height = item.image->height;
        item.bytes = item.image->pixels;
        return item;
    }

    void Extract(Game&, const Item& item, Extraction& to) const override {
        to.Write(Stem(item), *item.image);
    }

private:
    std::string name_;
    Loader load_;
    Counter count_;
    std::optional<std::uint8_t> hole_;
};

/// Canonical bytes: the samples.
class SoundKind : public ItemKind {
public:
    std::string Name() const override { return "sound"; }
    bool In(Game& game) const override { return game.HasPages(); }
    std::vector<int> Numbers(Game& game) const override {
        return CountedFrom0(game.Pages().NumberOfSounds());
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        const ByteArray wav = LoadWav(game, number);
        item.empty = HasNoData(wav);
        if (!item.empty)
            item.bytes = ReadWav(wav).samples;
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        to.Write(Stem(item) + ".wav", LoadWav(game, item.number), kWavFile);
    }

private:
    static ByteArray LoadWav(Game& game, int number) {
        ByteArray wav;
        std::int32_t length = 0;
        if (!game.Pages().LoadSound(number, wav, length))
            Fail("sound " + std::to_string(number));
        return wav;
    }
};

}  // namespace

std::vector<const ItemKind*> PageKinds() {
    static const PageImageKind walls("wall", &clsVSwap::LoadWall, &clsVSwap::NumberOfWalls, {});
    static const PageImageKind sprites("sprite", &clsVSwap::LoadSprite, &clsVSwap::NumberOfSprites,
                                       kHole);
    static const SoundKind sounds;
    return {&walls, &sprites, &sounds};
}

}  // namespace tessaro::cli
