#include "palette/text_palettes.h"

#include <charconv>
#include <string>
#include <vector>

#include "palette/palette_files.h"

namespace tessaro {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kColors = 256;
constexpr unsigned kMax6Bit = 63;

std::string_view Trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// The part before the next separator, which is dropped with it.
std::string_view TakePart(std::string_view& text, std::string_view separators) {
    const std::size_t end = text.find_first_of(separators);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}

std::string_view TakeLine(std::string_view& text) {
    std::string_view line;
    while (line.empty() && !text.empty())
        line = Trimmed(TakePart(text, "\n"));
    return line;
}

std::optional<unsigned> ParseNumber(std::string_view text, unsigned max) {
    text = Trimmed(text);
    unsigned value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || stop != end || value > max)
        return {};
    return value;
}

/// Appends the 6-bit numbers of a comma-separated list in their 8-bit form; false where one of
/// them is none. A comma behind the last number is allowed.
bool AppendNumbers(std::string_view list, ByteArray& palette) {
    list = Trimmed(list);
    while (!list.empty()) {
        const auto value = ParseNumber(TakePart(list, ","), kMax6Bit);
        if (!value || palette.size() == kPaletteSize)
            return false;
        palette.push_back(static_cast<std::uint8_t>(*value * 4));
        list = Trimmed(list);
    }
    return true;
}

std::optional<ByteArray> IfComplete(ByteArray palette) {
    if (palette.size() != kPaletteSize)
        return {};
    return palette;
}

void WriteField(ByteWriter& out, std::uint8_t value) {
    const std::string digits = std::to_string(value >> 2);
    out.Fill(3 - digits.size(), ' ');
    out.Text(digits);
}

/// The lines that both source forms share, with `open` and `close` around each colour.
void WriteColorList(ByteWriter& out, ByteSpan palette, std::string_view open,
                    std::string_view close) {
    for (std::size_t i = 0; i < kColors; ++i) {
        out.Text(open);
        for (std::size_t part = 0; part < 3; ++part) {
            if (part > 0)
                out.Text(",");
            WriteField(out, palette[3 * i + part]);
        }
        out.Text(close);
        if (i + 1 < kColors)
            out.Text(",");
        if (i % 5 == 4)
            out.Text(kLineEnd);
    }
}

}  // namespace

ByteArray WriteJascPalette(ByteSpan palette) {
    ByteWriter out;
    out.Text("JASC-PAL\r\n0100\r\n256\r\n");
    for (std::size_t i = 0; i < kPaletteSize; ++i) {
        out.Text(std::to_string(palette[i]));
        out.Text(i % 3 == 2 ? kLineEnd : " ");
    }
    return out.Release();
}

std::optional<ByteArray> ReadJascPalette(std::string_view text) {
    if (TakeLine(text) != "JASC-PAL")
        return {};
    TakeLine(text);  // the version is always 0100
    const auto count = ParseNumber(TakeLine(text), kColors);
    if (!count || *count == 0)
        return {};
    ByteArray palette;
    for (unsigned i = 0; i < *count; ++i) {
        std::string_view line = TakeLine(text);
        for (int part = 0; part < 3; ++part) {
            line = Trimmed(line);
            const auto value = ParseNumber(TakePart(line, " \t"), 255);
            if (!value)
                return {};
            palette.push_back(static_cast<std::uint8_t>(*value));
        }
    }
    palette.resize(kPaletteSize);
    return palette;
}

ByteArray WriteSourceArray(ByteSpan palette) {
    ByteWriter out;
    out.Text("unsigned char gamepal[768]={");
    out.Text(kLineEnd);
    WriteColorList(out, palette, "", "");
    out.Text("};");
    out.Text(kLineEnd);
    return out.Release();
}

std::optional<ByteArray> ReadSourceArray(std::string_view text) {
    const std::size_t open = text.find('{');
    const std::size_t close = text.find('}', open);
    if (open == std::string_view::npos || close == std::string_view::npos)
        return {};
    ByteArray palette;
    if (!AppendNumbers(text.substr(open + 1, close - open - 1), palette))
        return {};
    return IfComplete(std::move(palette));
}

ByteArray WriteRgbList(ByteSpan palette) {
    ByteWriter out;
    WriteColorList(out, palette, "RGB(", ")");
    out.Text(kLineEnd);
    return out.Release();
}

std::optional<ByteArray> ReadRgbList(std::string_view text) {
    ByteArray palette;
    for (;;) {
        const std::size_t open = text.find('(');
        if (open == std::string_view::npos)
            return IfComplete(std::move(palette));
        const std::size_t close = text.find(')', open);
        if (close == std::string_view::npos)
            return {};
        const std::size_t before = palette.size();
        if (!AppendNumbers(text.substr(open + 1, close - open - 1), palette) ||
            palette.size() != before + 3)
            return {};
        text.remove_prefix(close + 1);
    }
}

}  // namespace tessaro
