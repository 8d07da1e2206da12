#include "tessaro/audio_t.h"

#include "audio/audio_file.h"
#include "foundation/store.h"
#include "huffman/dictionary.h"
#include "huffman/huffman.h"
#include "support/support.h"
#include "tessaro/version.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;

/// Every byte value has a code of 8 bits.
HuffDictionary EvenDictionary() {
    std::array<std::int32_t, 256> counts;
    counts.fill(1);
    return Huffmanize(counts);
}

/// Chunks 0 and 1 are effects, 2 to 4 placeholders (the last with its four stray bytes), 5 and 7
/// songs, 6 is sparse.
constexpr const char* kHeader =
    "00000000 08000000 10000000 10000000 10000000 14000000 FFFFFFFF 1C000000 22000000";
constexpr const char* kData = "EFFECT-0EFFECT-1!ID!SONG-ONESONG2!";

class AudioT : public testing::Test {
protected:
    void SetUp() override {
        test::FreshStore(folder.Path());
        folder.MakeFolder("game");
        folder.MakeFolder("out");
        Game& store = ConfiguredGame();
        store.audioHeaderFile = folder.Write("game/AUDIOHED.TST", Hex(kHeader));
        store.audioDataFile = folder.Write("game/AUDIOT.TST", Ascii(kData));
        store.audioDictFile = folder.File("game/AUDIODCT.TST");
        store.backupFolder = folder.File("backup");
        store.compileExtension = "TST";
        store.outputFolder = folder.File("game");
        Listen(audio);
    }

    void Listen(clsAudioT& container) {
        container.SaveStatus = [this](std::int32_t chunk, std::int32_t total) {
            events += std::to_string(chunk) + "/" + std::to_string(total) + " ";
        };
        container.SaveError = [this](std::int32_t chunk, const std::string& text) {
            events += "error " + std::to_string(chunk) + " " + text + " ";
        };
        container.SaveComplete = [this](bool success) { events += success ? "done" : "failed"; };
    }

    std::string Chunk(clsAudioT& from, std::int32_t chunk) {
        ByteArray data;
        std::int32_t size = -1;
        if (!from.LoadChunk(chunk, data, size))
            return "(failed)";
        EXPECT_EQ(size, static_cast<std::int32_t>(data.size()));
        return {data.begin(), data.end()};
    }

    test::TempFolder folder;
    test::ScriptedUserInterface user;
    clsAudioT audio;
    std::string events;
};

TEST_F(AudioT, ServesChunksByNumber) {
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(audio.NumberOfChunks(), 8);
    EXPECT_EQ(audio.StartMusic(), 5);
    EXPECT_EQ(audio.NumberOfSongs(), 3);
    EXPECT_EQ(audio.NumberOfSounds(), 1);
    EXPECT_EQ(Chunk(audio, 1), "EFFECT-1");
    EXPECT_EQ(Chunk(audio, 2), "");
    EXPECT_EQ(Chunk(audio, 4), "!ID!");
    EXPECT_EQ(Chunk(audio, 5), "SONG-ONE");
    audio.CloseFile();
    EXPECT_EQ(Chunk(audio, 7), "SONG2!") << "opens its file again";
    EXPECT_TRUE(user.boxes.empty());

    EXPECT_EQ(Chunk(audio, 6), "(failed)");
    EXPECT_EQ(Chunk(audio, 8), "(failed)");
    EXPECT_EQ(Chunk(audio, -1), "(failed)");
    ASSERT_EQ(user.boxes.size(), 3u);
    EXPECT_EQ(user.boxes[0].prompt,
              "Error 0 in clsAudioT.LoadChunk: Tried to load sparse data at chunk 6");
}

