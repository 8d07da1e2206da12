// The palette file formats, palette to bytes and back; docs/palette-files.md draws each. A palette
// is 768 bytes: red, green and blue of colours 0 to 255, 8-bit.
#pragma once

#include <optional>
#include <string_view>

#include "foundation/bytes.h"
#include "tessaro/palette.h"

namespace tessaro {

inline constexpr std::size_t kPaletteSize = 768;

/// A palette file of the type asked for. An unknown type or a palette of another size fails with
/// number 5.
ByteArray WritePaletteFile(enmSupportedPaletteTypes type, ByteSpan palette);

/// The type of a file by its name or its first four bytes; ptUnknown for any other.
enmSupportedPaletteTypes DetectPaletteType(std::string_view fileName, ByteSpan file);

/// The palette of a file of a type that DetectPaletteType names; nothing where the file does not
/// hold to its form. A RIFF palette that ends early fails with number 9.
std::optional<ByteArray> ReadPaletteFile(enmSupportedPaletteTypes type, ByteSpan file);

}  // namespace tessaro
