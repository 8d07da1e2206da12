// A small map set written byte by byte: two maps of 4 x 2 cells, every plane one word all over, so
// that each plane takes ten bytes.
#pragma once

#include "maps/game_maps_self.h"
#include "support/saving.h"

namespace tessaro {

/// A name without the padding behind its first zero byte.
inline std::string DisplayName(const std::string& name) {
    return name.substr(0, name.find('\0'));
}

}  // namespace tessaro

namespace tessaro::test {

/// A stored plane of eight cells that hold the same byte: both lengths, then one run.
inline ByteArray SmallPlane(const std::string& cell) {
    return Hex("0800 1000 CDAB 0800" + cell + "00");
}

inline ByteArray SmallData() {
    return Ascii("TED5v1.0") + SmallPlane("01") + SmallPlane("02") + SmallPlane("00") +
           Hex("08000000 12000000 1C000000  0A00 0A00 0A00  0400 0200") +      // at 38
           Ascii("First") + Hex("00 787878") + ByteArray(7) + Ascii("!ID!") +  //
           SmallPlane("03") + SmallPlane("04") + SmallPlane("05") +
           Hex("50000000 5A000000 64000000  0A00 0A00 0A00  0400 0200") +  // at 110
           Ascii("Sixteen letters!") + Ascii("!ID!") + Ascii("!ID!");
}

inline ByteArray SmallHeader() {
    return Hex("CDAB 26000000 6E000000") + ByteArray(98 * 4);
}

class SmallMaps : public InFolder {
protected:
    void SetUp() override {
        FreshStore(folder_.Path());
        ConfiguredGame().backupFolder = folder_.File("backup");
        ConfiguredGame().mapHeaderFile = folder_.Write("MAPHEAD.TST", SmallHeader());
        ConfiguredGame().gameMapsFile = folder_.Write("GAMEMAPS.TST", SmallData());
    }

    /// A file's bytes; none where it is not there.
    ByteArray BytesOf(const std::string& name) const {
        return folder_.Has(name) ? folder_.Read(name) : ByteArray();
    }

    /// A map's planes; none when it could not be loaded.
    static typMapPlane Planes(clsGameMaps& maps, std::int32_t map) {
        typMapPlane planes;
        std::int32_t width = 0, height = 0;
        maps.LoadMap(map, planes, width, height);
        return planes;
    }

    static std::int32_t Cell(clsGameMaps& maps, std::int32_t map, std::size_t plane,
                             std::size_t cell) {
        return Planes(maps, map).Plane.at(plane).Grid.at(cell);
    }
};

}  // namespace tessaro::test
