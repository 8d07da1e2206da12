// Whatever bytes an RLEW stream holds, expanding it ends in cells or in a Failure, and what it
// gives packs and expands to itself again where no cell is the tag.
#include <algorithm>
#include <cstdlib>

#include "maps/rlew.h"

using namespace tessaro;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::uint16_t kTag = 0xABCD;
    const ByteSpan source(data, size);
    for (const Overrun overrun : {Overrun::Fails, Overrun::Cuts}) {
        for (const LengthPrefix prefix : {LengthPrefix::Short, LengthPrefix::Long}) {
            ByteArray cells(1024), again(1024);
            std::int32_t length = 0, whole = 1024;
            try {
                RlewExpand(kTag, source, cells, length, prefix, overrun);
                const ByteArray packed = RlewCompress(kTag, cells, LengthPrefix::None);
                RlewExpand(kTag, packed, again, whole, prefix, Overrun::Fails);
            } catch (const Failure&) {
                continue;
            }
            bool holdsTag = false;
            for (std::size_t i = 0; i < cells.size(); i += 2)
                holdsTag = holdsTag || (cells[i] == 0xCD && cells[i + 1] == 0xAB);
            if (!holdsTag && cells != again)
                std::abort();
        }
    }
    return 0;
}
