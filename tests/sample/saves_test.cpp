// What every saving container promises alike, on a game that lives in memory.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>

#include "sample/sample.h"
#include "support/faulty_files.h"
#include "support/saving.h"
#include "tessaro/tessaro.h"

namespace tessaro {
namespace {

const std::string kFolder = "game";
const std::string kBackup = "game-backup";

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

ByteArray Noise(Random& random, std::size_t most) {
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
            ByteArray item = test::Ascii(container.MapName(map).c_str());
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

const std::vector<sample::SampleFile>& TheSample() {
    static const std::vector<sample::SampleFile> files = sample::MakeSampleGame();
    return files;
}

template <class Set>
class Saves : public testing::Test {
protected:
    void SetUp() override {
        SetUserInterface(&quiet_);
        SharedStore() = Store{};
    }
    void TearDown() override { SetUserInterface(nullptr); }

    std::string LastMessage() const {
        return quiet_.Messages().empty() ? "" : quiet_.Messages().back().Prompt;
    }
    /// What fresh objects read of the game.
    static std::vector<ByteArray> Reread() {
        Set again;
        EXPECT_TRUE(again.Open());
        return again.Items();
    }

    const std::vector<sample::SampleFile>& files_ = TheSample();
    test::TempFolder log_;
    QuietUserInterface quiet_;
};

using Containers = testing::Types<Maps, Pages, Graphics, Audio>;
TYPED_TEST_SUITE(Saves, Containers);

/// How many seeded edits a search makes; a long one is asked for by the environment.
int Rounds() {
    const char* asked = std::getenv("TESSARO_EDITS");
    return asked != nullptr ? std::atoi(asked) : 25;
}

TYPED_TEST(Saves, WhatTheyCallDoneIsWhatFreshObjectsRead) {
    int saved = 0, refused = 0;
    for (int seed = 0; seed < Rounds(); ++seed) {
        SCOPED_TRACE(seed);
        Random random(static_cast<unsigned>(seed));
        MemoryGame game(this->files_);
        game.version.AppPath(this->log_.Path());
        TypeParam set;
        ASSERT_TRUE(set.Open());
        for (auto edits = 1 + random() % 4; edits > 0; --edits)
            set.Edit(random);
        const auto wanted = set.Items();
        const auto before = game.Bytes();
        this->quiet_.Clear();
        if (set.Save()) {
            ++saved;
            ASSERT_EQ(this->Reread(), wanted);
        } else {
            ++refused;
            ASSERT_EQ(game.Bytes(), before);
            ASSERT_EQ(set.Items(), wanted) << "the edits are kept";
            ASSERT_FALSE(this->LastMessage().empty());
            if (std::getenv("TESSARO_EDITS") != nullptr)
                std::cout << seed << ": " << this->LastMessage() << "\n";
        }
        if (testing::Test::HasFailure())
            return;
    }
    EXPECT_GE(saved * 100, 95 * (saved + refused)) << this->LastMessage();
    if (std::getenv("TESSARO_EDITS") != nullptr)
        std::cout << saved << " saved, " << refused << " refused\n";
}

TYPED_TEST(Saves, LoseNothingWhateverOperationFails) {
    for (const test::Fault fault :
         {test::Fault::WithoutEffect, test::Fault::AfterEffect, test::Fault::FromThereOn}) {
        for (int at = 1;; ++at) {
            SCOPED_TRACE(testing::Message() << "fault " << static_cast<int>(fault) << " at " << at);
            MemoryGame game(this->files_);
            game.version.AppPath(this->log_.Path());
            const auto old = this->Reread();
            auto faulty = std::make_shared<test::FaultyFiles>(*game.memory);
            game.Find(faulty);
            TypeParam set;
            ASSERT_TRUE(set.Open());
            Random random(3);
            set.Edit(random);
            const auto wanted = set.Items();
            faulty->Arm(fault, at);
            test::SaveEvents events;
            events.Listen(set.container);
            const bool saved = set.Save();
            const bool met = faulty->Operations() >= at;
            faulty->Arm(test::Fault::None, 0);
            EXPECT_TRUE(events.EndedOnce(saved));
            ASSERT_EQ(set.Items(), wanted) << "the edits are kept";
            game.Find(game.memory);  // whoever comes next finds the old set or the new one
            const auto found = this->Reread();
            ASSERT_TRUE(found == wanted || (!saved && found == old));
            if (!met) {
                EXPECT_TRUE(saved);
                EXPECT_GT(at, 15);
                break;
            }
        }
    }
}

/// Boxes that throw, as a host's may.
class ThrowingBoxes final : public QuietUserInterface {
public:
    enmMsgBoxResult MsgBox(const std::string&, std::int32_t, const std::string&, const std::string&,
                           std::int32_t) override {
        throw std::runtime_error("box");
    }
};

TYPED_TEST(Saves, RaiseTheirEventsOnceWhateverHandlersAndBoxesThrow) {
    MemoryGame game(this->files_);
    game.version.AppPath(this->log_.Path());
    TypeParam set;
    ASSERT_TRUE(set.Open());
    const auto before = set.Items();
    ThrowingBoxes throwing;
    for (UserInterface* boxes :
         {static_cast<UserInterface*>(&this->quiet_), static_cast<UserInterface*>(&throwing)}) {
        SetUserInterface(boxes);
        for (const bool fails : {true, false}) {
            int errors = 0, completes = 0;
            set.container.SaveStatus = [&](std::int32_t, std::int32_t) {
                if (fails)
                    throw std::runtime_error("status");
            };
            set.container.SaveError = [&](std::int32_t, const auto&) {
                ++errors;
                EXPECT_EQ(completes, 0);
                EXPECT_FALSE(set.Save()) << "not within a save";
                throw std::runtime_error("error");
            };
            set.container.SaveComplete = [&](bool success) {
                ++completes;
                EXPECT_EQ(success, !fails);
                throw 5;
            };
            EXPECT_EQ(set.Save(), !fails);
            EXPECT_EQ(errors, fails ? 1 : 0);
            EXPECT_EQ(completes, 1);
        }
    }
    SetUserInterface(&this->quiet_);
    EXPECT_EQ(this->Reread(), before) << "the same set, written back twice";
}

TYPED_TEST(Saves, StopWhenSaveStatusAsksForIt) {
    MemoryGame game(this->files_);
    game.version.AppPath(this->log_.Path());
    TypeParam set;
    ASSERT_TRUE(set.Open());
    const auto before = game.Bytes();
    set.container.SaveStatus = [&](std::int32_t, std::int32_t) { set.container.StopSave(); };
    EXPECT_FALSE(set.Save());
    EXPECT_NE(this->LastMessage().find("The save was stopped."), std::string::npos);
    EXPECT_EQ(game.Bytes(), before);
    this->quiet_.Clear();
    set.container.StopSave();
    EXPECT_NE(this->LastMessage().find("Error 5 in "), std::string::npos);
    set.container.SaveStatus = nullptr;
    EXPECT_TRUE(set.Save());
}

using SavesOfAll = Saves<Maps>;

TEST_F(SavesOfAll, TogetherWriteAllOrNone) {
    MemoryGame game(this->files_);
    game.version.AppPath(log_.Path());
    Maps maps;
    Pages pages;
    Graphics graphics;
    Audio audio;
    ASSERT_TRUE(maps.Open() && pages.Open() && graphics.Open() && audio.Open());
    const auto before = game.Bytes();
    ASSERT_TRUE(maps.container.SetMapCode(0, 0, 1, 1, 99));
    ByteArray chunk;
    std::int32_t size = 0;
    ASSERT_TRUE(audio.container.LoadChunk(0, chunk, size));
    audio.container.SetChunkData(0, {});  // the games would look for the music elsewhere
    std::array<test::SaveEvents, 2> events;
    events[0].Listen(maps.container);
    events[1].Listen(audio.container);
    const typContainers all{&maps.container, &graphics.container, &pages.container,
                            &audio.container};
    EXPECT_FALSE(SaveTogether(all));
    EXPECT_EQ(game.Bytes(), before);
    EXPECT_EQ(events[0].seen.back(), "SaveComplete False");
    EXPECT_TRUE(events[1].seen.at(events[1].seen.size() - 2).starts_with("SaveError"));
    EXPECT_NE(LastMessage().find("Chunk 0 (an effect of 4 bytes or fewer)"), std::string::npos);

    audio.container.SetChunkData(0, chunk);
    EXPECT_TRUE(SaveTogether(all)) << LastMessage();
    EXPECT_EQ(Reread(), maps.Items());
    std::size_t backups = 0;
    for (const std::string& name : game.memory->List(kBackup))
        backups += name.ends_with(".001") ? 1 : 0;
    EXPECT_EQ(backups, before.size()) << "all under one number";

    MemoryGame other(files_);
    Audio another;
    ASSERT_TRUE(another.Open());
    EXPECT_FALSE(SaveTogether({.Maps = &maps.container, .Audio = &another.container}));
    EXPECT_NE(LastMessage().find("different games"), std::string::npos);
}

}  // namespace
}  // namespace tessaro
