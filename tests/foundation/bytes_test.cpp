#include "foundation/bytes.h"

#include "support/support.h"

namespace tessaro {
namespace {

using test::Ascii;
using test::Hex;

TEST(ByteReader, ReadsEachWidthInFileOrder) {
    const ByteArray bytes = Hex("80 FFFF FEFF FFFFFF 01000080 02000000 4142");
    ByteReader in(bytes);
    EXPECT_EQ(in.U8(), 0x80);
    EXPECT_EQ(in.U16(), 0xFFFF);
    EXPECT_EQ(in.I16(), -2);
    EXPECT_EQ(in.U24(), 0xFFFFFFu);
    EXPECT_EQ(in.I32(), -2147483647);
    EXPECT_EQ(in.U32(), 2u);
    EXPECT_EQ(in.Text(2), "AB");
    EXPECT_TRUE(in.AtEnd());
}

TEST(ByteReader, EveryReadBeyondTheEndFailsOrReadsZeros) {
    const ByteArray bytes = Hex("01 02 03");
    ByteReader strict(bytes);
    EXPECT_THROW(strict.U32(), Failure);
    EXPECT_EQ(strict.Position(), 0u) << "a failed read takes nothing";
    EXPECT_THROW(strict.Seek(4), Failure);
    EXPECT_THROW(strict.Take(static_cast<std::size_t>(-1)), Failure);
    ByteReader lenient(bytes, PastEnd::ReadsZero);
    EXPECT_EQ(lenient.U32(), 0x00030201u);
    EXPECT_EQ(lenient.U16(), 0);
    lenient.Seek(100);
    EXPECT_TRUE(lenient.AtEnd());
}

TEST(ByteWriter, WritesPadsAndPatches) {
    ByteWriter out;
    out.U8(1);
    out.I16(-2);
    out.U24(0x030405);
    out.U32(0);
    out.Padded("AB", 4);
    out.Fill(2, 0xEE);
    out.PatchU32(6, 0x0A0B0C0D);
    out.PatchU16(0, 0x1122);
    EXPECT_EQ(out.Release(), Hex("2211 FF 050403 0D0C0B0A 41420000 EEEE"));
    EXPECT_THROW(ByteWriter().Padded("ABC", 2), Failure);
    EXPECT_THROW(ByteWriter().PatchU16(0, 1), Failure);
}

TEST(Narrow, FailsInsteadOfDroppingBits) {
    EXPECT_EQ(Narrow<std::uint16_t>(65535), 65535);
    EXPECT_EQ(test::FailureOf([] { Narrow<std::uint16_t>(65536); }), kOverflow);
    EXPECT_THROW(Narrow<std::uint8_t>(-1), Failure);
}

}  // namespace
}  // namespace tessaro
