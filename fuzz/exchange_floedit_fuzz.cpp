// Whatever a FloEdit file holds, reading it ends in maps or in a Failure.
#include "exchange_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tessaro::FuzzFormat(tessaro::kFloEditFormat, {data, size});
    return 0;
}