TEST_F(AudioT, OpeningFailsUnderTheNameOfTheStep) {
    const auto lastBox = [&] { return user.boxes.empty() ? "" : user.boxes.back().prompt; };
    ASSERT_TRUE(audio.InitializeMusic());
    ConfiguredGame().audioIsCompressed = true;
    EXPECT_FALSE(audio.InitializeMusic());
    EXPECT_EQ(lastBox(),
              "Error 0 in clsAudioT.LoadHuffman: Audio huffman dictionary file not found.");
    EXPECT_EQ(audio.NumberOfChunks(), 0) << "nothing of the set before is left";
    EXPECT_EQ(audio.NumberOfSongs(), 0);
    ConfiguredGame().audioIsCompressed = false;

    const ByteArray header = Hex(kHeader);
    for (std::size_t size = 0; size < header.size(); size += 3) {
        const auto start = FindStartMusic(ReadAudioHeader(ByteSpan(header).first(size)), false);
        folder.Write("game/AUDIOHED.TST", ByteSpan(header).first(size));
        EXPECT_EQ(audio.InitializeMusic(), start.has_value()) << size;
        if (!start) {
            EXPECT_EQ(lastBox(),
                      "Error 20170330 in clsAudioT.LoadHeader: Could not determine starting music "
                      "chunk.");
        }
    }
    folder.Write("game/AUDIOHED.TST", header);
    audio.CloseFile();
    DeleteFileAt(folder.File("game/AUDIOT.TST"));
    EXPECT_FALSE(audio.InitializeMusic());
    EXPECT_EQ(lastBox(), "Error 53 in clsAudioT.InitializeMusic: File not found");
    EXPECT_EQ(audio.StartMusic(), -1);
}

TEST_F(AudioT, ChunksBeyondTheDataFileFailAndTheOthersDoNot) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.CloseFile();
    folder.Write("game/AUDIOT.TST", Ascii("EFFECT-0EFFECT"));
    EXPECT_EQ(Chunk(audio, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(audio, 1), "(failed)");
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events, "1/8 error 1 Input past end of file failed");
    EXPECT_EQ(folder.Read("game/AUDIOHED.TST"), Hex(kHeader));
}

TEST_F(AudioT, SavingUntouchedGivesBothFilesBackAndKeepsTheOldOnes) {
    ASSERT_TRUE(audio.InitializeMusic());
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(events, "1/8 2/8 3/8 4/8 5/8 6/8 7/8 8/8 done");
    EXPECT_EQ(folder.Read("game/AUDIOHED.TST"), Hex(kHeader));
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_EQ(folder.Read("backup/AUDIOT.TST.001"), Ascii(kData));
    EXPECT_EQ(folder.Read("backup/AUDIOHED.TST.001"), Hex(kHeader));
    EXPECT_EQ(Chunk(audio, 7), "SONG2!");
}

TEST_F(AudioT, WithoutASetNothingIsSaved) {
    audio.NumberOfChunks(3);
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events, "failed");
    EXPECT_EQ(folder.Read("game/AUDIOHED.TST"), Hex(kHeader));
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_FALSE(folder.Has("backup/AUDIOT.TST.001"));
}

TEST_F(AudioT, WhatLiesOutsideTheChunksIsKept) {
    const ByteArray data = Ascii("beforeFXSONGafter");
    const ByteArray header = Hex("06000000 08000000 08000000 08000000 0C000000");
    folder.Write("game/AUDIOT.TST", data);
    folder.Write("game/AUDIOHED.TST", header);
    ASSERT_TRUE(audio.InitializeMusic());
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), data);
    EXPECT_EQ(folder.Read("game/AUDIOHED.TST"), header);
    audio.SetChunkData(0, Ascii("LONG"));
    audio.NumberOfChunks(3);
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(audio.SaveAudioT());
        EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii("beforeLONGafter"));
    }
}

