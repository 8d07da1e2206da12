// The variants that go by a well-known extension.
#pragma once

#include <string>

namespace tessaro::cli {

/// The games whose map cells are known. Where nothing is known every value is `Unknown`.
enum class CellSet { Wolf, Spear, Catacomb, Unknown };

struct Variant {
    const char* extension;
    const char* name;
    CellSet cells;
};

/// The variant of an extension in upper case; null for one that is not known.
const Variant* VariantOf(const std::string& extension);

}  // namespace tessaro::cli
