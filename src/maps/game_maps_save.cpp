// clsGameMaps: writing both map files.
//
// The map data file:
//
//  0        8           signature (map_layout.cpp lists them)
//  then, for each map:
//    P packed planes    each as long as the record says
//    record             as in map_record.cpp; the header file's slot points here
//    4                  "!ID!"
//  then     4           "!ID!" once more
#include <algorithm>
#include <utility>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "maps/game_maps_save.h"
#include "maps/game_maps_self.h"

namespace tessaro {

namespace {

constexpr std::int32_t kMapNotLoaded = 1700;
constexpr std::int32_t kNameTooLong = 1799;
constexpr std::int16_t kMostPlanes = 64;
constexpr std::int16_t kLongestName = 1024;
constexpr std::string_view kMarker = "!ID!";

std::string NewName(const std::string& path) {
    return path + ".new";
}

}  // namespace

MapSave::MapSave(clsGameMaps& host)
    : SetSave("clsGameMaps.SaveMapFile", host.self_->game ? host.self_->game : SharedStore().game,
              host.self_->saving),
      host_(host),
      self_(*host.self_),
      writing_{{self_.outputMapPlanes, self_.outputMapNameSize, self_.saveLengthsAsLong},
               {self_.saveLengthsAsLong ? LengthPrefix::Long : LengthPrefix::Short,
                static_cast<std::uint16_t>(self_.compileRlewTag), self_.compileTags,
                AtStart().mapsAreVersion10}} {}

std::vector<NewFile> MapSave::Write() {
    const MapLayout& layout = writing_.layout;
    if (self_.set.maps.empty())
        throw Failure(0, "There are no maps to save.");
    if (layout.planes < 1 || layout.planes > kMostPlanes || layout.nameSize < 1 ||
        layout.nameSize > kLongestName)
        throw Failure(kInvalidProcedureCall,
                      "A map set needs 1 to 64 planes and names of 1 to 1024 bytes.");
    if (writing_.form.tags.nearTag == writing_.form.tags.farTag)
        throw Failure(kInvalidProcedureCall,
                      "The near and the far tag for writing are the same.  Set two different "
                      "ones.");
    const auto count = static_cast<std::int32_t>(self_.set.maps.size());
    ByteWriter out;
    out.Text(MapSignature(layout));
    std::vector<std::int32_t> slots;
    for (std::int32_t map = 0; map < count; ++map) {
        slots.push_back(WriteMap(map, out));
        Flag().Status([&] {
            if (host_.SaveStatus)
                host_.SaveStatus(map + 1, count);
        });
    }
    out.Text(kMarker);

    counter_ = static_cast<std::int32_t>(std::max(kFewestHeaderSlots, slots.size()) - 1);
    return {{AtStart().gameMapsFile, out.Release()},
            {AtStart().mapHeaderFile, WriteMapHeaderFile(self_.set, writing_, std::move(slots))}};
}

/// One map's planes, record and marker. Returns where the record lies.
std::int32_t MapSave::WriteMap(std::int32_t map, ByteWriter& out) {
    const MapItem& item = Loaded(map);
    const auto planes = static_cast<std::size_t>(writing_.layout.planes);
    const std::string name = "Could not save map " + std::to_string(map);
    const std::size_t cells = PlaneCells(item.record.width, item.record.height);
    if (!FitsMap(planes, cells))
        throw Failure(kOutOfMemory, name + " with " + std::to_string(planes) +
                                        " planes of its size.  Save fewer planes or make the map "
                                        "smaller.  Aborting.");
    MapRecord record{{}, {}, item.record.width, item.record.height, {}};
    for (std::size_t plane = 0; plane < planes; ++plane) {
        counter_ = static_cast<std::int32_t>(plane);
        // Planes that the map does not have are empty ones: this is how a set gets more planes.
        const ByteArray bytes = plane < item.planes.Plane.size()
                                    ? CellBytes(item.planes.Plane[plane])
                                    : ByteArray(cells * sizeof(std::uint16_t));
        ByteArray packed;
        try {
            packed = EncodePlane(bytes, writing_.form);
        } catch (const Failure& failure) {
            throw Failure(failure.Number, name + " because its plane " + std::to_string(plane) +
                                              " " + failure.Description + "  Aborting.");
        }
        record.planeOffsets.push_back(Narrow<std::int32_t>(out.Position()));
        record.planeLengths.push_back(Narrow<std::int32_t>(packed.size()));
        out.Bytes(packed);
    }
    const auto slot = Narrow<std::int32_t>(out.Position());
    record.WriteNumbersTo(out, writing_.layout);
    if (!WriteMapNameField(out, modCodePage::TextToDosCodePage(item.record.name),
                           static_cast<std::size_t>(writing_.layout.nameSize)))
        throw Failure(kNameTooLong, name +
                                        " due to map name being too long.  Change length in "
                                        "project information.  Aborting.");
    out.Text(kMarker);
    return slot;
}

const MapItem& MapSave::Loaded(std::int32_t map) {
    try {
        return self_.BringIn(map);
    } catch (...) {
        Report(CurrentProcedure("clsGameMaps.LoadMap"), CurrentFailure());
    }
    throw Failure(kMapNotLoaded,
                  "Could not load map " + std::to_string(map) + " in order to save.  Aborting.");
}

void MapSave::Prove(const Files& files) {
    reread_ = MapSet::Open(AtStart(), files);
    RequireSameMaps(self_.set.maps, reread_, writing_);
}

std::vector<DataFile*> MapSave::Read() {
    std::vector<DataFile*> read;
    if (IsInPlace(*AtStart().files, AtStart().mapHeaderFile, self_.set.header))
        read.push_back(&self_.set.header);
    if (IsInPlace(*AtStart().files, AtStart().gameMapsFile, self_.set.data))
        read.push_back(&self_.set.data);
    return read;
}

std::vector<std::string> MapSave::Changed() const {
    std::vector<std::string> items;
    for (std::size_t map = 0; map < self_.set.maps.size(); ++map) {
        if (self_.set.maps[map].changed)
            items.push_back("map " + std::to_string(map));
    }
    return items;
}

/// The set is now what was written; planes in memory stay, and so does the tail's first place.
void MapSave::Adopt() {
    MapSet& set = self_.set;
    for (std::size_t map = 0; map < set.maps.size(); ++map) {
        MapRecord& record = set.maps[map].record;
        reread_.maps[map].record.name = std::move(record.name);
        record = std::move(reread_.maps[map].record);
        set.maps[map].changed = false;
    }
    set.header = std::move(reread_.header);
    set.data = std::move(reread_.data);
    set.layout.longLengths = writing_.layout.longLengths;
    set.rlewTag = writing_.form.rlewTag;
    set.rlewAlone = writing_.form.rlewAlone;
    self_.tags = writing_.form.tags;
    self_.longRlewTag = static_cast<std::int32_t>(
        (static_cast<std::uint32_t>(self_.longRlewTag) & 0xFFFF'0000) | set.rlewTag);
}

/// The proven pair stays beside the old one. A ".new" file of somebody else's gets another name.
std::string MapSave::KeepAside(const std::vector<NewFile>& written) {
    Files& files = *AtStart().files;
    std::vector<FilePrint> left;
    for (const NewFile& file : written) {
        const std::string path = NewName(file.path);
        if (files.Kind(path)) {
            const bool ours = std::ranges::find(self_.leftAside, PrintOf(files.Read(path))) !=
                              self_.leftAside.end();
            for (int number = 1; files.Kind(path); ++number) {
                if (ours)
                    files.Remove(path);
                else if (const std::string free = path + "." + std::to_string(number);
                         !files.Kind(free))
                    files.Rename(path, free, IfTaken::Fails);
            }
        }
        files.Create(path, file.content, Flushed::Yes);
        left.push_back(PrintOf(file.content));
    }
    self_.leftAside = std::move(left);
    return "\r\n\r\nThere was a problem replacing your map files.  Your compiled files are "
           "intact, but have a '.new' extension added to them.  You will need to correct this "
           "problem manually.";
}

void MapSave::RaiseError(const Failure& failure) {
    if (host_.SaveError)
        host_.SaveError(counter_, failure.Description);
}

void MapSave::RaiseComplete(bool success) {
    if (host_.SaveComplete)
        host_.SaveComplete(success);
}

bool clsGameMaps::SaveMapFile() {
    MapSave save(*this);
    return SaveSet(save);
}

std::unique_ptr<SetSave> MakeSave(clsGameMaps& maps) {
    return std::make_unique<MapSave>(maps);
}

void clsGameMaps::StopSave() {
    Guarded("clsGameMaps.StopSave", [&] { self_->saving.AskToStop(); });
}

}  // namespace tessaro
