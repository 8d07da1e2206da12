// Songs and effects to and from the files of other programs.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "foundation/bytes.h"
#include "sound/wave_file.h"
#include "support/support.h"
#include "tessaro/sound_files.h"

namespace tessaro::test {
namespace {

// A title of its own, two events (a delay of 7 ticks, then of 8960).
const char* const kSong =
    "0800 20210700 B1310023 0100 54554E4500000000 0000000000000000"
    "4D45 0000000000000000000000000000000000000000000000000000000000000000"
    "000000000000000000000000000000000000000000000000000000000000 00000000 0800";

ByteArray Imported(const ByteArray& file, MusicImport options = {}) {
    ImportedMusic music;
    std::string why;
    EXPECT_TRUE(ImportMusic(file, options, music, why)) << why;
    return music.Chunk;
}

ByteArray Joined(std::initializer_list<ByteArray> parts) {
    ByteArray whole;
    for (const ByteArray& part : parts)
        whole.insert(whole.end(), part.begin(), part.end());
    return whole;
}

TEST(MusicFiles, AreWrittenWithATag) {
    ByteArray file;
    std::string why;
    ASSERT_TRUE(ExportMusic(Hex(kSong), 700, MusicFormat::Wlf, file, why)) << why;
    EXPECT_EQ(file, Joined({Hex("0800 20210700 B1310023 1A"), Ascii("TUNE"), Hex("00 00"),
                            Ascii("ME"), Hex("00"), Ascii("Tessaro"), Hex("0000")}));
    EXPECT_EQ(Imported(file), Hex(kSong));
    ASSERT_TRUE(ExportMusic(Hex(kSong), 700, MusicFormat::Imf, file, why)) << why;
    EXPECT_EQ(ByteArray(file.begin(), file.begin() + 10), Hex("0800 20210600 B131001C"))
        << "delays of 560ths, each end rounded";
    EXPECT_FALSE(ExportMusic(ByteArray(88), 700, MusicFormat::Wlf, file, why));
    EXPECT_EQ(why, "There is no song.");
}

TEST(MusicFiles, AreWrittenAsALogOfRegisters) {
    ByteArray file;
    std::string why;
    ASSERT_TRUE(ExportMusic(Hex(kSong), 700, MusicFormat::Vgm, file, why)) << why;
    ByteReader in(file);
    EXPECT_EQ(in.Text(4), "Vgm ");
    EXPECT_EQ(in.U32(), file.size() - 4);
    EXPECT_EQ(in.U32(), 0x151U);
    in.Seek(0x18);
    EXPECT_EQ(in.U32(), (7 + 0x2300) * 63U);
    EXPECT_EQ(in.U32(), 0x80U - 0x1C) << "it loops to the commands";
    in.Seek(0x50);
    EXPECT_EQ(in.U32(), 3579545U);
    in.Seek(0x80);
    EXPECT_EQ(ByteArray(file.begin() + 0x80, file.begin() + 0x80 + 15),
              Hex("5A0120 5A2021 61B901 5AB131 61FFFF"));
    EXPECT_EQ(DescribeSound(SoundKind::Song, Imported(file)).Title, "TUNE");
    const ByteArray chunk = Imported(file);
    EXPECT_EQ(ByteArray(chunk.begin(), chunk.begin() + 10), Hex("0800 20210700 B1310023"));
    // Other chips' commands, data and short waits are passed over, a long pause is split.
    ByteArray other(file.begin(), file.begin() + 0x80);
    const ByteArray commands =
        Hex("4F11 50AA 521122 67660003000000 5A5A5A 5A2001 62 63 70 7F 9411"
            "C0112233 E011223344 61FFFF 5AB120 66 5A0000");
    other.insert(other.end(), commands.begin(), commands.end());
    const ByteArray packed = Imported(other);
    // 735 + 882 + 1 + 16 + 65535 samples are 1066.2 ticks.
    EXPECT_EQ(ByteArray(packed.begin(), packed.begin() + 10), Hex("0800 20012A04 B1200000"));
    other[0x53] = 0x40;
    ImportedMusic music;
    EXPECT_FALSE(ImportMusic(other, {}, music, why));
    EXPECT_NE(why.find("two YM3812"), std::string::npos);
}

struct ImfCase {
    const char* name;
    ByteArray file;
    const char* begins;  ///< the chunk, up to its names
};

TEST(MusicFiles, AreReadInAllTheirForms) {
    const ByteArray events = Hex("20210700 B1110500");
    const ByteArray tag = Joined({Hex("1A"), Ascii("T"), Hex("00"), Ascii("C"), Hex("00 00")});
    for (const ImfCase& row :
         {ImfCase{"with a length", Joined({Hex("0800"), events}), "0800 20210700 B1110500"},
          {"and more behind", Joined({Hex("0800"), events, Hex("AB")}), "0800 20210700 B1110500"},
          {"and a tag", Joined({Hex("0800"), events, tag}), "0800 20210700 B1110500"},
          {"without a length", Joined({Hex("00000000"), events}),
           "0C00 00000000 20210700 B1110500"},
          {"nor zeros", Hex("20210700 B1110500"), "0800 20210700 B1110500"},
          {"a header", Joined({Ascii("ADLIB"), Hex("01 5400 4700 00 08000000"), events}),
           "0800 20210700 B1110500"},
          {"without a last delay", Hex("0800 20210700 B111"), "0800 20210700 B1110000"},
          {"neither", Hex("00000000 20210700 B111"), "0C00 00000000 20210700 B1110000"}}) {
        const ByteArray chunk = Imported(row.file), begins = Hex(row.begins);
        ASSERT_EQ(chunk.size(), begins.size() + 88) << row.name;
        EXPECT_EQ(ByteArray(chunk.begin(), chunk.begin() + std::ptrdiff_t(begins.size())), begins)
            << row.name;
    }
    EXPECT_EQ(DescribeSound(SoundKind::Song, Imported(Joined({Hex("0800"), events, tag}))).Title,
              "T");
    MusicImport options;
    options.FileTicks = 280;
    options.Title = "NAME";
    const ByteArray chunk = Imported(Joined({Hex("0800"), events}), options);
    EXPECT_EQ(ByteReader(chunk).U32(), 0x21200008U);
    EXPECT_EQ(chunk[4], 18) << "7 ticks of 280 are 17.5 of 700";
    EXPECT_EQ(DescribeSound(SoundKind::Song, chunk).Title, "NAME");
    // A song's own chunk is such a file, and its block of names is kept.
    EXPECT_EQ(Imported(Hex(kSong)), Hex(kSong));

    ImportedMusic music;
    std::string why;
    for (const ByteArray& none : {ByteArray(), Ascii("MThd and so on"), Hex("FF"), ByteArray(1),
                                  Ascii("ADLIB\1"), Hex("0800")}) {
        EXPECT_FALSE(ImportMusic(none, {}, music, why));
        EXPECT_FALSE(why.empty());
    }
    ByteArray huge;
    for (int i = 0; i < 16384; ++i)
        huge.insert(huge.end(), {0, 0, 1, 0});
    EXPECT_FALSE(ImportMusic(huge, {}, music, why));
    EXPECT_NE(why.find("65532"), std::string::npos);
    options.FileTicks = 1;  // 5 s of a file's tick are 3500 of the game's, 100 are 70000
    EXPECT_TRUE(ImportMusic(Hex("0800 20216400 B0310000"), options, music, why));
    EXPECT_EQ(ByteArray(music.Chunk.begin(), music.Chunk.begin() + 14),
              Hex("0C00 2021FFFF 00007111 B0310000"));
    ASSERT_EQ(music.Warnings.size(), 1U);
    EXPECT_NE(music.Warnings[0].find("voice 0"), std::string::npos);
}

ByteArray WaveOf(const char* format, const char* data) {
    const ByteArray fmt = Hex(format), bytes = Hex(data);
    ByteWriter out;
    out.Text("RIFF");
    out.U32(0);
    out.Text("WAVELIST");
    out.U32(5);
    out.Text("data!");
    out.U8(0);
    out.Text("fmt ");
    out.U32(static_cast<std::uint32_t>(fmt.size()));
    out.Bytes(fmt);
    out.Text("data");
    out.U32(0xFFFFFFFF);
    out.Bytes(bytes);
    return out.Release();
}

TEST(WaveFiles, OfEveryKindAreRead) {
    using sound::ReadWaveFile;
    struct Case {
        const char *format, *data;
        std::vector<std::int32_t> samples;
    };
    for (const Case& row :
         {Case{"0100 0100 821B0000 00000000 0100 0800", "00 80 FF", {-0x800000, 0, 0x7F0000}},
          {"0100 0200 44AC0000 00000000 0400 1000", "0080 FF7F 0001 0003 11", {-128, 0x20000}},
          {"0100 0100 44AC0000 00000000 0300 1800", "FFFF7F 000080", {0x7FFFFF, -0x800000}},
          {"0100 0100 44AC0000 00000000 0400 2000", "00FFFF7F 00000080", {0x7FFFFF, -0x800000}},
          {"0300 0100 44AC0000 00000000 0400 2000",
           "0000003F 0000C07F 000000C0",
           {0x400000, 0, -0x800000}},
          {"0300 0100 44AC0000 00000000 0800 4000", "000000000000E0BF", {-0x400000}},
          {"FEFF 0100 44AC0000 00000000 0200 1000 1600 1000 04000000 0100 00000000",
           "0040",
           {0x400000}}})
        EXPECT_EQ(ReadWaveFile(WaveOf(row.format, row.data)).samples, row.samples) << row.format;
    for (const char* bad :
         {"0200 0100 44AC0000 00000000 0100 0400", "0100 0000 44AC0000 00000000 0200 1000",
          "0100 0100 00000000 00000000 0200 1000", "01"})
        EXPECT_THROW(ReadWaveFile(WaveOf(bad, "00")), Failure) << bad;
    const ByteArray whole = WaveOf("0100 0100 821B0000 00000000 0100 0800", "008090");
    for (std::size_t size = 0; size < whole.size() - 3; ++size)
        EXPECT_THROW(ReadWaveFile(ByteSpan(whole).first(size)), Failure) << size;

    ByteArray samples;
    std::string why;
    ASSERT_TRUE(DigitisedSoundFromWave(whole, true, samples, why));
    EXPECT_EQ(samples, Hex("008090")) << "a sound of the games' kind keeps its samples";
}

std::vector<std::int16_t> Sine(double frequency, double seconds, int loudness) {
    std::vector<std::int16_t> samples;
    for (int i = 0; i < seconds * 44100; ++i)
        samples.push_back(static_cast<std::int16_t>(
            std::lround(loudness * std::sin(2 * std::numbers::pi * frequency * i / 44100))));
    return samples;
}

TEST(Effects, AreMadeOfWaves) {
    auto sound = Sine(440, 0.5, 8000);
    const auto soft = Sine(440, 0.25, 10), high = Sine(1500, 0.25, 4000);
    sound.insert(sound.end(), soft.begin(), soft.end());
    sound.insert(sound.end(), high.begin(), high.end());
    ByteArray chunk;
    std::string why;
    ASSERT_TRUE(SpeakerEffectFromWave(MakeWaveFile(sound, 44100), 7, chunk, why)) << why;
    EXPECT_EQ(DescribeSound(SoundKind::Speaker, chunk).Ticks, 141);
    EXPECT_EQ(chunk[4], 7);
    const auto steps = ByteSpan(chunk).subspan(6);
    EXPECT_EQ(steps[30], 45) << "1193182 / (60 * 440) is 45.2";
    EXPECT_EQ(steps[85], 0);
    EXPECT_EQ(steps[120], 13) << "13.3";
    EXPECT_EQ(steps[140], 0);
    EXPECT_FALSE(SpeakerEffectFromWave(MakeWaveFile(Sine(1, 0.2, 0), 44100), 7, chunk, why));

    ByteArray samples;
    ASSERT_TRUE(
        DigitisedSoundFromWave(MakeWaveFile(Sine(300, 1, 16384), 44100), false, samples, why));
    ASSERT_EQ(samples.size(), 7042U);
    EXPECT_NEAR(*std::ranges::max_element(samples), 192, 1);
    EXPECT_NEAR(*std::ranges::min_element(samples), 64, 1);
}

TEST(Effects, AreMadeOfNotes) {
    const ByteArray file = Joined({Ascii("SBI\x1A"), Ascii("Flute"), ByteArray(27),
                                   Hex("21314F00F2D25273000006 0000000000")});
    ByteArray chunk;
    std::string why;
    ASSERT_TRUE(AdLibEffectFromNotes(file, "A4:3 -:2  g#4, a3:1", 9, chunk, why)) << why;
    // 440 Hz is 72.5 * 2^7 / 49716 * 2^20 / 2^20: byte 145 of octave 6; the octave below 73.
    ByteArray steps = Hex("919191 0000");
    steps.insert(steps.end(), 14, 137);
    steps.insert(steps.end(), {73, 0});
    EXPECT_EQ(chunk, Joined({Hex("15000000 0900 21314F00F2D25273000006 0000000000 06"), steps,
                             Hex("00"), Ascii("Flute"), Hex("00")}));
    EXPECT_TRUE(DescribeSound(SoundKind::AdLib, chunk).Sounds);
    for (const char* bad : {"", "H4", "A", "A4:", "A4:0", "A44x", "C0 C9", "A4:99999"})
        EXPECT_FALSE(AdLibEffectFromNotes(file, bad, 9, chunk, why)) << bad;
    EXPECT_FALSE(AdLibEffectFromNotes(Hex("534249"), "A4", 9, chunk, why));
}

}  // namespace
}  // namespace tessaro::test
