#include "graphics/tiles.h"

#include <algorithm>

#include "graphics/picture_planes.h"

namespace tessaro {
namespace {

constexpr std::size_t kSide = 8;
constexpr std::size_t kMaskSize = 8;

/// The places of the tiles in a sheet.
class SheetPlan {
public:
    SheetPlan(std::int32_t wide, std::int32_t high) {
        constexpr std::int64_t kMostPixels = 16'777'216;
        if (wide < 0 || high < 0)
            throw Failure(kInvalidProcedureCall);
        if (wide > kMostPixels || high > kMostPixels ||
            std::int64_t{wide} * high > kMostPixels / 64)
            throw Failure(kOutOfMemory);
        wide_ = static_cast<std::size_t>(wide);
        tiles_ = wide_ * static_cast<std::size_t>(high);
    }

    std::size_t Tiles() const { return tiles_; }
    std::size_t Pixels() const { return tiles_ * kSide * kSide; }
    /// Where row `y` of a tile starts.
    std::size_t Row(std::size_t tile, std::size_t y) const {
        return ((tile / wide_ * kSide + y) * wide_ + tile % wide_) * kSide;
    }

private:
    std::size_t wide_ = 0;
    std::size_t tiles_ = 0;
};

ByteArray TilePixels(ByteSpan tile, TileForm form) {
    switch (form) {
        case TileForm::Vga:
            return FixPicturePlanesForBMP(tile, kSide, kSide);
        case TileForm::Ega:
            return PixelsFromEgaPlanes(tile, kSide, kSide);
        default:
            return PixelsFromEgaPlanes(tile.subspan(kMaskSize), kSide, kSide);
    }
}

template <class Decode>
ByteArray MakeSheet(ByteSpan chunk, std::size_t tileSize, const SheetPlan& plan, Decode&& decode) {
    ByteArray sheet(plan.Pixels());
    const std::size_t tiles = std::min(plan.Tiles(), chunk.size() / tileSize);
    for (std::size_t tile = 0; tile < tiles; ++tile) {
        const ByteArray pixels = decode(chunk.subspan(tile * tileSize, tileSize));
        for (std::size_t y = 0; y < kSide; ++y)
            std::copy_n(pixels.begin() + static_cast<std::ptrdiff_t>(y * kSide), kSide,
                        sheet.begin() + static_cast<std::ptrdiff_t>(plan.Row(tile, y)));
    }
    return sheet;
}

}  // namespace

std::size_t TileSize(TileForm form) {
    return form == TileForm::Vga ? 64 : form == TileForm::Ega ? 32 : 40;
}

ByteArray TileSheet(ByteSpan chunk, TileForm form, std::int32_t wide, std::int32_t high) {
    return MakeSheet(chunk, TileSize(form), SheetPlan(wide, high),
                     [&](ByteSpan tile) { return TilePixels(tile, form); });
}

ByteArray TileMaskSheet(ByteSpan chunk, std::int32_t wide, std::int32_t high) {
    return MakeSheet(chunk, TileSize(TileForm::EgaMasked), SheetPlan(wide, high),
                     [](ByteSpan tile) { return PixelsFromEgaMask(tile, kSide, kSide); });
}

ByteArray TilesFromSheet(ByteSpan sheet, ByteSpan chunk, TileForm form, std::int32_t wide,
                         std::int32_t high) {
    const SheetPlan plan(wide, high);
    if (sheet.size() < plan.Pixels())
        throw Failure(kSubscriptOutOfRange);
    ByteArray result(chunk.begin(), chunk.end());
    result.resize(std::max(chunk.size(), plan.Tiles() * TileSize(form)));
    for (std::size_t tile = 0; tile < plan.Tiles(); ++tile) {
        ByteArray pixels;
        for (std::size_t y = 0; y < kSide; ++y) {
            const ByteSpan row = sheet.subspan(plan.Row(tile, y), kSide);
            pixels.insert(pixels.end(), row.begin(), row.end());
        }
        const ByteArray stored = form == TileForm::Vga
                                     ? FixPicturePlanesForStorage(pixels, kSide, kSide)
                                     : EgaPlanesFromPixels(pixels, kSide, kSide);
        const std::size_t mask = form == TileForm::EgaMasked ? kMaskSize : 0;
        std::ranges::copy(
            stored, result.begin() + static_cast<std::ptrdiff_t>(tile * TileSize(form) + mask));
    }
    return result;
}

}  // namespace tessaro
