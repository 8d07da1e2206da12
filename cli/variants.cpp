#include "variants.h"

#include <algorithm>
#include <iterator>

namespace tessaro::cli {

namespace {

constexpr CellSet kWolf = CellSet::Wolf, kSpear = CellSet::Spear, kNone = CellSet::Unknown;

constexpr Variant kVariants[] = {
    {"WL1", "Wolfenstein 3D, shareware", kWolf},
    {"WL3", "Wolfenstein 3D, three episodes", kWolf},
    {"WL6", "Wolfenstein 3D, six episodes", kWolf},
    {"WJ6", "Wolfenstein 3D, Japanese", kWolf},
    {"SOD", "Spear of Destiny", kSpear},
    {"SDM", "Spear of Destiny, demo", kSpear},
    {"SD1", "Spear of Destiny, mission 1", kSpear},
    {"SD2", "Spear of Destiny, mission 2", kSpear},
    {"SD3", "Spear of Destiny, mission 3", kSpear},
    {"N3D", "Super 3D Noah's Ark", kWolf},
    {"BS1", "Blake Stone, shareware", kNone},
    {"BS6", "Blake Stone", kNone},
    {"VSI", "Blake Stone: Planet Strike", kNone},
    {"CO7", "Corridor 7", kNone},
    {"OBC", "Operation Body Count", kNone},
    {"C3D", "Catacomb 3-D", CellSet::Catacomb},
    {"ABS", "The Catacomb Abyss", kNone},
    {"ARM", "The Catacomb Armageddon", kNone},
    {"APC", "The Catacomb Apocalypse", kNone},
    {"BM1", "Bio Menace, first episode", kNone},
    {"BM2", "Bio Menace, second episode", kNone},
    {"BM3", "Bio Menace, third episode", kNone},
};

}  // namespace

const Variant* VariantOf(const std::string& extension) {
    const auto found =
        std::find_if(std::begin(kVariants), std::end(kVariants),
                     [&](const Variant& variant) { return extension == variant.extension; });
    return found == std::end(kVariants) ? nullptr : found;
}

}  // namespace tessaro::cli
