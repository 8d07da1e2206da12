// Pictures in palette colours, as games store them, and as BMP and PNG files.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "tessaro/palette.h"
#include "tessaro/types.h"

namespace tessaro::cli {

struct Rgb {
    std::uint8_t red = 0, green = 0, blue = 0;
    friend bool operator==(const Rgb&, const Rgb&) = default;
};

using Colors = std::array<Rgb, 256>;

Colors CurrentColors(const clsPalette& palette);

/// The colour index of a sprite's transparent pixels.
inline constexpr std::uint8_t kHole = 255;

/// One byte per pixel, row by row from the top.
struct IndexedImage {
    int width = 0, height = 0;
    ByteArray pixels;
    Colors colors{};
    int colorCount = 256;                ///< 16 in 16-colour games
    std::optional<std::uint8_t> hole{};  ///< the index that is transparent
    ByteArray mask{};                    ///< nonzero where transparent; empty: see `hole`

    bool IsHole(std::size_t pixel) const {
        return mask.empty() ? hole && pixels[pixel] == *hole : mask[pixel] != 0;
    }
};

/// A picture file as it was read: with a palette of its own, or in full colour.
struct SourceImage {
    int width = 0, height = 0;
    bool indexed = false;
    ByteArray indices;                 ///< where indexed
    std::vector<Rgb> palette;          ///< where indexed
    std::vector<std::uint8_t> opaque;  ///< a byte per pixel; 0 where transparent
    std::vector<Rgb> pixels;           ///< every pixel's colour
};

/// Reads a PNG or an uncompressed BMP file (1, 4, 8, 24 or 32 bits per pixel).
SourceImage ReadImage(const ByteArray& file);

/// A BMP image as the library hands it out (4 or 8 bits per pixel).
IndexedImage FromBmp(const ByteArray& bmp);

/// A BMP image as the library takes it: bottom-up, and with 8 bits per pixel and 256 colours where
/// `bits` is 8, with 4 bits and 16 colours where it is 4.
ByteArray ToBmp(const IndexedImage& image, int bits = 8);

/// A PNG file with the palette kept. Holes become transparent: those of an index by its palette
/// entry, those of a mask by full-colour pixels with transparency.
ByteArray ToPng(const IndexedImage& image);

/// What became of a picture's colours.
struct Mapped {
    IndexedImage image;
    bool kept = false;  ///< the indices are those of the file
};

/// Brings a picture into the game's colors. Its indices are kept when each color in use is the
/// game's color of that index; otherwise each pixel takes the nearest color. Pixels that are
/// transparent, or have exactly the color of `hole`, become holes; no other color does.
Mapped MapToColors(const SourceImage& source, const Colors& colors, int colorCount,
                   std::optional<std::uint8_t> hole);

}  // namespace tessaro::cli
