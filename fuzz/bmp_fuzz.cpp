// Whatever an image's bytes are, stripping it ends in rows of its own bytes or in a Failure.
#include <cstdlib>

#include "images/bmp_image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto image = tessaro::modAddBMPHeader::RemoveBMPHeader({data, size});
        if (image.pixels.size() > size)
            std::abort();
    } catch (const tessaro::Failure&) {
    }
    return 0;
}
