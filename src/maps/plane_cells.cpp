#include "maps/plane_cells.h"

#include "tessaro/failure.h"

namespace tessaro {

std::size_t PlaneCells(std::int64_t width, std::int64_t height) {
    if (width < 1 || height < 1)
        throw Failure(kSubscriptOutOfRange);
    if (width > kMostPlaneCells || height > kMostPlaneCells / width)
        throw Failure(kOutOfMemory);
    return static_cast<std::size_t>(width * height);
}

}  // namespace tessaro
