// A game in memory, and the four containers as one suite of tests takes them.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "sample/sample.h"
#include "support/support.h"
#include "tessaro/tessaro.h"

namespace tessaro::test {

inline const std::string kFolder = "game";
inline const std::string kBackup = "game-backup";

/// A game in memory, found and ready to be saved over.
class MemoryGame {
public:
    explicit MemoryGame(const std::vector<sample::SampleFile>& files) {
        for (const sample::SampleFile& file : files)
            memory->Set(JoinPath(kFolder, file.name), file.content);
        memory->MakeFolder(kBackup);
        Find(memory);
    }
    void Find(const std::shared_ptr<Files>& port) {
        version.Files(port);
        EXPECT_TRUE(version.LoadDataPath(kFolder));
        version.OutputFolder(kFolder);
        version.BackupFolder(kBackup);
        version.CompileExtension(version.Extension());
    }
    std::vector<ByteArray> Bytes() const {
        std::vector<ByteArray> bytes;
        for (const std::string& name : memory->List(kFolder))
            bytes.push_back(memory->Read(JoinPath(kFolder, name)));
        return bytes;
    }

    std::shared_ptr<MemoryFiles> memory = std::make_shared<MemoryFiles>();
    clsVersion version;
};

using Random = std::mt19937;

inline ByteArray Noise(Random& random, std::size_t most) {
    ByteArray bytes(random() % (most + 1));
    for (std::uint8_t& byte : bytes)
        byte = static_cast<std::uint8_t>(random());
    return bytes;
}

// One container each: how it is opened, edited at random, saved, and what it serves.

struct Maps {
    clsGameMaps container;
    bool Open() { return container.Initialize(); }
    bool Save() { return container.SaveMapFile(); }
    void Edit(Random& random) {
        const auto map =
            static_cast<std::int32_t>(random() % static_cast<unsigned>(container.NumberOfMaps()));
        switch (random() % 8) {
            case 0:
                container.ResizeMap(map, 1 + static_cast<int>(random() % 90),
                                    1 + static_cast<int>(random() % 90), 7);
                break;
            case 1:
                container.AddMap(map);
                break;
            case 2:
                container.RemoveMap(map);
                break;
            case 3:
                container.MapName(0, std::string(random() % 16, 'n'));
                break;
            default:
                for (int i = 0; i < 200; ++i)
                    container.SetMapCode(0, static_cast<int>(random() % 2), static_cast<int>(i % 9),
                                         static_cast<int>(random() % 9),
                                         random() % 3 != 0
                                             ? static_cast<std::int32_t>(0xA700 + random() % 0x200)
                                             : static_cast<std::int32_t>(random() % 65536));
        }
    }
    std::vector<ByteArray> Items() {
        std::vector<ByteArray> items;
        for (std::int32_t map = 0; map < container.NumberOfMaps(); ++map) {
            typMapPlane planes;
            std::int32_t width = 0, height = 0;
            EXPECT_TRUE(container.LoadMap(map, planes, width, height));
            ByteArray item = Ascii(container.MapName(map).c_str());
            for (const typMapGrid& plane : planes.Plane) {
                // A map that was blanked keeps its size: cells beyond it are not part of it.
                for (std::int32_t i = 0; i < width * height; ++i) {
                    const std::int32_t cell = plane.Grid.at(static_cast<std::size_t>(i));
                    item.push_back(static_cast<std::uint8_t>(cell));
                    item.push_back(static_cast<std::uint8_t>(cell >> 8));
                }
            }
            items.push_back(std::move(item));
        }
        return items;
    }
};

struct Pages {
    clsVSwap container;
    bool Open() { return container.Initialize(); }
    bool Save() { return container.SaveVSwap(static_cast<enmVSWAPCompression>(compression)); }
    void Edit(Random& random) {
        compression = static_cast<int>(random() % 3);
        ByteArray data;
        std::int32_t length = 0;
        const std::int32_t walls = container.NumberOfWalls(), sprites = container.NumberOfSprites();
        const auto from = static_cast<std::int32_t>(random());
        switch (random() % 6) {
            case 0:
                EXPECT_TRUE(
                    container.LoadSound(std::abs(from) % container.NumberOfSounds(), data, length));
                container.SetSoundData(static_cast<int>(random() % 3), data);
                break;
            case 1:
                container.SetSoundData(static_cast<int>(random() % 3), ByteArray(1));
                break;
            case 2:
                container.NumberOfSounds(container.NumberOfSounds() + 1);
                EXPECT_TRUE(container.LoadSound(0, data, length));
                container.SetSoundData(container.NumberOfSounds() - 1, data);
                break;
            case 3:
                EXPECT_TRUE(container.LoadWall(std::abs(from) % walls, data));
                for (int i = 0; i < 30 && data.size() > 2000; ++i)
                    data[1078 + random() % 900] = static_cast<std::uint8_t>(random());
                container.SetChunkData(static_cast<int>(random() % 4), data);
                break;
            default:
                EXPECT_TRUE(container.LoadSprite(std::abs(from) % sprites, data));
                for (int i = 0; i < 9 && data.size() > 2000; ++i)
                    data[1078 + random() % 4000] = static_cast<std::uint8_t>(random());
                container.SetChunkData(walls + static_cast<int>(random() % 4), data);
        }
    }
    std::vector<ByteArray> Items() {
        std::vector<ByteArray> items;
        std::int32_t length = 0;
        for (std::int32_t i = 0; i < container.NumberOfWalls(); ++i)
            EXPECT_TRUE(container.LoadWall(i, items.emplace_back()));
        for (std::int32_t i = 0; i < container.NumberOfSprites(); ++i)
            EXPECT_TRUE(container.LoadSprite(i, items.emplace_back()));
        for (std::int32_t i = 0; i < container.NumberOfSounds(); ++i)
            EXPECT_TRUE(container.LoadSound(i, items.emplace_back(), length));
        return items;
    }
    int compression = 0;
};

struct Graphics {
    clsVGAGraph container;
    bool Open() { return container.InitializeGraphics(); }
    bool Save() { return container.SaveVGAGraph(); }
    /// Only byte values that the set has: its dictionary knows no others.
    void Edit(Random& random) {
        const std::int32_t count = container.NumberOfChunks();
        const auto chunk = static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
        ByteArray picture;
        EXPECT_TRUE(container.LoadTessaro(container.StartPics(), picture));
        if (random() % 6 == 0) {
            container.NumberOfChunks(count + 1);
            picture.resize(100 + random() % 300);
            container.SetChunkData(count, picture);
            return;
        }
        const enmVGRAGRAPHTypes type = container.ChunkDataType(chunk);
        ByteArray data;
        if (type == vgSparse || !container.LoadTessaro(chunk, data))
            return;
        if (type == vgMisc)
            data.resize(data.size() / 2 + 1);
        else if (type == vgPicture || type == vgTile8)
            std::swap(data[random() % data.size()], data[random() % data.size()]);
        else if (type == vgEndArt)
            std::swap(data[data.size() / 2], data[data.size() / 3]);
        container.SetChunkData(chunk, data);
    }
    std::vector<ByteArray> Items() {
        std::vector<ByteArray> items;
        for (std::int32_t i = 0; i < container.NumberOfChunks(); ++i) {
            items.emplace_back();
            const bool isSparse = container.ChunkDataType(i) == vgSparse;
            EXPECT_TRUE(isSparse || container.LoadTessaro(i, items.back()));
        }
        return items;
    }
};

struct Audio {
    clsAudioT container;
    bool Open() { return container.InitializeMusic(); }
    bool Save() { return container.SaveAudioT(); }
    void Edit(Random& random) {
        const std::int32_t count = container.NumberOfChunks();
        if (random() % 5 == 0) {
            container.NumberOfChunks(count + 1);
            container.SetChunkData(count, Noise(random, 300));
            return;
        }
        const auto chunk = static_cast<std::int32_t>(random() % static_cast<unsigned>(count));
        ByteArray data = Noise(random, 300);
        data.resize(data.size() + (random() % 20 == 0 ? 0 : 5));
        const bool placeholder =
            chunk >= container.StartMusic() / 3 * 2 && chunk < container.StartMusic();
        if (!placeholder || random() % 20 == 0)
            container.SetChunkData(chunk, data);
    }
    std::vector<ByteArray> Items() {
        std::vector<ByteArray> items;
        std::int32_t size = 0;
        for (std::int32_t i = 0; i < container.NumberOfChunks(); ++i)
            EXPECT_TRUE(container.LoadChunk(i, items.emplace_back(), size));
        return items;
    }
};

}  // namespace tessaro::test
