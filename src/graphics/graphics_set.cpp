#include "graphics/graphics_set.h"

#include <utility>

namespace tessaro {

std::size_t GraphicsSet::Index(std::int32_t chunk) const {
    if (chunk < 0 || chunk >= Count())
        throw Failure(kSubscriptOutOfRange);
    return static_cast<std::size_t>(chunk);
}

void GraphicsSet::Recognise(std::int32_t chunk, enmVGRAGRAPHTypes type) {
    types[Index(chunk)] = type;
    found[static_cast<std::size_t>(type - vgSparse)] = true;
}

bool GraphicsSet::Found(enmVGRAGRAPHTypes type) const {
    return found[static_cast<std::size_t>(type - vgSparse)];
}

std::int32_t GraphicsSet::ChunkOfType(enmVGRAGRAPHTypes type, std::int32_t position) const {
    for (std::size_t i = 0; i < types.size(); ++i)
        if (types[i] == type && position-- == 0)
            return static_cast<std::int32_t>(i);
    return -1;
}

bool GraphicsSet::HasNoLengthField(std::int32_t chunk) const {
    switch (TypeOf(chunk)) {
        case vgTile8:
            return ChunkOfType(vgTile8, 0) == chunk;
        case vgTile8m:
        case vgTile16:
        case vgTile16M:
            return true;
        default:
            return false;
    }
}

}  // namespace tessaro
