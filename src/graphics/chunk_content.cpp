#include "graphics/chunk_content.h"

#include <algorithm>
#include <string_view>

#include "graphics/fonts.h"

namespace tessaro {
namespace {

bool StartsWith(ByteSpan bytes, std::string_view text) {
    return bytes.size() >= text.size() &&
           std::equal(text.begin(), text.end(), bytes.begin(),
                      [](char c, std::uint8_t b) { return static_cast<std::uint8_t>(c) == b; });
}

bool IsDemo(ByteSpan bytes, bool ega) {
    if (bytes.size() <= 4)
        return false;
    const std::size_t at = ega ? 2 : 1;
    const std::size_t length = bytes[at] + bytes[at + 1] * std::size_t{256};
    return length + (ega ? 4 : 0) == bytes.size();
}

}  // namespace

enmVGRAGRAPHTypes TypeByContent(ByteSpan bytes, bool ega) {
    using namespace std::string_view_literals;
    const std::size_t size = bytes.size();
    if (StartsWith(bytes, "JAMP"))
        return vgJAMP;
    if (size == 768 && std::ranges::all_of(bytes, [](std::uint8_t b) { return b < 64; }))
        return vgPalette;
    if (StartsWith(bytes, "\xFD\x00\xB8"sv) && (size == 4007 || size == 4008))
        return vgEndScreen;
    if (size == 4000)
        return vgTrucEndScreen;
    if (StartsWith(bytes, "^P") || StartsWith(bytes, "^p"))
        return vgEndArt;
    if (IsDemo(bytes, ega))
        return vgDemo;
    if (ega && StartsWith(bytes, "\r\n"))
        return vgAreaNames;
    return vgMisc;
}

bool LooksLikeFont(ByteSpan bytes, bool ega) {
    constexpr std::size_t kLeast = kFontPixels + 1;
    constexpr std::int16_t kGreatestHeight = 64;
    if (bytes.size() < kLeast)
        return false;
    const FontHead head = ReadFontHead(bytes);
    if (head.height < 1 || head.height > kGreatestHeight)
        return false;
    std::size_t end = 0;
    for (std::size_t c = 0; c < 256; ++c) {
        if (head.widths[c] == 0)
            continue;
        if (head.offsets[c] < static_cast<std::int16_t>(kFontPixels))
            return false;
        const std::size_t row = ega ? (head.widths[c] + std::size_t{7}) / 8 : head.widths[c];
        end = std::max(end, static_cast<std::size_t>(head.offsets[c]) +
                                row * static_cast<std::size_t>(head.height));
    }
    return end == bytes.size();
}

std::vector<PictureSize> ReadPictureTable(ByteSpan bytes, bool ega) {
    constexpr std::int32_t kWidest = 640;
    constexpr std::int32_t kHighest = 480;
    const auto usable = [](PictureSize size) {
        return size.width > 0 && size.height > 0 && size.width <= kWidest &&
               size.height <= kHighest;
    };
    std::vector<PictureSize> pictures;
    ByteReader in(bytes);
    while (in.Remaining() >= 4) {
        const std::int32_t width = in.U16() * (ega ? 8 : 1);
        const std::int32_t height = in.U16();
        if (!ega && !usable({width, height}))
            break;
        pictures.push_back({width, height});
    }
    while (!pictures.empty() && !usable(pictures.back()))
        pictures.pop_back();
    return pictures;
}

std::vector<typSpriteHead> ReadSpriteTable(ByteSpan bytes) {
    std::vector<typSpriteHead> sprites;
    ByteReader in(bytes);
    while (in.Remaining() >= 18) {
        typSpriteHead head;
        for (std::int16_t* field : {&head.Width, &head.Height, &head.OrgX, &head.OrgY, &head.Rx1,
                                    &head.Ry1, &head.Rx2, &head.Ry2, &head.Shifts})
            *field = in.I16();
        sprites.push_back(head);
    }
    return sprites;
}

std::int32_t FindStartPics(const std::vector<PictureSize>& pictures,
                           std::span<const StoredLength> chunks, bool ega) {
    constexpr std::size_t kLastCandidate = 32;
    std::size_t best = 0;
    std::size_t bestCount = 0;
    for (std::size_t first = 1; first <= kLastCandidate && first < chunks.size(); ++first) {
        std::size_t count = 0;
        for (std::size_t k = 0; k < pictures.size() && first + k < chunks.size(); ++k) {
            const StoredLength& chunk = chunks[first + k];
            // Four planes of one bit a pixel: half a byte each.
            const std::int64_t area = std::int64_t{pictures[k].width} * pictures[k].height;
            count += chunk.present && area > 0 && chunk.length == (ega ? area / 2 : area) ? 1 : 0;
        }
        if (count > bestCount) {
            best = first;
            bestCount = count;
        }
    }
    return static_cast<std::int32_t>(best);
}

}  // namespace tessaro
