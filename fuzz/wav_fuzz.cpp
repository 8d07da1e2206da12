// Whatever an image's bytes are, reading it ends in samples out of its own bytes or in a Failure.
#include <cstdlib>

#include "images/wav_image.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        const auto wave = tessaro::modAddWAVHeader::ReadWave({data, size});
        if (wave.samples.size() > size)
            std::abort();
    } catch (const tessaro::Failure&) {
    }
    return 0;
}
