#include "maps/map_set.h"

#include <algorithm>
#include <string>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "maps/map_layout.h"
#include "maps/plane_cells.h"
#include "maps/word_bytes.h"

namespace tessaro {
namespace {

/// All records together: what keeps a header file full of equal offsets from costing gigabytes.
constexpr std::size_t kMostRecordBytes = 64 * 1024 * 1024;
constexpr std::size_t kOffsetBytes = 4;

typMapGrid Widened(ByteSpan cellBytes) {
    typMapGrid grid;
    grid.Grid.resize(cellBytes.size() / kWordBytes);
    for (std::size_t i = 0; i < grid.Grid.size(); ++i)
        grid.Grid[i] = WordAt(cellBytes.data() + i * kWordBytes);
    return grid;
}

bool IsZero(std::uint8_t byte) {
    return byte == 0;
}

}  // namespace

ByteArray CellBytes(const typMapGrid& plane) {
    ByteArray bytes(plane.Grid.size() * kWordBytes);
    for (std::size_t i = 0; i < plane.Grid.size(); ++i)
        PutWord(bytes.data() + i * kWordBytes, static_cast<std::uint16_t>(plane.Grid[i]));
    return bytes;
}

MapSet MapSet::Open(const Game& game, const Files& files) {
    MapSet set;
    set.rlewAlone = game.mapsAreVersion10;
    std::vector<std::int32_t> offsets;
    Step("clsGameMaps.LoadMapHeader", [&] {
        set.header = DataFile::Read(files, game.mapHeaderFile);
        set.data = DataFile::Read(files, game.gameMapsFile);
        MapSetLayout found = ReadMapSetLayout(set.header.Bytes(), set.data.Bytes());
        set.layout = found.layout;
        set.rlewTag = found.header.rlewTag;
        if (set.layout.planes < 1 || set.layout.nameSize < 0)
            throw Failure(kSubscriptOutOfRange);
        const std::size_t count = found.header.MapCount();
        if (count > kMostRecordBytes / set.layout.RecordSize())
            throw Failure(kOutOfMemory);
        set.maps.resize(count);
        offsets = std::move(found.header.offsets);

        set.tailSlot = std::max(kFewestHeaderSlots, count);
        const ByteSpan bytes = set.header.Bytes();
        const std::size_t begin =
            std::min(found.header.offsetsAt + set.tailSlot * kOffsetBytes, bytes.size());
        set.tail.assign(bytes.begin() + static_cast<std::ptrdiff_t>(begin), bytes.end());
    });
    Step("clsGameMaps.LoadMapData", [&] {
        if (set.maps.empty())
            throw Failure(kSubscriptOutOfRange);
        for (std::size_t i = 0; i < set.maps.size(); ++i) {
            ByteReader in(
                set.data.At(offsets[i], static_cast<std::int64_t>(set.layout.RecordSize())));
            MapRecord& record = set.maps[i].record;
            record = MapRecord::ReadFrom(in, set.layout);
            record.name = modCodePage::TextFromDosCodePage(record.name);
        }
    });
    return set;
}

typMapPlane MapSet::ReadPlanes(const MapRecord& record, CarmackTags tags, std::uint16_t tag,
                               enmCorruptLevel& corruption) const {
    const PlaneForm form{layout.longLengths ? LengthPrefix::Long : LengthPrefix::Short, tag, tags,
                         rlewAlone};
    const std::size_t count = record.planeOffsets.size();
    if (count == 0)
        throw Failure(kSubscriptOutOfRange);
    const std::size_t cells = PlaneCells(record.width, record.height);
    if (!FitsMap(count, cells))
        throw Failure(kOutOfMemory);
    corruption = clNone;
    typMapPlane planes;
    for (std::size_t plane = 0; plane < count; ++plane) {
        const std::int32_t offset = record.planeOffsets[plane];
        const std::int32_t stored = record.planeLengths[plane];
        if (stored == 0) {  // some games store no second plane; its offset means nothing
            planes.Plane.push_back({std::vector<std::int32_t>(cells)});
            continue;
        }
        if (offset < 0 || stored < 0)
            throw Failure(kInputPastEnd);
        planes.Plane.push_back(
            Widened(DecodePlane(data.At(offset, stored), cells, form, corruption)));
    }
    return planes;
}

ByteArray WriteMapHeaderFile(const MapSet& set, const MapWriting& writing,
                             std::vector<std::int32_t> slots) {
    ByteSpan tail = set.tail;
    const std::size_t count = slots.size();
    if (!tail.empty()) {
        ByteReader first(tail, PastEnd::ReadsZero);
        const bool endsTheList = first.I32() <= 0;
        if (count > set.tailSlot || (count == set.tailSlot && !endsTheList)) {
            if (!std::ranges::all_of(tail, IsZero))
                throw Failure(0, "The map header file has other data behind the offsets of its " +
                                     std::to_string(set.tailSlot) +
                                     " maps (properties of tiles), which " + std::to_string(count) +
                                     " maps would overwrite.  Remove maps.  Aborting.");
            tail = {};
        }
    }
    slots.resize(std::max(tail.empty() ? kFewestHeaderSlots : set.tailSlot, count));
    ByteWriter out;
    WriteMapHeader(out, writing.form.rlewTag, writing.layout, slots);
    out.Bytes(tail);
    return out.Release();
}

void RequireSameMaps(const std::vector<MapItem>& maps, const MapSet& reread,
                     const MapWriting& writing) {
    if (reread.layout != writing.layout || reread.maps.size() != maps.size())
        throw Failure(0,
                      "The set would be read with other counts of maps, planes or name bytes "
                      "than it has.  Change them in project information.  Aborting.");
    for (std::size_t i = 0; i < maps.size(); ++i) {
        const MapItem& map = maps[i];
        const MapRecord& record = reread.maps[i].record;
        const auto refuse = [&](const std::string& what) {
            throw Failure(0, "Could not save map " + std::to_string(i) + " because " + what +
                                 " would not read back.  Aborting.");
        };
        std::string name = modCodePage::TextToDosCodePage(map.record.name);
        name.resize(static_cast<std::size_t>(writing.layout.nameSize));
        if (modCodePage::TextToDosCodePage(record.name) != name)
            refuse("its name");
        if (record.width != map.record.width || record.height != map.record.height)
            refuse("its size");
        enmCorruptLevel corruption = clNone;
        const typMapPlane planes =
            reread.ReadPlanes(record, writing.form.tags, writing.form.rlewTag, corruption);
        for (std::size_t plane = 0; plane < planes.Plane.size(); ++plane) {
            // Cells that a plane has too few of are 0; those too many have no place.
            const auto cellOf = [&](std::size_t cell) -> std::uint16_t {
                if (plane >= map.planes.Plane.size() || cell >= map.planes.Plane[plane].Grid.size())
                    return 0;
                return static_cast<std::uint16_t>(map.planes.Plane[plane].Grid[cell]);
            };
            const auto& cells = planes.Plane[plane].Grid;
            bool same = corruption == clNone;
            for (std::size_t cell = 0; same && cell < cells.size(); ++cell)
                same = cells[cell] == cellOf(cell);
            if (!same)
                refuse("its plane " + std::to_string(plane));
        }
    }
}

}  // namespace tessaro
