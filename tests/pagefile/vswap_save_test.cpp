#include <algorithm>
#include <stdexcept>

#include "pagefile/vswap_fixture.h"

namespace tessaro {
namespace {

using test::AllItems;
using test::Hex;
using test::VSwapSave;

TEST_F(VSwapSave, WritesEveryItemAndBacksUpTheOldFile) {
    const ByteArray old = SmallSet();
    Open(old);
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(events_.seen, test::EventsOfASave(7));
    EXPECT_EQ(folder_.Read(JoinPath("backup", "VSWAP.TST.001")), old);
    ByteArray expected = old;
    // The compiler leaves out the byte behind the stored sprite: everything after moves up by one.
    const std::size_t sprite = PageTable::Size(9) + 4096;
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(sprite) + 16);
    expected[6 + 4 * 9 + 2 * 2] = 16;
    for (const std::size_t chunk : std::initializer_list<std::size_t>{4, 5, 7, 8})
        --expected[6 + 4 * chunk];
    EXPECT_EQ(folder_.Read("VSWAP.TST"), expected);
    EXPECT_TRUE(ui_.boxes.empty());

    events_.seen.clear();
    ASSERT_TRUE(set_.SaveVSwap(vcOriginal));
    EXPECT_TRUE(folder_.Has(JoinPath("backup", "VSWAP.TST.002")));
}

TEST_F(VSwapSave, EditedAndAddedItemsComeBack) {
    Open(SmallSet());
    std::vector<ByteArray> items = AllItems(set_);
    set_.SetChunkData(0, ByteArray{0});  // a wall without data, set as it is handed out
    set_.SetChunkData(2, Bmp(64, 5));
    set_.SetSoundData(0, Wav(8193));
    set_.SetSoundData(2, Wav(4096));
    items[0] = {0};
    items[2] = Bmp(64, 5);
    items[4] = Wav(8193);
    items[6] = Wav(4096);
    set_.NumberOfWalls(3);
    set_.NumberOfSprites(4);
    set_.NumberOfSounds(5);
    items.insert(items.begin() + 4, 2, ByteArray{0});
    items.insert(items.begin() + 2, 1, ByteArray{0});
    items.resize(12, ByteArray{0});
    set_.SetChunkData(6, Bmp(64, 9));
    set_.SetSoundData(4, Wav(77));
    items[6] = Bmp(64, 9);
    items[11] = Wav(77);
    ASSERT_TRUE(set_.SaveVSwap(vcGood));
    EXPECT_TRUE(AllItems(set_) == items);
    EXPECT_TRUE(Reread() == items);
    EXPECT_TRUE(set_.SaveVSwap(vcOriginal));  // the counts of the new file hold from now on
    EXPECT_TRUE(Reread() == items);
}

TEST_F(VSwapSave, AnotherFolderLeavesTheContainerOnItsFiles) {
    const ByteArray old = SmallSet();
    Open(old);
    const std::vector<ByteArray> items = AllItems(set_);
    folder_.MakeFolder("out");
    ConfiguredGame().outputFolder = folder_.File("out");
    ConfiguredGame().backupFolder.clear();  // nothing there to back up
    ConfiguredGame().compileExtension = "NEW";
    set_.NumberOfWalls(4);
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(folder_.Read("VSWAP.TST"), old);
    ConfiguredGame().vswapFile = folder_.File("out/VSWAP.NEW");
    EXPECT_EQ(Reread().size(), items.size() + 2);
    ByteArray data;
    set_.LoadChunk(0, data);
    EXPECT_EQ(data, WallChunk());
    EXPECT_EQ(set_.NumberOfWalls(), 4);
}

TEST_F(VSwapSave, SoundsThatReadAsEmptyKeepTheirBytes) {
    PageFileImage image(1);
    image.AddChunk(WallChunk());
    image.AddSound(Samples(65535));
    image.AddChunk(Hex("0000 FFFF"));
    const ByteArray old = image.Assemble(1, 1);
    Open(old);
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_TRUE(folder_.Read("VSWAP.TST") == old);
    set_.SetSoundData(0, Wav(65535));  // the longest that fits
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_TRUE(folder_.Read("VSWAP.TST") == old);
}

TEST_F(VSwapSave, SoundsThatShareAPageAreWrittenApartAsTheyWereServed) {
    PageFileImage image(1);
    image.AddChunk(WallChunk());
    image.AddSound(Samples(7));
    image.AddSound(Samples(5000));
    image.AddSound(Samples(20));
    // Two sounds from page 1 on, an absent one, one from page 3 on.
    image.AddChunk(Hex("0000 0700 0100 8813 0100 0A00 FFFF 0500 0300 1400"));
    Open(image.Assemble(1, 1));
    // A page has one length, the last that was told of it.
    std::vector<ByteArray> items = AllItems(set_);
    items.erase(items.begin());
    EXPECT_TRUE(items == (std::vector<ByteArray>{Wav(7), Wav(10), Wav(10), Wav(20)}));
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    items = Reread();
    items.erase(items.begin());
    EXPECT_TRUE(items == (std::vector<ByteArray>{Wav(7), Wav(10), Wav(10), Wav(20)}));
}

TEST_F(VSwapSave, SoundsThatCannotBeReadAreKept) {
    PageFileImage image(1);
    image.AddChunk(WallChunk());
    image.AddSound(Samples(5000));
    image.AddChunk(Hex("0000 8813 0900 0100"));  // the second sound lies outside
    const ByteArray old = image.Assemble(1, 1);
    Open(old);
    EXPECT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(set_.NumberOfSounds(), 2);  // the count that was reached
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(folder_.Read("VSWAP.TST"), old);
    set_.SetSoundData(0, Wav(5));
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(folder_.Read("VSWAP.TST"), old);
}

struct Refused {
    const char* name;
    std::function<void(clsVSwap&)> edit;
    std::size_t itemsDone;
    const char* event;
    const char* text;
};

/// A BMP of another depth, a WAV of another format: two header fields changed.
ByteArray With(ByteArray image, std::size_t at, std::uint8_t value, std::size_t size = 0) {
    image[at] = value;
    if (size > 0)
        image.resize(size);
    return image;
}

class VSwapRefuses : public VSwapSave {
protected:
    static ByteArray Deep() { return With(Bmp(64, 1), 28, 24, 54 + 64 * 64 * 3); }

