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
#include <exception>
#include <utility>

#include "foundation/code_page.h"
#include "foundation/guard.h"
#include "foundation/store.h"
#include "maps/game_maps_self.h"

namespace tessaro {

namespace {

constexpr std::int32_t kMapNotLoaded = 1700;
constexpr std::int32_t kNameTooLong = 1799;
constexpr std::size_t kLongestShortLength = 65'535;
constexpr std::size_t kLongestSignedLength = 32'767;
constexpr std::int16_t kMostPlanes = 64;
constexpr std::int16_t kLongestName = 1024;
constexpr std::string_view kMarker = "!ID!";

template <class Step>
void Quietly(Step&& step) {
    try {
        step();
    } catch (...) {  // undoing goes on: the failure that made it necessary is the one to report
    }
}

[[noreturn]] void RefusePlane(std::size_t map, std::size_t plane, const std::string& why) {
    throw Failure(0, "Could not save map " + std::to_string(map) + " because its plane " +
                         std::to_string(plane) + why + "  Aborting.");
}

}  // namespace

/// One run of SaveMapFile. The container's records change only when everything is in place.
struct clsGameMaps::Self::Save {
    explicit Save(clsGameMaps& maps)
        : host(maps),
          self(*maps.self_),
          layout{self.outputMapPlanes, self.outputMapNameSize, self.saveLengthsAsLong},
          dataPath(ResolveCase(ConfiguredGame().gameMapsFile)),
          headerPath(ResolveCase(ConfiguredGame().mapHeaderFile)) {}

    void Run() {
        const SavingFlag::Scope scope(self.saving);
        if (self.maps.empty())
            throw Failure(0, "There are no maps to save.");
        if (layout.planes < 1 || layout.planes > kMostPlanes || layout.nameSize < 1 ||
            layout.nameSize > kLongestName)
            throw Failure(kInvalidProcedureCall,
                          "A map set needs 1 to 64 planes and names of 1 to 1024 bytes.");
        WriteDataFile();
        WriteHeaderFile();
        self.dataFile.Release();
        Replace();
    }

    void Commit() {
        for (std::size_t map = 0; map < records.size(); ++map) {
            std::string& name = self.maps.at(map).record.name;
            records[map].name = std::move(name);
            self.maps[map].record = std::move(records[map]);
        }
        self.headerSlots = std::move(slots);
        self.input.longLengths = layout.longLengths;
    }

    /// Brings the old files back, reports and raises the events of a failed save.
    void Fail(Failure failure) {
        Quietly([&] { Restore(dataPath, dataBackedUp); });
        Quietly([&] { Restore(headerPath, headerBackedUp); });
        failure.Description +=
            "\r\n\r\nThere was a problem replacing your map files.  Your compiled files are "
            "intact, but have a '.new' extension added to them.  You will need to correct this "
            "problem manually.";
        Quietly([&] {  // a log that cannot be written must not keep the events back
            modGlobal::SetErrorState(failure);
            modGlobal::ReportError("clsGameMaps.SaveMapFile: DoRestore");
        });
        std::exception_ptr ofHost;
        try {
            if (host.SaveError)
                host.SaveError(counter, failure.Description);
        } catch (...) {
            ofHost = std::current_exception();
        }
        if (host.SaveComplete)
            host.SaveComplete(false);
        if (ofHost)
            std::rethrow_exception(ofHost);
    }

private:
    static std::string NewName(const std::string& path) { return path + ".new"; }

    void WriteDataFile() {
        const std::size_t count = self.maps.size();
        slots.assign(std::max(kFewestHeaderSlots, count), 0);
        File file(NewName(dataPath), FileMode::Write);
        ByteWriter front;
        front.Text(MapSignature(layout));
        file.Write(front.View());
        std::int64_t position = static_cast<std::int64_t>(front.Position());
        for (std::size_t map = 0; map < count; ++map) {
            const ByteArray bytes = MapBytes(map, position, file);
            position += static_cast<std::int64_t>(bytes.size());
            file.Write(bytes);
            if (host.SaveStatus)
                host.SaveStatus(static_cast<std::int32_t>(map + 1),
                                static_cast<std::int32_t>(count));
        }
        ByteWriter closing;
        closing.Text(kMarker);
        file.Write(closing.View());
        file.Close();
    }

