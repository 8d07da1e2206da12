// What every saving container promises alike, on a game that lives in memory.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <memory>
#include <random>
#include <stdexcept>

#include "containers.h"
#include "support/faulty_files.h"
#include "support/saving.h"
#include "tessaro/tessaro.h"

namespace tessaro {
namespace {

using namespace test;

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
