// The private operations of clsGameMaps around the two codecs.
#include "foundation/guard.h"
#include "maps/game_maps_self.h"

namespace tessaro {

bool clsGameMaps::Self::CarmackExpand(ByteSpan source, ByteArray& destination,
                                      std::int32_t length) const {
    return Guarded("clsGameMaps.CarmackExpand", [&] {
        tessaro::CarmackExpand(source, destination, length, tags);
        return true;
    });
}

bool clsGameMaps::Self::CarmackCompress(ByteArray& data) const {
    return Guarded("clsGameMaps.CarmackCompress", [&] {
        data = tessaro::CarmackCompress(data, SavePrefix(), compileTags);
        return true;
    });
}

bool clsGameMaps::Self::RLEWExpand(std::uint16_t tag, ByteSpan source, ByteArray& destination,
                                   std::int32_t& length, enmCorruptLevel& corruption,
                                   Overrun overrun) const {
    return Guarded("clsGameMaps.RLEWExpand", [&] {
        const RlewExpansion result =
            RlewExpand(tag, source, destination, length, LoadPrefix(), overrun);
        if (result.endedEarly)
            corruption = clHigh;
        else if (result.lengthWasZero && corruption == clNone)
            corruption = clLow;
        return true;
    });
}

bool clsGameMaps::Self::RLEWCompress(std::uint16_t tag, ByteSpan source, ByteArray& destination,
                                     bool writeLength) const {
    return Guarded("clsGameMaps.RLEWCompress", [&] {
        destination = RlewCompress(tag, source, writeLength ? SavePrefix() : LengthPrefix::None);
        return true;
    });
}

bool clsGameMaps::Self::WriteMapName(ByteWriter& out, const std::string& name,
                                     std::int16_t size) const {
    return Guarded("clsGameMaps.WriteMapName", [&] {
        const std::int16_t bytes = size == 0 ? outputMapNameSize : size;
        if (bytes < 0)
            throw Failure(kInvalidProcedureCall);
        return WriteMapNameField(out, name, static_cast<std::size_t>(bytes));
    });
}

}  // namespace tessaro