TEST_F(AudioT, SavingWritesReplacedAndNewChunks) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SetChunkData(0, Ascii("!"));
    audio.SetChunkData(6, Ascii("NOW REAL"));
    audio.SetChunkData(1, {});
    audio.NumberOfChunks(10);
    audio.SetChunkData(9, Ascii("NEW"));
    EXPECT_EQ(Chunk(audio, 0), "!");
    EXPECT_EQ(Chunk(audio, 8), "");
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii("!!ID!SONG-ONENOW REALSONG2!NEW"));
    EXPECT_EQ(folder.Read("game/AUDIOHED.TST"),
              Hex("00000000 01000000 01000000 01000000 01000000 05000000 0D000000 15000000"
                  "1B000000 1B000000 1E000000"));
    EXPECT_EQ(Chunk(audio, 5), "SONG-ONE") << "at its new place";
    EXPECT_EQ(Chunk(audio, 6), "NOW REAL");
    EXPECT_TRUE(user.boxes.empty());
    audio.SetChunkData(10, {});
    EXPECT_EQ(user.boxes.size(), 1u);
}

TEST_F(AudioT, ShrinkingGivesChunksUpForGood) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SetChunkData(7, Ascii("GONE"));
    audio.NumberOfChunks(6);
    audio.NumberOfChunks(8);
    EXPECT_EQ(Chunk(audio, 5), "SONG-ONE") << "ends where the song behind the sparse chunk began";
    EXPECT_EQ(Chunk(audio, 6), "");
    EXPECT_EQ(Chunk(audio, 7), "");
    audio.NumberOfChunks(6);
    ConfiguredGame().outputFolder = folder.File("out");
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder.Read("out/AUDIOT.TST"), Ascii("EFFECT-0EFFECT-1!ID!SONG-ONE"));
    EXPECT_FALSE(folder.Has("backup/AUDIOT.TST.001")) << "there was nothing to back up";
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
    audio.NumberOfChunks(-1);
    EXPECT_EQ(audio.NumberOfChunks(), 6);
    EXPECT_EQ(user.boxes.size(), 1u);
}

TEST_F(AudioT, CompressedSetsKeepStoredBytesAndCodeTheOthers) {
    const HuffDictionary dictionary = EvenDictionary();
    folder.Write("game/AUDIODCT.TST", WriteDictionary(dictionary));
    // The chunk's coded form ends without the byte that the library's own has.
    ByteArray effect = HuffCompress(Ascii("EFFECT-0"), dictionary);
    effect.pop_back();
    ByteArray data = effect;
    data.insert(data.end(), {'!', 'I', 'D', '!', 'P', 'L', 'A', 'I', 'N'});
    folder.Write("game/AUDIOT.TST", data);
    folder.Write("game/AUDIOHED.TST", Hex("00000000 0C000000 0C000000 10000000 15000000"));
    ConfiguredGame().audioIsCompressed = true;
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(audio.StartMusic(), 3);
    EXPECT_EQ(Chunk(audio, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(audio, 2), "!ID!");
    EXPECT_EQ(Chunk(audio, 3), "PLAIN") << "its first four bytes are no length";

    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), data);

    audio.SetChunkData(1, Ascii("NEW EFFECT"));
    audio.SetChunkData(2, Ascii("ab"));
    ASSERT_TRUE(audio.SaveAudioT());
    clsAudioT again;
    ASSERT_TRUE(again.InitializeMusic());
    EXPECT_EQ(Chunk(again, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(again, 1), "NEW EFFECT");
    EXPECT_EQ(Chunk(again, 2), "ab");
    EXPECT_EQ(folder.Read("game/AUDIOT.TST").size(), data.size() - 4 + 15 + 2);

    events.clear();
    audio.SetChunkData(1, ByteArray(65536));
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events, "1/4 error 1 A chunk of a compressed set holds at most 65535 bytes. failed");
}

