#include "tessaro/audio_t.h"

#include "audio/audio_file.h"
#include "audio/even_dictionary.h"
#include "huffman/dictionary.h"
#include "support/game.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;
using Events = std::vector<std::string>;

/// Chunks 0 and 1 are effects, 2 to 4 placeholders (the last with its four stray bytes), 5 and 7
/// songs, 6 is sparse.
constexpr const char* kHeader =
    "00000000 08000000 10000000 10000000 10000000 14000000 FFFFFFFF 1C000000 22000000";
constexpr const char* kData = "EFFECT-0EFFECT-1!ID!SONG-ONESONG2!";

class AudioT : public test::InFolder {
protected:
    AudioT() {
        folder_.MakeFolder("game");
        folder_.MakeFolder("out");
        Game& store = ConfiguredGame();
        store.audioHeaderFile = folder_.Write("game/AUDIOHED.TST", Hex(kHeader));
        store.audioDataFile = folder_.Write("game/AUDIOT.TST", Ascii(kData));
        store.audioDictFile = folder_.File("game/AUDIODCT.TST");
        store.backupFolder = folder_.File("backup");
        store.compileExtension = "TST";
        store.outputFolder = folder_.File("game");
        events_.Listen(audio);
    }

    std::string Chunk(clsAudioT& from, std::int32_t chunk) {
        ByteArray data;
        std::int32_t size = -1;
        if (!from.LoadChunk(chunk, data, size))
            return "(failed)";
        EXPECT_EQ(size, static_cast<std::int32_t>(data.size()));
        return test::TextOf(data);
    }

    clsAudioT audio;
    test::SaveEvents events_;
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
    EXPECT_TRUE(ui_.boxes.empty());

    EXPECT_EQ(Chunk(audio, 6), "(failed)");
    EXPECT_EQ(Chunk(audio, 8), "(failed)");
    EXPECT_EQ(Chunk(audio, -1), "(failed)");
    ASSERT_EQ(ui_.boxes.size(), 3u);
    EXPECT_EQ(ui_.boxes[0].prompt,
              "Error 0 in clsAudioT.LoadChunk: Tried to load sparse data at chunk 6");
}

TEST_F(AudioT, OpeningFailsUnderTheNameOfTheStep) {
    ASSERT_TRUE(audio.InitializeMusic());
    ConfiguredGame().audioIsCompressed = true;
    EXPECT_FALSE(audio.InitializeMusic());
    EXPECT_EQ(ui_.LastPrompt(),
              "Error 0 in clsAudioT.LoadHuffman: Audio huffman dictionary file not found.");
    EXPECT_EQ(audio.NumberOfChunks(), 0) << "nothing of the set before is left";
    EXPECT_EQ(audio.NumberOfSongs(), 0);
    ConfiguredGame().audioIsCompressed = false;

    const ByteArray header = Hex(kHeader);
    for (std::size_t size = 0; size < header.size(); size += 3) {
        const auto start = FindStartMusic(ReadAudioHeader(ByteSpan(header).first(size)), false);
        folder_.Write("game/AUDIOHED.TST", ByteSpan(header).first(size));
        EXPECT_EQ(audio.InitializeMusic(), start.has_value()) << size;
        if (!start) {
            EXPECT_EQ(ui_.LastPrompt(),
                      "Error 20170330 in clsAudioT.LoadHeader: Could not determine starting music "
                      "chunk.");
        }
    }
    folder_.Write("game/AUDIOHED.TST", header);
    audio.CloseFile();
    DeleteFileAt(folder_.File("game/AUDIOT.TST"));
    EXPECT_FALSE(audio.InitializeMusic());
    EXPECT_EQ(ui_.LastPrompt(), "Error 53 in clsAudioT.InitializeMusic: File not found");
    EXPECT_EQ(audio.StartMusic(), -1);
}

