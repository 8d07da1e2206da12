#include "images/bmp_image.h"

#include <array>
#include <cstdlib>
#include <tuple>
#include <type_traits>

#include "foundation/store.h"

namespace tessaro::modAddBMPHeader {
namespace {

constexpr std::int64_t kHeaderSize = 54;

constexpr std::int64_t PixelOffset(std::int32_t bitsPerPixel) {
    return bitsPerPixel > 8 ? kHeaderSize : kHeaderSize + (std::int64_t{4} << bitsPerPixel);
}

/// Bytes of one row without its padding; at 4 bits an odd last pixel takes a byte of its own.
constexpr std::int64_t RowSize(std::int64_t width, std::int32_t bitsPerPixel) {
    return (width * bitsPerPixel + 7) / 8;
}

constexpr std::int64_t Padded(std::int64_t rowSize) {
    return (rowSize + 3) / 4 * 4;
}

void WriteColors(ByteWriter& out, std::size_t count) {
    const auto& palette = SharedStore().palette;
    // Blue, green, red, 0: as one number each, which compilers do several at a time.
    std::array<std::uint32_t, std::tuple_size_v<std::remove_cvref_t<decltype(palette)>>> colors;
    for (std::size_t i = 0; i < palette.size(); ++i) {
        const auto color = static_cast<std::uint32_t>(palette[i]);
        colors[i] = (color >> 16 & 0xFF) | (color & 0xFF00) | (color & 0xFF) << 16;
    }
    out.U32s(std::span(colors).first(count));
}

/// Everything in front of the pixels; memory is taken for these, too.
ByteWriter Header(std::int32_t width, std::int32_t height, std::int32_t bits) {
    if (width < 0 || height < 0)
        throw Failure(kInvalidProcedureCall);
    const auto size =
        Narrow<std::int32_t>(PixelOffset(bits) + Padded(RowSize(width, bits)) * height);
    ByteWriter out;
    out.Reserve(static_cast<std::size_t>(size));
    out.Text("BM");
    out.I32(size);
    out.U32(0);
    out.I32(static_cast<std::int32_t>(PixelOffset(bits)));
    out.U32(40);
    out.I32(width);
    out.I32(height);
    out.U16(1);
    out.U16(static_cast<std::uint16_t>(bits));
    out.Fill(24, 0);
    WriteColors(out, std::size_t{1} << bits);
    return out;
}

}  // namespace

ByteArray AddBMPHeader(std::int32_t width, std::int32_t height, ByteSpan pixels, bool force8Bits) {
    return MakeImage(width, height, pixels, ConfiguredGame().egaGraphics && !force8Bits ? 4 : 8);
}

ByteArray MakeImage(std::int32_t width, std::int32_t height, ByteSpan pixels,
                    std::int32_t bitsPerPixel) {
    const std::int64_t rowSize = RowSize(width, bitsPerPixel);
    if (width >= 0 && rowSize * height > static_cast<std::int64_t>(pixels.size()))
        throw Failure(kSubscriptOutOfRange);
    ByteWriter out = Header(width, height, bitsPerPixel);
    const auto row = static_cast<std::size_t>(rowSize);
    const auto padding = static_cast<std::size_t>(Padded(rowSize)) - row;
    for (auto y = static_cast<std::size_t>(height); row > 0 && y-- > 0;) {
        out.Bytes(pixels.subspan(y * row, row));
        if (padding > 0)
            out.Fill(padding, 0);
    }
    return out.Release();
}

ByteArray BlankImage(std::int32_t width, std::int32_t height) {
    ByteWriter out = Header(width, height, 8);
    out.Fill(static_cast<std::size_t>(Padded(width) * height), 0);
    return out.Release();
}

StrippedImage RemoveBMPHeader(ByteSpan image) {
    StrippedImage stripped;
    ByteReader in(image);
    in.Seek(18);
    stripped.width = in.I32();
    const std::int64_t storedHeight = in.I32();
    in.Skip(2);
    stripped.bitsPerPixel = in.I16();

    const std::int64_t height = std::abs(storedHeight);
    stripped.height = Narrow<std::int32_t>(height);
    if (stripped.width < 0)
        throw Failure(kSubscriptOutOfRange);
    if (stripped.bitsPerPixel != 4 && stripped.bitsPerPixel != 8 && stripped.bitsPerPixel != 24)
        return stripped;

    const std::int64_t rowSize = RowSize(stripped.width, stripped.bitsPerPixel);
    const std::int64_t stride = Padded(rowSize);
    if (stride == 0 || height == 0)
        return stripped;
    in.Seek(static_cast<std::size_t>(PixelOffset(stripped.bitsPerPixel)));
    if (height > static_cast<std::int64_t>(in.Remaining()) / stride)
        throw Failure(kSubscriptOutOfRange);
    stripped.pixels.reserve(static_cast<std::size_t>(rowSize * height));
    const ByteSpan rows = in.Take(static_cast<std::size_t>(stride * height));
    for (std::int64_t y = 0; y < height; ++y) {
        const std::int64_t stored = storedHeight < 0 ? y : height - 1 - y;
        const ByteSpan row = rows.subspan(static_cast<std::size_t>(stored * stride),
                                          static_cast<std::size_t>(rowSize));
        stripped.pixels.insert(stripped.pixels.end(), row.begin(), row.end());
    }
    return stripped;
}

}  // namespace tessaro::modAddBMPHeader
