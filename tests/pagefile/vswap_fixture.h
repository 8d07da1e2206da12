// A small set of our own and the folders around it.
#pragma once

#include "images/bmp_image.h"
#include "images/wav_image.h"
#include "pagefile/extra_sounds.h"
#include "pagefile/page_file.h"
#include "support/saving.h"
#include "tessaro/vswap.h"

namespace tessaro::test {

/// The three kinds of items as callers get them, one after the other.
inline std::vector<ByteArray> AllItems(clsVSwap& set) {
    std::vector<ByteArray> items;
    ByteArray data;
    std::int32_t length = 0;
    const auto keep = [&](bool loaded) {
        EXPECT_TRUE(loaded);
        items.push_back(data);
    };
    for (std::int32_t i = 0; i < set.NumberOfWalls(); ++i)
        keep(set.LoadWall(i, data));
    for (std::int32_t i = 0; i < set.NumberOfSprites(); ++i)
        keep(set.LoadSprite(i, data));
    for (std::int32_t i = 0; i < set.NumberOfSounds(); ++i)
        keep(set.LoadSound(i, data, length));
    return items;
}

class VSwapFixture : public InFolder {
protected:
    VSwapFixture() {
        Game& store = ConfiguredGame();
        store.dataPath = store.outputFolder = folder_.Path();
        store.dataExtension = store.extension = store.compileExtension = "TST";
        store.vswapFile = folder_.File("VSWAP.TST");
        store.backupFolder = folder_.File("backup");
    }

    /// Two walls (the second without data), two sprites (likewise) and three sounds: one of two
    /// pages, one without data, one of a single sample.
    static ByteArray SmallSet() {
        PageFileImage image(1);
        image.AddChunk(WallChunk());
        image.AddChunk({});
        image.AddChunk(SpriteChunk());
        image.AddChunk({});
        image.AddSound(Samples(5000));
        image.AddSound({});
        image.AddSound(Samples(1));
        image.AddChunk(Hex("0000 8813  0200 0000  0300 0100"));
        return image.Assemble(2, 4);
    }

    static ByteArray WallChunk() {
        ByteArray chunk(4096);
        for (std::size_t i = 0; i < chunk.size(); ++i)
            chunk[i] = static_cast<std::uint8_t>(i / 64 * 3 + i % 64);
        return chunk;
    }

    /// Column 5, rows 62 and 63.
    static ByteArray SpriteChunk() { return Hex("0500 0500  0800  0102  8000 C8FF 7C00 0000  00"); }

    static ByteArray Samples(std::size_t count) {
        ByteArray samples(count);
        for (std::size_t i = 0; i < count; ++i)
            samples[i] = static_cast<std::uint8_t>(i * 7 + i / 256);
        return samples;
    }

    static ByteArray Wav(std::size_t count) {
        ByteArray image = Samples(count);
        modAddWAVHeader::AddWaveHeader(static_cast<std::int32_t>(count), image);
        return image;
    }

    static ByteArray Bmp(std::int32_t side, std::uint8_t color) {
        return modAddBMPHeader::AddBMPHeader(
            side, side, ByteArray(static_cast<std::size_t>(side * side), color), true);
    }
};

/// The same, with what a save does recorded.
class VSwapSave : public VSwapFixture {
protected:
    void Open(const ByteArray& file) {
        folder_.Write("VSWAP.TST", file);
        ASSERT_TRUE(set_.Initialize());
        events_.Listen(set_);
    }

    std::vector<ByteArray> Reread() {
        clsVSwap again;
        EXPECT_TRUE(again.Initialize());
        return AllItems(again);
    }

    /// Every file of the data folder and of the backups but the log.
    std::vector<std::pair<std::string, ByteArray>> Files() const {
        std::vector<std::pair<std::string, ByteArray>> files;
        for (const std::string& folder : {folder_.Path(), folder_.File("backup")})
            if (FolderExists(folder))
                for (const std::string& name : ListFiles(folder, "*"))
                    if (name != "Error.log")
                        files.emplace_back(name, ReadWholeFile(JoinPath(folder, name)));
        return files;
    }

    clsVSwap set_;
    SaveEvents events_;
};

}  // namespace tessaro::test