    /// One map's planes, record and marker for the place in the data file where they will lie.
    ByteArray MapBytes(std::size_t map, std::int64_t position, File& file) {
        if (!self.BringIn(static_cast<std::int32_t>(map)))
            throw Failure(kMapNotLoaded, "Could not load map " + std::to_string(map) +
                                             " in order to save.  Aborting.");
        const MapItem& item = self.maps.at(map);
        if (const auto planes = static_cast<std::size_t>(layout.planes);
            !FitsMap(planes, PlaneCells(item.record.width, item.record.height)))
            throw Failure(kOutOfMemory, "Could not save map " + std::to_string(map) + " with " +
                                            std::to_string(planes) +
                                            " planes of its size.  Save fewer planes or make "
                                            "the map smaller.  Aborting.");
        MapRecord record{{}, {}, item.record.width, item.record.height, {}};
        ByteWriter out;
        for (std::int16_t plane = 0; plane < layout.planes; ++plane) {
            counter = plane;
            const ByteArray packed = PackedPlane(item, map, static_cast<std::size_t>(plane));
            record.planeOffsets.push_back(
                Narrow<std::int32_t>(position + static_cast<std::int64_t>(out.Position())));
            record.planeLengths.push_back(Narrow<std::int32_t>(packed.size()));
            out.Bytes(packed);
        }
        slots[map] = Narrow<std::int32_t>(position + static_cast<std::int64_t>(out.Position()));
        record.WriteNumbersTo(out, layout);
        if (!self.WriteMapName(out, modCodePage::TextToDosCodePage(item.record.name),
                               layout.nameSize)) {
            file.Write(out.View());
            throw Failure(kNameTooLong,
                          "Could not save map " + std::to_string(map) +
                              " due to map name being too long.  Change length in project "
                              "information.  Aborting.");
        }
        out.Text(kMarker);
        records.push_back(std::move(record));
        return out.Release();
    }

    ByteArray PackedPlane(const MapItem& item, std::size_t map, std::size_t plane) const {
        const auto refuse = [&](const std::string& why) { RefusePlane(map, plane, why); };
        const auto needShort = [&](std::size_t size, std::size_t most) {
            if (!layout.longLengths && size > most)
                refuse(" is too large for 16-bit lengths.  Save with long lengths.");
        };
        // Planes that the map does not have are empty ones: this is how a set gets more planes.
        const ByteArray cells = plane < item.planes.Plane.size()
                                    ? CellBytes(item.planes.Plane[plane])
                                    : ByteArray(PlaneCells(item.record.width, item.record.height) *
                                                sizeof(std::uint16_t));
        needShort(cells.size(), kLongestShortLength);
        ByteArray packed;
        if (!self.RLEWCompress(static_cast<std::uint16_t>(self.compileRlewTag), cells, packed,
                               true))
            refuse(" has too few runs of equal cells to be compressed.");
        if (!ConfiguredGame().mapsAreVersion10) {
            needShort(packed.size(), kLongestSignedLength);  // read back with its sign
            if (!self.CarmackCompress(packed))
                refuse(" could not be compressed.");
        }
        needShort(packed.size(), kLongestShortLength);
        return packed;
    }

    void WriteHeaderFile() {
        ByteWriter out;
        WriteMapHeader(out, static_cast<std::uint16_t>(self.compileRlewTag), layout, slots);
        File file(NewName(headerPath), FileMode::Write);
        counter = static_cast<std::int32_t>(slots.size() - 1);
        file.Write(out.View());
        file.Close();
    }

    void Replace() {
        if (ConfiguredGame().backupFolder.empty())
            throw Failure(kPathNotFound, "No backup folder is set.");
        backupNumber =
            modGlobal::NextBackupNumber({modGlobal::FileNameFromPath(dataPath, false),
                                         modGlobal::FileNameFromPath(headerPath, false)});
        dataBackedUp = modGlobal::BackupFile(dataPath, backupNumber);
        headerBackedUp = dataBackedUp && modGlobal::BackupFile(headerPath, backupNumber);
        if (!headerBackedUp)
            throw Failure(0, "");  // what went wrong has been reported
        CopyFileTo(NewName(dataPath), dataPath);
        CopyFileTo(NewName(headerPath), headerPath);
        DeleteFileAt(NewName(headerPath));
        DeleteFileAt(NewName(dataPath));
    }

    void Restore(const std::string& path, bool backedUp) const {
        if (!backedUp)
            return;
        // The restore acts only over a file, so one is put where nothing stands.
        if (!FileExists(path))
            Quietly([&] { WriteWholeFile(path, {}); });
        modGlobal::RestoreFile(path, backupNumber);
    }

    clsGameMaps& host;
    Self& self;
    MapLayout layout;
    std::string dataPath, headerPath;
    std::vector<MapRecord> records;
    std::vector<std::int32_t> slots;
    /// The plane or header slot last written: what SaveError passes, not a map, as meant.
    std::int32_t counter = 0;
    std::int32_t backupNumber = 0;
    bool dataBackedUp = false, headerBackedUp = false;
};

bool clsGameMaps::SaveMapFile() {
    return Guarded("clsGameMaps.SaveMapFile", [&] {
        self_->saving.RefuseChange();
        Self::Save save(*this);
        try {
            save.Run();
        } catch (...) {
            save.Fail(CurrentFailure());
            return false;
        }
        save.Commit();
        if (SaveComplete)
            SaveComplete(true);
        return true;
    });
}

}  // namespace tessaro
