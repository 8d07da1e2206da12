#include "audio/audio_file.h"

#include "audio/even_dictionary.h"

namespace tessaro {
namespace {

using test::Hex;

struct StartCase {
    const char* name;
    std::vector<std::int32_t> offsets;
    bool sixteenColors;
    std::optional<std::int32_t> start;
};
class StartMusicOf : public testing::TestWithParam<StartCase> {};

TEST_P(StartMusicOf, Offsets) {
    EXPECT_EQ(FindStartMusic(GetParam().offsets, GetParam().sixteenColors), GetParam().start);
}

INSTANTIATE_TEST_SUITE_P(
    Header, StartMusicOf,
    testing::Values(
        // Chunks 0 to 3 are effects, 4 and 5 placeholders, 6 and 7 songs.
        StartCase{"RunOfPlaceholders", {0, 9, 18, 27, 36, 36, 36, 90, 99}, false, 6},
        StartCase{"RunStaysOpenWhileSizesStaySmall", {0, 9, 18, 27, 36, 36, 40, 90, 99}, false, 6},
        StartCase{"FiveBytesAreNoPlaceholder", {0, 9, 18, 23, 32, 90}, false, std::nullopt},
        StartCase{"OneTooManyIn16ColorGames", {0, 9, 18, 27, 36, 45, 45, 90, 99, 120}, true, 6},
        StartCase{"RemainderTwoTakesTheNext", {0, 9, 18, 27, 36, 36, 90, 99, 120}, true, 6},
        StartCase{"RemainderTwoOnlyIn16ColorGames", {0, 9, 18, 27, 36, 36, 90, 99}, false, 5},
        StartCase{"BackwardsStepClosesTheRun", {0, 9, 18, 18, 10, 90, 99}, false, 3},
        StartCase{"RunUpToTheEndIsNotClosed", {0, 9, 18, 18, 18, 18}, false, std::nullopt},
        StartCase{"FourChunksWithoutARun", {0, 9, 18, 27, 36}, false, 3},
        StartCase{"FiveChunksWithoutARun", {0, 9, 18, 27, 36, 45}, false, std::nullopt},
        StartCase{"NoOffsets", {}, false, std::nullopt},
        StartCase{
            "OutermostOffsets", {0x7FFFFFFF, -0x7FFFFFFF, 0x7FFFFFFF, 1, 1, 9, 19}, false, 4}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(AudioFile, ChunksEndWhereTheNextRealOneBegins) {
    const std::vector<std::int32_t> offsets = {0, 10, -1, -1, 30, 25, -1};
    const auto size = [&](std::size_t chunk) { return FindAudioRange(offsets, chunk, 40).size; };
    EXPECT_EQ(size(0), 10);
    EXPECT_EQ(size(1), 20) << "sparse chunks in between take nothing away";
    EXPECT_EQ(size(4), 0) << "offsets out of order";
    EXPECT_EQ(size(5), 15) << "up to the end of the file";
}

TEST(AudioFile, HeaderIsAListOfOffsets) {
    const std::vector<std::int32_t> offsets = {0, -1, 0x12345678};
    EXPECT_EQ(WriteAudioHeader(offsets), Hex("00000000 FFFFFFFF 78563412"));
    EXPECT_EQ(ReadAudioHeader(Hex("00000000 FFFFFFFF 78563412 0102")), offsets);
    EXPECT_TRUE(ReadAudioHeader(Hex("010203")).empty());
}

TEST(AudioFile, CompressedChunks) {
    const HuffDictionary dictionary = test::EvenDictionary();
    const ByteArray bytes = test::Ascii("a text");
    const ByteArray chunk = CompressAudioChunk(bytes, dictionary);
    EXPECT_EQ(test::Part(chunk, 0, 4), Hex("06000000"));
    EXPECT_EQ(ExpandAudioChunk(chunk, dictionary), bytes);

    // What would not survive the coded form is stored as it stands.
    for (const ByteArray& tiny : {ByteArray{}, Hex("01"), Hex("010203")}) {
        EXPECT_EQ(CompressAudioChunk(tiny, dictionary), tiny);
        EXPECT_EQ(ExpandAudioChunk(tiny, dictionary), tiny);
    }
    for (const ByteArray& plain :
         {Hex("21494421"), Hex("00000000 01"), Hex("00000100 01"), Hex("FFFFFFFF 01")})
        EXPECT_EQ(ExpandAudioChunk(plain, dictionary), plain) << "no length from 1 to 65535";
    EXPECT_EQ(ExpandAudioChunk(Hex("05000000 00"), dictionary).size(), 5u) << "ends early";

    EXPECT_EQ(ExpandAudioChunk(CompressAudioChunk(ByteArray(65535, 7), dictionary), dictionary),
              ByteArray(65535, 7));
    EXPECT_THROW(CompressAudioChunk(ByteArray(65536, 7), dictionary), Failure);
    HuffDictionary poor = dictionary;
    poor[0] = poor[1];  // the codes of the values 0 and 1 are gone
    EXPECT_THROW(CompressAudioChunk(ByteArray(4, 0), poor), Failure);
    poor = dictionary;
    poor[254].Bit0 = poor[254].Bit1;  // half of the codes do not begin at the root
    EXPECT_THROW(CompressAudioChunk(Hex("004080FF"), poor), Failure);
}

}  // namespace
}  // namespace tessaro
