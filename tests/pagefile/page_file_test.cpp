#include "pagefile/page_file.h"

#include "pagefile/extra_sounds.h"
#include "support/support.h"

namespace tessaro {
namespace {

using test::Hex;

TEST(PageFile, TablesAndChunksAreLaidOut) {
    PageFileImage packed(1);
    packed.AddChunk(Hex("0A0B0C"));
    packed.AddChunk({});
    packed.AddChunk(Hex("0D"));
    const ByteArray file =
        Hex("0300 0100 0200"
            "18000000 00000000 1B000000"
            "0300 0000 0100"
            "0A0B0C 0D");
    EXPECT_EQ(packed.Assemble(1, 2), file);

    ByteReader in(file);
    const PageTable table = PageTable::ReadFrom(in);
    EXPECT_EQ(table.spriteStart, 1);
    EXPECT_EQ(table.soundStart, 2);
    EXPECT_EQ(table.offsets, (std::vector<std::int32_t>{24, 0, 27}));
    EXPECT_EQ(table.lengths, (std::vector<std::int32_t>{3, 0, 1}));
    for (std::size_t size = 0; size < PageTable::Size(3); ++size) {
        ByteReader cut(ByteSpan(file).first(size));
        EXPECT_THROW(PageTable::ReadFrom(cut), Failure) << size;
    }

    // On borders of 512, the first chunk too; no gap after the last one.
    PageFileImage aligned(512);
    aligned.AddChunk(Hex("0A0B0C"));
    aligned.AddChunk({});
    aligned.AddChunk(Hex("0D"));
    ByteArray padded = Hex("0300 0100 0200  00020000 00000000 00040000  0300 0000 0100");
    padded.resize(1024);
    padded.push_back(0x0D);
    padded[512] = 0x0A, padded[513] = 0x0B, padded[514] = 0x0C;
    EXPECT_EQ(aligned.Assemble(1, 2), padded);
}

TEST(PageFile, SoundsAreCutIntoPages) {
    for (const auto& [bytes, pages, last] :
         {std::tuple{0, 1, 0}, {1, 1, 1}, {4096, 1, 4096}, {4097, 2, 1}, {9000, 3, 808}}) {
        PageFileImage image(1);
        image.AddSound(ByteArray(static_cast<std::size_t>(bytes)));
        ASSERT_EQ(image.Count(), pages) << bytes;
        EXPECT_EQ(image.LengthOf(static_cast<std::size_t>(pages - 1)),
                  static_cast<std::size_t>(last));
    }
}

TEST(PageFile, CountsBeyondItsNumbersFail) {
    PageFileImage image(1);
    for (int i = 0; i < 32768; ++i)
        image.AddChunk({});
    EXPECT_THROW(image.Assemble(0, 0), Failure);
}

TEST(SoundList, BothForms) {
    const std::vector<SoundEntry> sounds{{0, 5996}, {2, 65535}};
    EXPECT_EQ(WriteSoundList(sounds, SoundListForm::Short), Hex("0000 6C17 0200 FFFF"));
    EXPECT_EQ(WriteSoundList(sounds, SoundListForm::Long),
              Hex("00000000 6C170000 02000000 FFFF0000"));
    EXPECT_EQ(ReadSoundList(Hex("0000 6C17 0200 FFFF 00"), SoundListForm::Short), sounds);
    EXPECT_EQ(ReadSoundList(Hex("00000000 6C170000 02000000 FFFF0000"), SoundListForm::Long),
              sounds);
    EXPECT_EQ(ReadSoundList(Hex("FEFF 0100"), SoundListForm::Short),
              (std::vector<SoundEntry>{{-2, 1}}));
    EXPECT_THROW(WriteSoundList({{{0, 65536}}}, SoundListForm::Short), Failure);
}

TEST(ExtraFile, IsWholePagesThatEndWithListAndTable) {
    ExtraFileImage image;
    image.AddSound(ByteArray(8192, 7), 8192);
    image.AddSound(ByteArray(300, 8), 300);
    const ByteArray file = image.Assemble(SoundListForm::Short);
    ASSERT_EQ(file.size(), 5u * 4096);
    EXPECT_EQ(test::Part(file, 8191, 2), Hex("0708"));
    EXPECT_EQ(test::Part(file, 8192 + 299, 2), Hex("0800"));
    EXPECT_EQ(test::Part(file, 3 * 4096, 12), Hex("0000 0020 0200 2C01 0000 0000"));
    EXPECT_EQ(test::Part(file, 4 * 4096, 24),
              Hex("00000000 00100000 00200000 00300000  0010 0010 2C01 0800"));
}

TEST(ExtraFile, SmallLengthsDoNotHideTheEndOfTheOffsets) {
    // The first two lengths, 3 and 0, read as one number are below the file's length.
    ExtraFileImage image;
    image.AddSound(ByteArray(3, 9), 3);
    image.AddSound({}, 0);
    const ByteArray file = image.Assemble(SoundListForm::Short);
    ByteReader in(ByteSpan(file).last(4096));
    const ExtraTable table = ExtraTable::ReadFrom(in, static_cast<std::int64_t>(file.size()));
    EXPECT_EQ(table.offsets, (std::vector<std::int32_t>{0, 4096, 8192, 12288, 16384}));
    EXPECT_EQ(table.lengths, (std::vector<std::int32_t>{4096, 4096, 3, 0, 8}));
    EXPECT_EQ(file[8192], 9);
    EXPECT_EQ(ReadSoundList(ByteSpan(file).subspan(16384, 8), SoundListForm::Short),
              (std::vector<SoundEntry>{{2, 3}, {3, 0}}));

    ExtraFileImage tooMany;
    tooMany.AddSound(ByteArray(682 * 4096), 682 * 4096);
    EXPECT_THROW(tooMany.Assemble(SoundListForm::Long), Failure);
}

}  // namespace
}  // namespace tessaro