TEST_F(AudioT, EverySettingASaveNeedsIsCheckedFirst) {
    ASSERT_TRUE(audio.InitializeMusic());
    for (std::string Game::*setting :
         {&Game::outputFolder, &Game::compileExtension, &Game::backupFolder}) {
        const std::string before = std::exchange(ConfiguredGame().*setting, "");
        events.clear();
        EXPECT_FALSE(audio.SaveAudioT());
        EXPECT_TRUE(events.ends_with("failed"));
        EXPECT_NE(events.find("error "), std::string::npos);
        EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
        ConfiguredGame().*setting = before;
    }
}

TEST_F(AudioT, AFailureAtAnyFileOperationLosesNothing) {
    int failures = 0;
    for (int at = 1;; ++at) {
        test::TempFolder fresh;
        ConfiguredGame().audioHeaderFile = fresh.Write("AUDIOHED.TST", Hex(kHeader));
        ConfiguredGame().audioDataFile = fresh.Write("AUDIOT.TST", Ascii(kData));
        ConfiguredGame().outputFolder = fresh.Path();
        ConfiguredGame().backupFolder = fresh.File("backup");
        clsAudioT container;
        Listen(container);
        ASSERT_TRUE(container.InitializeMusic());
        container.SetChunkData(1, Ascii("LONGER THAN BEFORE"));
        events.clear();
        bool saved = false, failed = false;
        {
            test::FailingFiles files(at);
            saved = container.SaveAudioT();
            failed = files.Failed();
        }
        if (saved) {
            EXPECT_FALSE(failed) << at;
            break;
        }
        ++failures;
        EXPECT_TRUE(events.ends_with("failed")) << at;
        EXPECT_EQ(events.find("done"), std::string::npos) << at;
        EXPECT_NE(events.find("error "), std::string::npos) << at;
        EXPECT_EQ(events.find("error 8"), std::string::npos) << "there is no such chunk";
        EXPECT_EQ(fresh.Read("AUDIOHED.TST"), Hex(kHeader)) << at;
        EXPECT_EQ(fresh.Read("AUDIOT.TST"), Ascii(kData)) << at;
        EXPECT_FALSE(fresh.Has("AUDIOT.TST.new")) << at;
        EXPECT_EQ(Chunk(container, 1), "LONGER THAN BEFORE") << "the edit is kept";
        EXPECT_EQ(Chunk(container, 7), "SONG2!") << at;
        events.clear();
        EXPECT_TRUE(container.SaveAudioT()) << "once the cause is gone";
    }
    EXPECT_GT(failures, 12);
}

TEST_F(AudioT, AHostsExceptionIsAFailedSave) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SaveStatus = [](std::int32_t, std::int32_t) { throw std::runtime_error("stop"); };
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events, "error 0 stop failed");
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
}

TEST_F(AudioT, AHandlerCannotChangeTheSetThatIsSaved) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SaveStatus = [&](std::int32_t, std::int32_t) {
        audio.NumberOfChunks(1);
        EXPECT_FALSE(audio.InitializeMusic());
        EXPECT_FALSE(audio.SaveAudioT());
    };
    EXPECT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(events, "done");
    EXPECT_EQ(folder.Read("game/AUDIOT.TST"), Ascii(kData));
}

TEST_F(AudioT, RealGame) {
    TESSARO_NEEDS_GAME_DATA();
    clsVersion version;
    version.AppPath(folder.Path());
    ASSERT_TRUE(version.LoadDataPath(*test::GameFolder()));
    version.OutputFolder(folder.File("out"));
    version.CompileExtension("WL1");
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(audio.NumberOfChunks(), 288);
    EXPECT_EQ(audio.StartMusic(), 261);
    EXPECT_EQ(audio.NumberOfSongs(), 27);
    EXPECT_EQ(audio.NumberOfSounds(), 87);
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder.Read("out/AUDIOHED.WL1"), ReadWholeFile(version.AudioHeaderFile()));
    EXPECT_EQ(folder.Read("out/AUDIOT.WL1"), ReadWholeFile(version.AudioDataFile()));
    EXPECT_TRUE(user.boxes.empty());
}

}  // namespace
}  // namespace tessaro
