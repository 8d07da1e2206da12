// Saving a set with an extra sound file.
#include "pagefile/vswap_fixture.h"

namespace tessaro {
namespace {

using test::AllItems;
using test::Hex;

class VSwapExtra : public test::VSwapSave {
protected:
    /// Two sounds in the page file where `ownSounds` is two, none where it is 0; two extra ones.
    void OpenWithExtra(int ownSounds, SoundListForm form) {
        PageFileImage image(1);
        image.AddChunk(WallChunk());
        if (ownSounds > 0) {
            image.AddSound(Samples(10));
            image.AddSound(Samples(20));
            image.AddChunk(ownSounds == 2 ? Hex("0000 0A00 0100 1400") : Hex("0000 0A00"));
        }
        ExtraFileImage extra;
        extra.AddSound(Samples(5000), 5000);
        extra.AddSound(Samples(70), 70);
        folder_.Write("AUDIOMUS.TST", extra.Assemble(form));
        Open(image.Assemble(1, 1));
    }
};

TEST_F(VSwapExtra, SoundsGoOnAfterThoseOfThePageFileOrTakeTheirPlace) {
    struct Case {
        int own;
        SoundListForm form;
        std::vector<ByteArray> sounds;
    };
    const Case cases[] = {{2, SoundListForm::Short, {Wav(10), Wav(20), Wav(5000), Wav(70)}},
                          {2, SoundListForm::Long, {Wav(10), Wav(20), Wav(5000), Wav(70)}},
                          {1, SoundListForm::Short, {Wav(5000), Wav(70)}},
                          {0, SoundListForm::Long, {Wav(5000), Wav(70)}}};
    for (const Case& row : cases) {
        ConfiguredGame().readSoundLengthsAsLong = false;
        OpenWithExtra(row.own, row.form);
        EXPECT_EQ(ConfiguredGame().readSoundLengthsAsLong, row.form == SoundListForm::Long);
        EXPECT_EQ(ConfiguredGame().audioMusFile, folder_.File("AUDIOMUS.TST"));
        std::vector<ByteArray> items = AllItems(set_);
        items.erase(items.begin());
        EXPECT_TRUE(items == row.sounds) << row.own;

        const auto before = std::pair(folder_.Read("VSWAP.TST"), folder_.Read("AUDIOMUS.TST"));
        ASSERT_TRUE(set_.SaveVSwap(vcNone));
        // A page that no list names is not written again.
        EXPECT_EQ(folder_.Read("VSWAP.TST") == before.first, row.own != 1);
        EXPECT_TRUE(folder_.Read("AUDIOMUS.TST") == before.second);
        EXPECT_TRUE(folder_.Has(JoinPath("backup", "AUDIOMUS.TST.001")));
        const std::size_t own = row.own == 2 ? 2 : 0;
        set_.NumberOfSounds(static_cast<std::int32_t>(own) + 3);
        set_.SetSoundData(static_cast<std::int32_t>(own), ByteArray{0});
        set_.SetSoundData(static_cast<std::int32_t>(own) + 2, Wav(4097));
        const std::vector<ByteArray> edited = AllItems(set_);
        ASSERT_TRUE(set_.SaveVSwap(vcNone));
        EXPECT_TRUE(Reread() == edited) << row.own;
    }
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(VSwapExtra, TheSoundThatItsListReplacedIsKeptAsFarAsItIsThere) {
    struct Case {
        const char* list;
        std::size_t samples;  ///< as the save writes them
    };
    const Case cases[] = {{"FFFF 0500 0100 1400", 20},  // an absent sound before it
                          {"0100 8813", 24}};           // no more than 20 bytes and the list
    for (const Case& row : cases) {
        OpenWithExtra(0, SoundListForm::Short);
        PageFileImage image(1);
        image.AddChunk(WallChunk());
        image.AddSound(Samples(10));
        image.AddSound(Samples(20));
        image.AddChunk(Hex(row.list));
        Open(image.Assemble(1, 1));
        const std::vector<ByteArray> items = AllItems(set_);
        EXPECT_EQ(items.size(), 3u);
        ASSERT_TRUE(set_.SaveVSwap(vcNone)) << row.list;
        EXPECT_TRUE(Reread() == items) << row.list;

        set_.CloseFile();
        DeleteFileAt(folder_.File("AUDIOMUS.TST"));
        const std::vector<ByteArray> own = Reread();
        ASSERT_EQ(own.size(), 2u);
        ByteArray expected = Samples(20);
        if (row.samples > expected.size())
            for (const std::uint8_t byte : Hex(row.list))
                expected.push_back(byte);
        modAddWAVHeader::AddWaveHeader(static_cast<std::int32_t>(row.samples), expected);
        EXPECT_EQ(own[1], expected);
    }
    EXPECT_TRUE(ui_.boxes.empty());
}

TEST_F(VSwapExtra, LongLengthsHoldLongSounds) {
    OpenWithExtra(2, SoundListForm::Long);
    set_.SetSoundData(3, Wav(70000));
    ASSERT_TRUE(set_.SaveVSwap(vcNone));
    EXPECT_EQ(Reread().back(), Wav(70000));
    set_.SetSoundData(1, Wav(70000));  // but not the page file's own
    EXPECT_FALSE(set_.SaveVSwap(vcNone));
}

TEST_F(VSwapExtra, FailuresLoseNeitherFile) {
    std::vector<ByteArray> old, items;
    test::EachFailure(
        18,
        [&] {
            folder_.RemoveFolder("backup");
            OpenWithExtra(2, SoundListForm::Short);
            old = {folder_.Read("VSWAP.TST"), folder_.Read("AUDIOMUS.TST")};
            set_.SetChunkData(0, Bmp(64, 3));
            set_.SetSoundData(3, Wav(8192));
            items = AllItems(set_);
        },
        [&] { return set_.SaveVSwap(vcNone); },
        [&](bool saved) {
            if (!saved) {
                EXPECT_EQ(folder_.Read("VSWAP.TST"), old[0]);
                EXPECT_EQ(folder_.Read("AUDIOMUS.TST"), old[1]);
                EXPECT_TRUE(set_.SaveVSwap(vcNone));
            }
            EXPECT_TRUE(Reread() == items);
        });
}

TEST_F(VSwapExtra, DamagedFilesAreKept) {
    OpenWithExtra(2, SoundListForm::Short);
    const ByteArray pages = folder_.Read("VSWAP.TST"), extra = folder_.Read("AUDIOMUS.TST");
    for (const std::size_t size : std::initializer_list<std::size_t>{0, 100, 4095, 4096, 9000}) {
        folder_.Write("VSWAP.TST", pages);
        folder_.Write("AUDIOMUS.TST", ByteSpan(extra).first(size));
        Open(pages);
        EXPECT_EQ(ui_.LastPrompt(), "Unable to load digital sounds") << size;
        ASSERT_TRUE(set_.SaveVSwap(vcNone));
        EXPECT_EQ(folder_.Read("VSWAP.TST"), pages);
        EXPECT_EQ(folder_.Read("AUDIOMUS.TST").size(), size);
    }
}

}  // namespace
}  // namespace tessaro
