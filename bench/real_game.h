// The real game that benchmarks measure with: TESSARO_GAME_DATA names the folder above wl1.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "platform/file.h"

namespace tessaro {

/// A file of the real game; nothing without one.
inline std::optional<std::string> RealFile(const std::string& name) {
    const char* root = std::getenv("TESSARO_GAME_DATA");
    if (root == nullptr)
        return std::nullopt;
    return JoinPath(JoinPath(root, "wl1"), name);
}

}  // namespace tessaro
