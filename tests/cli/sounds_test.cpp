// WAV files, and the notes of music.
#include "files.h"
#include "report.h"
#include "sounds/music.h"
#include "sounds/wav.h"
#include "support/support.h"

namespace tessaro::test {

namespace {

using namespace cli;

const char* const kWav =
    "52494646 28000000 57415645 666D7420 10000000 0100 0100 821B0000 821B0000 0100 0800"
    "64617461 04000000 7F808182";

TEST(Wav, IsReadByItsChunksAndWrittenAsTheGamesPlayIt) {
    const Wav wav = ReadWav(Hex(kWav));
    EXPECT_EQ(wav.rate, 7042U);
    EXPECT_EQ(wav.bits, 8);
    EXPECT_EQ(wav.channels, 1);
    EXPECT_EQ(wav.samples, Hex("7F808182"));
    EXPECT_EQ(WriteWav(wav.samples), Hex(kWav));
    // A longer format and a text that says "data" are passed over.
    const Wav odd = ReadWav(Hex(
        "52494646 00000000 57415645 666D7420 12000000 0100 0200 11220000 00000000 0400 1000 0000"
        "4C495354 05000000 6461746100 00 64617461 FF000000 0102"));
    EXPECT_EQ(odd.rate, 0x2211U);
    EXPECT_EQ(odd.bits, 16);
    EXPECT_EQ(odd.channels, 2);
    EXPECT_EQ(odd.samples, Hex("0102")) << "a size beyond the end is what is there";
    const ByteArray whole = Hex(kWav);
    for (std::size_t size = 0; size < 44; ++size)
        EXPECT_THROW(ReadWav(ByteArray(whole.begin(), whole.begin() + std::ptrdiff_t(size))),
                     CommandError)
            << size;
}

TEST(Music, NotesAreKeysGoingDown) {
    // Length 24; key of voice 0 down, again down, up, down; voice 8 down; another register.
    const ByteArray chunk =
        Hex("1800 B0200000 B0310000 B0110500 B0200000 B8200000 20200000 74696D65");
    EXPECT_EQ(CountNotes(chunk), 3);
    EXPECT_EQ(MusicFile(chunk), ByteArray(chunk.begin(), chunk.begin() + 26));
    // A length beyond the end counts the whole events that are there.
    EXPECT_EQ(MusicFile(Hex("FF00 B0200000 B020")), Hex("0400 B0200000"));
    for (const char* none : {"", "10", "0000 B0200000"}) {
        EXPECT_EQ(CountNotes(Hex(none)), 0);
        EXPECT_TRUE(MusicFile(Hex(none)).empty());
    }
}

TEST(Files, NamesBecomeHarmlessPartsOfFileNames) {
    EXPECT_EQ(SafeName("Wolf1 Map_2-b"), "Wolf1-Map_2-b");
    EXPECT_EQ(SafeName("../a\\b:c*\xE4\x01."), "___a_b_c____");
    EXPECT_EQ(SafeName(std::string(100, 'x')).size(), 40U);
    EXPECT_EQ(SafeName(""), "");
}

}  // namespace

}  // namespace tessaro::test
