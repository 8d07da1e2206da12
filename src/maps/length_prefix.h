// The length in front of packed data: how many bytes it expands to, 2 or 4 bytes wide.
#pragma once

namespace tessaro {

enum class LengthPrefix { None, Short, Long };

}  // namespace tessaro
