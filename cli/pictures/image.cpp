#include "pictures/image.h"

#include <algorithm>
#include <map>

#include "pictures/png_file.h"
#include "report.h"

namespace tessaro::cli {

namespace {

/// Little-endian fields of a file that may be short.
class Fields {
public:
    explicit Fields(const ByteArray& bytes) : bytes_(bytes) {}
    std::uint32_t U32(std::size_t at) const { return U16(at) | U16(at + 2) << 16; }
    std::uint32_t U16(std::size_t at) const { return U8(at) | U8(at + 1) << 8; }
    std::uint32_t U8(std::size_t at) const {
        if (at >= bytes_.size())
            throw CommandError("damaged BMP file: it ends early");
        return bytes_[at];
    }

private:
    const ByteArray& bytes_;
};

void Append(ByteArray& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

SourceImage ReadBmp(const ByteArray& file) {
    const Fields in(file);
    const std::uint32_t pixelsAt = in.U32(10), infoSize = in.U32(14), bits = in.U16(28);
    const auto width = static_cast<std::int32_t>(in.U32(18));
    const auto storedHeight = static_cast<std::int32_t>(in.U32(22));
    const bool topDown = storedHeight < 0;
    const std::int64_t height = topDown ? -std::int64_t{storedHeight} : storedHeight;
    if (width < 1 || height < 1 || width > 16384 || height > 16384 || infoSize < 40)
        throw CommandError("damaged BMP file: it has no usable size");
    const bool indexed = bits == 1 || bits == 4 || bits == 8;
    if ((!indexed && bits != 24 && bits != 32) || (in.U32(30) != 0 && in.U32(30) != 3))
        throw CommandError("only uncompressed BMP files of 1, 4, 8, 24 or 32 bits are read");
    SourceImage image;
    image.width = width;
    image.height = static_cast<int>(height);
    image.indexed = indexed;
    if (indexed) {
        const std::uint32_t stored = in.U32(46);
        const std::uint32_t count = stored == 0 || stored > (1U << bits) ? 1U << bits : stored;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t at = 14 + std::size_t{infoSize} + 4 * std::size_t{i};
            image.palette.push_back({static_cast<std::uint8_t>(in.U8(at + 2)),
                                     static_cast<std::uint8_t>(in.U8(at + 1)),
                                     static_cast<std::uint8_t>(in.U8(at))});
        }
    }
    const std::size_t rowBytes = (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
    in.U8(pixelsAt + rowBytes * static_cast<std::size_t>(height) - 1);  // before memory is taken
    for (std::int64_t y = 0; y < height; ++y) {
        const auto row = static_cast<std::size_t>(topDown ? y : height - 1 - y);
        const std::size_t start = pixelsAt + row * rowBytes;
        for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
            if (indexed) {
                const std::uint32_t byte = in.U8(start + x * bits / 8);
                const std::uint32_t shift = 8 - bits - x * bits % 8;
                const std::uint32_t index = byte >> shift & ((1U << bits) - 1);
                image.indices.push_back(static_cast<std::uint8_t>(index));
                image.pixels.push_back(index < image.palette.size() ? image.palette[index] : Rgb{});
            } else {
                const std::size_t at = start + x * (bits / 8);
                image.pixels.push_back({static_cast<std::uint8_t>(in.U8(at + 2)),
                                        static_cast<std::uint8_t>(in.U8(at + 1)),
                                        static_cast<std::uint8_t>(in.U8(at))});
            }
        }
    }
    image.opaque.assign(image.pixels.size(), 1);
    return image;
}

int Distance(const Rgb& a, const Rgb& b) {
    const int red = a.red - b.red, green = a.green - b.green, blue = a.blue - b.blue;
    return red * red + green * green + blue * blue;
}

std::uint8_t Nearest(const Rgb& color, const Colors& colors, int count,
                     std::optional<std::uint8_t> except) {
    int best = -1;
    for (int i = 0; i < count; ++i) {
        if (except && i == *except)
            continue;
        if (best < 0 || Distance(color, colors[static_cast<std::size_t>(i)]) <
                            Distance(color, colors[static_cast<std::size_t>(best)]))
            best = i;
    }
    return static_cast<std::uint8_t>(best);
}

/// Whether every colour in use is the game's colour of the same index.
bool SameColors(const SourceImage& source, const Colors& colors, int colorCount,
                std::optional<std::uint8_t> hole) {
    if (!source.indexed)
        return false;
    for (std::size_t i = 0; i < source.indices.size(); ++i) {
        const int index = source.indices[i];
        const bool isHole = hole && index == *hole;
        if (!isHole && (!source.opaque[i] || index >= colorCount ||
                        source.pixels[i] != colors[static_cast<std::size_t>(index)]))
            return false;
    }
    return true;
}

}  // namespace

Colors CurrentColors(const clsPalette& palette) {
    Colors colors;
    for (std::int32_t i = 0; i < 256; ++i) {
        const std::int32_t value = palette.Color(i);
        colors[static_cast<std::size_t>(i)] = {static_cast<std::uint8_t>(value),
                                               static_cast<std::uint8_t>(value >> 8),
                                               static_cast<std::uint8_t>(value >> 16)};
    }
    return colors;
}

SourceImage ReadImage(const ByteArray& file) {
    if (file.size() > 8 && file[0] == 0x89 && file[1] == 'P' && file[2] == 'N' && file[3] == 'G')
        return ReadPng(file);
    if (file.size() > 2 && file[0] == 'B' && file[1] == 'M')
        return ReadBmp(file);
    throw CommandError("neither a PNG nor a BMP file");
}

IndexedImage FromBmp(const ByteArray& bmp) {
    SourceImage source = ReadBmp(bmp);
    IndexedImage image;
    image.width = source.width;
    image.height = source.height;
    image.pixels = std::move(source.indices);
    image.colorCount = static_cast<int>(source.palette.size());
    std::copy(source.palette.begin(), source.palette.end(), image.colors.begin());
    return image;
}

ByteArray ToBmp(const IndexedImage& image, int bits) {
    const auto width = static_cast<std::size_t>(image.width);
    const auto height = static_cast<std::size_t>(image.height);
    const std::size_t perByte = bits == 4 ? 2 : 1;
    const std::size_t stride = ((width + perByte - 1) / perByte + 3) / 4 * 4;
    const std::uint32_t colorCount = bits == 4 ? 16 : 256;
    const std::uint32_t pixelsAt = 54 + 4 * colorCount;
    ByteArray out = {'B', 'M'};
    Append(out, pixelsAt + static_cast<std::uint32_t>(stride * height), 4);
    Append(out, 0, 4);
    Append(out, pixelsAt, 4);
    Append(out, 40, 4);
    Append(out, static_cast<std::uint32_t>(width), 4);
    Append(out, static_cast<std::uint32_t>(height), 4);
    Append(out, 1, 2);
    Append(out, static_cast<std::uint32_t>(bits), 2);
    out.resize(54);
    for (std::uint32_t i = 0; i < colorCount; ++i) {
        const Rgb& color = image.colors[i];
        out.insert(out.end(), {color.blue, color.green, color.red, 0});
    }
    for (std::size_t row = height; row-- > 0;) {
        const std::size_t start = out.size();
        out.resize(start + stride);
        for (std::size_t x = 0; x < width; ++x) {
            const std::uint8_t index = image.pixels[row * width + x];
            out[start + x / perByte] |=
                static_cast<std::uint8_t>(bits == 4 && x % 2 == 0 ? index << 4 : index);
        }
    }
    return out;
}

ByteArray ToPng(const IndexedImage& image) {
    PngPixels png{image.width,   image.height,     1,         image.pixels,
                  &image.colors, image.colorCount, image.hole};
    if (!image.mask.empty()) {
        png.channels = 4;
        png.bytes.clear();
        for (std::size_t i = 0; i < image.pixels.size(); ++i) {
            const Rgb& color = image.colors[image.pixels[i]];
            const auto alpha = static_cast<std::uint8_t>(image.IsHole(i) ? 0 : 255);
            png.bytes.insert(png.bytes.end(), {color.red, color.green, color.blue, alpha});
        }
    }
    return WritePng(png);
}

Mapped MapToColors(const SourceImage& source, const Colors& colors, int colorCount,
                   std::optional<std::uint8_t> hole) {
    Mapped result;
    result.image.width = source.width;
    result.image.height = source.height;
    result.image.colors = colors;
    result.image.colorCount = colorCount;
    result.image.hole = hole;
    result.kept = SameColors(source, colors, colorCount, hole);
    if (result.kept) {
        result.image.pixels = source.indices;
        return result;
    }
    std::map<std::uint32_t, std::uint8_t> known;
    for (std::size_t i = 0; i < source.pixels.size(); ++i) {
        const Rgb& color = source.pixels[i];
        if (hole && (!source.opaque[i] || color == colors[*hole])) {
            result.image.pixels.push_back(*hole);
            continue;
        }
        const std::uint32_t key =
            std::uint32_t{color.red} << 16 | std::uint32_t{color.green} << 8 | color.blue;
        const auto [entry, isNew] = known.try_emplace(key);
        if (isNew)
            entry->second = Nearest(color, colors, colorCount, hole);
        result.image.pixels.push_back(entry->second);
    }
    return result;
}

}  // namespace tessaro::cli
