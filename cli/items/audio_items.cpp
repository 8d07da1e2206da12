// Audio chunks: effects in three groups, and music.
#include <algorithm>
#include <array>

#include "console.h"
#include "files.h"
#include "items/item.h"
#include "report.h"
#include "sounds/music.h"

namespace tessaro::cli {

namespace {

/// The number under which the library refuses a chunk that was never stored.
constexpr std::int32_t kSparse = 0;

/// Canonical bytes: the chunk's bytes as the library hands them out. Extracted: those bytes, and of
/// music a .wlf file.
class AudioKind : public ItemKind {
public:
    std::string Name() const override { return "audio"; }
    std::vector<int> Numbers(Game& game) const override {
        return CountedFrom0(game.Audio().NumberOfChunks());
    }

    Item Load(Game& game, int number) const override {
        Item item{number};
        item.name = GroupOf(game.Audio(), number);
        std::int32_t size = 0;
        if (!game.Audio().LoadChunk(number, item.bytes, size)) {
            if (TheConsole().FailureNumber() != kSparse)
                Fail("audio chunk " + std::to_string(number));
            TheConsole().TakeReason();
            item.bytes.clear();
        }
        item.empty = item.bytes.empty();
        if (!item.empty && number >= game.Audio().StartMusic())
            item.notes = CountNotes(item.bytes);
        return item;
    }

    void Extract(Game& game, const Item& item, Extraction& to) const override {
        const std::string stem = Stem(item) + "-" + SafeName(*item.name);
        to.Write(stem + ".bin", item.bytes);
        if (item.number < game.Audio().StartMusic())
            return;
        if (const ByteArray events = MusicFile(item.bytes); !events.empty())
            to.Write(stem + ".wlf", events);
    }

private:
    static std::string GroupOf(const clsAudioT& audio, int chunk) {
        if (chunk >= audio.StartMusic())
            return "music " + std::to_string(chunk - audio.StartMusic());
        constexpr std::array kGroups = {"PC speaker ", "AdLib ", "digitised "};
        const int perGroup = std::max(1, audio.NumberOfSounds());
        const int group = std::min(2, chunk / perGroup);
        return kGroups[static_cast<std::size_t>(group)] + std::to_string(chunk - group * perGroup);
    }
};

}  // namespace

std::vector<const ItemKind*> AudioKinds() {
    static const AudioKind audio;
    return {&audio};
}

}  // namespace tessaro::cli