TEST_F(AudioT, ChunksBeyondTheDataFileFailAndTheOthersDoNot) {
    const ByteArray cut = Ascii("EFFECT-0EFFECT");
    folder_.Write("game/AUDIOT.TST", cut);
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(Chunk(audio, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(audio, 1), "(failed)");
    EXPECT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), Hex(kHeader));
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), cut);

    audio.CloseFile();
    folder_.Write("game/AUDIOT.TST", Ascii("EFFECT-0EFFECT-1"));
    EXPECT_EQ(Chunk(audio, 0), "(failed)") << "another file than the one that was opened";
    EXPECT_TRUE(ui_.LastPrompt().starts_with("Error 70 in clsAudioT.LoadChunk: The file was"));
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii("EFFECT-0EFFECT-1"));
}

TEST_F(AudioT, SavingUntouchedGivesBothFilesBackAndKeepsTheOldOnes) {
    ASSERT_TRUE(audio.InitializeMusic());
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen, test::EventsOfASave(8));
    EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), Hex(kHeader));
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_EQ(folder_.Read("backup/AUDIOT.TST.001"), Ascii(kData));
    EXPECT_EQ(folder_.Read("backup/AUDIOHED.TST.001"), Hex(kHeader));
    EXPECT_EQ(Chunk(audio, 7), "SONG2!");
}

TEST_F(AudioT, WithoutASetNothingIsSaved) {
    audio.NumberOfChunks(3);
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen, (Events{"SaveError 0 No audio is loaded.", "SaveComplete False"}));
    EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), Hex(kHeader));
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_FALSE(folder_.Has("backup/AUDIOT.TST.001"));
}

TEST_F(AudioT, WhatLiesOutsideTheChunksIsKept) {
    const ByteArray data = Ascii("beforeFXSONGafter");
    const ByteArray header = Hex("06000000 08000000 08000000 08000000 0C000000");
    folder_.Write("game/AUDIOT.TST", data);
    folder_.Write("game/AUDIOHED.TST", header);
    ASSERT_TRUE(audio.InitializeMusic());
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), data);
    EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), header);
    audio.SetChunkData(0, Ascii("LONG"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(audio.SaveAudioT());
        EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii("beforeLONGSONGafter"));
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
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii("!!ID!SONG-ONENOW REALSONG2!NEW"));
    EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"),
              Hex("00000000 01000000 01000000 01000000 01000000 05000000 0D000000 15000000"
                  "1B000000 1B000000 1E000000"));
    EXPECT_EQ(Chunk(audio, 5), "SONG-ONE") << "at its new place";
    EXPECT_EQ(Chunk(audio, 6), "NOW REAL");
    EXPECT_TRUE(ui_.boxes.empty());
    audio.SetChunkData(10, {});
    EXPECT_EQ(ui_.boxes.size(), 1u);
}

TEST_F(AudioT, ShrinkingGivesChunksUpForGood) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SetChunkData(7, Ascii("GONE"));
    audio.NumberOfChunks(6);
    audio.NumberOfChunks(8);
    EXPECT_EQ(Chunk(audio, 5), "SONG-ONE") << "ends where the song behind the sparse chunk began";
    EXPECT_EQ(Chunk(audio, 6), "");
    EXPECT_EQ(Chunk(audio, 7), "");
    audio.NumberOfChunks(7);
    ConfiguredGame().outputFolder = folder_.File("out");
    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("out/AUDIOT.TST"), Ascii("EFFECT-0EFFECT-1!ID!SONG-ONE"));
    EXPECT_FALSE(folder_.Has("backup/AUDIOT.TST.001")) << "there was nothing to back up";
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
    audio.NumberOfChunks(-1);
    EXPECT_EQ(audio.NumberOfChunks(), 7);
    EXPECT_EQ(ui_.boxes.size(), 1u);
}

