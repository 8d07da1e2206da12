// The graphics and audio files of the sample game, from their items' plain bytes.
#pragma once

#include <optional>
#include <vector>

#include "tessaro/types.h"

namespace tessaro::sample {

struct GameFiles {
    ByteArray header, data;
    ByteArray dictionary;  ///< empty for audio that is not compressed
};

struct GraphicsChunk {
    ByteArray bytes = {};
    bool isTile = false;     ///< stored without its length
    bool endsGroup = false;  ///< followed by four stray bytes, as the games' own tools left them
    bool sparse = false;
};

GameFiles WriteGraphicsFiles(const std::vector<GraphicsChunk>& chunks);

/// Both groups of effects, the placeholders of a third, the songs.
GameFiles WriteAudioFiles(bool compressed);

}  // namespace tessaro::sample
