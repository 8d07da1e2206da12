// The names of the areas in one text: two bytes without a part in it, then the names, each ended
// by CR LF.
#pragma once

#include <string>
#include <vector>

#include "foundation/bytes.h"

namespace tessaro {

inline constexpr std::size_t kAreaNames = 27;

/// Fills all 27 entries, the unused ones empty. An empty line gives no name and is not passed
/// over: its line break begins the next name. That is meant. Text behind the last line break is no
/// name. False for a text with more names; the first 27 are there.
bool ReadAreaNames(ByteSpan text, std::vector<std::string>& names);

}  // namespace tessaro