TEST_F(AudioT, CompressedSetsKeepStoredBytesAndCodeTheOthers) {
    const HuffDictionary dictionary = test::EvenDictionary();
    folder_.Write("game/AUDIODCT.TST", WriteDictionary(dictionary));
    // The chunk's coded form ends without the byte that the library's own has.
    ByteArray effect = HuffCompress(Ascii("EFFECT-0"), dictionary);
    effect.pop_back();
    ByteArray data = effect;
    data.insert(data.end(), {'!', 'I', 'D', '!', 'P', 'L', 'A', 'I', 'N'});
    folder_.Write("game/AUDIOT.TST", data);
    folder_.Write("game/AUDIOHED.TST", Hex("00000000 0C000000 0C000000 10000000 15000000"));
    ConfiguredGame().audioIsCompressed = true;
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(audio.StartMusic(), 3);
    EXPECT_EQ(Chunk(audio, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(audio, 2), "!ID!");
    EXPECT_EQ(Chunk(audio, 3), "PLAIN") << "its first four bytes are no length";

    ASSERT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), data);

    audio.SetChunkData(1, Ascii("NEW EFFECT"));
    audio.SetChunkData(2, Ascii("ab"));
    ASSERT_TRUE(audio.SaveAudioT());
    clsAudioT again;
    ASSERT_TRUE(again.InitializeMusic());
    EXPECT_EQ(Chunk(again, 0), "EFFECT-0");
    EXPECT_EQ(Chunk(again, 1), "NEW EFFECT");
    EXPECT_EQ(Chunk(again, 2), "ab");
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST").size(), data.size() - 4 + 15 + 2);

    events_.seen.clear();
    audio.SetChunkData(1, ByteArray(65536));
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen,
              (Events{"SaveStatus 1 4",
                      "SaveError 1 A chunk of a compressed set holds at most 65535 bytes.",
                      "SaveComplete False"}));
}

TEST_F(AudioT, EverySettingASaveNeedsIsCheckedFirst) {
    ASSERT_TRUE(audio.InitializeMusic());
    for (std::string Game::*setting :
         {&Game::outputFolder, &Game::compileExtension, &Game::backupFolder}) {
        const std::string before = std::exchange(ConfiguredGame().*setting, "");
        events_.seen.clear();
        EXPECT_FALSE(audio.SaveAudioT());
        EXPECT_TRUE(events_.EndedOnce(false));
        EXPECT_GE(events_.ErrorAt(), 0);
        EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
        ConfiguredGame().*setting = before;
    }
}

TEST_F(AudioT, AFailureAtAnyFileOperationLosesNothing) {
    std::optional<clsAudioT> container;
    test::EachFailure(
        30,
        [&] {
            container.emplace();
            folder_.RemoveFolder("backup");
            folder_.Write("game/AUDIOHED.TST", Hex(kHeader));
            folder_.Write("game/AUDIOT.TST", Ascii(kData));
            ASSERT_TRUE(container->InitializeMusic());
            container->SetChunkData(1, Ascii("LONGER THAN BEFORE"));
            events_.seen.clear();
            events_.Listen(*container);
        },
        [&] { return container->SaveAudioT(); },
        [&](bool saved) {
            EXPECT_TRUE(events_.EndedOnce(saved));
            if (!saved) {
                EXPECT_GE(events_.ErrorAt(), 0);
                EXPECT_LT(events_.ErrorAt(), 8) << "there is no such chunk";
                EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), Hex(kHeader));
                EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
                EXPECT_FALSE(folder_.Has("game/AUDIOT.TST.new"));
                EXPECT_TRUE(container->SaveAudioT()) << "once the cause is gone";
            }
            EXPECT_EQ(Chunk(*container, 1), "LONGER THAN BEFORE") << "the edit is kept";
            EXPECT_EQ(Chunk(*container, 7), "SONG2!");
        });
}

