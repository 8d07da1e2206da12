// What a file that is already there has to be before the command replaces it.
#pragma once

#include <string>

#include "tessaro/types.h"

namespace tessaro::cli {

struct FileKind {
    const char* name;  ///< "a PNG file"
    bool (*is)(const ByteArray& content);
};

extern const FileKind kPngFile, kBmpFile, kWavFile, kMapFile, kPaletteFile;
/// What `extract` writes under names of its own, whatever it holds.
extern const FileKind kExtractedFile;

/// From now on this file is never replaced: it belongs to the game that is open.
void Protect(const std::string& path);

/// --force was given.
bool& ReplaceOtherKinds();

/// Fails unless `path` is free, or holds a file of this kind. With --force other kinds are replaced
/// too, but a game's data never is.
void CheckReplaceable(const std::string& path, const FileKind& kind);

}  // namespace tessaro::cli
