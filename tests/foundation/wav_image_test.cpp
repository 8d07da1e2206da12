#include "images/wav_image.h"

#include "support/support.h"

namespace tessaro {
namespace {

using modAddWAVHeader::ReadWave;
using modAddWAVHeader::Wave;
using test::Ascii;
using test::Hex;

class WavImage : public test::InFolder {};

TEST_F(WavImage, HeaderTakesBothSizesFromTheArgument) {
    ByteArray data = Hex("80 81 82");
    modAddWAVHeader::AddWaveHeader(5, data);
    EXPECT_EQ(data, Hex("52 49 46 46 29 00 00 00 57 41 56 45 66 6D 74 20 10 00 00 00"
                        "01 00 01 00 82 1B 00 00 82 1B 00 00 01 00 08 00"
                        "64 61 74 61 05 00 00 00 80 81 82"));
}

struct WaveCase {
    const char* name;
    const char* image;
    const char* samples;
    std::int32_t rate;
    std::int16_t bits, channels;
};
class WavRead : public testing::TestWithParam<WaveCase> {};

TEST_P(WavRead, SamplesAndFormat) {
    const Wave wave = ReadWave(Hex(GetParam().image));
    EXPECT_EQ(wave.samples, Hex(GetParam().samples));
    EXPECT_EQ(wave.sampleRate, GetParam().rate);
    EXPECT_EQ(wave.bitsPerSample, GetParam().bits);
    EXPECT_EQ(wave.channels, GetParam().channels);
}

INSTANTIATE_TEST_SUITE_P(
    Image, WavRead,
    testing::Values(
        WaveCase{"LongFormatChunkIsSkippedBySize",
                 "52494646 00000000 57415645"
                 "666D7420 14000000 0100 0200 44AC0000 88580100 0200 1000 64617461"  // not data
                 "64617461 02000000 0102 FF",
                 "01 02", 44100, 16, 2},
        WaveCase{"UnknownChunksArePassedOver",
                 "52494646 00000000 57415645 4C495354 03000000 616263"
                 "666D7420 10000000 0100 0100 821B0000 821B0000 0100 0800"
                 "64617461 01000000 80",
                 "80", 7042, 8, 1},
        WaveCase{"SecondFormatIsIgnored",
                 "666D7420 10000000 0100 0100 821B0000 00000000 0100 0800"
                 "666D7420 10000000 0100 0200 44AC0000 00000000 0100 1000"
                 "64617461 01000000 80",
                 "80", 7042, 8, 1},
        WaveCase{"DataBeyondTheEnd", "64617461 FFFFFFFF 010203", "01 02 03", 0, 0, 0},
        WaveCase{"NoData", "52494646 00000000 57415645", "", 0, 0, 0},
        WaveCase{"HugeFormatSize",
                 "666D7420 FFFFFFFF 0100 0100 821B0000 821B0000 0100 0800 64617461 01000000 80", "",
                 7042, 8, 1}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(WavImage, ShortFormatChunkIsReportedAndLeavesNothing) {
    ByteArray samples = Hex("01");
    std::int32_t rate = 1;
    std::int16_t bits = 1, channels = 1;
    modAddWAVHeader::RemoveWaveHeader(Hex("666D7420 10000000 0100"), samples, rate, bits, channels);
    ASSERT_EQ(ui_.boxes.size(), 1u);
    EXPECT_EQ(ui_.boxes[0].title, "modAddWAVHeader.RemoveWaveHeader Error");
    EXPECT_TRUE(samples.empty());
    EXPECT_EQ(rate + bits + channels, 0);
}

}  // namespace
}  // namespace tessaro