TEST_F(AudioT, AHostsExceptionIsAFailedSave) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SaveStatus = [](std::int32_t, std::int32_t) { throw std::runtime_error("stop"); };
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen, (Events{"SaveError 0 stop", "SaveComplete False"}));
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
}

TEST_F(AudioT, AHandlerCannotChangeTheSetThatIsSaved) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SaveStatus = [&](std::int32_t, std::int32_t) {
        audio.NumberOfChunks(1);
        EXPECT_FALSE(audio.InitializeMusic());
        EXPECT_FALSE(audio.SaveAudioT());
    };
    EXPECT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen, Events{"SaveComplete True"});
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
}

// As 16-colour games have them: the list steps back behind the last placeholder, and the song that
// begins there shares its bytes with the last effects.
constexpr const char* kSteppingHeader = "00000000 08000000 10000000 10000000 0C000000 18000000";
constexpr const char* kSteppingData = "EFFECT-0EFFECT-1SONGSONG";

struct SteppingEdit {
    const char* name;
    std::int32_t chunk;
    std::int32_t chunks;
};

TEST_F(AudioT, AListThatStepsBackOpensAgainWhateverIsEdited) {
    ConfiguredGame().egaGraphics = true;
    for (const SteppingEdit& edit : {SteppingEdit{"nothing", -1, 5},
                                     {"an effect before the overlap", 0, 5},
                                     {"the effect in it", 1, 5},
                                     {"the song", 4, 5},
                                     {"one chunk more", 5, 6}}) {
        SCOPED_TRACE(edit.name);
        folder_.Write("game/AUDIOHED.TST", Hex(kSteppingHeader));
        folder_.Write("game/AUDIOT.TST", Ascii(kSteppingData));
        ASSERT_TRUE(audio.InitializeMusic());
        const std::int32_t start = audio.StartMusic();
        std::vector<std::string> wanted;
        for (std::int32_t i = 0; i < 5; ++i)
            wanted.push_back(Chunk(audio, i));
        EXPECT_EQ(wanted,
                  (std::vector<std::string>{"EFFECT-0", "EFFECT-1", "", "", "CT-1SONGSONG"}));
        wanted.resize(static_cast<std::size_t>(edit.chunks));
        audio.NumberOfChunks(edit.chunks);
        if (edit.chunk >= 0) {
            wanted[static_cast<std::size_t>(edit.chunk)] = "LONGER THAN BEFORE";
            audio.SetChunkData(edit.chunk, Ascii("LONGER THAN BEFORE"));
        }
        ASSERT_TRUE(audio.SaveAudioT()) << ui_.LastPrompt();
        if (edit.chunk < 0) {
            EXPECT_EQ(folder_.Read("game/AUDIOHED.TST"), Hex(kSteppingHeader));
            EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kSteppingData));
        }
        clsAudioT again;
        ASSERT_TRUE(again.InitializeMusic()) << ui_.LastPrompt();
        EXPECT_EQ(again.StartMusic(), start);
        std::vector<std::string> reread;
        for (std::int32_t i = 0; i < again.NumberOfChunks(); ++i)
            reread.push_back(Chunk(again, i));
        EXPECT_EQ(reread, wanted);
    }
}

TEST_F(AudioT, ASaveThatWouldMoveTheMusicFailsAndNamesTheChunk) {
    struct Case {
        std::int32_t chunk;
        const char* data;
        const char* text;
    };
    for (const Case& row : {Case{0, "abc", "Chunk 0 (an effect of 4 bytes or fewer)"},
                            {1, "", "Chunk 1 (an effect of 4 bytes or fewer)"},
                            {2, "DATA IN IT", "Chunk 2 (a placeholder that got data)"},
                            {5, "", "Chunk 5 (a song of 4 bytes or fewer)"}}) {
        SCOPED_TRACE(row.text);
        ASSERT_TRUE(audio.InitializeMusic());
        audio.SetChunkData(row.chunk, Ascii(row.data));
        events_.seen.clear();
        const bool saved = audio.SaveAudioT();
        if (saved) {  // it may be harmless in this small set
            clsAudioT again;
            ASSERT_TRUE(again.InitializeMusic());
            EXPECT_EQ(again.StartMusic(), 5);
            folder_.Write("game/AUDIOHED.TST", Hex(kHeader));
            folder_.Write("game/AUDIOT.TST", Ascii(kData));
            continue;
        }
        EXPECT_NE(ui_.LastPrompt().find(row.text), std::string::npos) << ui_.LastPrompt();
        EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
        EXPECT_EQ(Chunk(audio, row.chunk), row.data);
    }
}

