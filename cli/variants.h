// The variants that go by a well-known extension.
#pragma once

#include <string>

namespace tessaro::cli {

/// What the cells of a variant's maps mean.
enum class MapCodes { Classic, Other };

struct Variant {
    const char* extension;
    const char* name;
    MapCodes codes;
};

/// The variant of an extension in upper case; null for one that is not known.
const Variant* VariantOf(const std::string& extension);

}  // namespace tessaro::cli
