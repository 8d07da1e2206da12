// Maps for the tests of the exchange files, and what each of these files is read with.
#pragma once

#include "maps/exchange/exchange_format.h"
#include "support/support.h"

namespace tessaro::test {

inline std::vector<ForeignMap> ReadFile(const ByteArray& file, std::string_view name = "a.map") {
    return ReadForeignMaps(file, name, {});
}

/// A map whose plane p holds first[p], first[p] + step, ... from its top left cell on.
inline ForeignMap Counting(std::int32_t width, std::int32_t height, std::vector<std::int32_t> first,
                           std::int32_t step = 1) {
    ForeignMap map{.width = width, .height = height};
    for (std::int32_t cell : first) {
        typMapGrid plane;
        for (std::int32_t i = 0; i < width * height; ++i, cell += step)
            plane.Grid.push_back(cell);
        map.planes.Plane.push_back(plane);
    }
    return map;
}

/// A square map of planes that each hold one value.
inline ForeignMap Uniform(std::int32_t side, std::vector<std::int32_t> cells) {
    return Counting(side, side, std::move(cells), 0);
}

/// Every file cut short is refused, whatever the cut.
inline void ExpectLadder(const ByteArray& whole, std::string_view name = "a.map") {
    EXPECT_NO_THROW(ReadFile(whole, name));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(ReadFile(Part(whole, 0, length), name), Failure)
            << length << " of " << whole.size();
}

/// What a step refuses with; a refusal without words where it does not.
template <class Step>
Refusal RefusalOf(Step&& step) {
    try {
        step();
    } catch (const Refusal& refused) {
        return refused;
    }
    return Refusal("", 0);
}

}  // namespace tessaro::test
