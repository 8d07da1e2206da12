// Whatever a palette file holds, reading it as any type ends in 768 bytes, in nothing or in a
// Failure, and what was read is read again from the file written from it.
#include <cstdlib>

#include "palette/palette_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaro;
    for (auto type : {ptJASC3, ptJASC8, ptWolf4GW, ptWolf4SDL}) {
        try {
            const auto palette = ReadPaletteFile(type, {data, size});
            if (palette && ReadPaletteFile(type, WritePaletteFile(type, *palette)) != palette)
                std::abort();
        } catch (const Failure&) {
        }
    }
    return 0;
}
