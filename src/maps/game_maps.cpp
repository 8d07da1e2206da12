#include "tessaro/game_maps.h"

#include <algorithm>

#include "foundation/guard.h"
#include "maps/game_maps_self.h"

namespace tessaro {

typMapPlane EmptyPlanes(std::size_t count, std::size_t cells) {
    if (!FitsMap(count, cells))
        throw Failure(kOutOfMemory);
    typMapPlane planes;
    planes.Plane.assign(count, typMapGrid{std::vector<std::int32_t>(cells)});
    return planes;
}

std::int32_t CellValue(std::int32_t value) {
    if (value < -32'768 || value > 65'535)
        throw Failure(kOverflow);
    return static_cast<std::uint16_t>(value);
}

MapItem& clsGameMaps::Self::MapAt(std::int32_t mapNum) {
    if (mapNum < 0 || static_cast<std::size_t>(mapNum) >= set.maps.size())
        throw Failure(kSubscriptOutOfRange);
    return set.maps[static_cast<std::size_t>(mapNum)];
}

void clsGameMaps::Self::ReplacePlanes(MapItem& item, std::int16_t width, std::int16_t height,
                                      typMapPlane planes) {
    item.planes = std::move(planes);
    item.inMemory = item.changed = true;
    item.record.width = width;
    item.record.height = height;
}

clsGameMaps::clsGameMaps() : self_(std::make_unique<Self>()) {}
clsGameMaps::~clsGameMaps() = default;

void clsGameMaps::CloseFile() {
    self_->set.data.Close();
    self_->clipboard.clear();
}

std::int32_t clsGameMaps::NumberOfMaps() const {
    return static_cast<std::int32_t>(self_->set.maps.size());
}

std::string clsGameMaps::MapName(std::int32_t MapNum) const {
    return Guarded("clsGameMaps.MapName", [&] {
        const std::string& name = self_->MapAt(MapNum).record.name;
        const std::size_t first = name.find_first_not_of(' ');
        if (first == std::string::npos)
            return std::string();
        return name.substr(first, name.find_last_not_of(' ') - first + 1);
    });
}

void clsGameMaps::MapName(std::int32_t MapNum, const std::string& NewValue) {
    Guarded("clsGameMaps.MapName", [&] {
        MapItem& item = self_->MapAt(MapNum);
        item.changed = item.changed || item.record.name != NewValue;
        item.record.name = NewValue;
    });
}

enmCorruptLevel clsGameMaps::CorruptMap(std::int32_t MapNum) const {
    return Guarded("clsGameMaps.CorruptMap", [&] { return self_->MapAt(MapNum).corruption; });
}

std::int16_t clsGameMaps::InputMapPlanes() const {
    return self_->set.layout.planes;
}
std::int16_t clsGameMaps::InputMapNameSize() const {
    return self_->set.layout.nameSize;
}

std::int16_t clsGameMaps::OutputMapPlanes() const {
    return self_->outputMapPlanes;
}
void clsGameMaps::OutputMapPlanes(std::int16_t NewValue) {
    self_->outputMapPlanes = NewValue;
}

std::int16_t clsGameMaps::OutputMapNameSize() const {
    return self_->outputMapNameSize;
}
void clsGameMaps::OutputMapNameSize(std::int16_t NewValue) {
    Guarded("clsGameMaps.OutputMapNameSize", [&] {
        if (NewValue < 0)
            throw Failure(kInvalidProcedureCall);
        self_->outputMapNameSize = NewValue;
        const auto size = static_cast<std::size_t>(NewValue);
        for (MapItem& item : self_->set.maps) {
            if (item.record.name.size() > size)
                item.record.name.resize(size);
        }
    });
}

bool clsGameMaps::LoadLengthsAsLong() const {
    return self_->set.layout.longLengths;
}
bool clsGameMaps::SaveLengthsAsLong() const {
    return self_->saveLengthsAsLong;
}
void clsGameMaps::SaveLengthsAsLong(bool NewValue) {
    self_->saveLengthsAsLong = NewValue || self_->set.layout.longLengths;
}

std::int32_t clsGameMaps::LongRLEWTag() const {
    return self_->longRlewTag;
}
void clsGameMaps::LongRLEWTag(std::int32_t NewValue) {
    self_->longRlewTag = NewValue;
}
std::int32_t clsGameMaps::CompileRLEWTAG() const {
    return self_->compileRlewTag;
}
void clsGameMaps::CompileRLEWTAG(std::int32_t NewValue) {
    self_->compileRlewTag = NewValue;
}

std::uint8_t clsGameMaps::NEARTAG() const {
    return self_->tags.nearTag;
}
void clsGameMaps::NEARTAG(std::uint8_t NewValue) {
    self_->tags.nearTag = NewValue;
}
std::uint8_t clsGameMaps::FARTAG() const {
    return self_->tags.farTag;
}
void clsGameMaps::FARTAG(std::uint8_t NewValue) {
    self_->tags.farTag = NewValue;
}
std::uint8_t clsGameMaps::CompileNEARTAG() const {
    return self_->compileTags.nearTag;
}
void clsGameMaps::CompileNEARTAG(std::uint8_t NewValue) {
    self_->compileTags.nearTag = NewValue;
}
std::uint8_t clsGameMaps::CompileFARTAG() const {
    return self_->compileTags.farTag;
}
void clsGameMaps::CompileFARTAG(std::uint8_t NewValue) {
    self_->compileTags.farTag = NewValue;
}

}  // namespace tessaro
