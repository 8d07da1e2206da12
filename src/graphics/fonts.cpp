#include "graphics/fonts.h"

#include <algorithm>
#include <vector>

namespace tessaro {
namespace {

/// Pixels from bits. The padding bits behind a row fall on the first pixels of the next one, which
/// overwrites them in its turn: the order of the rows matters.
void UnpackBits(ByteSpan rows, std::size_t width, std::size_t height, ByteArray& points) {
    const std::size_t rowSize = (width + 7) / 8;
    for (std::size_t row = 0; row < height; ++row)
        for (std::size_t column = 0; column < rowSize; ++column)
            for (std::size_t bit = 8; bit-- > 0;) {
                const std::size_t target = width * row + 8 * column + (7 - bit);
                if (target < points.size())
                    points[target] = rows[rowSize * row + column] >> bit & 1;
            }
}

class Canvas {
public:
    Canvas(std::int32_t width, std::int32_t height, std::int32_t backColor, std::int32_t foreColor)
        : rowSize_((static_cast<std::size_t>(width) + 3) / 4 * 4),
          foreColor_(Narrow<std::uint8_t>(foreColor)),
          pixels_(rowSize_ * static_cast<std::size_t>(std::max(height, 0)),
                  Narrow<std::uint8_t>(backColor)) {}

    void Draw(const typFont& font, std::size_t character, std::size_t left, std::size_t top) {
        const std::size_t width = font.Widths[character];
        const ByteArray& points = font.Chars[character].Points;
        for (std::size_t i = 0; i < points.size(); ++i)
            if (points[i] != 0)
                pixels_[(top + i / width) * rowSize_ + left + i % width] = foreColor_;
    }

    ByteArray Release() { return std::move(pixels_); }

private:
    std::size_t rowSize_;
    std::uint8_t foreColor_;
    ByteArray pixels_;
};

std::vector<std::string_view> SplitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (;;) {
        const std::size_t end = text.find("\r\n");
        lines.push_back(text.substr(0, end));
        if (end == std::string_view::npos)
            return lines;
        text.remove_prefix(end + 2);
    }
}

std::int64_t LineWidth(const typFont& font, std::string_view line) {
    std::int64_t width = 0;
    for (const char c : line)
        width += font.Widths[static_cast<std::uint8_t>(c)];
    return width;
}

}  // namespace

FontHead ReadFontHead(ByteSpan bytes) {
    ByteReader in(bytes);
    FontHead head;
    head.height = in.I16();
    for (std::int16_t& offset : head.offsets)
        offset = in.I16();
    std::ranges::copy(in.Take(head.widths.size()), head.widths.begin());
    return head;
}

typFont ReadFont(ByteSpan bytes, bool ega) {
    const FontHead head = ReadFontHead(bytes);
    typFont font;
    font.Height = head.height;
    font.Offsets = head.offsets;
    font.Widths = head.widths;
    for (std::size_t c = 0; c < font.Chars.size(); ++c) {
        if (head.offsets[c] <= 0 || head.widths[c] == 0)
            continue;
        const std::size_t width = head.widths[c];
        const auto count = Narrow<std::int16_t>(head.widths[c] * std::int32_t{head.height});
        if (count < 0)
            throw Failure(kSubscriptOutOfRange);
        const auto height = static_cast<std::size_t>(head.height);
        ByteReader in(bytes);
        in.Seek(static_cast<std::size_t>(head.offsets[c]));
        const ByteSpan stored = in.Take((ega ? (width + 7) / 8 : width) * height);
        ByteArray& points = font.Chars[c].Points;
        if (!ega) {
            points.assign(stored.begin(), stored.end());
            continue;
        }
        points.resize(static_cast<std::size_t>(count));
        UnpackBits(stored, width, height, points);
    }
    return font;
}

RenderedText RenderText(const typFont& font, std::string_view text, std::int32_t backColor,
                        std::int32_t foreColor) {
    constexpr std::int64_t kMostPixels = 1 << 28;
    const std::vector<std::string_view> lines = SplitLines(text);
    std::int64_t width = 0;
    for (const std::string_view line : lines)
        width = std::max(width, LineWidth(font, line));
    const std::int64_t height = std::ssize(lines) * font.Height;
    if (width > kMostPixels || height > kMostPixels || width * height > kMostPixels)
        throw Failure(kOutOfMemory);

    RenderedText rendered;
    rendered.width = static_cast<std::int32_t>(width);
    rendered.height = static_cast<std::int32_t>(height);
    if (width < 1)
        return rendered;
    Canvas canvas(rendered.width, rendered.height, backColor, foreColor);
    std::size_t top = 0;
    for (const std::string_view line : lines) {
        std::size_t left = 0;
        for (const char c : line) {
            const auto character = static_cast<std::uint8_t>(c);
            canvas.Draw(font, character, left, top);
            left += font.Widths[character];
        }
        top += static_cast<std::size_t>(std::max<std::int16_t>(font.Height, 0));
    }
    rendered.pixels = canvas.Release();
    return rendered;
}

ByteArray RenderCharacter(const typFont& font, std::int32_t character, std::int32_t backColor,
                          std::int32_t foreColor) {
    if (character < 0 || character > 255)
        throw Failure(kSubscriptOutOfRange);
    const auto index = static_cast<std::size_t>(character);
    if (font.Widths[index] == 0)
        return {Narrow<std::uint8_t>(backColor)};
    Canvas canvas(font.Widths[index], font.Height, backColor, foreColor);
    canvas.Draw(font, index, 0, 0);
    return canvas.Release();
}

}  // namespace tessaro