    /// 64 columns of 32 single pixels: 4 + 128 + pool + 64 x (32 x 6 + 2) bytes.
    static ByteArray Busy() {
        ByteArray image = Bmp(64, 255);
        for (std::size_t i = 0; i < 4096; i += 2)
            image[1078 + i] = 1;
        for (std::size_t row = 0; row < 64; row += 2)
            std::rotate(image.begin() + 1078 + static_cast<std::ptrdiff_t>(row) * 64,
                        image.begin() + 1079 + static_cast<std::ptrdiff_t>(row) * 64,
                        image.begin() + 1142 + static_cast<std::ptrdiff_t>(row) * 64);
        return image;
    }
};

TEST_F(VSwapRefuses, WhatDoesNotFitAndSaysWhy) {
    const Refused refusals[] = {
        {"WallDepth", [](clsVSwap& set) { set.SetChunkData(1, Deep()); }, 1, "SaveError 1 0",
         "1512|Error at wall chunk #1\r\n\r\nReason:\r\nBMP was not 256 colors.\r\n\r\n"
         "Solutions: \r\n1) Convert the BMP to 256 colors."},
        {"WallSize", [](clsVSwap& set) { set.SetChunkData(0, Bmp(32, 1)); }, 0, "SaveError 0 0",
         "5|Error at wall chunk #0\r\n\r\nReason:\r\nThe BMP has 32 x 32 pixels. A wall has "
         "64 x 64 or 128 x 128.\r\n\r\nSolutions: \r\n1) Change the size of the BMP."},
        {"SpriteDepth", [](clsVSwap& set) { set.SetChunkData(2, Deep()); }, 2, "SaveError 0 1",
         "1513|Error at sprite chunk #0\r\n\r\nReason:\r\nBMP was not 256 colors.\r\n\r\n"
         "Solutions: \r\n1) Convert the BMP to 256 colors."},
        {"SpriteSide", [](clsVSwap& set) { set.SetChunkData(3, Bmp(128, 1)); }, 3, "SaveError 1 1",
         "5|Error at sprite chunk #1\r\n\r\nReason:\r\nThe BMP has 128 x 128 pixels. The sprites "
         "of this set have 64 x 64, as its first wall.\r\n\r\nSolutions: \r\n"
         "1) Change the size of the BMP."},
        {"SpriteTooBig", [](clsVSwap& set) { set.SetChunkData(3, Busy()); }, 3, "SaveError 1 1",
         "1514|Error at sprite chunk #1\r\n\r\nReason:\r\nCompressed sprite data too big (14596, "
         "MAX: 4096).\r\n\r\nSolutions: \r\n1) Reduce the amount of transparent areas.\r\n"
         "2) Reduce the sprite's size."},
        {"SoundFormat", [](clsVSwap& set) { set.SetSoundData(1, With(Wav(9), 22, 2)); }, 5,
         "SaveError 1 2",
         "1515|Error at sound #1\r\n\r\nReason:\r\nThe WAV file's format is: 7042Hz 8-bit, "
         "Stereo.\r\nThe format needs to be: 7042Hz 8-bit, Mono.\r\n\r\nSolutions: \r\n"
         "1) Convert the WAV file to the proper format.\r\n2) Use a different WAV file."},
        {"SoundTooBig", [](clsVSwap& set) { set.SetSoundData(2, Wav(65536)); }, 6, "SaveError 2 2",
         "1516|Error at sound #2\r\n\r\nReason:\r\nSound data too big (65536, MAX: 65535)."
         "\r\n\r\nSolutions: \r\n1) Shorten the sound.\r\n2) Use a different WAV file."}};
    for (const Refused& row : refusals) {
        SCOPED_TRACE(row.name);
        Open(SmallSet());
        const auto before = Files();
        row.edit(set_);
        const std::vector<ByteArray> items = AllItems(set_);
        ui_.boxes.clear();
        events_.seen.clear();
        EXPECT_FALSE(set_.SaveVSwap(vcNone));
        ASSERT_EQ(events_.seen.size(), row.itemsDone + 2);
        EXPECT_EQ(events_.seen[row.itemsDone], row.event);
        EXPECT_TRUE(events_.EndedOnce(false));
        EXPECT_EQ(Files(), before);
        ASSERT_EQ(ui_.boxes.size(), 1u);
        const std::string text = row.text;
        EXPECT_EQ(ui_.boxes[0].prompt,
                  "Error " + text.substr(0, text.find('|')) +
                      " in clsVSWAP.SaveVSwap: " + text.substr(text.find('|') + 1));
        EXPECT_TRUE(AllItems(set_) == items);  // the edits wait for another try
    }
}

TEST_F(VSwapRefuses, DamagedWallImagesWithWhatIsWrong) {
    Open(SmallSet());
    set_.SetChunkData(1, ByteArray(10));
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_TRUE(
        ui_.boxes[0].prompt.starts_with("Error 1512 in clsVSWAP.SaveVSwap: Error at wall "
                                        "chunk #1\r\n\r\nReason:\r\nSubscript out"));
    EXPECT_EQ(events_.seen,
              (std::vector<std::string>{"SaveStatus 1 7", "SaveError 1 0", "SaveComplete False"}));
}

TEST_F(VSwapRefuses, SpritesAboveTheOutputPageAndNotThoseThatFillIt) {
    // Rows 0 and up of every column, to just fill a page: 4 + 2 x 64 + pool + 64 x 8 = 4096.
    ByteArray image = Bmp(64, 255);
    std::fill_n(image.end() - 3452, 3452, std::uint8_t{1});  // 60 columns of 54, 4 of 53
    Open(SmallSet());
    ASSERT_EQ(set_.GetSpriteCompressedSize(image, vcNone), 4096);
    set_.SetChunkData(3, image);
    EXPECT_TRUE(set_.SaveVSwap(vcNone));
    image[1078 + 60] = 1;
    ASSERT_GT(set_.GetSpriteCompressedSize(image, vcNone), 4096);
    set_.SetChunkData(3, image);
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
    ConfiguredGame().hiResOutput = true;
    ASSERT_TRUE(set_.Initialize());
    set_.SetChunkData(3, image);
    EXPECT_TRUE(set_.SaveVSwap(vcNone));
}

TEST_F(VSwapSave, AFailureAtAnyFileOperationLosesNothing) {
    std::vector<ByteArray> items;
    const ByteArray old = SmallSet();
    test::EachFailure(
        12,
        [&] {
            folder_.RemoveFolder("backup");
            Open(old);
            set_.SetChunkData(1, Bmp(64, 3));
            items = AllItems(set_);
            events_.seen.clear();
        },
        [&] { return set_.SaveVSwap(vcNone); },
        [&](bool saved) {
            EXPECT_TRUE(events_.EndedOnce(saved));
            if (!saved) {
                EXPECT_EQ(folder_.Read("VSWAP.TST"), old);
                EXPECT_FALSE(folder_.Has("VSWAP.TST.new"));
                EXPECT_TRUE(AllItems(set_) == items);
                EXPECT_TRUE(set_.SaveVSwap(vcNone));
            }
            EXPECT_TRUE(Reread() == items);
        });
}

TEST_F(VSwapSave, MissingSettingsFailBeforeAnythingMoves) {
    Open(SmallSet());
    const auto before = Files();
    for (std::string Game::*setting :
         {&Game::outputFolder, &Game::compileExtension, &Game::backupFolder}) {
        const std::string value = std::exchange(ConfiguredGame().*setting, "");
        events_.seen.clear();
        EXPECT_FALSE(set_.SaveVSwap(vcNone));
        EXPECT_TRUE(events_.EndedOnce(false));
        ConfiguredGame().*setting = value;
    }
    ConfiguredGame().outputFolder = folder_.File("nowhere");
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(Files(), before);
    clsVSwap unopened;
    EXPECT_FALSE(unopened.SaveVSwap(vcNone));
}

TEST_F(VSwapSave, HandlersCannotChangeWhatTheSaveReliesOn) {
    Open(SmallSet());
    set_.SaveStatus = [&](std::int32_t, std::int32_t) {
        set_.NumberOfWalls(5);
        set_.NumberOfSprites(5);
        set_.NumberOfSounds(5);
        EXPECT_FALSE(set_.Initialize());
        EXPECT_FALSE(set_.SaveVSwap(vcNone));
    };
    const auto before = AllItems(set_);
    EXPECT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(events_.seen, std::vector<std::string>{"SaveComplete True"});
    EXPECT_EQ(Reread(), before);
    set_.NumberOfWalls(5);
    EXPECT_EQ(set_.NumberOfWalls(), 5);
}

TEST_F(VSwapSave, WorksOnTheSettingsOfItsStart) {
    Open(SmallSet());
    const auto before = AllItems(set_);
    set_.SaveStatus = [&](std::int32_t, std::int32_t) {
        ConfiguredGame().outputFolder = folder_.File("nowhere");
        ConfiguredGame().backupFolder = "";
        ConfiguredGame().readSoundLengthsAsLong = true;
        ConfiguredGame().vswapFile = folder_.File("other");
    };
    EXPECT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_TRUE(folder_.Has("backup/VSWAP.TST.001"));
    EXPECT_FALSE(folder_.Has("other"));
    set_.CloseFile();
    folder_.Write("other", ByteArray(5000));
    EXPECT_TRUE(AllItems(set_) == before) << "read from its own file again";
}

TEST_F(VSwapSave, HandlersThatThrowDoNotBreakASave) {
    Open(SmallSet());
    const auto before = Files();
    set_.SaveStatus = [](std::int32_t chunk, std::int32_t) {
        if (chunk == 3)
            throw std::runtime_error("no more");
    };
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(events_.seen, (std::vector<std::string>{"SaveError 0 1", "SaveComplete False"}));
    EXPECT_EQ(Files(), before);
    EXPECT_EQ(ui_.LastPrompt(),
              "Error 0 in clsVSWAP.SaveVSwap: Error at sprite chunk #0\r\n\r\nReason:\r\nno more");
}

}  // namespace
}  // namespace tessaro
