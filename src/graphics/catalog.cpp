#include "graphics/catalog.h"

#include "foundation/bytes.h"

namespace tessaro {

std::size_t GraphicsCatalog::Index(std::int32_t chunk) const {
    if (chunk < 0 || chunk >= Count())
        throw Failure(kSubscriptOutOfRange);
    return static_cast<std::size_t>(chunk);
}

void GraphicsCatalog::Retype(std::int32_t chunk, enmVGRAGRAPHTypes type) {
    types_[Index(chunk)] = type;
    if (type == vgTile8) {
        if (firstTile8_ < 0 || chunk < firstTile8_)
            firstTile8_ = chunk;
    } else if (chunk == firstTile8_) {
        firstTile8_ = ChunkOfType(vgTile8, 0);
    }
}

void GraphicsCatalog::Recognise(std::int32_t chunk, enmVGRAGRAPHTypes type) {
    Retype(chunk, type);
    found_[static_cast<std::size_t>(type - vgSparse)] = true;
}

bool GraphicsCatalog::Found(enmVGRAGRAPHTypes type) const {
    return found_[static_cast<std::size_t>(type - vgSparse)];
}

void GraphicsCatalog::Resize(std::int32_t chunks) {
    types_.resize(static_cast<std::size_t>(chunks), vgUnknown);
    if (firstTile8_ >= chunks)
        firstTile8_ = -1;
}

enmVGRAGRAPHTypes GraphicsCatalog::TypeByTable(std::int32_t chunk) const {
    const auto within = [&](std::int64_t first, std::size_t count) {
        return chunk >= first && chunk < first + static_cast<std::int64_t>(count);
    };
    if (within(startPics, pictures.size()))
        return vgPicture;
    if (within(std::int64_t{startPics} + numberOfPics, maskedPictures.size()))
        return vgBMPMask;
    return within(firstSprite, sprites.size()) ? vgSprite : vgUnknown;
}

std::int32_t GraphicsCatalog::ChunkOfType(enmVGRAGRAPHTypes type, std::int32_t position) const {
    for (std::size_t i = 0; i < types_.size(); ++i)
        if (types_[i] == type && position-- == 0)
            return static_cast<std::int32_t>(i);
    return -1;
}

bool GraphicsCatalog::HasNoLengthField(std::int32_t chunk) const {
    switch (TypeOf(chunk)) {
        case vgTile8:
            return chunk == firstTile8_;
        case vgTile8m:
        case vgTile16:
        case vgTile16M:
            return true;
        default:
            return false;
    }
}

}  // namespace tessaro
