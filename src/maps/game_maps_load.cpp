// clsGameMaps: reading the map files.
#include <algorithm>
#include <utility>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "foundation/store.h"
#include "maps/game_maps_self.h"
#include "maps/map_layout.h"
#include "maps/word_bytes.h"

namespace tessaro {

namespace {

/// All records together: what keeps a header file full of equal offsets from costing gigabytes.
constexpr std::size_t kMostRecordBytes = 64 * 1024 * 1024;

/// The stream that stands for a plane whose Carmack layer is empty: runs of the word 0. They carry
/// the usual tag even where the set has another: that is meant (docs/kept-behaviour.md).
ByteArray EmptyPlaneStream(std::size_t cells, LengthPrefix prefix) {
    constexpr std::uint16_t kUsualTag = 0xABCD;
    constexpr std::size_t kLongestRun = 65'535;
    ByteWriter out;
    if (prefix == LengthPrefix::Long)
        out.U32(static_cast<std::uint32_t>(cells * kWordBytes));
    else
        out.U16(static_cast<std::uint16_t>(cells * kWordBytes));
    while (cells > 0) {
        const std::size_t run = std::min(cells, kLongestRun);
        out.U16(kUsualTag);
        out.U16(static_cast<std::uint16_t>(run));
        out.U16(0);
        cells -= run;
    }
    return out.Release();
}

typMapGrid Widened(ByteSpan cellBytes) {
    typMapGrid grid;
    grid.Grid.resize(cellBytes.size() / kWordBytes);
    for (std::size_t i = 0; i < grid.Grid.size(); ++i)
        grid.Grid[i] = WordAt(cellBytes.data() + i * kWordBytes);
    return grid;
}

}  // namespace

bool clsGameMaps::Initialize() {
    return Guarded("clsGameMaps.Initialize", [&] {
        self_->saving.RefuseChange();
        return self_->LoadMapHeader() && self_->LoadMapData();
    });
}

bool clsGameMaps::Self::LoadMapHeader() {
    return Guarded("clsGameMaps.LoadMapHeader", [&] {
        dataFile.Release();
        maps.clear();
        const ByteArray headerFile = ReadWholeFile(ConfiguredGame().mapHeaderFile);
        ByteArray data(kMapSignatureSize);
        {
            File file(ConfiguredGame().gameMapsFile, FileMode::Read);
            data.resize(file.Read(data));
        }
        if (HasExtendedLayout(data))
            data = ReadWholeFile(ConfiguredGame().gameMapsFile);

        MapSetLayout set = ReadMapSetLayout(headerFile, data);
        input = set.layout;
        outputMapPlanes = input.planes;
        outputMapNameSize = input.nameSize;
        saveLengthsAsLong = saveLengthsAsLong || input.longLengths;
        compileRlewTag = static_cast<std::int16_t>(set.header.rlewTag);
        longRlewTag = static_cast<std::int32_t>(
            (static_cast<std::uint32_t>(longRlewTag) & 0xFFFF'0000) | set.header.rlewTag);
        const std::size_t count = set.header.MapCount();
        if (input.planes < 1 || input.nameSize < 0)
            throw Failure(kSubscriptOutOfRange);
        if (count > kMostRecordBytes / input.RecordSize())
            throw Failure(kOutOfMemory);
        maps.resize(count);
        headerSlots = std::move(set.header.offsets);
        return true;
    });
}

bool clsGameMaps::Self::LoadMapData() {
    return Guarded("clsGameMaps.LoadMapData", [&] {
        if (maps.empty())
            throw Failure(kSubscriptOutOfRange);
        dataFile = File(ConfiguredGame().gameMapsFile, FileMode::Read);
        for (std::size_t i = 0; i < maps.size(); ++i) {
            const ByteArray bytes =
                dataFile.ReadAt(headerSlots[i], static_cast<std::int64_t>(input.RecordSize()));
            ByteReader in(bytes);
            maps[i] = {};
            maps[i].record = MapRecord::ReadFrom(in, input);
            maps[i].record.name = modCodePage::TextFromDosCodePage(maps[i].record.name);
        }
        ResizeHeaderSlots();
        return true;
    });
}

bool clsGameMaps::Self::ReadPlane(MapItem& item, std::size_t plane, ByteArray& cellBytes) {
    const std::int32_t offset = item.record.planeOffsets[plane];
    const std::int32_t stored = item.record.planeLengths[plane];
    if (stored == 0)  // some games store no second plane; its offset means nothing
        return true;
    if (offset < 0 || stored < 0)
        throw Failure(kInputPastEnd);
    const ByteArray bytes = dataFile.ReadAt(offset, stored);
    const auto tag = static_cast<std::uint16_t>(longRlewTag);
    std::int32_t fromPrefix = 0;
    if (ConfiguredGame().mapsAreVersion10)
        return RLEWExpand(tag, bytes, cellBytes, fromPrefix, item.corruption, Overrun::Cuts);

    ByteReader in(bytes);
    const std::int32_t length = input.longLengths ? in.I32() : in.I16();
    if (length < 0)
        throw Failure(kSubscriptOutOfRange);
    ByteArray stream;
    if (length == 0) {
        stream = EmptyPlaneStream(cellBytes.size() / kWordBytes, LoadPrefix());
    } else {
        const ByteSpan codes = in.Take(in.Remaining());
        stream.resize(std::min(static_cast<std::size_t>(length),
                               tessaro::CarmackExpandedLimit(codes.size())));
        if (!CarmackExpand(codes, stream, length))
            return false;
    }
    return RLEWExpand(tag, stream, cellBytes, fromPrefix, item.corruption, Overrun::Cuts);
}

bool clsGameMaps::Self::BringIn(std::int32_t mapNum) {
    return Guarded("clsGameMaps.LoadMap", [&] {
        MapItem& item = MapAt(mapNum);
        if (item.inMemory)
            return true;
        const std::size_t count = item.record.planeOffsets.size();
        if (count == 0)
            throw Failure(kSubscriptOutOfRange);
        const std::size_t cells = PlaneCells(item.record.width, item.record.height);
        if (!FitsMap(count, cells))
            throw Failure(kOutOfMemory);
        if (!dataFile.IsOpen())
            dataFile = File(ConfiguredGame().gameMapsFile, FileMode::Read);
        item.corruption = clNone;
        typMapPlane planes;
        for (std::size_t plane = 0; plane < count; ++plane) {
            ByteArray cellBytes(cells * kWordBytes);
            if (!ReadPlane(item, plane, cellBytes))
                return false;  // the expander has reported it
            planes.Plane.push_back(Widened(cellBytes));
        }
        item.planes = std::move(planes);
        item.inMemory = true;
        return true;
    });
}

bool clsGameMaps::LoadMap(std::int32_t MapNum, typMapPlane& MapDataPlanes, std::int32_t& Width,
                          std::int32_t& Height) {
    return Guarded("clsGameMaps.LoadMap", [&] {
        if (!self_->BringIn(MapNum))
            return false;
        const MapItem& item = self_->MapAt(MapNum);
        typMapPlane planes = item.planes;
        MapDataPlanes = std::move(planes);
        Width = item.record.width;
        Height = item.record.height;
        return true;
    });
}

bool clsGameMaps::SetMapCode(std::int32_t MapNum, std::int32_t Plane, std::int32_t X,
                             std::int32_t Y, std::int32_t Value) {
    return Guarded("clsGameMaps.SetMapCode", [&] {
        if (!self_->BringIn(MapNum))
            return false;
        MapItem& item = self_->MapAt(MapNum);
        const std::int64_t cell = std::int64_t{Y} * item.record.width + X;
        const bool inside = X >= 0 && Y >= 0 && X < item.record.width && Y < item.record.height;
        if (!inside || Plane < 0 || std::cmp_greater_equal(Plane, item.planes.Plane.size()))
            throw Failure(kSubscriptOutOfRange);
        std::vector<std::int32_t>& grid = item.planes.Plane[static_cast<std::size_t>(Plane)].Grid;
        if (std::cmp_greater_equal(cell, grid.size()))
            throw Failure(kSubscriptOutOfRange);
        grid[static_cast<std::size_t>(cell)] = Value;
        return true;
    });
}

}  // namespace tessaro
