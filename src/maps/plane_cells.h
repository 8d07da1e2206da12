// How many cells a plane may have, whatever a file or a host asks for.
#pragma once

#include <cstddef>
#include <cstdint>

namespace tessaro {

inline constexpr std::int64_t kMostPlaneCells = 16'777'216;

/// The number of cells of a plane. Fails with number 9 for a side below 1 and with number 7 for
/// more than kMostPlaneCells.
std::size_t PlaneCells(std::int64_t width, std::int64_t height);

}  // namespace tessaro
