// A full-colour drawing: map pictures and contact sheets.
#pragma once

#include <string_view>

#include "pictures/image.h"

namespace tessaro::cli {

struct Rect {
    int x = 0, y = 0, width = 0, height = 0;
};

/// A picture at the size at which it is drawn, so that drawing it again is copying.
struct Stamp {
    int width = 0, height = 0;
    std::vector<Rgb> pixels;
    std::vector<std::uint8_t> ink;  ///< 0 where what is below stays
    bool solid = true;              ///< ink everywhere
};

/// Scales a picture by averaging. `brightness` is 256 for the picture as it is.
Stamp Scaled(const IndexedImage& image, int width, int height, int brightness = 256);

/// Everything drawn is cut at the edges.
class Canvas {
public:
    Canvas(int width, int height, Rgb background);

    int Width() const { return width_; }
    int Height() const { return height_; }
    void Fill(const Rect& area, Rgb color);
    void Frame(const Rect& area, Rgb color);
    void Disc(int centerX, int centerY, int radius, Rgb color);
    /// A triangle that points into one of eight directions: 0 east, 2 north, 4 west, 6 south.
    void Arrow(int centerX, int centerY, int radius, int direction, Rgb color);
    void Draw(const Stamp& stamp, int x, int y);
    /// Scales a picture into an area.
    void Draw(const IndexedImage& image, const Rect& area) {
        Draw(Scaled(image, area.width, area.height), area.x, area.y);
    }
    void Text(int x, int y, std::string_view text, Rgb color);
    ByteArray Png() const;

private:
    void Set(int x, int y, Rgb color);

    int width_, height_;
    std::vector<Rgb> pixels_;
};

/// A picture without the transparent rows and columns around it.
IndexedImage Cropped(const IndexedImage& image);

/// The colour between two.
Rgb Mixed(Rgb a, Rgb b, int shareOfB);  ///< 0 to 256

}  // namespace tessaro::cli
