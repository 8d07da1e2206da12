// Whatever a font chunk holds, reading it and drawing with it ends in pixels or in a Failure; what
// looks like a font is one. The first byte chooses between bytes and bits.
#include <cstdlib>

#include "graphics/chunk_content.h"
#include "graphics/fonts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaro;
    if (size == 0)
        return 0;
    const bool ega = (data[0] & 1) != 0;
    const ByteSpan bytes(data + 1, size - 1);
    const bool looks = LooksLikeFont(bytes, ega);
    try {
        const typFont font = ReadFont(bytes, ega);
        for (std::int32_t c = 0; c < 256; ++c)
            (void)RenderCharacter(font, c, 0, 15);
        (void)RenderText(font, "A text\r\nof lines", 0, 15);
    } catch (const Failure& failure) {
        if (looks && failure.Number != kOverflow)
            std::abort();
    }
    return 0;
}
