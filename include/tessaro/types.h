// The types in which items cross the public interface.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tessaro {

/// A zero-based array of unsigned bytes; most items cross the interface in this form.
using ByteArray = std::vector<std::uint8_t>;
/// Bytes that somebody else keeps.
using ByteSpan = std::span<const std::uint8_t>;

/// Raised once for each item written; `Chunk` counts from 1. A handler may read from the container.
/// Opening a set, changing the number of items or a map's size, with clsVGAGraph changing a chunk,
/// and a save within the save fail with number 5 until the set is written; a handler of
/// SaveComplete may do all of it.
using SaveStatusEvent = std::function<void(std::int32_t Chunk, std::int32_t TotalChunks)>;
/// Raised once when an item cannot be written.
using SaveErrorEvent = std::function<void(std::int32_t Chunk, const std::string& ErrorDescription)>;
/// Raised exactly once at the end of every save that began.
using SaveCompleteEvent = std::function<void(bool Success)>;

}  // namespace tessaro
