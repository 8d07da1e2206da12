#include "variants.h"

#include <algorithm>
#include <iterator>

namespace tessaro::cli {

namespace {

constexpr MapCodes kClassic = MapCodes::Classic, kOther = MapCodes::Other;

constexpr Variant kVariants[] = {
    {"WL1", "Wolfenstein 3D, shareware", kClassic},
    {"WL3", "Wolfenstein 3D, three episodes", kClassic},
    {"WL6", "Wolfenstein 3D, six episodes", kClassic},
    {"WJ6", "Wolfenstein 3D, Japanese", kClassic},
    {"SOD", "Spear of Destiny", kClassic},
    {"SDM", "Spear of Destiny, demo", kClassic},
    {"SD1", "Spear of Destiny, mission 1", kClassic},
    {"SD2", "Spear of Destiny, mission 2", kClassic},
    {"SD3", "Spear of Destiny, mission 3", kClassic},
    {"N3D", "Super 3D Noah's Ark", kClassic},
    {"BS1", "Blake Stone, shareware", kOther},
    {"BS6", "Blake Stone", kOther},
    {"VSI", "Blake Stone: Planet Strike", kOther},
    {"CO7", "Corridor 7", kOther},
    {"OBC", "Operation Body Count", kOther},
    {"C3D", "Catacomb 3-D", kOther},
    {"ABS", "The Catacomb Abyss", kOther},
    {"ARM", "The Catacomb Armageddon", kOther},
    {"APC", "The Catacomb Apocalypse", kOther},
    {"BM1", "Bio Menace, first episode", kOther},
    {"BM2", "Bio Menace, second episode", kOther},
    {"BM3", "Bio Menace, third episode", kOther},
};

}  // namespace

const Variant* VariantOf(const std::string& extension) {
    const auto found =
        std::find_if(std::begin(kVariants), std::end(kVariants),
                     [&](const Variant& variant) { return extension == variant.extension; });
    return found == std::end(kVariants) ? nullptr : found;
}

}  // namespace tessaro::cli