TEST_F(AudioT, TwoGamesAreSavedEachAsItself) {
    ASSERT_TRUE(audio.InitializeMusic());
    Game other = ConfiguredGame();
    folder_.MakeFolder("other");
    other.audioHeaderFile = folder_.Write("other/AUDIOHED.TST", Hex(kHeader));
    other.audioDataFile =
        folder_.Write("other/AUDIOT.TST", Ascii("effect-0effect-1!ID!song-onesong2!"));
    other.outputFolder = folder_.File("other");
    SharedStore().game = std::make_shared<Game>(other);
    clsAudioT second;
    ASSERT_TRUE(second.InitializeMusic());
    ByteArray song;
    std::int32_t size = 0;
    ASSERT_TRUE(audio.LoadChunk(7, song, size));
    second.SetChunkData(7, song);
    ASSERT_TRUE(audio.SaveAudioT());
    ASSERT_TRUE(second.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_EQ(folder_.Read("other/AUDIOT.TST"), Ascii("effect-0effect-1!ID!song-oneSONG2!"));
}

TEST_F(AudioT, ASettingMadeWhileItSavesCountsFromTheNextSaveOn) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.SaveStatus = [&](std::int32_t chunk, std::int32_t) {
        ConfiguredGame().outputFolder = folder_.File("nowhere");
        ConfiguredGame().compileExtension = "";
        ConfiguredGame().audioIsCompressed = true;
        audio.SetChunkData(0, {});
        if (chunk == 8)
            audio.SaveStatus = nullptr;
    };
    EXPECT_TRUE(audio.SaveAudioT());
    EXPECT_EQ(folder_.Read("game/AUDIOT.TST"), Ascii(kData));
    EXPECT_FALSE(audio.SaveAudioT()) << "now without an extension";
}

TEST_F(AudioT, StopSaveEndsASaveFromSaveStatusAlone) {
    ASSERT_TRUE(audio.InitializeMusic());
    audio.StopSave();
    EXPECT_TRUE(ui_.LastPrompt().starts_with("Error 5 in clsAudioT.StopSave"));
    audio.SaveStatus = [&](std::int32_t chunk, std::int32_t) {
        if (chunk == 3)
            audio.StopSave();
    };
    EXPECT_FALSE(audio.SaveAudioT());
    EXPECT_EQ(events_.seen, (Events{"SaveError 2 The save was stopped.", "SaveComplete False"}));
    audio.SaveStatus = nullptr;
    EXPECT_TRUE(audio.SaveAudioT());
}

class RealAudio : public test::RealGame {};

TEST_F(RealAudio, SavedUntouchedItIsTheSame) {
    clsAudioT audio;
    ASSERT_TRUE(audio.InitializeMusic());
    EXPECT_EQ(audio.NumberOfChunks(), 288);
    EXPECT_EQ(audio.StartMusic(), 261);
    EXPECT_EQ(audio.NumberOfSongs(), 27);
    EXPECT_EQ(audio.NumberOfSounds(), 87);
    ASSERT_TRUE(audio.SaveAudioT());
    for (const char* name : {"AUDIOHED.WL1", "AUDIOT.WL1"})
        EXPECT_EQ(folder_.Read(name), Original(name)) << name;
}

}  // namespace
}  // namespace tessaro
