// Whatever a sprite chunk holds, decoding it ends in pixels or in a Failure; pixels compile, in
// every compression, to a chunk that decodes to them.
#include <cstdlib>

#include "pagefile/sprite_chunk.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaro;
    try {
        const ByteArray columns = DecodeSprite({data, size}, 64);
        for (const auto compression : {vcNone, vcOriginal, vcGood})
            if (DecodeSprite(CompileSprite(columns, 64, compression), 64) != columns)
                std::abort();
    } catch (const Failure&) {
    }
    return 0;
}
